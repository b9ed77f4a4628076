#include "controls/Icons.h"
#include "controls/PopupControl.h"
#include "shell/Application.h"
#include "shell/MainScreens.h"
#include "shell/MainWindow.h"
#include "shell/StatusPoll.h"
#include "shell/TipOfDay.h"
#include "shell/frmSplash.h"
#include "support/UncountedLeaks.h"

#include <QCheckBox>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QTimer>

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

const BoxRequest LastResort = {Q("Larkspan Messenger"),
                               Q("Something went wrong, and the last action may not have been completed."),
                               BoxIcon::Critical, BoxButtons::Ok};

/// The program's own application object tells of failures here; its log is the machine's.
class LastResortTest : public ::testing::Test {
protected:
    LastResortTest() {
        Machine.KeepLog();
        TheApplication().SetLastResort(&Machine.AppLog, &Machine.Office.Boxes);
    }
    ~LastResortTest() override { TheApplication().SetLastResort(nullptr, nullptr); }
    static Application& TheApplication() { return *qobject_cast<Application*>(QCoreApplication::instance()); }
    /// Lets events run until the log holds a line.
    void WaitForLine() {
        EXPECT_TRUE(QTest::qWaitFor([this] { return !Machine.LogLines().isEmpty(); }, 5000));
    }

    TestMachine Machine;
};

}  // namespace

TEST_F(LastResortTest, AThrowingButtonIsLoggedAndToldInOneBoxAndTheProgramGoesOn) {
    const UncountedLeaks toolkits;
    QPushButton button;
    int presses = 0;
    QObject::connect(&button, &QPushButton::clicked, &button, [&] {
        ++presses;
        throw std::runtime_error("from a button");
    });
    button.show();
    Machine.Office.Boxes.Expect();
    Machine.Office.Boxes.Expect();
    QTest::keyClick(&button, Qt::Key_Space);
    QTest::keyClick(&button, Qt::Key_Space);
    EXPECT_EQ(presses, 2);
    EXPECT_EQ(Machine.Office.Boxes.Shown, (QList<BoxRequest>{LastResort, LastResort}));
    EXPECT_EQ(Machine.LogLines().count(Q("Unhandled Error: 0 from a button")), 2);
}

TEST_F(LastResortTest, AThrowingTimerIsLoggedAndTold) {
    Machine.Office.Boxes.Expect();
    QObject receiver;
    QTimer::singleShot(0, &receiver, [] { throw std::runtime_error("from a timer"); });
    WaitForLine();
    EXPECT_TRUE(Machine.LogLines().contains(Q("Unhandled Error: 0 from a timer")));
}

TEST_F(LastResortTest, AThrowingQueuedCallIsLoggedAndTold) {
    Machine.Office.Boxes.Expect();
    QObject receiver;
    QMetaObject::invokeMethod(
        &receiver, [] { throw 7; }, Qt::QueuedConnection);
    WaitForLine();
    EXPECT_TRUE(Machine.LogLines().contains(Q("Unhandled Error: 0 unknown")));
}

TEST_F(LastResortTest, WhileTheBoxIsOpenOthersAreLoggedAndOneBoxIsEnough) {
    class NestedBoxes final : public MessageBoxes {
    public:
        int Shown = 0;
        BoxAnswer Show(const BoxRequest&) override {
            ++Shown;
            QObject receiver;
            bool isThrown = false;
            QTimer::singleShot(0, &receiver, [&] {
                isThrown = true;
                throw std::runtime_error("meanwhile");
            });
            EXPECT_TRUE(QTest::qWaitFor([&] { return isThrown; }, 5000));
            return BoxAnswer::Ok;
        }
    } boxes;
    TheApplication().SetLastResort(&Machine.AppLog, &boxes);
    QObject receiver;
    QTimer::singleShot(0, &receiver, [] { throw std::runtime_error("first"); });
    WaitForLine();
    EXPECT_TRUE(QTest::qWaitFor([&] { return Machine.LogLines().contains(Q("meanwhile")); }, 5000));
    EXPECT_EQ(boxes.Shown, 1);
}

TEST(StatusPoll, DoesNothingWhileALongOperationRunsAndPollsWhenItIsOver) {
    MainWindow window;
    window.Open();
    const qint32 id = window.Machine.Office.AddMessageRow({{Q("msgRecipient"), Q("A")}});
    window.Context.MessageTracker.Track(id, Q("A"), Q("+353865550101"), Q("text"));
    auto* poll = window.Form->findChild<StatusPoll*>();
    for (const qint32 state :
         {Busy::SetupWizard, Busy::StartingUp, Busy::ScheduleDialog, Busy::Sending, Busy::HistoryOpen}) {
        window.Context.AppBusyState.SetAppBusyState(state);
        poll->Check();
        EXPECT_FALSE(window.Context.MessageTracker.NextCheck().isValid()) << state;
    }
    window.Context.AppBusyState.SetAppBusyState(Busy::Idle);
    poll->Check();
    EXPECT_TRUE(window.Context.MessageTracker.NextCheck().isValid());
}

TEST(StatusPoll, AFailedMessageRaisesTheWarning) {
    class OneFailure final : public DeliverySink {
    public:
        qint16 PopupNotify(MessageTracker&) override { return 1; }
    } sink;
    MainWindow window;
    window.Open();
    const qint32 id = window.Machine.Office.AddMessageRow({{Q("msgRecipient"), Q("A")}, {Q("msgStatus"), 7}});
    window.Context.MessageTracker.SetSink(&sink);
    window.Context.MessageTracker.Track(id, Q("A"), Q("+353865550101"), Q("text"));
    window.Form->ToTray(true);
    window.Form->findChild<StatusPoll*>()->Check();
    window.Form->ToTray(false);
    EXPECT_TRUE(window.Find("lblFailureWarning")->isVisible()) << "set while the window was away";
    window.Context.MessageTracker.SetSink(nullptr);
}

/// The whole way of a status: the poll, the popup, the warning.
class Tidings : public ::testing::Test {
public:
    MainWindow Window;

    Tidings() {
        Window.Open();
        Window.Context.MessageTracker.RefreshInterval = 0;
    }
    void Tell(qint32 status) {
        const qint32 id =
            Window.Machine.Office.AddMessageRow({{Q("msgRecipient"), Q("Ann")}, {Q("msgStatus"), status}});
        Window.Context.MessageTracker.Track(id, Q("Ann"), Q("+353865550101"), Q("text"));
        Window.Form->findChild<StatusPoll*>()->Check();
    }
    [[nodiscard]] PopupControl& Popup() { return *Window.Find<PopupControl>("pucFeedback"); }
    [[nodiscard]] bool IsWarned() { return Window.Find("lblFailureWarning")->isVisible(); }
};

TEST_F(Tidings, ADeliveredMessageIsToldInThePopupAndWarnsOfNothing) {
    Tell(5);
    EXPECT_TRUE(Popup().isVisible());
    EXPECT_EQ(Popup().Captions(), (QStringList{Q("Ann"), Q("+353865550101"), Q("text")}));
    EXPECT_FALSE(IsWarned());
    QTest::mouseClick(&Popup(), Qt::LeftButton);
    EXPECT_FALSE(Popup().isVisible()) << "a click closes it";
}

TEST_F(Tidings, OnlyACanceledMessageRaisesTheWarning) {
    Tell(2);
    EXPECT_TRUE(Popup().isVisible());
    EXPECT_TRUE(IsWarned());
}

TEST_F(Tidings, TheWarningStaysOverGoodNewsGoesAtAClickAndComesWithTheNextFailure) {
    Tell(7);
    Tell(5);
    EXPECT_TRUE(IsWarned()) << "a later success does not hide it";
    QTest::mouseClick(Window.Find("lblFailureWarning"), Qt::LeftButton);
    EXPECT_FALSE(IsWarned());
    Tell(5);
    EXPECT_FALSE(IsWarned());
    Tell(7);
    EXPECT_TRUE(IsWarned());
}

TEST_F(Tidings, EachStatusHasItsOwnImage) {
    const QList<std::pair<qint32, QString>> cases = {{2, Q("canceled")},
                                                     {5, Q("delivered")},
                                                     {7, Q("undelivered")},
                                                     {6, Q("unconfirmed")},
                                                     {9, Q("unknown")}};
    for (const auto& [status, name] : cases) {
        Tell(status);
        const QImage seen =
            Popup().grab(QRect(5, 17, 30, 30)).toImage().convertToFormat(QImage::Format_RGB32);
        QImage drawn(seen.size(), QImage::Format_RGB32);
        drawn.fill(seen.pixelColor(0, 0));
        QPainter painter(&drawn);
        Icons::Get(Q("tracker-") + name).paint(&painter, drawn.rect());
        painter.end();
        EXPECT_EQ(seen, drawn) << name.toStdString();
    }
}

TEST(Splash, ShowsTheProductTheVersionAndNoPlaceholders) {
    frmSplash splash(2026, Q("1.2.3"));
    EXPECT_EQ(splash.findChild<QLabel*>(Q("lblApp"))->text(), Q("Larkspan Messenger"));
    EXPECT_EQ(splash.findChild<QLabel*>(Q("lblVer"))->text(), Q("1.2.3"));
    EXPECT_EQ(splash.findChild<QLabel*>(Q("lblSuite"))->text(), Q("Larkspan Business\n2026"));
    EXPECT_FALSE(splash.findChild<QLabel*>(Q("imgSplash"))->pixmap().isNull());
    EXPECT_FALSE(splash.isModal());
}

TEST(MainScreens, WhereTheSetupIsDueItSaysHowADataFolderIsGivenAndCountsAsCanceled) {
    TestMachine machine;
    const Machine seams = machine.Seams();
    AppContext context(seams);
    const CommandLine arguments{QStringList()};
    MainScreens screens(context, seams, arguments);
    machine.Office.Boxes.Expect();
    EXPECT_FALSE(screens.RunSetupWizard());
    const BoxRequest& box = machine.Office.Boxes.Shown.first();
    EXPECT_EQ(box.Icon, BoxIcon::Information);
    EXPECT_TRUE(box.Text.contains(Q("larkspan --data FOLDER")));
    EXPECT_TRUE(box.Text.contains(Q("larkspan-data create FOLDER")));
}

TEST(MainScreens, AWholeStartBringsUpTheMainWindowIdleAndWithItsHandleWritten) {
    Look::Apply(Q("light"));
    TestMachine machine;
    machine.StoreOffice();
    machine.Office.AddContact(Q("Byrne"), Q("Declan"), Q("+353865550101"));
    const Machine seams = machine.Seams();
    AppContext context(seams);
    const CommandLine arguments{QStringList()};
    MainScreens screens(context, seams, arguments);
    ASSERT_TRUE(EntryRoutine(context, seams, screens, arguments).Run());
    ASSERT_NE(screens.Main(), nullptr);
    EXPECT_TRUE(screens.Main()->isVisible());
    EXPECT_TRUE(context.AppBusyState.IsIdle());
    EXPECT_EQ(machine.Office.Files.Read(machine.Office.Folders.TempFolder() + Q("hwnd.sms")),
              QByteArray::number(screens.Main()->winId()) + "\r\n");
}

TEST(TipOfDay, ShowsTheTipsInTurnAndRemembersThePlace) {
    TestMachine machine;
    Settings settings;
    settings.SetApplication(Q("Larkspan Messenger"));
    const QStringList tips = {Q("first"), Q("second")};
    TipOfDay dialog(tips, Q("Brenmoor"), Q("Larkspan Messenger"), settings, 2026);
    const auto* tip = dialog.findChild<QLabel*>(Q("lblTip"));
    EXPECT_EQ(tip->text(), Q("first"));
    EXPECT_EQ(dialog.findChild<QLabel*>(Q("lblHead"))->text(), Q("Brenmoor Larkspan Messenger"));
    QTest::mouseClick(dialog.findChild<QPushButton*>(Q("cmdNextTip")), Qt::LeftButton);
    EXPECT_EQ(tip->text(), Q("second"));
    EXPECT_EQ(TipOfDay(tips, Q("Brenmoor"), Q("Larkspan Messenger"), settings, 2026)
                  .findChild<QLabel*>(Q("lblTip"))
                  ->text(),
              Q("first"));
}

TEST(TipOfDay, AUserWhoWantsNoneGetsOneOnlyOnTheCommandLinesWord) {
    TestMachine machine;
    const Machine seams = machine.Seams();
    Settings settings;
    settings.SetApplication(Q("Larkspan Messenger"));
    const CommandLine plain{QStringList()};
    const CommandLine forced({Q("/TIPOFTHEDAY")});
    TipOfDay::ShowIfDue(seams, settings, forced);
    EXPECT_TRUE(machine.Door.Dialogs.isEmpty()) << "there is no tip file";
    ASSERT_TRUE(machine.Office.Files.Replace(machine.Office.Folders.ApplicationFolder() + Q("tips.txt"),
                                             "\r\nDrag a name to the recipients.\r\n \r\n"));
    machine.Door.ExpectDialog([](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), Q("Larkspan Messenger - Tip of the Day"));
        EXPECT_EQ(dialog.findChild<QLabel*>(Q("lblTip"))->text(), Q("Drag a name to the recipients."));
        dialog.findChild<QCheckBox*>()->setChecked(false);
        dialog.reject();
    });
    TipOfDay::ShowIfDue(seams, settings, plain);
    EXPECT_FALSE(TipOfDay::IsWanted(settings));
    TipOfDay::ShowIfDue(seams, settings, plain);
    EXPECT_EQ(machine.Door.Dialogs.size(), 1);
    machine.Door.ExpectDialog([](QDialog& dialog) { dialog.reject(); });
    TipOfDay::ShowIfDue(seams, settings, forced);
    EXPECT_EQ(machine.Door.Dialogs.size(), 2);
}
