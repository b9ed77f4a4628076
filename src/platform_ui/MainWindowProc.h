#pragma once

#include "platform_ui/Windows.h"

#include <QAbstractNativeEventFilter>

#include <functional>

/// What the main window answers to the window system itself: the private show request of a second start, an
/// X11 client message of the type X11Windows::ShowAtomName. Installed on one window while the form lives;
/// everything that is not for it passes on.
class MainWindowProc final : public QAbstractNativeEventFilter {
public:
    /// `onShow` runs for each message 1024, whatever its parameters.
    explicit MainWindowProc(std::function<void()> onShow);
    ~MainWindowProc() override;

    /// From now on the show request to this window is heard. Does nothing if installed already, or for no
    /// window. A window that the server destroys is let go of by itself.
    void SubclassMainWindow(WindowHandle window);
    /// Does nothing unless installed on this window.
    void UnsubclassMainWindow(WindowHandle window);
    [[nodiscard]] bool IsInstalled() const { return m_window != 0; }

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

    /// The number (X11 atom) of the show request's message type; looked up at the server when the filter is
    /// installed, and 0 where there is no X server: then nothing is heard.
    quint32 ShowAtom = 0;

private:
    std::function<void()> m_onShow;
    WindowHandle m_window = 0;
};
