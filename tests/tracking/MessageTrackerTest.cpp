#include "tracking/MessageTrackerFixture.h"

#include "support/TempOffice.h"

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
    EXPECT_EQ(Engine.Attempts(FakeEngine::Operation::Open), 0);
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
