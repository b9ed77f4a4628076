#include "compose/frmConfirmRecipient.h"

#include "addressbook/ContactList.h"
#include "controls/FormTools.h"
#include "controls/ListView.h"
#include "core/Trap.h"
#include "platform/Clock.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int RowsShown = 8;

}  // namespace

frmConfirmRecipient::frmConfirmRecipient(ContactList& recipientContacts, const Clock& clock, QWidget* parent)
    : QDialog(parent), m_recipientContacts(recipientContacts), m_lvRecipient(new ListView(this)) {
    setObjectName(QStringLiteral("frmConfirmRecipient"));
    auto* please = new QLabel(
        QStringLiteral("You must confirm which of the following recipients are to receive your message."),
        this);
    please->setObjectName(QStringLiteral("Please"));
    please->setWordWrap(true);
    m_lvRecipient->setObjectName(QStringLiteral("lvRecipient"));
    m_lvRecipient->setAccessibleName(QStringLiteral("Recipients to confirm"));
    m_lvRecipient->Rows().SetCheckable(true);
    m_lvRecipient->setMinimumHeight(m_lvRecipient->fontMetrics().height() * (RowsShown + 2));

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* okay = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
    okay->setObjectName(QStringLiteral("cmdOkay"));
    okay->setAccessibleName(QStringLiteral("OK"));
    okay->setDefault(true);
    QPushButton* cancel = buttons->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    cancel->setAccessibleName(QStringLiteral("Cancel"));

    auto* column = new QVBoxLayout(this);
    column->addWidget(please);
    column->addWidget(m_lvRecipient, 1);
    column->addWidget(buttons);

    connect(m_lvRecipient, &ListView::ItemDoubleClicked, this, &frmConfirmRecipient::ToggleRow);
    connect(m_lvRecipient, &ListView::EnterPressed, this, &frmConfirmRecipient::AcceptTicked);
    connect(okay, &QPushButton::clicked, this, &frmConfirmRecipient::AcceptTicked);
    connect(cancel, &QPushButton::clicked, this, &QWidget::hide);

    FormTools::SetFormCaption(*this, QStringLiteral("Confirm Recipients"));
    FormTools::KeepTitleWhole(*this);
    FormTools::ExpandPlaceholders(*this, clock.Now().date().year());
}

void frmConfirmRecipient::SetRecipients(ListView& list) {
    m_recipients = &list;
    QList<ListRow> rows;
    for (int row = 0; row < list.Rows().Count(); ++row) {
        const ListRow& source = list.Rows().At(row);
        const Contact* contact = m_recipientContacts.ContactByKey(source.Key);
        if (contact != nullptr && contact->IsConfirmSend) {
            ListRow shown;
            shown.Key = source.Key;
            shown.Text = source.Text;
            shown.IsChecked = true;
            rows.append(shown);
        }
    }
    m_lvRecipient->Rows().Assign(rows);
}

void frmConfirmRecipient::ToggleRow(const QString& key) {
    RowModel& rows = m_lvRecipient->Rows();
    const int row = rows.RowOf(key);
    if (row >= 0) {
        const bool isChecked = rows.At(row).IsChecked;
        rows.setData(rows.index(row), isChecked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    }
}

void frmConfirmRecipient::AcceptTicked() {
    m_isCanceled = false;
    QStringList refused;
    const RowModel& rows = m_lvRecipient->Rows();
    for (int row = 0; row < rows.Count(); ++row) {
        if (!rows.At(row).IsChecked) {
            refused.append(rows.At(row).Key);
        }
    }
    if (m_recipients != nullptr) {
        m_recipients->Rows().RemoveKeys(refused);
    }
    for (const QString& key : refused) {
        Trap([&] { m_recipientContacts.RemoveByKey(key); });
    }
    hide();
}
