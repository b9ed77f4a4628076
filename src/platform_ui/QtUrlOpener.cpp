#include "platform_ui/QtUrlOpener.h"

#include <QDesktopServices>
#include <QUrl>

void QtUrlOpener::Open(const QString& url) {
    QDesktopServices::openUrl(QUrl(url));
}
