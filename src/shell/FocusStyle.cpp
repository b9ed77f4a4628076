#include "shell/FocusStyle.h"

#include <QAbstractItemView>
#include <QPainter>
#include <QStyleOption>

namespace {

constexpr double Corner = 4;

/// The keyboard's place matters to somebody who uses the keyboard; a click shows its place by itself, except
/// on a row that it did not select.
bool IsRingNeeded(const QStyleOption& option, const QWidget* widget) {
    if (!option.state.testFlag(QStyle::State_HasFocus)) {
        return false;
    }
    const bool isRow = qobject_cast<const QAbstractItemView*>(widget) != nullptr;
    return option.state.testFlag(QStyle::State_KeyboardFocusChange) ||
           (isRow && !option.state.testFlag(QStyle::State_Selected));
}

void DrawFocusRing(const QStyleOption& option, QPainter& painter) {
    constexpr double LineWidth = 2;
    constexpr double Inset = LineWidth / 2;
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    painter.setPen(
        QPen(option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Link), LineWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(option.rect).adjusted(Inset, Inset, -Inset, -Inset), Corner, Corner);
}

/// A step away from the button's own colour: towards the text under the mouse, further while it is pressed.
QColor FaceOf(const QStyleOption& option) {
    constexpr double HoverPart = 0.06;
    constexpr double PressedPart = 0.14;
    const QColor face = option.palette.color(QPalette::Button);
    const bool isOn = option.state.testFlag(QStyle::State_Enabled);
    const bool isPressed = option.state & (QStyle::State_Sunken | QStyle::State_On);
    const bool isHovered = option.state.testFlag(QStyle::State_MouseOver);
    const double part = !isOn ? 0 : isPressed ? PressedPart : isHovered ? HoverPart : 0;
    // Darker keeps the contrast of white on the accent colour; a light button goes darker as well.
    return QColor::fromRgbF(static_cast<float>(face.redF() * (1 - part)),
                            static_cast<float>(face.greenF() * (1 - part)),
                            static_cast<float>(face.blueF() * (1 - part)));
}

void DrawButton(const QStyleOption& option, bool isDefault, QPainter& painter) {
    const bool isAccent = option.palette.color(QPalette::Button) == option.palette.color(QPalette::Highlight);
    const QColor outline = option.palette.color(isDefault ? QPalette::Link : QPalette::Mid);
    painter.setPen(isAccent ? FaceOf(option) : outline);
    painter.setBrush(FaceOf(option));
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), Corner, Corner);
}

/// The line around a box: the toolkit's own is darker than the window, and hardly seen where that is dark.
QColor LineOf(const QPalette& palette) {
    const auto distance = [&palette](QPalette::ColorRole role) {
        return qAbs(palette.color(role).lightness() - palette.color(QPalette::Window).lightness());
    };
    return palette.color(distance(QPalette::Dark) > distance(QPalette::Mid) ? QPalette::Dark : QPalette::Mid);
}

/// The line around a field tells whoever came there by mouse as well that it takes the keys.
QColor FieldLineOf(const QStyleOption& option) {
    return option.state.testFlag(QStyle::State_HasFocus) ? option.palette.color(QPalette::Link)
                                                         : LineOf(option.palette);
}

void DrawBox(const QRect& place, const QColor& line, const QBrush& ground, QPainter& painter) {
    painter.setPen(line);
    painter.setBrush(ground);
    painter.drawRoundedRect(QRectF(place).adjusted(0.5, 0.5, -0.5, -0.5), Corner / 2, Corner / 2);
}

/// With square corners, since what scrolls inside has such.
void DrawEdge(const QRect& place, const QColor& line, QPainter& painter) {
    painter.setPen(line);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(place).adjusted(0.5, 0.5, -0.5, -0.5));
}

}  // namespace

FocusStyle::FocusStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void FocusStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    const bool isFlat = button != nullptr && button->features.testFlag(QStyleOptionButton::Flat);
    const bool isButton = element == PE_PanelButtonCommand;
    const bool isArea = element == PE_Frame && qobject_cast<const QAbstractScrollArea*>(widget) != nullptr;
    const bool isBox = element == PE_FrameLineEdit;
    if (element != PE_FrameFocusRect && !isBox && !isArea && (!isButton || isFlat)) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (isBox) {
        DrawBox(option->rect, FieldLineOf(*option), option->palette.base(), *painter);
    }
    if (isArea) {
        DrawEdge(option->rect, FieldLineOf(*option), *painter);
    }
    if (element == PE_IndicatorCheckBox || element == PE_IndicatorItemViewItemCheck) {
        DrawBox(option->rect, LineOf(option->palette), QBrush(), *painter);
    }
    if (isButton && !isFlat) {
        const bool isDefault = option->state.testFlag(State_Enabled) && button != nullptr &&
                               button->features.testFlag(QStyleOptionButton::DefaultButton);
        DrawButton(*option, isDefault, *painter);
    }
    if ((element == PE_FrameFocusRect || isButton || isArea) && IsRingNeeded(*option, widget)) {
        DrawFocusRing(*option, *painter);
    }
    painter->restore();
}

void FocusStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                    QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(option);
    const bool isField = control == CC_SpinBox || (combo != nullptr && combo->editable);
    if (isField) {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        DrawBox(option->rect, FieldLineOf(*option), QBrush(), *painter);
        painter->restore();
    }
}

int FocusStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    constexpr int RowIconSide = 16;  // smaller than a row of text, so that all rows have one height
    return metric == PM_ListViewIconSize ? RowIconSide : QProxyStyle::pixelMetric(metric, option, widget);
}

int FocusStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* data) const {
    // The words say it; pictures out of another set would stand among the program's own.
    return hint == SH_DialogButtonBox_ButtonsHaveIcons ? 0
                                                       : QProxyStyle::styleHint(hint, option, widget, data);
}
