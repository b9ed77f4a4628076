#pragma once

#include <QObject>
#include <QTimer>

#include <csignal>

#include <array>
#include <functional>

/// Turns SIGTERM, SIGINT and SIGHUP (the end of the session, kill, Ctrl+C) into a call from the event loop.
/// The first one is answered by `onEnd`, again and again every 200 ms: what comes in its way (a send must not
/// be broken off) is over some time. The second one ends the process at once. A signal that is ignored when
/// the object is made (nohup) stays so.
class EndSignals final : public QObject {
    Q_OBJECT
public:
    /// There is one object at a time.
    explicit EndSignals(std::function<void()> onEnd);
    /// What the signals did before, they do again.
    ~EndSignals() override;
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

private:
    static constexpr std::array Numbers = {SIGTERM, SIGINT, SIGHUP};

    void Take();

    std::function<void()> m_onEnd;
    std::array<struct sigaction, Numbers.size()> m_before{};
    std::array<int, 2> m_pipe = {-1, -1};
    QTimer m_again;
};
