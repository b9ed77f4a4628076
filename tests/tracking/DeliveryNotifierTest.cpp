#include "tracking/DeliveryNotifier.h"

#include "core/Settings.h"
#include "store/Outbox.h"
#include "support/FailingFiles.h"
#include "support/FakeEngine.h"
#include "support/FakeMachine.h"
#include "support/FakePopup.h"

#include <QFile>
#include <QRect>

#include <gtest/gtest.h>

namespace {

QString UniqueApplication() {
    static int count = 0;
    return QStringLiteral("Notifier test %1").arg(++count);
}

/// A tracker whose outbox answers what a test wants, and its notifier with a popup that keeps everything.
class DeliveryNotifierTest : public ::testing::Test {
public:
    FakeEngine Engine;
    FakeClock Time;
    FakePump Pump;
    FakeDrives Drives;
    FakeFolders Folders;
    FailingFiles Files;
    FakeSound Speaker;
    FakeNotices Desktop;
    Settings AppSettings;
    OutboxState Outbox;
    MessageTracker Tracker{Outbox, AppSettings, Time};
    DeliveryNotifier Notifier{{Speaker, Folders, Files, Desktop}};
    FakePopup Popup;
    FakeBalloon Balloon;

    DeliveryNotifierTest() {
        AppSettings.SetApplication(UniqueApplication());
        Outbox.OutboxDB = std::make_unique<DB>(DBServices{Engine, Time, Pump, Drives, Folders});
        Tracker.RefreshInterval = 0;
        Tracker.SetSink(&Notifier);
        Notifier.SetPopup(&Popup);
        Notifier.SetTrayIcon(&Balloon);
        Popup.Calls.clear();
        for (const char* name : {"smsnotify.wav", "smserror.wav"}) {
            QFile file(SoundPath(name));
            EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        }
    }

    [[nodiscard]] QString SoundPath(const char* name) const {
        return Folders.ApplicationFolder() + QString::fromLatin1(name);
    }
    void Track(qint32 id, const QString& text = QStringLiteral("Hello")) {
        Tracker.Track(id, QStringLiteral("Ann %1").arg(id), QStringLiteral("+353%1").arg(id), text);
    }
    /// One poll that reads these statuses for the messages 1, 2, 3 ...; the failures that it told.
    qint16 Poll(const QList<qint32>& statuses, const QVariant& deliveryTime = {}) {
        QList<QVariantList> rows;
        for (int i = 0; i < statuses.size(); ++i) {
            rows.append({i + 1, statuses[i], deliveryTime});
        }
        Engine.Serve(QStringLiteral("FROM Message"), {{QStringLiteral("msgID"), QStringLiteral("msgStatus"),
                                                       QStringLiteral("msgDeliveryTime")},
                                                      rows});
        return Tracker.Update();
    }
};

TEST_F(DeliveryNotifierTest, ThePopupGetsItsSizeItsTimeAndNothingElse) {
    EXPECT_EQ(Popup.WidthNow, 320);
    EXPECT_EQ(Popup.HeightNow, 100);
    EXPECT_EQ(Popup.ShowDelay, 10000);
    EXPECT_EQ(Popup.ItemCount(), 0) << "the item that the line was measured by is gone";
}

TEST_F(DeliveryNotifierTest, TheLineIsMeasuredByAnHAndEveryLineIsAskedForWithItsHeight) {
    ASSERT_EQ(Popup.Asked.size(), 1);
    const FakePopup::Added test = Popup.Asked.first();
    EXPECT_EQ(test.Caption, QStringLiteral("H"));
    EXPECT_EQ(QRect(QPoint(test.Left, test.Top), QPoint(test.Right, test.Bottom)),
              QRect(QPoint(0, 0), QPoint(30, 30)));
    Popup.HeightOfH = 23;
    Notifier.SetPopup(&Popup);
    Popup.Asked.clear();
    Track(1);
    Poll({5});
    ASSERT_EQ(Popup.Asked.size(), 4);
    for (int line = 1; line < 4; ++line) {
        EXPECT_EQ(Popup.Asked[line].Bottom - Popup.Asked[line].Top, 23) << line;
    }
}

TEST_F(DeliveryNotifierTest, AMessageIsAnImageAndThreeLines) {
    Track(1, QStringLiteral("Short"));
    EXPECT_EQ(Poll({5}, QDateTime(QDate(2026, 3, 7), QTime(10, 31))), 0);
    ASSERT_EQ(Popup.ItemCount(), 4);
    const FakePopupItem& image = Popup.At(0);
    EXPECT_EQ(image.Left, 5);
    EXPECT_EQ(image.TopEdge, 17);
    EXPECT_EQ(image.Icon, 2);
    EXPECT_FALSE(image.IsLink);
    const QStringList lines = {QStringLiteral("Ann 1"), QStringLiteral("+3531 @ 10:31"),
                               QStringLiteral("Short")};
    const QList<int> tops = {17, 35, 53};
    const QList<int> formats = {32, 32, 32768};
    for (int line = 0; line < 3; ++line) {
        const FakePopupItem& item = Popup.At(line + 1);
        EXPECT_EQ(item.Caption, lines[line]);
        EXPECT_EQ(item.Left, 40) << line;
        EXPECT_EQ(item.TopEdge, tops[line]) << line;
        EXPECT_EQ(item.Format, formats[line]) << line;
        EXPECT_FALSE(item.IsLink) << line;
    }
    EXPECT_EQ(Popup.HeightNow, 53 + 16 + 10);
    EXPECT_EQ(Popup.WidthNow, 320);
    EXPECT_TRUE(Popup.IsShown);
    EXPECT_EQ(Popup.Calls, (QStringList{QStringLiteral("Close"), QStringLiteral("RemoveAllItems"),
                                        QStringLiteral("Show")}));
}

TEST_F(DeliveryNotifierTest, EveryStatusHasItsImage) {
    const QList<std::pair<qint32, int>> images = {{2, 1}, {5, 2}, {7, 3}, {6, 4}, {9, 5}, {-1, 5}};
    for (const auto& [status, image] : images) {
        Track(1);
        Poll({status});
        EXPECT_EQ(Popup.At(0).Icon, image) << status;
    }
}

TEST_F(DeliveryNotifierTest, CanceledAndNotDeliveredAreFailuresAndNothingElseIs) {
    for (const auto& [status, failures] :
         QList<std::pair<qint32, int>>{{2, 1}, {7, 1}, {5, 0}, {6, 0}, {9, 0}}) {
        Track(1);
        EXPECT_EQ(Poll({status}), failures) << status;
    }
}

TEST_F(DeliveryNotifierTest, BetweenTwoMessagesStandsAWhiteLine) {
    Track(1);
    Track(2);
    Poll({5, 5});
    ASSERT_EQ(Popup.ItemCount(), 9);
    const FakePopupItem& line = Popup.At(4);
    EXPECT_EQ(line.TopEdge, 53 + 16 + 5);
    EXPECT_EQ(line.HeightNow, 1);
    EXPECT_EQ(line.Left, 20);
    EXPECT_EQ(line.WidthNow, 320 - 20 - 20);
    EXPECT_EQ(line.Background, std::optional<unsigned>(0xFFFFFF));
    EXPECT_EQ(Popup.At(5).TopEdge, 74 + 1 + 5);
}

TEST_F(DeliveryNotifierTest, OfSevenFinalMessagesSixAreShownAndTheSeventhWaitsForTheNextPoll) {
    for (qint32 id = 1; id <= 7; ++id) {
        Track(id);
    }
    Poll({5, 5, 5, 5, 5, 5, 5});
    EXPECT_EQ(Popup.Captions().filter(QStringLiteral("Ann")).size(), 6);
    EXPECT_EQ(Tracker.SlotAt(6).msgID, 7);
    EXPECT_EQ(Tracker.SlotAt(6).status, 5);
    Popup.Calls.clear();
    EXPECT_EQ(Tracker.Update(), 0);
    EXPECT_TRUE(Popup.Calls.isEmpty()) << "with nothing pending no poll runs";
    Track(8);  // takes slot 0
    Poll({});
    EXPECT_EQ(Popup.Captions().filter(QStringLiteral("Ann")), QStringList{QStringLiteral("Ann 7")});
    EXPECT_EQ(Tracker.SlotAt(6).msgID, 0);
}

TEST_F(DeliveryNotifierTest, MessagesStillOnTheirWayStayInTheirSlots) {
    Track(1);
    Track(2);
    Poll({3, 5});
    EXPECT_EQ(Tracker.SlotAt(0).msgID, 1);
    EXPECT_EQ(Tracker.SlotAt(1).msgID, 0);
    EXPECT_EQ(Popup.Captions().filter(QStringLiteral("Ann")), QStringList{QStringLiteral("Ann 2")});
}

TEST_F(DeliveryNotifierTest, WithoutANumberTheSecondLineBeginsWithTheTime) {
    Tracker.Track(1, QStringLiteral("Ann"), QString(), QStringLiteral("Hello"));
    Poll({5}, QDateTime(QDate(2026, 3, 7), QTime(10, 31)));
    EXPECT_EQ(Popup.At(2).Caption, QStringLiteral("@ 10:31"));
}

TEST_F(DeliveryNotifierTest, WithNothingFinalThePopupGoesAndNothingSounds) {
    Tracker.PlaySound = true;
    Track(1);
    Track(2);
    Poll({1, 5});
    ASSERT_TRUE(Popup.IsShown);
    Popup.Calls.clear();
    Speaker.Played.clear();
    Poll({1});
    EXPECT_FALSE(Popup.IsShown);
    EXPECT_EQ(Popup.Calls, (QStringList{QStringLiteral("Close"), QStringLiteral("RemoveAllItems")}));
    EXPECT_TRUE(Speaker.Played.isEmpty());
}

TEST_F(DeliveryNotifierTest, OneFailureMakesItTheErrorSound) {
    Tracker.PlaySound = true;
    Track(1);
    Track(2);
    Poll({5, 7});
    EXPECT_EQ(Speaker.Played, QStringList{SoundPath("smserror.wav")});
}

TEST_F(DeliveryNotifierTest, ACanceledMessageAloneSoundsAsAFailure) {
    Tracker.PlaySound = true;
    Track(1);
    EXPECT_EQ(Poll({2}), 1);
    EXPECT_EQ(Speaker.Played, QStringList{SoundPath("smserror.wav")});
}

TEST_F(DeliveryNotifierTest, DeliveredMessagesSoundOnceForAll) {
    Tracker.PlaySound = true;
    Track(1);
    Track(2);
    Poll({5, 6});
    EXPECT_EQ(Speaker.Played, QStringList{SoundPath("smsnotify.wav")});
}

TEST_F(DeliveryNotifierTest, WithTheSoundOffThePopupIsTheSame) {
    Tracker.PlaySound = true;
    Track(1);
    Track(2);
    Poll({7, 5});
    ASSERT_FALSE(Speaker.Played.isEmpty());
    const QList<FakePopup::Added> asked = Popup.Asked.mid(1);
    const int height = Popup.HeightNow;
    const QStringList calls = Popup.Calls;
    Speaker.Played.clear();
    Popup.Asked.clear();
    Popup.Calls.clear();
    Popup.HeightNow = 0;
    Tracker.PlaySound = false;
    Track(1);
    Track(2);
    Poll({7, 5});
    EXPECT_TRUE(Speaker.Played.isEmpty());
    EXPECT_EQ(Popup.Asked, asked);
    EXPECT_EQ(Popup.HeightNow, height);
    EXPECT_EQ(Popup.Calls, calls);
}

TEST_F(DeliveryNotifierTest, TheSoundComesFirstThenThePopupsHeightAndThenThePopup) {
    Tracker.PlaySound = true;
    int heightAtSound = 0;
    bool isShownAtSound = true;
    qsizetype soundsAtShow = 0;
    int heightAtShow = 0;
    Speaker.OnPlay = [&] {
        heightAtSound = Popup.HeightNow;
        isShownAtSound = Popup.IsShown;
    };
    Popup.OnShow = [&] {
        soundsAtShow = Speaker.Played.size();
        heightAtShow = Popup.HeightNow;
    };
    Track(1);
    Poll({5});
    EXPECT_EQ(heightAtSound, 100) << "still the one it began with";
    EXPECT_FALSE(isShownAtSound);
    EXPECT_EQ(soundsAtShow, 1);
    EXPECT_EQ(heightAtShow, 53 + 16 + 10);
}

TEST_F(DeliveryNotifierTest, AMissingSoundFilePlaysNothingAndThePopupStillAppears) {
    Tracker.PlaySound = true;
    QFile::remove(SoundPath("smsnotify.wav"));
    Track(1);
    Poll({5});
    EXPECT_EQ(Speaker.Played, QStringList{QString()});
    EXPECT_TRUE(Popup.IsShown);
}

TEST_F(DeliveryNotifierTest, WithoutADeliveryTimeTheSecondLineIsTheNumberAlone) {
    Track(1);
    Poll({5});
    EXPECT_EQ(Popup.At(2).Caption, QStringLiteral("+3531"));
}

TEST_F(DeliveryNotifierTest, AMessageNotDeliveredEndsItsSecondLineWithItsStatus) {
    Track(1);
    Poll({7});
    EXPECT_EQ(Popup.At(2).Caption, QStringLiteral("+3531 [0x7]"));
    Track(1);
    Poll({7}, QDateTime(QDate(2026, 3, 7), QTime(9, 5)));
    EXPECT_EQ(Popup.At(2).Caption, QStringLiteral("+3531 @ 09:05 [0x7]"));
}

TEST_F(DeliveryNotifierTest, AnEmptyTextIsAnEmptyLineThatTakesItsPlace) {
    Track(1, QString());
    Poll({5});
    EXPECT_EQ(Popup.At(3).Caption, QString());
    EXPECT_EQ(Popup.At(3).HeightNow, 16);
    EXPECT_EQ(Popup.HeightNow, 53 + 16 + 10);
}

TEST_F(DeliveryNotifierTest, ALongTextIsCutAtTheWidthLimit) {
    const QList<std::pair<int, int>> widths = {{25, 250}, {26, 260}, {27, 260}, {50, 260}};
    for (const auto& [characters, width] : widths) {
        Track(1, QString(characters, u'x'));
        Poll({5});
        EXPECT_EQ(Popup.At(3).WidthNow, width) << characters;
    }
}

TEST_F(DeliveryNotifierTest, NameAndNumberAreNotCutAtTheWidthLimitOfTheText) {
    Tracker.Track(1, QString(40, u'n'), QString(30, u'1'), QStringLiteral("Hello"));
    Poll({5});
    EXPECT_EQ(Popup.At(1).WidthNow, 400);
    EXPECT_EQ(Popup.At(2).WidthNow, 300);
}

TEST_F(DeliveryNotifierTest, WithoutAPopupFinalMessagesWait) {
    Notifier.SetPopup(nullptr);
    Track(1);
    EXPECT_EQ(Poll({7}), 0);
    EXPECT_EQ(Tracker.SlotAt(0).msgID, 1);
}

TEST_F(DeliveryNotifierTest, APopupThatFailsKeepsTheCountOfFailures) {
    Popup.IsFailing = true;
    Track(1);
    EXPECT_EQ(Poll({7}), 1);
}

TEST_F(DeliveryNotifierTest, TheDesktopIsToldOnlyWhenAskedForAndWithoutNumberAndText) {
    Track(1);
    Poll({5});
    EXPECT_TRUE(Desktop.Shown.isEmpty());
    Tracker.UseDesktopNotices = true;
    Track(1, QStringLiteral("Secret"));
    Poll({7});
    EXPECT_EQ(Desktop.Shown, QStringList{QStringLiteral("SMS NOT Delivered|Ann 1")});
    Tracker.ShowDetailsOnDesktop = true;
    Track(1, QStringLiteral("Secret"));
    Poll({5});
    EXPECT_EQ(Desktop.Shown.last(), QStringLiteral("SMS Delivered|Ann 1\n+3531\nSecret"));
}

TEST_F(DeliveryNotifierTest, TheTraysWayTellsTheFirstFinalMessageAlone) {
    Tracker.SetSink(nullptr);
    Track(1);
    Track(2);
    Track(3, QString());
    Poll({1, 7, 9});
    EXPECT_EQ(Notifier.TrayNotify(Tracker), 0);
    ASSERT_EQ(Balloon.Shown.size(), 1);
    EXPECT_EQ(Balloon.Shown[0].TimeValue, 4);
    EXPECT_EQ(Balloon.Shown[0].Title, QStringLiteral("SMS NOT Delivered"));
    EXPECT_EQ(Balloon.Shown[0].Text, QStringLiteral("Ann 2 @+3532\r\nHello..."));
    EXPECT_EQ(Balloon.Shown[0].Icon, BalloonIcon::Error);
    EXPECT_EQ(Tracker.SlotAt(1).msgID, 0);
    EXPECT_EQ(Notifier.TrayNotify(Tracker), 0);
    EXPECT_EQ(Balloon.Shown[1].Title, QStringLiteral("SMS Status Unknown"));
    EXPECT_EQ(Balloon.Shown[1].Text, QStringLiteral("Ann 3"));
    EXPECT_EQ(Notifier.TrayNotify(Tracker), 0);
    EXPECT_EQ(Balloon.Shown.size(), 2) << "message 1 is still on its way";
}

TEST_F(DeliveryNotifierTest, EveryStatusHasItsBalloon) {
    const QList<std::tuple<qint32, QString, BalloonIcon>> cases = {
        {2, QStringLiteral("SMS Canceled"), BalloonIcon::Warning},
        {5, QStringLiteral("SMS Delivered"), BalloonIcon::Information},
        {6, QStringLiteral("SMS Delivered"), BalloonIcon::Information},
        {7, QStringLiteral("SMS NOT Delivered"), BalloonIcon::Error},
        {8, QStringLiteral("SMS Status Unknown"), BalloonIcon::Warning}};
    for (const auto& [status, title, icon] : cases) {
        Notifier.ShowStatus(status, QStringLiteral("Ann"), QString(), QString());
        EXPECT_EQ(Balloon.Shown.last().Title, title) << status;
        EXPECT_EQ(Balloon.Shown.last().Icon, icon) << status;
    }
}

TEST_F(DeliveryNotifierTest, WhetherTheDesktopIsToldIsKeptInTheSettings) {
    Tracker.LoadSettings();
    EXPECT_FALSE(Tracker.UseDesktopNotices);
    EXPECT_FALSE(Tracker.ShowDetailsOnDesktop);
    Tracker.UseDesktopNotices = true;
    Tracker.ShowDetailsOnDesktop = true;
    Tracker.SaveSettings();
    MessageTracker next{Outbox, AppSettings, Time};
    next.LoadSettings();
    EXPECT_TRUE(next.UseDesktopNotices);
    EXPECT_TRUE(next.ShowDetailsOnDesktop);
}

}  // namespace
