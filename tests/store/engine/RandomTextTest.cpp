#include "support/Printing.h"
#include "support/TempOffice.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

/// Texts that a statement might stumble over. The same ones in each run.
class RandomText {
public:
    explicit RandomText(quint32 seed) : m_random(seed) {}

    QString Next() {
        constexpr int LongOnes = 50;  // one in so many
        constexpr int LongLength = 10000;
        const int length = m_random.bounded(LongOnes) == 0 ? LongLength : m_random.bounded(40);
        QString text;
        text.reserve(length);
        while (text.size() < length) {
            text += Piece();
        }
        return text.left(length);
    }

private:
    QString Piece() {
        static const QStringList pieces = {QStringLiteral("'"),
                                           QStringLiteral("''"),
                                           QStringLiteral("\""),
                                           QStringLiteral("["),
                                           QStringLiteral("]"),
                                           QStringLiteral("%"),
                                           QStringLiteral("_"),
                                           QStringLiteral("#"),
                                           QStringLiteral(";"),
                                           QStringLiteral("--"),
                                           QStringLiteral("/*"),
                                           QStringLiteral("\r\n"),
                                           QStringLiteral("\n"),
                                           QStringLiteral("\t"),
                                           QStringLiteral("\\"),
                                           QStringLiteral("\\'"),
                                           QStringLiteral(" "),
                                           QStringLiteral("?"),
                                           QStringLiteral("%1"),
                                           QStringLiteral("@@IDENTITY"),
                                           QStringLiteral("');"),
                                           QStringLiteral("NULL"),
                                           QStringLiteral("DROP TABLE Message"),
                                           QStringLiteral("#01/Jan/2026#"),
                                           QString(QChar(u'\0')),
                                           QString(QChar(u'\uFEFF')),
                                           QString(QChar(u'\uFFFF'))};
        switch (m_random.bounded(4)) {
            case 0:
                return pieces.at(m_random.bounded(static_cast<int>(pieces.size())));
            case 1:
                return QString(QChar(static_cast<ushort>(m_random.bounded(0xD800, 0xE000))));
            case 2:
                return QString(QChar(static_cast<ushort>(m_random.bounded(0x10000))));
            default:
                return QString(QChar(static_cast<ushort>(m_random.bounded(0x20, 0x7F))));
        }
    }

    QRandomGenerator m_random;
};

int Rounds() {
    constexpr int Usual = 1000;
    constexpr int Long = 100000;
    return qEnvironmentVariableIntValue("LARKSPAN_TEST_LONG") == 1 ? Long : Usual;
}

/// For what gets a record number of 16 bits each time.
int NumberedRounds() {
    constexpr int Most = 30000;
    return std::min(Rounds(), Most);
}

class RandomTextTest : public ::testing::Test {
protected:
    TempOffice Office;

    static QString Quoted(const QString& text) { return u'\'' + mdlOutbox::QuoteSQL(text) + u'\''; }
    static std::unique_ptr<engine::Recordset> Rows(DB& db, const QString& sql) {
        auto rows = db.OpenDynaset(sql, engine::CursorType::ForwardOnly, engine::LockType::ReadOnly);
        EXPECT_NE(rows, nullptr) << db.LastError().toStdString();
        return rows;
    }
    static void FillTexts(ContactFields* fields, RandomText& texts) {
        for (QString* text : {&fields->Surname, &fields->Firstnames, &fields->Phone, &fields->Note,
                              &fields->UserFields[0], &fields->UserFields[1], &fields->UserFields[2]}) {
            *text = texts.Next();
        }
    }
    /// Written into every row of a table's column by a built statement and read back.
    static void ExpectColumnKeepsTexts(DB& db, const QString& table, const QString& column) {
        RandomText texts(static_cast<quint32>(qHash(column, 1)));
        ASSERT_TRUE(db.BeginTransaction());
        for (int i = 0; i < Rounds(); ++i) {
            const QString text = texts.Next();
            const QString sql = QStringLiteral("UPDATE %1 SET %2 = ").arg(table, column) + Quoted(text);
            ASSERT_EQ(db.ExecuteRecordResult(sql), 1) << db.LastError().toStdString();
            ASSERT_EQ(Rows(db, QStringLiteral("SELECT %1 FROM %2").arg(column, table))->Value(0),
                      QVariant(text));
        }
        ASSERT_TRUE(db.CommitTransaction());
    }
};

TEST_F(RandomTextTest, EveryTextColumnOfAMessageKeepsAnyTextUpToItsCut) {
    DB& db = Office.OutboxDB();
    ASSERT_TRUE(db.OpenDatabase(engine::Mode::ReadWriteShared));
    RandomText texts(1);
    ASSERT_TRUE(db.BeginTransaction());
    for (int i = 0; i < Rounds(); ++i) {
        OutgoingMessage message;
        message.Recipient = texts.Next();
        message.Address = texts.Next();
        message.Text = texts.Next();
        message.SendTime = Office.Time.Now();
        message.Station = texts.Next();
        message.Signature = texts.Next();
        ASSERT_TRUE(db.Execute(mdlOutbox::BuildInsertMessageSQL(message))) << db.LastError().toStdString();
        const auto id = Rows(db, QStringLiteral("SELECT @@IDENTITY AS ID"))->Value(0).toLongLong();
        ASSERT_EQ(id, i + 1);
        const auto row = Rows(db, QStringLiteral("SELECT * FROM Message WHERE msgID = %1").arg(id));
        ASSERT_EQ(row->Value(u"msgRecipient"), QVariant(message.Recipient));
        ASSERT_EQ(row->Value(u"msgAddress"), QVariant(message.Address));
        ASSERT_EQ(row->Value(u"msgText"), QVariant(message.Text));
        ASSERT_EQ(row->Value(u"msgStation"), QVariant(message.Station));
        ASSERT_EQ(row->Value(u"msgSignature"), QVariant(message.Signature));
        ASSERT_EQ(row->Value(u"msgSendTime"), QVariant(message.SendTime));
    }
    ASSERT_TRUE(db.CommitTransaction());
    EXPECT_EQ(Rows(db, QStringLiteral("SELECT Count(*) FROM Message"))->Value(0), QVariant(Rounds()));
}

TEST_F(RandomTextTest, AMessageGoesInCutAndTrimmedAndInNoOtherWayChanged) {
    ASSERT_TRUE(Office.OutboxDB().OpenDatabase(engine::Mode::ReadWriteShared));
    RandomText texts(2);
    const auto trimmed = [](const QString& text, qsizetype width) {
        qsizetype begin = 0;
        qsizetype end = text.size();
        while (begin < end && text[begin] == u' ') {
            ++begin;
        }
        while (end > begin && text[end - 1] == u' ') {
            --end;
        }
        return text.mid(begin, end - begin).left(width);
    };
    const int messages = NumberedRounds();
    for (int i = 0; i < messages; ++i) {
        OutgoingMessage message;
        message.Recipient = texts.Next();
        message.Address = texts.Next();
        message.Text = texts.Next();
        message.SendTime = Office.Time.Now();
        message.Station = texts.Next();
        message.Signature = texts.Next();
        const qint16 id = mdlOutbox::InsertMessage(Office.Outbox(), message);
        ASSERT_EQ(id, i + 1);
        const auto row =
            Rows(Office.OutboxDB(), QStringLiteral("SELECT * FROM Message WHERE msgID = %1").arg(id));
        ASSERT_EQ(row->Value(u"msgRecipient"), QVariant(trimmed(message.Recipient, 30)));
        ASSERT_EQ(row->Value(u"msgAddress"), QVariant(trimmed(message.Address, 30)));
        ASSERT_EQ(row->Value(u"msgText"),
                  QVariant(trimmed(message.Text, Office.OutboxValues.MaxMessageSize)));
        ASSERT_EQ(row->Value(u"msgStation"), QVariant(trimmed(message.Station, 32)));
        ASSERT_EQ(row->Value(u"msgSignature"), QVariant(message.Signature));
    }
}

TEST_F(RandomTextTest, EveryTextColumnOfAContactKeepsAnyText) {
    DB& db = Office.PhonebookDB();
    RandomText texts(3);
    ASSERT_TRUE(db.BeginTransaction());
    for (int i = 0; i < Rounds(); ++i) {
        ContactFields fields;
        FillTexts(&fields, texts);
        const qint32 id = mdlPhonebook::AddContact(Office.Phonebook(), fields);
        ASSERT_EQ(id, i + 1) << db.LastError().toStdString();
        if (i % 2 == 1) {
            FillTexts(&fields, texts);
            ASSERT_TRUE(mdlPhonebook::UpdateContact(Office.Phonebook(), id, fields));
        }
        const auto row = mdlPhonebook::GetContactByID(Office.PhonebookValues, id);
        ASSERT_NE(row, nullptr);
        ASSERT_EQ(row->Value(u"cntSurname"), QVariant(fields.Surname));
        ASSERT_EQ(row->Value(u"cntFirstnames"), QVariant(fields.Firstnames));
        ASSERT_EQ(row->Value(u"cntPhone"), QVariant(fields.Phone));
        ASSERT_EQ(row->Value(u"cntNote"), QVariant(fields.Note));
        ASSERT_EQ(row->Value(u"cntUserField1"), QVariant(fields.UserFields[0]));
        ASSERT_EQ(row->Value(u"cntUserField2"), QVariant(fields.UserFields[1]));
        ASSERT_EQ(row->Value(u"cntUserField3"), QVariant(fields.UserFields[2]));
        ASSERT_EQ(row->Value(u"cntAlphaSurname"), QVariant(mdlPhonebook::GetAlphaKey(fields.Surname)));
        ASSERT_EQ(row->Value(u"cntAlphaFirstNames"), QVariant(mdlPhonebook::GetAlphaKey(fields.Firstnames)));
    }
    ASSERT_TRUE(db.CommitTransaction());
    EXPECT_EQ(Rows(db, QStringLiteral("SELECT Count(*) FROM Contact"))->Value(0), QVariant(Rounds()));
}

TEST_F(RandomTextTest, TheErrorReasonOfAMessageKeepsAnyText) {
    DB& db = Office.OutboxDB();
    ASSERT_TRUE(db.OpenDatabase(engine::Mode::ReadWriteShared));
    ASSERT_TRUE(db.Execute(QStringLiteral("INSERT INTO Message (msgText) VALUES ('x')")));
    ExpectColumnKeepsTexts(db, QStringLiteral("Message"), QStringLiteral("msgErrorReason"));
}

TEST_F(RandomTextTest, EveryTextColumnOfTheConfigRowKeepsAnyText) {
    for (const auto& column : {u"cfgCompany", u"cfgNumberPrefix"}) {
        ExpectColumnKeepsTexts(Office.PhonebookDB(), QStringLiteral("Config"), QString::fromUtf16(column));
    }
}

TEST_F(RandomTextTest, TheFourPasswordsKeepAnyTextInTheirOneStatement) {
    DB& db = Office.PhonebookDB();
    RandomText texts(6);
    ASSERT_TRUE(db.BeginTransaction());
    for (int i = 0; i < Rounds(); ++i) {
        const QStringList values = {texts.Next(), texts.Next(), texts.Next(), texts.Next()};
        const QString sql = QStringLiteral("UPDATE Config SET cfgEditPassword = ") + Quoted(values[0]) +
                            QStringLiteral(",cfgEditHiddenPassword = ") + Quoted(values[1]) +
                            QStringLiteral(",cfgPublicHistoryPassword = ") + Quoted(values[2]) +
                            QStringLiteral(",cfgReportPassword = ") + Quoted(values[3]);
        ASSERT_EQ(db.ExecuteRecordResult(sql), 1) << db.LastError().toStdString();
        const auto row = Rows(db, QStringLiteral("SELECT cfgEditPassword, cfgEditHiddenPassword, "
                                                 "cfgPublicHistoryPassword, cfgReportPassword FROM Config"));
        for (int column = 0; column < values.size(); ++column) {
            ASSERT_EQ(row->Value(column), QVariant(values[column]));
        }
    }
    ASSERT_TRUE(db.CommitTransaction());
}

TEST_F(RandomTextTest, ATailGoesInAsItIs) {
    DB& db = Office.PhonebookDB();
    RandomText texts(7);
    ASSERT_TRUE(db.BeginTransaction());
    for (int i = 0; i < Rounds(); ++i) {
        const QString text = texts.Next();
        ASSERT_TRUE(db.Execute(QStringLiteral("DELETE FROM MessageTail")));
        ASSERT_TRUE(db.Execute(QStringLiteral("INSERT INTO MessageTail (mtlText, mtlDefault) VALUES (") +
                               Quoted(text) + QStringLiteral(", TRUE)")))
            << db.LastError().toStdString();
        ASSERT_EQ(mdlPhonebook::GetMessageTails(Office.PhonebookValues)->Value(u"mtlText"), QVariant(text));
    }
    ASSERT_TRUE(db.CommitTransaction());
}

TEST_F(RandomTextTest, TheCaptionsOfTheUserFieldsAreSavedAsTheyAre) {
    DB& db = Office.PhonebookDB();
    RandomText texts(8);
    ASSERT_TRUE(db.BeginTransaction());
    for (int i = 0; i < Rounds(); ++i) {
        const QStringList captions = {texts.Next(), texts.Next(), texts.Next()};
        mdlPhonebook::SaveUserFieldHeaders(Office.PhonebookValues, captions);
        ASSERT_EQ(mdlPhonebook::GetUserFieldHeaders(Office.PhonebookValues), captions)
            << db.LastError().toStdString();
    }
    ASSERT_TRUE(db.CommitTransaction());
}

TEST_F(RandomTextTest, AGroupIsNamedByItsFirst10CharactersAndRenamedByItsFirst6) {
    DB& db = Office.PhonebookDB();
    RandomText texts(9);
    const auto nameOf = [&](qint16 id) {
        return Rows(db, QStringLiteral("SELECT grpName FROM ContactGroup WHERE grpID = %1").arg(id))
            ->Value(0);
    };
    ASSERT_TRUE(db.BeginTransaction());
    for (int i = 0; i < NumberedRounds(); ++i) {
        // An empty name and one that another group has are refused; there is one group at a time.
        const QString name = QStringLiteral("n") + texts.Next();
        const QString rename = QStringLiteral("r") + texts.Next();
        const qint16 id = mdlPhonebook::AddGroup(Office.Phonebook(), name);
        ASSERT_GT(id, 0) << db.LastError().toStdString();
        ASSERT_EQ(nameOf(id), QVariant(name.left(10)));
        mdlPhonebook::RenameGroup(Office.PhonebookValues, id, rename);
        ASSERT_EQ(nameOf(id), QVariant(rename.left(6)));
        ASSERT_TRUE(mdlPhonebook::DeleteGroup(Office.PhonebookValues, id));
    }
    ASSERT_TRUE(db.CommitTransaction());
}

TEST_F(RandomTextTest, TextsThatAreComparedFindThemselves) {
    DB& db = Office.PhonebookDB();
    RandomText texts(4);
    for (int i = 0; i < 100; ++i) {
        const QString text = texts.Next();
        ASSERT_TRUE(db.Execute(QStringLiteral("UPDATE Config SET cfgCompany = ") + Quoted(text)));
        ASSERT_EQ(db.ExecuteRecordResult(
                      QStringLiteral("UPDATE Config SET cfgVersion = 2 WHERE cfgCompany = ") + Quoted(text)),
                  1);
        ASSERT_EQ(Rows(db, QStringLiteral("SELECT LEN(cfgCompany) FROM Config"))->Value(0),
                  QVariant(text.size()));
    }
}

TEST_F(RandomTextTest, WhatIsNotQuotedIsNeverASecondStatement) {
    DB& db = Office.OutboxDB();
    ASSERT_TRUE(db.OpenDatabase(engine::Mode::ReadWriteShared));
    ASSERT_TRUE(db.Execute(QStringLiteral("INSERT INTO Message (msgText) VALUES ('kept')")));
    RandomText texts(5);
    for (int i = 0; i < Rounds(); ++i) {
        const QString text = texts.Next().left(60);
        Q_UNUSED(db.Execute(QStringLiteral("UPDATE System SET sysSMSMaxMessageSize = 160 WHERE 1 = 2 ") +
                            text + QStringLiteral("; DELETE FROM Message")));
        ASSERT_EQ(Rows(db, QStringLiteral("SELECT Count(*) FROM Message"))->Value(0), QVariant(1));
    }
}

}  // namespace
