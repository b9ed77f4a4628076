#pragma once

#include "store/engine/contract/EngineContext.h"
#include "support/Printing.h"

#include <QVariant>

#include <gtest/gtest.h>

#include <memory>

/// All engines, by name.
inline auto Engines() {
    return ::testing::Values(EngineParameter{"SQLite", MakeSqliteContext});
}
inline std::string EngineName(const ::testing::TestParamInfo<EngineParameter>& engine) {
    return engine.param.Name;
}

/// Base of the contract suite: what every engine behind Connection keeps, tested against each of them.
class ContractTest : public ::testing::TestWithParam<EngineParameter> {
protected:
    std::unique_ptr<EngineContext> Context = GetParam().Make();

    [[nodiscard]] std::unique_ptr<engine::Connection> Connect(const QString& file) const {
        auto connection = Context->Factory().NewConnection();
        connection->Mode = engine::Mode::ReadWriteShared;
        connection->Open(file);
        return connection;
    }
    [[nodiscard]] std::unique_ptr<engine::Connection> Outbox() const { return Connect(Context->Outbox()); }
    [[nodiscard]] std::unique_ptr<engine::Connection> Phonebook() const {
        return Connect(Context->Phonebook());
    }

    static qint64 Execute(engine::Connection& connection, const QString& sql) {
        qint64 rows = -1;
        EXPECT_EQ(connection.Execute(sql, &rows), nullptr) << sql.toStdString();
        return rows;
    }
    [[nodiscard]] static std::unique_ptr<engine::Recordset> Rows(engine::Connection& connection,
                                                                 const QString& sql) {
        return connection.OpenRecordset(sql, engine::CursorType::ForwardOnly, engine::LockType::ReadOnly);
    }
    /// The first field of the first row.
    [[nodiscard]] static QVariant Value(engine::Connection& connection, const QString& sql) {
        return Rows(connection, sql)->Value(0);
    }
    static void AddMessage(engine::Connection& connection, const QString& text) {
        EXPECT_EQ(
            Execute(connection, QStringLiteral("INSERT INTO Message (msgText, msgSendTime) VALUES ('%1', "
                                               "#07/Mar/2026 14:30:15#)")
                                    .arg(text)),
            1);
    }

    /// The engine error of a failing step, which also stands in the connection's collection; 0 if it does not
    /// fail.
    template <typename Step>
    static int FailureOf(const engine::Connection& connection, Step step) {
        try {
            step();
        } catch (const engine::Failure& failure) {
            EXPECT_EQ(failure.Number(), engine::GenericFailure);
            EXPECT_EQ(connection.Errors().size(), 1);
            EXPECT_EQ(connection.Errors().value(0).SQLState, failure.Item().SQLState);
            EXPECT_FALSE(failure.Item().Description.isEmpty());
            return failure.Item().SQLState.toInt();
        }
        EXPECT_TRUE(connection.Errors().isEmpty());
        return 0;
    }
    static int FailureOf(engine::Connection& connection, const QString& sql) {
        return FailureOf(connection, [&] { Q_UNUSED(connection.Execute(sql, nullptr)); });
    }
    [[nodiscard]] int OpenFailure(const QString& file) const {
        auto connection = Context->Factory().NewConnection();
        const int number = FailureOf(*connection, [&] { connection->Open(file); });
        EXPECT_EQ(connection->ConnectionState(), number == 0 ? engine::State::Open : engine::State::Closed);
        return number;
    }
    [[nodiscard]] static bool IsTransient(int number) {
        return engine::IsTransientError(engine::GenericFailure, 0, QString::number(number));
    }
};
