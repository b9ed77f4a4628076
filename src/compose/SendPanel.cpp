#include "compose/SendPanel.h"

#include "compose/SendButton.h"
#include "controls/Icons.h"

#include <QHBoxLayout>

SendPanel::SendPanel(QWidget* parent)
    : QFrame(parent),
      m_cmdSendLater(new SendButton(QStringLiteral("Send &Later..."), this)),
      m_cmdSendNow(new SendButton(QStringLiteral("&Send Now"), this)) {
    setObjectName(QStringLiteral("fraSendButtons"));
    setAccessibleName(QStringLiteral("Send"));

    m_cmdSendLater->setObjectName(QStringLiteral("cmdSendLater"));
    m_cmdSendLater->setAccessibleName(QStringLiteral("Send later"));
    m_cmdSendLater->setToolTip(QStringLiteral(" Send this message at a time of your choice "));
    m_cmdSendNow->setObjectName(QStringLiteral("cmdSendNow"));
    m_cmdSendNow->setAccessibleName(QStringLiteral("Send now"));
    m_cmdSendNow->setToolTip(
        QStringLiteral(" Send this message now. Hold Ctrl to keep it for another send. "));
    m_cmdSendLater->setIcon(Icons::Get(QStringLiteral("send-later")));
    m_cmdSendNow->setIcon(Icons::Get(QStringLiteral("send")));
    m_cmdSendNow->setDefault(true);
    QFont bold = m_cmdSendNow->font();
    bold.setBold(true);
    m_cmdSendNow->setFont(bold);
    for (SendButton* button : {m_cmdSendLater, m_cmdSendNow}) {
        button->setMinimumSize(button->sizeHint() + QSize(28, 8));
    }

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addStretch();
    row->addWidget(m_cmdSendLater);
    row->addWidget(m_cmdSendNow);

    connect(m_cmdSendLater, &QPushButton::clicked, this, &SendPanel::SendLaterPressed);
    connect(m_cmdSendNow, &QPushButton::clicked, this, &SendPanel::SendNowPressed);
}

void SendPanel::SetSendingEnabled(bool enabled) {
    m_cmdSendLater->setEnabled(enabled);
    m_cmdSendNow->setEnabled(enabled);
}
