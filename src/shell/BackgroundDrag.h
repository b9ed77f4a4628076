#pragma once

#include <QObject>

class QWidget;

/// A left button press on the form's background moves the window, as a press on its title bar does.
class BackgroundDrag final : public QObject {
    Q_OBJECT
public:
    explicit BackgroundDrag(QWidget& form);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& m_form;
};
