#pragma once

#include "store/engine/Connection.h"

#include <QElapsedTimer>
#include <QList>

#include <algorithm>

/// What an observer saw of an engine at work.
struct EngineObservations {
    QList<qint64> InsertMicroseconds;
    /// Lock and sharing conflicts that reached the caller: each one outlasted the engine's own wait.
    int TransientFailures = 0;
    int TransientInARow = 0;
    int WorstTransientInARow = 0;
    int OtherFailures = 0;

    void Succeeded() { TransientInARow = 0; }
    void Failed(const engine::Failure& failure) {
        if (engine::IsTransientError(failure.Number(), failure.Item().NativeError, failure.Item().SQLState)) {
            ++TransientFailures;
            WorstTransientInARow = std::max(WorstTransientInARow, ++TransientInARow);
        } else {
            ++OtherFailures;
        }
    }
};

/// The real engine with its insert times and failures written down.
class ObservedConnection final : public engine::Connection {
public:
    ObservedConnection(std::unique_ptr<engine::Connection> real, EngineObservations& seen)
        : m_real(std::move(real)), m_seen(seen) {}

    [[nodiscard]] engine::State ConnectionState() const override { return m_real->ConnectionState(); }
    void Open(const QString& filename) override {
        m_real->Mode = Mode;
        Observe([&] { m_real->Open(filename); });
    }
    void Close() override { m_real->Close(); }
    std::unique_ptr<engine::Recordset> Execute(const QString& sql, qint64* rowsAffected) override {
        std::unique_ptr<engine::Recordset> rows;
        QElapsedTimer timer;
        timer.start();
        Observe([&] { rows = m_real->Execute(sql, rowsAffected); });
        if (sql.startsWith(u"INSERT")) {
            m_seen.InsertMicroseconds.append(timer.nsecsElapsed() / 1000);
        }
        return rows;
    }
    std::unique_ptr<engine::Recordset> OpenRecordset(const QString& sql, engine::CursorType cursor,
                                                     engine::LockType lock) override {
        std::unique_ptr<engine::Recordset> rows;
        Observe([&] { rows = m_real->OpenRecordset(sql, cursor, lock); });
        return rows;
    }
    void BeginTrans() override { m_real->BeginTrans(); }
    void CommitTrans() override { m_real->CommitTrans(); }
    void RollbackTrans() override { m_real->RollbackTrans(); }
    [[nodiscard]] QStringList TableNames() override { return m_real->TableNames(); }
    void SetProperty(const QString& name, const QVariant& value) override {
        m_real->SetProperty(name, value);
    }
    [[nodiscard]] QVariant Property(const QString& name) const override { return m_real->Property(name); }
    [[nodiscard]] const QList<engine::Error>& Errors() const override { return m_real->Errors(); }

private:
    template <typename Step>
    void Observe(Step&& step) {
        try {
            step();
            m_seen.Succeeded();
        } catch (const engine::Failure& failure) {
            m_seen.Failed(failure);
            throw;
        }
    }

    std::unique_ptr<engine::Connection> m_real;
    EngineObservations& m_seen;
};

class ObservedFactory final : public engine::ConnectionFactory {
public:
    EngineObservations Seen;

    [[nodiscard]] std::unique_ptr<engine::Connection> NewConnection() override {
        return std::make_unique<ObservedConnection>(m_real.NewConnection(), Seen);
    }
    void CompactDatabase(const QString& source, const QString& destination) override {
        m_real.CompactDatabase(source, destination);
    }

private:
    engine::FileConnectionFactory m_real;
};
