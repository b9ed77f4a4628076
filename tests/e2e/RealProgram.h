#pragma once

#include "app/AppContext.h"
#include "app/CommandLine.h"
#include "app/EntryRoutine.h"
#include "app/RealMachine.h"
#include "e2e/Driver.h"
#include "shell/MainScreens.h"
#include "shell/frmMain.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// Folders of one test: an office made by larkspan-data, and a home for the client's own files, settings and
/// sockets. The environment of this process points there.
class RealOffice {
public:
    QTemporaryDir Root;

    RealOffice() {
        EXPECT_EQ(QProcess::execute(
                      QStringLiteral(LARKSPAN_DATA),
                      {QStringLiteral("create"), Folder(), QStringLiteral("--sample"), QStringLiteral("40")}),
                  0);
        for (const char* name : {"LARKSPAN_HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR", "TEMP"}) {
            const QString folder = Root.filePath(QString::fromLatin1(name).toLower());
            QDir().mkpath(folder);
            QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            qputenv(name, QFile::encodeName(folder));
        }
        // The toolkit remembers the first folder of the process.
        for (const QSettings::Format format : {QSettings::IniFormat, QSettings::NativeFormat}) {
            QSettings::setPath(format, QSettings::UserScope, qEnvironmentVariable("XDG_CONFIG_HOME"));
        }
    }
    [[nodiscard]] QString Folder() const { return Root.filePath(QStringLiteral("office")); }
};

/// The program in this process: the real machine, the real entry routine, the real window.
class RealProgram {
public:
    explicit RealProgram(const RealOffice& office)
        : Arguments({QStringLiteral("--data"), office.Folder()}),
          Seams(m_real.Seams()),
          Context(Seams),
          Screens(Context, Seams, Arguments) {
        EntryRoutine entry(Context, Seams, Screens, Arguments);
        EXPECT_TRUE(entry.Run());
        Driver::WaitFor(QStringLiteral("the main window in front"),
                        [this] { return Screens.Main() != nullptr && Screens.Main()->isActiveWindow(); });
    }

    ~RealProgram() { Driver::StopWatching(); }  // an answer speaks of what the test has at hand
    RealProgram(const RealProgram&) = delete;
    RealProgram& operator=(const RealProgram&) = delete;

    CommandLine Arguments;

private:
    RealMachine m_real;

public:
    Machine Seams;
    AppContext Context;
    MainScreens Screens;

    [[nodiscard]] frmMain& Window() { return *Screens.Main(); }
};

/// The mouse and the keyboard of the virtual screen.
namespace RealInput {

/// Runs xdotool while this process goes on handling events.
inline void Do(const QStringList& arguments) {
    QProcess tool;
    tool.start(QStringLiteral("xdotool"), arguments);
    Driver::WaitFor(QStringLiteral("xdotool"), [&tool] { return tool.state() == QProcess::NotRunning; });
    EXPECT_EQ(tool.exitCode(), 0) << arguments.join(u' ').toStdString();
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
