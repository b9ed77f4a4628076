#include "store/OutboxFileFixture.h"

#include "store/Peer.h"
#include "store/engine/sqlite/LockWait.h"

using engine::Mode::ReadShared;
using engine::Mode::ReadWriteShared;

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
