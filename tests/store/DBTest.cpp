#include "store/DB.h"

#include "store/FakeOffice.h"

#include <QFile>

#include <gtest/gtest.h>

#include <array>
#include <new>
#include <stdexcept>
#include <utility>

using engine::CursorType;
using engine::LockType;
using engine::Mode::ReadShared;
using engine::Mode::ReadWriteShared;
using Operation = FakeEngine::Operation;

namespace {

static_assert(noexcept(std::declval<DB&>().OpenDatabase(ReadShared)));
static_assert(noexcept(std::declval<DB&>().CloseDatabase()));
static_assert(noexcept(std::declval<DB&>().Connection()));
static_assert(noexcept(std::declval<DB&>().OpenDynaset(std::declval<const QString&>(),
                                                       CursorType::ForwardOnly, LockType::ReadOnly)));
static_assert(noexcept(std::declval<DB&>().DisconnectedSet(std::declval<const QString&>())));
static_assert(noexcept(std::declval<DB&>().BeginTransaction()));
static_assert(noexcept(std::declval<DB&>().CommitTransaction()));
static_assert(noexcept(std::declval<DB&>().RollbackTransaction()));
static_assert(noexcept(std::declval<DB&>().Execute(std::declval<const QString&>())));
static_assert(noexcept(std::declval<DB&>().ExecuteRecordset(std::declval<const QString&>())));
static_assert(noexcept(std::declval<DB&>().ExecuteRecordResult(std::declval<const QString&>())));
static_assert(noexcept(std::declval<DB&>().TableNames()));
static_assert(noexcept(std::declval<DB&>().Compact()));
static_assert(noexcept(std::declval<DB&>().FileExists()));
static_assert(noexcept(std::declval<DB&>().RecordError()));
static_assert(noexcept(std::declval<DB&>().ResetError()));
static_assert(noexcept(std::declval<DB&>().LastError()));
static_assert(noexcept(std::declval<DB&>().IsError()));
static_assert(noexcept(std::declval<DB&>().IsConnected()));
static_assert(noexcept(std::declval<DB&>().GetDrive()));
static_assert(noexcept(std::declval<DB&>().GetFolder()));
static_assert(noexcept(std::declval<DB&>().GetFilename()));
static_assert(noexcept(std::declval<DB&>().ResetNetworkDrive(qint16{0}, std::declval<const QString&>())));

const QString AnySQL = QStringLiteral("UPDATE Message SET msgStatus = 2");

class DBTest : public ::testing::Test {
protected:
    FakeDatabase Machine;
    DB Database{Machine.Services()};

    void Open() { ASSERT_TRUE(Database.OpenDatabase(ReadWriteShared)); }
    std::unique_ptr<engine::Recordset> OpenRows() {
        return Database.OpenDynaset(QStringLiteral("SELECT * FROM Message"), CursorType::ForwardOnly,
                                    LockType::ReadOnly);
    }
    [[nodiscard]] int Attempts(Operation operation) const { return Machine.Engine.Attempts(operation); }
};

// --- defaults and opening ---

TEST_F(DBTest, ANewDatabaseTriesThreeTimesWithPausesUpToOneSecondAndHasNoConnection) {
    EXPECT_EQ(Database.MaxRetryCount, 3);
    EXPECT_EQ(Database.MaxRetryInterval, 1000);
    EXPECT_FALSE(Database.IsError());
    EXPECT_EQ(Database.LastError(), QString());
    EXPECT_EQ(Database.Connection(), nullptr);
    EXPECT_FALSE(Database.IsConnected());
}

TEST_F(DBTest, OpeningHandsFileAndModeToTheEngineAndSetsTheTwoProperties) {
    Database.Filename = QStringLiteral("X:\\sms\\smsmessages.mdb");
    ASSERT_TRUE(Database.OpenDatabase(ReadShared));
    EXPECT_EQ(Machine.Engine.Filenames, QStringList{QStringLiteral("X:\\sms\\smsmessages.mdb")});
    EXPECT_EQ(Machine.Engine.Modes, QList<qint32>{17});
    EXPECT_EQ(Machine.Engine.Properties.value(QStringLiteral("Jet OLEDB:Max Buffer Size")), QVariant(500));
    EXPECT_EQ(Machine.Engine.Properties.value(QStringLiteral("Jet OLEDB:Flush Transaction Timeout")),
              QVariant(2000));
    EXPECT_TRUE(Database.IsConnected());
    EXPECT_NE(Database.Connection(), nullptr);
}

TEST_F(DBTest, AfterASuccessfulOpenLastErrorIsTheDigitZeroAndEmptyAfterResetError) {
    Open();
    EXPECT_EQ(Database.LastError(), QStringLiteral("0"));
    EXPECT_FALSE(Database.IsError());
    Database.ResetError();
    EXPECT_EQ(Database.LastError(), QString());
}

TEST_F(DBTest, APropertyThatTheEngineRefusesDoesNotFailTheOpen) {
    Machine.Engine.Fail(Operation::SetProperty, 3265);
    EXPECT_TRUE(Database.OpenDatabase(ReadShared));
    EXPECT_EQ(Attempts(Operation::SetProperty), 2);
    EXPECT_EQ(Database.LastError(), QStringLiteral("0"));
}

TEST_F(DBTest, AnOpenThatWorksOnTheSecondAttemptSaysZeroAndStillHasTheErrorFlag) {
    Machine.Engine.Fail(Operation::Open, 3045, 1, 1);
    EXPECT_TRUE(Database.OpenDatabase(ReadShared));
    EXPECT_EQ(Database.LastError(), QStringLiteral("0"));
    EXPECT_TRUE(Database.IsError());
    EXPECT_EQ(Machine.Time.Sleeps.size(), 1);
}

TEST_F(DBTest, AMissingFileIsTriedOnceWithoutAWait) {
    Machine.Engine.Fail(Operation::Open, 3024);
    EXPECT_FALSE(Database.OpenDatabase(ReadShared));
    EXPECT_EQ(Attempts(Operation::Open), 1);
    EXPECT_TRUE(Machine.Time.Sleeps.isEmpty());
    EXPECT_TRUE(Machine.Pump.Calls.isEmpty());
    EXPECT_EQ(Database.LastError(), QStringLiteral("GE:0x80004005, NE:0x0, SQL:3024 - fake failure 3024"));
    EXPECT_EQ(Database.Connection(), nullptr);
}

TEST_F(DBTest, AFileInUseGivesThreeAttemptsAndThreeWaits) {
    Machine.Engine.Fail(Operation::Open, 3045);
    EXPECT_FALSE(Database.OpenDatabase(ReadShared));
    EXPECT_EQ(Attempts(Operation::Open), 3);
    EXPECT_EQ(Machine.Time.Sleeps.size(), 3);
    EXPECT_EQ(Machine.Pump.Calls, (QList<int>{4, 3, 4, 3, 4, 3}));
    EXPECT_EQ(Database.LastError(), QStringLiteral("GE:0x80004005, NE:0x0, SQL:3045 - fake failure 3045"));
    EXPECT_TRUE(Database.IsError());
    EXPECT_EQ(Database.Connection(), nullptr);
    EXPECT_FALSE(Database.IsConnected());
}

TEST_F(DBTest, AnEngineThatStaysClosedIsAFailedOpen) {
    Machine.Engine.StaysClosed = true;
    EXPECT_FALSE(Database.OpenDatabase(ReadShared));
    EXPECT_EQ(Database.Connection(), nullptr);
    EXPECT_EQ(Database.LastError(), QString());
}

TEST_F(DBTest, OpeningAnOpenDatabaseClosesItFirst) {
    Open();
    Machine.Engine.OnAttempt = [&](Operation operation) {
        if (operation == Operation::Open) {
            EXPECT_EQ(Machine.Engine.OpenConnections, 0);
        }
    };
    Open();
    EXPECT_EQ(Attempts(Operation::Close), 1);
    EXPECT_EQ(Machine.Engine.OpenConnections, 1);
}

TEST_F(DBTest, ACloseThatFailsWhileReopeningDoesNotCountAgainstTheOpen) {
    Open();
    Machine.Engine.Fail(Operation::Close, 3704);
    EXPECT_TRUE(Database.OpenDatabase(ReadShared));
    EXPECT_FALSE(Database.IsError());
    EXPECT_EQ(Machine.Engine.OpenConnections, 1);
}

TEST_F(DBTest, WithNoAttemptsAtAllOpenFailsAndExecuteSucceeds) {
    for (const qint16 count : {qint16{0}, qint16{-5}}) {
        Database.MaxRetryCount = 3;
        Open();
        Database.MaxRetryCount = count;
        EXPECT_TRUE(Database.Execute(AnySQL));
        EXPECT_EQ(Database.ExecuteRecordset(AnySQL), nullptr);
        EXPECT_EQ(Database.ExecuteRecordResult(AnySQL), 0);
        EXPECT_EQ(OpenRows(), nullptr);
        EXPECT_EQ(Database.DisconnectedSet(AnySQL), nullptr);
        EXPECT_TRUE(Machine.Engine.Statements.isEmpty());
        EXPECT_FALSE(Database.IsError());
        EXPECT_FALSE(Database.OpenDatabase(ReadShared));
        EXPECT_EQ(Database.Connection(), nullptr);
    }
}

// --- closing ---

TEST_F(DBTest, ClosingIsAlwaysFalseReleasesTheConnectionAndLeavesTheError) {
    Open();
    Machine.Engine.Fail(Operation::Execute, 3022);
    EXPECT_FALSE(Database.Execute(AnySQL));
    const QString error = Database.LastError();
    EXPECT_FALSE(Database.CloseDatabase());
    EXPECT_EQ(Database.Connection(), nullptr);
    EXPECT_EQ(Machine.Engine.OpenConnections, 0);
    EXPECT_TRUE(Database.IsError());
    EXPECT_EQ(Database.LastError(), error);
    EXPECT_FALSE(Database.CloseDatabase());
}

TEST_F(DBTest, DestructionClosesTheConnection) {
    {
        DB other(Machine.Services());
        ASSERT_TRUE(other.OpenDatabase(ReadShared));
        EXPECT_EQ(Machine.Engine.OpenConnections, 1);
    }
    EXPECT_EQ(Machine.Engine.OpenConnections, 0);
    EXPECT_EQ(Attempts(Operation::Close), 1);
}

TEST_F(DBTest, OpenAndCloseMayAlternateAnyNumberOfTimes) {
    for (int i = 0; i < 20; ++i) {
        Open();
        EXPECT_TRUE(Database.Execute(AnySQL));
        EXPECT_FALSE(Database.CloseDatabase());
    }
    EXPECT_EQ(Machine.Engine.OpenConnections, 0);
}

// --- statements ---

TEST_F(DBTest, StatementsOnAClosedDatabaseFailAtOnceAfterOneAttempt) {
    EXPECT_FALSE(Database.Execute(AnySQL));
    EXPECT_EQ(Database.LastError(), QStringLiteral("GE:0x800A0E78"));
    EXPECT_EQ(Database.ExecuteRecordset(AnySQL), nullptr);
    EXPECT_EQ(Database.ExecuteRecordResult(AnySQL), 0);
    EXPECT_EQ(OpenRows(), nullptr);
    EXPECT_EQ(Database.DisconnectedSet(AnySQL), nullptr);
    EXPECT_TRUE(Database.IsError());
    EXPECT_FALSE(Database.BeginTransaction());
    EXPECT_FALSE(Database.CommitTransaction());
    Database.RollbackTransaction();
    EXPECT_TRUE(Machine.Time.Sleeps.isEmpty());
    EXPECT_TRUE(Machine.Pump.Calls.isEmpty());
}

TEST_F(DBTest, ExecuteThatWorksIsTrueWithoutAnError) {
    Open();
    EXPECT_TRUE(Database.Execute(AnySQL));
    EXPECT_EQ(Machine.Engine.Statements, QStringList{AnySQL});
    EXPECT_FALSE(Database.IsError());
    EXPECT_EQ(Database.LastError(), QString());
}

TEST_F(DBTest, ExecuteWithAFailureThatIsNotTransientIsFalseAfterOneAttempt) {
    Open();
    Machine.Engine.Fail(Operation::Execute, 3022);
    EXPECT_FALSE(Database.Execute(AnySQL));
    EXPECT_EQ(Attempts(Operation::Execute), 1);
    EXPECT_TRUE(Database.IsError());
    EXPECT_TRUE(Database.LastError().contains(QStringLiteral("SQL:3022")));
}

TEST_F(DBTest, ExecuteWhoseAttemptsRunOutOnLocksIsTrueWithTheErrorStanding) {
    Open();
    Machine.Engine.Fail(Operation::Execute, 3218);
    EXPECT_TRUE(Database.Execute(AnySQL));
    EXPECT_EQ(Attempts(Operation::Execute), 3);
    EXPECT_EQ(Machine.Time.Sleeps.size(), 3);
    EXPECT_TRUE(Database.IsError());
    EXPECT_EQ(Database.LastError(), QStringLiteral("GE:0x80004005, NE:0x0, SQL:3218 - fake failure 3218"));
}

TEST_F(DBTest, ExecuteThatEndsOnAnotherFailureAfterALockIsFalse) {
    Open();
    Machine.Engine.Fail(Operation::Execute, 3260, 1, 1);
    Machine.Engine.Fail(Operation::Execute, 3026, 2, 2);
    EXPECT_FALSE(Database.Execute(AnySQL));
    EXPECT_EQ(Attempts(Operation::Execute), 2);
    EXPECT_TRUE(Database.LastError().contains(QStringLiteral("SQL:3026")));
}

TEST_F(DBTest, ASecondAttemptThatWorksLeavesTheErrorOfTheFirst) {
    Open();
    Machine.Engine.Fail(Operation::Execute, 3218, 1, 1);
    EXPECT_TRUE(Database.Execute(AnySQL));
    EXPECT_EQ(Attempts(Operation::Execute), 2);
    EXPECT_TRUE(Database.IsError());
    EXPECT_TRUE(Database.LastError().contains(QStringLiteral("SQL:3218")));
}

TEST_F(DBTest, TheLastAttemptMayStillSucceed) {
    Open();
    Machine.Engine.Fail(Operation::Execute, 3218, 1, 2);
    Machine.Engine.SetRowsAffected(QStringLiteral("UPDATE"), 7);
    EXPECT_EQ(Database.ExecuteRecordResult(AnySQL), 7);
    EXPECT_EQ(Attempts(Operation::Execute), 3);
    EXPECT_EQ(Machine.Time.Sleeps.size(), 2);
}

TEST_F(DBTest, EachStatementBeginsWithoutTheErrorOfTheOneBefore) {
    Open();
    Machine.Engine.Fail(Operation::Execute, 3022, 1, 1);
    EXPECT_FALSE(Database.Execute(AnySQL));
    EXPECT_TRUE(Database.Execute(AnySQL));
    EXPECT_FALSE(Database.IsError());
    EXPECT_EQ(Database.LastError(), QString());
}

TEST_F(DBTest, ExecuteRecordsetGivesTheRowsOfTheAttemptThatWorkedOrNone) {
    Open();
    Machine.Engine.Serve(QStringLiteral("@@IDENTITY"), {{QStringLiteral("ID")}, {{qint64{12}}}});
    Machine.Engine.Fail(Operation::Execute, 3045, 1, 2);
    const auto rows = Database.ExecuteRecordset(QStringLiteral("SELECT @@IDENTITY AS ID"));
    ASSERT_NE(rows, nullptr);
    EXPECT_EQ(rows->Value(u"id"), QVariant(qint64{12}));

    Machine.Engine.Fail(Operation::Execute, 3045);
    EXPECT_EQ(Database.ExecuteRecordset(QStringLiteral("SELECT @@IDENTITY AS ID")), nullptr);
}

TEST_F(DBTest, ExecuteRecordResultIsZeroIfNoAttemptWorked) {
    Open();
    Machine.Engine.SetRowsAffected(QStringLiteral("UPDATE"), 7);
    Machine.Engine.Fail(Operation::Execute, 3045);
    EXPECT_EQ(Database.ExecuteRecordResult(AnySQL), 0);
    EXPECT_EQ(Attempts(Operation::Execute), 3);
}

TEST_F(DBTest, OpenDynasetPassesCursorAndLockAndIsTriedAgain) {
    Open();
    Machine.Engine.Fail(Operation::Recordset, 3008, 1, 1);
    const auto rows = Database.OpenDynaset(QStringLiteral("SELECT * FROM Contact"), CursorType::Dynamic,
                                           LockType::Optimistic);
    EXPECT_NE(rows, nullptr);
    EXPECT_EQ(Machine.Engine.Cursors, (QList{CursorType::Dynamic, CursorType::Dynamic}));
    EXPECT_EQ(Machine.Engine.Locks, (QList{LockType::Optimistic, LockType::Optimistic}));
}

TEST_F(DBTest, OpenDynasetIsNoneAfterEveryKindOfFailure) {
    Open();
    Machine.Engine.Fail(Operation::Recordset, 3078, 1, 1);
    EXPECT_EQ(OpenRows(), nullptr);
    EXPECT_EQ(Attempts(Operation::Recordset), 1);
    Machine.Engine.Fail(Operation::Recordset, 3045);
    EXPECT_EQ(OpenRows(), nullptr);
    EXPECT_EQ(Attempts(Operation::Recordset), 4);
}

TEST_F(DBTest, ADisconnectedSetIsStaticBatchOptimisticAndReadableWithoutTheConnection) {
    Open();
    Machine.Engine.Serve(QStringLiteral("System"),
                         {{QStringLiteral("sysSMSMaxMessageSize")}, {{qint64{459}}}});
    const auto rows = Database.DisconnectedSet(QStringLiteral("SELECT * FROM System"));
    ASSERT_NE(rows, nullptr);
    EXPECT_EQ(Machine.Engine.Cursors, QList{CursorType::Static});
    EXPECT_EQ(Machine.Engine.Locks, QList{LockType::BatchOptimistic});
    Database.CloseDatabase();
    EXPECT_EQ(rows->Value(u"sysSMSMaxMessageSize"), QVariant(qint64{459}));
}

// --- which failures are tried again ---

class TransientNumberTest : public ::testing::TestWithParam<int> {};

TEST_P(TransientNumberTest, IsTriedThreeTimes) {
    FakeDatabase machine;
    DB database(machine.Services());
    ASSERT_TRUE(database.OpenDatabase(ReadShared));
    machine.Engine.Fail(Operation::Execute, GetParam());
    EXPECT_EQ(database.ExecuteRecordset(AnySQL), nullptr);
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
    EXPECT_FALSE(database.Execute(AnySQL));
    EXPECT_EQ(machine.Engine.Attempts(Operation::Execute), 1);
    EXPECT_TRUE(machine.Time.Sleeps.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(OtherFailures, LastingNumberTest,
                         ::testing::Values(0, 3007, 3022, 3024, 3026, 3027, 3044, 3049, 3061, 3075, 3078,
                                           3134, 3141, 3144, 3190, 3219, 3259, 3263, 3314, 3315, 3343, 3625));

TEST_F(DBTest, AnOutcomeThatNobodyKnowsIsNotTriedAgainSoThatNothingIsSentTwice) {
    Open();
    Machine.Engine.Fail(Operation::Execute, 3146);
    EXPECT_FALSE(Database.Execute(AnySQL));
    EXPECT_EQ(Attempts(Operation::Execute), 1);
}

TEST_F(DBTest, ASQLStateThatIsNotNumericReadsAsZeroAndIsNotTransient) {
    Open();
    Machine.Engine.SetSQLState(QStringLiteral("HY3045"));
    Machine.Engine.Fail(Operation::Execute, 3045);
    EXPECT_FALSE(Database.Execute(AnySQL));
    EXPECT_EQ(Attempts(Operation::Execute), 1);
    EXPECT_EQ(Database.LastError(), QStringLiteral("GE:0x80004005, NE:0x0, SQL:HY3045 - fake failure 3045"));
}

TEST_F(DBTest, TheLeadingNumberOfTheSQLStateDecides) {
    Open();
    Machine.Engine.SetSQLState(QStringLiteral("3045 (S1000)"));
    Machine.Engine.Fail(Operation::Execute, 9999);
    EXPECT_TRUE(Database.Execute(AnySQL));
    EXPECT_EQ(Attempts(Operation::Execute), 3);
}

TEST_F(DBTest, AFailureWithoutAnItemInTheCollectionIsNotTransientAndShowsItsOwnDescription) {
    Open();
    Machine.Engine.FailWithoutItem(Operation::Execute, static_cast<qint32>(0x800A0E7DU));
    EXPECT_FALSE(Database.Execute(AnySQL));
    EXPECT_EQ(Attempts(Operation::Execute), 1);
    EXPECT_EQ(Database.LastError(), QStringLiteral("GE:0x800A0E7D, fake failure"));
}

TEST_F(DBTest, WhateverIsThrownStaysInside) {
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

TEST_F(DBTest, AnEventThatThrowsInsideAWaitStaysInside) {
    Open();
    Machine.Pump.OnProcess = [](int) { throw std::runtime_error("handler"); };
    Machine.Engine.Fail(Operation::Execute, 3045);
    EXPECT_TRUE(Database.Execute(AnySQL));
    EXPECT_EQ(Machine.Time.Sleeps.size(), 3);
}

// --- the error text ---

TEST_F(DBTest, HexadecimalNumbersAreInUpperCaseWithoutLeadingZeros) {
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

TEST_F(DBTest, RecordErrorWithNothingPendingSetsTheFlagAndNamesZero) {
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

TEST_F(DBTest, ThePausesLieBetweenTheirMinimumAndTheIntervalAtAnyTimeOfDay) {
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

TEST_F(DBTest, TheRandomPauseComesFromTheTimeOfDay) {
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

TEST_F(DBTest, AnIntervalBelowTheMinimumGivesTheMinimumPlusNoneOrOneMillisecond) {
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

TEST_F(DBTest, AttemptsBeyondTheThirdPauseLikeTheThird) {
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

TEST_F(DBTest, EventsRunFourTimesBeforeThePauseAndThreeTimesBehindIt) {
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

TEST_F(DBTest, ADatabaseThatIsClosedDuringAWaitEndsTheStatementWithoutHarm) {
    Open();
    Machine.Pump.OnProcess = [&](int) { Database.CloseDatabase(); };
    Machine.Engine.Fail(Operation::Execute, 3045);
    EXPECT_FALSE(Database.Execute(AnySQL));
    EXPECT_EQ(Attempts(Operation::Execute), 1);
    EXPECT_EQ(Database.LastError(), QStringLiteral("GE:0x800A0E78"));
}

TEST_F(DBTest, AStatementInsideTheWaitOfAnotherDoesNotDisturbIt) {
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

// --- transactions, tables, file names ---

TEST_F(DBTest, TransactionsAreTriedOnceAndOnlyACommitRecordsItsError) {
    Open();
    EXPECT_TRUE(Database.BeginTransaction());
    EXPECT_TRUE(Database.CommitTransaction());
    Machine.Engine.Fail(Operation::Begin, 3045);
    Machine.Engine.Fail(Operation::Commit, 3045);
    Machine.Engine.Fail(Operation::Rollback, 3045);
    EXPECT_FALSE(Database.BeginTransaction());
    EXPECT_FALSE(Database.IsError());
    Database.RollbackTransaction();
    EXPECT_FALSE(Database.IsError());
    EXPECT_FALSE(Database.CommitTransaction());
    EXPECT_TRUE(Database.IsError());
    EXPECT_TRUE(Database.LastError().contains(QStringLiteral("SQL:3045")));
    EXPECT_EQ(Attempts(Operation::Begin), 2);
    EXPECT_EQ(Attempts(Operation::Commit), 2);
    EXPECT_EQ(Attempts(Operation::Rollback), 1);
    EXPECT_TRUE(Machine.Time.Sleeps.isEmpty());
}

TEST_F(DBTest, BeginIsNotRefusedForAnErrorOfAnEarlierStatement) {
    Open();
    Machine.Engine.Fail(Operation::Execute, 3022, 1, 1);
    EXPECT_FALSE(Database.Execute(AnySQL));
    EXPECT_TRUE(Database.BeginTransaction());
}

TEST_F(DBTest, TableNamesAreNoneWithoutAConnectionOrAfterAFailure) {
    Machine.Engine.Tables = {QStringLiteral("Message"), QStringLiteral("System")};
    EXPECT_FALSE(Database.TableNames().has_value());
    Open();
    EXPECT_EQ(Database.TableNames(), Machine.Engine.Tables);
    Machine.Engine.Fail(Operation::TableNames, 3045);
    EXPECT_FALSE(Database.TableNames().has_value());
}

TEST_F(DBTest, TheDriveIsTheLetterOfAMappedPathOnly) {
    const auto drive = [&](const char16_t* filename) {
        Database.Filename = QString::fromUtf16(filename);
        return Database.GetDrive();
    };
    EXPECT_EQ(drive(u"X:\\sms\\smsmessages.mdb"), QStringLiteral("X:"));
    EXPECT_EQ(drive(u"x:"), QStringLiteral("x:"));
    EXPECT_EQ(drive(u"\\\\server\\share\\x.mdb"), QString());
    EXPECT_EQ(drive(u"smsmessages.mdb"), QString());
    EXPECT_EQ(drive(u"/mnt/office/x.mdb"), QString());
    EXPECT_EQ(drive(u":"), QString());
    EXPECT_EQ(drive(u""), QString());
}

TEST_F(DBTest, FolderAndFilenamePartAtTheLastSeparatorOfEitherKind) {
    const auto parts = [&](const char16_t* filename) {
        Database.Filename = QString::fromUtf16(filename);
        return QPair{Database.GetFolder(), Database.GetFilename()};
    };
    using Parts = QPair<QString, QString>;
    EXPECT_EQ(parts(u"C:\\data\\smscontacts.mdb"),
              Parts(QStringLiteral("C:\\data"), QStringLiteral("smscontacts.mdb")));
    EXPECT_EQ(parts(u"/mnt/data/smscontacts.mdb"),
              Parts(QStringLiteral("/mnt/data"), QStringLiteral("smscontacts.mdb")));
    EXPECT_EQ(parts(u"/mnt/data\\x.mdb"), Parts(QStringLiteral("/mnt/data"), QStringLiteral("x.mdb")));
    EXPECT_EQ(parts(u"x.mdb"), Parts(QStringLiteral("x.mdb"), QStringLiteral("x.mdb")));
    EXPECT_EQ(parts(u"\\\\server\\share\\x.mdb"),
              Parts(QStringLiteral("\\\\server\\share"), QStringLiteral("x.mdb")));
    EXPECT_EQ(parts(u"C:\\data\\"), Parts(QStringLiteral("C:\\data"), QString()));
    EXPECT_EQ(parts(u""), Parts(QString(), QString()));
}

TEST_F(DBTest, RestoringADriveIsPassedToTheMachineAndAlwaysFalse) {
    EXPECT_FALSE(Database.ResetNetworkDrive(0, QStringLiteral("X:")));
    EXPECT_EQ(Machine.Drives.Restored, QStringList{QStringLiteral("X:")});
}

TEST_F(DBTest, FileExistsFindsFilesButNoFolders) {
    const QString folder = Machine.Folders.Root.path();
    QFile file(folder + QStringLiteral("/here.mdb"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    const auto exists = [&](const QString& filename) {
        Database.Filename = filename;
        return Database.FileExists();
    };
    EXPECT_TRUE(exists(folder + QStringLiteral("/here.mdb")));
    EXPECT_TRUE(exists(folder + QStringLiteral("\\here.mdb")));
    EXPECT_FALSE(exists(folder + QStringLiteral("/gone.mdb")));
    EXPECT_FALSE(exists(folder));
    EXPECT_FALSE(exists(QString()));
}

}  // namespace
