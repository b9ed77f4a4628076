#include "platform_ui/StatusNotifierWatcher.h"

#include <QDBusConnection>

StatusNotifierWatcher::StatusNotifierWatcher(QObject* parent)
    : QDBusAbstractInterface(ServiceName(), ObjectPath(), Name, QDBusConnection::sessionBus(), parent) {}

QString StatusNotifierWatcher::ServiceName() {
    return QString::fromLatin1(Name);
}

QString StatusNotifierWatcher::ObjectPath() {
    return QStringLiteral("/StatusNotifierWatcher");
}
