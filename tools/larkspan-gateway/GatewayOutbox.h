#pragma once

#include "store/DB.h"

#include <QDateTime>
#include <QList>
#include <QString>

#include <stdexcept>

/// A statement on the outbox that did not succeed. Nothing of the step that threw it stands in the table.
class OutboxFailure : public std::runtime_error {
public:
    OutboxFailure(const QString& text, bool canTryAgain)
        : std::runtime_error(text.toStdString()), m_canTryAgain(canTryAgain) {}
    [[nodiscard]] bool CanTryAgain() const { return m_canTryAgain; }

private:
    bool m_canTryAgain;
};

/// A row of Message that is due, or that an earlier gateway left on its way.
struct OutboxRow {
    qint32 ID = 0;
    QString Address;
    QString Text;
};

/// A row's step from one status to the next. It is made only while the row still has the first of them, so
/// that it cannot be made twice, and never touches a canceled row.
struct StatusMove {
    qint32 ID = 0;
    qint32 From = 0;
    qint32 To = 0;
    /// More assignments, as ", msgTariff = 9"; numbers, dates and texts of this program only.
    QString Assignments;
};

/// The statements of a gateway on the table Message, through a DB with its retries. All throw OutboxFailure.
class GatewayOutbox {
public:
    /// The longest list of rows or moves of one call; a call holds the write lock only for so many short
    /// statements.
    static constexpr int Batch = 50;

    GatewayOutbox(const DBServices& services, const QString& file);

    /// Connects for reading and writing; a connection that is open is closed first.
    void Open();
    /// Nothing happens if it is closed already; never throws.
    void Close();

    /// Up to `limit` rows at status 0 whose send time has come, oldest first. Reads along the index on status
    /// and send time.
    [[nodiscard]] QList<OutboxRow> Due(const QDateTime& now, int limit);
    /// The oldest rows at a status, up to `limit`.
    [[nodiscard]] QList<OutboxRow> AtStatus(qint32 status, int limit);

    /// Makes the moves in one transaction: all of them, or none and OutboxFailure. Returns the numbers of the
    /// rows that changed; the others were no longer at their first status.
    [[nodiscard]] QList<qint32> Make(const QList<StatusMove>& moves);

private:
    [[nodiscard]] bool HasFailed() const;
    [[nodiscard]] OutboxFailure Failure(const QString& step) const;
    [[nodiscard]] QList<OutboxRow> Read(const QString& sql);

    DB m_db;
};

/// "#07/Mar/2026 14:30:15#", the month in English.
[[nodiscard]] QString SqlDate(const QDateTime& time);
