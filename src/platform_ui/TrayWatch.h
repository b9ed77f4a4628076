#pragma once

#include <QObject>

class QDBusServiceWatcher;
class QTimer;
class StatusNotifierWatcher;

/// Tells whether there is a notification area, and of which kind, without waiting for anybody: an area that
/// programs embed a window in (the X selection _NET_SYSTEM_TRAY_Sn), or a host that draws items for them
/// (org.kde.StatusNotifierWatcher on the session bus).
class TrayWatch final : public QObject {
    Q_OBJECT
public:
    static constexpr int PollInterval = 2000;   // ms
    static constexpr int AnswerTimeout = 2000;  // ms

    explicit TrayWatch(QObject* parent = nullptr);

    /// Begins to look; Changed comes as soon as it is known what there is.
    void Start();
    void Stop();
    /// A host tells when it comes or goes. What tells nothing is looked for every 2 s while this is on: an
    /// embedding area, and a host that hangs, which has 2 s to answer.
    void SetPolling(bool on);

    /// Asks the X server now; false where there is none.
    [[nodiscard]] static bool HasEmbeddingTray();
    [[nodiscard]] bool HasHost() const { return m_hasHost; }
    /// False until the session bus has said whether there is a host.
    [[nodiscard]] bool IsHostKnown() const { return m_isHostKnown; }

Q_SIGNALS:
    /// Something may have come or gone.
    void Changed();

private:
    void Look();
    void AskForHost();
    void SetHost(bool isKnown, bool isThere);

    QTimer* m_pollTimer;
    QDBusServiceWatcher* m_services = nullptr;
    StatusNotifierWatcher* m_watcher = nullptr;
    quint64 m_question = 0;
    bool m_isAsking = false;
    bool m_isHostKnown = false;
    bool m_hasHost = false;
};
