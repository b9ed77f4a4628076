#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>

class QLocalServer;

/// The platform's report whether a copy of this program runs already for this user in this session, and a way
/// to ask that copy to show itself which needs no window system.
class Instance {
public:
    virtual ~Instance() = default;
    /// Becomes the one running copy, or reports that there is one. The claim ends with the process, however
    /// it ends, if Release did not end it before. Where the machine lets nobody claim anything (no writable
    /// folder), there is no previous instance.
    [[nodiscard]] virtual bool IsPreviousInstance() = 0;
    /// Asks the running copy to show itself; it may be busy and act on it later. False if it could not be
    /// told.
    virtual bool RequestShow() = 0;
    /// Gives the claim back: this copy ends now, and the next start is the first one.
    virtual void Release() = 0;
    /// What the one running copy does when it is asked.
    virtual void SetOnShow(std::function<void()> onShow) = 0;
};

/// One copy per user and session: a file that the running copy holds locked, and a local socket beside it.
/// The lock is the kernel's and goes with the process, so a crash leaves nothing that has to be cleaned up;
/// of two starts at the same moment exactly one gets it. Both stay away from cleaners: their sticky bit keeps
/// those of runtime folders off (XDG Base Directory), and they are touched every hour for those of /tmp.
class LocalInstance final : public QObject, public Instance {
    Q_OBJECT
public:
    /// `session` tells sessions of one user apart, as SessionName() does; `folder` is the user's own.
    LocalInstance(const QString& folder, const QString& session);
    ~LocalInstance() override;

    [[nodiscard]] bool IsPreviousInstance() override;
    bool RequestShow() override;
    void Release() override;
    void SetOnShow(std::function<void()> onShow) override { m_onShow = std::move(onShow); }

    /// Lock and socket count as used just now; runs by itself every hour.
    void KeepFresh();

    /// $XDG_RUNTIME_DIR, or a folder of this user's own in the temporary folder, made with mode 0700. Empty
    /// if neither can be had.
    [[nodiscard]] static QString RuntimeFolder();
    /// The display that this session shows its windows on, without the number of a screen, in letters that a
    /// file name may have.
    [[nodiscard]] static QString SessionName();

private:
    static constexpr std::chrono::hours RefreshInterval{1};

    void Listen();
    void AnswerRequests();

    QString m_lockPath;
    QString m_socketPath;
    int m_lock = -1;
    std::unique_ptr<QLocalServer> m_server;
    std::function<void()> m_onShow;
    QTimer m_refresh;
};
