#include "shell/frmAbout.h"

#include "controls/FormTools.h"
#include "controls/Icons.h"
#include "core/Product.h"
#include "platform/UrlOpener.h"
#include "ui_frmAbout.h"

#include <QApplication>
#include <QEvent>

namespace {

constexpr int PictureSide = 72;
constexpr double TitleScale = 1.6;

}  // namespace

frmAbout::frmAbout(int year, const QString& version, qint32 phonebookVersion, UrlOpener& web)
    : m_ui(std::make_unique<Ui::frmAbout>()) {
    m_ui->setupUi(this);
    m_ui->imgAbout->setPixmap(
        Icons::Get(QStringLiteral("larkspan")).pixmap(QSize(PictureSide, PictureSide), devicePixelRatioF()));
    QFont title = m_ui->lblApp->font();
    title.setPointSizeF(title.pointSizeF() * TitleScale);
    title.setWeight(QFont::DemiBold);
    m_ui->lblApp->setFont(title);
    m_ui->lblVer->setText(QStringLiteral("Ver.%1  PB.%2").arg(version).arg(phonebookVersion));
    m_ui->lblManufacturer->setText(Product::Company);
    m_ui->lblManufacturer->setCursor(Qt::PointingHandCursor);
    TakeColours();
    QFont link = m_ui->lblManufacturer->font();
    link.setUnderline(true);
    m_ui->lblManufacturer->setFont(link);
    FormTools::ExpandPlaceholders(*this, year);
    FormTools::BreakLines(*this);
    FormTools::KeepTitleWhole(*this);
    connect(m_ui->lblManufacturer, &QAbstractButton::clicked, this, [&web] { web.Open(Product::HomePage); });
    connect(m_ui->cmdClose, &QAbstractButton::clicked, this, &QWidget::hide);
    m_ui->cmdClose->setFocus();
}

frmAbout::~frmAbout() = default;

/// The manufacturer's name is a link to the eye.
void frmAbout::TakeColours() {
    QPalette colours = QApplication::palette();
    colours.setColor(QPalette::ButtonText, colours.color(QPalette::Link));
    colours.setColor(QPalette::Button, colours.color(QPalette::Window));
    colours.setColor(QPalette::Mid, colours.color(QPalette::Window));  // no outline
    m_ui->lblManufacturer->setPalette(colours);
}

bool frmAbout::event(QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange) {
        TakeColours();
    }
    return QDialog::event(event);
}
