#include "addressbook/frmTabName.h"

#include "controls/FormTools.h"
#include "core/TextRules.h"
#include "platform/Clock.h"
#include "platform/Sound.h"
#include "ui_frmTabName.h"

#include <QKeyEvent>

frmTabName::frmTabName(Sound& speaker, const Clock& clock)
    : m_ui(std::make_unique<Ui::frmTabName>()), m_speaker(speaker) {
    m_ui->setupUi(this);
    FormTools::ExpandPlaceholders(*this, clock.Now().date().year());
    FormTools::KeepTitleWhole(*this);
    m_ui->txtName->installEventFilter(this);
}

frmTabName::~frmTabName() = default;

QString frmTabName::EditValue() const {
    return Text::Trim(m_ui->txtName->text());
}

void frmTabName::SetEditValue(const QString& value) {
    m_ui->txtName->setText(Text::Trim(value));
    FormTools::CaretToEnd(*m_ui->txtName);
}

void frmTabName::setVisible(bool isVisible) {
    QDialog::setVisible(isVisible);
    if (isVisible) {
        // The first focus of a dialog selects the whole text.
        m_ui->txtName->end(false);
    }
}

bool frmTabName::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) {
        return QDialog::eventFilter(watched, event);
    }
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
        // A key still held down from the menu before is no answer.
        if (!key.isAutoRepeat()) {
            TakeName();
        }
        return true;
    }
    if (key.matches(QKeySequence::SelectAll)) {
        FormTools::SelectAllText(*m_ui->txtName, false);
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void frmTabName::TakeName() {
    if (EditValue() == QStringLiteral("*")) {
        m_speaker.Beep();
        FormTools::SelectAllText(*m_ui->txtName, true);
        return;
    }
    m_isCanceled = false;
    hide();
}
