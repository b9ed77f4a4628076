#include "compose/RecipientPanel.h"

#include "addressbook/ContactItems.h"
#include "addressbook/ContactList.h"
#include "controls/Icons.h"
#include "controls/ListView.h"
#include "core/Numbers.h"
#include "core/Trap.h"
#include "store/Phonebook.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>

#include <algorithm>

namespace {

const QString KeyEnd = QStringLiteral("\r\n");
const QString GroupTabs = QStringLiteral("tabGroup");
constexpr int LeastRows = 3;

}  // namespace

RecipientPanel::RecipientPanel(ContactList& addressContacts, ContactList& recipientContacts,
                               const PhonebookState& phonebook, const qint32& sortBy, QWidget* parent)
    : QWidget(parent),
      m_addressContacts(addressContacts),
      m_recipientContacts(recipientContacts),
      m_phonebook(phonebook),
      m_sortBy(sortBy),
      m_fraRecipients(new QGroupBox(this)),
      m_lvRecipients(new ListView(m_fraRecipients)),
      m_cmdClearRecipients(new QPushButton(QStringLiteral("Clear"), m_fraRecipients)) {
    m_fraRecipients->setObjectName(QStringLiteral("fraRecipients"));
    m_lvRecipients->setObjectName(QStringLiteral("lvRecipients"));
    m_lvRecipients->setAccessibleName(QStringLiteral("Recipients"));
    m_lvRecipients->SetImage(ContactItems::ConfirmImage, Icons::Get(QStringLiteral("confirm")));
    m_lvRecipients->SetDropIn(true);
    m_lvRecipients->setMinimumHeight(m_lvRecipients->fontMetrics().height() * (LeastRows + 1));
    m_cmdClearRecipients->setObjectName(QStringLiteral("cmdClearRecipients"));
    m_cmdClearRecipients->setAccessibleName(QStringLiteral("Clear recipients"));
    m_cmdClearRecipients->setToolTip(QStringLiteral(" Clear the recipient list "));
    m_cmdClearRecipients->setIcon(Icons::Get(QStringLiteral("clear")));
    m_cmdClearRecipients->setAutoDefault(false);

    auto* row = new QHBoxLayout(m_fraRecipients);
    row->addWidget(m_lvRecipients, 1);
    row->addWidget(m_cmdClearRecipients, 0, Qt::AlignTop);
    auto* column = new QHBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_fraRecipients);
    Connect();
    ShowRecipientCount();
}

void RecipientPanel::Connect() {
    connect(m_cmdClearRecipients, &QPushButton::clicked, this, &RecipientPanel::ClearPressed);
    connect(m_lvRecipients, &ListView::DeletePressed, this, [this] {
        RemoveSelectedRecipients();
        Q_EMIT RecipientsChanged();
    });
    connect(m_lvRecipients, &ListView::ItemDoubleClicked, this, [this] {
        // The current row, wherever in the list the click was.
        const QString key = m_lvRecipients->CurrentKey();
        if (!key.isEmpty()) {
            RemoveRecipient(key);
            Q_EMIT RecipientsChanged();
        }
    });
    connect(m_lvRecipients, &ListView::ContextMenuRequested, this, [this](const QPoint& position) {
        if (Count() > 0) {
            Q_EMIT MenuRequested(position);
        }
    });
    connect(m_lvRecipients, &ListView::TextDropped, this, [this](const QString& text, const QString& source) {
        if (source == GroupTabs) {
            DropGroupRecipients();
        } else if (AddDroppedKeys(text)) {
            Q_EMIT RecipientsChanged();
        }
    });
}

int RecipientPanel::Count() const {
    return m_lvRecipients->Rows().Count();
}

QStringList RecipientPanel::RecipientKeys() const {
    return m_lvRecipients->Rows().KeyList();
}

void RecipientPanel::ShowRecipientCount() {
    const QString caption = QStringLiteral("Recipient List");
    m_fraRecipients->setTitle(Count() > 0 ? caption + QStringLiteral(" [%1]").arg(Count()) : caption);
}

void RecipientPanel::AddKeysToRecipients(const QStringList& keys) {
    QList<ListRow> rows;
    rows.reserve(keys.size());
    for (const QString& key : keys) {
        const Contact* contact = m_addressContacts.ContactByKey(key);
        if (contact != nullptr) {
            Trap([&] { m_recipientContacts.Add(*contact); });
            rows.append(ContactItems::RowOf(*contact, m_sortBy));
        }
    }
    const RedrawOff quiet(*m_lvRecipients);
    m_lvRecipients->Rows().AddAll(rows);
}

void RecipientPanel::AddKeyToRecipients(const QString& key, bool ensureVisible) {
    const Contact* contact = m_addressContacts.ContactByKey(key);
    if (contact != nullptr) {
        Trap([&] { m_recipientContacts.Add(*contact); });
        Trap([&] { ContactItems::AddContactItem(*m_lvRecipients, *contact, ensureVisible, m_sortBy); });
    }
}

void RecipientPanel::DropGroupByID(qint32 groupID) {
    const auto members = mdlPhonebook::GetGroupMembers(m_phonebook, groupID);
    if (members == nullptr) {
        return;
    }
    QList<ListRow> rows;
    Trap([&] {
        for (; !members->EndOfFile(); members->MoveNext()) {
            Trap([&] {
                const QString key = Keys::ContactKey(Numbers::NullToLong(members->Value(u"cntID")));
                Contact contact;
                if (m_recipientContacts.ContactByKey(key) == nullptr && contact.Load(*members)) {
                    rows.append(ContactItems::RowOf(m_recipientContacts.Add(contact), m_sortBy));
                }
            });
        }
    });
    if (rows.isEmpty()) {
        return;
    }
    {
        const RedrawOff quiet(*m_lvRecipients);
        m_lvRecipients->Rows().AddAll(rows);
    }
    mdlListViewBugFix::ScrollToItem(*m_lvRecipients, m_lvRecipients->Rows().RowOf(rows.last().Key) + 1);
}

bool RecipientPanel::AddDroppedKeys(const QString& text) {
    if (!text.contains(KeyEnd)) {
        return false;
    }
    AddKeysToRecipients(text.split(KeyEnd, Qt::SkipEmptyParts));
    return true;
}

void RecipientPanel::RefreshRecipientList() {
    QList<ListRow> rows;
    rows.reserve(m_recipientContacts.Count());
    for (const Contact& contact : m_recipientContacts.list()) {
        rows.append(ContactItems::RowOf(contact, m_sortBy));
    }
    const bool isChanged = rows.size() != Count();
    {
        const RedrawOff quiet(*m_lvRecipients);
        m_lvRecipients->Rows().Assign(rows);
    }
    m_lvRecipients->viewport()->update();
    if (isChanged) {
        Q_EMIT RecipientsChanged();
    }
}

void RecipientPanel::RemoveSelectedRecipients() {
    const QStringList keys = m_lvRecipients->SelectedKeys();
    if (!keys.isEmpty()) {
        const int first = m_lvRecipients->Rows().RowOf(keys.first());
        RemoveRows(keys);
        PutCursorNear(first);
    }
}

void RecipientPanel::RemoveRows(const QStringList& keys) {
    const RedrawOff quiet(*m_lvRecipients);
    m_lvRecipients->Rows().RemoveKeys(keys);
}

void RecipientPanel::RemoveRecipient(const QString& key) {
    const int row = m_lvRecipients->Rows().RowOf(key);
    Trap([&] { m_recipientContacts.RemoveByKey(key); });
    RemoveRows({key});
    PutCursorNear(row);
}

void RecipientPanel::PutCursorNear(int row) {
    if (Count() > 0) {
        const QModelIndex index = m_lvRecipients->model()->index(std::clamp(row, 0, Count() - 1), 0);
        m_lvRecipients->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    }
}

void RecipientPanel::Clear() {
    m_lvRecipients->Rows().Clear();
}

bool RecipientPanel::HasConfirmRecipients() const {
    const RowModel& rows = m_lvRecipients->Rows();
    for (int row = 0; row < rows.Count(); ++row) {
        const Contact* contact = m_recipientContacts.ContactByKey(rows.At(row).Key);
        if (contact != nullptr && contact->IsConfirmSend) {
            return true;
        }
    }
    return false;
}

void RecipientPanel::UpdateRecipient(const Contact& contact, const QString& toolTip) {
    if (!toolTip.isEmpty()) {
        ListRow row = ContactItems::RowOf(contact, m_sortBy);
        row.ToolTip = toolTip;
        m_lvRecipients->Rows().Update(contact.Key, row);
    }
    Contact* copy = m_recipientContacts.ContactByKey(contact.Key);
    if (copy != nullptr) {
        copy->Surname = contact.Surname;
        copy->Firstnames = contact.Firstnames;
        copy->PhoneNumber = contact.PhoneNumber;
        copy->IsConfirmSend = contact.IsConfirmSend;
        copy->IsPrivate = contact.IsPrivate;
        copy->Note = contact.Note;
    }
}
