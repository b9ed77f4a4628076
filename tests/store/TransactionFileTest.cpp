#include "support/RawDatabase.h"
#include "support/TempOffice.h"
#include "support/UnreadableDisk.h"

#include <gtest/gtest.h>

namespace {

/// Transactions that a failure rolls back behind the back of whoever began them.
class TransactionFileTest : public ::testing::Test {
protected:
    UnreadableDisk Disk;
    TempOffice Office;

    TransactionFileTest() {
        Office.AddMessageRow({{QStringLiteral("msgText"), QStringLiteral("one")}});
        Office.AddMessageRow({{QStringLiteral("msgText"), QStringLiteral("two")}});
        EXPECT_TRUE(Office.OutboxDB().OpenDatabase(engine::Mode::ReadWriteShared));
        Office.Time.Sleeps.clear();
    }
    [[nodiscard]] DB& Outbox() { return Office.OutboxDB(); }
    [[nodiscard]] static QString Take(int id) {
        return QStringLiteral("UPDATE Message SET msgStatus = 1 WHERE msgID = %1").arg(id);
    }
    [[nodiscard]] QList<int> Statuses() {
        QList<int> statuses;
        for (const QVariantMap& row : Office.MessageRows()) {
            statuses.append(row.value(QStringLiteral("msgStatus")).toInt());
        }
        return statuses;
    }
    [[nodiscard]] bool HasLost() { return Outbox().LastError().contains(QStringLiteral("SQL:3034")); }
};

TEST_F(TransactionFileTest, AStatementThatTakesTheTransactionAlongIsNotTriedAgainOutsideOfIt) {
    ASSERT_TRUE(Outbox().BeginTransaction());
    Disk.Failures = 1;
    EXPECT_EQ(Outbox().ExecuteRecordResult(Take(1)), 0);
    EXPECT_EQ(Disk.Failures, 0);
    EXPECT_TRUE(HasLost()) << Outbox().LastError().toStdString();
    EXPECT_TRUE(Office.Time.Sleeps.isEmpty());
    EXPECT_FALSE(Outbox().Execute(Take(2))) << "nothing of the transaction may go on alone";
    EXPECT_TRUE(HasLost());
    EXPECT_EQ(Outbox().ExecuteRecordset(QStringLiteral("SELECT * FROM System")), nullptr);
    EXPECT_FALSE(Outbox().CommitTransaction());
    EXPECT_EQ(Statuses(), (QList<int>{0, 0}));
}

TEST_F(TransactionFileTest, AfterARollbackOrAFailedCommitTheConnectionGoesOn) {
    for (const bool isRolledBack : {true, false}) {
        ASSERT_TRUE(Outbox().BeginTransaction());
        Disk.Failures = 1;
        EXPECT_EQ(Outbox().ExecuteRecordResult(Take(1)), 0);
        if (isRolledBack) {
            Outbox().RollbackTransaction();
        } else {
            EXPECT_FALSE(Outbox().CommitTransaction());
        }
        EXPECT_EQ(Outbox().ExecuteRecordResult(QStringLiteral("UPDATE Message SET msgStatus = 0")), 2);
        Outbox().CloseDatabase();
        ASSERT_TRUE(Outbox().OpenDatabase(engine::Mode::ReadWriteShared));
    }
}

TEST_F(TransactionFileTest, ARowSetOfALostTransactionIsNotWrittenEither) {
    ASSERT_TRUE(Outbox().BeginTransaction());
    const auto rows = Outbox().OpenDynaset(QStringLiteral("SELECT * FROM Message"),
                                           engine::CursorType::Dynamic, engine::LockType::Optimistic);
    ASSERT_NE(rows, nullptr);
    Outbox().Connection()->Execute(QStringLiteral("UPDATE System SET sysSMSMaxMessageSize = 918"), nullptr);
    Disk.Failures = 1;
    EXPECT_EQ(Outbox().ExecuteRecordset(QStringLiteral("SELECT * FROM qry_Canceled_Messages")), nullptr);
    EXPECT_TRUE(HasLost()) << Outbox().LastError().toStdString();
    rows->SetValue(u"msgStatus", 1);
    EXPECT_THROW(rows->Update(), engine::Failure);
    Outbox().RollbackTransaction();
    EXPECT_EQ(Statuses(), (QList<int>{0, 0}));
}

TEST_F(TransactionFileTest, OutsideATransactionAReadingThatFailedOnceIsTriedAgain) {
    Disk.Failures = 1;
    EXPECT_EQ(Outbox().ExecuteRecordResult(Take(1)), 1);
    EXPECT_FALSE(Office.Time.Sleeps.isEmpty());
    EXPECT_EQ(Statuses(), (QList<int>{1, 0}));
}

}  // namespace
