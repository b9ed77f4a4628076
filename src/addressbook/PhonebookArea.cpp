#include "addressbook/PhonebookArea.h"

#include "addressbook/ContactButtonsPanel.h"
#include "addressbook/ContactDetailPanel.h"
#include "addressbook/ContactItems.h"
#include "addressbook/ContactList.h"
#include "addressbook/ContactListPanel.h"
#include "addressbook/ContactMenu.h"
#include "addressbook/GroupTabsPanel.h"
#include "addressbook/PhonebookHost.h"
#include "addressbook/mdlTabControl.h"
#include "controls/ListView.h"
#include "controls/ShrinkButton.h"
#include "controls/WaitCursor.h"
#include "core/Log.h"
#include "core/Numbers.h"
#include "core/Product.h"
#include "core/Trap.h"
#include "platform/MessageBoxes.h"
#include "store/Phonebook.h"

#include <QBoxLayout>

namespace {

QString LastErrorOf(const PhonebookState& state) {
    return state.PhonebookDB != nullptr ? state.PhonebookDB->LastError() : QString();
}

}  // namespace

PhonebookArea::PhonebookArea(PhonebookSide side, QWidget* parent) : QFrame(parent), m_side(std::move(side)) {
    setObjectName(QStringLiteral("fraPhoneBook"));
    setAccessibleName(tr("Phonebook"));
    setFrameShape(QFrame::NoFrame);
    PlacePanels();
    ConnectPanels();
}

void PhonebookArea::PlacePanels() {
    m_list = new ContactListPanel;
    m_tabs = new GroupTabsPanel(m_side, *m_list, this);
    m_details = new ContactDetailPanel(this);
    m_details->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->addWidget(m_tabs, 1);
    all->addWidget(m_details);
}

void PhonebookArea::ConnectPanels() {
    connect(m_tabs, &GroupTabsPanel::ShowGroupNeeded, this, &PhonebookArea::ShowGroup);
    connect(&m_list->cmdSortBy(), &QAbstractButton::clicked, this, &PhonebookArea::ToggleSortBy);
    ListView* contacts = &Contacts();
    connect(contacts, &ListView::ItemClicked, this, &PhonebookArea::ShowContactInfo);
    connect(contacts, &ListView::ItemDoubleClicked, this, &PhonebookArea::AddSelectedToRecipients);
    connect(contacts, &ListView::EnterPressed, this, &PhonebookArea::AddSelectedToRecipients);
    connect(contacts, &ListView::DeletePressed, this, &PhonebookArea::DeleteSelectedContacts);
    connect(contacts, &ListView::ContextMenuRequested, this, &PhonebookArea::ShowContactMenu);
    connect(&m_list->Buttons(), &ContactButtonsPanel::DeleteClicked, this,
            &PhonebookArea::DeleteSelectedContacts);
}

ListView& PhonebookArea::Contacts() {
    return m_list->lvContacts();
}

void PhonebookArea::InitAlphaTabs() {
    m_tabs->InitAlphaTabs();
}

void PhonebookArea::InitGroupTabs() {
    m_tabs->InitGroupTabs();
}

void PhonebookArea::InitUserHeaders() {
    m_details->ShowHeaders(mdlPhonebook::GetUserFieldHeaders(m_side.Phonebook.State));
}

void PhonebookArea::InitSortBy() {
    SetSortBy();
}

void PhonebookArea::SetSortBy() {
    m_list->ShowSortBy(m_side.SortBy);
    if (m_side.IsInitialising) {
        return;
    }
    ShowGroup();
    Trap([this] { m_side.Host.RefreshRecipientList(); });
    ContactListFocus(true);
}

void PhonebookArea::ToggleSortBy() {
    m_side.SortBy = m_side.SortBy == 0 ? 1 : 0;
    SetSortBy();
}

void PhonebookArea::SaveTabOrder() {
    m_tabs->SaveTabOrder();
}

void PhonebookArea::ShowGroup() {
    const RedrawOff still(Contacts());
    const WaitCursor wait(*window());
    const auto log = [this](const std::exception& failure) {
        m_side.AppLog.WriteFailureBriefly(QStringLiteral("ShowGroup Error: "), failure);
    };
    m_tabs->ShowWhatCounts();
    TrapTo(
        [this] {
            if (m_tabs->SelectedCaption() == QStringLiteral("*")) {
                ShowAlphaGroup(m_tabs->SelectedLetter());
            } else {
                ShowGroupMembers(Keys::Number(m_tabs->SelectedTag()));
            }
        },
        log);
}

int PhonebookArea::BeginFilling() {
    m_side.AddressContacts.Clear();
    Contacts().Rows().Clear();
    return ++m_filling;
}

void PhonebookArea::ShowAlphaGroup(const QString& letter) {
    const int filling = BeginFilling();
    ShowRows(mdlPhonebook::GetContacts(m_side.Phonebook.State, letter, m_side.SortBy), filling,
             QStringLiteral("GetContacts Error:"));
}

void PhonebookArea::ShowGroupMembers(qint32 groupID) {
    const int filling = BeginFilling();
    if (groupID == Keys::EveryoneTab || groupID == Keys::FavouritesTab || groupID == Keys::PrivateTab) {
        return;
    }
    const auto log = [this](const std::exception& failure) {
        m_side.AppLog.WriteFailureBriefly(QStringLiteral("ShowGroupMembers Error: "), failure);
    };
    TrapTo(
        [this, groupID, filling] {
            ShowRows(mdlPhonebook::GetGroupMembers(m_side.Phonebook.State, groupID), filling,
                     QStringLiteral("GetGroupMembers(%1) Error: ").arg(groupID));
        },
        log);
}

void PhonebookArea::ShowRows(std::unique_ptr<engine::Recordset> rows, int filling,
                             const QString& failurePrefix) {
    if (rows == nullptr) {
        m_side.AppLog.Write(failurePrefix + LastErrorOf(m_side.Phonebook.State));
        return;
    }
    // A read that has to wait lets events run, and they may choose another group.
    if (filling != m_filling) {
        return;
    }
    static_cast<void>(m_side.AddressContacts.Load(rows.get()));
    FillContactList(m_side.AddressContacts);
}

void PhonebookArea::FillContactList(const ContactList& contacts) {
    m_list->FillContactList(contacts, m_side.SortBy);
}

void PhonebookArea::UpdateContactItems(const Contact& contact) {
    const ListRow row = ContactItems::EditedRowOf(contact, m_side.SortBy);
    const bool isListed = Contacts().Rows().Update(contact.Key, row);
    Trap([&] { m_side.Host.UpdateRecipient(contact, isListed ? row.ToolTip : QString()); });
}

void PhonebookArea::SelectContact(qint32 id) {
    const QString key = Keys::ContactKey(id);
    const int row = Contacts().Rows().RowOf(key);
    if (row >= 0) {
        ShowContactInfo(QString());
        Contacts().EnsureVisible(row);
        Contacts().SelectKey(key);
        ShowContactInfo(key);
    }
    ContactListFocus(false);
}

void PhonebookArea::ShowContactInfo(const QString& key) {
    if (key.isEmpty()) {
        m_details->Clear();
    } else if (const Contact* contact = m_side.AddressContacts.ContactByKey(key)) {
        m_details->Show(*contact);
    }
}

void PhonebookArea::ContactListFocus(bool home) {
    Contacts().setFocus();
    if (home) {
        Contacts().GoHome();
    }
}

void PhonebookArea::SelectEverything() {
    m_tabs->tabGroup().Select(0);
    m_tabs->tabAlpha().Select(0);
}

void PhonebookArea::AddSelectedToRecipients() {
    const QStringList keys = Contacts().SelectedKeys();
    {
        const RedrawOff still(Contacts());
        Trap([&] { m_side.Host.AddKeysToRecipients(keys); });
        Contacts().UnselectAllRows();
    }
    if (!keys.isEmpty()) {
        // The place of the last one in this list is looked up in the other list.
        Trap([&] { m_side.Host.ScrollRecipientsTo(Contacts().Rows().RowOf(keys.last()) + 1); });
    }
    Trap([this] { m_side.Host.UpdateStateDisplay(); });
}

void PhonebookArea::ShowContactMenu(const QPoint& position) {
    QList<ContactMenu::Group> groups;
    const auto& tabs = m_tabs->tabGroup();
    for (int tab = 0; tab < tabs.Count(); ++tab) {
        const qint16 number = mdlTabControl::NumberOf(tabs, tab);
        if (number > 0) {
            groups.append({number, tabs.Caption(tab)});
        }
    }
    const Cmenu menu = ContactMenu::Build(m_tabs->SelectedNumber(), groups, m_side.FavouriteWord());
    RunMenuEntry(menu.TrackPopup(m_side.Door, position));
}

void PhonebookArea::RunMenuEntry(int entry) {
    if (entry == ContactMenu::AddToRecipients) {
        AddSelectedToRecipients();
        return;
    }
    if (entry == ContactMenu::NewGroup) {
        CreateGroupFromSelection(Contacts(), true);
        return;
    }
    if (entry == ContactMenu::AddToFavourites || entry == ContactMenu::Print) {
        return;
    }
    // A dismissed menu comes here as well, with a group that cannot be.
    QString keys;
    const QStringList selected = Contacts().SelectedKeys();
    for (const QString& key : selected) {
        keys += key + QStringLiteral("\t\r\n");
    }
    const auto group = Numbers::ToInt16(qint64{entry} - ContactMenu::FirstGroup);
    Trap([&] { mdlPhonebook::AddToGroup(m_side.Phonebook.State, group, keys); });
}

void PhonebookArea::CreateGroupFromSelection(const ListView& list, bool onlySelected) {
    m_tabs->CreateGroupFromSelection(list, onlySelected);
}

void PhonebookArea::DeleteSelectedContacts() {
    const qint16 tab = m_tabs->SelectedNumber();
    const bool isOwnList = tab == Keys::PrivateTab || tab == Keys::FavouritesTab;
    if (!isOwnList && !m_side.Host.IsPasswordOK(false)) {
        ContactListFocus(false);
        return;
    }
    {
        const WaitCursor wait(*window());
        if (!isOwnList) {
            ConfirmDeleteContacts();
        }
        ShowContactInfo(QString());
        ContactListFocus(false);
    }
}

void PhonebookArea::ConfirmDeleteContacts() {
    const QStringList keys = Contacts().SelectedKeys();
    if (keys.isEmpty()) {
        return;
    }
    const RowModel& rows = Contacts().Rows();
    const QString subject = keys.size() == 1 ? rows.At(rows.RowOf(keys.first())).Text
                                             : QString::number(keys.size()) + QStringLiteral(" Contacts");
    const bool isFromGroup = m_tabs->SelectedTag() != Keys::GroupTag(Keys::EveryoneTab);
    const QString question =
        isFromGroup ? QStringLiteral("REMOVE ") + subject + QStringLiteral(" from the ") +
                          m_tabs->SelectedCaption() + QStringLiteral(" Group")
                    : QStringLiteral("DELETE ") + subject + QStringLiteral(" from the Address Book");
    const BoxRequest request{Product::AppTitle, question, BoxIcon::Question, BoxButtons::YesNo};
    if (m_side.Boxes.Show(request) != BoxAnswer::Yes) {
        return;
    }
    isFromGroup ? DeleteContactsFromGroup() : DeleteContactsFromAddressBook();
    ShowGroup();
}

void PhonebookArea::DeleteContactsFromGroup() {
    const qint16 group = m_tabs->SelectedNumber();
    const QStringList keys = Contacts().SelectedKeys();
    for (const QString& key : keys) {
        Trap([&] { mdlPhonebook::RemoveFromGroup(m_side.Phonebook.State, group, Keys::Number(key)); });
    }
}

void PhonebookArea::DeleteContactsFromAddressBook() {
    const QStringList keys = Contacts().SelectedKeys();
    for (const QString& key : keys) {
        Trap([&] { mdlPhonebook::DeleteContact(m_side.Phonebook.State, Keys::Number(key)); });
    }
}
