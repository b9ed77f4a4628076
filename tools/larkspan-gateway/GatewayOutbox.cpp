#include "larkspan-gateway/GatewayOutbox.h"

#include "core/Dates.h"
#include "core/Numbers.h"
#include "larkspan-gateway/MessageStatus.h"
#include "store/engine/Connection.h"

#include <QLocale>

namespace {

/// A transaction that is rolled back unless it was committed.
class TransactionScope {
public:
    explicit TransactionScope(DB& db) : m_db(db) {}
    ~TransactionScope() {
        if (!m_isCommitted) {
            m_db.RollbackTransaction();
        }
    }
    TransactionScope(const TransactionScope&) = delete;
    TransactionScope& operator=(const TransactionScope&) = delete;
    [[nodiscard]] bool Commit() { return m_isCommitted = m_db.CommitTransaction(); }

private:
    DB& m_db;
    bool m_isCommitted = false;
};

QString MoveSQL(const StatusMove& move) {
    return QStringLiteral("UPDATE Message SET msgStatus = %1%2 WHERE msgID = %3 AND msgStatus = %4")
        .arg(QString::number(move.To), move.Assignments, QString::number(move.ID),
             QString::number(move.From));
}

}  // namespace

QString SqlDate(const QDateTime& time) {
    return u'#' + Dates::Format(time, QStringLiteral("dd/mmm/yyyy hh:nn:ss"), QLocale::c()) + u'#';
}

GatewayOutbox::GatewayOutbox(const DBServices& services, const QString& file) : m_db(services) {
    m_db.Filename = file;
}

void GatewayOutbox::Open() {
    if (!m_db.OpenDatabase(engine::Mode::ReadWriteShared)) {
        // The folder may be on a network that comes back: whoever got in once may try again.
        throw OutboxFailure(QStringLiteral("the outbox cannot be opened: ") + m_db.LastError(), true);
    }
}

void GatewayOutbox::Close() {
    m_db.CloseDatabase();
}

QList<OutboxRow> GatewayOutbox::Due(const QDateTime& now, int limit) {
    return Read(QStringLiteral("SELECT TOP %1 msgID, msgAddress, msgText FROM Message WHERE msgStatus = %2 "
                               "AND msgSendTime <= %3 "
                               "ORDER BY msgSendTime, msgID")
                    .arg(QString::number(limit), QString::number(MessageStatus::Waiting), SqlDate(now)));
}

QList<OutboxRow> GatewayOutbox::AtStatus(qint32 status, int limit) {
    return Read(QStringLiteral("SELECT TOP %1 msgID, msgAddress, msgText FROM Message WHERE msgStatus = %2 "
                               "ORDER BY msgSendTime, msgID")
                    .arg(QString::number(limit), QString::number(status)));
}

QList<qint32> GatewayOutbox::Make(const QList<StatusMove>& moves) {
    QList<qint32> changed;
    if (moves.isEmpty()) {
        return changed;
    }
    if (!m_db.BeginTransaction()) {
        throw Failure(QStringLiteral("the outbox cannot be locked"));
    }
    TransactionScope transaction(m_db);
    for (const StatusMove& move : moves) {
        const qint32 count = m_db.ExecuteRecordResult(MoveSQL(move));
        if (count == 1) {
            changed.append(move.ID);
        } else if (HasFailed()) {
            throw Failure(QStringLiteral("the outbox cannot be written"));
        }
    }
    if (!transaction.Commit()) {
        throw Failure(QStringLiteral("the outbox cannot be written"));
    }
    return changed;
}

QList<OutboxRow> GatewayOutbox::Read(const QString& sql) {
    const auto rows = m_db.OpenDynaset(sql, engine::CursorType::ForwardOnly, engine::LockType::ReadOnly);
    if (rows == nullptr) {
        throw Failure(QStringLiteral("the outbox cannot be read"));
    }
    QList<OutboxRow> result;
    for (; !rows->EndOfFile(); rows->MoveNext()) {
        result.append({rows->Value(u"msgID").toInt(), Numbers::NullToString(rows->Value(u"msgAddress")),
                       Numbers::NullToString(rows->Value(u"msgText"))});
    }
    return result;
}

bool GatewayOutbox::HasFailed() const {
    // A statement that succeeded at its second try leaves IsError set, but no error in the collection.
    return m_db.IsError() && (m_db.Connection() == nullptr || !m_db.Connection()->Errors().isEmpty());
}

OutboxFailure GatewayOutbox::Failure(const QString& step) const {
    if (m_db.Connection() == nullptr || m_db.Connection()->Errors().isEmpty()) {
        return {step, false};
    }
    const engine::Error item = m_db.Connection()->Errors().constFirst();
    // A lost transaction is lost as a whole, and as a whole it can be made again.
    const bool isLost = item.SQLState == QString::number(engine::Number::TransactionLost);
    return {step + QStringLiteral(": ") + item.Description,
            isLost || engine::IsTransientError(engine::GenericFailure, item.NativeError, item.SQLState)};
}
