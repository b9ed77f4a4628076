#pragma once

#include <QObject>

class QKeyEvent;
class QWidget;

/// True for the keys that press a button: Enter, Return, Space, Select.
[[nodiscard]] bool IsPressKey(const QKeyEvent& key);

/// While it lives, a key that is held down does not press anything in one window: repeats of Enter and Space
/// are dropped. The key that opened a dialog may still be down when the dialog appears, and must not answer
/// it.
class HeldKeyGuard final : public QObject {
    Q_OBJECT
public:
    explicit HeldKeyGuard(QWidget& window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& m_window;
};
