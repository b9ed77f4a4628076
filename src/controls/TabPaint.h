#pragma once

#include <QPainter>
#include <QPalette>
#include <QRect>
#include <QString>

/// How one tab of a TabControl looks.
struct TabPaint {
    /// Blank pixels beside a caption in a strip.
    static constexpr int Padding = 11;

    QRect Place;
    QString Caption;
    bool IsStrip = true;  // an entry of the letter column has no frame
    bool IsSelected = false;
    bool IsHovered = false;
    bool IsDropTarget = false;
    bool HasFocus = false;
    bool IsQuiet = false;  // a selection is only outlined

    /// Paints the tab into Place, in these colours and the painter's font.
    void Draw(QPainter& painter, const QPalette& colours) const;
};
