#pragma once

#include <QString>
#include <QStringList>

/// How `trayer`, an old tray in which programs embed a window, stands at the top right of the screen.
inline QStringList TrayerArguments() {
    return {QStringLiteral("--edge"),  QStringLiteral("top"),         QStringLiteral("--align"),
            QStringLiteral("right"),   QStringLiteral("--widthtype"), QStringLiteral("pixel"),
            QStringLiteral("--width"), QStringLiteral("120"),         QStringLiteral("--height"),
            QStringLiteral("28")};
}
