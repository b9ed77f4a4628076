#include "store/engine/FileConnection.h"

#include "platform/Clock.h"
#include "platform/Drives.h"
#include "store/engine/sqlite/SqliteConnection.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

#include <cerrno>

namespace engine {

namespace {

constexpr qint32 ObjectIsClosed = static_cast<qint32>(0x800A0E78U);
constexpr qint32 ObjectIsOpen = static_cast<qint32>(0x800A0E79U);

[[noreturn]] void ThrowFileFailure(int systemError) {
    if (systemError == ENOENT || systemError == ENOTDIR || systemError == ENAMETOOLONG) {
        throw Failure(Number::NoSuchFile, QStringLiteral("Could not find the file."), systemError);
    }
    throw Failure(Number::CannotOpen,
                  QStringLiteral("The file cannot be opened: it is in use, or permission is missing."),
                  systemError);
}

Failure OutOfMemory() {
    return {Number::SystemResources, QStringLiteral("Not enough memory.")};
}

struct stat StatusOf(const QString& path) {
    struct stat status {};
    if (path.isEmpty() || ::stat(QFile::encodeName(path).constData(), &status) != 0) {
        ThrowFileFailure(path.isEmpty() ? ENOENT : errno);
    }
    return status;
}

FileKind KindOfBytes(const QByteArray& head) {
    if (head.startsWith(QByteArray("SQLite format 3\0", 16))) {
        return FileKind::Sqlite;
    }
    if (head.startsWith(QByteArray("\0\1\0\0Standard Jet DB\0", 20))) {
        return FileKind::Jet;
    }
    return head.startsWith("[larkspan-link]") ? FileKind::Link : FileKind::Other;
}

[[noreturn]] void ThrowNotOurs(FileKind kind) {
    switch (kind) {
        case FileKind::Jet:
            throw Failure(Number::NotADatabase,
                          QStringLiteral(
                              "The file is a Jet database; the engine for those is not part of this build."));
        case FileKind::Link:
            throw Failure(Number::NotADatabase,
                          QStringLiteral(
                              "The file links to a server; the engine for those is not part of this build."));
        default:
            throw Failure(Number::NotADatabase, QStringLiteral("Unrecognized database format."));
    }
}

std::pair<quint64, quint64> Identity(const struct stat& status) {
    return {status.st_dev, status.st_ino};
}

/// What can be opened as a file at all.
QString FullNativePath(const QString& filename) {
    const QString native = NativePath(filename);
    return native.isEmpty() ? native : QFileInfo(native).absoluteFilePath();
}

}  // namespace

FileKind FileInspector::KindOf(const QString& path) {
    const struct stat status = StatusOf(path);
    if (!S_ISREG(status.st_mode)) {
        return FileKind::Other;
    }
    if (m_known.contains(Identity(status))) {
        return FileKind::Sqlite;
    }
    constexpr qint64 LongestSignature = 20;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        ThrowFileFailure(EACCES);
    }
    const FileKind kind = KindOfBytes(file.read(LongestSignature));
    if (kind == FileKind::Sqlite) {
        m_known.insert(Identity(status));
    }
    return kind;
}

void FileInspector::CheckSqlite(const QString& path) {
    const FileKind kind = KindOf(path);
    if (kind != FileKind::Sqlite) {
        ThrowNotOurs(kind);
    }
}

void FileInspector::Forget(const QString& path) {
    struct stat status {};
    if (::stat(QFile::encodeName(path).constData(), &status) == 0) {
        m_known.erase(Identity(status));
    }
}

FileConnection::FileConnection(FileInspector& inspector, Clock& clock)
    : m_inspector(inspector), m_clock(clock) {}

FileConnection::~FileConnection() = default;

/// Clears the error collection, runs a step and puts its failure into the collection.
template <typename Step>
auto FileConnection::Run(Step step) {
    m_errors.clear();
    try {
        return step();
    } catch (const Failure& failure) {
        if (failure.Number() == GenericFailure) {
            m_errors.append(failure.Item());
        }
        throw;
    } catch (const std::bad_alloc&) {
        m_errors.append(OutOfMemory().Item());
        throw OutOfMemory();
    }
}

State FileConnection::ConnectionState() const {
    return m_engine != nullptr ? State::Open : State::Closed;
}

void FileConnection::Open(const QString& filename) {
    Run([&] { OpenFile(filename); });
}

void FileConnection::OpenFile(const QString& filename) {
    if (m_engine != nullptr) {
        throw Failure::WithNumber(ObjectIsOpen, QStringLiteral("The connection is open already."));
    }
    const QString path = FullNativePath(filename);
    m_inspector.CheckSqlite(path);
    try {
        m_engine = std::make_unique<sqlite::SqliteConnection>(path, m_clock);
    } catch (const Failure& failure) {
        if (failure.Item().SQLState == QString::number(Number::NotADatabase)) {
            m_inspector.Forget(path);
            m_inspector.CheckSqlite(path);
        }
        throw;
    }
}

void FileConnection::Close() {
    Run([this] {
        Q_UNUSED(Engine());
        m_engine.reset();
    });
}

std::unique_ptr<Recordset> FileConnection::Execute(const QString& sql, qint64* rowsAffected) {
    return Run([&] { return Engine().Execute(sql, rowsAffected); });
}

std::unique_ptr<Recordset> FileConnection::OpenRecordset(const QString& sql, CursorType cursor,
                                                         LockType lock) {
    return Run([&] { return Engine().OpenRecordset(sql, cursor, lock); });
}

void FileConnection::BeginTrans() {
    Run([this] { Engine().BeginTrans(); });
}

void FileConnection::CommitTrans() {
    Run([this] { Engine().CommitTrans(); });
}

void FileConnection::RollbackTrans() {
    Run([this] { Engine().RollbackTrans(); });
}

QStringList FileConnection::TableNames() {
    return Run([this] { return Engine().TableNames(); });
}

void FileConnection::SetProperty(const QString& name, const QVariant& value) {
    m_properties.insert(name.toCaseFolded(), value);
}

QVariant FileConnection::Property(const QString& name) const {
    return m_properties.value(name.toCaseFolded());
}

sqlite::SqliteConnection& FileConnection::Engine() const {
    if (m_engine == nullptr) {
        throw Failure::WithNumber(ObjectIsClosed,
                                  QStringLiteral("Operation is not allowed when the object is closed."));
    }
    return *m_engine;
}

struct FileConnectionFactory::Parts {
    std::unique_ptr<Clock> OwnClock;
    Clock& Time;
    FileInspector Inspector;
};

FileConnectionFactory::FileConnectionFactory() {
    auto clock = std::make_unique<SystemClock>();
    Clock& time = *clock;
    m_parts = std::make_unique<Parts>(Parts{std::move(clock), time, {}});
}

FileConnectionFactory::FileConnectionFactory(Clock& clock)
    : m_parts(std::make_unique<Parts>(Parts{nullptr, clock, {}})) {}

FileConnectionFactory::~FileConnectionFactory() = default;

std::unique_ptr<Connection> FileConnectionFactory::NewConnection() {
    return std::make_unique<FileConnection>(m_parts->Inspector, m_parts->Time);
}

void FileConnectionFactory::CompactDatabase(const QString& source, const QString& destination) {
    const QString path = FullNativePath(source);
    m_parts->Inspector.CheckSqlite(path);
    const QString target = FullNativePath(destination);
    if (QFileInfo::exists(target)) {
        throw Failure(Number::CannotCreate, QStringLiteral("There is a file of that name already."));
    }
    sqlite::SqliteConnection(path, m_parts->Time).CompactInto(target);
}

}  // namespace engine
