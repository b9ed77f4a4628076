#include "store/engine/sqlite/OfficeFiles.h"

#include "store/engine/Connection.h"
#include "support/FakeMachine.h"
#include "support/Printing.h"

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace {

class OfficeFilesTest : public ::testing::Test {
protected:
    QTemporaryDir Folder;
    FakeClock Time;
    engine::FileConnectionFactory Factory{Time};
    const QString Outbox = Folder.filePath(QStringLiteral("smsmessages.mdb"));
    const QString Phonebook = Folder.filePath(QStringLiteral("smscontacts.mdb"));
    std::unique_ptr<engine::Connection> OutboxFile;
    std::unique_ptr<engine::Connection> PhonebookFile;

    OfficeFilesTest() {
        OfficeFiles::CreateOutboxFile(Outbox);
        OfficeFiles::CreatePhonebookFile(Phonebook);
        OutboxFile = Factory.NewConnection();
        OutboxFile->Open(Outbox);
        PhonebookFile = Factory.NewConnection();
        PhonebookFile->Open(Phonebook);
    }
    static std::unique_ptr<engine::Recordset> Rows(engine::Connection& connection, const char16_t* sql) {
        return connection.Execute(QString::fromUtf16(sql), nullptr);
    }
    static qint64 Run(engine::Connection& connection, const char16_t* sql) {
        qint64 rows = 0;
        Q_UNUSED(connection.Execute(QString::fromUtf16(sql), &rows));
        return rows;
    }
    static QStringList Fields(const engine::Recordset& rows) {
        QStringList names;
        for (int i = 0; i < rows.FieldCount(); ++i) {
            names.append(rows.FieldName(i));
        }
        return names;
    }
    static QString Plan(const QString& file, const char* sql) {
        sqlite3* handle = nullptr;
        sqlite3_stmt* statement = nullptr;
        EXPECT_EQ(sqlite3_open_v2(file.toUtf8().constData(), &handle, SQLITE_OPEN_READONLY, nullptr),
                  SQLITE_OK);
        EXPECT_EQ(sqlite3_prepare_v2(handle, (QByteArray("EXPLAIN QUERY PLAN ") + sql).constData(), -1,
                                     &statement, nullptr),
                  SQLITE_OK)
            << sqlite3_errmsg(handle);
        QString plan;
        while (sqlite3_step(statement) == SQLITE_ROW) {
            plan +=
                QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(statement, 3))) + u'\n';
        }
        sqlite3_finalize(statement);
        sqlite3_close(handle);
        return plan;
    }
};

TEST_F(OfficeFilesTest, TheOutboxHasTheColumnsOfMessagesAndOneSystemRow) {
    EXPECT_EQ(Fields(*Rows(*OutboxFile, u"SELECT * FROM Message")).join(u','),
              QStringLiteral(
                  "msgID,msgRecipient,msgAddress,msgText,msgSendTime,msgSignature,msgStation,msgBodyTextSize,"
                  "msgStatus,msgComplete,msgDeliveryStatus,msgDeliveryTime,msgErrorReason,msgTariff,"
                  "msgFragmentCount"));
    const auto system = Rows(*OutboxFile, u"SELECT * FROM System");
    EXPECT_EQ(system->Value(u"sysSMSMaxMessageSize"), QVariant(459));
    system->MoveNext();
    EXPECT_TRUE(system->EndOfFile());
}

TEST_F(OfficeFilesTest, ThePhonebookHasTheColumnsOfItsTables) {
    const auto fields = [&](const char16_t* sql) { return Fields(*Rows(*PhonebookFile, sql)).join(u','); };
    const QString contact = QStringLiteral(
        "cntID,cntSurname,cntFirstnames,cntPhone,cntConfirmSend,cntPrivateNumber,cntAlphaSurname,"
        "cntAlphaFirstNames,cntNote,cntUserField1,cntUserField2,cntUserField3");
    EXPECT_EQ(fields(u"SELECT * FROM Contact"), contact);
    EXPECT_EQ(fields(u"SELECT * FROM qry_Contacts_By_Surname"), contact);
    EXPECT_EQ(fields(u"SELECT * FROM qry_Contacts_By_Firstname"), contact);
    EXPECT_EQ(fields(u"SELECT * FROM qry_Group_Contacts"), contact + QStringLiteral(",grpID"));
    EXPECT_EQ(fields(u"SELECT * FROM qry_Groups"), QStringLiteral("grpID,grpName"));
    EXPECT_EQ(fields(u"SELECT * FROM ContactGroup"), QStringLiteral("grpID,grpName"));
    EXPECT_EQ(fields(u"SELECT * FROM GroupMember"), QStringLiteral("grpID,cntID"));
    EXPECT_EQ(fields(u"SELECT * FROM MessageTail"), QStringLiteral("mtlText,mtlDefault"));
}

TEST_F(OfficeFilesTest, TheConfigRowIsOfVersionTwoAndAsksForNoWizard) {
    const auto config = Rows(*PhonebookFile, u"SELECT * FROM Config");
    EXPECT_EQ(config->Value(u"cfgVersion"), QVariant(2));
    EXPECT_EQ(config->Value(u"cfgRunWizard"), QVariant(false));
    EXPECT_EQ(config->Value(u"cfgAllowPrivateGroup"), QVariant(true));
    EXPECT_EQ(config->Value(u"cfgNumberPrefix"), QVariant(QStringLiteral("+")));
    for (const auto& column : {u"cfgCompany", u"cfgEditPassword", u"cfgEditHiddenPassword",
                               u"cfgPublicHistoryPassword", u"cfgReportPassword"}) {
        EXPECT_EQ(config->Value(column), QVariant(QString()));
    }
    config->MoveNext();
    EXPECT_TRUE(config->EndOfFile());
}

TEST_F(OfficeFilesTest, TheUserFieldsHaveTheirThreeRows) {
    const auto rows = Rows(*PhonebookFile, u"SELECT * FROM UserFields");
    for (int i = 1; i <= 3; ++i, rows->MoveNext()) {
        EXPECT_EQ(rows->Value(u"hdrFieldID"), QVariant(i));
        EXPECT_EQ(rows->Value(u"hdrFieldCaption"), QVariant(QStringLiteral("User %1").arg(i)));
    }
    EXPECT_TRUE(rows->EndOfFile());
}

TEST_F(OfficeFilesTest, TheMessageLogShowsBodiesAndCostsOfWhatWasNotCanceled) {
    Run(*OutboxFile,
        u"INSERT INTO Message (msgText, msgBodyTextSize, msgSendTime, msgTariff, msgFragmentCount) "
        u"VALUES ('\U0001F600body: tail', 6, #2/Jan/2026#, 7.5, 2)");
    Run(*OutboxFile,
        u"INSERT INTO Message (msgText, msgBodyTextSize, msgSendTime) VALUES ('all body', 0, #1/Jan/2026#)");
    Run(*OutboxFile,
        u"INSERT INTO Message (msgText, msgSendTime, msgStatus) VALUES ('canceled', #1/Jan/2026#, 2)");
    const auto log = Rows(*OutboxFile,
                          u"select * from qry_Report_Message_Log WHERE msgSendTime BETWEEN #01/Jan/2026# AND "
                          u"#02/JAN/2026 23:59:59#");
    EXPECT_EQ(log->Value(u"msgBodyText"), QVariant(QStringLiteral("all body")));
    EXPECT_TRUE(log->Value(u"msgCost").isNull());
    EXPECT_EQ(log->Value(u"msgSendTime"), QVariant(QDateTime(QDate(2026, 1, 1), QTime(0, 0))));
    log->MoveNext();
    EXPECT_EQ(log->Value(u"msgBodyText"), QVariant(QStringLiteral("\U0001F600body")));
    EXPECT_EQ(log->Value(u"msgCost"), QVariant(15.0));
    log->MoveNext();
    EXPECT_TRUE(log->EndOfFile());
    const auto canceled = Rows(*OutboxFile,
                               u"select * from qry_Canceled_Messages WHERE msgSendTime BETWEEN #01/Jan/2026# "
                               u"AND #01/Jan/2026 23:59:59#");
    EXPECT_EQ(canceled->Value(u"msgText"), QVariant(QStringLiteral("canceled")));
    EXPECT_TRUE(canceled->Value(u"msgErrorReason").isNull());
    EXPECT_EQ(canceled->FieldIndex(u"msgAddress"), 3);
}

TEST_F(OfficeFilesTest, GroupsComeByNameAndTheirContactsBySurname) {
    Run(*PhonebookFile, u"INSERT INTO ContactGroup (grpName) VALUES ('zeta')");
    Run(*PhonebookFile, u"INSERT INTO ContactGroup (grpName) VALUES ('Alpha')");
    for (const auto& name : {u"Young", u"Adams", u"Moore"}) {
        Q_UNUSED(PhonebookFile->Execute(
            QStringLiteral("INSERT INTO Contact (cntSurname, cntFirstnames) VALUES ('%1', 'A')")
                .arg(QString::fromUtf16(name)),
            nullptr));
    }
    Run(*PhonebookFile, u"INSERT INTO GroupMember (grpID, cntID) VALUES (1, 1)");
    Run(*PhonebookFile, u"INSERT INTO GroupMember (grpID, cntID) VALUES (1, 2)");
    EXPECT_EQ(Rows(*PhonebookFile, u"SELECT * FROM qry_Groups;")->Value(u"grpName"),
              QVariant(QStringLiteral("Alpha")));
    const auto members = Rows(*PhonebookFile, u"SELECT * FROM [qry_Group_Contacts] WHERE grpID = 1");
    EXPECT_EQ(members->Value(u"cntSurname"), QVariant(QStringLiteral("Adams")));
    members->MoveNext();
    EXPECT_EQ(members->Value(u"cntSurname"), QVariant(QStringLiteral("Young")));
    members->MoveNext();
    EXPECT_TRUE(members->EndOfFile());
    EXPECT_EQ(Run(*PhonebookFile, u"DELETE FROM Contact WHERE cntID = 2"), 1);
    EXPECT_TRUE(Rows(*PhonebookFile, u"SELECT * FROM GroupMember WHERE cntID = 2")->EndOfFile());
}

TEST_F(OfficeFilesTest, AnExistingFileIsNeverOverwritten) {
    QFile file(Outbox);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    EXPECT_THROW(OfficeFiles::CreateOutboxFile(Outbox), engine::Failure);
    EXPECT_THROW(OfficeFiles::CreatePhonebookFile(Outbox), engine::Failure);
    file.seek(0);
    EXPECT_EQ(file.readAll(), before);
}

TEST_F(OfficeFilesTest, AFolderThatIsNotThereFails) {
    EXPECT_THROW(OfficeFiles::CreateOutboxFile(Folder.filePath(QStringLiteral("no/where.mdb"))),
                 engine::Failure);
}

TEST_F(OfficeFilesTest, PollingAndTheNewestMessagesUseTheirIndexes) {
    EXPECT_TRUE(Plan(Outbox, "SELECT msgID FROM Message WHERE msgStatus = 0 AND msgSendTime <= 'x'")
                    .contains(QStringLiteral("MessageByStatus")));
    const QString newest =
        Plan(Outbox,
             "SELECT msgText FROM Message WHERE msgSendTime <= 'x' ORDER BY msgSendTime DESC, "
             "msgID DESC LIMIT 100");
    EXPECT_TRUE(newest.contains(QStringLiteral("MessageBySendTime")));
    EXPECT_FALSE(newest.contains(QStringLiteral("TEMP B-TREE")));
}

TEST_F(OfficeFilesTest, AnySqliteToolReadsAndWritesTheOutbox) {
    sqlite3* handle = nullptr;
    ASSERT_EQ(sqlite3_open_v2(Outbox.toUtf8().constData(), &handle, SQLITE_OPEN_READWRITE, nullptr),
              SQLITE_OK);
    for (const char* sql : {"INSERT INTO Message (msgText, msgSendTime) VALUES ('x', '2026-03-07 14:30:15')",
                            "UPDATE Message SET msgStatus = 1 WHERE msgID = 1 AND msgStatus = 0",
                            "SELECT * FROM qry_Report_Message_Log", "PRAGMA integrity_check"}) {
        EXPECT_EQ(sqlite3_exec(handle, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(handle);
    }
    sqlite3_close(handle);
    EXPECT_EQ(Rows(*OutboxFile, u"SELECT msgSendTime FROM Message")->Value(0),
              QVariant(QDateTime(QDate(2026, 3, 7), QTime(14, 30, 15))));
}

TEST_F(OfficeFilesTest, TheJournalStaysInPlaceAndThereIsNoOtherFile) {
    Run(*OutboxFile, u"INSERT INTO Message (msgText) VALUES ('x')");
    EXPECT_TRUE(QFile::exists(Outbox + QStringLiteral("-journal")));
    EXPECT_FALSE(QFile::exists(Outbox + QStringLiteral("-wal")));
    OutboxFile->Close();
    EXPECT_TRUE(QFile::exists(Outbox + QStringLiteral("-journal")));
}

TEST_F(OfficeFilesTest, WhatTheFileHidesIsNotFound) {
    for (const auto& sql :
         {u"SELECT * FROM sqlite_master", u"SELECT * FROM SQLITE_sequence", u"DELETE FROM sqlite_sequence",
          u"SELECT * FROM pragma_table_list", u"SELECT * FROM json_each", u"SELECT * FROM dbstat"}) {
        try {
            Run(*OutboxFile, sql);
            ADD_FAILURE() << QString::fromUtf16(sql).toStdString();
        } catch (const engine::Failure& failure) {
            EXPECT_EQ(failure.Item().SQLState, QStringLiteral("3078"));
        }
    }
    for (const auto& sql : {u"SELECT rowid FROM Message", u"SELECT [OID] FROM Message",
                            u"SELECT Message._rowid_ FROM Message"}) {
        try {
            Run(*OutboxFile, sql);
            ADD_FAILURE() << QString::fromUtf16(sql).toStdString();
        } catch (const engine::Failure& failure) {
            EXPECT_EQ(failure.Item().SQLState, QStringLiteral("3061"));
        }
    }
}

TEST_F(OfficeFilesTest, LenCountsUnitsNulIncluded) {
    const QString text = QStringLiteral("a") + QChar(u'\0') + QStringLiteral("\U0001F600");
    EXPECT_EQ(OutboxFile->Execute(QStringLiteral("SELECT LEN('%1')").arg(text), nullptr)->Value(0),
              QVariant(4));
    EXPECT_TRUE(Rows(*OutboxFile, u"SELECT LEN(NULL)")->Value(0).isNull());
    EXPECT_EQ(Rows(*OutboxFile, u"SELECT LEN('')")->Value(0), QVariant(0));
    EXPECT_EQ(Rows(*OutboxFile, u"SELECT LEN(123)")->Value(0), QVariant(3));
}

}  // namespace
