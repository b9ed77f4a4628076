#include "platform_ui/DBusNotices.h"

#include "core/Log.h"
#include "core/Product.h"
#include "platform_ui/SessionBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

#include <utility>

namespace {

const QString Service = QStringLiteral("org.freedesktop.Notifications");
const QString Path = QStringLiteral("/org/freedesktop/Notifications");
constexpr int ServersOwnTime = -1;
constexpr uchar UrgencyNormal = 1;
constexpr uchar UrgencyCritical = 2;

QDBusMessage Call(const QString& method) {
    return QDBusMessage::createMethodCall(Service, Path, Service, method);
}

}  // namespace

void DBusNotices::Show(const QString& title, const QString& text, BalloonIcon icon) {
    if (!HasSessionBus()) {
        TellOnce();
        return;
    }
    m_waiting.append({title, text, icon});
    if (m_capabilities == Capabilities::Unknown) {
        AskCapabilities();
    } else if (m_capabilities != Capabilities::Asked) {
        SendAll();
    }
}

void DBusNotices::AskCapabilities() {
    m_capabilities = Capabilities::Asked;
    const QDBusPendingCall call =
        QDBusConnection::sessionBus().asyncCall(Call(QStringLiteral("GetCapabilities")));
    auto* watcher = new QDBusPendingCallWatcher(call, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QStringList> reply = *watcher;
        watcher->deleteLater();
        if (reply.isError()) {
            // Somebody may show notifications later.
            m_capabilities = Capabilities::Unknown;
            m_waiting.clear();
            TellOnce();
            return;
        }
        m_capabilities = reply.value().contains(QStringLiteral("body-markup")) ? Capabilities::Markup
                                                                               : Capabilities::Plain;
        SendAll();
    });
}

void DBusNotices::SendAll() {
    for (const Notice& notice : std::exchange(m_waiting, {})) {
        Send(notice);
    }
}

void DBusNotices::Send(const Notice& notice) {
    QVariantMap hints;
    hints.insert(QStringLiteral("urgency"),
                 QVariant::fromValue(notice.Icon == BalloonIcon::Error ? UrgencyCritical : UrgencyNormal));
    hints.insert(QStringLiteral("desktop-entry"), QStringLiteral("larkspan"));
    const QString text = m_capabilities == Capabilities::Markup ? notice.Text.toHtmlEscaped() : notice.Text;
    QDBusMessage call = Call(QStringLiteral("Notify"));
    call.setArguments({Product::AppTitle, 0U, QStringLiteral("larkspan"), notice.Title, text, QStringList(),
                       hints, ServersOwnTime});
    QDBusConnection::sessionBus().asyncCall(call);
}

void DBusNotices::TellOnce() {
    if (!std::exchange(m_hasTold, true)) {
        m_log.Write(QStringLiteral("No notifications: the desktop has nobody who shows them"));
    }
}
