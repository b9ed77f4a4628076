#include "addressbook/ContactListPanel.h"

#include "addressbook/ContactButtonsPanel.h"
#include "addressbook/ContactItems.h"
#include "addressbook/ContactList.h"
#include "controls/Icons.h"
#include "controls/ListView.h"
#include "controls/ShrinkButton.h"

#include <QBoxLayout>
#include <QGridLayout>

namespace {

/// Places in the grid: the row of buttons is as wide as the list and what stands beside it.
enum Row { ListPlace, ButtonPlace };
enum Column { BesideList, ListColumn, ColumnCount };

}  // namespace

ContactListPanel::ContactListPanel(QWidget* parent)
    : QWidget(parent), m_places(new QGridLayout(this)), m_lvContacts(new ListView(this)) {
    m_lvContacts->setObjectName(QStringLiteral("lvContacts"));
    m_lvContacts->setAccessibleName(tr("Contacts"));
    m_lvContacts->setAlternatingRowColors(true);
    m_lvContacts->SetImage(ContactItems::ConfirmImage, Icons::Get(QStringLiteral("confirm")));
    m_lvContacts->SetDragOut(true);
    m_cmdSortBy =
        new ShrinkButton(QStringLiteral("cmdSortBy"), QString(), QStringLiteral("F"), QString(), this);
    m_buttons = new ContactButtonsPanel(this);
    m_cmdSearch = new ShrinkButton(QStringLiteral("cmdSearch"), QStringLiteral("search"), tr("Search"),
                                   QStringLiteral(" Search Contacts "), this);
    m_cmdPrint = new ShrinkButton(QStringLiteral("cmdPrint"), QStringLiteral("print"), tr("Print"),
                                  QStringLiteral(" Print Contacts "), this);
    m_cmdSearch->setEnabled(false);
    m_cmdPrint->setEnabled(false);
    auto* row = new QHBoxLayout;
    row->setSpacing(2);
    row->addWidget(m_cmdSortBy);
    row->addWidget(m_buttons);
    row->addStretch(1);
    row->addWidget(m_cmdSearch);
    row->addWidget(m_cmdPrint);
    m_places->setContentsMargins(0, 0, 0, 0);
    m_places->setSpacing(4);
    m_places->setRowStretch(ListPlace, 1);
    m_places->setColumnStretch(ListColumn, 1);
    m_places->addWidget(m_lvContacts, ListPlace, ListColumn);
    m_places->addLayout(row, ButtonPlace, 0, 1, ColumnCount);
}

void ContactListPanel::PutBesideList(QWidget& column) {
    m_places->addWidget(&column, ListPlace, BesideList);
    setTabOrder(&column, m_lvContacts);
}

void ContactListPanel::FillContactList(const ContactList& contacts, qint32 sortBy) {
    const RedrawOff still(*m_lvContacts);
    QStringList keys;
    keys.reserve(contacts.Count());
    for (const Contact& contact : contacts.list()) {
        keys.append(contact.Key);
    }
    m_lvContacts->Rows().Assign(keys, [&contacts, sortBy](const QString& key) {
        const Contact* const contact = contacts.ContactByKey(key);
        return contact != nullptr ? ContactItems::RowOf(*contact, sortBy) : ListRow();
    });
}

void ContactListPanel::ShowSortBy(qint32 sortBy) {
    const bool isByFirstname = sortBy != 0;
    m_cmdSortBy->setText(isByFirstname ? QStringLiteral("S") : QStringLiteral("F"));
    m_cmdSortBy->setToolTip(isByFirstname ? QStringLiteral(" Sort contacts by their surnames ")
                                          : QStringLiteral(" Sort contacts by their firstnames "));
    m_cmdSortBy->setAccessibleName(m_cmdSortBy->toolTip().trimmed());
}
