#include "compose/frmConfirmRecipient.h"

#include "addressbook/ContactList.h"
#include "controls/FormTools.h"
#include "core/Trap.h"
#include "platform/Clock.h"
#include "ui_frmConfirmRecipient.h"

#include <QPushButton>

namespace {

constexpr int RowsShown = 8;

}  // namespace

frmConfirmRecipient::frmConfirmRecipient(ContactList& recipientContacts, const Clock& clock, QWidget* parent)
    : QDialog(parent),
      m_ui(std::make_unique<Ui::frmConfirmRecipient>()),
      m_recipientContacts(recipientContacts) {
    m_ui->setupUi(this);
    FormTools::ExpandPlaceholders(*this, clock.Now().date().year());
    FormTools::KeepTitleWhole(*this);
    m_ui->lvRecipient->Rows().SetCheckable(true);
    m_ui->lvRecipient->setMinimumHeight(fontMetrics().height() * (RowsShown + 2));
    QPushButton* const okay = m_ui->buttons->button(QDialogButtonBox::Ok);
    okay->setObjectName(QStringLiteral("cmdOkay"));
    QPushButton* const cancel = m_ui->buttons->button(QDialogButtonBox::Cancel);
    cancel->setObjectName(QStringLiteral("cmdCancel"));

    connect(m_ui->lvRecipient, &ListView::ItemDoubleClicked, this, &frmConfirmRecipient::ToggleRow);
    connect(m_ui->lvRecipient, &ListView::EnterPressed, this, &frmConfirmRecipient::AcceptTicked);
    connect(okay, &QPushButton::clicked, this, &frmConfirmRecipient::AcceptTicked);
    connect(cancel, &QPushButton::clicked, this, &QWidget::hide);
}

frmConfirmRecipient::~frmConfirmRecipient() = default;

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
    m_ui->lvRecipient->Rows().Assign(rows);
}

void frmConfirmRecipient::ToggleRow(const QString& key) {
    RowModel& rows = m_ui->lvRecipient->Rows();
    const int row = rows.RowOf(key);
    if (row >= 0) {
        const bool isChecked = rows.At(row).IsChecked;
        rows.setData(rows.index(row), isChecked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    }
}

void frmConfirmRecipient::AcceptTicked() {
    m_isCanceled = false;
    QStringList refused;
    const RowModel& rows = m_ui->lvRecipient->Rows();
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
