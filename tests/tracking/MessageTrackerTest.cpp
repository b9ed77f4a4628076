#include "tracking/MessageTracker.h"

#include "support/FakeEngine.h"
#include "support/RawDatabase.h"
#include "support/TempOffice.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using Operation = FakeEngine::Operation;

/// Notes what is final, clears it, and calls 7 a failure.
class NotingSink final : public DeliverySink {
public:
    int Calls = 0;
    QList<MessageTracker::Slot> Final;
    bool IsFailing = false;

    qint16 PopupNotify(MessageTracker& tracker) override {
        ++Calls;
        if (IsFailing) {
            throw std::runtime_error("no popup");
        }
        qint16 failures = 0;
        for (int i = 0; i < MessageTracker::SlotCount; ++i) {
            const MessageTracker::Slot slot = tracker.SlotAt(i);
            if (slot.msgID == 0 || !mdlOutbox::IsMessageFinal(slot.status)) {
                continue;
            }
            Final.append(slot);
            failures = static_cast<qint16>(failures + (slot.status == 7 ? 1 : 0));
            tracker.ClearSlot(i);
        }
        return failures;
    }
};

QString UniqueApplication() {
    static int count = 0;
    return QStringLiteral("Tracker test %1").arg(++count);
}

/// A tracker on an outbox that answers what a test wants.
class MessageTrackerTest : public ::testing::Test {
public:
    FakeEngine Engine;
    FakeClock Time;
    FakePump Pump;
    FakeDrives Drives;
    FakeFolders Folders;
    Settings AppSettings;
    OutboxState Outbox;
    NotingSink Sink;
    MessageTracker Tracker{Outbox, AppSettings, Time};

    MessageTrackerTest() {
        AppSettings.SetApplication(UniqueApplication());
        Outbox.OutboxDB = std::make_unique<DB>(DBServices{Engine, Time, Pump, Drives, Folders});
        Tracker.SetSink(&Sink);
    }

    void Track(qint32 id) {
        Tracker.Track(id, QStringLiteral("Ann"), QStringLiteral("+3531"), QStringLiteral("Hi"));
    }
    /// What the next polls read, instead of what was set before.
    void Serve(const QList<QVariantList>& rows) {
        Engine.Serve(QStringLiteral("FROM Message"), {{QStringLiteral("msgID"), QStringLiteral("msgStatus"),
                                                       QStringLiteral("msgDeliveryTime")},
                                                      rows});
    }
    void PassInterval() { Time.Time = Time.Time.addSecs(Tracker.RefreshInterval); }
    [[nodiscard]] QList<qint32> IDs(int count) const {
        QList<qint32> ids;
        for (int i = 0; i < count; ++i) {
            ids.append(Tracker.SlotAt(i).msgID);
        }
        return ids;
    }
};

QVariantList Row(qint64 id, const QVariant& status, const QVariant& deliveryTime = QVariant()) {
    return {id, status, deliveryTime};
}

QVariant At(int hour, int minute) {
    return QDateTime(QDate(2026, 3, 7), QTime(hour, minute, 59));
}

}  // namespace

TEST_F(MessageTrackerTest, StartsEnabledWithAMinuteBetweenPollsAndNoSound) {
    EXPECT_TRUE(Tracker.Enabled());
    EXPECT_EQ(Tracker.RefreshInterval, 60);
    EXPECT_FALSE(Tracker.PlaySound);
    EXPECT_FALSE(Tracker.NextCheck().isValid());
    EXPECT_EQ(IDs(50), QList<qint32>(50, 0));
}

TEST_F(MessageTrackerTest, TrackFillsTheFirstFreeSlot) {
    Tracker.Track(17, QStringLiteral("Ann Bo"), QStringLiteral("(Private Number)"), QStringLiteral("Hello"));
    Track(18);
    Track(19);
    Tracker.CancelTracking(18);
    Track(20);
    EXPECT_EQ(IDs(4), (QList<qint32>{17, 20, 19, 0}));
    const MessageTracker::Slot& slot = Tracker.SlotAt(0);
    EXPECT_EQ(slot.status, 0);
    EXPECT_EQ(slot.recipient, u"Ann Bo");
    EXPECT_EQ(slot.number, u"(Private Number)");
    EXPECT_EQ(slot.deliveryTime, QString());
    EXPECT_EQ(slot.text, u"Hello");
}

TEST_F(MessageTrackerTest, TrackCutsTheTextFirstAndTrimsAfter) {
    const QString blanks(10, u' ');
    Tracker.Track(1, {}, {}, blanks + QString(60, u'x'));
    EXPECT_EQ(Tracker.SlotAt(0).text, QString(40, u'x'));
    Tracker.Track(2, {}, {}, QString(45, u'y') + blanks + u'z');
    EXPECT_EQ(Tracker.SlotAt(1).text, QString(45, u'y'));
    Tracker.Track(3, {}, {}, QString(51, u'w'));
    EXPECT_EQ(Tracker.SlotAt(2).text, QString(50, u'w'));
}

TEST_F(MessageTrackerTest, DisabledItStoresNothingAndLeavesTheOutboxAlone) {
    Tracker.SetEnabled(false);
    Track(1);
    EXPECT_EQ(IDs(1), QList<qint32>{0});
    EXPECT_EQ(Tracker.Update(), 0);
    EXPECT_EQ(Engine.Attempts(Operation::Open), 0);
    EXPECT_EQ(Sink.Calls, 0);
}

TEST_F(MessageTrackerTest, DisablingForgetsEverything) {
    for (qint32 id = 1; id <= 50; ++id) {
        Track(id);
    }
    Tracker.SetEnabled(false);
    Tracker.SetEnabled(true);
    EXPECT_EQ(IDs(50), QList<qint32>(50, 0));
    EXPECT_EQ(Tracker.SlotAt(49).recipient, QString());
}

TEST_F(MessageTrackerTest, CancelTrackingClearsTheFirstSlotWithThisMessage) {
    Track(5);
    Track(6);
    Track(5);
    Tracker.CancelTracking(5);
    EXPECT_EQ(IDs(3), (QList<qint32>{0, 6, 5}));
    EXPECT_EQ(Tracker.SlotAt(0).recipient, QString());
    EXPECT_EQ(Tracker.SlotAt(0).text, QString());
}

TEST_F(MessageTrackerTest, CancelTrackingOfAnUnknownMessageDoesNothing) {
    Track(5);
    Tracker.CancelTracking(4);
    EXPECT_EQ(IDs(2), (QList<qint32>{5, 0}));
}

TEST_F(MessageTrackerTest, TheFiftyFirstMessagePushesTheFirstOutWithoutNotice) {
    for (qint32 id = 1; id <= 51; ++id) {
        Track(id);
    }
    EXPECT_EQ(Tracker.SlotAt(0).msgID, 2);
    EXPECT_EQ(Tracker.SlotAt(48).msgID, 50);
    EXPECT_EQ(Tracker.SlotAt(49).msgID, 51);
    EXPECT_EQ(Sink.Calls, 0);
    Serve({Row(1, 5)});
    EXPECT_EQ(Tracker.Update(), 0);
    EXPECT_TRUE(Sink.Final.isEmpty());
}

TEST_F(MessageTrackerTest, MovingUpTakesEverythingButTheDeliveryTimeAlong) {
    for (qint32 id = 1; id <= 50; ++id) {
        Tracker.Track(id, QStringLiteral("r%1").arg(id), QStringLiteral("n%1").arg(id),
                      QStringLiteral("t%1").arg(id));
    }
    Serve({Row(1, 1, At(8, 1)), Row(2, 3, At(9, 2)), Row(50, 4, At(10, 3))});
    ASSERT_TRUE(Tracker.CheckDB());
    Tracker.Track(51, QStringLiteral("r51"), QStringLiteral("n51"), QStringLiteral("t51"));
    const MessageTracker::Slot& first = Tracker.SlotAt(0);
    EXPECT_EQ(first.msgID, 2);
    EXPECT_EQ(first.status, 3);
    EXPECT_EQ(first.recipient, u"r2");
    EXPECT_EQ(first.number, u"n2");
    EXPECT_EQ(first.text, u"t2");
    EXPECT_EQ(first.deliveryTime, u"08:01");
    EXPECT_EQ(Tracker.SlotAt(1).deliveryTime, u"09:02");
    EXPECT_EQ(Tracker.SlotAt(48).status, 4);
    EXPECT_EQ(Tracker.SlotAt(48).deliveryTime, QString());
    const MessageTracker::Slot& last = Tracker.SlotAt(49);
    EXPECT_EQ(last.msgID, 51);
    EXPECT_EQ(last.status, 0);
    EXPECT_EQ(last.recipient, u"r51");
    EXPECT_EQ(last.deliveryTime, u"10:03");
}

TEST_F(MessageTrackerTest, WithNothingPendingNoPollRunsAndTheNextMessageIsPolledAtOnce) {
    EXPECT_FALSE(Tracker.CheckDB());
    EXPECT_FALSE(Tracker.NextCheck().isValid());
    EXPECT_EQ(Engine.Attempts(Operation::Open), 0);
    Track(1);
    EXPECT_TRUE(Tracker.CheckDB());
}

TEST_F(MessageTrackerTest, AllPendingMessagesAreReadInOneStatement) {
    Track(17);
    Track(18);
    Track(40000);
    EXPECT_TRUE(Tracker.CheckDB());
    EXPECT_EQ(Engine.Statements,
              QStringList{QStringLiteral("SELECT msgID, msgStatus, msgDeliveryTime FROM Message WHERE "
                                         "msgID = 17 OR msgID = 18 OR msgID = 40000")});
    EXPECT_EQ(Engine.Modes, QList<qint32>{17});
    EXPECT_EQ(Engine.Cursors, QList<engine::CursorType>{engine::CursorType::ForwardOnly});
    EXPECT_EQ(Engine.Locks, QList<engine::LockType>{engine::LockType::ReadOnly});
}

TEST_F(MessageTrackerTest, AFullTableIsStillOneStatement) {
    for (qint32 id = 1; id <= 50; ++id) {
        Track(id);
    }
    EXPECT_TRUE(Tracker.CheckDB());
    ASSERT_EQ(Engine.Statements.size(), 1);
    EXPECT_EQ(Engine.Statements.first().count(QStringLiteral("msgID = ")), 50);
}

TEST_F(MessageTrackerTest, TheOutboxIsClosedAfterThePollThatOpenedIt) {
    Track(1);
    EXPECT_TRUE(Tracker.CheckDB());
    EXPECT_FALSE(Outbox.OutboxDB->IsConnected());
    EXPECT_EQ(Engine.OpenConnections, 0);
    EXPECT_EQ(Engine.OpenRecordsets, 0);
}

TEST_F(MessageTrackerTest, AnOutboxThatIsOpenIsUsedAndStaysOpen) {
    ASSERT_TRUE(Outbox.OutboxDB->OpenDatabase(engine::Mode::ReadWriteShared));
    Track(1);
    EXPECT_TRUE(Tracker.CheckDB());
    EXPECT_EQ(Engine.Attempts(Operation::Open), 1);
    EXPECT_TRUE(Outbox.OutboxDB->IsConnected());
    EXPECT_EQ(Engine.OpenRecordsets, 0);
}

TEST_F(MessageTrackerTest, AnOutboxThatCannotBeOpenedIsTriedAgainAfterTheIntervalSilently) {
    Engine.Fail(Operation::Open, engine::Number::NoSuchFile);
    Track(1);
    EXPECT_FALSE(Tracker.CheckDB());
    EXPECT_EQ(Tracker.NextCheck(), Time.Time.addSecs(60));
    EXPECT_EQ(IDs(1), QList<qint32>{1});
    Engine.StopFailing();
    EXPECT_FALSE(Tracker.CheckDB());
    PassInterval();
    EXPECT_TRUE(Tracker.CheckDB());
}

TEST_F(MessageTrackerTest, WithoutAnOutboxThePollFailsSilently) {
    Outbox.OutboxDB.reset();
    Track(1);
    EXPECT_EQ(Tracker.Update(), 0);
    EXPECT_EQ(Tracker.NextCheck(), Time.Time.addSecs(60));
    EXPECT_EQ(IDs(1), QList<qint32>{1});
}

TEST_F(MessageTrackerTest, AStatementThatFailsClosesTheOutboxAndIsTriedAgainAfterTheInterval) {
    Engine.Fail(Operation::Recordset, engine::Number::NoSuchTable);
    Track(1);
    EXPECT_EQ(Tracker.Update(), 0);
    EXPECT_EQ(Sink.Calls, 0);
    EXPECT_EQ(Tracker.NextCheck(), Time.Time.addSecs(60));
    EXPECT_EQ(Engine.OpenConnections, 0);
    EXPECT_EQ(IDs(1), QList<qint32>{1});
}

TEST_F(MessageTrackerTest, AStatementThatFailsLeavesAnOutboxOpenThatWasOpen) {
    ASSERT_TRUE(Outbox.OutboxDB->OpenDatabase(engine::Mode::ReadShared));
    Engine.Fail(Operation::Recordset, engine::Number::NoSuchTable);
    Track(1);
    EXPECT_FALSE(Tracker.CheckDB());
    EXPECT_TRUE(Outbox.OutboxDB->IsConnected());
}

TEST_F(MessageTrackerTest, ThePollRunsAgainWhenTheIntervalHasPassedAndNotBefore) {
    Track(1);
    EXPECT_TRUE(Tracker.CheckDB());
    EXPECT_EQ(Tracker.NextCheck(), Time.Time.addSecs(60));
    Time.Time = Time.Time.addSecs(59);
    EXPECT_FALSE(Tracker.CheckDB());
    Time.Time = Time.Time.addSecs(1);
    EXPECT_TRUE(Tracker.CheckDB());
    EXPECT_EQ(Engine.Statements.size(), 2);
}

TEST_F(MessageTrackerTest, AnIntervalOfZeroPollsOnEveryTick) {
    Tracker.RefreshInterval = 0;
    Track(1);
    EXPECT_TRUE(Tracker.CheckDB());
    EXPECT_TRUE(Tracker.CheckDB());
}

TEST_F(MessageTrackerTest, ANegativeIntervalPollsOnEveryTick) {
    Tracker.RefreshInterval = -5;
    Track(1);
    EXPECT_TRUE(Tracker.CheckDB());
    EXPECT_TRUE(Tracker.CheckDB());
}

TEST_F(MessageTrackerTest, StatusAndDeliveryTimeGoIntoTheSlotOfTheMessage) {
    Track(17);
    Track(18);
    Serve({Row(18, 5, At(9, 7)), Row(17, 1)});
    EXPECT_TRUE(Tracker.CheckDB());
    EXPECT_EQ(Tracker.SlotAt(0).status, 1);
    EXPECT_EQ(Tracker.SlotAt(0).deliveryTime, QString());
    EXPECT_EQ(Tracker.SlotAt(1).status, 5);
    EXPECT_EQ(Tracker.SlotAt(1).deliveryTime, u"09:07");
}

TEST_F(MessageTrackerTest, ARowWithoutASlotIsSkipped) {
    Track(17);
    Serve({Row(99, 5), Row(0, 5), Row(17, 3)});
    EXPECT_TRUE(Tracker.CheckDB());
    EXPECT_EQ(Tracker.SlotAt(0).status, 3);
    EXPECT_EQ(Tracker.SlotAt(1).status, 0);
    EXPECT_EQ(IDs(2), (QList<qint32>{17, 0}));
}

TEST_F(MessageTrackerTest, AFinalMessageWithoutADeliveryTimeHasAnEmptyOne) {
    Track(17);
    Serve({Row(17, 5, At(9, 7))});
    Tracker.SetSink(nullptr);
    EXPECT_EQ(Tracker.Update(), 0);
    EXPECT_EQ(Tracker.SlotAt(0).deliveryTime, u"09:07");
    Tracker.CancelTracking(17);
    Track(18);
    Serve({Row(18, 5)});
    PassInterval();
    Tracker.Update();
    EXPECT_EQ(Tracker.SlotAt(0).status, 5);
    EXPECT_EQ(Tracker.SlotAt(0).deliveryTime, QString());
}

TEST_F(MessageTrackerTest, ADeliveryTimeThatHasBecomeNullIsForgotten) {
    Track(17);
    Serve({Row(17, 3, At(9, 7))});
    ASSERT_TRUE(Tracker.CheckDB());
    ASSERT_EQ(Tracker.SlotAt(0).deliveryTime, u"09:07");
    Serve({Row(17, 3)});
    PassInterval();
    ASSERT_TRUE(Tracker.CheckDB());
    EXPECT_EQ(Tracker.SlotAt(0).deliveryTime, QString());
}

TEST_F(MessageTrackerTest, AStatusThatIsNullStaysWhatItWas) {
    Track(17);
    Serve({Row(17, 3)});
    ASSERT_TRUE(Tracker.CheckDB());
    Serve({Row(17, QVariant(), At(9, 7))});
    PassInterval();
    ASSERT_TRUE(Tracker.CheckDB());
    EXPECT_EQ(Tracker.SlotAt(0).status, 3);
    EXPECT_EQ(Tracker.SlotAt(0).deliveryTime, u"09:07");
}

TEST_F(MessageTrackerTest, AMessageThatTheGatewayDeletedStaysPendingAndIsPolledOn) {
    Track(17);
    Serve({});
    for (int poll = 0; poll < 3; ++poll) {
        EXPECT_EQ(Tracker.Update(), 0);
        PassInterval();
    }
    EXPECT_EQ(Engine.Statements.size(), 3);
    EXPECT_EQ(Tracker.SlotAt(0).msgID, 17);
}

TEST_F(MessageTrackerTest, WaitingMessagesGiveNoNoticeWhateverTheOrderOfTheirStatus) {
    Track(17);
    for (const int status : {0, 1, 4, 3, 4, 1}) {
        Serve({Row(17, status)});
        EXPECT_EQ(Tracker.Update(), 0);
        EXPECT_EQ(Tracker.SlotAt(0).status, status);
        PassInterval();
    }
    EXPECT_TRUE(Sink.Final.isEmpty());
    EXPECT_EQ(Engine.Statements.size(), 6);
}

TEST_F(MessageTrackerTest, EveryOtherStatusIsHandedOverOnceAndForgotten) {
    qint32 id = 0;
    for (const int status : {2, 5, 6, 7, 9, 255}) {
        Track(++id);
        Serve({Row(id, status)});
        EXPECT_EQ(Tracker.Update(), status == 7 ? 1 : 0) << "status " << status;
        ASSERT_EQ(Sink.Final.size(), id);
        EXPECT_EQ(Sink.Final.last().status, status);
        EXPECT_EQ(Tracker.SlotAt(0).msgID, 0);
        PassInterval();
    }
    EXPECT_EQ(Tracker.Update(), 0);
    EXPECT_EQ(Sink.Final.size(), 6);
}

TEST_F(MessageTrackerTest, UpdateReturnsTheNumberOfFailures) {
    Track(1);
    Track(2);
    Track(3);
    Serve({Row(1, 7), Row(2, 5), Row(3, 7)});
    EXPECT_EQ(Tracker.Update(), 2);
}

TEST_F(MessageTrackerTest, FinalMessagesWaitWhileThereIsNobodyToTell) {
    Tracker.SetSink(nullptr);
    Track(17);
    Track(18);
    Serve({Row(17, 5), Row(18, 1)});
    EXPECT_EQ(Tracker.Update(), 0);
    EXPECT_EQ(Tracker.SlotAt(0).status, 5);
    Tracker.SetSink(&Sink);
    PassInterval();
    EXPECT_EQ(Tracker.Update(), 0);
    EXPECT_EQ(Engine.Statements.last().count(QStringLiteral("msgID = ")), 1)
        << "a final message is not read again";
    ASSERT_EQ(Sink.Final.size(), 1);
    EXPECT_EQ(Sink.Final.first().msgID, 17);
}

TEST_F(MessageTrackerTest, FinalMessagesAloneStartNoPoll) {
    Tracker.SetSink(nullptr);
    Track(17);
    Serve({Row(17, 5)});
    Tracker.Update();
    PassInterval();
    const QDateTime before = Tracker.NextCheck();
    EXPECT_FALSE(Tracker.CheckDB());
    EXPECT_EQ(Tracker.NextCheck(), before);
    EXPECT_EQ(Engine.Statements.size(), 1);
}

TEST_F(MessageTrackerTest, ANotificationThatFailsIsPassedOver) {
    Sink.IsFailing = true;
    Track(17);
    Serve({Row(17, 7)});
    EXPECT_EQ(Tracker.Update(), 0);
    EXPECT_EQ(Sink.Calls, 1);
    EXPECT_EQ(Tracker.SlotAt(0).msgID, 17);
}

TEST_F(MessageTrackerTest, ATickInsideAPollStartsNoSecondOne) {
    Track(17);
    Serve({Row(17, 7)});
    Engine.Fail(Operation::Recordset, engine::Number::LockedByAnother, 1, 1);
    int inner = 0;
    Pump.OnProcess = [&](int) {
        ++inner;
        EXPECT_EQ(Tracker.Update(), 0);
    };
    EXPECT_EQ(Tracker.Update(), 1);
    EXPECT_GT(inner, 0);
    EXPECT_EQ(Sink.Final.size(), 1);
    EXPECT_EQ(Engine.Statements.size(), 2) << "the two attempts of one poll";
}

TEST_F(MessageTrackerTest, AMessageCanceledDuringAPollIsNotBroughtBack) {
    Track(17);
    Serve({Row(17, 7)});
    Engine.Fail(Operation::Recordset, engine::Number::LockedByAnother, 1, 1);
    Pump.OnProcess = [&](int) { Tracker.CancelTracking(17); };
    EXPECT_EQ(Tracker.Update(), 0);
    EXPECT_TRUE(Sink.Final.isEmpty());
}

TEST_F(MessageTrackerTest, AnOutboxThatIsReplacedDuringAPollIsLeftAsItsNewUserWantsIt) {
    Track(17);
    Engine.Fail(Operation::Recordset, engine::Number::LockedByAnother, 1, 1);
    Pump.OnProcess = [&](int) {
        if (Outbox.Replaced.empty()) {
            Outbox.OutboxDB->CloseDatabase();
            Outbox.Replaced.push_back(std::move(Outbox.OutboxDB));
            Outbox.OutboxDB = std::make_unique<DB>(DBServices{Engine, Time, Pump, Drives, Folders});
            ASSERT_TRUE(Outbox.OutboxDB->OpenDatabase(engine::Mode::ReadShared));
        }
    };
    EXPECT_FALSE(Tracker.CheckDB());
    EXPECT_TRUE(Outbox.OutboxDB->IsConnected());
}

TEST_F(MessageTrackerTest, AnOutboxThatIsReplacedWhileItIsOpenedIsNotLeftOpen) {
    Track(17);
    Engine.Fail(Operation::Open, engine::Number::FileInUse, 1, 1);
    Pump.OnProcess = [&](int) {
        if (Outbox.Replaced.empty()) {
            Outbox.Replaced.push_back(std::move(Outbox.OutboxDB));
            Outbox.OutboxDB = std::make_unique<DB>(DBServices{Engine, Time, Pump, Drives, Folders});
        }
    };
    EXPECT_TRUE(Tracker.CheckDB());
    EXPECT_EQ(Engine.OpenConnections, 0);
}

TEST_F(MessageTrackerTest, FormatTimeGivesHoursAndMinutes) {
    EXPECT_EQ(MessageTracker::FormatTime(At(9, 7)), u"09:07");
    EXPECT_EQ(MessageTracker::FormatTime(At(23, 59)), u"23:59");
    EXPECT_EQ(MessageTracker::FormatTime(QVariant()), QString());
}

TEST_F(MessageTrackerTest, SettingsThatWereNeverStoredGiveTheDefaults) {
    Tracker.RefreshInterval = 5;
    Tracker.PlaySound = true;
    Tracker.LoadSettings();
    EXPECT_TRUE(Tracker.Enabled());
    EXPECT_FALSE(Tracker.PlaySound);
    EXPECT_EQ(Tracker.RefreshInterval, 60);
}

TEST_F(MessageTrackerTest, SettingsAreStoredAsText) {
    Tracker.SetEnabled(false);
    Tracker.PlaySound = true;
    Tracker.RefreshInterval = 15;
    Tracker.SaveSettings();
    const QString section = QStringLiteral("Notify");
    EXPECT_EQ(AppSettings.GetValue(section, QStringLiteral("Enabled"), {}), u"0");
    EXPECT_EQ(AppSettings.GetValue(section, QStringLiteral("Sound"), {}), u"1");
    EXPECT_EQ(AppSettings.GetValue(section, QStringLiteral("Interval"), {}), u"15");

    MessageTracker next(Outbox, AppSettings, Time);
    next.LoadSettings();
    EXPECT_FALSE(next.Enabled());
    EXPECT_TRUE(next.PlaySound);
    EXPECT_EQ(next.RefreshInterval, 15);
}

TEST_F(MessageTrackerTest, AFlagIsTrueOnlyForExactlyOne) {
    for (const char16_t* text : {u"0", u"", u"true", u"01", u" 1", u"2"}) {
        AppSettings.SetValue(QStringLiteral("Notify"), QStringLiteral("Enabled"), QString::fromUtf16(text));
        AppSettings.SetValue(QStringLiteral("Notify"), QStringLiteral("Sound"), QString::fromUtf16(text));
        Tracker.LoadSettings();
        EXPECT_FALSE(Tracker.Enabled()) << QString::fromUtf16(text).toStdString();
        EXPECT_FALSE(Tracker.PlaySound) << QString::fromUtf16(text).toStdString();
    }
}

TEST_F(MessageTrackerTest, TheIntervalIsTheNumberAtTheStartOfItsText) {
    const auto intervalOf = [this](const char16_t* text) {
        Tracker.RefreshInterval = 60;
        AppSettings.SetValue(QStringLiteral("Notify"), QStringLiteral("Interval"), QString::fromUtf16(text));
        Tracker.LoadSettings();
        return Tracker.RefreshInterval;
    };
    EXPECT_EQ(intervalOf(u"30"), 30);
    EXPECT_EQ(intervalOf(u"90 seconds"), 90);
    EXPECT_EQ(intervalOf(u"soon"), 0);
    EXPECT_EQ(intervalOf(u"0"), 0);
    EXPECT_EQ(intervalOf(u"32767"), 32767);
    EXPECT_EQ(intervalOf(u"99999"), 60) << "too large for the field: stays what it was";
}

TEST(MessageTrackerOnARealOutbox, FollowsAMessageToItsEndThroughTheGatewaysWrites) {
    TempOffice office;
    const qint32 id = office.AddMessageRow({{QStringLiteral("msgRecipient"), QStringLiteral("Ann")},
                                            {QStringLiteral("msgAddress"), QStringLiteral("+3531")},
                                            {QStringLiteral("msgText"), QStringLiteral("Hi - ")},
                                            {QStringLiteral("msgSendTime"), office.Time.Time}});
    NotingSink sink;
    MessageTracker tracker(office.OutboxValues, office.AppSettings, office.Time);
    tracker.SetSink(&sink);
    tracker.RefreshInterval = 0;
    tracker.Track(id, QStringLiteral("Ann"), QStringLiteral("+3531"), QStringLiteral("Hi"));
    EXPECT_EQ(tracker.Update(), 0);
    EXPECT_EQ(tracker.SlotAt(0).status, 0);

    const QString change =
        QStringLiteral("UPDATE Message SET msgStatus = %1%2 WHERE msgID = ") + QString::number(id);
    office.ExecuteOnOutbox(change.arg(QStringLiteral("3"), QString()));
    EXPECT_EQ(tracker.Update(), 0);
    EXPECT_EQ(tracker.SlotAt(0).status, 3);

    office.ExecuteOnOutbox(
        change.arg(QStringLiteral("5"), QStringLiteral(", msgDeliveryTime = '2026-03-07 14:31:40'")));
    EXPECT_EQ(tracker.Update(), 0);
    ASSERT_EQ(sink.Final.size(), 1);
    EXPECT_EQ(sink.Final.first().status, 5);
    EXPECT_EQ(sink.Final.first().deliveryTime, u"14:31");
    EXPECT_EQ(tracker.SlotAt(0).msgID, 0);
    EXPECT_FALSE(office.OutboxDB().IsConnected());
}
