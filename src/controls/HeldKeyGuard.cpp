#include "controls/HeldKeyGuard.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

bool IsPressKey(const QKeyEvent& key) {
    switch (key.key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
        case Qt::Key_Select:
            return true;
        default:
            return false;
    }
}

HeldKeyGuard::HeldKeyGuard(QWidget& window) : m_window(window) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool HeldKeyGuard::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto* widget = qobject_cast<const QWidget*>(watched);
        const auto* key = static_cast<const QKeyEvent*>(event);
        if (widget != nullptr && widget->window() == &m_window && key->isAutoRepeat() && IsPressKey(*key)) {
            event->accept();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}
