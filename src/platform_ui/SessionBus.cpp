#include "platform_ui/SessionBus.h"

#include <QDBusConnection>
#include <QFileInfo>
#include <QtGlobal>

namespace {

bool IsAddressKnown() {
    if (!qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")) {
        return true;
    }
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtime.isEmpty() && QFileInfo::exists(runtime + QStringLiteral("/bus"));
}

}  // namespace

bool HasSessionBus() {
    return IsAddressKnown() && QDBusConnection::sessionBus().isConnected();
}
