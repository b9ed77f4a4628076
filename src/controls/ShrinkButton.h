#pragma once

#include <QToolButton>

/// A flat button with an icon and a word, which lets go of the word when the room gets short. Without an icon
/// it has a frame, and keeps its word.
class ShrinkButton : public QToolButton {
    Q_OBJECT
public:
    /// `name` is the object name, `icon` one of Icons (empty: none, and the word stays), `tip` the tool tip
    /// as it stands.
    ShrinkButton(const QString& name, const QString& icon, const QString& word, const QString& tip,
                 QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] QSize SizeFor(Qt::ToolButtonStyle style) const;
};
