#include "store/DBFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <new>
#include <stdexcept>
#include <utility>

using engine::Mode::ReadShared;
using Operation = FakeEngine::Operation;

namespace {

class DBRetryTest : public DBTest {};

// --- which failures are tried again ---

class TransientNumberTest : public ::testing::TestWithParam<int> {};

TEST_P(TransientNumberTest, IsTriedThreeTimes) {
    FakeDatabase machine;
    DB database(machine.Services());
    ASSERT_TRUE(database.OpenDatabase(ReadShared));
    machine.Engine.Fail(Operation::Execute, GetParam());
    EXPECT_EQ(database.ExecuteRecordset(QStringLiteral("SELECT * FROM System")), nullptr);
    EXPECT_EQ(machine.Engine.Attempts(Operation::Execute), 3);
}

INSTANTIATE_TEST_SUITE_P(LockAndSharingConflicts, TransientNumberTest,
                         ::testing::Values(3006, 3008, 3009, 3040, 3043, 3045, 3046, 3051, 3052, 3158, 3186,
                                           3187, 3188, 3189, 3196, 3197, 3202, 3211, 3212, 3218, 3234, 3254,
                                           3260, 3261, 3262, 3356, 3566, 3572, 3576, 3584, 3624));

class LastingNumberTest : public ::testing::TestWithParam<int> {};

TEST_P(LastingNumberTest, IsTriedOnce) {
    FakeDatabase machine;
    DB database(machine.Services());
    ASSERT_TRUE(database.OpenDatabase(ReadShared));
    machine.Engine.Fail(Operation::Execute, GetParam());
    EXPECT_FALSE(database.Execute(QStringLiteral("DELETE FROM Message WHERE msgID = 1")));
    EXPECT_EQ(machine.Engine.Attempts(Operation::Execute), 1);
    EXPECT_TRUE(machine.Time.Sleeps.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(OtherFailures, LastingNumberTest,
                         ::testing::Values(0, 3007, 3022, 3024, 3026, 3027, 3044, 3049, 3061, 3075, 3078,
                                           3134, 3141, 3144, 3190, 3219, 3259, 3263, 3314, 3315, 3343, 3625));

TEST_F(DBRetryTest, AnOutcomeThatNobodyKnowsIsNotTriedAgainSoThatNothingIsSentTwice) {
    Open();
    Machine.Engine.Fail(Operation::Execute, 3146);
    EXPECT_FALSE(Database.Execute(AnySQL));
    EXPECT_EQ(Attempts(Operation::Execute), 1);
}

TEST_F(DBRetryTest, ASQLStateThatIsNotNumericReadsAsZeroAndIsNotTransient) {
    Open();
    Machine.Engine.SetSQLState(QStringLiteral("HY3045"));
    Machine.Engine.Fail(Operation::Execute, 3045);
    EXPECT_FALSE(Database.Execute(AnySQL));
    EXPECT_EQ(Attempts(Operation::Execute), 1);
    EXPECT_EQ(Database.LastError(), QStringLiteral("GE:0x80004005, NE:0x0, SQL:HY3045 - fake failure 3045"));
}

TEST_F(DBRetryTest, TheLeadingNumberOfTheSQLStateDecides) {
    Open();
    Machine.Engine.SetSQLState(QStringLiteral("3045 (S1000)"));
    Machine.Engine.Fail(Operation::Execute, 9999);
    EXPECT_TRUE(Database.Execute(AnySQL));
    EXPECT_EQ(Attempts(Operation::Execute), 3);
}

TEST_F(DBRetryTest, AFailureWithoutAnItemInTheCollectionIsNotTransientAndShowsItsOwnDescription) {
    Open();
    Machine.Engine.FailWithoutItem(Operation::Execute, static_cast<qint32>(0x800A0E7DU));
    EXPECT_FALSE(Database.Execute(AnySQL));
    EXPECT_EQ(Attempts(Operation::Execute), 1);
    EXPECT_EQ(Database.LastError(), QStringLiteral("GE:0x800A0E7D, fake failure"));
}

TEST_F(DBRetryTest, WhateverIsThrownStaysInside) {
    Open();
    Machine.Engine.Intercept(
        Operation::Execute, [] { throw std::runtime_error("odd"); }, 1, 1);
    Machine.Engine.Intercept(
        Operation::Execute, [] { throw std::bad_alloc(); }, 2, 2);
    Machine.Engine.Intercept(
        Operation::Execute, [] { throw 42; }, 3, 3);
    EXPECT_FALSE(Database.Execute(AnySQL));
    EXPECT_EQ(Database.LastError(), QStringLiteral("GE:0x8000FFFF, odd"));
    EXPECT_EQ(Database.ExecuteRecordset(AnySQL), nullptr);
    EXPECT_EQ(Database.ExecuteRecordResult(AnySQL), 0);
    EXPECT_EQ(Attempts(Operation::Execute), 3);
    EXPECT_TRUE(Database.Execute(AnySQL));
}

TEST_F(DBRetryTest, AnEventThatThrowsInsideAWaitStaysInside) {
    Open();
    Machine.Pump.OnProcess = [](int) { throw std::runtime_error("handler"); };
    Machine.Engine.Fail(Operation::Execute, 3045);
    EXPECT_TRUE(Database.Execute(AnySQL));
    EXPECT_EQ(Machine.Time.Sleeps.size(), 3);
}

// --- the error text ---

TEST_F(DBRetryTest, HexadecimalNumbersAreInUpperCaseWithoutLeadingZeros) {
    Open();
    const auto failWith = [&](qint32 nativeError) {
        const int attempt = Attempts(Operation::Execute) + 1;
        Machine.Engine.Intercept(
            Operation::Execute,
            [nativeError] { throw engine::Failure(3134, QStringLiteral("Syntax error."), nativeError); },
            attempt, attempt);
        EXPECT_FALSE(Database.Execute(AnySQL));
        return Database.LastError();
    };
    EXPECT_EQ(failWith(0xABC), QStringLiteral("GE:0x80004005, NE:0xABC, SQL:3134 - Syntax error."));
    EXPECT_EQ(failWith(-534578963), QStringLiteral("GE:0x80004005, NE:0xE022F8ED, SQL:3134 - Syntax error."));
    EXPECT_EQ(failWith(10), QStringLiteral("GE:0x80004005, NE:0xA, SQL:3134 - Syntax error."));
}

TEST_F(DBRetryTest, RecordErrorWithNothingPendingSetsTheFlagAndNamesZero) {
    Database.RecordError();
    EXPECT_TRUE(Database.IsError());
    EXPECT_EQ(Database.LastError(), QStringLiteral("GE:0x0"));
    Open();
    Database.ResetError();
    Database.RecordError();
    EXPECT_EQ(Database.LastError(), QStringLiteral("GE:0x0"));
    Database.ResetError();
    EXPECT_FALSE(Database.IsError());
}

// --- the waits ---

TEST_F(DBRetryTest, ThePausesLieBetweenTheirMinimumAndTheIntervalAtAnyTimeOfDay) {
    Open();
    const std::array<int, 3> minimum = {10, 100, 250};
    std::array<int, 3> shortest = {1001, 1001, 1001};
    std::array<int, 3> longest = {0, 0, 0};
    Machine.Engine.Fail(Operation::Execute, 3045);
    for (int i = 0; i < 400; ++i) {
        Machine.Time.Time = QDateTime(QDate(2026, 3, 7), QTime(0, 0).addMSecs(i * 200003));
        Machine.Time.Sleeps.clear();
        ASSERT_TRUE(Database.Execute(AnySQL));
        ASSERT_EQ(Machine.Time.Sleeps.size(), 3);
        for (std::size_t n = 0; n < 3; ++n) {
            const int pause = Machine.Time.Sleeps.at(static_cast<int>(n));
            ASSERT_GE(pause, minimum[n]);
            ASSERT_LE(pause, 1000);
            shortest[n] = std::min(shortest[n], pause);
            longest[n] = std::max(longest[n], pause);
        }
    }
    for (std::size_t n = 0; n < 3; ++n) {
        EXPECT_LT(shortest[n], minimum[n] + 50) << "the whole range is in use";
        EXPECT_GT(longest[n], 950) << "the whole range is in use";
    }
}

TEST_F(DBRetryTest, TheRandomPauseComesFromTheTimeOfDay) {
    Open();
    Machine.Engine.Fail(Operation::Execute, 3045);
    const QDateTime now = Machine.Time.Time;
    ASSERT_TRUE(Database.Execute(AnySQL));
    const QList<int> first = Machine.Time.Sleeps;
    Machine.Time.Sleeps.clear();
    Machine.Time.Time = now.addDays(1);
    ASSERT_TRUE(Database.Execute(AnySQL));
    EXPECT_EQ(Machine.Time.Sleeps, first);
    Machine.Time.Sleeps.clear();
    Machine.Time.Time = now.addMSecs(1);
    ASSERT_TRUE(Database.Execute(AnySQL));
    EXPECT_NE(Machine.Time.Sleeps, first);
}

TEST_F(DBRetryTest, AnIntervalBelowTheMinimumGivesTheMinimumPlusNoneOrOneMillisecond) {
    Open();
    Machine.Engine.Fail(Operation::Execute, 3045);
    for (const int interval : {5, 0, -100}) {
        Database.MaxRetryInterval = interval;
        bool wasLonger = false;
        for (int i = 0; i < 60; ++i) {
            Machine.Time.Sleeps.clear();
            ASSERT_TRUE(Database.Execute(AnySQL));
            const QList<int>& pauses = Machine.Time.Sleeps;
            EXPECT_TRUE(pauses.at(0) == 10 || pauses.at(0) == 11);
            EXPECT_TRUE(pauses.at(1) == 100 || pauses.at(1) == 101);
            EXPECT_TRUE(pauses.at(2) == 250 || pauses.at(2) == 251);
            wasLonger = wasLonger || pauses.at(0) == 11;
        }
        EXPECT_TRUE(wasLonger) << "the range never falls below 1";
    }
}

TEST_F(DBRetryTest, AttemptsBeyondTheThirdPauseLikeTheThird) {
    Open();
    Database.MaxRetryCount = 6;
    Database.MaxRetryInterval = 0;
    Machine.Engine.Fail(Operation::Execute, 3045);
    EXPECT_TRUE(Database.Execute(AnySQL));
    ASSERT_EQ(Machine.Time.Sleeps.size(), 6);
    for (int n = 2; n < 6; ++n) {
        EXPECT_GE(Machine.Time.Sleeps.at(n), 250);
        EXPECT_LE(Machine.Time.Sleeps.at(n), 251);
    }
}

TEST_F(DBRetryTest, EventsRunFourTimesBeforeThePauseAndThreeTimesBehindIt) {
    Open();
    Database.MaxRetryCount = 1;
    QStringList order;
    Machine.Pump.OnProcess = [&](int passes) { order.append(QString::number(passes)); };
    Machine.Time.OnSleep = [&](int) { order.append(QStringLiteral("sleep")); };
    Machine.Engine.Fail(Operation::Execute, 3045);
    EXPECT_TRUE(Database.Execute(AnySQL));
    EXPECT_EQ(order, (QStringList{QStringLiteral("4"), QStringLiteral("sleep"), QStringLiteral("3")}));
}

// --- events inside a wait ---

TEST_F(DBRetryTest, ADatabaseThatIsClosedDuringAWaitEndsTheStatementWithoutHarm) {
    Open();
    Machine.Pump.OnProcess = [&](int) { Database.CloseDatabase(); };
    Machine.Engine.Fail(Operation::Execute, 3045);
    EXPECT_FALSE(Database.Execute(AnySQL));
    EXPECT_EQ(Attempts(Operation::Execute), 1);
    EXPECT_EQ(Database.LastError(), QStringLiteral("GE:0x800A0E78"));
}

TEST_F(DBRetryTest, AStatementInsideTheWaitOfAnotherDoesNotDisturbIt) {
    Open();
    Machine.Engine.SetRowsAffected(QStringLiteral("UPDATE"), 3);
    Machine.Engine.Fail(Operation::Execute, 3045, 1, 1);
    bool isFirst = true;
    Machine.Pump.OnProcess = [&](int) {
        if (std::exchange(isFirst, false)) {
            EXPECT_TRUE(Database.IsBusy());
            EXPECT_TRUE(Database.Execute(QStringLiteral("DELETE FROM Message WHERE msgID = 1")));
        }
    };
    EXPECT_EQ(Database.ExecuteRecordResult(AnySQL), 3);
    EXPECT_FALSE(Database.IsBusy());
}

TEST_F(DBRetryTest, ADisconnectedSetIsTriedThreeTimesAndOnlyForLocks) {
    Open();
    Machine.Engine.Fail(Operation::Recordset, 3260);
    EXPECT_EQ(Database.DisconnectedSet(QStringLiteral("SELECT * FROM System")), nullptr);
    EXPECT_EQ(Attempts(Operation::Recordset), 3);
    EXPECT_EQ(Machine.Time.Sleeps.size(), 3);
    Machine.Engine.StopFailing();
    Machine.Engine.Fail(Operation::Recordset, 3260, 4, 5);
    EXPECT_NE(Database.DisconnectedSet(QStringLiteral("SELECT * FROM System")), nullptr);
    EXPECT_EQ(Attempts(Operation::Recordset), 6);
    Machine.Engine.StopFailing();
    Machine.Engine.Fail(Operation::Recordset, 3078);
    EXPECT_EQ(Database.DisconnectedSet(QStringLiteral("SELECT * FROM System")), nullptr);
    EXPECT_EQ(Attempts(Operation::Recordset), 7);
}

}  // namespace
