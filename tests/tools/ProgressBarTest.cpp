#include "common/ProgressBar.h"

#include <gtest/gtest.h>

namespace {

struct Drawn {
    QString Text;
    QTextStream Stream{&Text};
};

}  // namespace

TEST(ProgressBar, ShowsHowFarTheWorkIs) {
    Drawn drawn;
    ProgressBar bar(drawn.Stream, true);
    bar.Show(QStringLiteral("contacts"), 50, 100);
    EXPECT_EQ(drawn.Text, QStringLiteral("\r\033[K[###############               ]  50% contacts"));
}

TEST(ProgressBar, DrawsOnlyWhenAWholePerCentHasPassed) {
    Drawn drawn;
    ProgressBar bar(drawn.Stream, true);
    for (int i = 0; i <= 10000; ++i) {
        bar.Show(QStringLiteral("contacts"), i, 10000);
    }
    EXPECT_EQ(drawn.Text.count(u'\r'), 101);
}

TEST(ProgressBar, TakesItsLineAwayAtTheEnd) {
    Drawn drawn;
    {
        ProgressBar bar(drawn.Stream, true);
        bar.Show(QStringLiteral("x"), 1, 1);
    }
    EXPECT_TRUE(drawn.Text.endsWith(QStringLiteral("\r\033[K")));
}

TEST(ProgressBar, WritesNothingWhereThereIsNoTerminal) {
    Drawn drawn;
    {
        ProgressBar bar(drawn.Stream, false);
        bar.Show(QStringLiteral("x"), 1, 2);
    }
    EXPECT_TRUE(drawn.Text.isEmpty());
}

TEST(ProgressBar, WorkOfNothingIsDone) {
    Drawn drawn;
    ProgressBar bar(drawn.Stream, true);
    bar.Show(QStringLiteral("x"), 0, 0);
    EXPECT_TRUE(drawn.Text.contains(QStringLiteral("100%")));
}
