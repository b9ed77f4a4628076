#include "e2e/TrayScreen.h"

using namespace TrayScreen;

namespace {

void WaitForItem(HostTray& host) {
    Driver::WaitFor(Q("the item at the host"), [&] { return host.Ask(Q("items")) == Q("1"); });
}

/// The program with a panel that draws its icon and its menu.
class InHostTray : public ::testing::Test {
protected:
    InHostTray() {
        WaitForItem(Host);
        Program.WaitForWindow();
        Window = Program.Window();
    }
    void Hide() const { PressToTray(Program, Window); }
    void WaitForEntries(const QString& entries) {
        Driver::WaitFor(entries, [&] { return Host.Ask(Q("menu")) == entries; });
    }
    void Choose(const QString& entry) {
        Driver::WaitFor(entry, [&] { return Host.Ask(Q("choose ") + entry) == Q("done"); });
    }
    void WaitUntilMinimised() const { WaitForState(Window, "Iconic"); }

    SessionBus Bus;
    HostTray Host{Bus};
    RealOffice Office;
    Started Program{Office, Bus.Address};
    QString Window;
};

}  // namespace

TEST_F(InHostTray, AClickBringsTheHiddenWindowBackToItsPlaceAndTheMenuFollowsTheState) {
    WaitForEntries(CloseEntry);
    const QString place = MoveAway(Window);
    Hide();
    WaitForEntries(ShowEntry + u'|' + CloseEntry);
    EXPECT_EQ(Host.Ask(Q("activate")), Q("done"));
    Program.WaitForWindow();
    WaitForPlace(Window, place);
    WaitForEntries(CloseEntry);
}

TEST_F(InHostTray, TheEntriesOfItsMenuShowAndClose) {
    Hide();
    Choose(ShowEntry);
    Program.WaitForWindow();
    Hide();
    Choose(CloseEntry);
    ExpectCleanEnd(Program);
}

TEST_F(InHostTray, CloseEndsTheProgramWhileADialogIsOpen) {
    OpenAbout(Program);
    Choose(CloseEntry);
    ExpectCleanEnd(Program);
}

TEST_F(InHostTray, AHostThatDrawsNoMenuGetsTheProgramsOwn) {
    const qsizetype before = Program.Windows().size();
    EXPECT_EQ(Host.Ask(Q("contextmenu")), Q("done"));
    Driver::WaitFor(Q("the menu"), [&] { return Program.Windows().size() == before + 1; });
    RealInput::Do({Q("key"), Q("Down"), Q("Return")});
    ExpectCleanEnd(Program);
}

TEST_F(InHostTray, ItHasTheProductsNameAsItsTip) {
    EXPECT_EQ(Host.Ask(Q("tip")), Q("Larkspan Messenger"));
}

TEST_F(InHostTray, ASecondStartBringsTheWindowOutOfIt) {
    Hide();
    StartAgain(Office, Bus.Address);
    Program.WaitForWindow();
    WaitForEntries(CloseEntry);
}

TEST_F(InHostTray, AHostThatLeavesGivesTheHiddenWindowBackMinimisedAndTakesItAgainWhenItComes) {
    Hide();
    EXPECT_EQ(Host.Ask(Q("leave")), Q("done"));
    WaitUntilMinimised();
    StartAgain(Office, Bus.Address);
    Program.WaitForWindow();
    PressToTray(Program, Window, "Iconic");  // nobody shows the icon
    StartAgain(Office, Bus.Address);
    Program.WaitForWindow();
    EXPECT_EQ(Host.Ask(Q("come")), Q("done"));
    WaitForItem(Host);
    Hide();
}

TEST_F(InHostTray, AHostThatHangsGivesTheHiddenWindowBackMinimised) {
    Hide();
    Host.Freeze();
    WaitUntilMinimised();
}

TEST_F(InHostTray, WhenTheSessionBusDiesTheHiddenWindowComesBackMinimised) {
    Hide();
    Bus.Die();
    WaitUntilMinimised();
    StartAgain(Office);
    Program.WaitForWindow();
}

TEST(HostTray, WhenItDiesTheHiddenWindowComesBackMinimisedAndTheNextHostGetsTheItem) {
    const SessionBus bus;
    auto host = std::make_unique<HostTray>(bus);
    const RealOffice office;
    const Started program(office, bus.Address);
    WaitForItem(*host);
    program.WaitForWindow();
    const QString window = program.Window();
    PressToTray(program, window);
    host->Die();
    WaitForState(window, "Iconic");
    host = std::make_unique<HostTray>(bus);
    WaitForItem(*host);
    StartAgain(office, bus.Address);
    program.WaitForWindow();
}

TEST(HostTray, ThatComesLateGetsTheItem) {
    const SessionBus bus;
    const RealOffice office;
    const Started program(office, bus.Address);
    program.WaitForWindow();
    HostTray host(bus);
    WaitForItem(host);
    const QString window = program.Window();
    PressToTray(program, window);
}
