#pragma once

#include <QtGlobal>

class Clock;

namespace engine::sqlite {

/// The engine's own patience with locks: pauses of 1 to 10 ms, drawn by chance so that no client starves,
/// until 5 s have gone by since the statement began.
class LockWait {
public:
    static constexpr int MaxWait = 5000;  // ms for one statement
    static constexpr int MinPause = 1;    // ms
    static constexpr int MaxPause = 10;   // ms

    explicit LockWait(Clock& clock) : m_clock(clock) {}

    /// A new statement, or an opening, begins.
    void Start();
    /// Pauses once. False, without a pause, when the time is up.
    [[nodiscard]] bool Pause();

private:
    Clock& m_clock;
    qint64 m_started = 0;
};

}  // namespace engine::sqlite
