#include "store/engine/contract/ContractTest.h"

#include <QFile>
#include <QFileInfo>

namespace {

using engine::State;

class OpenContractTest : public ContractTest {
protected:
    void AddMessages(int count, const QString& text) const {
        auto connection = Outbox();
        connection->BeginTrans();
        for (int i = 0; i < count; ++i) {
            AddMessage(*connection, text);
        }
        connection->CommitTrans();
    }
};

TEST_P(OpenContractTest, AConnectionIsOpenFromOpenToClose) {
    auto connection = Context->Factory().NewConnection();
    EXPECT_EQ(connection->ConnectionState(), State::Closed);
    connection->Open(Context->Outbox());
    EXPECT_EQ(connection->ConnectionState(), State::Open);
    connection->Close();
    EXPECT_EQ(connection->ConnectionState(), State::Closed);
    connection->Open(Context->Phonebook());
    EXPECT_EQ(connection->ConnectionState(), State::Open);
}

TEST_P(OpenContractTest, AMissingFileIs3024AndIsNotMade) {
    EXPECT_EQ(OpenFailure(Context->Missing()), engine::Number::NoSuchFile);
    EXPECT_FALSE(QFile::exists(Context->Missing()));
    EXPECT_FALSE(IsTransient(engine::Number::NoSuchFile));
}

TEST_P(OpenContractTest, AnEmptyFileNameIs3024) {
    EXPECT_EQ(OpenFailure(QString()), engine::Number::NoSuchFile);
}

TEST_P(OpenContractTest, AFolderIsNoDatabase) {
    EXPECT_EQ(OpenFailure(QFileInfo(Context->Outbox()).path()), engine::Number::NotADatabase);
}

TEST_P(OpenContractTest, BackslashesSeparateFoldersToo) {
    EXPECT_EQ(OpenFailure(Context->Outbox().replace(u'/', u'\\')), 0);
}

TEST_P(OpenContractTest, OpeningAnOpenConnectionFailsAndLeavesItOpen) {
    auto connection = Outbox();
    EXPECT_THROW(connection->Open(Context->Outbox()), engine::Failure);
    EXPECT_EQ(connection->ConnectionState(), State::Open);
    AddMessage(*connection, QStringLiteral("still open"));
}

TEST_P(OpenContractTest, AClosedConnectionFailsWithoutAnEngineErrorAndIsNotTransient) {
    auto connection = Context->Factory().NewConnection();
    const auto expectClosed = [&](auto step) {
        try {
            step();
            ADD_FAILURE() << "did not fail";
        } catch (const engine::Failure& failure) {
            EXPECT_NE(failure.Number(), engine::GenericFailure);
            EXPECT_FALSE(engine::IsTransientError(failure.Number(), 0, failure.Item().SQLState));
            EXPECT_TRUE(connection->Errors().isEmpty());
        }
    };
    expectClosed([&] { Q_UNUSED(connection->Execute(QStringLiteral("SELECT * FROM System"), nullptr)); });
    expectClosed([&] { Q_UNUSED(Rows(*connection, QStringLiteral("SELECT * FROM System"))); });
    expectClosed([&] { connection->BeginTrans(); });
    expectClosed([&] { connection->CommitTrans(); });
    expectClosed([&] { connection->RollbackTrans(); });
    expectClosed([&] { Q_UNUSED(connection->TableNames()); });
    expectClosed([&] { connection->Close(); });
}

TEST_P(OpenContractTest, EachCallClearsTheErrorCollection) {
    auto connection = Outbox();
    EXPECT_EQ(FailureOf(*connection, QStringLiteral("SELECT * FROM Nothing")), engine::Number::NoSuchTable);
    EXPECT_EQ(connection->Errors().size(), 1);
    EXPECT_EQ(FailureOf(*connection, QStringLiteral("SELECT * FROM System")), 0);
    EXPECT_TRUE(connection->Errors().isEmpty());
}

TEST_P(OpenContractTest, TableNamesHoldTablesAndSavedQueriesAndNothingElse) {
    QStringList outbox = Outbox()->TableNames();
    outbox.sort();
    EXPECT_EQ(outbox, QStringList({QStringLiteral("Message"), QStringLiteral("System"),
                                   QStringLiteral("qry_Canceled_Messages"),
                                   QStringLiteral("qry_Report_Message_Log")}));
    EXPECT_EQ(Phonebook()->TableNames().size(), 10);
}

TEST_P(OpenContractTest, PropertiesAreKeptWithoutRegardToCase) {
    auto connection = Outbox();
    connection->SetProperty(QStringLiteral("Jet OLEDB:Max Buffer Size"), 500);
    EXPECT_EQ(connection->Property(QStringLiteral("JET OLEDB:max buffer size")), QVariant(500));
    EXPECT_FALSE(connection->Property(QStringLiteral("Another")).isValid());
}

TEST_P(OpenContractTest, ACompactedCopyHoldsTheSameRows) {
    auto connection = Outbox();
    AddMessage(*connection, QStringLiteral("kept"));
    connection.reset();
    Context->Factory().CompactDatabase(Context->Outbox(), Context->Missing());
    auto copy = Connect(Context->Missing());
    EXPECT_EQ(Value(*copy, QStringLiteral("SELECT msgText FROM Message")), QVariant(QStringLiteral("kept")));
    EXPECT_EQ(copy->TableNames(), Outbox()->TableNames());
}

TEST_P(OpenContractTest, CompactingNeverOverwritesAFile) {
    const QByteArray before = Context->Bytes();
    EXPECT_THROW(Context->Factory().CompactDatabase(Context->Phonebook(), Context->Outbox()),
                 engine::Failure);
    EXPECT_EQ(Context->Bytes(), before);
}

TEST_P(OpenContractTest, CompactingWhatIsNotThereFails) {
    EXPECT_THROW(Context->Factory().CompactDatabase(Context->Missing(), Context->Missing() + u'2'),
                 engine::Failure);
    EXPECT_FALSE(QFile::exists(Context->Missing()));
    EXPECT_FALSE(QFile::exists(Context->Missing() + u'2'));
}

TEST_P(OpenContractTest, AReadOnlyFileCanBeReadAndWritingIs3027) {
    AddMessage(*Outbox(), QStringLiteral("before"));
    const auto readOnly = Context->MakeReadOnly();
    auto connection = Outbox();
    EXPECT_EQ(Value(*connection, QStringLiteral("SELECT msgText FROM Message")),
              QVariant(QStringLiteral("before")));
    EXPECT_EQ(FailureOf(*connection, QStringLiteral("UPDATE Message SET msgText = 'after'")),
              engine::Number::ReadOnly);
    EXPECT_EQ(FailureOf(*connection, QStringLiteral("DELETE FROM Message")), engine::Number::ReadOnly);
    EXPECT_EQ(FailureOf(*connection, QStringLiteral("INSERT INTO Message (msgText) VALUES ('x')")),
              engine::Number::ReadOnly);
    EXPECT_FALSE(IsTransient(engine::Number::ReadOnly));
    EXPECT_EQ(Value(*connection, QStringLiteral("SELECT msgText FROM Message")),
              QVariant(QStringLiteral("before")));
}

TEST_P(OpenContractTest, AFullDiskIs3026AndLosesNothing) {
    auto connection = Outbox();
    AddMessage(*connection, QStringLiteral("before"));
    const QString big(200000, u'x');
    {
        const auto full = Context->FillDisk();
        EXPECT_EQ(
            FailureOf(*connection, QStringLiteral("INSERT INTO Message (msgText) VALUES ('%1')").arg(big)),
            engine::Number::DiskFull);
        EXPECT_FALSE(IsTransient(engine::Number::DiskFull));
        EXPECT_EQ(Value(*connection, QStringLiteral("SELECT Count(*) FROM Message")), QVariant(1));
    }
    EXPECT_EQ(Execute(*connection, QStringLiteral("INSERT INTO Message (msgText) VALUES ('%1')").arg(big)),
              1);
    EXPECT_EQ(Value(*connection, QStringLiteral("SELECT Count(*) FROM Message")), QVariant(2));
}

TEST_P(OpenContractTest, AWriterThatDiesLeavesNothingOfItsChange) {
    AddMessages(50, QStringLiteral("before"));
    Context->DieWhileWriting(QStringLiteral("after"));
    auto connection = Outbox();
    EXPECT_EQ(Value(*connection, QStringLiteral("SELECT Count(*) FROM Message WHERE msgText = 'before'")),
              QVariant(50));
    AddMessage(*connection, QStringLiteral("later"));
}

TEST_P(OpenContractTest, ADamagedFileIsReportedAndNeverTouched) {
    AddMessages(200, QString(200, u'x'));
    Context->Damage();
    const QByteArray damaged = Context->Bytes();
    auto connection = Context->Factory().NewConnection();
    const int number = FailureOf(*connection, [&] {
        connection->Open(Context->Outbox());
        Q_UNUSED(Rows(*connection, QStringLiteral("SELECT msgText FROM Message")));
    });
    EXPECT_TRUE(number == engine::Number::Damaged || number == engine::Number::NotADatabase) << number;
    EXPECT_FALSE(IsTransient(number));
    if (connection->ConnectionState() == State::Open) {
        EXPECT_NE(FailureOf(*connection, QStringLiteral("UPDATE Message SET msgText = 'mended'")), 0);
    }
    connection.reset();
    EXPECT_EQ(Context->Bytes(), damaged);
}

INSTANTIATE_TEST_SUITE_P(Engines, OpenContractTest, Engines(), EngineName);

}  // namespace
