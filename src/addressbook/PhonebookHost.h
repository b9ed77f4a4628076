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
    /// Builds the recipient list anew, in the present form of names.
    virtual void RefreshRecipientList() = 0;
    /// Recipient count, size display and send buttons.
    virtual void UpdateStateDisplay() = 0;
    /// May contacts be changed, or, with `hidden`, one with a private number; asks for the password if need
    /// be.
    virtual bool IsPasswordOK(bool hidden) = 0;
};
