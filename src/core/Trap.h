#pragma once

#include <exception>
#include <stdexcept>
#include <utility>

/// Runs one step of a procedure that ignores failures: an exception is trapped and the next step runs. True
/// if the step did not fail.
template <typename Step>
bool Trap(Step&& step) noexcept {
    try {
        std::forward<Step>(step)();
        return true;
    } catch (...) {
        return false;
    }
}

/// The same, and hands the failure to `onFailure(const std::exception&)`, which must not throw.
template <typename Step, typename OnFailure>
bool TrapTo(Step&& step, OnFailure&& onFailure) noexcept {
    try {
        std::forward<Step>(step)();
        return true;
    } catch (const std::exception& failure) {
        std::forward<OnFailure>(onFailure)(failure);
        return false;
    } catch (...) {
        std::forward<OnFailure>(onFailure)(std::runtime_error("unknown"));
        return false;
    }
}
