#include "common/StopSignal.h"
#include "common/ToolMachine.h"
#include "larkspan-gateway/GatewayCommand.h"

#include <QCoreApplication>

#include <csignal>

int main(int argc, char** argv) {
    // A reader of the output that goes away must not end the gateway in the middle of a message.
    std::signal(SIGPIPE, SIG_IGN);
    StopSignal stop;
    const QCoreApplication application(argc, argv);
    ToolMachine machine;
    QTextStream out(stdout);
    QTextStream error(stderr);
    return RunGatewayCommand(QCoreApplication::arguments().mid(1),
                             {machine.Services(), out, error, [&] { return stop.IsStopped(); }});
}
