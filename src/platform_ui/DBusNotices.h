#pragma once

#include "platform/Notices.h"

#include <QList>
#include <QObject>

class Log;

/// The desktop's notifications over the session bus (freedesktop.org, interface
/// org.freedesktop.Notifications 1.2). Never waits for an answer of whoever shows them.
class DBusNotices final : public QObject, public DesktopNotices {
    Q_OBJECT
public:
    /// The log is told once when nobody shows notifications.
    explicit DBusNotices(Log& log) : m_log(log) {}

    void Show(const QString& title, const QString& text, BalloonIcon icon) override;

private:
    struct Notice {
        QString Title;
        QString Text;
        BalloonIcon Icon;
    };
    /// What the desktop can show decides how a text is written: it is asked once, and notices wait for that.
    enum class Capabilities { Unknown, Asked, Plain, Markup };

    void AskCapabilities();
    void SendAll();
    void Send(const Notice& notice);
    void TellOnce();

    Log& m_log;
    QList<Notice> m_waiting;
    Capabilities m_capabilities = Capabilities::Unknown;
    bool m_hasTold = false;
};
