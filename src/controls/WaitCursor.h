#pragma once

#include <QCursor>
#include <QPointer>
#include <QWidget>

/// Shows the hourglass, or another pointer, over one window for its lifetime; afterwards the window's pointer
/// is what it was before, also when scopes nest. Other windows, a question over this one among them, keep
/// theirs. Safe if the window dies first.
class WaitCursor {
public:
    explicit WaitCursor(QWidget& window, Qt::CursorShape shape = Qt::WaitCursor)
        : m_window(&window),
          m_hadCursor(window.testAttribute(Qt::WA_SetCursor)),
          m_cursorBefore(window.cursor()) {
        window.setCursor(shape);
    }
    ~WaitCursor() {
        if (m_window == nullptr) {
            return;
        }
        if (m_hadCursor) {
            m_window->setCursor(m_cursorBefore);
        } else {
            m_window->unsetCursor();
            // Qt takes the attribute from controls only, and leaves a window with a pointer that it has not.
            m_window->setAttribute(Qt::WA_SetCursor, false);
        }
    }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;

private:
    QPointer<QWidget> m_window;
    bool m_hadCursor;
    QCursor m_cursorBefore;
};
