#include "compose/DispatchFixture.h"

#include "support/FakeEngine.h"
#include "support/RawDatabase.h"

#include <functional>
#include <utility>

namespace {

using Operation = FakeEngine::Operation;

/// An office with a send in it and another program that sits on the outbox and lets nobody write.
class DispatchOnALockedOutbox : public DispatchFixture {
public:
    RawDatabase Other{Office.OutboxPath()};

    void Lock() { Other.Execute(QStringLiteral("BEGIN IMMEDIATE")); }
    /// Others may read, and write a row until they have to commit it.
    void LockAsReader() {
        Other.Execute(QStringLiteral("BEGIN"));
        EXPECT_TRUE(Other.Value(QStringLiteral("SELECT Count(*) FROM Message")).isValid());
    }
    void Unlock() { Other.Execute(QStringLiteral("ROLLBACK")); }
    /// Lets go of the outbox when all attempts of a statement have run out: each is followed by one wait.
    void UnlockAfterAttemptsRanOut() {
        Office.Pump.OnProcess = [this, waits = 0](int passes) mutable {
            constexpr int PassesAfterTheWait = 3;
            waits += passes == PassesAfterTheWait ? 1 : 0;
            if (waits == Office.OutboxDB().MaxRetryCount) {
                Unlock();
            }
        };
    }
    /// Runs after the history and the log of the first recipient were written.
    void AfterTheFirstRow(const std::function<void()>& lock) {
        Office.Files.OnWrite = [lock, writes = 0]() mutable {
            if (++writes == 2) {
                lock();
            }
        };
    }
};

/// An office with a send in it and an outbox that fails on demand. It gives the identities 1, 2, 3 ...
class DispatchOnAFailingOutbox : public DispatchFixture {
public:
    FakeEngine Engine;
    OutboxServices FakeOutbox{Office.OutboxValues, Office.AppSettings, Office.Boxes,
                              DBServices{Engine, Office.Time, Office.Pump, Office.Drives, Office.Folders}};
    DispatchServices FakeServices{FakeOutbox, Recipients, History, Tracker, Office.Time};
    int Inserts = 0;

    DispatchOnAFailingOutbox() {
        Office.OutboxValues.OutboxDB = std::make_unique<DB>(FakeOutbox.Database);
        Engine.OnAttempt = [this](Operation operation) {
            if (operation == Operation::Execute &&
                Engine.Statements.last().startsWith(QStringLiteral("INSERT"))) {
                ++Inserts;
                Engine.Serve(QStringLiteral("@@IDENTITY"), {{QStringLiteral("ID")}, {{qint64{Inserts}}}});
            }
        };
    }
    void Send(bool removeSent = true) { Dispatch::DoSend(FakeServices, Sheet, Office.Time.Time, removeSent); }
};

}  // namespace

TEST_F(DispatchOnALockedOutbox, AFirstRecipientWhoseAttemptsRunOutStaysListedWithoutABox) {
    AddRecipients(3);
    Lock();
    UnlockAfterAttemptsRanOut();
    Send();
    EXPECT_EQ(Column(QStringLiteral("msgRecipient")),
              (QStringList{QStringLiteral("F2 S2"), QStringLiteral("F3 S3")}));
    EXPECT_EQ(Sheet.Keys, QStringList{QStringLiteral("C1")});
    EXPECT_NE(Recipients.ContactByKey(QStringLiteral("C1")), nullptr);
    EXPECT_EQ(Sheet.Resets, 0);
    EXPECT_EQ(HistoryIDs(), (QList<qint32>{2, 1}));
    EXPECT_EQ(Tracker.SlotAt(0).recipient, u"F2 S2");
    EXPECT_EQ(Tracker.SlotAt(2).msgID, 0);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(DispatchOnALockedOutbox, WithAllAttemptsOfAllRecipientsRunOutAllStayAndTheNextSendReachesThem) {
    AddRecipients(2);
    Lock();
    Send();
    EXPECT_TRUE(Office.MessageRows().isEmpty());
    EXPECT_EQ(Sheet.Keys.size(), 2);
    EXPECT_EQ(Recipients.Count(), 2);
    EXPECT_EQ(Sheet.Resets, 0);
    EXPECT_TRUE(HistoryIDs().isEmpty());
    EXPECT_EQ(Tracker.SlotAt(0).msgID, 0);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
    EXPECT_FALSE(Office.OutboxDB().IsConnected());
    Unlock();
    Send();
    EXPECT_EQ(Office.MessageRows().size(), 2);
    EXPECT_EQ(Sheet.Resets, 1);
}

TEST_F(DispatchOnALockedOutbox, ALaterRecipientWhoseAttemptsRunOutPassesForSentUnderTheNumberOfTheOneBefore) {
    AddRecipients(3);
    AfterTheFirstRow([this] { Lock(); });
    UnlockAfterAttemptsRanOut();
    Send();
    EXPECT_EQ(Column(QStringLiteral("msgRecipient")),
              (QStringList{QStringLiteral("F1 S1"), QStringLiteral("F3 S3")}));
    EXPECT_EQ(HistoryIDs(), (QList<qint32>{2, 1, 1}));
    EXPECT_EQ(History.ReadHistory().at(1).Recipient, u"F2 S2");
    EXPECT_EQ(Tracker.SlotAt(1).msgID, 1);
    EXPECT_EQ(Tracker.SlotAt(1).recipient, u"F2 S2");
    EXPECT_EQ(Sheet.Removed,
              (QList<QStringList>{{QStringLiteral("C1"), QStringLiteral("C2"), QStringLiteral("C3")}}));
    EXPECT_EQ(Sheet.Resets, 1);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(DispatchOnALockedOutbox, AFirstRecipientWhoseRowIsKeptOutByAReaderStaysListedWithoutABox) {
    AddRecipients(2);
    LockAsReader();
    Send();
    Unlock();
    EXPECT_TRUE(Office.MessageRows().isEmpty());
    EXPECT_EQ(Sheet.Keys.size(), 2);
    EXPECT_EQ(Recipients.Count(), 2);
    EXPECT_EQ(Sheet.Resets, 0);
    EXPECT_TRUE(HistoryIDs().isEmpty());
    EXPECT_EQ(Tracker.SlotAt(0).msgID, 0);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(DispatchOnALockedOutbox, ALaterRowKeptOutByAReaderLeavesNoNumberOfItsOwn) {
    AddRecipients(2);
    AfterTheFirstRow([this] { LockAsReader(); });
    UnlockAfterAttemptsRanOut();
    Send();
    EXPECT_EQ(Column(QStringLiteral("msgID")), QStringList{QStringLiteral("1")});
    EXPECT_EQ(HistoryIDs(), (QList<qint32>{1, 1})) << "number 2 will be another client's";
    EXPECT_EQ(Tracker.SlotAt(1).msgID, 1);
}

TEST_F(DispatchOnALockedOutbox, AttemptsRunOutOnlyAfterThreeWaitsOfTheEngineAndThreePauses) {
    AddRecipients(1);
    Lock();
    const QDateTime before = Office.Time.Time;
    Send();
    EXPECT_EQ(Office.Pump.Calls, (QList<int>{4, 3, 4, 3, 4, 3}));
    const qint64 waited = before.msecsTo(Office.Time.Time);
    EXPECT_GE(waited, 3 * 5000 + 10 + 100 + 250);
    EXPECT_LE(waited, 3 * 5100 + 3 * 1000);
}

TEST_F(DispatchOnAFailingOutbox, TheOutboxIsOpenedForWritingOnceAndClosedAtTheEnd) {
    AddRecipients(3);
    Send();
    EXPECT_EQ(Engine.Modes, QList<qint32>{19});
    EXPECT_EQ(Engine.OpenConnections, 0);
    EXPECT_EQ(Inserts, 3);
}

TEST_F(DispatchOnAFailingOutbox, AnEmptyListDoesNotOpenTheOutbox) {
    Send();
    EXPECT_EQ(Engine.Attempts(Operation::Open), 0);
}

TEST_F(DispatchOnAFailingOutbox, AnInsertThatFailsIsToldAndTheLoopGoesOn) {
    AddRecipients(3);
    // Executes: insert, identity, insert ...: the third is the second recipient's insert.
    Engine.Fail(Operation::Execute, engine::Number::DiskFull, 3, 3);
    Office.Boxes.Expect();
    Send();
    EXPECT_EQ(Office.Boxes.Shown,
              QList{Critical(QStringLiteral("Insert Message Failed\r\nGE:0x80004005, NE:0x0, SQL:3026 - "
                                            "fake failure 3026\r\nMSGLEN:18"))});
    EXPECT_EQ(Sheet.Keys, QStringList{QStringLiteral("C2")});
    EXPECT_NE(Recipients.ContactByKey(QStringLiteral("C2")), nullptr);
    EXPECT_EQ(Recipients.Count(), 1);
    EXPECT_EQ(HistoryIDs(), (QList<qint32>{3, 1}));
    EXPECT_EQ(Tracker.SlotAt(0).msgID, 1);
    EXPECT_EQ(Tracker.SlotAt(1).msgID, 3);
    EXPECT_EQ(Sheet.Resets, 0);
    EXPECT_EQ(Engine.OpenConnections, 0);
}

TEST_F(DispatchOnAFailingOutbox, AnIdentityThatCannotBeReadLeavesTheRecipientUntracked) {
    AddRecipients(2);
    Engine.Fail(Operation::Execute, engine::Number::DiskFull, 2, 2);
    Office.Boxes.Expect();
    Send();
    EXPECT_EQ(Office.Boxes.Shown,
              QList{Critical(QStringLiteral("Could not retrieve Message ID\r\nGE:0x80004005, NE:0x0, "
                                            "SQL:3026 - fake failure 3026"))});
    EXPECT_EQ(Sheet.Keys, QStringList{QStringLiteral("C1")});
    EXPECT_EQ(HistoryIDs(), QList<qint32>{2});
}

TEST_F(DispatchOnAFailingOutbox, AnOutboxThatCannotBeOpenedIsToldToTheLetter) {
    AddRecipients(1);
    Engine.Fail(Operation::Open, engine::Number::NoSuchFile);
    Office.Boxes.Expect();
    Send();
    EXPECT_EQ(Office.Boxes.Shown, QList{Critical(QStringLiteral("Could not open Outbox Database\r\n"
                                                                "GE:0x80004005, NE:0x0, SQL:3024 - fake "
                                                                "failure 3024"))});
    EXPECT_EQ(Inserts, 0);
}

TEST_F(DispatchOnAFailingOutbox, WithNothingWrittenNothingIsRemoved) {
    AddRecipients(2);
    Engine.Fail(Operation::Execute, engine::Number::ReadOnly);
    Office.Boxes.Expect();
    Office.Boxes.Expect();
    Send();
    EXPECT_EQ(Sheet.Keys.size(), 2);
    EXPECT_EQ(Recipients.Count(), 2);
    EXPECT_EQ(Sheet.Resets, 0);
    EXPECT_TRUE(HistoryIDs().isEmpty());
    EXPECT_EQ(Tracker.SlotAt(0).msgID, 0);
}

TEST_F(DispatchOnAFailingOutbox, EachRowIsInTheHistoryBeforeTheNextIsWritten) {
    AddRecipients(3);
    const auto count = Engine.OnAttempt;
    QList<qsizetype> before;
    Engine.OnAttempt = [&](Operation operation) {
        if (operation == Operation::Execute &&
            Engine.Statements.last().startsWith(QStringLiteral("INSERT"))) {
            before.append(History.ReadHistory().size());
        }
        count(operation);
    };
    Send();
    EXPECT_EQ(before, (QList<qsizetype>{0, 1, 2}));
}

TEST_F(DispatchOnAFailingOutbox, ALockedOutboxIsTriedAgainWithOneRowInTheEnd) {
    AddRecipients(2);
    Engine.Fail(Operation::Execute, engine::Number::LockedByAnother, 1, 2);
    Send();
    EXPECT_EQ(HistoryIDs().size(), 2);
    EXPECT_EQ(Sheet.Resets, 1);
    EXPECT_EQ(Office.Time.Sleeps.size(), 2);
}

TEST_F(DispatchOnAFailingOutbox, TodayIsTheDayOfTheSendAlsoIfMidnightPassesWhileTheOutboxIsWaitedFor) {
    AddRecipients(1);
    Sheet.Message = QStringLiteral("@TD");
    Engine.Fail(Operation::Open, engine::Number::FileInUse, 1, 1);
    Office.Time.OnSleep = [this](int) { Office.Time.Time = Office.Time.Time.addDays(1); };
    Send();
    ASSERT_EQ(History.ReadHistory().size(), 1);
    EXPECT_EQ(Office.Time.Time.date(), QDate(2026, 3, 8));
    EXPECT_TRUE(
        Engine.Statements.filter(QStringLiteral("INSERT")).first().contains(QStringLiteral("'07.Mar ")))
        << Engine.Statements.join(u'\n').toStdString();
}

TEST_F(DispatchOnAFailingOutbox, AListThatChangesDuringARetryDoesNotChangeWhoIsSentTo) {
    AddRecipients(2);
    Engine.Fail(Operation::Execute, engine::Number::LockedByAnother, 1, 1);
    bool isFirst = true;
    Office.Pump.OnProcess = [&](int) {
        if (std::exchange(isFirst, false)) {
            Sheet.Message = QStringLiteral("something else");
            Sheet.Keys = {QStringLiteral("C2"), QStringLiteral("C1")};
            AddRecipient(QStringLiteral("S3"), QStringLiteral("F3"), QStringLiteral("+3533"));
        }
    };
    Send();
    EXPECT_EQ(Sheet.Keys, QStringList{QStringLiteral("C3")});
    EXPECT_EQ(Recipients.Count(), 1);
    EXPECT_EQ(History.ReadHistory().first().Text, u"Hello");
    EXPECT_EQ(Sheet.Resets, 0);
    EXPECT_EQ(HistoryIDs().size(), 2);
}

TEST_F(DispatchOnAFailingOutbox, AContactThatGoesDuringItsOwnRetryIsSentAndItsRowIsTakenOut) {
    AddRecipients(1);
    Engine.Fail(Operation::Execute, engine::Number::LockedByAnother, 1, 1);
    Office.Pump.OnProcess = [&](int) { Recipients.Clear(); };
    Send();
    EXPECT_EQ(Tracker.SlotAt(0).recipient, u"F1 S1");
    EXPECT_EQ(Sheet.Removed, QList<QStringList>{{QStringLiteral("C1")}});
    EXPECT_EQ(Sheet.Resets, 1);
}
