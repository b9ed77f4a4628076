#pragma once

#include <QDialog>

class Clock;
class QLineEdit;

/// Asks for a password. There are no buttons: Enter accepts, Escape cancels.
class frmPassword final : public QDialog {
    Q_OBJECT
public:
    explicit frmPassword(const Clock& clock, QWidget* parent = nullptr);

    /// True until Enter is pressed.
    [[nodiscard]] bool IsCanceled() const { return m_isCanceled; }
    /// As typed.
    [[nodiscard]] QString Password() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QLineEdit* m_txtPassword;
    bool m_isCanceled = true;
};
