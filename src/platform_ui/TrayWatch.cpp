#include "platform_ui/TrayWatch.h"

#include "platform_ui/SessionBus.h"
#include "platform_ui/StatusNotifierWatcher.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QTimer>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace {

const QString HostProperty = QStringLiteral("IsStatusNotifierHostRegistered");

template <typename Reply>
using ReplyPtr = std::unique_ptr<Reply, decltype(&std::free)>;

xcb_atom_t TraySelection(xcb_connection_t* connection) {
    int screen = 0;
    char* host = nullptr;
    int display = 0;
    if (xcb_parse_display(nullptr, &host, &display, &screen) != 0) {
        std::free(host);
    }
    const QByteArray name = "_NET_SYSTEM_TRAY_S" + QByteArray::number(screen);
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<uint16_t>(name.size()), name.constData());
    const ReplyPtr<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr),
                                                  &std::free);
    return reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
}

}  // namespace

TrayWatch::TrayWatch(QObject* parent) : QObject(parent), m_pollTimer(new QTimer(this)) {
    m_pollTimer->setInterval(PollInterval);
    connect(m_pollTimer, &QTimer::timeout, this, &TrayWatch::Look);
}

void TrayWatch::Start() {
    // Once: the toolkit gives a bus that it does not find at first up for as long as the process lives.
    if (!HasSessionBus()) {
        SetHost(true, false);
        return;
    }
    m_services = new QDBusServiceWatcher(StatusNotifierWatcher::ServiceName(), QDBusConnection::sessionBus(),
                                         QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(m_services, &QDBusServiceWatcher::serviceOwnerChanged, this, &TrayWatch::AskForHost);
    m_watcher = new StatusNotifierWatcher(this);
    connect(m_watcher, &StatusNotifierWatcher::StatusNotifierHostRegistered, this, &TrayWatch::AskForHost);
    connect(m_watcher, &StatusNotifierWatcher::StatusNotifierHostUnregistered, this, &TrayWatch::AskForHost);
    AskForHost();
}

void TrayWatch::Look() {
    // A question that is open keeps its time: asked anew at each look, a host that hangs would never be late.
    if (m_services != nullptr && !m_isAsking) {
        AskForHost();
    }
    Q_EMIT Changed();
}

void TrayWatch::Stop() {
    m_pollTimer->stop();
    delete m_services;
    m_services = nullptr;
    delete m_watcher;
    m_watcher = nullptr;
    ++m_question;  // an answer still under way is not heard
    m_isAsking = false;
}

void TrayWatch::SetPolling(bool on) {
    if (on && !m_pollTimer->isActive()) {
        m_pollTimer->start();
    } else if (!on) {
        m_pollTimer->stop();
    }
}

bool TrayWatch::HasEmbeddingTray() {
    if (qGuiApp == nullptr || QGuiApplication::platformName() != QStringLiteral("xcb")) {
        return false;
    }
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr || x11->connection() == nullptr) {
        return false;
    }
    const auto cookie = xcb_get_selection_owner(x11->connection(), TraySelection(x11->connection()));
    const ReplyPtr<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(x11->connection(), cookie, nullptr), &std::free);
    return reply != nullptr && reply->owner != XCB_WINDOW_NONE;
}

void TrayWatch::AskForHost() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        StatusNotifierWatcher::ServiceName(), StatusNotifierWatcher::ObjectPath(),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call.setArguments({StatusNotifierWatcher::ServiceName(), HostProperty});
    call.setAutoStartService(false);
    const auto pending = QDBusConnection::sessionBus().asyncCall(call, AnswerTimeout);
    auto* answer = new QDBusPendingCallWatcher(pending, this);
    const quint64 question = ++m_question;
    m_isAsking = true;
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, question] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        answer->deleteLater();
        if (question != m_question) {
            return;  // asked again meanwhile
        }
        m_isAsking = false;
        const bool isSilent = reply.isError() && reply.error().type() == QDBusError::NoReply;
        SetHost(!isSilent, reply.isValid() && reply.value().variant().toBool());
    });
}

void TrayWatch::SetHost(bool isKnown, bool isThere) {
    m_isHostKnown = isKnown;
    m_hasHost = isThere;
    Q_EMIT Changed();
}
