#include "controls/CIconFixer.h"

#include <QImageReader>
#include <QPixmap>
#include <QStyle>
#include <QWidget>

namespace {

/// The first picture of the file.
QIcon ExtractIcon(const QString& path) {
    if (path.isEmpty()) {
        return {};
    }
    const QImage picture = QImageReader(path).read();
    return picture.isNull() ? QIcon() : QIcon(QPixmap::fromImage(picture));
}

/// The toolkit keeps both icons of a window in one: every size that either of them has.
QIcon Both(const QIcon& large, const QIcon& small) {
    if (large.isNull() || small.isNull() || large.cacheKey() == small.cacheKey()) {
        return large.isNull() ? small : large;
    }
    QIcon both = large;
    const QList<QSize> sizes = small.availableSizes();
    for (const QSize& size : sizes) {
        both.addPixmap(small.pixmap(size, 1.0));
    }
    return both;
}

}  // namespace

IconWidths IconWidths::Of(const QWidget& widget) {
    const QStyle* style = widget.style();
    const qreal scale = widget.devicePixelRatioF();
    return {qRound(style->pixelMetric(QStyle::PM_LargeIconSize, nullptr, &widget) * scale),
            qRound(style->pixelMetric(QStyle::PM_SmallIconSize, nullptr, &widget) * scale)};
}

CIconFixer::CIconFixer(const IconWidths& widths,
                       const std::function<QString(const QString& name)>& findFile) {
    constexpr int UsualLarge = 32;
    constexpr int UsualSmall = 16;
    m_largeIcon =
        ExtractIcon(findFile(widths.Large == UsualLarge ? QStringLiteral("Icons/larkspan32x32x256.ico")
                                                        : QStringLiteral("Icons/larkspan48x48x256.ico")));
    m_smallIcon =
        ExtractIcon(findFile(widths.Small == UsualSmall ? QStringLiteral("Icons/larkspan16x16x256.ico")
                                                        : QStringLiteral("Icons/larkspan24x24x256.ico")));
}

void CIconFixer::SetIcons(QWidget& window, bool setLarge, bool setSmall, QIcon& oldLarge,
                          QIcon& oldSmall) const {
    const QIcon before = window.windowIcon();
    QIcon large = before;
    QIcon small = before;
    if (setLarge && !m_largeIcon.isNull()) {
        oldLarge = before;
        large = m_largeIcon;
    }
    if (setSmall && !m_smallIcon.isNull()) {
        oldSmall = before;
        small = m_smallIcon;
    }
    if (large.cacheKey() != before.cacheKey() || small.cacheKey() != before.cacheKey()) {
        window.setWindowIcon(Both(large, small));
    }
}

void CIconFixer::SetAppIcons(QWidget& window, bool setLarge, bool setSmall) const {
    QWidget* top = &window;
    while (top->parentWidget() != nullptr) {
        top = top->parentWidget()->window();
    }
    if (top != &window) {
        QIcon oldLarge;
        QIcon oldSmall;
        SetIcons(*top, setLarge, setSmall, oldLarge, oldSmall);
    }
}

void CIconFixer::RestoreIcons(QWidget& window, const QIcon& oldLarge, const QIcon& oldSmall) {
    window.setWindowIcon(Both(oldLarge, oldSmall));
}
