#include "hammer/ThirdReader.h"

#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QtEndian>

#include <algorithm>

#include <sqlite3.h>

namespace {

constexpr int RecordSize = 1069;
constexpr int MostRecords = 250;

QStringList LinesOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

/// Numbers that the gateway wrote down as handed over, with repeats.
QList<qint32> HandedOver(const QString& journal) {
    QList<qint32> ids;
    for (const QString& line : LinesOf(journal)) {
        ids.append(line.section(u' ', 0, 0).toInt());
    }
    return ids;
}

QByteArray BytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString RecipientOf(const QByteArray& history, qsizetype record) {
    return QString::fromLatin1(history.mid(record * RecordSize + 7, 30)).trimmed();
}

/// How often each recipient stands in messagelog.sms.
QHash<QString, int> LoggedRecipients(const QString& path) {
    QHash<QString, int> recipients;
    for (const QString& line : LinesOf(path)) {
        ++recipients[line.section(u'"', 1, 1).trimmed()];
    }
    return recipients;
}

}  // namespace

ThirdReader::ThirdReader(const QString& outboxFile) {
    sqlite3* db = nullptr;
    sqlite3_open_v2(outboxFile.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE, nullptr);
    sqlite3_busy_timeout(db, 5000);
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &statement, nullptr);
    m_isWhole = sqlite3_step(statement) == SQLITE_ROW &&
                qstrcmp(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)), "ok") == 0;
    sqlite3_finalize(statement);
    sqlite3_prepare_v2(db, "SELECT msgID, msgRecipient, msgStatus FROM Message", -1, &statement, nullptr);
    while (sqlite3_step(statement) == SQLITE_ROW) {
        Row row;
        row.ID = sqlite3_column_int(statement, 0);
        row.Recipient = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(statement, 1)));
        row.Status = sqlite3_column_int(statement, 2);
        ++m_byRecipient[row.Recipient];
        m_rows.insert(row.ID, row);
    }
    sqlite3_finalize(statement);
    sqlite3_close(db);
}

void ThirdReader::CountAcknowledged(const QStringList& ackFiles, Findings& findings) const {
    findings.Rows = static_cast<int>(m_rows.size());
    for (const QString& path : ackFiles) {
        for (const QString& name : LinesOf(path)) {
            if (!m_byRecipient.contains(name)) {
                ++findings.Lost;
                findings.Examples.append(QStringLiteral("lost: %1").arg(name));
            }
        }
    }
}

void ThirdReader::CountDoubled(Findings& findings) const {
    for (auto entry = m_byRecipient.cbegin(); entry != m_byRecipient.cend(); ++entry) {
        if (entry.value() > 1) {
            findings.Doubled += entry.value() - 1;
            findings.Examples.append(QStringLiteral("doubled: %1").arg(entry.key()));
        }
    }
}

void ThirdReader::CountHandedOver(const QString& gatewayJournal, Findings& findings) const {
    QSet<qint32> seen;
    for (const qint32 id : HandedOver(gatewayJournal)) {
        if (seen.contains(id)) {
            ++findings.Doubled;
            findings.Examples.append(QStringLiteral("handed over twice: %1").arg(id));
        }
        seen.insert(id);
    }
}

void ThirdReader::CountHistory(const QStringList& historyFiles, Findings& findings) const {
    for (const QString& path : historyFiles) {
        const QByteArray bytes = BytesOf(path);
        if (bytes.size() % RecordSize != 0) {
            ++findings.WrongStatus;
            findings.Examples.append(QStringLiteral("torn: %1 has %2 bytes").arg(path).arg(bytes.size()));
        }
        for (qsizetype at = 0; at + RecordSize <= bytes.size(); at += RecordSize) {
            const auto id = qFromLittleEndian<qint32>(bytes.constData() + at);
            CountTracked(id, RecipientOf(bytes, at / RecordSize), findings);
        }
    }
}

void ThirdReader::CountKept(const QStringList& ackFiles, const QString& historyFile, Findings& findings) {
    QStringList names;
    for (const QString& path : ackFiles) {
        names.append(LinesOf(path));
    }
    const QHash<QString, int> logged =
        LoggedRecipients(QFileInfo(historyFile).path() + QStringLiteral("/messagelog.sms"));
    for (const QString& name : names) {
        const int lines = logged.value(name);
        findings.Lost += lines == 0 ? 1 : 0;
        findings.Doubled += std::max(0, lines - 1);
        if (lines != 1) {
            findings.Examples.append(QStringLiteral("%1 lines in the log: %2").arg(lines).arg(name));
        }
    }

    const QByteArray history = BytesOf(historyFile);
    const qsizetype records = history.size() / RecordSize;
    QSet<QString> kept;
    for (qsizetype record = 0; record < records; ++record) {
        kept.insert(RecipientOf(history, record));
    }
    // Only a full history may have dropped one, and then all that are older too.
    qsizetype oldest = 0;
    while (records == MostRecords && oldest < names.size() - 1 && !kept.contains(names[oldest])) {
        ++oldest;
    }
    for (; oldest < names.size(); ++oldest) {
        if (!kept.contains(names[oldest])) {
            ++findings.Lost;
            findings.Examples.append(QStringLiteral("not in the history: %1").arg(names[oldest]));
        }
    }
}

void ThirdReader::CountTracked(qint32 id, const QString& recipient, Findings& findings) const {
    const auto row = m_rows.constFind(id);
    if (row == m_rows.cend() || row->Recipient != recipient) {
        ++findings.WrongStatus;
        findings.Examples.append(QStringLiteral("wrong: %1 is not %2").arg(id).arg(recipient));
    }
}

void ThirdReader::CountCanceled(const QStringList& ids, const QString& gatewayJournal,
                                Findings& findings) const {
    const QList<qint32> sentList = HandedOver(gatewayJournal);
    const QSet<qint32> sent(sentList.cbegin(), sentList.cend());
    for (const QString& text : ids) {
        const qint32 id = text.toInt();
        if (sent.contains(id) || m_rows.value(id).Status != 2) {
            ++findings.CanceledAndSent;
            findings.Examples.append(
                QStringLiteral("canceled, yet status %1: %2").arg(m_rows.value(id).Status).arg(id));
        }
    }
}
