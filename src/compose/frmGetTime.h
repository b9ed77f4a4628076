#pragma once

#include <QDateTime>
#include <QDialog>

#include <memory>

class Clock;

namespace Ui {
class frmGetTime;
}

/// Asks when a message shall be sent. Offered are today and, in the time box, an hour from now. From 23:00 on
/// that would be hour 24, which the box does not have: it then stands at 00 with the present minute, and the
/// date stays today's.
class frmGetTime final : public QDialog {
    Q_OBJECT
public:
    explicit frmGetTime(const Clock& clock, QWidget* parent = nullptr);
    ~frmGetTime() override;

    /// True until OK is pressed.
    [[nodiscard]] bool IsCanceled() const { return m_isCanceled; }
    /// Not checked against the past: a time earlier today is due at once.
    [[nodiscard]] QDateTime SendTime() const;

private:
    void Load(const QDateTime& now);

    std::unique_ptr<Ui::frmGetTime> m_ui;
    bool m_isCanceled = true;
};
