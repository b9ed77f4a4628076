#pragma once

#include <QDialog>

class ModalDoor;
class QPlainTextEdit;

/// A window for a text that is too long for a message box.
class frmGeneralInfo final : public QDialog {
    Q_OBJECT
public:
    explicit frmGeneralInfo(QWidget* parent = nullptr);

    void SetTitle(const QString& title);
    /// Line breaks are CR LF or LF. The misspelled name is the known one.
    void SetMessaage(const QString& text);

private:
    QPlainTextEdit* m_txtMessage;
};

/// Shows a longer text over `owner` until it is closed.
void ShowGeneralInfo(ModalDoor& door, QWidget& owner, const QString& title, const QString& message);
