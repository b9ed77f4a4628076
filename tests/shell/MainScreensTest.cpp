#include "shell/MainScreens.h"

#include "platform/EventPump.h"
#include "shell/MainWindow.h"
#include "shell/TipOfDay.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QProxyStyle>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

/// A start of the program with its real windows on a machine of the test.
struct RealStart {
    explicit RealStart(TestMachine& machine, const QStringList& arguments = {})
        : Arguments(arguments), Seams(machine.Seams()), Context(Seams), Screens(Context, Seams, Arguments) {
        Look::Apply(Q("light"));
        Context.AppSettings.SetApplication(Q("Larkspan Messenger"));
    }
    CommandLine Arguments;
    Machine Seams;
    AppContext Context;
    MainScreens Screens;
};

/// Closes a window of this name as soon as it is on the screen, as an impatient user does.
class Closer final : public QObject {
public:
    explicit Closer(QString name) : m_name(std::move(name)) { qApp->installEventFilter(this); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Show && watched->objectName() == m_name) {
            auto* window = qobject_cast<QWidget*>(watched);
            QMetaObject::invokeMethod(
                window, [window] { window->close(); }, Qt::QueuedConnection);
        }
        return false;
    }

private:
    QString m_name;
};

/// A style that cannot measure anything from the moment it is told so.
class FailingStyle final : public QProxyStyle {
public:
    FailingStyle() : QProxyStyle(Q("Fusion")) {}
    bool IsFailing = false;

    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option,
                                  const QWidget* widget) const override {
        if (IsFailing) {
            throw std::runtime_error("made to fail");
        }
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
};

/// What was made of a main window and had no place in it yet.
void DeleteLooseParts() {
    QWidgetList parts = QApplication::topLevelWidgets();
    parts.removeIf([](const QWidget* part) { return part->parentWidget() != nullptr; });
    qDeleteAll(parts);
}

/// The real windows, but for a main window that cannot be made.
class ScreensWithoutMain final : public EntryScreens {
public:
    explicit ScreensWithoutMain(MainScreens& real) : m_real(real) {}
    void ShowSplash() override { m_real.ShowSplash(); }
    void RepaintSplash() override { m_real.RepaintSplash(); }
    void HideSplash() override { m_real.HideSplash(); }
    void DropSplash() override { m_real.DropSplash(); }
    [[nodiscard]] bool RunSetupWizard() override { return m_real.RunSetupWizard(); }
    void RunPhonebookWizard() override { m_real.RunPhonebookWizard(); }
    void LoadMain() override { throw std::runtime_error("made to fail"); }
    [[nodiscard]] MainState StateOfMain() const override { return m_real.StateOfMain(); }
    [[nodiscard]] WindowHandle MainHandle() const override { return m_real.MainHandle(); }
    void ShowMain() override { m_real.ShowMain(); }
    void ContactListFocus(bool home) override { m_real.ContactListFocus(home); }
    void RepaintMain() override { m_real.RepaintMain(); }

private:
    MainScreens& m_real;
};

}  // namespace

TEST(MainScreens, AWindowClosedWhileItIsBeingShownEndsTheStartInsteadOfWaitingForEver) {
    TestMachine machine;
    machine.StoreOffice();
    machine.KeepLog();
    ApplicationEventPump pump;
    machine.Office.Pump.OnProcess = [&](int passes) { pump.Process(passes); };
    const Closer closer(Q("frmMain"));
    RealStart start(machine);
    EXPECT_FALSE(EntryRoutine(start.Context, start.Seams, start.Screens, start.Arguments).Run());
    EXPECT_EQ(start.Screens.StateOfMain(), MainState::Unloaded);
    EXPECT_FALSE(start.Screens.Main()->isVisible());
    EXPECT_TRUE(machine.LogLines().trimmed().endsWith(Q("Application Terminated")));
}

TEST(MainScreens, AMainWindowThatCannotBeMadeEndsTheStartWithABox) {
    TestMachine machine;
    machine.StoreOffice();
    RealStart start(machine);
    ScreensWithoutMain screens(start.Screens);
    machine.Office.Boxes.Expect();
    EXPECT_FALSE(EntryRoutine(start.Context, start.Seams, screens, start.Arguments).Run());
    ASSERT_EQ(machine.Office.Boxes.Shown.size(), 1);
    EXPECT_EQ(machine.Office.Boxes.Shown.first().Icon, BoxIcon::Critical);
    EXPECT_EQ(start.Screens.MainHandle(), 0U);
}

TEST(MainScreens, AFailureWhileTheMainWindowIsMadeIsToldToTheLog) {
    TestMachine machine;
    machine.StoreOffice();
    machine.KeepLog();
    RealStart start(machine);
    auto* style = new FailingStyle;
    QApplication::setStyle(style);
    style->IsFailing = true;
    EXPECT_NO_THROW(start.Screens.LoadMain());
    style->IsFailing = false;
    Look::Apply(Q("light"));
    DeleteLooseParts();
    EXPECT_EQ(start.Screens.StateOfMain(), MainState::None);
    EXPECT_TRUE(machine.LogLines().trimmed().endsWith(Q("frmMain_Load Error:made to fail")))
        << machine.LogLines().toStdString();
}

TEST(MainScreens, ASetupForcedOnAConfiguredOfficeNamesItsPhonebook) {
    TestMachine machine;
    machine.StoreOffice();
    RealStart start(machine, {Q("/wizard")});
    machine.Office.Boxes.Expect();
    EXPECT_FALSE(EntryRoutine(start.Context, start.Seams, start.Screens, start.Arguments).Run());
    const QString text = machine.Office.Boxes.Shown.first().Text;
    EXPECT_TRUE(text.contains(machine.Office.PhonebookPath())) << text.toStdString();
    EXPECT_FALSE(text.contains(Q("not known"))) << text.toStdString();
    EXPECT_TRUE(text.contains(Q("larkspan --data FOLDER")));
}

TEST(MainScreens, TheSplashIsOnTheScreenWithTheProgramsVersion) {
    TestMachine machine;
    RealStart start(machine);
    start.Screens.ShowSplash();
    const QWidget* splash = nullptr;
    const auto windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        splash = window->objectName() == Q("frmSplash") ? window : splash;
    }
    ASSERT_NE(splash, nullptr);
    EXPECT_TRUE(splash->isVisible());
    const QString version = splash->findChild<QLabel*>(Q("lblVer"))->text();
    EXPECT_TRUE(QRegularExpression(Q("^\\d+\\.\\d+\\.\\d+$")).match(version).hasMatch());
    EXPECT_EQ(version, QCoreApplication::applicationVersion());
}

TEST(TipOfDay, AnInstalledTipFileIsReadFromTheShareFolder) {
    TestMachine machine;
    RealStart start(machine);
    const QString share = machine.Office.Folders.ShareFolder();
    ASSERT_TRUE(QDir().mkpath(share));
    ASSERT_TRUE(machine.Office.Files.Replace(share + Q("tips.txt"), "an installed tip\n"));
    machine.Door.ExpectDialog([](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QLabel*>(Q("lblTip"))->text(), Q("an installed tip"));
        dialog.reject();
    });
    TipOfDay::ShowIfDue(start.Seams, start.Context.AppSettings, start.Arguments);
}

TEST(FrmMain, LoadExpandsThePlaceholdersOfTheFormAndLeavesTheUsersSignatureAsItIs) {
    MainWindow window([](TestMachine&) {
        TestMachine::Store(SettingNames::SectionDefaults, SettingNames::EndWith, Q("Desk {YEAR}"));
    });
    QLabel label(Q("{APP} {YEAR}"), window.Form.get());
    window.Form->Load();
    EXPECT_EQ(label.text(), Q("Larkspan Messenger 2026"));
    EXPECT_EQ(window.Find<QLineEdit>("txtEndWidth")->text(), Q("Desk {YEAR}"));
}

TEST(FrmMain, NineHundredBySixHundredIsEnoughWithTheWarningShown) {
    // Three rows of tabs in a column of this width.
    MainWindow window([](TestMachine& machine) {
        for (const char* name :
             {"Drivers", "Finance", "Management", "On call", "Reception", "Sales", "Support", "Warehouse"}) {
            machine.Office.AddGroup(Q(name));
        }
    });
    window.Open();
    window.Form->ShowAlert(true);
    window.Form->resize(900, 600);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.Form->size(), QSize(900, 600));
    const QWidget* warning = window.Find("lblFailureWarning");
    EXPECT_GE(warning->width(), warning->sizeHint().width()) << "the whole sentence is seen";
}
