#include "controls/ReportPaint.h"

#include <QFontMetrics>
#include <QPainter>

namespace {

constexpr int Darkest = 128;  // lightness below which a ground counts as dark

bool IsDark(const QColor& ground) {
    return ground.lightness() < Darkest;
}

}  // namespace

QColor ReportPaint::TextColourOn(const QColor& ground, const QColor& colour) {
    if (!IsDark(ground) || !colour.isValid()) {
        return colour;
    }
    constexpr int Lightest = 255;
    return QColor::fromHsl(colour.hslHue(), colour.hslSaturation(), Lightest - colour.lightness());
}

QColor ReportPaint::BackColourOn(const QColor& ground, const QColor& colour) {
    return IsDark(ground) || !colour.isValid() ? ground : colour;
}

void ReportPaint::DrawLine(QPainter& painter, const QRect& rect, Qt::Alignment alignment, const QString& text,
                           const QColor& colour) {
    if (rect.width() <= 0) {
        return;
    }
    painter.setPen(colour);
    const QString line = painter.fontMetrics().elidedText(text, Qt::ElideRight, rect.width());
    painter.drawText(rect, static_cast<int>(alignment.toInt()) | Qt::TextSingleLine, line);
}
