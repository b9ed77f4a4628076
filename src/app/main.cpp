#include "app/AppContext.h"
#include "app/CommandLine.h"
#include "app/EndSignals.h"
#include "app/EntryRoutine.h"
#include "app/RealMachine.h"
#include "core/Product.h"
#include "platform/BrokenPipes.h"
#include "platform/Folders.h"
#include "platform/SilentBus.h"
#include "shell/Application.h"
#include "shell/Look.h"
#include "shell/MainScreens.h"
#include "shell/frmMain.h"

#include <cstdio>

namespace {

QStringList ArgumentsOf(int argc, char** argv) {
    QStringList arguments;
    for (int index = 1; index < argc; ++index) {
        arguments.append(QString::fromLocal8Bit(argv[index]));
    }
    return arguments;
}

void Print(FILE* stream, const QString& text) {
    std::fputs(text.toLocal8Bit().constData(), stream);
}

/// As the tray's menu closes the program; what is asked before there is a main window, nobody answers now.
void Close(const MainScreens& screens) {
    if (screens.Main() != nullptr) {
        screens.Main()->close();
    } else {
        Application::closeAllWindows();
    }
}

}  // namespace

int main(int argc, char** argv) {
    PassOverBrokenPipes();
    // Before the window system: these answers need none.
    const CommandLine commandLine(ArgumentsOf(argc, argv));
    if (commandLine.IsHelp) {
        Print(stdout, CommandLine::HelpText());
        return 0;
    }
    if (commandLine.IsVersion) {
        Print(stdout, Product::AppTitle + QStringLiteral(" " LARKSPAN_VERSION "\n"));
        return 0;
    }
    if (!commandLine.Problem.isEmpty()) {
        Print(stderr, QStringLiteral("larkspan: ") + commandLine.Problem + u'\n');
        return EntryRoutine::OptionUnusable;
    }

    CompleteEnvironment();
    PassOverSilentSessionBus();
    Application application(argc, argv);
    Look::Apply(commandLine.Palette);
    RealMachine real;
    const Machine machine = real.Seams();
    application.SetLastResort(&machine.AppLog, &machine.Boxes);
    AppContext context(machine);
    MainScreens screens(context, machine, commandLine);
    EntryRoutine entry(context, machine, screens, commandLine);
    const EndSignals ends([&screens] { Close(screens); });
    const int status = entry.Run() ? Application::exec() : entry.ExitStatus();
    application.SetLastResort(nullptr, nullptr);
    return status;
}
