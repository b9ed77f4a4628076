#include "store/engine/contract/EngineContext.h"

#include "store/engine/sqlite/OfficeFiles.h"
#include "support/BrokenDisk.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <sqlite3.h>

#include <sys/stat.h>

#include <cstring>
#include <stdexcept>

namespace {

/// Another process that runs SQL on a file and then lives until it is let go; it never closes the file, as a
/// program that dies does not. A child made by fork alone would take this process's knowledge of its own
/// locks along.
class Peer {
public:
    Peer(const QString& file, const QString& sql) {
        m_process.start(QStringLiteral(SQLITE_PEER), {file, sql});
        EXPECT_TRUE(m_process.waitForReadyRead());
        m_isFine = m_process.readAll().startsWith('+');
    }
    ~Peer() {
        m_process.closeWriteChannel();
        EXPECT_TRUE(m_process.waitForFinished());
    }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    [[nodiscard]] bool IsFine() const { return m_isFine; }

private:
    QProcess m_process;
    bool m_isFine = false;
};

class LockOfAnother final : public EngineContext::Lock {
public:
    LockOfAnother(const QString& file, const QString& begin) : m_peer(file, begin) {
        if (!m_peer.IsFine()) {
            throw std::runtime_error("the other process did not get its lock");
        }
    }

private:
    Peer m_peer;
};

/// A folder and some of its files that nobody may write, as far as permissions go.
class ReadOnlyModes {
public:
    ReadOnlyModes(const QString& folder, const QStringList& files) : m_folder(QFile::encodeName(folder)) {
        for (const QString& file : files) {
            m_files.append(QFile::encodeName(file));
            chmod(m_files.last().constData(), 0444);
        }
        chmod(m_folder.constData(), 0555);
    }
    ~ReadOnlyModes() {
        chmod(m_folder.constData(), 0755);
        for (const QByteArray& file : m_files) {
            chmod(file.constData(), 0644);
        }
    }
    ReadOnlyModes(const ReadOnlyModes&) = delete;
    ReadOnlyModes& operator=(const ReadOnlyModes&) = delete;

private:
    QByteArray m_folder;
    QList<QByteArray> m_files;
};

/// Also for the administrator, whom permissions do not stop: this process is somebody else meanwhile.
class ReadOnlyOutbox final : public EngineContext::Lock {
public:
    ReadOnlyOutbox(const QString& folder, const QStringList& files) : m_modes(folder, files) {}

private:
    ReadOnlyModes m_modes;
    OrdinaryUser m_user;  // ends before the modes are put back
};

class FullOutbox final : public EngineContext::Lock {
public:
    explicit FullOutbox(qint64 size) : m_disk(size) {}

private:
    FullDisk m_disk;
};

sqlite3_mem_methods& SystemMemory() {
    static sqlite3_mem_methods methods;
    return methods;
}

/// Spoils all memory that SQLite gives back, so that a use of a statement that is gone fails for certain.
void SpoilFreedMemory() {
    static const bool isDone = [] {
        EXPECT_EQ(sqlite3_config(SQLITE_CONFIG_GETMALLOC, &SystemMemory()), SQLITE_OK);
        sqlite3_mem_methods spoiling = SystemMemory();
        spoiling.xFree = [](void* memory) {
            constexpr int Spoilt = 0xAA;
            std::memset(memory, Spoilt, static_cast<std::size_t>(SystemMemory().xSize(memory)));
            SystemMemory().xFree(memory);
        };
        return sqlite3_config(SQLITE_CONFIG_MALLOC, &spoiling) == SQLITE_OK &&
               sqlite3_config(SQLITE_CONFIG_LOOKASIDE, 0, 0) == SQLITE_OK;
    }();
    EXPECT_TRUE(isDone);
}

class SqliteContext final : public EngineContext {
public:
    SqliteContext() {
        SpoilFreedMemory();
        OfficeFiles::CreateOutboxFile(Outbox());
        OfficeFiles::CreatePhonebookFile(Phonebook());
    }
    [[nodiscard]] engine::ConnectionFactory& Factory() override { return m_factory; }
    [[nodiscard]] QString Outbox() const override {
        return m_folder.filePath(QStringLiteral("smsmessages.mdb"));
    }
    [[nodiscard]] QString Phonebook() const override {
        return m_folder.filePath(QStringLiteral("smscontacts.mdb"));
    }
    [[nodiscard]] QString Missing() const override {
        return m_folder.filePath(QStringLiteral("missing.mdb"));
    }

    [[nodiscard]] std::unique_ptr<Lock> LockForWriting() override {
        return std::make_unique<LockOfAnother>(Outbox(), QStringLiteral("BEGIN IMMEDIATE"));
    }
    [[nodiscard]] std::unique_ptr<Lock> LockForReading() override {
        return std::make_unique<LockOfAnother>(Outbox(), QStringLiteral("BEGIN; SELECT * FROM Message"));
    }
    [[nodiscard]] std::unique_ptr<Lock> LockForAll() override {
        return std::make_unique<LockOfAnother>(Outbox(), QStringLiteral("BEGIN EXCLUSIVE"));
    }
    [[nodiscard]] std::unique_ptr<Lock> MakeReadOnly() override {
        return std::make_unique<ReadOnlyOutbox>(m_folder.path(),
                                                QStringList{Outbox(), Outbox() + QStringLiteral("-journal")});
    }
    [[nodiscard]] std::unique_ptr<Lock> FillDisk() override {
        return std::make_unique<FullOutbox>(QFile(Outbox()).size());
    }
    void DieWhileWriting(const QString& text) override {
        // A cache of one page makes the change reach the file long before its end.
        const Peer writer(Outbox(), QStringLiteral("PRAGMA cache_size=1; PRAGMA journal_mode=PERSIST; BEGIN; "
                                                   "UPDATE Message SET msgText='%1'")
                                        .arg(text.repeated(500)));
        EXPECT_TRUE(writer.IsFine());
        EXPECT_TRUE(Bytes().contains(text.repeated(20).toUtf8())) << "the change did not reach the file";
    }
    void DropTails() override { RunOnPhonebook(QStringLiteral("DROP TABLE MessageTail")); }
    void MakeTails() override {
        RunOnPhonebook(QStringLiteral("CREATE TABLE MessageTail (mtlText TEXT, mtlDefault BOOLEAN)"));
    }
    void Damage() override {
        QFile file(Outbox());
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        for (qint64 position = 4096; position + 8 < file.size(); position += 512) {
            file.seek(position);
            file.write("\xFF\xFE\xFD\xFC\xFB\xFA\xF9\xF8", 8);
        }
    }
    [[nodiscard]] QByteArray Bytes() const override {
        QFile file(Outbox());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

private:
    void RunOnPhonebook(const QString& sql) const { EXPECT_TRUE(Peer(Phonebook(), sql).IsFine()); }

    QTemporaryDir m_folder;
    engine::FileConnectionFactory m_factory{Time};
};

}  // namespace

std::unique_ptr<EngineContext> MakeSqliteContext() {
    return std::make_unique<SqliteContext>();
}
