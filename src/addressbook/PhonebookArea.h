#pragma once

#include "addressbook/PhonebookSide.h"

#include <QFrame>
#include <QStringList>

#include <memory>

class Contact;
class ContactDetailPanel;
class ContactList;
class ContactListPanel;
class GroupTabsPanel;
class ListView;

namespace engine {
class Recordset;
}

/// The phonebook side of the main window (fraPhoneBook): the tabs, the contact list, the details, and what
/// happens among them.
///
/// AddressContacts always mirrors the rows of the list. Steps that fail are passed over; a list that cannot
/// be read is told to the log and stays empty.
class PhonebookArea : public QFrame {
    Q_OBJECT
public:
    explicit PhonebookArea(PhonebookSide side, QWidget* parent = nullptr);

    /// The letters "*", A to Z and, where the phonebook keeps alpha keys, "#".
    void InitAlphaTabs();
    /// The tabs of the phonebook's groups and the fixed ones, in the saved order. Failures are logged.
    void InitGroupTabs();
    /// The captions of the three user fields, from the phonebook; as they are if it cannot be read.
    void InitUserHeaders();
    /// SetSortBy with the present order.
    void InitSortBy();
    /// Shows the order on its button and, unless the window is loading, builds both lists anew.
    void SetSortBy();
    /// At the end of the window's life.
    void SaveTabOrder();

    /// Rebuilds the list from the selected tabs.
    void ShowGroup();
    /// `letter` "*": everyone.
    void ShowAlphaGroup(const QString& letter);
    /// `groupID` is the number of a group tab.
    void ShowGroupMembers(qint32 groupID);
    /// One row a contact, in the order of `contacts`, which is kept by reference and has to live until the
    /// next filling: a row is made when it is first looked at.
    void FillContactList(const ContactList& contacts);
    /// Brings both lists in line with an edited contact. The recipient's row follows the row of this list,
    /// so one that is not listed here keeps its row; the recipient's own data are updated either way.
    void UpdateContactItems(const Contact& contact);

    /// Shows, selects and focuses the contact; one that is not in the list only moves the focus there.
    void SelectContact(qint32 id);
    /// The empty key clears the details; an unknown one changes nothing.
    void ShowContactInfo(const QString& key);
    /// With `home` the first row takes the cursor.
    void ContactListFocus(bool home);
    /// The first tab of both rows, as the star of the number pad asks.
    void SelectEverything();

    /// Moves the selection over: afterwards no contact is selected.
    void AddSelectedToRecipients();
    /// What the key Delete and the button do: asks for the edit password (not for the tabs favourites and
    /// private, whose rows it leaves alone), then ConfirmDeleteContacts.
    void DeleteSelectedContacts();
    /// Asks in a box whether the selected contacts shall leave their group, or from the tab "*" the address
    /// book, does it and builds the list anew. Nothing selected: nothing happens.
    void ConfirmDeleteContacts();
    /// Both take each selected contact out without asking, and leave the rows as they are; one that cannot be
    /// deleted is passed over.
    void DeleteContactsFromGroup();
    void DeleteContactsFromAddressBook();
    /// Asks for a name and makes a group of the rows of `list`, or of the selected ones alone; private
    /// contacts are left out.
    void CreateGroupFromSelection(const ListView& list, bool onlySelected);

private:
    void PlacePanels();
    void ConnectPanels();
    void ToggleSortBy();
    void ShowContactMenu(const QPoint& position);
    void RunMenuEntry(int entry);
    /// Empties the list and what mirrors it. The number of the filling that begins with it.
    [[nodiscard]] int BeginFilling();
    /// Shows the rows that were read for the filling `filling`, unless another one has begun since: then the
    /// list belongs to that one.
    void ShowRows(std::unique_ptr<engine::Recordset> rows, int filling, const QString& failurePrefix);
    [[nodiscard]] ListView& Contacts();

    PhonebookSide m_side;
    ContactListPanel* m_list;
    GroupTabsPanel* m_tabs;
    ContactDetailPanel* m_details;
    int m_filling = 0;
};
