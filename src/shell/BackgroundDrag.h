#pragma once

#include <QObject>

class QWidget;

/// A left button press on the form's background moves the window, as a press on its title bar does.
class BackgroundDrag final : public QObject {
    Q_OBJECT
public:
    explicit BackgroundDrag(QWidget& form);

    /// From here on the window goes with the mouse until its button is let go. False if the window is not on
    /// the screen or the window system does not do that.
    static bool DragWindow(const QWidget& window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& m_form;
};
