#include "support/FakeEngine.h"

#include "support/Printing.h"

#include <gtest/gtest.h>

namespace {

using Operation = FakeEngine::Operation;

QString StateOf(const std::function<void()>& step) {
    try {
        step();
    } catch (const engine::Failure& failure) {
        return failure.Item().SQLState;
    }
    return {};
}

TEST(FakeEngine, FailsOnTheAttemptsThatItWasToldAndCountsThemAll) {
    FakeEngine fake;
    fake.Fail(Operation::Open, 3045, 1, 2);
    auto connection = fake.NewConnection();
    const auto open = [&] { connection->Open(QStringLiteral("x.mdb")); };
    EXPECT_EQ(StateOf(open), QStringLiteral("3045"));
    EXPECT_EQ(connection->Errors().value(0).SQLState, QStringLiteral("3045"));
    EXPECT_EQ(StateOf(open), QStringLiteral("3045"));
    EXPECT_EQ(StateOf(open), QString());
    EXPECT_TRUE(connection->Errors().isEmpty());
    EXPECT_EQ(fake.Attempts(Operation::Open), 3);
    EXPECT_EQ(fake.OpenConnections, 1);
}

TEST(FakeEngine, ServesPreparedRowsAndCounts) {
    FakeEngine fake;
    fake.Serve(QStringLiteral("FROM System"), {{QStringLiteral("sysSMSMaxMessageSize")}, {{459}}});
    fake.SetRowsAffected(QStringLiteral("DELETE"), 7);
    auto connection = fake.NewConnection();
    connection->Open(QStringLiteral("x.mdb"));
    const auto rows = connection->OpenRecordset(QStringLiteral("select * from system"),
                                                engine::CursorType::ForwardOnly, engine::LockType::ReadOnly);
    EXPECT_EQ(rows->Value(u"SYSSMSMaxMessageSize"), QVariant(459));
    rows->MoveNext();
    EXPECT_TRUE(rows->EndOfFile());
    qint64 affected = 0;
    EXPECT_EQ(connection->Execute(QStringLiteral("DELETE FROM x"), &affected), nullptr);
    EXPECT_EQ(affected, 7);
    EXPECT_EQ(fake.Statements.size(), 2);
}

TEST(FakeEngine, MoveNextWritesWhatWasChangedAndAFailureGivesItUp) {
    FakeEngine fake;
    fake.Serve(QStringLiteral("FROM Contact"), {{QStringLiteral("cntNote")}, {{1}, {2}}});
    fake.Fail(Operation::Update, 3197, 1, 1);
    auto connection = fake.NewConnection();
    connection->Open(QStringLiteral("x.mdb"));
    const auto rows = connection->OpenRecordset(QStringLiteral("SELECT * FROM Contact"),
                                                engine::CursorType::Dynamic, engine::LockType::Optimistic);
    rows->SetValue(u"cntNote", 7);
    EXPECT_EQ(rows->Value(u"cntNote"), QVariant(7));
    EXPECT_EQ(StateOf([&] { rows->MoveNext(); }), QStringLiteral("3197"));
    EXPECT_EQ(rows->Value(u"cntNote"), QVariant(1));
    rows->MoveNext();
    rows->SetValue(u"cntNote", 8);
    rows->MoveNext();
    EXPECT_EQ(fake.Updates, (QList<QVariantMap>{{{QStringLiteral("cntNote"), 8}}}));
}

}  // namespace
