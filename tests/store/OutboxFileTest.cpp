#include "core/Numbers.h"
#include "store/Outbox.h"
#include "store/Peer.h"
#include "store/engine/sqlite/LockWait.h"
#include "support/RawDatabase.h"
#include "support/TempOffice.h"

#include <QLocale>

#include <gtest/gtest.h>

using engine::Mode::ReadShared;
using engine::Mode::ReadWriteShared;

namespace {

class OutboxFileTest : public ::testing::Test {
protected:
    TempOffice Office;

    void OpenForWriting() { ASSERT_TRUE(Office.OutboxDB().OpenDatabase(ReadWriteShared)); }
    [[nodiscard]] qint16 Insert(const OutgoingMessage& message) {
        return mdlOutbox::InsertMessage(Office.Outbox(), message);
    }
    [[nodiscard]] qint16 InsertText(const QString& text) {
        OutgoingMessage message = AnyMessage();
        message.Text = text;
        return Insert(message);
    }
    [[nodiscard]] static OutgoingMessage AnyMessage() {
        OutgoingMessage message;
        message.Recipient = QStringLiteral("Mary Byrne");
        message.Address = QStringLiteral("+353871234567");
        message.Text = QStringLiteral("See you at five - Front desk");
        message.SendTime = QDateTime(QDate(2026, 3, 7), QTime(14, 5, 9));
        message.Station = QStringLiteral("DESK4\\MARY");
        message.Signature = QStringLiteral("Mary");
        message.BodyTextSize = 15;
        return message;
    }
    [[nodiscard]] QVariant Stored(const char16_t* column, int row = 0) {
        return Office.MessageRows().value(row).value(QString::fromUtf16(column));
    }
    /// The next automatic number of a table will be one higher.
    void SetLastIdentity(qint64 id) {
        Office.ExecuteOnOutbox(
            QStringLiteral("INSERT INTO sqlite_sequence (name, seq) VALUES ('Message', %1)").arg(id));
    }
};

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

class SendTimeLocaleTest : public ::testing::TestWithParam<const char*> {};

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

// --- failures ---

TEST_F(OutboxFileTest, AMissingFileIsNoLockAndTriedOnceAPass) {
    Office.AppSettings.SetValue(SettingNames::SectionDB, SettingNames::Outbox,
                                Office.DataFolder.filePath(QStringLiteral("nowhere")));
    Office.Time.Sleeps.clear();
    EXPECT_FALSE(mdlOutbox::OpenOutbox(Office.Outbox()));
    EXPECT_TRUE(Office.Time.Sleeps.isEmpty());
    EXPECT_TRUE(Office.OutboxDB().LastError().contains(QStringLiteral("SQL:3024")));
    EXPECT_EQ(Office.OutboxValues.MaxMessageSize, 459) << "what was known stays";
}

TEST_F(OutboxFileTest, AnInsertIntoATableThatIsNotThereShowsTheDetails) {
    Office.ExecuteOnOutbox(QStringLiteral(
        "DROP VIEW qry_Report_Message_Log; DROP VIEW qry_Canceled_Messages; DROP TABLE Message"));
    OpenForWriting();
    Office.Boxes.Expect();
    EXPECT_EQ(Insert(AnyMessage()), 0);
    ASSERT_EQ(Office.Boxes.Shown.size(), 1);
    const BoxRequest box = Office.Boxes.Shown.constFirst();
    EXPECT_EQ(box.Icon, BoxIcon::Critical);
    EXPECT_TRUE(box.Text.startsWith(QStringLiteral("Insert Message Failed\r\nGE:0x80004005, NE:0x")));
    EXPECT_TRUE(box.Text.contains(QStringLiteral("SQL:3078 - ")));
    EXPECT_TRUE(box.Text.endsWith(QStringLiteral("\r\nMSGLEN:28")));
}

TEST_F(OutboxFileTest, AnInsertWhileAnotherProcessKeepsTheFileShowsNothingAndWritesNoRow) {
    OpenForWriting();
    {
        LockingPeer peer(Office.OutboxPath(), QStringLiteral("reserved"));
        Office.Pump.Calls.clear();
        EXPECT_EQ(Insert(AnyMessage()), 0) << "this connection has produced no identity yet";
        EXPECT_EQ(Office.Pump.Calls, (QList<int>{4, 3, 4, 3, 4, 3}));
    }
    EXPECT_EQ(Insert(AnyMessage()), 1);
    {
        LockingPeer peer(Office.OutboxPath(), QStringLiteral("exclusive"));
        EXPECT_EQ(Insert(AnyMessage()), 1) << "the last identity of the connection";
    }
    EXPECT_EQ(Office.MessageRows().size(), 1);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(OutboxFileTest, AnInsertThatAReaderKeepsFromItsEndNeverReturnsANumberThatIsInNoRow) {
    OpenForWriting();
    {
        LockingPeer peer(Office.OutboxPath(), QStringLiteral("shared"));
        EXPECT_EQ(Insert(AnyMessage()), 0) << "this connection has produced no identity yet";
    }
    EXPECT_EQ(Insert(AnyMessage()), 1);
    {
        LockingPeer peer(Office.OutboxPath(), QStringLiteral("shared"));
        EXPECT_EQ(Insert(AnyMessage()), 1) << "the last identity of the connection";
    }
    EXPECT_EQ(Office.AddMessageRow({{QStringLiteral("msgText"), QStringLiteral("of another client")}}), 2);
    EXPECT_EQ(Office.MessageRows().size(), 2);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(OutboxFileTest, AnInsertThatMeetsALockIsWrittenExactlyOnceWhenTheLockGoes) {
    OpenForWriting();
    LockingPeer peer(Office.OutboxPath(), QStringLiteral("exclusive"));
    Office.Pump.OnProcess = [&](int) { peer.LetGo(); };  // after the first attempt
    EXPECT_EQ(Insert(AnyMessage()), 1);
    EXPECT_EQ(Office.MessageRows().size(), 1);
}

TEST_F(OutboxFileTest, AShortLockIsWaitedForBelowTheRetries) {
    OpenForWriting();
    LockingPeer peer(Office.OutboxPath(), QStringLiteral("reserved"));
    Office.Pump.Calls.clear();
    Office.Time.Sleeps.clear();
    Office.Time.OnSleep = [&](int) {
        if (Office.Time.Sleeps.size() == 20) {
            peer.LetGo();
        }
    };
    EXPECT_EQ(Insert(AnyMessage()), 1);
    EXPECT_FALSE(Office.OutboxDB().IsError());
    EXPECT_TRUE(Office.Pump.Calls.isEmpty());
}

TEST_F(OutboxFileTest, AFileThatAnotherProcessKeepsToItselfCannotBeOpenedOrReadInThreeAttempts) {
    LockingPeer peer(Office.OutboxPath(), QStringLiteral("exclusive"));
    Office.Pump.Calls.clear();
    const bool isOpen = Office.OutboxDB().OpenDatabase(ReadShared);
    if (isOpen) {
        EXPECT_EQ(Office.OutboxDB().ExecuteRecordset(QStringLiteral("SELECT * FROM System")), nullptr);
    }
    EXPECT_EQ(Office.Pump.Calls, (QList<int>{4, 3, 4, 3, 4, 3}));
    EXPECT_TRUE(Office.OutboxDB().IsError());
}

TEST_F(OutboxFileTest, ABlockedStatementHoldsTheUserForAKnownTimeAtMost) {
    constexpr int Attempts = 3;
    constexpr int LongestPause = 1000;
    constexpr int Slack = engine::sqlite::LockWait::MaxPause;
    constexpr int Worst = Attempts * (engine::sqlite::LockWait::MaxWait + Slack + LongestPause);
    static_assert(Worst <= 18100, "a blocked statement must not hold the user for more than 18 seconds");

    OpenForWriting();
    LockingPeer peer(Office.OutboxPath(), QStringLiteral("exclusive"));
    for (int i = 0; i < 5; ++i) {
        const qint64 start = Office.Time.Ticks();
        EXPECT_TRUE(Office.OutboxDB().Execute(QStringLiteral("DELETE FROM Message WHERE msgID = 1")));
        EXPECT_TRUE(Office.OutboxDB().IsError());
        const qint64 waited = Office.Time.Ticks() - start;
        EXPECT_LE(waited, Worst);
        EXPECT_GE(waited, Attempts * engine::sqlite::LockWait::MaxWait);
    }
    Office.OutboxDB().CloseDatabase();
    const qint64 start = Office.Time.Ticks();
    static_cast<void>(Office.OutboxDB().OpenDatabase(ReadWriteShared));
    EXPECT_LE(Office.Time.Ticks() - start, Worst) << "opening included";
}

// --- canceling ---

TEST_F(OutboxFileTest, CancelingWritesStatusReasonAndCompletion) {
    const qint32 id = Office.AddMessageRow({{QStringLiteral("msgText"), QStringLiteral("x")}});
    EXPECT_EQ(mdlOutbox::CancelMessage(Office.Outbox(), id), std::optional(true));
    EXPECT_EQ(Stored(u"msgStatus"), 2);
    EXPECT_EQ(Stored(u"msgComplete"), 1);
    EXPECT_EQ(Stored(u"msgErrorReason"), QStringLiteral("Canceled by user"));
    EXPECT_FALSE(Office.OutboxDB().IsConnected());
}

TEST_F(OutboxFileTest, CancelingTwiceAffectsNoRowTheSecondTimeAndIsFalse) {
    const qint32 id = Office.AddMessageRow({{QStringLiteral("msgText"), QStringLiteral("x")}});
    EXPECT_EQ(mdlOutbox::CancelMessage(Office.Outbox(), id), std::optional(true));
    EXPECT_EQ(mdlOutbox::CancelMessage(Office.Outbox(), id), std::optional(false));
}

TEST_F(OutboxFileTest, AMessageThatTheGatewayHasTakenIsNotCanceledAndItsRowStays) {
    for (const int status : {1, 2, 3, 4, 5, 6, 7, 9}) {
        const qint32 id =
            Office.AddMessageRow({{QStringLiteral("msgStatus"), status},
                                  {QStringLiteral("msgErrorReason"), QStringLiteral("gateway")}});
        const QVariantMap before = Office.MessageRows().constLast();
        EXPECT_EQ(mdlOutbox::CancelMessage(Office.Outbox(), id), std::optional(false));
        EXPECT_EQ(Office.MessageRows().constLast(), before);
    }
    EXPECT_EQ(mdlOutbox::CancelMessage(Office.Outbox(), 999), std::optional(false)) << "no such row";
}

TEST_F(OutboxFileTest, AGatewayThatTakesTheMessageDuringTheWaitWins) {
    const qint32 id = Office.AddMessageRow({{QStringLiteral("msgText"), QStringLiteral("x")}});
    OpenForWriting();
    LockingPeer peer(Office.OutboxPath(), QStringLiteral("reserved"));
    bool isFirst = true;
    Office.Pump.OnProcess = [&](int) {
        if (std::exchange(isFirst, false)) {
            peer.LetGo();
            Office.ExecuteOnOutbox(QStringLiteral("UPDATE Message SET msgStatus = 1"));
        }
    };
    EXPECT_EQ(mdlOutbox::CancelMessage(Office.Outbox(), id), std::optional(false));
    EXPECT_EQ(Stored(u"msgStatus"), 1);
    EXPECT_TRUE(Office.OutboxDB().IsConnected());
}

TEST_F(OutboxFileTest, ACancelThatRunsOutOnALockIsFalseAndTheRowStays) {
    const qint32 id = Office.AddMessageRow({{QStringLiteral("msgText"), QStringLiteral("x")}});
    OpenForWriting();
    {
        LockingPeer peer(Office.OutboxPath(), QStringLiteral("exclusive"));
        EXPECT_EQ(mdlOutbox::CancelMessage(Office.Outbox(), id), std::optional(false));
    }
    EXPECT_EQ(Stored(u"msgStatus"), 0);
}

TEST_F(OutboxFileTest, AnOutboxThatCannotBeOpenedGivesTheEmptyValue) {
    ASSERT_TRUE(QFile::remove(Office.OutboxPath()));
    EXPECT_EQ(mdlOutbox::CancelMessage(Office.Outbox(), 1), std::nullopt);
}

// --- several clients at once ---

TEST_F(OutboxFileTest, NoRowIsLostOrWrittenTwiceWhenSeveralClientsSendAtOnce) {
    constexpr int Clients = 4;
    constexpr int MessagesEach = 25;
    std::vector<std::unique_ptr<QProcess>> peers;
    for (int i = 0; i < Clients; ++i) {
        peers.push_back(std::make_unique<QProcess>());
        peers.back()->start(QStringLiteral(STORE_PEER),
                            {QStringLiteral("insert"), Office.DataFolder.path(),
                             QStringLiteral("client%1").arg(i), QString::number(MessagesEach)});
    }
    QMap<int, QString> reported;
    for (const auto& peer : peers) {
        ASSERT_TRUE(peer->waitForFinished(60000));
        EXPECT_EQ(peer->exitCode(), 0) << peer->readAllStandardError().toStdString();
        for (const QByteArray& line : peer->readAllStandardOutput().trimmed().split('\n')) {
            const qsizetype blank = line.indexOf(' ');
            reported.insert(line.left(blank).toInt(), QString::fromUtf8(line.mid(blank + 1)));
        }
    }
    const QList<QVariantMap> rows = Office.MessageRows();
    EXPECT_EQ(rows.size(), Clients * MessagesEach);
    EXPECT_EQ(reported.size(), Clients * MessagesEach);
    for (const QVariantMap& row : rows) {
        EXPECT_EQ(reported.value(row.value(QStringLiteral("msgID")).toInt()),
                  row.value(QStringLiteral("msgText")).toString());
    }
}

}  // namespace
