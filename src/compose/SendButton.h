#pragma once

#include <QPushButton>

/// A push button for what must not happen twice by accident: clicks as quick as those of a double click are
/// one press, and a key that is held down presses once. Enter presses it when it has the focus, and only
/// then. The default one is drawn in the colour of the highlight.
class SendButton final : public QPushButton {
    Q_OBJECT
public:
    explicit SendButton(const QString& text, QWidget* parent = nullptr);

protected:
    void initStyleOption(QStyleOptionButton* option) const override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    quint64 m_lastPress = 0;  // ms of the window system's clock; 0: none
};
