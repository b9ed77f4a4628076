#pragma once

#include <QtGlobal>

#include <functional>

class QEvent;
class QKeyEvent;
class QObject;

/// Marks the repeats of a key that is held down. On X11 a repeat comes as a release and a press of one
/// moment, and the toolkit often takes the press for a new one: whoever asks `isAutoRepeat` would send twice.
///
/// Stands in the application's `notify`, in front of everything. A press of the key that was released at most
/// a millisecond ago, which no finger can do, is delivered as a repeat, and a repeat triggers no shortcut: it
/// arrives as the plain key.
class KeyRepeats {
public:
    /// Hands an event to its receiver, as QApplication::notify does.
    using Delivery = std::function<bool(QObject* receiver, QEvent* event)>;

    /// Hands the event on, marked if it is a repeat. What the delivery returned.
    bool Deliver(QObject* receiver, QEvent* event, const Delivery& deliver);

private:
    [[nodiscard]] bool IsRepeat(const QKeyEvent& press) const;

    quint32 m_releasedKey = 0;
    quint64 m_releasedAt = 0;  // ms of the window system's clock; 0: not known
};
