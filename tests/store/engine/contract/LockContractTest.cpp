#include "store/engine/contract/ContractTest.h"

#include <algorithm>
#include <numeric>

namespace {

constexpr int EngineWait = 5000;  // ms
constexpr int LongestPause = 10;  // ms

class LockContractTest : public ContractTest {
protected:
    /// That the engine gave up in its time, in pauses of 1 to 10 ms that are not all alike.
    void ExpectOneFullWait() const {
        const QList<int>& pauses = Context->Time.Sleeps;
        ASSERT_FALSE(pauses.isEmpty());
        const auto [least, most] = std::minmax_element(pauses.begin(), pauses.end());
        EXPECT_GE(*least, 1);
        EXPECT_LE(*most, LongestPause);
        EXPECT_LT(*least, *most);
        const int total = std::accumulate(pauses.begin(), pauses.end(), 0);
        EXPECT_GE(total, EngineWait);
        EXPECT_LT(total, EngineWait + LongestPause);
    }
    const QString Insert = QStringLiteral("INSERT INTO Message (msgText) VALUES ('x')");
    const QString Count = QStringLiteral("SELECT Count(*) FROM Message");
    const QString Identity = QStringLiteral("SELECT @@IDENTITY AS ID");
};

TEST_P(LockContractTest, AWriterWaitsFiveSecondsForAnotherProcessAndReportsATransientLock) {
    auto connection = Outbox();
    const auto lock = Context->LockForWriting();
    Context->Time.Sleeps.clear();
    const int number = FailureOf(*connection, Insert);
    EXPECT_EQ(number, engine::Number::LockedByAnother);
    EXPECT_TRUE(IsTransient(number));
    ExpectOneFullWait();
}

TEST_P(LockContractTest, AnInsertThatAReaderKeepsFromItsEndLeavesTheIdentityAsItWas) {
    auto connection = Outbox();
    for (const int identity : {0, 1}) {
        auto lock = Context->LockForReading();
        const int number = FailureOf(*connection, Insert);
        EXPECT_TRUE(IsTransient(number)) << number;
        EXPECT_EQ(Value(*connection, Identity), QVariant(identity));
        lock.reset();
        EXPECT_EQ(Value(*connection, Count), QVariant(identity)) << "nothing is written";
        AddMessage(*connection, QStringLiteral("next"));
        EXPECT_EQ(Value(*connection, Identity), QVariant(identity + 1));
    }
}

TEST_P(LockContractTest, AWriterGoesOnAsSoonAsTheLockIsGone) {
    auto connection = Outbox();
    auto lock = Context->LockForWriting();
    Context->Time.OnSleep = [&](int) {
        if (Context->Time.Sleeps.size() == 3) {
            lock.reset();
        }
    };
    EXPECT_EQ(Execute(*connection, Insert), 1);
    EXPECT_EQ(Context->Time.Sleeps.size(), 3);
}

TEST_P(LockContractTest, AReaderDoesNotWaitForAWriterThatHasNotCommitted) {
    auto connection = Outbox();
    const auto lock = Context->LockForWriting();
    Context->Time.Sleeps.clear();
    EXPECT_EQ(Value(*connection, Count), QVariant(0));
    EXPECT_TRUE(Context->Time.Sleeps.isEmpty());
}

TEST_P(LockContractTest, OpeningAFileThatAnotherHoldsAloneIs3045AfterOneWait) {
    const auto lock = Context->LockForAll();
    Context->Time.Sleeps.clear();
    EXPECT_EQ(OpenFailure(Context->Outbox()), engine::Number::FileInUse);
    EXPECT_TRUE(IsTransient(engine::Number::FileInUse));
    ExpectOneFullWait();
}

TEST_P(LockContractTest, ReadingWhatAnotherHoldsAloneWaitsAndReportsATransientLock) {
    auto connection = Outbox();
    EXPECT_EQ(Value(*connection, Count), QVariant(0));
    const auto lock = Context->LockForAll();
    Context->Time.Sleeps.clear();
    const int number = FailureOf(*connection, Count);
    EXPECT_TRUE(IsTransient(number)) << number;
    ExpectOneFullWait();
}

TEST_P(LockContractTest, AFailedWaitLeavesTheConnectionUsable) {
    auto connection = Outbox();
    auto lock = Context->LockForWriting();
    EXPECT_NE(FailureOf(*connection, Insert), 0);
    lock.reset();
    EXPECT_EQ(Execute(*connection, Insert), 1);
    EXPECT_EQ(Value(*connection, Count), QVariant(1));
}

TEST_P(LockContractTest, EachStatementHasAWaitOfItsOwn) {
    auto connection = Outbox();
    const auto lock = Context->LockForWriting();
    EXPECT_NE(FailureOf(*connection, Insert), 0);
    Context->Time.Sleeps.clear();
    EXPECT_NE(FailureOf(*connection, Insert), 0);
    ExpectOneFullWait();
}

TEST_P(LockContractTest, OpenRowsHoldNoLock) {
    auto reader = Outbox();
    AddMessage(*reader, QStringLiteral("first"));
    const auto rows = Rows(*reader, QStringLiteral("SELECT * FROM Message"));
    auto writer = Outbox();
    Context->Time.Sleeps.clear();
    EXPECT_EQ(Execute(*writer, QStringLiteral("UPDATE Message SET msgText = 'second'")), 1);
    EXPECT_TRUE(Context->Time.Sleeps.isEmpty());
    EXPECT_EQ(rows->Value(u"msgText"), QVariant(QStringLiteral("first")));
}

TEST_P(LockContractTest, ATransactionTakesItsWriteLockAtTheStart) {
    auto first = Outbox();
    auto second = Outbox();
    first->BeginTrans();
    EXPECT_TRUE(IsTransient(FailureOf(*second, [&] { second->BeginTrans(); })));
    first->RollbackTrans();
    EXPECT_EQ(FailureOf(*second, [&] { second->BeginTrans(); }), 0);
    second->RollbackTrans();
}

TEST_P(LockContractTest, ATransactionThatCouldNotBeginIsNone) {
    auto connection = Outbox();
    auto lock = Context->LockForWriting();
    EXPECT_NE(FailureOf(*connection, [&] { connection->BeginTrans(); }), 0);
    lock.reset();
    EXPECT_EQ(Execute(*connection, Insert), 1);
    EXPECT_EQ(Value(*Outbox(), Count), QVariant(1));
}

TEST_P(LockContractTest, OpeningAFileBesideAnOpenTransactionLeavesItsLocks) {
    auto first = Outbox();
    first->BeginTrans();
    EXPECT_EQ(Execute(*first, Insert), 1);
    Outbox().reset();
    EXPECT_THROW(Q_UNUSED(Context->LockForWriting()), std::runtime_error);
    first->CommitTrans();
    EXPECT_EQ(Value(*Outbox(), Count), QVariant(1));
}

INSTANTIATE_TEST_SUITE_P(Engines, LockContractTest, Engines(), EngineName);

}  // namespace
