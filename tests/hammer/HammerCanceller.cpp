// A user who cancels what others have just sent: the real cancel, on numbers near the newest. Each number
// whose cancel succeeded goes to standard output, and at the end, which may be asked for, what the engine
// met.
//
// usage: hammer_canceller OUTBOX HOME SECONDS

#include "hammer/HammerOffice.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTextStream>

#include <csignal>

namespace {

volatile std::sig_atomic_t isStopping = 0;

/// The newest message number; 0 in an empty outbox.
qint32 Newest(HammerOffice& office) {
    qint32 newest = 0;
    if (office.State.OutboxDB->OpenDatabase(engine::Mode::ReadShared)) {
        const auto rows = office.State.OutboxDB->OpenDynaset(
            QStringLiteral("SELECT TOP 1 msgID FROM Message ORDER BY msgID DESC"),
            engine::CursorType::ForwardOnly, engine::LockType::ReadOnly);
        if (rows && !rows->EndOfFile()) {
            newest = rows->Value(u"msgID").toInt();
        }
        office.State.OutboxDB->CloseDatabase();
    }
    return newest;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() != 4) {
        return 2;
    }
    HammerOffice office(arguments[1], arguments[2]);
    QTextStream out(stdout);
    QRandomGenerator random(20260307);
    QElapsedTimer timer;
    timer.start();
    std::signal(SIGTERM, [](int) { isStopping = 1; });
    while (isStopping == 0 && timer.elapsed() < arguments[3].toInt() * 1000) {
        const qint32 newest = Newest(office);
        if (newest == 0) {
            office.Time.Sleep(5);
            continue;
        }
        for (int i = 0; i < 3; ++i) {
            const qint32 id = std::max(1, newest - static_cast<qint32>(random.bounded(6)));
            if (mdlOutbox::CancelMessage(office.Outbox, id).value_or(false)) {
                out << "canceled " << id << '\n';
            }
        }
        out.flush();
        office.Time.Sleep(static_cast<int>(random.bounded(10, 40)));
    }
    office.Report(out);
    return 0;
}
