#pragma once

#include <QString>

/// A tool tip that shows exactly these characters: a tool tip whose text looks like markup would be taken for
/// markup, and names and notes may look like anything.
[[nodiscard]] QString PlainToolTip(const QString& text);
