#pragma once

#include <QChar>
#include <QColor>
#include <QList>
#include <QRect>
#include <QString>

class QImage;
class QWidget;

/// A text or picture that a form shows: whose it is, where it stands in the form, and the contrast that it
/// needs with its ground (WCAG 2: 4.5 for texts, 3 for pictures).
struct FormText {
    QString Owner;
    QRect Place;
    double Contrast;
};

/// What a person has to see: texts of labels, buttons, frames, boxes, tabs and rows, and pictures on labels.
/// Those of disabled controls are not among them.
[[nodiscard]] QList<FormText> TextsOf(QWidget& form);

/// The letter, in upper case, that chooses a control together with Alt: of a button, a frame with a title, or
/// a label with a buddy. Null without one.
[[nodiscard]] QChar MnemonicOf(const QWidget& widget);

/// The whole form as it is painted, in so many pixels that the strokes of letters have their full colour.
[[nodiscard]] QImage FinePictureOf(QWidget& form);

/// Contrast of a text with its ground in a fine picture, by WCAG 2: the ground is the colour that most of the
/// pixels have, the text the one that stands out most. 1 where nothing is written.
[[nodiscard]] double ContrastIn(const QImage& picture, const QRect& place);
