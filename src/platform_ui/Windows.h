#pragma once

#include <QList>
#include <QString>

#include <memory>

/// A window of the machine's window system, of any program; 0 stands for none. 32 bits, as X11 numbers them.
using WindowHandle = quint32;

/// Windows of this and of other programs: finding them, asking one of our own to show itself, bringing one to
/// the front. All of it ignores failures: a window may vanish between two calls.
class Windows {
public:
    /// The private request to a running copy to show itself: message number, its first parameter and its
    /// second.
    static constexpr quint32 ShowMessage = 1024;
    static constexpr quint32 ShowParameter = 160;
    static constexpr quint32 ShowValue = 128;

    virtual ~Windows() = default;
    /// False where other programs' windows cannot be reached (no X server).
    [[nodiscard]] virtual bool IsReachable() const = 0;
    /// The top-level windows of all programs, the one on top first.
    [[nodiscard]] virtual QList<WindowHandle> EnumWindows() const = 0;
    /// Direct children, the one on top first; empty for a window that is gone.
    [[nodiscard]] virtual QList<WindowHandle> Children(WindowHandle parent) const = 0;
    /// Class of a window, the second part of the X11 property WM_CLASS (ICCCM); empty for none.
    [[nodiscard]] virtual QString ClassName(WindowHandle window) const = 0;
    /// Title of a window, _NET_WM_NAME (EWMH) before WM_NAME; empty for none.
    [[nodiscard]] virtual QString Title(WindowHandle window) const = 0;
    /// Gives a window of our own the class name by which a second start finds it.
    virtual void SetClassName(WindowHandle window, const QString& name) = 0;
    /// Sends the private show request and asks for the foreground. False if there is no such window.
    virtual bool SendShowRequest(WindowHandle window) = 0;
    /// Brings a window to the front, out of the task bar if it is minimised. True if it is there already or
    /// if the window system took the request.
    virtual bool ForceForeground(WindowHandle window) = 0;
    /// Whether the window has an entry in the task bar.
    virtual void SetAppWindowStyle(WindowHandle window, bool on) = 0;
};

/// No window system that could be asked: Wayland, no server at all.
class NullWindows final : public Windows {
public:
    [[nodiscard]] bool IsReachable() const override { return false; }
    [[nodiscard]] QList<WindowHandle> EnumWindows() const override { return {}; }
    [[nodiscard]] QList<WindowHandle> Children(WindowHandle) const override { return {}; }
    [[nodiscard]] QString ClassName(WindowHandle) const override { return {}; }
    [[nodiscard]] QString Title(WindowHandle) const override { return {}; }
    void SetClassName(WindowHandle, const QString&) override {}
    bool SendShowRequest(WindowHandle) override { return false; }
    bool ForceForeground(WindowHandle) override { return false; }
    void SetAppWindowStyle(WindowHandle, bool) override {}
};

/// The windows of the screen that this process shows its own on; NullWindows where that is not an X server.
[[nodiscard]] std::unique_ptr<Windows> MakeWindows();

/// The first child of `parent` whose class name and text equal `className` and `caption`, both without regard
/// to case and up to 255 characters; an empty one matches everything. With `recursive` set a child that does
/// not match is searched in turn before the walk goes on; `recursive` stays set. 0 if nothing matched.
[[nodiscard]] WindowHandle FindChildWindow(const Windows& windows, WindowHandle parent,
                                           const QString& className, const QString& caption, bool& recursive);
