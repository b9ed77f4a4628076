#pragma once

#include <QProxyStyle>

/// The plain style of the toolkit with a focus ring that is seen: a line of two pixels in the accent colour
/// around flat buttons and list rows, which would otherwise show the keyboard's place by a shade. The button
/// that Enter presses and the field that takes the keys have an outline in that colour, and the outlines of
/// fields, text boxes, lists and ticks are seen on a dark ground too.
class FocusStyle final : public QProxyStyle {
    Q_OBJECT
public:
    FocusStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option,
                                  const QWidget* widget) const override;
    [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                                QStyleHintReturn* data) const override;
};
