#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

/// Where a window of `size` goes so that it stands in the corner of the screen that has the tray. `screen` is
/// the whole screen, `free` what panels leave of it, `tray` the place of the tray's icon, empty where it is
/// not known: then the side that a panel takes counts, and the lower right corner where there is none. The
/// icon is not covered. Pixels of the screen's scale. The window lies within `free`; of one that is larger
/// the upper left corner does.
[[nodiscard]] QPoint PopupPlace(const QRect& screen, const QRect& free, const QRect& tray, const QSize& size);
