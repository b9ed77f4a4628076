// What a tab control does with keys, mouse, wheel and drags.

#include "controls/TabControl.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QToolButton>

namespace {

/// Object name of the widget that a drag comes from; empty if it comes from another program.
QString SourceOf(const QDropEvent& event) {
    return event.source() != nullptr ? event.source()->objectName() : QString();
}

}  // namespace

int TabControl::TabForKey(const QKeyEvent& event) const {
    const bool isMirrored = m_look == Look::Strip && layoutDirection() == Qt::RightToLeft;
    const int forward = isMirrored ? -1 : 1;
    switch (event.key()) {
        case Qt::Key_Home:
            return 0;
        case Qt::Key_End:
            return Count() - 1;
        case Qt::Key_Right:
            return m_selected + forward;
        case Qt::Key_Left:
            return m_selected - forward;
        case Qt::Key_Down:
            return m_look == Look::Letters ? m_selected + 1
                                           : TabFlow::NearestInNextRow(m_places, m_selected, 1);
        case Qt::Key_Up:
            return m_look == Look::Letters ? m_selected - 1
                                           : TabFlow::NearestInNextRow(m_places, m_selected, -1);
        default:
            break;
    }
    for (int step = 1; step <= Count() && !event.text().trimmed().isEmpty(); ++step) {
        const int position = (m_selected + step) % Count();
        if (Caption(position).startsWith(event.text(), Qt::CaseInsensitive)) {
            return position;
        }
    }
    return -1;
}

void TabControl::keyPressEvent(QKeyEvent* event) {
    const Qt::KeyboardModifiers others = event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    const int position = others == Qt::NoModifier ? TabForKey(*event) : -1;
    if (position < 0 || position >= Count()) {
        QWidget::keyPressEvent(event);
        return;
    }
    Select(position);
}

void TabControl::wheelEvent(QWheelEvent* event) {
    if (m_look != Look::Strip || RowCount() <= MaxRows) {
        event->ignore();
        return;
    }
    ScrollRows(event->angleDelta().y() > 0 ? -1 : 1);
    event->accept();
}

void TabControl::Press(const QPoint& point) {
    const int position = TabUnder(point);
    if (position >= 0 && position == m_selected) {
        Q_EMIT SelectedAgain(position);
    } else {
        Select(position);
    }
    Q_EMIT LeftPressed(point);
}

void TabControl::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        Press(event->position().toPoint());
    }
}

void TabControl::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
}

void TabControl::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        Q_EMIT OtherButton(event->position().toPoint());
    }
}

void TabControl::mouseMoveEvent(QMouseEvent* event) {
    SetHovered(TabUnder(event->position().toPoint()));
}

void TabControl::leaveEvent(QEvent*) {
    SetHovered(-1);
}

void TabControl::contextMenuEvent(QContextMenuEvent* event) {
    event->accept();
    if (event->reason() == QContextMenuEvent::Keyboard && m_selected >= 0) {
        ShowRow(m_places[m_selected].Row);
        Q_EMIT OtherButton(TabRect(m_selected).center());
    }
}

bool TabControl::TakesText(const QString& source, int position) const {
    return m_isDropTarget != nullptr && source == m_dropSource && position >= 0 && m_isDropTarget(position);
}

bool TabControl::IsTextFromSource(const QDropEvent& event) const {
    return event.mimeData()->hasText() && SourceOf(event) == m_dropSource;
}

void TabControl::dragEnterEvent(QDragEnterEvent* event) {
    if (IsTextFromSource(*event)) {
        event->accept();
    } else {
        event->ignore();
    }
}

void TabControl::dragMoveEvent(QDragMoveEvent* event) {
    const QPoint point = event->position().toPoint();
    // A drag over a scroll button brings the rows that are out of sight.
    for (const QToolButton* button : {m_rowsUp, m_rowsDown}) {
        if (button != nullptr && button->isVisible() && button->geometry().contains(point)) {
            ScrollRows(button == m_rowsUp ? -1 : 1);
        }
    }
    const int position = TabUnder(point);
    if (!event->mimeData()->hasText() || !TakesText(SourceOf(*event), position)) {
        SetDropTarget(-1);
        event->ignore();
        return;
    }
    SetDropTarget(position);
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void TabControl::dragLeaveEvent(QDragLeaveEvent*) {
    SetDropTarget(-1);
}

void TabControl::dropEvent(QDropEvent* event) {
    SetDropTarget(-1);
    if (!IsTextFromSource(*event)) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    Q_EMIT TextDropped(event->mimeData()->text(), TabUnder(event->position().toPoint()));
}
