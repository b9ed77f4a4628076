#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

/// A disk whose databases cannot be read while it is told so, as on a network that is gone for a moment.
/// Holds for the databases that this process opens during the life of the object; one at a time.
class UnreadableDisk {
public:
    UnreadableDisk() {
        Shared() = this;
        m_machine = sqlite3_vfs_find(nullptr);
        m_system = *m_machine;
        m_system.zName = "unreadable";
        m_system.xOpen = Open;
        EXPECT_EQ(sqlite3_vfs_register(&m_system, 1), SQLITE_OK);
    }
    ~UnreadableDisk() {
        sqlite3_vfs_unregister(&m_system);
        sqlite3_vfs_register(m_machine, 1);
    }
    UnreadableDisk(const UnreadableDisk&) = delete;
    UnreadableDisk& operator=(const UnreadableDisk&) = delete;

    /// How many of the next readings fail.
    int Failures = 0;

private:
    static UnreadableDisk*& Shared() {
        static UnreadableDisk* disk = nullptr;
        return disk;
    }
    static int Open(sqlite3_vfs*, sqlite3_filename name, sqlite3_file* file, int flags, int* answer) {
        UnreadableDisk& disk = *Shared();
        const int code = disk.m_machine->xOpen(disk.m_machine, name, file, flags, answer);
        if (code == SQLITE_OK && (flags & SQLITE_OPEN_MAIN_DB) != 0) {
            disk.m_read = file->pMethods->xRead;
            disk.m_methods = *file->pMethods;
            disk.m_methods.xRead = Read;
            file->pMethods = &disk.m_methods;
        }
        return code;
    }
    static int Read(sqlite3_file* file, void* bytes, int count, sqlite3_int64 position) {
        UnreadableDisk& disk = *Shared();
        if (disk.Failures > 0) {
            --disk.Failures;
            return SQLITE_IOERR_READ;
        }
        return disk.m_read(file, bytes, count, position);
    }

    sqlite3_vfs* m_machine = nullptr;
    sqlite3_vfs m_system{};
    sqlite3_io_methods m_methods{};
    int (*m_read)(sqlite3_file*, void*, int, sqlite3_int64) = nullptr;
};
