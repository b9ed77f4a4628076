#pragma once

#include <QPointer>
#include <QSplitter>

/// A splitter whose first bar can be moved by keyboard as well. A key of its window gives the bar the focus,
/// which Tab does not; there the arrows move it, Home and End as far as it goes, and the same key, Enter or
/// Escape gives the focus back to where it was.
class KeySplitter final : public QSplitter {
    Q_OBJECT
public:
    /// `window` is the one that sees the key when no control of it wants it, `barKey` a Qt::Key.
    KeySplitter(Qt::Orientation orientation, QWidget& window, int barKey, QWidget* parent = nullptr);

    /// What a screen reader says of the bar, which is there from the second widget on.
    void SetBarName(const QString& name, const QString& description);

protected:
    [[nodiscard]] QSplitterHandle* createHandle() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class Bar;

    void EnterBar();
    void LeaveBar();

    QPointer<QWidget> m_focusBefore;
    int m_barKey;
};
