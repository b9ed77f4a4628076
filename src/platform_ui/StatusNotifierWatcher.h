#pragma once

#include <QDBusAbstractInterface>

/// What the watcher of StatusNotifier hosts tells on the session bus (org.kde.StatusNotifierWatcher).
class StatusNotifierWatcher final : public QDBusAbstractInterface {
    Q_OBJECT
public:
    static constexpr const char* Name = "org.kde.StatusNotifierWatcher";

    explicit StatusNotifierWatcher(QObject* parent);

    [[nodiscard]] static QString ServiceName();
    [[nodiscard]] static QString ObjectPath();

Q_SIGNALS:
    void StatusNotifierHostRegistered();
    void StatusNotifierHostUnregistered();
};
