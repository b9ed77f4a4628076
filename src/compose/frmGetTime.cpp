#include "compose/frmGetTime.h"

#include "controls/FormTools.h"
#include "controls/WheelGuard.h"
#include "platform/Clock.h"
#include "ui_frmGetTime.h"

#include <QPushButton>

frmGetTime::frmGetTime(const Clock& clock, QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::frmGetTime>()) {
    m_ui->setupUi(this);
    new WheelGuard(*m_ui->dtDate);
    new WheelGuard(*m_ui->dtTime);
    QPushButton* const ok = m_ui->buttons->button(QDialogButtonBox::Ok);
    ok->setObjectName(QStringLiteral("cmdOK"));
    QPushButton* const cancel = m_ui->buttons->button(QDialogButtonBox::Cancel);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    connect(ok, &QPushButton::clicked, this, [this] {
        m_isCanceled = false;
        hide();
    });
    connect(cancel, &QPushButton::clicked, this, [this] {
        m_isCanceled = true;
        hide();
    });
    Load(clock.Now());
}

frmGetTime::~frmGetTime() = default;

void frmGetTime::Load(const QDateTime& now) {
    FormTools::ExpandPlaceholders(*this, now.date().year());
    FormTools::KeepTitleWhole(*this);
    m_ui->dtDate->setDate(now.date());
    m_ui->dtDate->setMinimumDate(now.date());
    m_ui->dtDate->setMaximumDate(now.addYears(1).date());
    const int hour = now.time().hour() + 1;
    m_ui->dtTime->setTime(QTime(hour < 24 ? hour : 0, now.time().minute()));
}

QDateTime frmGetTime::SendTime() const {
    return {m_ui->dtDate->date(), m_ui->dtTime->time()};
}
