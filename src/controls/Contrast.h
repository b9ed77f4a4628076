#pragma once

class QColor;

/// Contrast of two colours by WCAG 2, from 1 to 21; the order does not matter.
[[nodiscard]] double Contrast(const QColor& one, const QColor& other);
