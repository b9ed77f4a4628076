#pragma once

#include "app/Steps.h"

#include <functional>

class Log;
struct PhonebookState;

/// The last step of the exit path: closes what is still open, in a fixed order, and ends the process.
class ExitPath {
public:
    /// `unloadForms` closes every form still open; `endProcess` ends the event loop.
    ExitPath(PhonebookState& phonebook, Log& log, std::function<void()> unloadForms,
             std::function<void()> endProcess);

    /// What ApplicationTerminate runs, in order.
    [[nodiscard]] StepTable Steps();
    /// A second call does nothing: there is one end.
    void ApplicationTerminate();

private:
    PhonebookState& m_phonebook;
    Log& m_log;
    std::function<void()> m_unloadForms;
    std::function<void()> m_endProcess;
    bool m_isTerminated = false;
};
