#include "controls/KeySplitter.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>

#include <utility>

namespace {

constexpr int Step = 16;  // pixels for an arrow key

/// Where a bar at `place` goes by a key, in pixels from the splitter's edge; `place` for another key.
int PlaceAfter(int key, int place, int length) {
    switch (key) {
        case Qt::Key_Left:
        case Qt::Key_Up:
            return place - Step;
        case Qt::Key_Right:
        case Qt::Key_Down:
            return place + Step;
        case Qt::Key_Home:
            return 0;
        case Qt::Key_End:
            return length;
        default:
            return place;
    }
}

}  // namespace

/// Shows that it has the focus, and moves.
class KeySplitter::Bar final : public QSplitterHandle {
public:
    explicit Bar(KeySplitter& owner) : QSplitterHandle(owner.orientation(), &owner), m_owner(owner) {}

protected:
    void keyPressEvent(QKeyEvent* event) override {
        const bool isEnd =
            event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Escape;
        const bool isAcross = orientation() == Qt::Horizontal;
        const int place = isAcross ? x() : y();
        const int wanted = PlaceAfter(event->key(), place, isAcross ? m_owner.width() : m_owner.height());
        if (isEnd) {
            m_owner.LeaveBar();
        } else if (wanted != place) {
            moveSplitter(wanted);
        } else {
            QSplitterHandle::keyPressEvent(event);
        }
    }

    void focusOutEvent(QFocusEvent* event) override {
        setFocusPolicy(Qt::NoFocus);
        QSplitterHandle::focusOutEvent(event);
    }

    void paintEvent(QPaintEvent* event) override {
        QSplitterHandle::paintEvent(event);
        if (hasFocus()) {
            QPainter painter(this);
            QStyleOptionFocusRect ring;
            ring.initFrom(this);
            ring.state |= QStyle::State_KeyboardFocusChange;
            style()->drawPrimitive(QStyle::PE_FrameFocusRect, &ring, &painter, this);
        }
    }

private:
    KeySplitter& m_owner;
};

KeySplitter::KeySplitter(Qt::Orientation orientation, QWidget& window, int barKey, QWidget* parent)
    : QSplitter(orientation, parent), m_barKey(barKey) {
    window.installEventFilter(this);
}

void KeySplitter::SetBarName(const QString& name, const QString& description) {
    handle(1)->setAccessibleName(name);
    handle(1)->setAccessibleDescription(description);
}

QSplitterHandle* KeySplitter::createHandle() {
    return new Bar(*this);
}

bool KeySplitter::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) {
        return QSplitter::eventFilter(watched, event);
    }
    const auto* key = static_cast<const QKeyEvent*>(event);
    if (handle(1) == nullptr || key->key() != m_barKey || key->modifiers() != Qt::NoModifier ||
        key->isAutoRepeat()) {
        return QSplitter::eventFilter(watched, event);
    }
    if (handle(1)->hasFocus()) {
        LeaveBar();
    } else {
        EnterBar();
    }
    return true;
}

void KeySplitter::EnterBar() {
    m_focusBefore = QApplication::focusWidget();
    // A bar that could always take the focus would be one more stop of Tab, or take it from the text with
    // every click.
    handle(1)->setFocusPolicy(Qt::ClickFocus);
    handle(1)->setFocus(Qt::ShortcutFocusReason);
}

void KeySplitter::LeaveBar() {
    if (QWidget* const before = std::exchange(m_focusBefore, nullptr).data(); before != nullptr) {
        before->setFocus(Qt::OtherFocusReason);
    } else {
        handle(1)->clearFocus();
    }
}
