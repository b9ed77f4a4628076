#include "addressbook/ContactButtonsPanel.h"

#include "controls/ShrinkButton.h"

#include <QBoxLayout>

ContactButtonsPanel::ContactButtonsPanel(QWidget* parent)
    : QWidget(parent),
      m_cmdAddContact(new ShrinkButton(QStringLiteral("cmdAddContact"), QStringLiteral("add"), tr("Add"),
                                       QStringLiteral(" Add New Contact "), this)),
      m_cmdEditContact(new ShrinkButton(QStringLiteral("cmdEditContact"), QStringLiteral("edit"), tr("Edit"),
                                        QStringLiteral(" Edit Contact "), this)),
      m_cmdDeleteContact(new ShrinkButton(QStringLiteral("cmdDeleteContact"), QStringLiteral("delete"),
                                          tr("Delete"), QStringLiteral(" Delete Contact "), this)) {
    m_cmdAddContact->setEnabled(false);
    m_cmdEditContact->setEnabled(false);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    row->addWidget(m_cmdAddContact);
    row->addWidget(m_cmdEditContact);
    row->addWidget(m_cmdDeleteContact);
    connect(m_cmdDeleteContact, &QAbstractButton::clicked, this, &ContactButtonsPanel::DeleteClicked);
}
