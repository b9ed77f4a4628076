#pragma once

#include "support/RawDatabase.h"
#include "support/TempOffice.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>

/// Somebody sits on a database file, and lets go of it after what `happens` in the first wait of the program.
class LockedFile {
public:
    LockedFile(TempOffice& office, const QString& path, std::function<void()> happens)
        : m_office(office), m_other(path) {
        m_other.Execute(QStringLiteral("BEGIN EXCLUSIVE"));
        office.Pump.OnProcess = [this, happens = std::move(happens)](int) {
            if (!std::exchange(m_hasHappened, true)) {
                happens();
                m_other.Execute(QStringLiteral("COMMIT"));
            }
        };
    }
    ~LockedFile() {
        EXPECT_TRUE(m_hasHappened) << "nothing waited";
        m_office.Pump.OnProcess = {};
    }
    LockedFile(const LockedFile&) = delete;
    LockedFile& operator=(const LockedFile&) = delete;

private:
    TempOffice& m_office;
    RawDatabase m_other;
    bool m_hasHappened = false;
};
