#include "e2e/Desktop.h"

#include <QElapsedTimer>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

const QString ShowEntry = QStringLiteral("Show Larkspan Messenger");
const QString CloseEntry = QStringLiteral("Close Larkspan Messenger");

/// "Normal" or "Iconic" as the window manager has it; empty for a window that is hidden altogether.
QString StateOf(const QString& window) {
    QProcess xprop;
    xprop.start(Q("xprop"), {Q("-id"), window, Q("WM_STATE")});
    xprop.waitForFinished(5000);
    const QString said = QString::fromLatin1(xprop.readAllStandardOutput());
    for (const char* state : {"Normal", "Iconic"}) {
        if (said.contains(Q("window state: ") + Q(state))) {
            return Q(state);
        }
    }
    return {};
}

/// The mouse on the tray's icon, and what it does there.
void AtIcon(const Started& program, const QStringList& actions) {
    RealInput::Do(QStringList{Q("mousemove"), Q("--window"), program.TrayIcon(), Q("11"), Q("11"), Q("sleep"),
                              Q("0.2")} +
                  actions);
}

void WaitForIcon(const Started& program) {
    Driver::WaitFor(Q("the icon in the tray"), [&] { return !program.TrayIcon().isEmpty(); });
}

void WaitForItem(HostTray& host) {
    Driver::WaitFor(Q("the item at the host"), [&] { return host.Ask(Q("items")) == Q("1"); });
}

/// By the button's shortcut; waits until the window is hidden or minimised.
void PressToTray(const Started& program) {
    program.WaitForWindow();
    RealInput::Do({Q("key"), Q("alt+t")});
    Driver::WaitFor(Q("the window put away"), [&] { return program.Window().isEmpty(); });
}

void WaitForEnd(const Started& program) {
    Driver::WaitFor(Q("the end of the program"), [&] { return program.HasEnded(); });
}

/// A second start of the program, which ends at once.
void StartAgain(const RealOffice& office, const QString& bus = {}) {
    Started second(office, bus);
    WaitForEnd(second);
    EXPECT_EQ(second.Process().exitCode(), 0);
}

/// The menu that has come up at the icon.
void WaitForMenu(const Started& program) {
    Driver::WaitFor(Q("the menu"),
                    [&] { return program.Windows().size() > (program.Window().isEmpty() ? 1 : 2); });
}

}  // namespace

TEST(EmbeddingTray, ADoubleClickOnTheIconBringsTheHiddenWindowBackToItsPlace) {
    EmbeddingTray tray;
    RealOffice office;
    Started program(office);
    WaitForIcon(program);
    program.WaitForWindow();
    const QString window = program.Window();
    const QString place = RealInput::Output({Q("getwindowgeometry"), window});
    PressToTray(program);
    EXPECT_EQ(StateOf(window), QString()) << "it is to be hidden, not minimised";
    AtIcon(program, {Q("click"), Q("1"), Q("sleep"), Q("1.2")});
    EXPECT_TRUE(program.Window().isEmpty()) << "a single click does nothing here";
    AtIcon(program, {Q("click"), Q("--repeat"), Q("2"), Q("--delay"), Q("80"), Q("1")});
    program.WaitForWindow();
    Driver::WaitFor(Q("the window at its place"), [&] {
        return RealInput::Output({Q("getwindowgeometry"), window}) == place;
    });
}

TEST(EmbeddingTray, TheMenuOfTheRightButtonShowsTheWindowAndClosesTheProgram) {
    EmbeddingTray tray;
    RealOffice office;
    Started program(office);
    WaitForIcon(program);
    PressToTray(program);
    AtIcon(program, {Q("click"), Q("3")});
    WaitForMenu(program);
    RealInput::Do({Q("key"), Q("Down"), Q("Return")});
    program.WaitForWindow();
    // A second press too soon after the first is half of a double click.
    AtIcon(program, {Q("sleep"), Q("0.6"), Q("click"), Q("3")});
    WaitForMenu(program);
    RealInput::Do({Q("key"), Q("Down"), Q("Return")});
    WaitForEnd(program);
    EXPECT_EQ(program.Process().exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.Process().exitCode(), 0);
}

TEST(EmbeddingTray, ClosedFromTheMenuWhileHiddenTheProgramEnds) {
    EmbeddingTray tray;
    RealOffice office;
    Started program(office);
    WaitForIcon(program);
    PressToTray(program);
    AtIcon(program, {Q("click"), Q("3")});
    WaitForMenu(program);
    RealInput::Do({Q("key"), Q("Up"), Q("Return")});
    WaitForEnd(program);
    EXPECT_EQ(program.Process().exitCode(), 0);
}

TEST(EmbeddingTray, ThatComesLateTakesTheIcon) {
    RealOffice office;
    Started program(office);
    program.WaitForWindow();
    ASSERT_TRUE(program.TrayIcon().isEmpty());
    EmbeddingTray tray;
    WaitForIcon(program);
    const QString window = program.Window();
    PressToTray(program);
    EXPECT_EQ(StateOf(window), QString());
}

TEST(EmbeddingTray, WhenItDiesTheHiddenWindowComesBackMinimisedAndTheNextTrayTakesTheIcon) {
    auto tray = std::make_unique<EmbeddingTray>();
    RealOffice office;
    Started program(office);
    WaitForIcon(program);
    program.WaitForWindow();
    const QString window = program.Window();
    PressToTray(program);
    EXPECT_EQ(StateOf(window), QString());
    tray->Die();
    Driver::WaitFor(Q("the window in the task bar"), [&] { return StateOf(window) == Q("Iconic"); });
    StartAgain(office);
    program.WaitForWindow();
    tray = std::make_unique<EmbeddingTray>();
    WaitForIcon(program);
    PressToTray(program);
    EXPECT_EQ(StateOf(window), QString());
    StartAgain(office);
    program.WaitForWindow();
}

TEST(NoTray, TheWindowIsMinimisedAndASecondStartBringsItBack) {
    RealOffice office;
    Started program(office);
    program.WaitForWindow();
    const QString window = program.Window();
    PressToTray(program);
    EXPECT_EQ(StateOf(window), Q("Iconic"));
    StartAgain(office);
    program.WaitForWindow();
}

TEST(NoTray, TheWindowThatTheTaskBarBringsBackIsNotInTheTray) {
    RealOffice office;
    RealProgram program(office);
    program.Window().ToTray(true);
    Driver::WaitFor(Q("the minimised window"), [&] { return program.Window().isMinimized(); });
    ASSERT_TRUE(program.Window().IsInTray());
    RealInput::Do({Q("windowactivate"), QString::number(program.Window().winId())});
    Driver::WaitFor(Q("the window out of the tray"), [&] { return !program.Window().IsInTray(); });
}

TEST(NoTray, WithoutASessionBusTheProgramStartsWithoutWaiting) {
    RealOffice office;
    QElapsedTimer time;
    time.start();
    Started program(office, office.Root.filePath(Q("nobody")).prepend(Q("unix:path=")));
    program.WaitForWindow();
    EXPECT_LT(time.elapsed(), 10000);
}

TEST(HostTray, AClickBringsTheHiddenWindowBackAndTheMenuFollowsTheState) {
    const SessionBus bus;
    HostTray host(bus);
    RealOffice office;
    Started program(office, bus.Address);
    WaitForItem(host);
    program.WaitForWindow();
    const QString window = program.Window();
    Driver::WaitFor(Q("the menu"), [&] { return host.Ask(Q("menu")) == CloseEntry; });
    PressToTray(program);
    EXPECT_EQ(StateOf(window), QString());
    Driver::WaitFor(Q("both entries"), [&] { return host.Ask(Q("menu")) == ShowEntry + u'|' + CloseEntry; });
    EXPECT_EQ(host.Ask(Q("activate")), Q("done"));
    program.WaitForWindow();
    Driver::WaitFor(Q("one entry"), [&] { return host.Ask(Q("menu")) == CloseEntry; });
}

TEST(HostTray, TheEntriesOfItsMenuShowAndClose) {
    const SessionBus bus;
    HostTray host(bus);
    RealOffice office;
    Started program(office, bus.Address);
    WaitForItem(host);
    PressToTray(program);
    Driver::WaitFor(Q("the entry"), [&] { return host.Ask(Q("choose ") + ShowEntry) == Q("done"); });
    program.WaitForWindow();
    PressToTray(program);
    EXPECT_EQ(host.Ask(Q("choose ") + CloseEntry), Q("done"));
    WaitForEnd(program);
    EXPECT_EQ(program.Process().exitCode(), 0);
}

TEST(HostTray, CloseEndsTheProgramWhileADialogIsOpen) {
    const SessionBus bus;
    HostTray host(bus);
    RealOffice office;
    Started program(office, bus.Address);
    WaitForItem(host);
    program.WaitForWindow();
    RealInput::Do({Q("key"), Q("alt+a")});
    Driver::WaitFor(Q("the dialog"), [&] {
        return RealInput::Output({Q("getactivewindow"), Q("getwindowname")}).endsWith(Q("About"));
    });
    Driver::WaitFor(Q("the entry"), [&] { return host.Ask(Q("choose ") + CloseEntry) == Q("done"); });
    WaitForEnd(program);
    EXPECT_EQ(program.Process().exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.Process().exitCode(), 0);
}

TEST(HostTray, ThatComesLateGetsTheItem) {
    const SessionBus bus;
    RealOffice office;
    Started program(office, bus.Address);
    program.WaitForWindow();
    HostTray host(bus);
    WaitForItem(host);
    const QString window = program.Window();
    PressToTray(program);
    EXPECT_EQ(StateOf(window), QString());
    EXPECT_EQ(host.Ask(Q("tip")), Q("Larkspan Messenger"));
}

TEST(HostTray, WhenItDiesTheHiddenWindowComesBackMinimisedAndTheNextHostGetsTheItem) {
    const SessionBus bus;
    auto host = std::make_unique<HostTray>(bus);
    RealOffice office;
    Started program(office, bus.Address);
    WaitForItem(*host);
    program.WaitForWindow();
    const QString window = program.Window();
    PressToTray(program);
    EXPECT_EQ(StateOf(window), QString());
    host->Die();
    Driver::WaitFor(Q("the window in the task bar"), [&] { return StateOf(window) == Q("Iconic"); });
    host = std::make_unique<HostTray>(bus);
    WaitForItem(*host);
    StartAgain(office, bus.Address);
    program.WaitForWindow();
}

TEST(HostTray, ASecondStartBringsTheWindowOutOfIt) {
    const SessionBus bus;
    HostTray host(bus);
    RealOffice office;
    Started program(office, bus.Address);
    WaitForItem(host);
    PressToTray(program);
    StartAgain(office, bus.Address);
    program.WaitForWindow();
    Driver::WaitFor(Q("one entry"), [&] { return host.Ask(Q("menu")) == CloseEntry; });
}

/// Whether the window manager has the window in front, which it says a moment after the window knows.
bool IsInFront(const QWidget& window) {
    return window.isActiveWindow() &&
           RealInput::Output({Q("getactivewindow")}).trimmed() == QString::number(window.winId());
}

TEST(Foreground, AWindowThatIsInFrontStaysAsItIsAndAnotherOneComesForward) {
    RealOffice office;
    RealProgram program(office);
    const auto number = static_cast<WindowHandle>(program.Window().winId());
    Driver::WaitFor(Q("the window in front"), [&] { return IsInFront(program.Window()); });
    EXPECT_TRUE(program.Seams.Desktop.ForceForeground(number));
    EXPECT_TRUE(IsInFront(program.Window()));
    QWidget other;
    other.setWindowTitle(Q("In front"));
    other.show();
    other.activateWindow();
    Driver::WaitFor(Q("the other window in front"), [&] { return IsInFront(other); });
    EXPECT_TRUE(program.Seams.Desktop.ForceForeground(number));
    Driver::WaitFor(Q("the window in front again"), [&] { return IsInFront(program.Window()); });
    program.Window().showMinimized();
    Driver::WaitFor(Q("the minimised window"), [&] {
        return StateOf(QString::number(number)) == Q("Iconic") && !IsInFront(program.Window());
    });
    Driver::Settle();  // the toolkit hears of the state later than the screen shows it
    EXPECT_TRUE(program.Seams.Desktop.ForceForeground(number));
    Driver::WaitFor(Q("the window back"),
                    [&] { return IsInFront(program.Window()) && !program.Window().isMinimized(); });
}

TEST(Foreground, AWindowThatDoesNotExistCannotBeBroughtForward) {
    RealOffice office;
    RealProgram program(office);
    EXPECT_FALSE(program.Seams.Desktop.ForceForeground(0));
    EXPECT_FALSE(program.Seams.Desktop.ForceForeground(0x7ffffff0));
}
