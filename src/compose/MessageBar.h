#pragma once

#include <QColor>
#include <QProgressBar>

/// The bar that shows how full the message is. Beside a progress bar's it has a colour that can be set and
/// read back, and a maximum that may be negative (a tail longer than the whole message may be): such a bar is
/// drawn full.
class MessageBar final : public QProgressBar {
    Q_OBJECT
public:
    explicit MessageBar(QWidget* parent = nullptr);

    void SetMaximum(int maximum);
    [[nodiscard]] int Maximum() const { return maximum(); }
    /// Kept as it is given, also outside 0 to Maximum.
    void SetPosition(int position);
    [[nodiscard]] int Position() const { return m_position; }
    /// The colour as a state. What is drawn is a tone of it that stands out from the background.
    void SetBarColour(const QColor& colour);
    [[nodiscard]] QColor BarColour() const { return m_barColour; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QColor DrawnColour() const;
    [[nodiscard]] double FilledPart() const;

    int m_position = 0;
    QColor m_barColour;
};
