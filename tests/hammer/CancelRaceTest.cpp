#include "store/engine/Connection.h"
#include "store/engine/sqlite/OfficeFiles.h"
#include "support/MemoryFolder.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sqlite3.h>

#include <cstdio>

namespace {

constexpr int Messages = 10000;

QStringList LinesOf(const QByteArray& bytes) {
    return QString::fromUtf8(bytes).split(u'\n', Qt::SkipEmptyParts);
}

/// 10,000 messages that are all due, a gateway that takes them and a user who cancels them, each in a process
/// of its own. The outbox is looked at with SQLite alone.
class CancelRace : public ::testing::Test {
protected:
    QTemporaryDir m_folder{MemoryFolder(QStringLiteral("larkspan-race"))};
    int m_round = 0;
    QHash<qint32, int> m_statuses;

    /// In the folder of this round.
    [[nodiscard]] QString Path(const char* name) const {
        return m_folder.filePath(QString::number(m_round) + u'/' + QString::fromLatin1(name));
    }
    [[nodiscard]] QString Outbox() const { return Path("smsmessages.mdb"); }

    void Execute(const char* sql, sqlite3_callback each = nullptr, void* target = nullptr) {
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(Outbox().toUtf8().constData(), &database), SQLITE_OK);
        char* reason = nullptr;
        EXPECT_EQ(sqlite3_exec(database, sql, each, target, &reason), SQLITE_OK) << reason;
        sqlite3_free(reason);
        sqlite3_close(database);
    }
    void Fill() {
        QDir(m_folder.path()).mkpath(QString::number(m_round));
        m_statuses.clear();
        OfficeFiles::CreateOutboxFile(Outbox());
        Execute(
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 10000) "
            "INSERT INTO Message (msgRecipient, msgAddress, msgText, msgSendTime) "
            "SELECT 'R' || i, '+353860000000', 'Hello', '2026-01-01 00:00:00' FROM n");
    }
    void ReadStatuses() {
        Execute(
            "SELECT msgID, msgStatus FROM Message",
            [](void* target, int, char** values, char**) {
                static_cast<QHash<qint32, int>*>(target)->insert(QByteArray(values[0]).toInt(),
                                                                 QByteArray(values[1]).toInt());
                return 0;
            },
            &m_statuses);
    }
    [[nodiscard]] QList<qint32> HandedOver() const {
        QFile journal(Path("gateway.journal"));
        QList<qint32> ids;
        if (journal.open(QIODevice::ReadOnly)) {
            for (const QString& line : LinesOf(journal.readAll())) {
                ids.append(line.section(u' ', 0, 0).toInt());
            }
        }
        return ids;
    }
    /// Both processes on a fresh outbox; what the user was told.
    void Race(QByteArray& told) {
        Fill();
        QProcess gateway;
        gateway.setStandardOutputFile(QProcess::nullDevice());
        gateway.start(
            QStringLiteral(GATEWAY),
            {Path(""), QStringLiteral("--quiet"), QStringLiteral("--until-idle"), QStringLiteral("--delay"),
             QStringLiteral("0"), QStringLiteral("--journal"), Path("gateway.journal")});
        QProcess user;
        user.start(QStringLiteral(HAMMER_CANCEL_RACE), {Outbox(), Path("")});
        ASSERT_TRUE(user.waitForFinished(300000)) << "the user's process hung";
        EXPECT_EQ(user.exitCode(), 0);
        ASSERT_TRUE(gateway.waitForFinished(300000)) << "the gateway hung";
        EXPECT_EQ(gateway.exitCode(), 0);
        ReadStatuses();
        ASSERT_EQ(m_statuses.size(), Messages);
        told = user.readAllStandardOutput();
    }
    void RunRound();

    bool m_haveMet = false;  // both had their share, and tried the same message
};

void CancelRace::RunRound() {
    QElapsedTimer time;
    time.start();
    QByteArray told;
    Race(told);
    QSet<qint32> canceled;
    QSet<qint32> refused;
    for (const QString& line : LinesOf(told)) {
        const qint32 id = line.section(u' ', 1, 1).toInt();
        (line.startsWith(u'c') ? canceled : refused).insert(id);
    }
    const QList<qint32> journal = HandedOver();
    const QSet<qint32> sent(journal.cbegin(), journal.cend());
    EXPECT_EQ(sent.size(), journal.size()) << "a message was handed over twice";
    EXPECT_TRUE((canceled & sent).isEmpty()) << "canceled, and sent all the same";
    EXPECT_EQ(canceled.size() + sent.size(), Messages) << "neither canceled nor sent";
    int wrong = 0;
    for (auto row = m_statuses.cbegin(); row != m_statuses.cend(); ++row) {
        const bool isToldCanceled = canceled.contains(row.key());
        wrong += (row.value() == 2) == isToldCanceled ? 0 : 1;
        wrong += isToldCanceled && refused.contains(row.key()) ? 1 : 0;
    }
    EXPECT_EQ(wrong, 0) << "the user was told another thing than what stands";
    for (const qint32 id : refused) {
        EXPECT_TRUE(sent.contains(id)) << "refused, and not sent either: " << id;
    }
    m_haveMet = canceled.size() > 10 && sent.size() > 10 && !refused.isEmpty();
    std::printf("    %d messages in %.1f s: %d canceled, %d sent, %d refused to the user\n", Messages,
                static_cast<double>(time.elapsed()) / 1000.0, static_cast<int>(canceled.size()),
                static_cast<int>(sent.size()), static_cast<int>(refused.size()));
}

TEST_F(CancelRace, OfTenThousandMessagesEachIsEitherCanceledOrSentAndTheUserIsToldWhich) {
    // It is no race where one of the two comes so late that the other has done everything.
    for (m_round = 1; m_round <= 5 && !m_haveMet && !HasFailure(); ++m_round) {
        RunRound();
    }
    EXPECT_TRUE(m_haveMet || HasFailure()) << "the two never met";
}

}  // namespace
