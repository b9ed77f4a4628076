// A user who cancels what the gateway is about to take: the real cancel, on the oldest messages that still
// wait, until none waits any more. For each number tried a line goes to standard output, "canceled" or
// "refused", as the user is told.
//
// usage: hammer_cancel_race OUTBOX HOME

#include "hammer/HammerOffice.h"

#include <QCoreApplication>
#include <QTextStream>

namespace {

constexpr int AtOnce = 4;

/// The oldest messages that wait; empty when none does. Nothing if the outbox could not be read.
std::optional<QList<qint32>> Waiting(HammerOffice& office) {
    DB& database = *office.State.OutboxDB;
    if (!database.OpenDatabase(engine::Mode::ReadShared)) {
        return std::nullopt;
    }
    std::optional<QList<qint32>> ids;
    const auto rows = database.OpenDynaset(
        QStringLiteral("SELECT TOP %1 msgID FROM Message WHERE msgStatus = 0 ORDER BY msgID").arg(AtOnce),
        engine::CursorType::ForwardOnly, engine::LockType::ReadOnly);
    if (rows != nullptr) {
        ids.emplace();
        for (; !rows->EndOfFile(); rows->MoveNext()) {
            ids->append(rows->Value(u"msgID").toInt());
        }
    }
    database.CloseDatabase();
    return ids;
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        return 2;
    }
    HammerOffice office(arguments[1], arguments[2]);
    QTextStream out(stdout);
    for (;;) {
        const std::optional<QList<qint32>> ids = Waiting(office);
        if (ids.has_value() && ids->isEmpty()) {
            break;
        }
        for (const qint32 id : ids.value_or(QList<qint32>())) {
            const bool isCanceled = mdlOutbox::CancelMessage(office.Outbox, id).value_or(false);
            out << (isCanceled ? "canceled " : "refused ") << id << '\n';
        }
    }
    return 0;
}
