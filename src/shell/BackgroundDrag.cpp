#include "shell/BackgroundDrag.h"

#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

BackgroundDrag::BackgroundDrag(QWidget& form) : QObject(&form), m_form(form) {
    form.installEventFilter(this);
}

bool BackgroundDrag::eventFilter(QObject*, QEvent* event) {
    if (event->type() != QEvent::MouseButtonPress) {
        return false;
    }
    const auto* press = static_cast<QMouseEvent*>(event);
    // What no control has taken arrives here; one that is disabled takes nothing, and is no background.
    const QWidget* under = m_form.childAt(press->position().toPoint());
    if (press->button() != Qt::LeftButton || (under != nullptr && !under->isEnabled())) {
        return false;
    }
    return DragWindow(m_form);
}

bool BackgroundDrag::DragWindow(const QWidget& window) {
    return window.windowHandle() != nullptr && window.windowHandle()->startSystemMove();
}
