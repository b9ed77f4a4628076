#include "setup/frmPassword.h"

#include "controls/FormTools.h"
#include "platform/Clock.h"
#include "ui_frmPassword.h"

#include <QKeyEvent>

frmPassword::frmPassword(const Clock& clock, QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::frmPassword>()) {
    m_ui->setupUi(this);
    FormTools::ExpandPlaceholders(*this, clock.Now().date().year());
    FormTools::KeepTitleWhole(*this);
    m_ui->txtPassword->installEventFilter(this);
}

frmPassword::~frmPassword() = default;

QString frmPassword::Password() const {
    return m_ui->txtPassword->text();
}

bool frmPassword::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_ui->txtPassword || event->type() != QEvent::KeyPress) {
        return QDialog::eventFilter(watched, event);
    }
    const auto* key = static_cast<const QKeyEvent*>(event);
    const bool isEnter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    if (!isEnter && key->key() != Qt::Key_Escape) {
        return false;
    }
    // The key that opened the dialog may still be held down; its repeats are no answer.
    if (!key->isAutoRepeat()) {
        m_isCanceled = !isEnter;
        hide();
    }
    return true;
}
