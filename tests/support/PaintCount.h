#pragma once

#include <QEvent>
#include <QWidget>

/// Counts how often a widget is painted.
class PaintCount final : public QObject {
public:
    explicit PaintCount(QWidget& watched) { watched.installEventFilter(this); }
    int Count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        Count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};
