#pragma once

#include "e2e/Driver.h"

#include <QPoint>
#include <QProcess>
#include <QString>
#include <QStringList>

/// The mouse and the keyboard of the virtual screen.
namespace RealInput {

/// Runs xdotool while this process goes on handling events. Throws DriverError if it fails.
inline void Do(const QStringList& arguments) {
    QProcess tool;
    tool.start(QStringLiteral("xdotool"), arguments);
    Driver::WaitFor(QStringLiteral("xdotool"), [&tool] { return tool.state() == QProcess::NotRunning; });
    if (tool.exitCode() != 0) {
        throw DriverError(QStringLiteral("xdotool ") + arguments.join(u' '));
    }
}

inline QString Output(const QStringList& arguments) {
    QProcess tool;
    tool.start(QStringLiteral("xdotool"), arguments);
    tool.waitForFinished(5000);
    return QString::fromLatin1(tool.readAllStandardOutput()).trimmed();
}

inline void Drag(const QPoint& from, const QPoint& to) {
    const auto go = [](const QPoint& point) {
        return QStringList{QStringLiteral("mousemove"), QString::number(point.x()),
                           QString::number(point.y()), QStringLiteral("sleep"), QStringLiteral("0.15")};
    };
    const QStringList arguments = go(from) + QStringList{QStringLiteral("mousedown"), QStringLiteral("1")} +
                                  go(from + QPoint(12, 6)) + go(from + QPoint(24, 12)) + go((from + to) / 2) +
                                  go(to) + go(to + QPoint(2, 1)) +
                                  QStringList{QStringLiteral("mouseup"), QStringLiteral("1")};
    Do(arguments);
}

}  // namespace RealInput
