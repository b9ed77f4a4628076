#pragma once

#include <QGuiApplication>

/// Shows the hourglass for its lifetime; afterwards the pointer is what it was before, also when scopes nest.
class WaitCursor {
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};
