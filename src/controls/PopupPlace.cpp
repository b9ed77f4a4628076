#include "controls/PopupPlace.h"

#include <algorithm>

namespace {

constexpr int Margin = 8;

}  // namespace

QPoint PopupPlace(const QRect& screen, const QRect& free, const QRect& tray, const QSize& size) {
    bool isLeft = free.left() - screen.left() > screen.right() - free.right();
    bool isTop = free.top() - screen.top() > screen.bottom() - free.bottom();
    if (!tray.isEmpty()) {
        isLeft = tray.center().x() < screen.center().x();
        isTop = tray.center().y() < screen.center().y();
    }
    const int x = isLeft ? free.left() + Margin : free.right() + 1 - Margin - size.width();
    const int y = isTop ? free.top() + Margin : free.bottom() + 1 - Margin - size.height();
    QRect place(QPoint(x, y), size);
    if (place.intersects(tray)) {
        // A panel that windows may cover: the icon stays within reach, above or below the window, or, where
        // it stands too far up or down for that, beside it.
        QRect beside = place;
        isTop ? place.moveTop(tray.bottom() + 1 + Margin) : place.moveBottom(tray.top() - 1 - Margin);
        isLeft ? beside.moveLeft(tray.right() + 1 + Margin) : beside.moveRight(tray.left() - 1 - Margin);
        place = free.contains(place) ? place : beside;
    }
    return {std::max(place.left(), free.left()), std::max(place.top(), free.top())};
}
