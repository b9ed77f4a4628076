#pragma once

#include <QtGlobal>

/// The long operation that runs. The timers of the main window do their work only while it is Idle.
/// Names and numbers are fixed: other programs' logs and our own rules speak of the numbers.
namespace Busy {
inline constexpr qint32 Idle = 0;
inline constexpr qint32 SetupWizard = 1;
inline constexpr qint32 StartingUp = 2;
inline constexpr qint32 ScheduleDialog = 3;
inline constexpr qint32 Sending = 4;
inline constexpr qint32 HistoryOpen = 6;
}  // namespace Busy

/// Holds `AppBusyState`. Written by the entry routine, by BusyScope, and by a send whose question or choice
/// of the time is over (from ScheduleDialog on to Sending, inside the BusyScope of its press).
class BusyState {
public:
    [[nodiscard]] qint32 Value() const { return m_value; }
    [[nodiscard]] bool IsIdle() const { return m_value == Busy::Idle; }
    void SetAppBusyState(qint32 value) { m_value = value; }

private:
    qint32 m_value = Busy::Idle;
};

/// Sets a state for its lifetime and goes back to Idle at its end, as every long operation ends, also after
/// an exception.
class BusyScope {
public:
    BusyScope(BusyState& state, qint32 value) : m_state(state) { m_state.SetAppBusyState(value); }
    ~BusyScope() { m_state.SetAppBusyState(Busy::Idle); }
    BusyScope(const BusyScope&) = delete;
    BusyScope& operator=(const BusyScope&) = delete;

private:
    BusyState& m_state;
};
