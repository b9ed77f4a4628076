#include "store/OutboxFileFixture.h"

#include "core/Numbers.h"
#include "support/FakeMount.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>

using engine::Mode::ReadWriteShared;

// --- the row ---

TEST_F(OutboxFileTest, AMessageIsOneRowAsTheGatewayExpectsIt) {
    OpenForWriting();
    EXPECT_EQ(Insert(AnyMessage()), 1);
    Office.OutboxDB().CloseDatabase();
    const QList<QVariantMap> rows = Office.MessageRows();
    ASSERT_EQ(rows.size(), 1);
    const QVariantMap expected = {{QStringLiteral("msgID"), 1},
                                  {QStringLiteral("msgRecipient"), QStringLiteral("Mary Byrne")},
                                  {QStringLiteral("msgAddress"), QStringLiteral("+353871234567")},
                                  {QStringLiteral("msgText"), QStringLiteral("See you at five - Front desk")},
                                  {QStringLiteral("msgSendTime"), QStringLiteral("2026-03-07 14:05:09")},
                                  {QStringLiteral("msgSignature"), QStringLiteral("Mary")},
                                  {QStringLiteral("msgStation"), QStringLiteral("DESK4\\MARY")},
                                  {QStringLiteral("msgBodyTextSize"), 15},
                                  {QStringLiteral("msgStatus"), 0},
                                  {QStringLiteral("msgComplete"), 0},
                                  {QStringLiteral("msgDeliveryStatus"), QVariant()},
                                  {QStringLiteral("msgDeliveryTime"), QVariant()},
                                  {QStringLiteral("msgErrorReason"), QVariant()},
                                  {QStringLiteral("msgTariff"), QVariant()},
                                  {QStringLiteral("msgFragmentCount"), QVariant()}};
    EXPECT_EQ(rows.constFirst().keys(), expected.keys());
    for (auto column = expected.cbegin(); column != expected.cend(); ++column) {
        EXPECT_EQ(rows.constFirst().value(column.key()).toString(), column.value().toString())
            << column.key().toStdString();
    }
}

TEST_F(OutboxFileTest, ANameWithAnApostropheIsStoredWithIt) {
    OpenForWriting();
    OutgoingMessage message = AnyMessage();
    message.Recipient = QStringLiteral("Eoin O'Neill");
    message.Text = QStringLiteral("'it''s' -- \"quoted\"; DROP TABLE Message");
    message.Signature = QStringLiteral("'");
    EXPECT_EQ(Insert(message), 1);
    EXPECT_EQ(Stored(u"msgRecipient"), message.Recipient);
    EXPECT_EQ(Stored(u"msgText"), message.Text);
    EXPECT_EQ(Stored(u"msgSignature"), message.Signature);
}

TEST_F(OutboxFileTest, ATextLongerThanTheLimitIsCutSilently) {
    OpenForWriting();
    EXPECT_EQ(Office.OutboxValues.MaxMessageSize, 459);
    EXPECT_EQ(InsertText(QString(459, u'a') + u'b'), 1);
    EXPECT_EQ(InsertText(QString(459, u'a')), 2);
    EXPECT_EQ(Stored(u"msgText", 0), QString(459, u'a'));
    EXPECT_EQ(Stored(u"msgText", 1), QString(459, u'a'));
    EXPECT_EQ(Stored(u"msgBodyTextSize"), 15) << "the body size is not adjusted";
}

TEST_F(OutboxFileTest, ARecipientNameOf31CharactersLosesTheLastOne) {
    OpenForWriting();
    OutgoingMessage message = AnyMessage();
    message.Recipient = QString(30, u'n') + u'x';
    message.Address = QString(30, u'1') + u'2';
    message.Station = QString(32, u's') + u'x';
    EXPECT_EQ(Insert(message), 1);
    EXPECT_EQ(Stored(u"msgRecipient"), QString(30, u'n'));
    EXPECT_EQ(Stored(u"msgAddress"), QString(30, u'1'));
    EXPECT_EQ(Stored(u"msgStation"), QString(32, u's'));
}

TEST_F(OutboxFileTest, LeadingAndTrailingBlanksOfTheTextAreLostAlsoWhenTheyAreItsOwn) {
    OpenForWriting();
    EXPECT_EQ(InsertText(QStringLiteral("   two  words \r\n  ")), 1);
    EXPECT_EQ(Stored(u"msgText"), QStringLiteral("two  words \r\n"));
}

TEST_F(OutboxFileTest, CharactersOfAllKindsComeBackAsTheyWere) {
    OpenForWriting();
    const QString text =
        QString::fromUtf16(u"äöü €[]{}\\^~| Ω\t\r\n日本語 🙂 Łódź Жук %_*?#|");
    EXPECT_EQ(InsertText(text), 1);
    EXPECT_EQ(Stored(u"msgText"), text);
}

namespace {

class SendTimeLocaleTest : public ::testing::TestWithParam<const char*> {};

}  // namespace

TEST_P(SendTimeLocaleTest, EveryMonthArrivesAsItWasMeant) {
    const QLocale before;
    QLocale::setDefault(QLocale(QString::fromLatin1(GetParam())));
    {
        TempOffice office;
        ASSERT_TRUE(office.OutboxDB().OpenDatabase(ReadWriteShared));
        for (int month = 1; month <= 12; ++month) {
            OutgoingMessage message;
            message.SendTime = QDateTime(QDate(2026, month, 11), QTime(month, 59, 1));
            EXPECT_EQ(mdlOutbox::InsertMessage(office.Outbox(), message), month);
        }
        for (const QVariantMap& row : office.MessageRows()) {
            EXPECT_EQ(row.value(QStringLiteral("msgSendTime")).toString(),
                      QStringLiteral("2026-%1-11 %1:59:01")
                          .arg(row.value(QStringLiteral("msgID")).toInt(), 2, 10, QLatin1Char('0')));
        }
    }
    QLocale::setDefault(before);
}

INSTANTIATE_TEST_SUITE_P(Languages, SendTimeLocaleTest,
                         ::testing::Values("C", "en_IE", "de_DE", "fr_FR", "pl_PL", "ru_RU", "fi_FI", "tr_TR",
                                           "es_ES", "it_IT", "nl_NL", "cs_CZ", "el_GR", "ga_IE", "ja_JP",
                                           "ar_EG", "hr_HR"),
                         [](const auto& given) { return std::string(given.param); });

// --- identities ---

TEST_F(OutboxFileTest, TheLargestIdentityOf16BitsComesBack) {
    SetLastIdentity(32766);
    OpenForWriting();
    EXPECT_EQ(Insert(AnyMessage()), 32767);
}

TEST_F(OutboxFileTest, AnIdentityBeyond16BitsOverflowsAndTheRowIsThereAllTheSame) {
    SetLastIdentity(32767);
    OpenForWriting();
    EXPECT_THROW(static_cast<void>(Insert(AnyMessage())), OverflowError);
    EXPECT_EQ(Stored(u"msgID"), 32768);
    EXPECT_TRUE(Office.OutboxDB().Execute(QStringLiteral("DELETE FROM Message WHERE msgID = 1")))
        << "the connection still works";
}

TEST_F(OutboxFileTest, AnotherClientsRowDoesNotDisturbTheIdentity) {
    OpenForWriting();
    EXPECT_EQ(Insert(AnyMessage()), 1);
    Office.AddMessageRow({{QStringLiteral("msgText"), QStringLiteral("of another client")}});
    EXPECT_EQ(Insert(AnyMessage()), 3);
    ASSERT_TRUE(Office.OutboxDB().Execute(QStringLiteral("DELETE FROM Message WHERE msgID = 3")));
    EXPECT_EQ(Insert(AnyMessage()), 4) << "a number is never used twice";
}

// --- the System record ---

TEST_F(OutboxFileTest, TheLimitComesFromTheSystemRecord) {
    Office.ExecuteOnOutbox(QStringLiteral("UPDATE System SET sysSMSMaxMessageSize = 918"));
    EXPECT_TRUE(mdlOutbox::OpenOutbox(Office.Outbox()));
    EXPECT_EQ(Office.OutboxValues.MaxMessageSize, 918);
    Office.ExecuteOnOutbox(QStringLiteral("UPDATE System SET sysSMSMaxMessageSize = 70"));
    EXPECT_TRUE(mdlOutbox::OpenOutbox(Office.Outbox()));
    EXPECT_EQ(Office.OutboxValues.MaxMessageSize, 160);
    Office.ExecuteOnOutbox(QStringLiteral("DELETE FROM System"));
    EXPECT_TRUE(mdlOutbox::OpenOutbox(Office.Outbox()));
    EXPECT_EQ(Office.OutboxValues.MaxMessageSize, 0);
    Office.ExecuteOnOutbox(QStringLiteral("DROP TABLE System"));
    EXPECT_TRUE(mdlOutbox::OpenOutbox(Office.Outbox()));
    EXPECT_EQ(Office.OutboxValues.MaxMessageSize, 160);
}

TEST_F(OutboxFileTest, ANullLimitReadsAs160) {
    Office.ExecuteOnOutbox(
        QStringLiteral("DROP TABLE System; CREATE TABLE System (sysSMSMaxMessageSize INTEGER); "
                       "INSERT INTO System VALUES (NULL)"));
    EXPECT_TRUE(mdlOutbox::OpenOutbox(Office.Outbox()));
    EXPECT_EQ(Office.OutboxValues.MaxMessageSize, 160);
}

TEST_F(OutboxFileTest, AnOutboxOfAnotherNameIsUsedAsItStands) {
    const QString other = Office.DataFolder.filePath(QStringLiteral("other.mdb"));
    ASSERT_TRUE(QFile::rename(Office.OutboxPath(), other));
    EXPECT_FALSE(mdlOutbox::OpenOutbox(Office.Outbox())) << "the default name is gone";
    Office.AppSettings.SetValue(SettingNames::SectionDB, SettingNames::Outbox, other);
    EXPECT_TRUE(mdlOutbox::OpenOutbox(Office.Outbox()));
    EXPECT_EQ(Office.OutboxDB().Filename, other);
}

TEST_F(OutboxFileTest, ADriveThatTakesItsTimeToComeBackOpensInTheSecondPass) {
    const QTemporaryDir folder;
    const QString drivesIni = QFileInfo(Office.AppSettings.FileName()).path() + QStringLiteral("/drives.ini");
    QFile table(drivesIni);
    ASSERT_TRUE(table.open(QIODevice::WriteOnly));
    table.write("[Drives]\nX:=" + folder.path().toUtf8() + '\n');
    table.close();
    Office.ExecuteOnOutbox(QStringLiteral("UPDATE System SET sysSMSMaxMessageSize = 306"));
    const FakeMount mount("sleep 0.2; cp '" + Office.OutboxPath().toLocal8Bit() + "' '" +
                          folder.path().toLocal8Bit() + "'");
    Office.AppSettings.SetValue(SettingNames::SectionDB, SettingNames::Outbox, QStringLiteral("X:\\"));
    SystemDrives drives;
    const OutboxServices services{Office.OutboxValues,
                                  Office.AppSettings,
                                  Office.Boxes,
                                  {Office.FileEngine, Office.Time, Office.Pump, drives, Office.Folders}};
    EXPECT_TRUE(mdlOutbox::OpenOutbox(services));
    EXPECT_EQ(mount.Calls(), QList<QByteArray>{folder.path().toLocal8Bit()});
    EXPECT_EQ(Office.OutboxValues.MaxMessageSize, 306);
    EXPECT_TRUE(QFile::remove(drivesIni));
}
