#include "store/DBFixture.h"

#include <gtest/gtest.h>

using engine::CursorType;
using engine::LockType;
using Operation = FakeEngine::Operation;

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
