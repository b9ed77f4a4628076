#pragma once

#include <QColor>
#include <QList>
#include <QRect>
#include <QString>

class QImage;
class QWidget;

/// A text that a form shows: whose it is, and where it stands in the form.
struct FormText {
    QString Owner;
    QRect Place;
};

/// The texts that a person has to read: of labels, buttons, frames, boxes, tabs and rows. Those of disabled
/// controls are not among them.
[[nodiscard]] QList<FormText> TextsOf(QWidget& form);

/// The whole form as it is painted, in so many pixels that the strokes of letters have their full colour.
[[nodiscard]] QImage FinePictureOf(QWidget& form);

/// Contrast of a text with its ground in a fine picture, by WCAG 2: the ground is the colour that most of the
/// pixels have, the text the one that stands out most. 1 where nothing is written.
[[nodiscard]] double ContrastIn(const QImage& picture, const QRect& place);
