// A second process on the same database files, as other clients and the gateway are.
//
//   store_peer lock FILE shared|reserved|exclusive
//                                               holds a lock until its standard input ends; prints "locked"
//   store_peer insert FOLDER NAME COUNT         inserts messages with the program's own store; prints "ID
//   TEXT" lines

#include "support/TempOffice.h"

#include <QCoreApplication>
#include <QTextStream>

#include <sqlite3.h>

#include <cstdio>

namespace {

int HoldLock(const QByteArray& file, const QByteArray& kind) {
    sqlite3* handle = nullptr;
    const char* begin = kind == "exclusive"  ? "BEGIN EXCLUSIVE"
                        : kind == "reserved" ? "BEGIN IMMEDIATE"
                                             : "BEGIN; SELECT Count(*) FROM sqlite_schema";
    if (sqlite3_open_v2(file.constData(), &handle, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK ||
        sqlite3_busy_timeout(handle, 5000) != SQLITE_OK ||
        sqlite3_exec(handle, begin, nullptr, nullptr, nullptr) != SQLITE_OK) {
        return 1;
    }
    std::puts("locked");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    sqlite3_exec(handle, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(handle);
    return 0;
}

int Insert(const QString& folder, const QString& name, int count) {
    SystemClock time;
    ApplicationEventPump pump;
    FakeDrives drives;
    FakeFolders folders;
    engine::FileConnectionFactory factory(time);
    OutboxState state;
    Settings settings;
    settings.SetApplication(QStringLiteral("Larkspan Messenger peer ") + name);
    settings.SetValue(SettingNames::SectionDB, SettingNames::Outbox, folder);
    RecordingBoxes boxes;
    const OutboxServices outbox{state, settings, boxes, {factory, time, pump, drives, folders}};
    if (!mdlOutbox::OpenOutbox(outbox)) {
        return 1;
    }
    QTextStream out(stdout);
    for (int i = 0; i < count; ++i) {
        if (!state.OutboxDB->OpenDatabase(engine::Mode::ReadWriteShared)) {
            return 2;
        }
        OutgoingMessage message;
        message.Recipient = name;
        message.Text = QStringLiteral("%1-%2").arg(name).arg(i);
        message.SendTime = time.Now();
        const qint16 id = mdlOutbox::InsertMessage(outbox, message);
        state.OutboxDB->CloseDatabase();
        if (id == 0 || state.OutboxDB->IsError()) {
            return 3;
        }
        out << id << ' ' << message.Text << '\n';
    }
    return boxes.Shown.isEmpty() ? 0 : 4;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QStringLiteral("lock") && arguments.size() == 4) {
        return HoldLock(arguments.at(2).toUtf8(), arguments.at(3).toUtf8());
    }
    if (arguments.value(1) == QStringLiteral("insert") && arguments.size() == 5) {
        return Insert(arguments.at(2), arguments.at(3), arguments.at(4).toInt());
    }
    return 64;
}
