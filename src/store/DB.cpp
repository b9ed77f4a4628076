#include "store/DB.h"

#include "core/Trap.h"
#include "platform/Clock.h"
#include "platform/Drives.h"
#include "platform/EventPump.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace {

constexpr qint32 UseOfClosedObject = static_cast<qint32>(0x800A0E78U);
constexpr qint32 UnexpectedFailure = static_cast<qint32>(0x8000FFFFU);

QString Hex(qint32 value) {
    return QString::number(static_cast<quint32>(value), 16).toUpper();
}

qsizetype LastSeparator(const QString& path) {
    return std::max(path.lastIndexOf(u'\\'), path.lastIndexOf(u'/'));
}

class DepthScope {
public:
    explicit DepthScope(int& depth) : m_depth(depth) { ++m_depth; }
    ~DepthScope() { --m_depth; }
    DepthScope(const DepthScope&) = delete;
    DepthScope& operator=(const DepthScope&) = delete;

private:
    int& m_depth;
};

}  // namespace

DB::DB(const DBServices& services) : m_services(services) {}

DB::~DB() {
    CloseDatabase();
}

bool DB::OpenDatabase(qint32 mode) noexcept {
    ResetError();
    CloseDatabase();
    RunTrapped([&] {
        m_connection = m_services.Engine.NewConnection();
        m_connection->Mode = mode;
    });
    RunWithRetries([&] { Opened().Open(Filename); });
    if (!IsConnected()) {
        m_connection.reset();
        return false;
    }
    Trap([&] { m_connection->SetProperty(QStringLiteral("Jet OLEDB:Max Buffer Size"), 500); });
    Trap([&] { m_connection->SetProperty(QStringLiteral("Jet OLEDB:Flush Transaction Timeout"), 2000); });
    m_errorText = QStringLiteral("0");
    return true;
}

bool DB::CloseDatabase() noexcept {
    if (m_connection != nullptr) {
        Trap([&] { m_connection->Close(); });
        m_connection.reset();
    }
    return false;
}

std::unique_ptr<engine::Recordset> DB::OpenDynaset(const QString& sql, engine::CursorType cursor,
                                                   engine::LockType lock) noexcept {
    std::unique_ptr<engine::Recordset> rows;
    RunWithRetries([&] { rows = Opened().OpenRecordset(sql, cursor, lock); });
    return rows;
}

std::unique_ptr<engine::Recordset> DB::DisconnectedSet(const QString& sql) noexcept {
    std::unique_ptr<engine::Recordset> rows;
    RunWithRetries([&] {
        rows = Opened().OpenRecordset(sql, engine::CursorType::Static, engine::LockType::BatchOptimistic);
    });
    if (rows != nullptr) {
        Trap([&] { rows->Disconnect(); });
    }
    return rows;
}

bool DB::BeginTransaction() noexcept {
    return RunTrapped([&] { Opened().BeginTrans(); });
}

bool DB::CommitTransaction() noexcept {
    if (RunTrapped([&] { Opened().CommitTrans(); })) {
        return true;
    }
    RecordError();
    return false;
}

void DB::RollbackTransaction() noexcept {
    Trap([&] { Opened().RollbackTrans(); });
}

bool DB::Execute(const QString& sql) noexcept {
    RunWithRetries([&] { Opened().Execute(sql, nullptr); });
    // Attempts that ran out leave nothing pending, because the last wait cleared it, and count as success.
    return m_pending.Number == 0;
}

std::unique_ptr<engine::Recordset> DB::ExecuteRecordset(const QString& sql) noexcept {
    std::unique_ptr<engine::Recordset> rows;
    RunWithRetries([&] { rows = Opened().Execute(sql, nullptr); });
    return rows;
}

qint32 DB::ExecuteRecordResult(const QString& sql) noexcept {
    qint64 count = 0;
    const bool isDone = RunWithRetries([&] { Opened().Execute(sql, &count); });
    return isDone ? static_cast<qint32>(count) : 0;
}

std::optional<QStringList> DB::TableNames() noexcept {
    std::optional<QStringList> names;
    RunTrapped([&] { names = Opened().TableNames(); });
    return names;
}

bool DB::FileExists() const noexcept {
    bool isThere = false;
    Trap([&] { isThere = !Filename.isEmpty() && QFileInfo(NativePath(Filename)).isFile(); });
    return isThere;
}

void DB::RecordError() noexcept {
    m_isError = true;
    m_errorText = QStringLiteral("GE:0x") + Hex(m_pending.Number);
    if (m_connection == nullptr) {
        return;
    }
    QString detail = m_pending.Description;
    Trap([&] {
        if (!m_connection->Errors().isEmpty()) {
            const engine::Error& item = m_connection->Errors().constFirst();
            detail = QStringLiteral("NE:0x") + Hex(item.NativeError) + QStringLiteral(", SQL:") +
                     item.SQLState + QStringLiteral(" - ") + item.Description;
        }
    });
    if (!detail.isEmpty()) {
        m_errorText += QStringLiteral(", ") + detail;
    }
}

void DB::ResetError() noexcept {
    m_isError = false;
    m_errorText.clear();
}

bool DB::IsConnected() const noexcept {
    bool isConnected = false;
    Trap([&] {
        isConnected = m_connection != nullptr && m_connection->ConnectionState() != engine::State::Closed;
    });
    return isConnected;
}

QString DB::GetDrive() const noexcept {
    return Filename.size() > 1 && Filename.at(1) == u':' ? Filename.left(2) : QString();
}

QString DB::GetFolder() const noexcept {
    const qsizetype separator = LastSeparator(Filename);
    return separator < 0 ? Filename : Filename.left(separator);
}

QString DB::GetFilename() const noexcept {
    return Filename.mid(LastSeparator(Filename) + 1);
}

bool DB::ResetNetworkDrive(qint16 window, const QString& drive) noexcept {
    Trap([&] { m_services.Drives.RestoreNetworkDrive(window, drive); });
    return false;
}

template <typename Step>
bool DB::RunWithRetries(Step&& attempt) {
    const DepthScope depth(m_depth);
    ResetError();
    m_pending = {};
    const int attempts = MaxRetryCount;
    for (int number = 1; number <= attempts; ++number) {
        if (RunTrapped(attempt)) {
            return true;
        }
        RecordError();
        if (!IsPendingTransient()) {
            return false;
        }
        WaitBeforeRetry(number);
    }
    return false;
}

template <typename Step>
bool DB::RunTrapped(Step&& step) noexcept {
    m_pending = {};
    try {
        step();
    } catch (const engine::Failure& failure) {
        m_pending = {failure.Number(), failure.Item().Description};
    } catch (const std::exception& failure) {
        m_pending = {UnexpectedFailure, QString::fromUtf8(failure.what())};
    } catch (...) {
        m_pending = {UnexpectedFailure, QString()};
    }
    return m_pending.Number == 0;
}

engine::Connection& DB::Opened() const {
    if (m_connection == nullptr) {
        throw engine::Failure::WithNumber(UseOfClosedObject, QStringLiteral("The database is closed."));
    }
    return *m_connection;
}

bool DB::IsPendingTransient() const noexcept {
    engine::Error item;
    Trap([&] {
        if (m_connection != nullptr && !m_connection->Errors().isEmpty()) {
            item = m_connection->Errors().constFirst();
        }
    });
    return engine::IsTransientError(m_pending.Number, item.NativeError, item.SQLState);
}

void DB::WaitBeforeRetry(int attempt) noexcept {
    Trap([&] { m_services.Pump.Process(4); });
    const qint32 minimum = attempt <= 1 ? 10 : attempt == 2 ? 100 : 250;
    Trap([&] { RandomDelay(minimum, MaxRetryInterval); });
    Trap([&] { m_services.Pump.Process(3); });
    m_pending = {};
}

void DB::RandomDelay(qint32 minimum, qint32 maximum) {
    QRandomGenerator random(static_cast<quint32>(m_services.Clock.Now().time().msecsSinceStartOfDay()));
    const double range = std::max(1.0, static_cast<double>(std::max(minimum, maximum)) - minimum);
    m_services.Clock.Sleep(minimum + static_cast<int>(std::lround(random.generateDouble() * range)));
}
