#pragma once

#include <QDialog>

#include <memory>

class Clock;
class ContactList;
class ListView;

namespace Ui {
class frmConfirmRecipient;
}

/// Asks, for the recipients that want it, who of them shall get the message.
class frmConfirmRecipient final : public QDialog {
    Q_OBJECT
public:
    frmConfirmRecipient(ContactList& recipientContacts, const Clock& clock, QWidget* parent = nullptr);
    ~frmConfirmRecipient() override;

    /// True until OK is pressed.
    [[nodiscard]] bool IsCanceled() const { return m_isCanceled; }
    /// Shows the rows of `list` whose contacts want confirmation, ticked. OK takes those that are not ticked
    /// out of `list` and out of the recipient contacts.
    void SetRecipients(ListView& list);

private:
    void ToggleRow(const QString& key);
    void AcceptTicked();

    std::unique_ptr<Ui::frmConfirmRecipient> m_ui;
    ContactList& m_recipientContacts;
    ListView* m_recipients = nullptr;
    bool m_isCanceled = true;
};
