#include "tools/TestOffice.h"

#include "core/Dates.h"
#include "store/Outbox.h"
#include "store/engine/Connection.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

std::unique_ptr<engine::Connection> Opened(ToolMachine& machine, const QString& file) {
    auto connection = machine.Engines.NewConnection();
    connection->Mode = engine::Mode::ReadWriteShared;
    connection->Open(file);
    return connection;
}

}  // namespace

TestOffice::TestOffice(const std::optional<SampleOffice::Plan>& sample) {
    EXPECT_TRUE(NewOffice::Create(Folder(), sample, Machine.Engines));
}

QList<qint32> TestOffice::AddMessages(int count, const QDateTime& sendTime, const QString& address,
                                      const QString& text) {
    QList<qint32> ids;
    const auto connection = Opened(Machine, Outbox());
    connection->BeginTrans();
    OutgoingMessage message;
    message.Recipient = QStringLiteral("Aoife O'Neill");
    message.Address = address;
    message.Text = text;
    message.SendTime = sendTime;
    message.Station = QStringLiteral("DESK1");
    for (int i = 0; i < count; ++i) {
        connection->Execute(mdlOutbox::BuildInsertMessageSQL(message), nullptr);
        ids.append(
            connection->Execute(QStringLiteral("SELECT @@IDENTITY AS ID"), nullptr)->Value(u"ID").toInt());
    }
    connection->CommitTrans();
    return ids;
}

qint32 TestOffice::AddMessage(const QDateTime& sendTime, const QString& address, const QString& text) {
    return AddMessages(1, sendTime, address, text).constFirst();
}

qint64 TestOffice::Execute(const QString& file, const QString& sql) const {
    qint64 count = 0;
    try {
        Opened(Machine, file)->Execute(sql, &count);
    } catch (const engine::Failure& failure) {
        ADD_FAILURE() << sql.toStdString() << ": " << failure.what();
    }
    return count;
}

QVariantList TestOffice::Column(const QString& file, const QString& sql) const {
    QVariantList values;
    try {
        const auto connection = Opened(Machine, file);
        const auto rows =
            connection->OpenRecordset(sql, engine::CursorType::ForwardOnly, engine::LockType::ReadOnly);
        for (; !rows->EndOfFile(); rows->MoveNext()) {
            values.append(rows->Value(0));
        }
    } catch (const engine::Failure& failure) {
        ADD_FAILURE() << sql.toStdString() << ": " << failure.what();
    }
    return values;
}

QVariant TestOffice::Field(qint32 id, const QString& name) const {
    return Column(Outbox(), QStringLiteral("SELECT %1 FROM Message WHERE msgID = %2").arg(name).arg(id))
        .value(0);
}

int TestOffice::Status(qint32 id) const {
    return Field(id, QStringLiteral("msgStatus")).toInt();
}

QMap<int, int> TestOffice::Statuses() const {
    QMap<int, int> statuses;
    for (const QVariant& status : Column(Outbox(), QStringLiteral("SELECT msgStatus FROM Message"))) {
        ++statuses[status.toInt()];
    }
    return statuses;
}

bool TestOffice::Cancel(qint32 id) const {
    return Execute(Outbox(),
                   QStringLiteral(
                       "UPDATE Message SET msgComplete = TRUE, msgStatus = 2, msgErrorReason ='Canceled by "
                       "user' WHERE msgID = %1 AND msgStatus = 0")
                       .arg(id)) == 1;
}

QMap<qint32, int> ReadJournal(const QString& path) {
    QMap<qint32, int> sent;
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (!line.isEmpty()) {
            EXPECT_TRUE(line.endsWith(" sent")) << line.constData();
            ++sent[line.split(' ').constFirst().toInt()];
        }
    }
    return sent;
}
