#pragma once

#include <QString>
#include <QStringList>

class Contact;

/// What the phonebook side asks of the rest of the main window. frmMain passes each on in one line.
class PhonebookHost {
public:
    virtual ~PhonebookHost() = default;
    /// AddKeyToRecipients for each key, in one batch with redraw off.
    virtual void AddKeysToRecipients(const QStringList& keys) = 0;
    /// Adds the members of a group that are not recipients yet, and brings the last new one into view.
    virtual void DropGroupByID(qint32 groupID) = 0;
    /// ScrollToItem on lvRecipients; `index` counted from 1.
    virtual void ScrollRecipientsTo(int index) = 0;
    /// Brings the recipient's row and copy in line with an edited contact; an unknown key does nothing.
    /// `toolTip` is the one of the contact's row in the contact list; it is empty when the contact is not
    /// listed there, and then the recipient's row stays as it is.
    virtual void UpdateRecipient(const Contact& contact, const QString& toolTip) = 0;
    virtual void RefreshRecipientList() = 0;
    virtual void UpdateStateDisplay() = 0;
    virtual bool IsPasswordOK(bool hidden) = 0;
};
