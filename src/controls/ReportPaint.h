#pragma once

#include <QColor>
#include <QRect>

class QPainter;

/// How a record's cells are drawn, on the screen and on paper.
namespace ReportPaint {

/// A colour that was chosen for light paper, as it reads on `ground`: on a dark one its lightness is turned
/// round; the paper's white becomes the ground itself.
[[nodiscard]] QColor TextColourOn(const QColor& ground, const QColor& colour);
[[nodiscard]] QColor BackColourOn(const QColor& ground, const QColor& colour);

/// One line of text, cut with an ellipsis where it does not fit. `alignment` places it in
/// `rect`.
void DrawLine(QPainter& painter, const QRect& rect, Qt::Alignment alignment, const QString& text,
              const QColor& colour);

}  // namespace ReportPaint
