#pragma once

#include <QLabel>

/// A label of one line that shortens its text to the room that it has, and then tells the whole of it in its
/// tool tip. Its text is plain text and never widens the window.
class ElidedLabel : public QLabel {
    Q_OBJECT
public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QString Line() const;
};
