#include "shell/TrayArea.h"

#include "compose/InputGate.h"
#include "controls/PopupControl.h"
#include "platform_ui/Instance.h"
#include "shell/MainWindow.h"
#include "shell/ShowRequests.h"
#include "support/Environment.h"

#include <QCursor>
#include <QDir>
#include <QIcon>
#include <QProcess>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <QWindow>

#include <gtest/gtest.h>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

const QString ShowEntry = QStringLiteral("Show Larkspan Messenger");
const QString CloseEntry = QStringLiteral("Close Larkspan Messenger");

/// The window with a notification area, or without one.
class TrayTest : public ::testing::Test {
protected:
    void OpenWith(bool hasTray) {
        Tray.HasArea = hasTray;
        Window.Open();
    }
    void Supply(const QString& name) const {
        const QString folder = Window.Machine.Office.Folders.ApplicationFolder() + Q("Icons");
        QDir().mkpath(folder);
        ASSERT_TRUE(QFile::copy(Q(PACKAGING_FOLDER "/Icons/") + name, folder + u'/' + name));
    }

    MainWindow Window;
    FakeTray& Tray = Window.Machine.Tray;
    frmMain& Form = *Window.Form;
};

}  // namespace

TEST_F(TrayTest, ToTrayHidesTheWindowAndBringsItBackToTheFront) {
    OpenWith(true);
    EXPECT_FALSE(Form.IsInTray()) << "at start";
    Form.ToTray(true);
    EXPECT_TRUE(Form.IsInTray());
    EXPECT_FALSE(Form.isVisible());
    Window.Machine.Desktop.Calls.clear();
    Form.ToTray(false);
    EXPECT_FALSE(Form.IsInTray());
    EXPECT_TRUE(Form.isVisible());
    EXPECT_FALSE(Form.isMinimized());
    EXPECT_TRUE(Window.Machine.Desktop.Calls.contains(Q("foreground %1").arg(Form.winId())));
}

TEST_F(TrayTest, TheMinimizeButtonHidesTheWindowInTheTray) {
    OpenWith(true);
    QTest::mouseClick(Window.Find("cmdMinimize"), Qt::LeftButton);
    EXPECT_TRUE(Form.IsInTray());
    EXPECT_FALSE(Form.isVisible());
}

TEST_F(TrayTest, TheIconHasTheProductsNameAsItsTip) {
    OpenWith(true);
    EXPECT_EQ(Tray.ToolTip, Q("Larkspan Messenger"));
}

TEST_F(TrayTest, TheWindowComesBackAtItsPlaceAndMaximisedIfItWas) {
    OpenWith(true);
    Form.move(37, 41);
    Form.ToTray(true);
    Form.windowHandle()->setFramePosition(QPoint(200, 200));  // a place that a window manager found
    Form.ToTray(false);
    EXPECT_EQ(Form.pos(), QPoint(37, 41));
    Form.showMaximized();
    Form.ToTray(true);
    Form.ToTray(false);
    EXPECT_TRUE(Form.isMaximized());
}

TEST_F(TrayTest, AWindowWhoseScreenIsGoneComesBackOnOneThatIsThere) {
    OpenWith(true);
    const QRect room = Form.screen()->availableGeometry();
    for (const QPoint place : {QPoint(room.right() + 500, 100), QPoint(100, room.top() - 5000),
                               QPoint(-5000, room.bottom() + 1)}) {
        Form.move(place);
        Form.ToTray(true);
        Form.ToTray(false);
        EXPECT_GE(Form.frameGeometry().top(), room.top());
        EXPECT_TRUE(room.contains(Form.frameGeometry().topLeft()))
            << Form.x() << ',' << Form.y() << " for " << place.x() << ',' << place.y();
    }
}

TEST_F(TrayTest, AWindowThatLiesPartlyOutsideTheScreenComesBackWhereItWas) {
    OpenWith(true);
    const QPoint place(-100, 60);
    Form.move(place);
    Form.ToTray(true);
    Form.ToTray(false);
    EXPECT_EQ(Form.pos(), place);
}

TEST_F(TrayTest, TheWindowThatComesBackMinimisedFromATrayThatDiedHasItsPlace) {
    OpenWith(true);
    Form.move(37, 41);
    Form.ToTray(true);
    Form.windowHandle()->setFramePosition(QPoint(200, 200));
    Tray.Lose();
    ASSERT_TRUE(Form.isMinimized());
    Form.ToTray(false);
    EXPECT_EQ(Form.pos(), QPoint(37, 41));
}

TEST_F(TrayTest, WithoutATrayTheWindowIsMinimisedInstead) {
    OpenWith(false);
    Form.ToTray(true);
    EXPECT_TRUE(Form.IsInTray());
    EXPECT_TRUE(Form.isMinimized());
    EXPECT_TRUE(Form.isVisible()) << "a hidden window could not be reached";
    Form.ToTray(false);
    EXPECT_FALSE(Form.IsInTray());
    EXPECT_FALSE(Form.isMinimized());
}

TEST_F(TrayTest, TheLogIsToldOnceThatThereIsNoTray) {
    Window.Machine.KeepLog();
    OpenWith(false);
    EXPECT_EQ(Window.Machine.LogLines(), QString()) << "one may still come";
    Form.ToTray(true);
    Form.ToTray(false);
    Form.ToTray(true);
    EXPECT_EQ(Window.Machine.LogLines().section(u' ', 2),
              Q("No tray is there: the window is minimised instead\n"));
}

TEST_F(TrayTest, WithATrayTheLogIsToldNothing) {
    Window.Machine.KeepLog();
    OpenWith(true);
    Form.ToTray(true);
    EXPECT_EQ(Window.Machine.LogLines(), QString());
}

TEST_F(TrayTest, AMinimisedWindowThatTheTaskBarBringsBackIsNotInTheTrayAnyMore) {
    OpenWith(false);
    Form.ToTray(true);
    Form.setWindowState(Form.windowState() & ~Qt::WindowMinimized);
    QCoreApplication::processEvents();
    EXPECT_FALSE(Form.IsInTray());
    EXPECT_EQ(Tray.HostEntries(), QStringList{CloseEntry});
}

TEST_F(TrayTest, WhenTheTrayDiesTheWindowThatIsHiddenInItComesBackMinimised) {
    OpenWith(true);
    Form.ToTray(true);
    ASSERT_TRUE(Tray.IsNeeded) << "somebody has to notice";
    Tray.Lose();
    EXPECT_TRUE(Form.isVisible());
    EXPECT_TRUE(Form.isMinimized());
    EXPECT_TRUE(Form.IsInTray()) << "until somebody brings it back";
    EXPECT_FALSE(Tray.IsNeeded);
    Form.ToTray(false);
    EXPECT_FALSE(Form.IsInTray());
    EXPECT_FALSE(Form.isMinimized());
}

TEST_F(TrayTest, WhenTheTrayDiesAWindowThatIsShowingStaysAsItIs) {
    OpenWith(true);
    Tray.Lose();
    EXPECT_TRUE(Form.isVisible());
    EXPECT_FALSE(Form.isMinimized());
    EXPECT_FALSE(Form.IsInTray());
}

TEST_F(TrayTest, ATrayThatComesLateIsUsedFromThenOn) {
    OpenWith(false);
    Form.ToTray(true);
    ASSERT_TRUE(Form.isMinimized());
    Form.ToTray(false);
    Tray.HasArea = true;
    Form.ToTray(true);
    EXPECT_FALSE(Form.isVisible());
}

TEST_F(TrayTest, ADoubleClickOnTheIconBringsTheWindowBack) {
    OpenWith(true);
    Form.ToTray(true);
    Tray.Events.OnOpen();
    EXPECT_FALSE(Form.IsInTray());
    EXPECT_TRUE(Form.isVisible());
}

TEST_F(TrayTest, ADoubleClickOnTheIconOfAWindowThatIsShowingDoesNothing) {
    OpenWith(true);
    Form.showMinimized();
    Window.Machine.Desktop.Calls.clear();
    Tray.Events.OnOpen();
    EXPECT_TRUE(Form.isMinimized());
    EXPECT_EQ(Window.Machine.Desktop.Calls, QStringList());
}

TEST_F(TrayTest, TheMenuOfAWindowThatIsShowingHasTheCloseItemOnly) {
    OpenWith(true);
    Window.Machine.Door.ExpectMenu(QString());
    Tray.Events.OnMenu();
    EXPECT_EQ(Window.Machine.Door.Menus.constLast(), QStringList{CloseEntry});
    EXPECT_FALSE(Form.IsUnloaded());
}

TEST_F(TrayTest, TheMenuStandsAtThePointer) {
    OpenWith(true);
    QCursor::setPos(321, 123);
    Window.Machine.Door.ExpectMenu(QString());
    Tray.Events.OnMenu();
    EXPECT_EQ(Window.Machine.Door.MenuPosition, QCursor::pos());
}

TEST_F(TrayTest, AMenuThatIsOpenIsNotOpenedASecondTime) {
    OpenWith(true);
    Window.Machine.Door.ExpectMenu(QString());
    Window.Machine.Door.OnMenu = [this] { Tray.Events.OnMenu(); };
    Tray.Events.OnMenu();
    EXPECT_EQ(Window.Machine.Door.Menus.size(), 1);
    Window.Machine.Door.OnMenu = {};
    Window.Machine.Door.ExpectMenu(QString());
    Tray.Events.OnMenu();
    EXPECT_EQ(Window.Machine.Door.Menus.size(), 2) << "the next one comes";
}

TEST_F(TrayTest, ShowInAMenuThatWasOpenWhenTheWindowCameBackLeavesItInFront) {
    OpenWith(true);
    Form.ToTray(true);
    Window.Machine.Door.ExpectMenu(ShowEntry);
    Window.Machine.Door.OnMenu = [this] { Window.Machine.OneCopy.OnShow(); };
    Tray.Events.OnMenu();
    EXPECT_FALSE(Form.IsInTray());
    EXPECT_TRUE(Form.isVisible());
    EXPECT_TRUE(QTest::qWaitForWindowActive(&Form));
}

TEST_F(TrayTest, ShowInAMenuThatWasOpenWhenTheTrayDiedBringsTheWindowBack) {
    OpenWith(true);
    Form.ToTray(true);
    Window.Machine.Door.ExpectMenu(ShowEntry);
    Window.Machine.Door.OnMenu = [this] { Tray.Lose(); };
    Tray.Events.OnMenu();
    EXPECT_FALSE(Form.IsInTray());
    EXPECT_TRUE(Form.isVisible());
    EXPECT_FALSE(Form.isMinimized());
}

TEST_F(TrayTest, TheMenuInTheTrayHasShowAndCloseAndShowBringsTheWindowBack) {
    OpenWith(true);
    Form.ToTray(true);
    Window.Machine.Door.ExpectMenu(ShowEntry);
    Tray.Events.OnMenu();
    EXPECT_EQ(Window.Machine.Door.Menus.constLast(), QStringList({ShowEntry, CloseEntry}));
    EXPECT_FALSE(Form.IsInTray());
    EXPECT_TRUE(Form.isVisible());
}

TEST_F(TrayTest, ClosedFromTheMenuInTheTrayTheProgramGoesTheExitPathOfTheExitButton) {
    OpenWith(true);
    Form.ToTray(true);
    Window.Context.SortBy = 1;
    const QSignalSpy clicks(Window.Find<QAbstractButton>("cmdExit"), &QAbstractButton::clicked);
    Window.Machine.Door.ExpectMenu(CloseEntry);
    Tray.Events.OnMenu();
    EXPECT_EQ(clicks.count(), 1);
    EXPECT_TRUE(Form.IsUnloaded());
    EXPECT_EQ(TestMachine::Stored(Q("Defaults"), Q("SortBy")), Q("1"));
    EXPECT_FALSE(Window.Context.PhonebookDB->IsConnected());
    EXPECT_TRUE(Window.Machine.LogLines().contains(Q("Application Terminated")));
    EXPECT_FALSE(Tray.IsOpen) << "the icon stays behind";
}

TEST_F(TrayTest, ClosedFromTheMenuWhileADialogIsOpenTheProgramEnds) {
    OpenWith(true);
    bool wasOpen = false;
    Window.Machine.Door.ExpectDialog([&](QDialog& dialog) {
        wasOpen = dialog.isVisible();
        Window.Machine.Door.ExpectMenu(CloseEntry);
        Tray.Events.OnMenu();
    });
    QTest::mouseClick(Window.Find("cmdAbout"), Qt::LeftButton);
    EXPECT_TRUE(wasOpen);
    EXPECT_TRUE(Form.IsUnloaded());
    EXPECT_TRUE(Window.Machine.LogLines().contains(Q("Application Terminated")));
}

TEST_F(TrayTest, TheCloseItemDoesNothingWhileTheWindowTakesNoInput) {
    OpenWith(true);
    Form.ToTray(true);
    {
        const InputGate sending(Form, Window.Machine.Office.Pump);
        Window.Machine.Door.ExpectMenu(CloseEntry);
        Tray.Events.OnMenu();
        EXPECT_FALSE(Form.IsUnloaded()) << "in the middle of a send";
    }
    Window.Machine.Door.ExpectMenu(CloseEntry);
    Tray.Events.OnMenu();
    EXPECT_TRUE(Form.IsUnloaded());
}

TEST_F(TrayTest, ClicksThatArePendingDoNotReachTheWindowWhenTheMenuComesUp) {
    OpenWith(true);
    Form.ShowAlert(true);
    auto* label = Window.Find<QAbstractButton>("lblFailureWarning");
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        const bool isPress = type == QEvent::MouseButtonPress;
        QCoreApplication::postEvent(
            label, new QMouseEvent(type, QPointF(5, 5), label->mapToGlobal(QPointF(5, 5)), Qt::LeftButton,
                                   isPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier));
    }
    Window.Machine.Door.ExpectMenu(QString());
    Tray.Events.OnMenu();
    QCoreApplication::processEvents();
    EXPECT_TRUE(label->isVisible());
}

TEST_F(TrayTest, TheMenuThatADesktopDrawsItselfFollowsTheState) {
    OpenWith(true);
    ASSERT_NE(Tray.HostMenu, nullptr);
    EXPECT_EQ(Tray.HostEntries(), QStringList{CloseEntry});
    Form.ToTray(true);
    EXPECT_EQ(Tray.HostEntries(), QStringList({ShowEntry, CloseEntry}));
    Tray.HostMenu->actions().at(0)->trigger();
    EXPECT_TRUE(Form.isVisible());
    EXPECT_EQ(Tray.HostEntries(), QStringList{CloseEntry});
    Tray.HostMenu->actions().at(1)->trigger();
    EXPECT_TRUE(Form.IsUnloaded());
}

TEST_F(TrayTest, APopupAndADialogThatCloseWhileTheWindowIsHiddenDoNotEndTheProgram) {
    OpenWith(true);
    Form.ToTray(true);
    QTimer::singleShot(0, &Form, [this] {
        auto* popup = Form.findChild<PopupControl*>(Q("pucFeedback"));
        popup->AddItem(5, 5, 60, 20, Q("Text"));
        popup->Show();
        EXPECT_TRUE(popup->isVisible()) << "shown while the window is away";
        popup->Close();
        QDialog dialog;
        dialog.show();
        dialog.close();
    });
    constexpr int StillThere = 7;
    QTimer::singleShot(300, &Form, [] { QCoreApplication::exit(StillThere); });
    EXPECT_EQ(QCoreApplication::exec(), StillThere);
}

TEST_F(TrayTest, AFailedMessageIsToldInThePopupWhileTheWindowIsInTheTray) {
    OpenWith(true);
    Form.ToTray(true);
    const qint32 id = Window.Machine.Office.AddMessageRow({{Q("msgRecipient"), Q("A")}, {Q("msgStatus"), 7}});
    Window.Context.MessageTracker.Track(id, Q("Aoife"), Q("+353865550101"), Q("text"));
    EXPECT_EQ(Window.Context.MessageTracker.Update(), 1);
    EXPECT_TRUE(Form.findChild<PopupControl*>(Q("pucFeedback"))->isVisible());
    EXPECT_FALSE(Form.isVisible());
}

TEST_F(TrayTest, TheTrackerReachesTheTrayIcon) {
    OpenWith(true);
    Window.Context.Notifier.ShowStatusTrayNotify(5, Q("Aoife"), Q("+353865550101"), QString());
    EXPECT_EQ(Tray.Balloons, QStringList{Q("SMS Delivered|Aoife")});
}

TEST_F(TrayTest, TheIconShowsThePictureThatComesWithTheProgram) {
    Supply(Q("larkspantray.ico"));
    OpenWith(true);
    EXPECT_EQ(Tray.Icon.availableSizes().size(), 5);
    EXPECT_TRUE(Tray.Icon.availableSizes().contains(QSize(22, 22)));
}

TEST_F(TrayTest, WithoutThePictureTheIconIsADrawingInTheColourOfTheText) {
    const auto darkest = [this] {
        int least = 255;
        const QImage image = Tray.Icon.pixmap(QSize(32, 32)).toImage();
        for (int at = 0; at < image.width() * image.height(); ++at) {
            const QColor colour = image.pixelColor(at % image.width(), at / image.width());
            least = colour.alpha() > 200 ? qMin(least, colour.lightness()) : least;
        }
        return least;
    };
    OpenWith(true);
    ASSERT_FALSE(Tray.Icon.isNull());
    EXPECT_LT(darkest(), 60);
    const int before = Tray.IconsSet;
    Look::Apply(Q("dark"));
    QCoreApplication::processEvents();
    EXPECT_GT(Tray.IconsSet, before) << "the tray paints it anew only if it is told";
    EXPECT_GT(darkest(), 200);
    Look::Apply(Q("light"));
}

TEST_F(TrayTest, APictureThatIsDamagedIsReplacedByTheDrawing) {
    const QString folder = Window.Machine.Office.Folders.ApplicationFolder() + Q("Icons");
    QDir().mkpath(folder);
    ASSERT_TRUE(Window.Machine.Office.Files.Replace(folder + Q("/larkspantray.ico"), "no icon at all"));
    OpenWith(true);
    EXPECT_FALSE(Tray.Icon.pixmap(QSize(32, 32)).isNull());
}

TEST_F(TrayTest, TheWindowGetsItsOwnIconsAndLosesThemAtTheEnd) {
    Supply(Q("larkspan32x32x256.ico"));
    Supply(Q("larkspan16x16x256.ico"));
    const qint64 before = Form.windowIcon().cacheKey();
    OpenWith(true);
    EXPECT_NE(Form.windowIcon().cacheKey(), before);
    EXPECT_TRUE(Form.windowIcon().availableSizes().contains(QSize(32, 32)));
    EXPECT_TRUE(Form.windowIcon().availableSizes().contains(QSize(16, 16)));
    Form.close();
    EXPECT_EQ(Form.windowIcon().cacheKey(), before);
}

TEST_F(TrayTest, WithoutIconFilesTheWindowKeepsTheIconOfTheApplication) {
    const qint64 before = Form.windowIcon().cacheKey();
    OpenWith(true);
    EXPECT_EQ(Form.windowIcon().cacheKey(), before);
}

TEST_F(TrayTest, ASecondStartBringsTheWindowOutOfTheTray) {
    OpenWith(true);
    Form.ToTray(true);
    ASSERT_TRUE(Window.Machine.OneCopy.OnShow);
    Window.Machine.OneCopy.OnShow();
    EXPECT_FALSE(Form.IsInTray());
    EXPECT_TRUE(Form.isVisible());
}

TEST_F(TrayTest, ASecondStartLeavesAWindowThatIsInFrontAsItIs) {
    OpenWith(true);
    Window.Machine.Desktop.Calls.clear();
    Window.Machine.OneCopy.OnShow();
    EXPECT_TRUE(Form.isActiveWindow());
    EXPECT_EQ(Window.Machine.Desktop.Calls, QStringList());
}

TEST_F(TrayTest, NothingBringsTheWindowBackAfterItWasClosed) {
    OpenWith(true);
    Window.Machine.Door.ExpectMenu(ShowEntry);
    Form.ToTray(true);
    Window.Machine.Door.OnMenu = [this] { Form.close(); };  // a host's menu, meanwhile
    Tray.Events.OnMenu();
    EXPECT_TRUE(Form.IsUnloaded());
    EXPECT_FALSE(Form.isVisible());
    Form.ToTray(false);
    EXPECT_FALSE(Form.isVisible());
}

TEST_F(TrayTest, AWindowInFrontIsToldApartFromOneThatHasToBeBroughtThere) {
    OpenWith(true);
    ShowRequests requests(Form, Window.Seams, [] {});
    Window.Machine.Desktop.Calls.clear();
    EXPECT_TRUE(requests.ForceForeground());
    EXPECT_EQ(Window.Machine.Desktop.Calls, QStringList()) << "nothing is changed";
    Form.showMinimized();
    EXPECT_FALSE(requests.ForceForeground()) << "the desktop knows no such window";
    Window.Machine.Desktop.Add(static_cast<WindowHandle>(Form.winId()), Q("form"), Q("title"));
    Form.showMinimized();
    EXPECT_TRUE(requests.ForceForeground());
    EXPECT_FALSE(Form.isMinimized());
}

TEST_F(TrayTest, WithoutAnXServerASecondProcessReachesTheHiddenWindowThroughTheLocalSocket) {
    const QTemporaryDir runtime;
    const QByteArray folder = runtime.path().toLocal8Bit();
    const EnvironmentVariable sockets("XDG_RUNTIME_DIR", folder);
    const EnvironmentVariable home("LARKSPAN_HOME", folder);
    const EnvironmentVariable config("XDG_CONFIG_HOME", folder);
    LocalInstance instance(LocalInstance::RuntimeFolder(), LocalInstance::SessionName());
    ASSERT_FALSE(instance.IsPreviousInstance());
    OpenWith(true);
    instance.SetOnShow([this] { Window.Machine.OneCopy.OnShow(); });
    Form.ToTray(true);
    ASSERT_FALSE(Form.isVisible());
    QProcess second;
    second.start(Q(LARKSPAN), {});
    ASSERT_TRUE(QTest::qWaitFor([&] { return second.state() == QProcess::NotRunning; }, 60000));
    EXPECT_EQ(second.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return Form.isVisible(); }, 60000));
    EXPECT_FALSE(Form.IsInTray());
}
