#include "platform_ui/MainWindowProc.h"

#include "platform_ui/X11Windows.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <utility>

namespace {

quint32 AskShowAtom() {
    if (qGuiApp == nullptr || QGuiApplication::platformName() != QStringLiteral("xcb")) {
        return 0;
    }
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr || x11->connection() == nullptr) {
        return 0;
    }
    const QByteArray& name = X11Windows::ShowAtomName;
    const auto cookie =
        xcb_intern_atom(x11->connection(), 0, static_cast<uint16_t>(name.size()), name.constData());
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(x11->connection(), cookie, nullptr), &std::free);
    return reply == nullptr ? 0 : reply->atom;
}

}  // namespace

MainWindowProc::MainWindowProc(std::function<void()> onShow) : m_onShow(std::move(onShow)) {}

MainWindowProc::~MainWindowProc() {
    UnsubclassMainWindow(m_window);
}

void MainWindowProc::SubclassMainWindow(WindowHandle window) {
    if (IsInstalled() || window == 0) {
        return;
    }
    m_window = window;
    ShowAtom = AskShowAtom();
    QCoreApplication::instance()->installNativeEventFilter(this);
}

void MainWindowProc::UnsubclassMainWindow(WindowHandle window) {
    if (!IsInstalled() || window != m_window) {
        return;
    }
    m_window = 0;
    if (QCoreApplication::instance() != nullptr) {
        QCoreApplication::instance()->removeNativeEventFilter(this);
    }
}

bool MainWindowProc::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) {
    if (!IsInstalled() || eventType != QByteArrayLiteral("xcb_generic_event_t")) {
        return false;
    }
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const int type = event->response_type & 0x7F;  // the highest bit marks an event that a program sent
    if (type == XCB_CLIENT_MESSAGE) {
        const auto* request = static_cast<const xcb_client_message_event_t*>(message);
        if (request->window == m_window && ShowAtom != 0 && request->type == ShowAtom &&
            request->data.data32[0] == Windows::ShowMessage) {
            m_onShow();
            if (result != nullptr) {
                *result = 0;
            }
            return true;
        }
    } else if (type == XCB_DESTROY_NOTIFY &&
               static_cast<const xcb_destroy_notify_event_t*>(message)->window == m_window) {
        UnsubclassMainWindow(m_window);
    }
    return false;
}
