// Claims to be the one running copy in the folder given; for the tests of that claim. Prints "first" and
// stays until its standard input ends, printing "shown" for each show request, or prints "second" (and "told"
// if it could ask the first) and ends. With "busy" as second argument it never serves its events.
#include "platform_ui/Instance.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTextStream>

#include <unistd.h>

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QTextStream out(stdout);
    const QStringList arguments = QCoreApplication::arguments();
    LocalInstance instance(arguments.value(1), QStringLiteral("test"));
    if (instance.IsPreviousInstance()) {
        out << "second\n";
        if (instance.RequestShow()) {
            out << "told\n";
        }
        return 0;
    }
    instance.SetOnShow([&out] {
        out << "shown\n";
        out.flush();
    });
    out << "first\n";
    out.flush();
    char byte = 0;
    if (arguments.value(2) == QStringLiteral("busy")) {
        // Until one byte comes the event loop stands still, as in a long operation.
        while (read(STDIN_FILENO, &byte, 1) < 0) {
        }
    }
    QSocketNotifier end(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&end, &QSocketNotifier::activated, &application, [&byte] {
        if (read(STDIN_FILENO, &byte, 1) <= 0) {
            QCoreApplication::quit();
        }
    });
    return QCoreApplication::exec();
}
