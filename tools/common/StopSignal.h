#pragma once

#include <csignal>

/// Turns SIGTERM, SIGINT and SIGHUP into a question that a long work asks between two steps. Once the answer
/// was yes the signals have their usual effect again, so that a second Ctrl+C ends a program that takes too
/// long. Made before any thread is started.
class StopSignal {
public:
    StopSignal();
    ~StopSignal();
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;

    /// Stays true once a signal came.
    [[nodiscard]] bool IsStopped();

private:
    sigset_t m_before;
    int m_descriptor = -1;
    bool m_isStopped = false;
};
