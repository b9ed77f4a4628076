#pragma once

#include "store/office/OfficeReport.h"

#include <functional>
#include <optional>

namespace engine {
class ConnectionFactory;
}

/// Looks a data folder over, without changing anything in it.
class OfficeCheck {
public:
    /// Names what is being looked at and how far that is; false stops the check.
    using Progress = std::function<bool(const QString& step, int done, int total)>;

    explicit OfficeCheck(engine::ConnectionFactory& engines) : m_engines(engines) {}

    /// The report; nothing if `progress` stopped it. Never throws for what a file holds: that is what the
    /// report tells.
    [[nodiscard]] std::optional<OfficeReport> Run(const QString& folder, const Progress& progress = {});

private:
    engine::ConnectionFactory& m_engines;
};
