#include "addressbook/ContactDetailPanel.h"

#include "addressbook/Contact.h"
#include "controls/ElidedLabel.h"

#include <QGridLayout>

ContactDetailPanel::ContactDetailPanel(QWidget* parent) : QGroupBox(parent) {
    setObjectName(QStringLiteral("fraContactDetail"));
    setTitle(tr("Contact"));
    setAccessibleName(tr("Details of the contact"));
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(10, 4, 10, 6);
    grid->setHorizontalSpacing(10);
    grid->setVerticalSpacing(2);
    grid->setColumnStretch(1, 1);
    m_phone = AddRow(QStringLiteral("lblPhoneCaption"), tr("Phone :"), QStringLiteral("lblPhone"));
    m_note = AddRow(QStringLiteral("lblNoteCaption"), tr("Note :"), QStringLiteral("lblNote"));
    for (size_t i = 0; i < m_user.size(); ++i) {
        m_user[i] = AddRow(QStringLiteral("lblUserHeader%1").arg(i), tr("User %1 :").arg(i + 1),
                           QStringLiteral("UserData%1").arg(i));
    }
}

ContactDetailPanel::Field ContactDetailPanel::AddRow(const QString& captionName, const QString& caption,
                                                     const QString& valueName) {
    auto* grid = static_cast<QGridLayout*>(layout());
    const int row = grid->rowCount();
    const Field field{new QLabel(caption, this), new ElidedLabel(this)};
    field.Caption->setObjectName(captionName);
    field.Caption->setAccessibleName(caption);
    field.Caption->setTextFormat(Qt::PlainText);
    field.Caption->setForegroundRole(QPalette::PlaceholderText);
    field.Value->setObjectName(valueName);
    grid->addWidget(field.Caption, row, 0);
    grid->addWidget(field.Value, row, 1);
    SetValue(field, QString());
    return field;
}

void ContactDetailPanel::SetValue(const Field& field, const QString& value) {
    field.Value->setText(value);
    field.Value->setAccessibleName(field.Caption->text() + u' ' + value);
}

void ContactDetailPanel::ShowHeaders(const QStringList& captions) {
    for (size_t i = 0; i < m_user.size() && static_cast<qsizetype>(i) < captions.size(); ++i) {
        const QString caption = captions[static_cast<qsizetype>(i)] + QStringLiteral(" :");
        m_user[i].Caption->setText(caption);
        m_user[i].Caption->setAccessibleName(caption);
        SetValue(m_user[i], m_user[i].Value->text());
    }
}

void ContactDetailPanel::Show(const Contact& contact) {
    SetValue(m_phone, contact.IsPrivate ? QStringLiteral("Private Number") : contact.PhoneNumber);
    SetValue(m_note, contact.Note);
    for (size_t i = 0; i < m_user.size(); ++i) {
        SetValue(m_user[i], contact.GetUserData(static_cast<int>(i)));
    }
}

void ContactDetailPanel::Clear() {
    SetValue(m_phone, QString());
    SetValue(m_note, QString());
    for (const Field& field : m_user) {
        SetValue(field, QString());
    }
}
