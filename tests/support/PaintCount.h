#pragma once

#include <QEvent>
#include <QWidget>

#include <functional>

/// Counts how often a widget is painted.
class PaintCount final : public QObject {
public:
    explicit PaintCount(QWidget& watched) { watched.installEventFilter(this); }
    int Count = 0;
    /// Runs at the start of each painting.
    std::function<void()> OnPaint;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            ++Count;
            if (OnPaint) {
                OnPaint();
            }
        }
        return false;
    }
};
