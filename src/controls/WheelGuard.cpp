#include "controls/WheelGuard.h"

#include <QEvent>
#include <QWidget>

WheelGuard::WheelGuard(QWidget& control) : QObject(&control) {
    control.setFocusPolicy(Qt::StrongFocus);
    control.installEventFilter(this);
}

bool WheelGuard::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Wheel && !static_cast<QWidget*>(watched)->hasFocus()) {
        event->ignore();
        return true;
    }
    return QObject::eventFilter(watched, event);
}
