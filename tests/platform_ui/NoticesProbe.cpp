// Tells the desktop of its session bus what its standard input says; for the tests of that. A line is
// "ICON|TITLE|TEXT", ICON being 1 to 3. Each is answered by "done" as soon as the call has returned; the log
// is written to the file given. Ends when its standard input does.
#include "core/Log.h"
#include "platform/Clock.h"
#include "platform/LocalFiles.h"
#include "platform_ui/DBusNotices.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <iostream>
#include <string>

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    DiskFiles files;
    SystemClock clock;
    Log log(files, clock);
    log.LogToFile(QCoreApplication::arguments().value(1));
    DBusNotices notices(log);
    const QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&notices] {
        std::string line;
        if (!std::getline(std::cin, line)) {
            QCoreApplication::quit();
            return;
        }
        const QString words = QString::fromStdString(line);
        notices.Show(words.section(u'|', 1, 1), words.section(u'|', 2),
                     static_cast<BalloonIcon>(words.section(u'|', 0, 0).toInt()));
        std::cout << "done" << std::endl;
    });
    return QCoreApplication::exec();
}
