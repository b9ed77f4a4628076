#include "common/ProgressBar.h"
#include "common/StopSignal.h"
#include "larkspan-data/Commands.h"
#include "platform/BrokenPipes.h"
#include "store/engine/Connection.h"

#include <QCoreApplication>

int main(int argc, char** argv) {
    PassOverBrokenPipes();
    StopSignal stop;
    const QCoreApplication application(argc, argv);
    engine::FileConnectionFactory engines;
    QTextStream out(stdout);
    QTextStream error(stderr);
    return RunCommandLine(
        QCoreApplication::arguments().mid(1),
        {engines, out, error, ProgressBar::IsErrorTerminal(), [&] { return stop.IsStopped(); }});
}
