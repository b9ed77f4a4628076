#pragma once

#include <QDialog>

#include <memory>

class Clock;

namespace Ui {
class frmPassword;
}

/// Asks for a password. There are no buttons: Enter accepts, Escape cancels.
class frmPassword final : public QDialog {
    Q_OBJECT
public:
    explicit frmPassword(const Clock& clock, QWidget* parent = nullptr);
    ~frmPassword() override;

    /// True until Enter is pressed.
    [[nodiscard]] bool IsCanceled() const { return m_isCanceled; }
    /// As typed.
    [[nodiscard]] QString Password() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::unique_ptr<Ui::frmPassword> m_ui;
    bool m_isCanceled = true;
};
