#include "addressbook/ContactDetailPanel.h"

#include "addressbook/Contact.h"
#include "controls/ElidedLabel.h"

#include <QGridLayout>

ContactDetailPanel::ContactDetailPanel(QWidget* parent)
    : QGroupBox(parent), m_lblPhone(new ElidedLabel(this)), m_lblNote(new ElidedLabel(this)) {
    setObjectName(QStringLiteral("fraContactDetail"));
    setTitle(tr("Contact"));
    setAccessibleName(tr("Details of the contact"));
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(10, 4, 10, 6);
    grid->setHorizontalSpacing(10);
    grid->setVerticalSpacing(2);
    grid->setColumnStretch(1, 1);
    AddRow(QStringLiteral("lblPhoneCaption"), tr("Phone :"), m_lblPhone, QStringLiteral("lblPhone"));
    AddRow(QStringLiteral("lblNoteCaption"), tr("Note :"), m_lblNote, QStringLiteral("lblNote"));
    for (size_t i = 0; i < m_userData.size(); ++i) {
        m_userData[i] = new ElidedLabel(this);
        m_lblUserHeader[i] = AddRow(QStringLiteral("lblUserHeader%1").arg(i), tr("User %1 :").arg(i + 1),
                                    m_userData[i], QStringLiteral("UserData%1").arg(i));
    }
}

QLabel* ContactDetailPanel::AddRow(const QString& captionName, const QString& caption, ElidedLabel* value,
                                   const QString& valueName) {
    auto* grid = static_cast<QGridLayout*>(layout());
    const int row = grid->rowCount();
    auto* label = new QLabel(caption, this);
    label->setObjectName(captionName);
    label->setAccessibleName(caption);
    label->setTextFormat(Qt::PlainText);
    label->setForegroundRole(QPalette::PlaceholderText);
    value->setObjectName(valueName);
    value->setAccessibleName(caption);
    grid->addWidget(label, row, 0);
    grid->addWidget(value, row, 1);
    return label;
}

void ContactDetailPanel::ShowHeaders(const QStringList& captions) {
    for (size_t i = 0; i < m_lblUserHeader.size() && static_cast<qsizetype>(i) < captions.size(); ++i) {
        const QString caption = captions[static_cast<qsizetype>(i)] + QStringLiteral(" :");
        m_lblUserHeader[i]->setText(caption);
        m_lblUserHeader[i]->setAccessibleName(caption);
        m_userData[i]->setAccessibleName(caption);
    }
}

void ContactDetailPanel::Show(const Contact& contact) {
    m_lblPhone->setText(contact.IsPrivate ? QStringLiteral("Private Number") : contact.PhoneNumber);
    m_lblNote->setText(contact.Note);
    for (size_t i = 0; i < m_userData.size(); ++i) {
        m_userData[i]->setText(contact.GetUserData(static_cast<int>(i)));
    }
}

void ContactDetailPanel::Clear() {
    m_lblPhone->clear();
    m_lblNote->clear();
    for (ElidedLabel* value : m_userData) {
        value->clear();
    }
}
