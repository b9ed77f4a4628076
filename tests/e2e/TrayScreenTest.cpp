#include "e2e/TrayScreen.h"

#include <QElapsedTimer>
#include <QWindow>

#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <cstring>

using namespace TrayScreen;

namespace {

void WaitForIcon(const Started& program) {
    Driver::WaitFor(Q("the icon in the tray"), [&] { return !program.TrayIcon().isEmpty(); });
}

/// The mouse on the tray's icon, and what it does there.
void AtIcon(const QString& icon, const QStringList& actions) {
    RealInput::Do(QStringList{Q("mousemove"), Q("--window"), icon, Q("11"), Q("11"), Q("sleep"), Q("0.2")} +
                  actions);
}

xcb_atom_t Atom(xcb_connection_t* connection, const QByteArray& name) {
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, static_cast<uint16_t>(name.size()), name.constData()),
        nullptr);
    const xcb_atom_t atom = reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
    std::free(reply);
    return atom;
}

/// Asks the window manager for it, as its own button in the title does.
void Maximise(WindowHandle window) {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    std::array<char, 32> bytes = {};
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = Atom(connection, QByteArrayLiteral("_NET_WM_STATE"));
    message.data.data32[0] = 1;  // add
    message.data.data32[1] = Atom(connection, QByteArrayLiteral("_NET_WM_STATE_MAXIMIZED_VERT"));
    message.data.data32[2] = Atom(connection, QByteArrayLiteral("_NET_WM_STATE_MAXIMIZED_HORZ"));
    message.data.data32[3] = 2;  // on behalf of the user
    std::memcpy(bytes.data(), &message, sizeof(message));
    xcb_send_event(connection, 0, xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY, bytes.data());
    // What a program asks for as it leaves may be lost.
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    xcb_disconnect(connection);
}

bool IsMaximised(const QString& window) {
    QByteArray errors;
    return RealInput::Print(Q("xprop"), {Q("-id"), window, Q("_NET_WM_STATE")}, errors)
        .contains(Q("MAXIMIZED_VERT"));
}

/// The program with an old tray, in which it has its icon.
class InEmbeddingTray : public ::testing::Test {
protected:
    InEmbeddingTray() {
        WaitForIcon(Program);
        Program.WaitForWindow();
        Window = Program.Window();
        Icon = Program.TrayIcon();
    }
    /// How many menus the program has open.
    [[nodiscard]] qsizetype Menus() const {
        const qsizetype others =
            (Program.Window().isEmpty() ? 0 : 1) + (Program.TrayIcon().isEmpty() ? 0 : 1);
        return Program.Windows().size() - others;
    }
    void WaitForMenu() const {
        Driver::WaitFor(Q("the menu"), [&] { return Menus() == 1; });
    }
    void CloseMenu() const {
        RealInput::Do({Q("key"), Q("Escape")});
        Driver::WaitFor(Q("the menu gone"), [&] { return Menus() == 0; });
    }
    void Hide() const { PressToTray(Program, Window); }
    void ShowByDoubleClick() const {
        RealInput::Repeat(
            Q("the window"),
            [this] {
                AtIcon(Icon, {Q("sleep"), Q("0.6"), Q("click"), Q("--repeat"), Q("2"), Q("--delay"), Q("80"),
                              Q("1")});
            },
            [this] { return !Program.Window().isEmpty(); });
        Program.WaitForWindow();
    }

    EmbeddingTray Tray;
    RealOffice Office;
    Started Program{Office};
    QString Window;
    QString Icon;
};

}  // namespace

TEST_F(InEmbeddingTray, ADoubleClickOnTheIconBringsTheHiddenWindowBackToItsPlace) {
    const QString place = MoveAway(Window);
    Hide();
    AtIcon(Icon, {Q("click"), Q("1"), Q("sleep"), Q("1.2")});
    EXPECT_TRUE(Program.Window().isEmpty()) << "a single click does nothing here";
    ShowByDoubleClick();
    WaitForPlace(Window, place);
    Hide();
    ShowByDoubleClick();
    WaitForPlace(Window, place);
}

TEST_F(InEmbeddingTray, ASecondStartAndTheMessageAloneBringTheHiddenWindowBackToItsPlace) {
    const QString place = MoveAway(Window);
    Hide();
    StartAgain(Office);
    Program.WaitForWindow();
    WaitForPlace(Window, place);
    Hide();
    EXPECT_TRUE(MakeWindows()->SendShowRequest(Window.toUInt()));
    Program.WaitForWindow();
    WaitForPlace(Window, place);
}

TEST_F(InEmbeddingTray, TheMenuComesWhenTheRightButtonIsReleasedAndNotBefore) {
    AtIcon(Icon, {Q("mousedown"), Q("3"), Q("sleep"), Q("0.7")});
    EXPECT_EQ(Menus(), 0) << "at the press";
    RealInput::Do({Q("mouseup"), Q("3")});
    WaitForMenu();
}

TEST_F(InEmbeddingTray, AReleaseBesideTheIconBringsNoMenu) {
    AtIcon(Icon, {Q("mousedown"), Q("3"), Q("mousemove"), Q("600"), Q("700"), Q("sleep"), Q("0.2"),
                  Q("mouseup"), Q("3"), Q("sleep"), Q("0.7")});
    EXPECT_EQ(Menus(), 0);
}

TEST_F(InEmbeddingTray, ASecondRightClickAtOnceBringsTheMenuAgain) {
    AtIcon(Icon, {Q("click"), Q("3")});
    WaitForMenu();
    CloseMenu();
    // Two clicks so near each other that they make a double click.
    RealInput::Repeat(
        Q("the menu"),
        [this] {
            if (Menus() > 0) {
                CloseMenu();
            }
            AtIcon(Icon, {Q("sleep"), Q("0.6"), Q("click"), Q("3"), Q("sleep"), Q("0.1"), Q("key"),
                          Q("Escape"), Q("sleep"), Q("0.1"), Q("click"), Q("3")});
        },
        [this] { return Menus() == 1; });
}

TEST_F(InEmbeddingTray, TheRightButtonChoosesNothingInTheMenuAndTheLeftOneDoes) {
    Hide();
    AtIcon(Icon, {Q("click"), Q("3")});
    WaitForMenu();
    // The menu lies under the pointer, with Show at its top.
    AtIcon(Icon, {Q("mousemove_relative"), Q("--"), Q("-6"), Q("8"), Q("sleep"), Q("0.7"), Q("click"), Q("3"),
                  Q("sleep"), Q("0.7")});
    EXPECT_EQ(Menus(), 1);
    EXPECT_TRUE(Program.Window().isEmpty()) << "the right button has chosen Show";
    RealInput::Do({Q("click"), Q("1")});
    Program.WaitForWindow();
    AtIcon(Icon, {Q("sleep"), Q("0.6"), Q("click"), Q("3")});
    WaitForMenu();
    AtIcon(Icon, {Q("mousemove_relative"), Q("--"), Q("-6"), Q("8"), Q("sleep"), Q("0.7"), Q("click"), Q("3"),
                  Q("sleep"), Q("0.7")});
    EXPECT_FALSE(Program.HasEnded()) << "the right button has chosen Close";
    RealInput::Do({Q("click"), Q("1")});
    ExpectCleanEnd(Program);
}

TEST_F(InEmbeddingTray, TheEntriesOfItsMenuShowTheWindowAndCloseTheProgram) {
    Hide();
    AtIcon(Icon, {Q("click"), Q("3")});
    WaitForMenu();
    RealInput::Do({Q("key"), Q("Down"), Q("Return")});
    Program.WaitForWindow();
    AtIcon(Icon, {Q("click"), Q("3")});
    WaitForMenu();
    RealInput::Do({Q("key"), Q("Down"), Q("Return")});
    ExpectCleanEnd(Program);
}

TEST_F(InEmbeddingTray, ClosedFromTheMenuWhileHiddenTheProgramEnds) {
    Hide();
    AtIcon(Icon, {Q("click"), Q("3")});
    WaitForMenu();
    RealInput::Do({Q("key"), Q("Up"), Q("Return")});
    ExpectCleanEnd(Program);
}

TEST_F(InEmbeddingTray, ClosedFromTheMenuWhileADialogIsOpenTheProgramEnds) {
    OpenAbout(Program);
    const qsizetype before = Menus();
    AtIcon(Icon, {Q("click"), Q("3")});
    Driver::WaitFor(Q("the menu"), [&] { return Menus() == before + 1; });
    RealInput::Do({Q("key"), Q("Down"), Q("Return")});
    ExpectCleanEnd(Program);
}

TEST_F(InEmbeddingTray, AButtonThatWasDownWhenTheTrayDiedBringsNoMenuLater) {
    AtIcon(Icon, {Q("mousedown"), Q("3"), Q("sleep"), Q("0.3")});
    Tray.Die();
    Driver::WaitFor(Q("the icon gone"), [&] { return Program.TrayIcon().isEmpty(); });
    RealInput::Do({Q("mouseup"), Q("3"), Q("sleep"), Q("0.5")});
    EXPECT_EQ(Menus(), 0);
    RealInput::Do({Q("mousemove"), Q("--window"), Window, Q("4"), Q("4"), Q("sleep"), Q("0.2"), Q("click"),
                   Q("3"), Q("sleep"), Q("0.7")});
    EXPECT_EQ(Menus(), 0);
}

TEST_F(InEmbeddingTray, WhenItDiesTheHiddenWindowComesBackMinimisedAndTheNextTrayTakesTheIcon) {
    const QString place = MoveAway(Window);
    Hide();
    Tray.Die();
    WaitForState(Window, "Iconic");
    StartAgain(Office);
    Program.WaitForWindow();
    WaitForPlace(Window, place);
    const EmbeddingTray next;
    WaitForIcon(Program);
    Hide();
    StartAgain(Office);
    Program.WaitForWindow();
}

TEST(EmbeddingTray, ThatComesLateTakesTheIcon) {
    const RealOffice office;
    const Started program(office);
    program.WaitForWindow();
    ASSERT_TRUE(program.TrayIcon().isEmpty());
    const EmbeddingTray tray;
    WaitForIcon(program);
    const QString window = program.Window();
    PressToTray(program, window);
}

TEST_F(InEmbeddingTray, AMaximisedWindowComesBackMaximisedAtADoubleClickAndAtASecondStart) {
    Maximise(Window.toUInt());
    Driver::WaitFor(Q("the window maximised"), [&] { return IsMaximised(Window); });
    const QString place = PlaceOf(Window);
    Hide();
    ShowByDoubleClick();
    Driver::WaitFor(Q("the window maximised again"), [&] { return IsMaximised(Window); });
    WaitForPlace(Window, place);
    Hide();
    StartAgain(Office);
    Program.WaitForWindow();
    Driver::WaitFor(Q("the window maximised again"), [&] { return IsMaximised(Window); });
    WaitForPlace(Window, place);
}

TEST(NoTray, TheWindowIsMinimisedAndASecondStartBringsItBack) {
    const RealOffice office;
    const Started program(office);
    program.WaitForWindow();
    const QString window = program.Window();
    PressToTray(program, window, "Iconic");
    StartAgain(office);
    program.WaitForWindow();
}

TEST(NoTray, TheWindowThatTheTaskBarBringsBackIsNotInTheTray) {
    const RealOffice office;
    RealProgram program(office);
    const QString window = QString::number(program.Window().winId());
    program.Window().ToTray(true);
    // The window counts as minimised before the window manager has heard of it, and a toolkit that has not
    // heard of that when the window comes back never hears of either.
    Driver::WaitFor(Q("the minimised window"), [&] {
        return StateOf(window) == Q("Iconic") && !program.Window().windowHandle()->isExposed();
    });
    ASSERT_TRUE(program.Window().IsInTray());
    RealInput::Do({Q("windowactivate"), window});
    Driver::WaitFor(Q("the window out of the tray"), [&] { return !program.Window().IsInTray(); });
}

TEST(NoTray, WithoutASessionBusTheProgramStartsWithoutWaiting) {
    const RealOffice office;
    QElapsedTimer time;
    time.start();
    const Started program(office, office.Root.filePath(Q("nobody")).prepend(Q("unix:path=")));
    program.WaitForWindow();
    EXPECT_LT(time.elapsed(), 20000);  // a call that nobody answers is given up after 25 s
}
