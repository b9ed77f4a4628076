#include "shell/frmSplash.h"

#include "controls/FormTools.h"
#include "controls/Icons.h"
#include "core/Product.h"

#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>

namespace {

constexpr int PictureSide = 96;
constexpr int Margin = 32;

}  // namespace

frmSplash::frmSplash(int year, const QString& version) : QWidget(nullptr, Qt::SplashScreen) {
    setObjectName(QStringLiteral("frmSplash"));
    setWindowTitle(Product::AppTitle);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Margin * 2, Margin, Margin * 2, Margin);
    QLabel* picture = NewLabel(QStringLiteral("imgSplash"), QString());
    picture->setPixmap(
        Icons::Get(QStringLiteral("larkspan")).pixmap(QSize(PictureSide, PictureSide), devicePixelRatioF()));
    column->addWidget(picture);
    QLabel* title = NewLabel(QStringLiteral("lblApp"), QStringLiteral("{APP}"));
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * 1.8);
    font.setWeight(QFont::DemiBold);
    title->setFont(font);
    column->addWidget(title);
    column->addWidget(NewLabel(QStringLiteral("lblVer"), version));
    column->addSpacing(Margin / 2);
    column->addWidget(NewLabel(QStringLiteral("lblSuite"), QStringLiteral("{SUITE}\\n{YEAR}")));
    FormTools::ExpandPlaceholders(*this, year);
    const auto labels = findChildren<QLabel*>();
    for (QLabel* label : labels) {
        if (label->text().contains(QStringLiteral("\\n"))) {
            label->setText(label->text().replace(QStringLiteral("\\n"), QStringLiteral("\n")));
        }
    }
    adjustSize();
    move(QGuiApplication::primaryScreen()->availableGeometry().center() - rect().center());
}

QLabel* frmSplash::NewLabel(const QString& name, const QString& text) {
    auto* label = new QLabel(text, this);
    label->setObjectName(name);
    label->setAlignment(Qt::AlignCenter);
    return label;
}
