// The tour of ./run where there is no display: a day of an office, driven through the controls of the real
// program's window, on a screen that has a tray.
//
// usage: larkspan-tour --data FOLDER PICTURES [--scaled]
// Exit status 0 only if every message reached its final status and stands in both local files, the popup and
// the warning told of it, one more was canceled in time, and both histories opened.

#include "e2e/Tour.h"

#include "app/AppContext.h"
#include "app/CommandLine.h"
#include "app/EntryRoutine.h"
#include "app/RealMachine.h"
#include "e2e/Trayer.h"
#include "platform/Drives.h"
#include "platform/Folders.h"
#include "shell/Application.h"
#include "shell/Look.h"
#include "shell/MainScreens.h"
#include "shell/frmMain.h"

#include <QDir>
#include <QProcess>
#include <QTimer>

#include <cstdio>

namespace {

/// An old tray at the top right of the screen, as long as it lives.
class TrayOfScreen {
public:
    TrayOfScreen() {
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.start(QStringLiteral("trayer"), TrayerArguments());
    }
    ~TrayOfScreen() {
        m_process.kill();
        m_process.waitForFinished();
    }
    TrayOfScreen(const TrayOfScreen&) = delete;
    TrayOfScreen& operator=(const TrayOfScreen&) = delete;

private:
    QProcess m_process;
};

}  // namespace

int main(int argc, char** argv) {
    QStringList arguments;
    for (int i = 1; i < argc && i < 3; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    const CommandLine commandLine(arguments);
    const bool isScaled = argc == 5 && qstrcmp(argv[4], "--scaled") == 0;
    if ((argc != 4 && !isScaled) || commandLine.DataFolder.isEmpty()) {
        std::fprintf(stderr, "usage: larkspan-tour --data FOLDER PICTURES [--scaled]\n");
        return 2;
    }
    CompleteEnvironment();
    Application application(argc, argv);
    Look::Apply(QStringLiteral("light"));
    RealMachine real;
    const Machine machine = real.Seams();
    application.SetLastResort(&machine.AppLog, &machine.Boxes);
    AppContext context(machine);
    MainScreens screens(context, machine, commandLine);
    EntryRoutine entry(context, machine, screens, commandLine);
    if (!entry.Run()) {
        std::fprintf(stderr, "the program did not start\n");
        return 1;
    }

    const TrayOfScreen tray;
    int status = 1;
    const QString pictures = QString::fromLocal8Bit(argv[3]);
    QDir().mkpath(pictures);
    QTimer::singleShot(0, &application, [&] {
        Tour tour(context, machine, *screens.Main(), Driver(pictures));
        try {
            Driver::WaitFor(QStringLiteral("the main window"),
                            [&] { return screens.Main() != nullptr && screens.Main()->isActiveWindow(); });
            if (isScaled) {
                tour.ShowScaled();
            } else {
                tour.Run();
            }
            status = 0;
        } catch (const std::exception& problem) {
            std::fprintf(stderr, "tour: %s\n", problem.what());
            tour.Hand().Picture(QStringLiteral("failed"));
        }
        Driver::Click(QStringLiteral("cmdExit"));
    });
    const int ended = Application::exec();
    return status != 0 ? status : ended;
}
