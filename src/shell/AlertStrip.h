#pragma once

#include <QFrame>

class QPushButton;

/// The warning across the bottom of the main window: the shape shaAlert and on it lblFailureWarning, which
/// takes the warning away when it is clicked, or pressed by keyboard.
class AlertStrip final : public QFrame {
    Q_OBJECT
public:
    explicit AlertStrip(QWidget* parent = nullptr);

    /// Shows or hides the warning; screen readers are told of one that appears.
    void ShowAlert(bool show);

protected:
    bool event(QEvent* event) override;

private:
    void TakeColours();

    QPushButton* m_lblFailureWarning;
};
