#pragma once

#include <QWidget>

#include <memory>

namespace Ui {
class frmSplash;
}

/// The window that is seen while the program starts.
class frmSplash final : public QWidget {
    Q_OBJECT
public:
    /// `year` for the placeholders of its texts; `version` as major.minor.revision.
    frmSplash(int year, const QString& version);
    ~frmSplash() override;

private:
    std::unique_ptr<Ui::frmSplash> m_ui;
};
