#pragma once

#include "platform_ui/Windows.h"

/// Windows through an X server and its window manager (EWMH), over a connection of its own.
class X11Windows final : public Windows {
public:
    /// The name of the client message's type by which the show request travels.
    static const QByteArray ShowAtomName;

    X11Windows();
    ~X11Windows() override;
    X11Windows(const X11Windows&) = delete;
    X11Windows& operator=(const X11Windows&) = delete;

    [[nodiscard]] bool IsReachable() const override { return m_server != nullptr; }
    [[nodiscard]] QList<WindowHandle> EnumWindows() const override;
    [[nodiscard]] QList<WindowHandle> Children(WindowHandle parent) const override;
    [[nodiscard]] QString ClassName(WindowHandle window) const override;
    [[nodiscard]] QString Title(WindowHandle window) const override;
    void SetClassName(WindowHandle window, const QString& name) override;
    bool SendShowRequest(WindowHandle window) override;
    bool ForceForeground(WindowHandle window) override;
    void SetAppWindowStyle(WindowHandle window, bool on) override;

private:
    struct Server;

    [[nodiscard]] bool IsWindow(WindowHandle window) const;
    /// Whether the window manager has it minimised; it may still be called the active one.
    [[nodiscard]] bool IsIconic(WindowHandle window) const;
    bool SetForegroundWindow(WindowHandle window);
    [[nodiscard]] QByteArray TextProperty(WindowHandle window, quint32 property) const;

    std::unique_ptr<Server> m_server;
};
