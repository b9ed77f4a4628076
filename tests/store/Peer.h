#pragma once

#include <QProcess>
#include <QString>

#include <gtest/gtest.h>

/// A second process that holds a lock on a database file until it is told to let go.
class LockingPeer {
public:
    /// `kind` is "shared" (nobody else ends a change), "reserved" (nobody else begins one) or "exclusive"
    /// (nobody else reads either).
    LockingPeer(const QString& file, const QString& kind) {
        m_process.start(QStringLiteral(STORE_PEER), {QStringLiteral("lock"), file, kind});
        EXPECT_TRUE(m_process.waitForReadyRead()) << "the second process did not get its lock";
        EXPECT_EQ(m_process.readLine().trimmed(), QByteArray("locked"));
    }
    ~LockingPeer() { LetGo(); }
    LockingPeer(const LockingPeer&) = delete;
    LockingPeer& operator=(const LockingPeer&) = delete;

    /// Back only when the lock is gone.
    void LetGo() {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.closeWriteChannel();
            EXPECT_TRUE(m_process.waitForFinished());
        }
    }

private:
    QProcess m_process;
};
