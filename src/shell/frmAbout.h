#pragma once

#include <QDialog>

#include <memory>

class UrlOpener;

namespace Ui {
class frmAbout;
}

/// What the program is, its version, and the way to its home page.
class frmAbout final : public QDialog {
    Q_OBJECT
public:
    /// `year` for the placeholders of its texts; `version` as major.minor.revision; `phonebookVersion` is
    /// that of the office's phonebook.
    frmAbout(int year, const QString& version, qint32 phonebookVersion, UrlOpener& web);
    ~frmAbout() override;

protected:
    bool event(QEvent* event) override;

private:
    void TakeColours();

    std::unique_ptr<Ui::frmAbout> m_ui;
};
