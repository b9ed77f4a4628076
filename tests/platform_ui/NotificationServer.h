#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

/// Whoever shows the desktop's notifications, without showing any: keeps what it was asked.
class NotificationServer final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
public:
    struct Notice {
        QString Application;
        QString Icon;
        QString Title;
        QString Text;
        QVariantMap Hints;
        int Time = 0;
    };

    /// Takes the service's name on a bus. With `isHolding` questions for what it can do wait for Answer.
    NotificationServer(const QString& bus, QStringList capabilities, bool isHolding = false)
        : m_bus(QDBusConnection::connectToBus(bus, NewName())),
          m_capabilities(std::move(capabilities)),
          m_isHolding(isHolding) {
        IsThere = m_bus.registerObject(QStringLiteral("/org/freedesktop/Notifications"), this,
                                       QDBusConnection::ExportScriptableSlots) &&
                  m_bus.registerService(QStringLiteral("org.freedesktop.Notifications"));
    }
    ~NotificationServer() override { QDBusConnection::disconnectFromBus(m_bus.name()); }
    NotificationServer(const NotificationServer&) = delete;
    NotificationServer& operator=(const NotificationServer&) = delete;

    bool IsThere = false;
    int Questions = 0;
    QList<Notice> Shown;

    /// Answers the questions that are held.
    void Answer() {
        m_isHolding = false;
        for (const QDBusMessage& question : std::exchange(m_held, {})) {
            m_bus.send(question.createReply(QVariant(m_capabilities)));
        }
    }

public Q_SLOTS:
    Q_SCRIPTABLE QStringList GetCapabilities() {
        ++Questions;
        if (m_isHolding) {
            setDelayedReply(true);
            m_held.append(message());
        }
        return m_capabilities;
    }
    // The names and the order are the interface's.
    Q_SCRIPTABLE uint Notify(const QString& application, uint, const QString& icon, const QString& title,
                             const QString& text, const QStringList&, const QVariantMap& hints, int time) {
        Shown.append({application, icon, title, text, hints, time});
        return static_cast<uint>(Shown.size());
    }

private:
    static QString NewName() {
        static int count = 0;
        return QStringLiteral("notification server %1").arg(++count);
    }

    QDBusConnection m_bus;
    QStringList m_capabilities;
    bool m_isHolding;
    QList<QDBusMessage> m_held;
};
