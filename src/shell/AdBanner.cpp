#include "shell/AdBanner.h"

#include "controls/Icons.h"
#include "core/Product.h"

#include <QPainter>
#include <QTimer>

namespace {

constexpr int PictureSide = 28;
constexpr int Gap = 8;

QFont WordFont(const QWidget& widget) {
    QFont font = widget.font();
    font.setWeight(QFont::DemiBold);
    return font;
}

}  // namespace

AdBanner::AdBanner(QWidget* parent) : QWidget(parent), m_tmrAdupdate(new QTimer(this)) {
    setObjectName(QStringLiteral("imgAd"));
    setAccessibleName(QStringLiteral("Banner"));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_tmrAdupdate->setObjectName(QStringLiteral("tmrAdupdate"));
    m_tmrAdupdate->setInterval(UpdateInterval);
}

void AdBanner::StopUpdates() {
    m_tmrAdupdate->stop();
}

QSize AdBanner::sizeHint() const {
    const int word = QFontMetrics(WordFont(*this)).horizontalAdvance(Product::AppTitle);
    return {PictureSide + Gap + word + Gap, qMax(PictureSide, fontMetrics().height())};
}

void AdBanner::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QRect picture(0, 0, PictureSide, PictureSide);
    picture.moveTop((height() - PictureSide) / 2);
    Icons::Get(QStringLiteral("larkspan")).paint(&painter, picture);
    painter.setFont(WordFont(*this));
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect().adjusted(PictureSide + Gap, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft,
                     Product::AppTitle);
}
