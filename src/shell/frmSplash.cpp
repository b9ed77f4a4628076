#include "shell/frmSplash.h"

#include "controls/FormTools.h"
#include "controls/Icons.h"
#include "ui_frmSplash.h"

#include <QGuiApplication>
#include <QScreen>

namespace {

constexpr int PictureSide = 96;
constexpr double TitleSize = 1.8;  // of the other texts

}  // namespace

frmSplash::frmSplash(int year, const QString& version)
    : QWidget(nullptr, Qt::SplashScreen), m_ui(std::make_unique<Ui::frmSplash>()) {
    m_ui->setupUi(this);
    m_ui->imgSplash->setPixmap(
        Icons::Get(QStringLiteral("larkspan")).pixmap(QSize(PictureSide, PictureSide), devicePixelRatioF()));
    QFont title = font();
    title.setPointSizeF(title.pointSizeF() * TitleSize);
    title.setWeight(QFont::DemiBold);
    m_ui->lblApp->setFont(title);
    m_ui->lblVer->setText(version);
    FormTools::ExpandPlaceholders(*this, year);
    FormTools::BreakLines(*this);
    adjustSize();
    move(QGuiApplication::primaryScreen()->availableGeometry().center() - rect().center());
}

frmSplash::~frmSplash() = default;
