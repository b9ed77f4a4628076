#include "controls/TabFlow.h"

QList<TabFlow::Place> TabFlow::IntoRows(const QList<int>& widths, int width, int rowHeight, int gap) {
    QList<Place> places;
    places.reserve(widths.size());
    int x = 0;
    int row = 0;
    for (const int wanted : widths) {
        const int used = qMax(rowHeight, qMin(wanted, width));
        if (x > 0 && x + used > width) {
            x = 0;
            ++row;
        }
        places.append(Place{QRect(x, row * rowHeight, used, rowHeight - gap), row});
        x += used + gap;
    }
    return places;
}

QList<TabFlow::Place> TabFlow::OverHeight(int count, const QSize& size) {
    QList<Place> places;
    places.reserve(count);
    for (int position = 0; position < count; ++position) {
        const int top = size.height() * position / count;
        const int bottom = size.height() * (position + 1) / count;
        places.append(Place{QRect(0, top, size.width(), bottom - top), position});
    }
    return places;
}

int TabFlow::NearestInNextRow(const QList<Place>& places, int from, int direction) {
    if (from < 0) {
        return -1;
    }
    const auto distance = [&](int position) {
        return qAbs(places[position].Rect.center().x() - places[from].Rect.center().x());
    };
    int best = -1;
    for (int position = 0; position < places.size(); ++position) {
        const bool isThere = places[position].Row == places[from].Row + direction;
        if (isThere && (best < 0 || distance(position) < distance(best))) {
            best = position;
        }
    }
    return best;
}
