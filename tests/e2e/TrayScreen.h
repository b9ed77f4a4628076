#pragma once

#include "e2e/Desktop.h"

/// Words that the tests of the tray share: what the window manager says of a window, the mouse on the icon,
/// and what is waited for.
namespace TrayScreen {

inline QString Q(const char* text) {
    return QString::fromLatin1(text);
}

const QString ShowEntry = QStringLiteral("Show Larkspan Messenger");
const QString CloseEntry = QStringLiteral("Close Larkspan Messenger");

/// "Normal" or "Iconic" as the window manager has it, "hidden" for a window that it has nothing to do with;
/// empty if there is no such window.
inline QString StateOf(const QString& window) {
    QByteArray errors;
    const QString said = RealInput::Print(Q("xprop"), {Q("-id"), window, Q("WM_STATE")}, errors);
    for (const char* state : {"Normal", "Iconic"}) {
        if (said.contains(Q("window state: ") + Q(state))) {
            return Q(state);
        }
    }
    return said.contains(Q("not found")) || said.contains(Q("Withdrawn")) ? Q("hidden") : QString();
}

/// The window manager hears of it a moment after the window has gone from the screen.
inline void WaitForState(const QString& window, const char* state) {
    Driver::WaitFor(Q("the window ") + Q(state), [&] { return StateOf(window) == Q(state); });
}

/// Position and size, as a text to compare.
inline QString PlaceOf(const QString& window) {
    return RealInput::Output({Q("getwindowgeometry"), window});
}

/// By the button's shortcut; waits until the window has gone, and the window manager has it in this state.
inline void PressToTray(const Started& program, const QString& window, const char* state = "hidden") {
    program.WaitForWindow();
    RealInput::Do({Q("key"), Q("alt+t")});
    Driver::WaitFor(Q("the window put away"), [&] { return program.Window().isEmpty(); });
    WaitForState(window, state);
}

inline void WaitForEnd(const Started& program) {
    Driver::WaitFor(Q("the end of the program"), [&] { return program.HasEnded(); });
}

inline void ExpectCleanEnd(Started& program) {
    WaitForEnd(program);
    EXPECT_EQ(program.Process().exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.Process().exitCode(), 0);
}

/// A second start of the program, which ends at once.
inline void StartAgain(const RealOffice& office, const QString& bus = {}) {
    Started second(office, bus);
    ExpectCleanEnd(second);
}

/// A dialog of the program in front.
inline void OpenAbout(const Started& program) {
    program.WaitForWindow();
    RealInput::Do({Q("key"), Q("alt+a")});
    Driver::WaitFor(Q("the dialog"), [&] {
        return RealInput::Output({Q("getactivewindow"), Q("getwindowname")}).endsWith(Q("About"));
    });
}

/// A place that no window manager finds by itself, and that the window shows in.
inline QString MoveAway(const QString& window) {
    RealInput::Do({Q("windowsize"), Q("--sync"), window, Q("900"), Q("600")});
    const QString before = PlaceOf(window);
    RealInput::Do({Q("windowmove"), window, Q("223"), Q("99")});
    Driver::WaitFor(Q("the window moved"), [&] { return PlaceOf(window) != before; });
    return PlaceOf(window);
}

inline void WaitForPlace(const QString& window, const QString& place) {
    Driver::WaitFor(Q("the window at ") + place + Q(", where it was"),
                    [&] { return PlaceOf(window) == place; });
}

}  // namespace TrayScreen
