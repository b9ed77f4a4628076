#pragma once

#include <QStringList>
#include <QWidget>

class Contact;
class ContactList;
class ListView;
class QGroupBox;
class QPushButton;
struct PhonebookState;

/// Who the message goes to: a flat list of contacts, each key at most once. The rows show what the list of
/// contacts `RecipientContacts` holds under their keys; that list may hold more (RemoveSelectedRecipients
/// takes rows only), never less. Nothing here reports to the user.
class RecipientPanel final : public QWidget {
    Q_OBJECT
public:
    /// `sortBy` tells the form of the names: 0 by surname, 1 by first name.
    RecipientPanel(ContactList& addressContacts, ContactList& recipientContacts,
                   const PhonebookState& phonebook, const qint32& sortBy, QWidget* parent = nullptr);

    [[nodiscard]] ListView& List() { return *m_lvRecipients; }
    /// Rows of the list.
    [[nodiscard]] int Count() const;
    /// Keys of the rows, in list order.
    [[nodiscard]] QStringList RecipientKeys() const;

    /// The caption of the frame tells how many rows there are.
    void ShowRecipientCount();
    /// Copies contacts that are on show in the contact list to the recipients, in one batch with redraw off.
    /// Unknown keys are dropped; a recipient stays as it is.
    void AddKeysToRecipients(const QStringList& keys);
    /// One key; with `ensureVisible` its row is scrolled to and selected, if it is new.
    void AddKeyToRecipients(const QString& key, bool ensureVisible);
    /// Adds the members of a group that RecipientContacts does not hold yet, and brings the last new row into
    /// view.
    void DropGroupByID(qint32 groupID);
    /// Adds the keys of dropped text, each closed by CR LF. False, and nothing done, if there is no CR LF.
    bool AddDroppedKeys(const QString& text);
    /// Contacts and group tabs that are dragged here: nothing happens.
    void DropContactRecipients() {}
    void DropGroupRecipients() {}

    /// Fills the list again from RecipientContacts, which brings back rows that were removed alone.
    void RefreshRecipientList();
    /// Takes the selected rows out of the list; their contacts stay in RecipientContacts.
    void RemoveSelectedRecipients();
    /// The same for these keys, in one batch; unknown ones are passed over.
    void RemoveRows(const QStringList& keys);
    /// Takes one recipient out of both.
    void RemoveRecipient(const QString& key);
    /// Takes all rows out of the list; the contacts stay in RecipientContacts.
    void Clear();
    /// True as soon as one row's contact has IsConfirmSend.
    [[nodiscard]] bool HasConfirmRecipients() const;
    /// Brings row and contact in line with an edited contact; the user fields stay as they were. Without a
    /// tool tip the contact has no row in the contact list, whose row this one follows: it stays as it is.
    void UpdateRecipient(const Contact& contact, const QString& toolTip);

Q_SIGNALS:
    /// The list has changed: by the user's key, double click or drop, or because RefreshRecipientList brought
    /// rows back.
    void RecipientsChanged();
    /// cmdClearRecipients was pressed; nothing is cleared yet.
    void ClearPressed();
    /// Right button or menu key on a list that is not empty; global position.
    void MenuRequested(const QPoint& position);

private:
    void Connect();
    /// Gives the cursor to the row nearest to `row` without selecting it.
    void PutCursorNear(int row);

    ContactList& m_addressContacts;
    ContactList& m_recipientContacts;
    const PhonebookState& m_phonebook;
    const qint32& m_sortBy;

    QGroupBox* m_fraRecipients;
    ListView* m_lvRecipients;
    QPushButton* m_cmdClearRecipients;
};
