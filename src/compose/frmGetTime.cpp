#include "compose/frmGetTime.h"

#include "controls/FormTools.h"
#include "controls/WheelGuard.h"
#include "platform/Clock.h"

#include <QDateEdit>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <QTimeEdit>

frmGetTime::frmGetTime(const Clock& clock, QWidget* parent)
    : QDialog(parent), m_dtDate(new QDateEdit(this)), m_dtTime(new QTimeEdit(this)) {
    setObjectName(QStringLiteral("frmGetTime"));
    m_dtDate->setObjectName(QStringLiteral("dtDate"));
    m_dtDate->setAccessibleName(QStringLiteral("Date to send on"));
    m_dtDate->setCalendarPopup(true);
    m_dtTime->setObjectName(QStringLiteral("dtTime"));
    m_dtTime->setAccessibleName(QStringLiteral("Time to send at"));
    new WheelGuard(*m_dtDate);
    new WheelGuard(*m_dtTime);

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* ok = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setAccessibleName(QStringLiteral("OK"));
    ok->setDefault(true);
    QPushButton* cancel = buttons->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    cancel->setAccessibleName(QStringLiteral("Cancel"));

    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(QStringLiteral("&Date:"), m_dtDate);
    form->addRow(QStringLiteral("&Time:"), m_dtTime);
    auto* column = new QVBoxLayout(this);
    column->addLayout(form);
    column->addSpacing(8);
    column->addStretch();
    column->addWidget(buttons);

    connect(ok, &QPushButton::clicked, this, [this] {
        m_isCanceled = false;
        hide();
    });
    connect(cancel, &QPushButton::clicked, this, [this] {
        m_isCanceled = true;
        hide();
    });
    Load(clock.Now());
    FormTools::KeepTitleWhole(*this);
}

void frmGetTime::Load(const QDateTime& now) {
    FormTools::SetFormCaption(*this, QStringLiteral("Schedule"));
    m_dtDate->setDate(now.date());
    m_dtDate->setMinimumDate(now.date());
    m_dtDate->setMaximumDate(now.addYears(1).date());
    m_dtTime->setDisplayFormat(QStringLiteral("HH:mm"));
    const int hour = now.time().hour() + 1;
    m_dtTime->setTime(QTime(hour < 24 ? hour : 0, now.time().minute()));
    FormTools::ExpandPlaceholders(*this, now.date().year());
}

QDateTime frmGetTime::SendTime() const {
    return {m_dtDate->date(), m_dtTime->time()};
}
