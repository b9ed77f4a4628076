#include "controls/frmGeneralInfo.h"

#include "controls/FormTools.h"
#include "controls/ModalDoor.h"

#include <QDialogButtonBox>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int CharsWide = 64;
constexpr int LinesShown = 12;

}  // namespace

frmGeneralInfo::frmGeneralInfo(QWidget* parent) : QDialog(parent), m_txtMessage(new QPlainTextEdit(this)) {
    setObjectName(QStringLiteral("frmGeneralInfo"));
    m_txtMessage->setObjectName(QStringLiteral("txtMessage"));
    m_txtMessage->setAccessibleName(QStringLiteral("Information"));
    m_txtMessage->setReadOnly(true);
    m_txtMessage->setTabChangesFocus(true);
    m_txtMessage->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_txtMessage->setMinimumSize(fontMetrics().averageCharWidth() * CharsWide,
                                 fontMetrics().lineSpacing() * LinesShown);
    auto* buttons = new QDialogButtonBox(this);
    QPushButton* okay = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
    okay->setObjectName(QStringLiteral("cmdOK"));
    okay->setAccessibleName(QStringLiteral("OK"));
    okay->setDefault(true);
    auto* column = new QVBoxLayout(this);
    column->addWidget(m_txtMessage, 1);
    column->addWidget(buttons);
    connect(okay, &QAbstractButton::clicked, this, &QWidget::hide);
    FormTools::SetFormCaption(*this, QString());
    okay->setFocus();
}

void frmGeneralInfo::SetTitle(const QString& title) {
    FormTools::SetFormCaption(*this, title);
    FormTools::KeepTitleWhole(*this);
}

void frmGeneralInfo::SetMessaage(const QString& text) {
    m_txtMessage->setPlainText(QString(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
}

void ShowGeneralInfo(ModalDoor& door, QWidget& owner, const QString& title, const QString& message) {
    // The owner may go meanwhile, and the form with it.
    const QPointer<frmGeneralInfo> form(new frmGeneralInfo(&owner));
    form->SetTitle(title);
    form->SetMessaage(message);
    door.ShowModal(*form, &owner);
    delete form.data();
}
