#include "controls/LeftButtonOnly.h"

#include <QCoreApplication>
#include <QMenu>
#include <QMouseEvent>

#include <algorithm>

namespace {

bool IsMouseButton(QEvent::Type type) {
    return type == QEvent::MouseButtonPress || type == QEvent::MouseButtonRelease ||
           type == QEvent::MouseButtonDblClick;
}

/// Whether the point of the screen lies in the menu or in a submenu that is open.
bool IsInside(const QMenu& menu, const QPoint& point) {
    if (menu.isVisible() && menu.rect().contains(menu.mapFromGlobal(point))) {
        return true;
    }
    const QList<QAction*> entries = menu.actions();
    return std::any_of(entries.begin(), entries.end(), [&point](const QAction* entry) {
        return entry->menu() != nullptr && IsInside(*entry->menu(), point);
    });
}

}  // namespace

LeftButtonOnly::LeftButtonOnly(const QMenu& menu) : m_menu(menu) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool LeftButtonOnly::eventFilter(QObject* watched, QEvent* event) {
    if (!IsMouseButton(event->type()) || qobject_cast<QMenu*>(watched) == nullptr) {
        return false;
    }
    const auto* mouse = static_cast<const QMouseEvent*>(event);
    return mouse->button() != Qt::LeftButton && IsInside(m_menu, mouse->globalPosition().toPoint());
}
