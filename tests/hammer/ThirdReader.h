#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

/// Looks at an outbox and at local files from outside, with SQLite alone and none of this program's code, and
/// counts what must never happen.
class ThirdReader {
public:
    struct Row {
        qint32 ID = 0;
        QString Recipient;
        int Status = 0;
    };
    struct Findings {
        int Rows = 0;
        int Lost = 0;         // acknowledged, and no row, history entry or log line stands
        int Doubled = 0;      // two rows for one recipient of one press, or a row handed over twice
        int WrongStatus = 0;  // a history or tracker entry whose number is another message's, or nobody's
        int CanceledAndSent = 0;
        QStringList Examples;
    };

    explicit ThirdReader(const QString& outboxFile);

    [[nodiscard]] bool IsWhole() const { return m_isWhole; }
    [[nodiscard]] const QHash<qint32, Row>& Rows() const { return m_rows; }

    void CountAcknowledged(const QStringList& ackFiles, Findings& findings) const;
    void CountDoubled(Findings& findings) const;
    void CountHandedOver(const QString& gatewayJournal, Findings& findings) const;
    void CountHistory(const QStringList& historyFiles, Findings& findings) const;
    /// What a workstation keeps of the messages that it acknowledged (in the order of these files): the
    /// newest in its history, and one line each in the log beside it.
    static void CountKept(const QStringList& ackFiles, const QString& historyFile, Findings& findings);
    void CountTracked(qint32 id, const QString& recipient, Findings& findings) const;
    void CountCanceled(const QStringList& ids, const QString& gatewayJournal, Findings& findings) const;

private:
    QHash<qint32, Row> m_rows;
    QHash<QString, int> m_byRecipient;
    bool m_isWhole = false;
};
