#pragma once

#include <QObject>

class QWidget;

/// Lets the wheel change a control's value only while the control has the focus: who scrolls with the mouse
/// somewhere over the window means no value. The wheel goes on to what lies behind, and gives no focus.
class WheelGuard final : public QObject {
    Q_OBJECT
public:
    /// Lives as long as `control`.
    explicit WheelGuard(QWidget& control);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};
