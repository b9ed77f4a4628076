#include "controls/TabPaint.h"

namespace {

constexpr double Rounding = 4;

}  // namespace

void TabPaint::Draw(QPainter& painter, const QPalette& colours) const {
    const QRectF body = QRectF(Place).adjusted(0.5, 0.5, -0.5, -0.5);
    QColor fill = IsStrip ? colours.color(QPalette::Button) : QColor(Qt::transparent);
    const bool isFilled = IsSelected && !IsQuiet;
    if (isFilled) {
        fill = colours.color(QPalette::Highlight);
    } else if (IsHovered) {
        fill = colours.color(QPalette::Midlight);
    }
    if (IsDropTarget) {
        painter.setPen(QPen(colours.color(QPalette::Highlight), 2.5));
    } else {
        painter.setPen((IsStrip || IsSelected) && !isFilled ? QPen(colours.color(QPalette::Mid))
                                                            : QPen(Qt::NoPen));
    }
    painter.setBrush(fill);
    painter.drawRoundedRect(body, Rounding, Rounding);
    const QColor ink = colours.color(isFilled ? QPalette::HighlightedText : QPalette::ButtonText);
    if (IsSelected && HasFocus) {
        painter.setPen(QPen(ink, 1.2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(body.adjusted(1.5, 1.5, -1.5, -1.5), Rounding - 1, Rounding - 1);
    }
    painter.setPen(ink);
    const int room = Place.width() - (IsStrip ? Padding : 0);
    const QString text = painter.fontMetrics().elidedText(Caption, Qt::ElideRight, room);
    painter.drawText(body, Qt::AlignCenter | Qt::TextSingleLine, text);
}
