#pragma once

#include "controls/WaitCursor.h"

#include <QObject>

class EventPump;
class QWidget;

/// While it lives, one window takes no input: what mouse, keyboard, wheel, drag, touch and the window's close
/// button say to it is dropped. Other top-level windows, dialogs and boxes over it among them, work as ever,
/// and so do painting and timers. At its end, input that has queued up meanwhile is dropped too. Gates may
/// be nested. Closing may be let through where nothing is lost by it.
///
/// For routines that let pending events run in the middle of something which must not start again.
class InputGate final : public QObject {
    Q_OBJECT
public:
    /// What becomes of a wish to close the window.
    enum class Closing { Refused, Let };

    InputGate(QWidget& window, EventPump& pump, Closing closing = Closing::Refused);
    ~InputGate() override;
    InputGate(const InputGate&) = delete;
    InputGate& operator=(const InputGate&) = delete;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool IsForWindow(const QObject* target) const;

    QWidget& m_window;
    EventPump& m_pump;
    Closing m_closing;
    WaitCursor m_pointer;
};
