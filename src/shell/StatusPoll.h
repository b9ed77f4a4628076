#pragma once

#include <QObject>

#include <functional>

class BusyState;
class MessageTracker;
class QTimer;

/// The timer tmrCheckMsgStatus (5 s) and its work: the tracker's poll, while the program is idle. Off until
/// the first immediate send of a run.
class StatusPoll final : public QObject {
    Q_OBJECT
public:
    static constexpr int CheckInterval = 5000;  // ms

    /// `showAlert` is told when messages have failed.
    StatusPoll(const BusyState& busy, MessageTracker& tracker, std::function<void()> showAlert,
               QObject* parent = nullptr);

    /// A poll that is on goes on undisturbed.
    void Start();
    void Stop();
    /// One tick. Does nothing while a long operation runs; ignores failures.
    void Check();

private:
    const BusyState& m_busy;
    MessageTracker& m_tracker;
    std::function<void()> m_showAlert;
    QTimer* m_tmrCheckMsgStatus;
};
