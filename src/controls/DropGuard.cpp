#include "controls/DropGuard.h"

#include "controls/ModalDoor.h"

#include <QDropEvent>
#include <QWidget>

DropGuard::DropGuard(QWidget& control) : QObject(&control) {
    control.installEventFilter(this);
}

bool DropGuard::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
            if (IsKeyData(*static_cast<QDropEvent*>(event)->mimeData())) {
                event->ignore();
                return true;
            }
            break;
        default:
            break;
    }
    return QObject::eventFilter(watched, event);
}
