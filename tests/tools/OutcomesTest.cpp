#include "larkspan-gateway/MessageStatus.h"
#include "larkspan-gateway/Outcomes.h"

#include <gtest/gtest.h>

#include <map>

using namespace MessageStatus;

TEST(Outcomes, TheLastThreeDigitsDecideUnlessToldOtherwise) {
    Outcomes outcomes(Outcomes::DefaultRules(), 0, 1);
    EXPECT_EQ(outcomes.StatusFor(QStringLiteral("+353209112004")), NotSent);
    EXPECT_EQ(outcomes.StatusFor(QStringLiteral("+353209112006")), Unconfirmed);
    EXPECT_EQ(outcomes.StatusFor(QStringLiteral("+353209112007")), NotDelivered);
    EXPECT_EQ(outcomes.StatusFor(QStringLiteral("+353209112005")), Delivered);
    EXPECT_EQ(outcomes.StatusFor(QStringLiteral("004+353209112")), Delivered);
}

TEST(Outcomes, OnlyDigitsOfANumberCount) {
    Outcomes outcomes(Outcomes::DefaultRules(), 0, 1);
    EXPECT_EQ(outcomes.StatusFor(QStringLiteral("+353 20 911 20 07 ")), NotDelivered);
    EXPECT_EQ(outcomes.StatusFor(QString()), Delivered);
}

TEST(Outcomes, TheFirstRuleThatFitsWins) {
    Outcomes outcomes({{QStringLiteral("5"), NotSent}, {QStringLiteral("15"), Unconfirmed}}, 0, 1);
    EXPECT_EQ(outcomes.StatusFor(QStringLiteral("+35315")), NotSent);
}

TEST(Outcomes, AFailureRateOf30PerCentFailsAboutThatManyAndEvenly) {
    Outcomes outcomes({}, 30, 7);
    std::map<qint32, int> counts;
    for (int i = 0; i < 10000; ++i) {
        ++counts[outcomes.StatusFor(QStringLiteral("+35320911"))];
    }
    EXPECT_NEAR(counts[Delivered], 7000, 200);
    for (const qint32 status : {NotSent, Unconfirmed, NotDelivered}) {
        EXPECT_NEAR(counts[status], 1000, 150) << status;
    }
}

TEST(Outcomes, ARateOf100FailsAllAndARateOf0None) {
    Outcomes all({}, 100, 1);
    Outcomes none({}, 0, 1);
    for (int i = 0; i < 1000; ++i) {
        EXPECT_NE(all.StatusFor(QStringLiteral("+1")), Delivered);
        EXPECT_EQ(none.StatusFor(QStringLiteral("+1")), Delivered);
    }
}

TEST(Outcomes, TheSameSeedGivesTheSameAnswers) {
    Outcomes first({}, 50, 42);
    Outcomes second({}, 50, 42);
    for (int i = 0; i < 200; ++i) {
        EXPECT_EQ(first.StatusFor(QStringLiteral("+1")), second.StatusFor(QStringLiteral("+1")));
    }
}
