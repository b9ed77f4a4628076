#include "app/EndSignals.h"

#include <QTest>

#include <gtest/gtest.h>

#include <csignal>

namespace {

constexpr int Deadline = 20000;  // ms

volatile std::sig_atomic_t handled = 0;

void Note(int) {
    handled = handled + 1;
}

}  // namespace

TEST(EndSignals, ASignalIsAnsweredFromTheEventLoopUntilItIsObeyed) {
    int answers = 0;
    const EndSignals ends([&answers] { ++answers; });
    ASSERT_EQ(std::raise(SIGTERM), 0);
    EXPECT_EQ(answers, 0) << "not in the middle of whatever runs";
    EXPECT_TRUE(QTest::qWaitFor([&answers] { return answers >= 3; }, Deadline))
        << "what came in the way may be over by now";
}

TEST(EndSignals, WithoutASignalNothingIsAnswered) {
    int answers = 0;
    const EndSignals ends([&answers] { ++answers; });
    QTest::qWait(300);
    EXPECT_EQ(answers, 0);
}

TEST(EndSignals, EachOfTheThreeSignalsIsHeardAndAfterwardsDoesWhatItDidBefore) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        const auto before = std::signal(number, Note);
        handled = 0;
        {
            int answers = 0;
            const EndSignals ends([&answers] { ++answers; });
            ASSERT_EQ(std::raise(number), 0);
            EXPECT_TRUE(QTest::qWaitFor([&answers] { return answers > 0; }, Deadline)) << number;
            EXPECT_EQ(handled, 0) << number;
        }
        ASSERT_EQ(std::raise(number), 0);
        EXPECT_EQ(handled, 1) << number;
        std::signal(number, before);
    }
}
