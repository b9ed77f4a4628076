#pragma once

#include "store/DB.h"
#include "store/FakeOffice.h"

#include <gtest/gtest.h>

#include <memory>

/// A database on an engine that fails on demand.
class DBTest : public ::testing::Test {
protected:
    FakeDatabase Machine;
    DB Database{Machine.Services()};
    const QString AnySQL = QStringLiteral("UPDATE Message SET msgStatus = 2");

    void Open() { ASSERT_TRUE(Database.OpenDatabase(engine::Mode::ReadWriteShared)); }
    std::unique_ptr<engine::Recordset> OpenRows() {
        return Database.OpenDynaset(QStringLiteral("SELECT * FROM Message"), engine::CursorType::ForwardOnly,
                                    engine::LockType::ReadOnly);
    }
    [[nodiscard]] int Attempts(FakeEngine::Operation operation) const {
        return Machine.Engine.Attempts(operation);
    }
};
