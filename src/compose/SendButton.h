#pragma once

#include <QPushButton>

class QKeyEvent;

/// True for the keys that press a button: Enter, Return, Space, Select.
[[nodiscard]] bool IsPressKey(const QKeyEvent& key);

/// A push button for what must not happen twice by accident: a double click is one press, and a key that is
/// held down presses once. Enter presses it when it has the focus, and only then. The default one is drawn
/// in the colour of the highlight.
class SendButton final : public QPushButton {
    Q_OBJECT
public:
    explicit SendButton(const QString& text, QWidget* parent = nullptr);

protected:
    void initStyleOption(QStyleOptionButton* option) const override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};
