#include "compose/InputGate.h"

#include "core/Trap.h"
#include "platform/EventPump.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QEvent>
#include <QWidget>
#include <QWindow>

namespace {

/// The first pass brings in what the window system has sent, the second what came of it.
constexpr int DrainPasses = 2;

enum class Reaction { Pass, Accept, Refuse };

/// Whether an event is input, and if it is, how it is dropped: keys and presses as if they had been used, so
/// that no parent gets them; drops and closing as refused.
Reaction ReactionTo(QEvent::Type type) {
    switch (type) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ShortcutOverride:
        case QEvent::Shortcut:
        case QEvent::InputMethod:
        case QEvent::ContextMenu:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TabletPress:
        case QEvent::TabletMove:
        case QEvent::TabletRelease:
        case QEvent::NativeGesture:
        case QEvent::Gesture:
            return Reaction::Accept;
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
        case QEvent::Close:
            return Reaction::Refuse;
        default:
            return Reaction::Pass;
    }
}

bool IsKey(QEvent::Type type) {
    return type == QEvent::KeyPress || type == QEvent::KeyRelease || type == QEvent::ShortcutOverride;
}

}  // namespace

InputGate::InputGate(QWidget& window, EventPump& pump, Closing closing)
    : m_window(window), m_pump(pump), m_closing(closing), m_pointer(window, Qt::BusyCursor) {
    // A button that is held down now would otherwise click when it is released behind the gate.
    const QList<QAbstractButton*> buttons = window.findChildren<QAbstractButton*>();
    for (QAbstractButton* button : buttons) {
        button->setDown(false);
    }
    QCoreApplication::instance()->installEventFilter(this);
}

InputGate::~InputGate() {
    Trap([this] { m_pump.Process(DrainPasses); });
}

bool InputGate::eventFilter(QObject* watched, QEvent* event) {
    const Reaction reaction = ReactionTo(event->type());
    if (reaction == Reaction::Pass || (event->type() == QEvent::Close && m_closing == Closing::Let)) {
        return false;
    }
    // The toolkit's own bookkeeping of mouse buttons happens in the native window, so mouse events are let
    // through to there and stopped in front of the widgets; keys are stopped at both.
    const bool isNative = watched == m_window.windowHandle() && IsKey(event->type());
    if (!isNative && !IsForWindow(watched)) {
        return false;
    }
    event->setAccepted(reaction == Reaction::Accept);
    return true;
}

bool InputGate::IsForWindow(const QObject* target) const {
    // A shortcut's target is a button, an action or a shortcut object somewhere below its widget.
    while (target != nullptr && !target->isWidgetType()) {
        target = target->parent();
    }
    return target != nullptr && static_cast<const QWidget*>(target)->window() == &m_window;
}
