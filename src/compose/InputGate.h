#pragma once

#include "controls/WaitCursor.h"

#include <QObject>

class EventPump;
class QWidget;

/// While it lives, one window takes no input: what mouse, keyboard, wheel, drag, touch and the window's close
/// button say to it is dropped. Other top-level windows, dialogs and boxes over it among them, work as ever,
/// and so do painting and timers. At its end, input that has queued up meanwhile is dropped too. Gates may
/// be nested.
///
/// For routines that let pending events run in the middle of something which must not start again.
class InputGate final : public QObject {
    Q_OBJECT
public:
    InputGate(QWidget& window, EventPump& pump);
    ~InputGate() override;
    InputGate(const InputGate&) = delete;
    InputGate& operator=(const InputGate&) = delete;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool IsForWindow(const QObject* target) const;

    QWidget& m_window;
    EventPump& m_pump;
    WaitCursor m_pointer;
};
