#include "support/FakeEngine.h"

#include <utility>

using engine::Failure;
using Operation = FakeEngine::Operation;

/// A failure whose SQLState is any text.
class OddFailure final : public Failure {
public:
    OddFailure(const Failure& failure, QString sqlState) : Failure(failure), m_state(std::move(sqlState)) {}
    [[nodiscard]] const QString& State() const { return m_state; }

private:
    QString m_state;
};

class FakeRecordset final : public engine::Recordset {
public:
    FakeRecordset(FakeEngine& engine, FakeEngine::Rows rows) : m_engine(engine), m_rows(std::move(rows)) {
        ++m_engine.OpenRecordsets;
    }
    ~FakeRecordset() override { CloseOnce(); }

    [[nodiscard]] bool EndOfFile() const override {
        CheckOpen();
        return m_row >= m_rows.Values.size();
    }
    void MoveNext() override {
        if (EndOfFile()) {
            throw Failure(engine::Number::ItemNotFound, QStringLiteral("No current row."));
        }
        if (!m_pending.isEmpty()) {
            Update();
        }
        ++m_row;
    }
    [[nodiscard]] int FieldCount() const override { return static_cast<int>(m_rows.Fields.size()); }
    [[nodiscard]] QString FieldName(int index) const override { return m_rows.Fields.at(index); }
    [[nodiscard]] int FieldIndex(QStringView name) const override {
        CheckOpen();
        for (int i = 0; i < m_rows.Fields.size(); ++i) {
            if (name.compare(m_rows.Fields.at(i), Qt::CaseInsensitive) == 0) {
                return i;
            }
        }
        return -1;
    }
    using engine::Recordset::Value;
    [[nodiscard]] QVariant Value(int index) const override {
        if (EndOfFile() || index < 0 || index >= m_rows.Values.at(m_row).size()) {
            throw Failure(engine::Number::ItemNotFound, QStringLiteral("No such item."));
        }
        return m_pending.value(m_rows.Fields.at(index), m_rows.Values.at(m_row).at(index));
    }
    void SetValue(QStringView name, const QVariant& value) override {
        const int index = FieldIndex(name);
        if (index < 0 || EndOfFile()) {
            throw Failure(engine::Number::ItemNotFound, QStringLiteral("No such item."));
        }
        m_pending.insert(m_rows.Fields.at(index), value);
    }
    void Update() override {
        const QVariantMap changes = std::exchange(m_pending, {});
        m_engine.Attempt(Operation::Update);
        m_engine.Updates.append(changes);
        for (auto change = changes.cbegin(); change != changes.cend(); ++change) {
            m_rows.Values[m_row][m_rows.Fields.indexOf(change.key())] = *change;
        }
    }
    void Close() override { CloseOnce(); }
    void Disconnect() override {}

private:
    void CheckOpen() const {
        if (m_isClosed) {
            throw Failure::WithNumber(static_cast<qint32>(0x800A0E78U),
                                      QStringLiteral("The recordset is closed."));
        }
    }
    void CloseOnce() {
        if (!std::exchange(m_isClosed, true)) {
            --m_engine.OpenRecordsets;
        }
    }

    FakeEngine& m_engine;
    FakeEngine::Rows m_rows;
    QVariantMap m_pending;
    qsizetype m_row = 0;
    bool m_isClosed = false;
};

class FakeConnection final : public engine::Connection {
public:
    explicit FakeConnection(FakeEngine& engine) : m_engine(engine) {}
    ~FakeConnection() override { SetOpen(false); }

    [[nodiscard]] engine::State ConnectionState() const override {
        return m_isOpen ? engine::State::Open : engine::State::Closed;
    }
    void Open(const QString& filename) override {
        m_engine.Filenames.append(filename);
        m_engine.Modes.append(Mode);
        Run(Operation::Open, [] {});
        SetOpen(!m_engine.StaysClosed);
    }
    void Close() override {
        Run(Operation::Close, [this] { SetOpen(false); });
    }
    std::unique_ptr<engine::Recordset> Execute(const QString& sql, qint64* rowsAffected) override {
        m_engine.Statements.append(sql);
        std::unique_ptr<engine::Recordset> result;
        Run(Operation::Execute, [&] {
            CheckOpen();
            if (const FakeEngine::Rows* rows = m_engine.Find(sql)) {
                result = std::make_unique<FakeRecordset>(m_engine, *rows);
            }
            if (rowsAffected != nullptr) {
                *rowsAffected = m_engine.RowsAffected(sql);
            }
        });
        return result;
    }
    std::unique_ptr<engine::Recordset> OpenRecordset(const QString& sql, engine::CursorType cursor,
                                                     engine::LockType lock) override {
        m_engine.Statements.append(sql);
        m_engine.Cursors.append(cursor);
        m_engine.Locks.append(lock);
        std::unique_ptr<engine::Recordset> result;
        Run(Operation::Recordset, [&] {
            CheckOpen();
            const FakeEngine::Rows* rows = m_engine.Find(sql);
            result = std::make_unique<FakeRecordset>(m_engine, rows != nullptr ? *rows : FakeEngine::Rows{});
        });
        return result;
    }
    void BeginTrans() override {
        Run(Operation::Begin, [this] { CheckOpen(); });
    }
    void CommitTrans() override {
        Run(Operation::Commit, [this] { CheckOpen(); });
    }
    void RollbackTrans() override {
        Run(Operation::Rollback, [this] { CheckOpen(); });
    }
    [[nodiscard]] QStringList TableNames() override {
        Run(Operation::TableNames, [this] { CheckOpen(); });
        return m_engine.Tables;
    }
    void SetProperty(const QString& name, const QVariant& value) override {
        Run(Operation::SetProperty, [&] { m_engine.Properties.insert(name, value); });
    }
    [[nodiscard]] QVariant Property(const QString& name) const override {
        return m_engine.Properties.value(name);
    }
    [[nodiscard]] const QList<engine::Error>& Errors() const override { return m_errors; }

private:
    void CheckOpen() const {
        if (!m_isOpen) {
            throw Failure::WithNumber(static_cast<qint32>(0x800A0E78U),
                                      QStringLiteral("The connection is closed."));
        }
    }
    void SetOpen(bool isOpen) {
        m_engine.OpenConnections += static_cast<int>(isOpen) - static_cast<int>(m_isOpen);
        m_isOpen = isOpen;
    }
    template <typename Step>
    void Run(Operation operation, Step step) {
        m_errors.clear();
        try {
            m_engine.Attempt(operation);
            step();
        } catch (const OddFailure& failure) {
            m_errors.append({failure.Item().NativeError, failure.State(), failure.Item().Description});
            throw;
        } catch (const Failure& failure) {
            if (failure.Number() == engine::GenericFailure) {
                m_errors.append(failure.Item());
            }
            throw;
        }
    }

    FakeEngine& m_engine;
    bool m_isOpen = false;
    QList<engine::Error> m_errors;
};

FakeEngine::FakeEngine() = default;
FakeEngine::~FakeEngine() = default;

void FakeEngine::Fail(Operation operation, int number, int first, int last) {
    Intercept(
        operation,
        [this, number] {
            const QString description = QStringLiteral("fake failure %1").arg(number);
            if (!m_sqlState.isNull()) {
                throw OddFailure(Failure(number, description), m_sqlState);
            }
            throw Failure(number, description);
        },
        first, last);
}

void FakeEngine::Intercept(Operation operation, std::function<void()> step, int first, int last) {
    m_plans.append({operation, first, last, std::move(step)});
}

void FakeEngine::FailWithoutItem(Operation operation, qint32 genericNumber, int first, int last) {
    Intercept(
        operation,
        [genericNumber] { throw Failure::WithNumber(genericNumber, QStringLiteral("fake failure")); }, first,
        last);
}

void FakeEngine::Serve(const QString& part, const Rows& rows) {
    m_rows.prepend({part, rows});
}

void FakeEngine::SetRowsAffected(const QString& part, qint64 rows) {
    m_rowsAffected.prepend({part, rows});
}

std::unique_ptr<engine::Connection> FakeEngine::NewConnection() {
    return std::make_unique<FakeConnection>(*this);
}

void FakeEngine::CompactDatabase(const QString& source, const QString& destination) {
    Compacted.append({source, destination});
    Attempt(Operation::Compact);
}

void FakeEngine::Attempt(Operation operation) {
    const int attempt = ++m_attempts[operation];
    if (OnAttempt) {
        OnAttempt(operation);
    }
    for (const Plan& plan : std::as_const(m_plans)) {
        if (plan.On == operation && attempt >= plan.First && (plan.Last == 0 || attempt <= plan.Last)) {
            const auto step = plan.Step;
            step();
        }
    }
}

const FakeEngine::Rows* FakeEngine::Find(const QString& sql) const {
    for (const auto& [part, rows] : m_rows) {
        if (sql.contains(part, Qt::CaseInsensitive)) {
            return &rows;
        }
    }
    return nullptr;
}

qint64 FakeEngine::RowsAffected(const QString& sql) const {
    for (const auto& [part, rows] : m_rowsAffected) {
        if (sql.contains(part, Qt::CaseInsensitive)) {
            return rows;
        }
    }
    return 1;
}
