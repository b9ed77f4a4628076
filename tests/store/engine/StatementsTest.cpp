#include "support/Printing.h"
#include "support/TempOffice.h"

#include <QDateTime>

#include <gtest/gtest.h>

namespace {

/// How a statement is given to DB.
enum class By { OpenDynaset, DynamicSet, ExecuteRecordset, Execute, ExecuteRecordResult };
enum class File { Outbox, Phonebook };

/// A statement as the program builds it, to the letter, and what it must give on the office below. Rows are
/// the values of all fields, joined by "|", one row after the other by "\n"; for statements without rows the
/// number of rows affected; "-" for none at all. What says nothing but "done" is proved by another statement
/// and its rows.
struct Row {
    File On;
    By Way;
    const char16_t* Sql;
    const char16_t* Expected;
    const char16_t* Proof = nullptr;
    const char16_t* ProofRows = nullptr;
};

QString Show(const QVariant& value) {
    if (value.isNull()) {
        return QStringLiteral("NULL");
    }
    return value.typeId() == QMetaType::QDateTime
               ? value.toDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"))
               : value.toString();
}

QString ShowRows(engine::Recordset* rows) {
    if (rows == nullptr) {
        return QStringLiteral("-");
    }
    QStringList lines;
    for (; !rows->EndOfFile(); rows->MoveNext()) {
        QStringList values;
        for (int i = 0; i < rows->FieldCount(); ++i) {
            values.append(Show(rows->Value(i)));
        }
        lines.append(values.join(u'|'));
    }
    return lines.join(u'\n');
}

class StatementsTest : public ::testing::TestWithParam<Row> {
protected:
    StatementsTest() {
        FillOutbox();
        FillPhonebook();
    }

    void FillOutbox() {
        Office.ExecuteOnOutbox(QStringLiteral(
            "INSERT INTO Message (msgRecipient, msgAddress, msgText, msgSendTime, msgSignature, msgStation, "
            "msgBodyTextSize, msgStatus, msgComplete, msgDeliveryStatus, msgDeliveryTime, msgErrorReason, "
            "msgTariff, "
            "msgFragmentCount) VALUES "
            "('Ann', '+1', 'Hello: Sig', '2026-03-01 00:00:00', 'Sig', 'PC1', 5, 5, 1, 0, '2026-03-01 "
            "00:01:00', NULL, 7, 2),"
            "('Bob', '+2', 'Hi', '2026-03-07 23:59:59', 'Sig', 'PC1', 0, 0, 0, NULL, NULL, NULL, 7, 1),"
            "('Ann', '+1', 'Again', '2026-03-05 12:00:00', 'Sig', 'PC2', NULL, 3, 0, NULL, NULL, NULL, 9, 1),"
            "('Cat', '+3', 'Stop', '2026-03-06 08:00:00', 'Sig', 'PC1', 4, 2, 1, NULL, NULL, 'Canceled by "
            "user', NULL, NULL),"
            "('Bob', '+2', 'Late', '2026-03-08 00:00:00', 'Sig', 'PC1', 4, 0, 0, NULL, NULL, NULL, NULL, "
            "NULL),"
            "('Dan', '+4', 'Far', '2026-03-02 10:00:00', 'Sig', 'PC1', 3, 5, 1, 0, '2026-03-02 10:05:00', "
            "NULL, 8, 2)"));
    }
    void FillPhonebook() {
        Office.ExecuteOnPhonebook(QStringLiteral(
            "INSERT INTO Contact (cntSurname, cntFirstnames, cntPhone, cntAlphaSurname, cntAlphaFirstNames, "
            "cntUserField1) "
            "VALUES ('O''Neill', 'Mary', '+1', 'O', 'M', 'red'), ('adams', 'Zoe', '+2', 'A', 'Z', NULL), "
            "('Adams', 'Bill', '+3', 'A', 'B', 'blue'), ('4You', 'Shop', '+4', '#', 'S', NULL)"));
        Office.ExecuteOnPhonebook(
            QStringLiteral("INSERT INTO ContactGroup (grpName) VALUES ('Work'), ('Home')"));
        Office.ExecuteOnPhonebook(QStringLiteral("INSERT INTO GroupMember VALUES (1, 1), (1, 2), (2, 3)"));
        Office.ExecuteOnPhonebook(QStringLiteral(
            "INSERT INTO MessageTail VALUES ('the longest tail', 0), ('tail', 1), ('a tail', 0)"));
    }

    [[nodiscard]] DB& Opened(File file) {
        if (file == File::Phonebook) {
            return Office.PhonebookDB();
        }
        EXPECT_TRUE(Office.OutboxDB().OpenDatabase(engine::Mode::ReadWriteShared));
        return Office.OutboxDB();
    }

    [[nodiscard]] static QString ReadRows(DB& db, const QString& sql) {
        return ShowRows(
            db.OpenDynaset(sql, engine::CursorType::ForwardOnly, engine::LockType::ReadOnly).get());
    }

    TempOffice Office;
};

TEST_P(StatementsTest, RunsUnchangedAndGivesItsRows) {
    const Row& row = GetParam();
    DB& db = Opened(row.On);
    const QString sql = QString::fromUtf16(row.Sql);
    QString result;
    switch (row.Way) {
        case By::OpenDynaset:
            result = ReadRows(db, sql);
            break;
        case By::DynamicSet:
            result = ShowRows(
                db.OpenDynaset(sql, engine::CursorType::Dynamic, engine::LockType::Optimistic).get());
            break;
        case By::ExecuteRecordset:
            result = ShowRows(db.ExecuteRecordset(sql).get());
            break;
        case By::Execute:
            result = db.Execute(sql) ? QStringLiteral("done") : QStringLiteral("-");
            break;
        case By::ExecuteRecordResult:
            result = QString::number(db.ExecuteRecordResult(sql));
            break;
    }
    EXPECT_EQ(result, QString::fromUtf16(row.Expected)) << db.LastError().toStdString();
    ASSERT_EQ(row.Proof != nullptr, row.Way == By::Execute) << "a bare success proves nothing";
    if (row.Proof != nullptr) {
        EXPECT_EQ(ReadRows(db, QString::fromUtf16(row.Proof)), QString::fromUtf16(row.ProofRows));
    }
    EXPECT_TRUE(Office.Time.Sleeps.isEmpty()) << "was tried again";
}

constexpr Row OutboxRows[] = {
    {File::Outbox, By::OpenDynaset, u"SELECT * FROM System", u"459"},
    {File::Outbox, By::Execute,
     u"INSERT INTO Message (msgRecipient, msgAddress, msgText, msgSendTime, msgSignature, msgStation, "
     u"msgBodyTextSize)"
     u" VALUES ('O''Neill','+353','It''s a [text] with #signs# and 100%',#07/Mar/2026 "
     u"14:30:15#,'Sig','PC1',12)",
     u"done", u"SELECT * FROM Message WHERE msgID = 7",
     u"7|O'Neill|+353|It's a [text] with #signs# and 100%|2026-03-07 "
     u"14:30:15|Sig|PC1|12|0|false|NULL|NULL|NULL|NULL|NULL"},
    {File::Outbox, By::ExecuteRecordset, u"SELECT @@IDENTITY AS ID", u"0"},
    {File::Outbox, By::ExecuteRecordResult,
     u"UPDATE Message SET msgComplete = TRUE, msgStatus = 2, msgErrorReason ='Canceled by user' WHERE msgID "
     u"= 2 AND "
     u"msgStatus = 0",
     u"1"},
    {File::Outbox, By::ExecuteRecordResult,
     u"UPDATE Message SET msgComplete = TRUE, msgStatus = 2, msgErrorReason ='Canceled by user' WHERE msgID "
     u"= 3 AND "
     u"msgStatus = 0",
     u"0"},
    {File::Outbox, By::OpenDynaset, u"SELECT msgID, msgStatus, msgDeliveryTime FROM Message WHERE msgID = 1",
     u"1|5|2026-03-01 00:01:00"},
    {File::Outbox, By::OpenDynaset,
     u"SELECT msgID, msgStatus, msgDeliveryTime FROM Message WHERE msgID = 2 OR msgID = 3 OR msgID = 99",
     u"2|0|NULL\n3|3|NULL"},
    {File::Outbox, By::OpenDynaset,
     u"SELECT msgID, msgSendTime, msgStatus, msgRecipient, msgText, msgBodyTextSize, msgDeliveryStatus, "
     u"msgDeliveryTime, msgErrorReason FROM Message WHERE MsgID = 1 OR MsgID = 4 ORDER BY msgSendTime DESC;",
     u"4|2026-03-06 08:00:00|2|Cat|Stop|4|NULL|NULL|Canceled by user\n"
     u"1|2026-03-01 00:00:00|5|Ann|Hello: Sig|5|0|2026-03-01 00:01:00|NULL"},
    {File::Outbox, By::OpenDynaset,
     u"SELECT msgID, msgSendTime, msgStatus, msgRecipient, msgText, msgBodyTextSize, msgDeliveryStatus, "
     u"msgDeliveryTime, msgErrorReason FROM Message WHERE ORDER BY msgSendTime DESC;",
     u"-"},
    {File::Outbox, By::OpenDynaset,
     u"SELECT msgID, msgSendTime, msgStatus, msgRecipient, msgText, msgBodyTextSize, msgDeliveryStatus, "
     u"msgDeliveryTime, msgErrorReason FROM Message WHERE  ORDER BY msgSendTime DESC;",
     u"-"},
    {File::Outbox, By::OpenDynaset,
     u"SELECT msgID, msgStatus, msgDeliveryStatus, msgDeliveryTime, msgErrorReason FROM Message WHERE MsgID "
     u"= 2 OR MsgID "
     u"= 3 ORDER BY msgSendTime DESC;",
     u"2|0|NULL|NULL|NULL\n3|3|NULL|NULL|NULL"},
    {File::Outbox, By::OpenDynaset,
     u"SELECT TOP 100 msgSendTime, msgID, msgComplete, msgStatus, msgDeliveryStatus, msgRecipient, msgText, "
     u"msgSignature, "
     u"msgStation, msgBodyTextSize, msgDeliveryTime, msgErrorReason FROM Message WHERE msgSendTime <= "
     u"#02/Mar/2026 "
     u"10:00:00# ORDER BY msgSendTime DESC, msgID DESC;",
     u"2026-03-02 10:00:00|6|true|5|0|Dan|Far|Sig|PC1|3|2026-03-02 10:05:00|NULL\n"
     u"2026-03-01 00:00:00|1|true|5|0|Ann|Hello: Sig|Sig|PC1|5|2026-03-01 00:01:00|NULL"},
    {File::Outbox, By::OpenDynaset,
     u"SELECT TOP 1 msgSendTime, msgID FROM Message WHERE msgSendTime <= #08/Mar/2026 00:00:00# ORDER BY "
     u"msgSendTime DESC, "
     u"msgID DESC;",
     u"2026-03-08 00:00:00|5"},
    {File::Outbox, By::OpenDynaset,
     u"select * from qry_Report_Message_Log WHERE msgSendTime BETWEEN #07/MAR/2026# AND #07/MAR/2026 "
     u"23:59:59#",
     u"2|2026-03-07 23:59:59|Bob|+2|Hi|Hi|NULL|0|7|1|7"},
    {File::Outbox, By::OpenDynaset,
     u"select * from qry_Canceled_Messages WHERE msgSendTime BETWEEN #01/MAR/2026# AND #07/MAR/2026 "
     u"23:59:59#",
     u"4|2026-03-06 08:00:00|Cat|+3|Stop|Canceled by user|Stop|NULL|2|NULL|NULL|NULL"},
    {File::Outbox, By::OpenDynaset,
     u"select * from qry_Canceled_Messages WHERE msgSendTime BETWEEN #07/MAR/2026# AND #01/MAR/2026 "
     u"23:59:59#",
     u""},
    {File::Outbox, By::OpenDynaset,
     u"SELECT Sum([msgTariff]*[msgFragmentCount]) AS Cost, Sum([msgTariff]*[msgFragmentCount]) /100 AS "
     u"CurrencyCost, "
     u"Sum(Message.msgFragmentCount) AS [Count], Message.msgRecipient, Message.msgAddress FROM Message WHERE "
     u"msgSendTime "
     u"BETWEEN #01/mar/2026# AND #07/MAR/2026 23:59:59# GROUP BY Message.msgRecipient, Message.msgAddress "
     u"ORDER BY "
     u"Sum([msgTariff]*[msgFragmentCount]) DESC , Sum(Message.msgFragmentCount), Message.msgRecipient, "
     u"Message.msgAddress;",
     u"23|0.23|3|Ann|+1\n16|0.16|2|Dan|+4\n7|0.07|1|Bob|+2\nNULL|NULL|NULL|Cat|+3"},
};

constexpr const char16_t* AllContacts =
    u"1|O'Neill|Mary|+1|false|false|O|M|NULL|red|NULL|NULL\n2|adams|Zoe|+2|false|false|A|Z|NULL|NULL|NULL|"
    u"NULL\n3|Adams|Bill|+3|false|false|A|B|NULL|blue|NULL|NULL\n4|4You|Shop|+4|false|false|#|S|NULL|NULL|"
    u"NULL|NULL";

constexpr Row PhonebookRows[] = {
    {File::Phonebook, By::OpenDynaset, u"SELECT * FROM Config", u"2|true||+|false||||"},
    {File::Phonebook, By::OpenDynaset, u"SELECT * FROM qry_Groups;", u"2|Home\n1|Work"},
    {File::Phonebook, By::OpenDynaset, u"SELECT * FROM [qry_Group_Contacts] WHERE grpID = 2",
     u"3|Adams|Bill|+3|false|false|A|B|NULL|blue|NULL|NULL|2"},
    {File::Phonebook, By::OpenDynaset, u"SELECT * FROM MessageTail",
     u"the longest tail|false\ntail|true\na tail|false"},
    {File::Phonebook, By::OpenDynaset, u"SELECT * FROM Contact", AllContacts},
    {File::Phonebook, By::DynamicSet, u"SELECT * FROM Contact", AllContacts},
    {File::Phonebook, By::OpenDynaset, u"SELECT * FROM qry_Contacts_By_Surname",
     u"4|4You|Shop|+4|false|false|#|S|NULL|NULL|NULL|NULL\n3|Adams|Bill|+3|false|false|A|B|NULL|blue|NULL|"
     u"NULL\n2|adams|Zoe|+2|false|false|A|Z|NULL|NULL|NULL|NULL\n1|O'Neill|Mary|+1|false|false|O|M|NULL|red|"
     u"NULL|NULL"},
    {File::Phonebook, By::OpenDynaset, u"SELECT * FROM qry_Contacts_By_Firstname",
     u"3|Adams|Bill|+3|false|false|A|B|NULL|blue|NULL|NULL\n1|O'Neill|Mary|+1|false|false|O|M|NULL|red|NULL|"
     u"NULL\n4|4You|Shop|+4|false|false|#|S|NULL|NULL|NULL|NULL\n2|adams|Zoe|+2|false|false|A|Z|NULL|NULL|"
     u"NULL|NULL"},
    {File::Phonebook, By::ExecuteRecordset, u"SELECT @@IDENTITY AS ID", u"0"},
    {File::Phonebook, By::OpenDynaset, u"SELECT * FROM Contact WHERE cntID = 1",
     u"1|O'Neill|Mary|+1|false|false|O|M|NULL|red|NULL|NULL"},
    {File::Phonebook, By::OpenDynaset, u"SELECT * FROM Contact WHERE cntID = 77", u""},
    {File::Phonebook, By::OpenDynaset, u"SELECT * FROM Contact WHERE cntID = no number", u"-"},
    {File::Phonebook, By::OpenDynaset, u"SELECT * FROM qry_Contacts_By_Surname WHERE cntAlphaSurname = '#'",
     u"4|4You|Shop|+4|false|false|#|S|NULL|NULL|NULL|NULL"},
    {File::Phonebook, By::OpenDynaset, u"SELECT * FROM qry_Contacts_By_Surname WHERE cntSurname LIKE 'A%'",
     u"3|Adams|Bill|+3|false|false|A|B|NULL|blue|NULL|NULL\n2|adams|Zoe|+2|false|false|A|Z|NULL|NULL|NULL|"
     u"NULL"},
    {File::Phonebook, By::OpenDynaset,
     u"SELECT * FROM qry_Contacts_By_Firstname WHERE cntAlphaFirstnames = 'Z'",
     u"2|adams|Zoe|+2|false|false|A|Z|NULL|NULL|NULL|NULL"},
    {File::Phonebook, By::OpenDynaset,
     u"SELECT * FROM qry_Contacts_By_Firstname WHERE cntFirstnames LIKE 'm%'",
     u"1|O'Neill|Mary|+1|false|false|O|M|NULL|red|NULL|NULL"},
    {File::Phonebook, By::OpenDynaset, u"SELECT * FROM Contact ORDER by cntSurname, cntFirstnames",
     u"4|4You|Shop|+4|false|false|#|S|NULL|NULL|NULL|NULL\n3|Adams|Bill|+3|false|false|A|B|NULL|blue|NULL|"
     u"NULL\n"
     u"2|adams|Zoe|+2|false|false|A|Z|NULL|NULL|NULL|NULL\n1|O'Neill|Mary|+1|false|false|O|M|NULL|red|NULL|"
     u"NULL"},
    {File::Phonebook, By::OpenDynaset, u"SELECT cntUserField1, cntUserField2, cntUserField3 FROM Contact",
     u"red|NULL|NULL\nNULL|NULL|NULL\nblue|NULL|NULL\nNULL|NULL|NULL"},
    {File::Phonebook, By::OpenDynaset, u"SELECT * FROM UserFields", u"1|User 1\n2|User 2\n3|User 3"},
    {File::Phonebook, By::OpenDynaset, u"SELECT * FROM Messagetail ORDER BY LEN(mtlText)",
     u"tail|true\na tail|false\nthe longest tail|false"},
    {File::Phonebook, By::OpenDynaset, u"SELECT cfgEditPassword, cfgEditHiddenPassword FROM Config", u"|"},
    {File::Phonebook, By::OpenDynaset, u"SELECT cfgPublicHistoryPassword FROM Config", u""},
    {File::Phonebook, By::OpenDynaset, u"SELECT cfgReportPassword FROM Config", u""},
    {File::Phonebook, By::Execute,
     u"INSERT INTO Contact (cntSurname, cntFirstnames, cntPhone, cntConfirmSend, cntPrivateNumber, "
     u"cntAlphaSurname, "
     u"cntAlphaFirstNames, cntNote, cntUserField1, cntUserField2, cntUserField3) VALUES "
     u"('O''Neill','','+353',TRUE,FALSE,"
     u"'O','#','','','','')",
     u"done", u"SELECT * FROM Contact WHERE cntID = 5", u"5|O'Neill||+353|true|false|O|#||||"},
    {File::Phonebook, By::Execute,
     u"UPDATE Contact SET cntSurname = 'O''Neill',cntFirstnames ='x',cntPhone ='+1',cntConfirmSend = TRUE,"
     u"cntPrivateNumber = FALSE,cntAlphaSurname ='O',cntAlphaFirstNames = 'X',cntNote = '',cntUserField1 = "
     u"'',"
     u"cntUserField2 = '',cntUserField3 = '' WHERE cntID = 1",
     u"done", u"SELECT * FROM Contact WHERE cntID = 1", u"1|O'Neill|x|+1|true|false|O|X||||"},
    {File::Phonebook, By::ExecuteRecordResult, u"DELETE FROM Contact WHERE cntID = 4", u"1"},
    {File::Phonebook, By::ExecuteRecordResult, u"DELETE FROM Contact WHERE cntID = 44", u"0"},
    {File::Phonebook, By::Execute, u"DELETE FROM GroupMember WHERE grpID = 1 AND cntID = 2", u"done",
     u"SELECT grpID, cntID FROM GroupMember ORDER BY grpID, cntID", u"1|1\n2|3"},
    {File::Phonebook, By::ExecuteRecordResult, u"DELETE FROM ContactGroup WHERE grpID = 1", u"1"},
    {File::Phonebook, By::Execute, u"INSERT INTO GroupMember (grpID, cntID) VALUES (2,1)", u"done",
     u"SELECT grpID, cntID FROM GroupMember ORDER BY grpID, cntID", u"1|1\n1|2\n2|1\n2|3"},
    {File::Phonebook, By::Execute, u"INSERT INTO GroupMember (grpID, cntID) VALUES (1,1)", u"-",
     u"SELECT grpID, cntID FROM GroupMember ORDER BY grpID, cntID", u"1|1\n1|2\n2|3"},
    {File::Phonebook, By::Execute, u"INSERT INTO ContactGroup (grpName) VALUES ('New')", u"done",
     u"SELECT * FROM qry_Groups;", u"2|Home\n3|New\n1|Work"},
    {File::Phonebook, By::Execute, u"INSERT INTO ContactGroup (grpName) VALUES ('WORK')", u"-",
     u"SELECT * FROM qry_Groups;", u"2|Home\n1|Work"},
    {File::Phonebook, By::Execute, u"INSERT INTO ContactGroup (grpName) VALUES ('')", u"-",
     u"SELECT * FROM qry_Groups;", u"2|Home\n1|Work"},
    {File::Phonebook, By::Execute, u"UPDATE ContactGroup SET grpName = 'Club' WHERE grpID = 1", u"done",
     u"SELECT * FROM qry_Groups;", u"1|Club\n2|Home"},
    {File::Phonebook, By::Execute, u"UPDATE ContactGroup SET grpName = 'home' WHERE grpID = 1", u"-",
     u"SELECT * FROM qry_Groups;", u"2|Home\n1|Work"},
    {File::Phonebook, By::ExecuteRecordResult,
     u"UPDATE UserFields SET hdrFieldCaption = 'Town' WHERE hdrFieldID = 2", u"1"},
    {File::Phonebook, By::ExecuteRecordResult, u"UPDATE Config SET cfgCompany = 'O''Neill & Co'", u"1"},
    {File::Phonebook, By::ExecuteRecordResult, u"DELETE FROM MessageTail", u"3"},
    {File::Phonebook, By::Execute, u"INSERT INTO MessageTail (mtlText, mtlDefault) VALUES ('', FALSE)",
     u"done", u"SELECT * FROM MessageTail", u"the longest tail|false\ntail|true\na tail|false\n|false"},
    {File::Phonebook, By::Execute,
     u"INSERT INTO MessageTail (mtlText, mtlDefault) VALUES ('Mary''s desk', TRUE)", u"done",
     u"SELECT * FROM MessageTail WHERE mtlDefault = TRUE", u"tail|true\nMary's desk|true"},
    {File::Phonebook, By::ExecuteRecordResult,
     u"UPDATE Config SET cfgEditPassword = 'a',cfgEditHiddenPassword = 'b''c',cfgPublicHistoryPassword = '',"
     u"cfgReportPassword = 'd'",
     u"1"},
    {File::Phonebook, By::ExecuteRecordResult, u"UPDATE Config SET cfgNumberPrefix = '+353'", u"1"},
    {File::Phonebook, By::ExecuteRecordResult, u"UPDATE Config SET cfgRunWizard = FALSE", u"1"},
};

INSTANTIATE_TEST_SUITE_P(Outbox, StatementsTest, ::testing::ValuesIn(OutboxRows));
INSTANTIATE_TEST_SUITE_P(Phonebook, StatementsTest, ::testing::ValuesIn(PhonebookRows));

using StatementEffectsTest = StatementsTest;

TEST_F(StatementEffectsTest, TheIdentityFollowsAnInsertOnTheSameConnection) {
    DB& db = Opened(File::Outbox);
    ASSERT_TRUE(db.Execute(QStringLiteral("INSERT INTO Message (msgText) VALUES ('x')")));
    EXPECT_EQ(ShowRows(db.ExecuteRecordset(QStringLiteral("SELECT @@IDENTITY AS ID")).get()),
              QStringLiteral("7"));
}

TEST_F(StatementEffectsTest, AListOf250MessagesIsOneStatement) {
    DB& db = Opened(File::Outbox);
    constexpr int Listed = 250;
    QStringList terms;
    for (int id = Listed; id >= 1; --id) {
        terms.append(QStringLiteral("MsgID = %1").arg(id));
    }
    const QString columns = QStringLiteral("SELECT msgID, msgStatus FROM Message WHERE ");
    EXPECT_EQ(ReadRows(db, columns + terms.join(QStringLiteral(" OR ")) +
                               QStringLiteral(" ORDER BY msgSendTime DESC;")),
              QStringLiteral("5|0\n2|0\n4|2\n3|3\n6|5\n1|5"));
    terms.removeLast();
    QStringList rows = ReadRows(db, columns + terms.join(QStringLiteral(" OR "))).split(u'\n');
    rows.sort();
    EXPECT_EQ(rows.join(u' '), QStringLiteral("2|0 3|3 4|2 5|0 6|5"));
}

TEST_F(StatementEffectsTest, ADuplicateGroupNameShowsInTheErrorText) {
    EXPECT_FALSE(
        Office.PhonebookDB().Execute(QStringLiteral("INSERT INTO ContactGroup (grpName) VALUES ('work')")));
    EXPECT_TRUE(Office.PhonebookDB().LastError().contains(QStringLiteral("SQL:3022")));
}

TEST_F(StatementEffectsTest, AStatementInTheUsersLanguageHasItsDatesRead) {
    QLocale::setDefault(QLocale(QStringLiteral("de_DE")));
    DB& db = Opened(File::Outbox);
    EXPECT_EQ(db.ExecuteRecordResult(QStringLiteral("DELETE FROM Message WHERE msgSendTime < #02/Mär/2026#")),
              1);
    QLocale::setDefault(QLocale::c());
}

TEST_F(StatementEffectsTest, AStatementKeepsTheFileAsItWasWhenItIsRefused) {
    DB& db = Opened(File::Outbox);
    for (const auto& sql : {u"DELETE FROM Message; DELETE FROM System", u"DELETE FROM Message WHERE",
                            u"DELETE FROM Message x", u"DELETE FROM Message WHERE msgID = 1 OR (",
                            u"UPDATE Message SET msgText = 'x', WHERE msgID = 1"}) {
        EXPECT_FALSE(db.Execute(QString::fromUtf16(sql))) << QString::fromUtf16(sql).toStdString();
    }
    EXPECT_EQ(Office.MessageRows().size(), 6);
}

}  // namespace
