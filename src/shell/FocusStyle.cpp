#include "shell/FocusStyle.h"

#include <QPainter>
#include <QStyleOption>

FocusStyle::FocusStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void FocusStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    if (element != PE_FrameFocusRect) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    constexpr double LineWidth = 2;
    constexpr double Corner = 3;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const bool isSelected = option->state.testFlag(State_Selected);
    painter->setPen(
        QPen(option->palette.color(isSelected ? QPalette::HighlightedText : QPalette::Link), LineWidth));
    painter->setBrush(Qt::NoBrush);
    const double inset = LineWidth / 2;
    painter->drawRoundedRect(QRectF(option->rect).adjusted(inset, inset, -inset, -inset), Corner, Corner);
    painter->restore();
}
