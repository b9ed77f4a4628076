#include "common/StopSignal.h"
#include "common/ToolMachine.h"
#include "larkspan-gateway/GatewayCommand.h"
#include "platform/BrokenPipes.h"

#include <QCoreApplication>

int main(int argc, char** argv) {
    PassOverBrokenPipes();
    StopSignal stop;
    const QCoreApplication application(argc, argv);
    ToolMachine machine;
    QTextStream out(stdout);
    QTextStream error(stderr);
    return RunGatewayCommand(QCoreApplication::arguments().mid(1),
                             {machine.Services(), out, error, [&] { return stop.IsStopped(); }});
}
