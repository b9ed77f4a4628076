#pragma once

#include <QList>
#include <QRect>
#include <QSize>

/// Where tabs stand: pure geometry, in pixels.
namespace TabFlow {

/// Where one tab stands: its rectangle in the whole strip, and its row, counted from 0.
struct Place {
    QRect Rect;
    int Row = 0;
};

/// Puts tabs of these widths one behind the other, beginning a new row where one would not fit into `width`.
/// A tab that is wider than that is narrowed to it; none is narrower than a row is high. Rows are `rowHeight`
/// apart, with `gap` blank pixels between tabs and between rows.
[[nodiscard]] QList<Place> IntoRows(const QList<int>& widths, int width, int rowHeight, int gap);

/// `count` places one below the other that fill `size` without a gap.
[[nodiscard]] QList<Place> OverHeight(int count, const QSize& size);

/// The tab in the row above (`direction` -1) or below (1) that stands nearest to tab `from`; -1 if there is
/// no such row.
[[nodiscard]] int NearestInNextRow(const QList<Place>& places, int from, int direction);

}  // namespace TabFlow
