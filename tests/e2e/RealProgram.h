#pragma once

#include "app/AppContext.h"
#include "app/CommandLine.h"
#include "app/EntryRoutine.h"
#include "app/RealMachine.h"
#include "e2e/Driver.h"
#include "e2e/RealInput.h"
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
