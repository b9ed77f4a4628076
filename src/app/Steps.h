#pragma once

#include "core/Trap.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

/// A fixed sequence, written as a table: each step has a name, a failing step is passed over and the next one
/// runs.
struct NamedStep {
    QString Name;
    std::function<void()> Run;
};
using StepTable = std::vector<NamedStep>;

/// The names in order.
[[nodiscard]] inline QStringList StepNames(const StepTable& steps) {
    QStringList names;
    for (const NamedStep& step : steps) {
        names.append(step.Name);
    }
    return names;
}

/// Runs the steps in order; failures leave no trace.
inline void RunSteps(const StepTable& steps) {
    for (const NamedStep& step : steps) {
        Trap(step.Run);
    }
}

/// Runs the steps in order and hands each failure to `onFailure(const std::exception&)`.
template <typename OnFailure>
void RunSteps(const StepTable& steps, OnFailure&& onFailure) {
    for (const NamedStep& step : steps) {
        TrapTo(step.Run, onFailure);
    }
}
