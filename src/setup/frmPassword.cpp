#include "setup/frmPassword.h"

#include "controls/FormTools.h"
#include "platform/Clock.h"

#include <QGroupBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {

constexpr int EntryChars = 40;

}  // namespace

frmPassword::frmPassword(const Clock& clock, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmPassword"));
    auto* frame = new QGroupBox(QStringLiteral("Password"), this);
    frame->setObjectName(QStringLiteral("gbMain"));
    m_txtPassword = new QLineEdit(frame);
    m_txtPassword->setObjectName(QStringLiteral("txtPassword"));
    m_txtPassword->setAccessibleName(QStringLiteral("Password"));
    m_txtPassword->setEchoMode(QLineEdit::Password);
    m_txtPassword->setMinimumWidth(m_txtPassword->fontMetrics().averageCharWidth() * EntryChars);
    m_txtPassword->installEventFilter(this);

    auto* inner = new QVBoxLayout(frame);
    inner->addWidget(m_txtPassword);
    auto* column = new QVBoxLayout(this);
    column->addWidget(frame);
    column->setSizeConstraint(QLayout::SetFixedSize);

    FormTools::SetFormCaption(*this, QStringLiteral("Password"));
    FormTools::ExpandPlaceholders(*this, clock.Now().date().year());
}

QString frmPassword::Password() const {
    return m_txtPassword->text();
}

bool frmPassword::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_txtPassword || event->type() != QEvent::KeyPress) {
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
