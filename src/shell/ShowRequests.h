#pragma once

#include "platform_ui/MainWindowProc.h"

#include <functional>

class QWidget;
struct Machine;

/// Brings the main window to the front, and listens for a second start of the program that asks for it: a
/// message to the window, or a word on the local socket where windows cannot be reached.
class ShowRequests {
public:
    ShowRequests(QWidget& form, const Machine& machine, std::function<void()> onShow);
    ~ShowRequests();
    ShowRequests(const ShowRequests&) = delete;
    ShowRequests& operator=(const ShowRequests&) = delete;

    /// The window gets an entry in the task bar.
    void SetAppWindowStyle();
    /// From now on the window is found by its class name, and requests are heard.
    void SubclassMainWindow();
    /// Requests are no longer heard.
    void UnsubclassMainWindow();
    /// Another start of the program does not find this one any more: it opens a window of its own.
    void ReleaseInstance();
    /// Old versions of the program left a file beside the one with the window's handle.
    void DeleteInstanceMarker();
    /// Out of the task bar if it is minimised there, and in front of all others. A window that is in front
    /// stays as it is. True if it is there already, or if the window system took the request.
    bool ForceForeground();

private:
    [[nodiscard]] WindowHandle Handle() const;

    QWidget& m_form;
    const Machine& m_machine;
    std::function<void()> m_onShow;
    MainWindowProc m_proc;
};
