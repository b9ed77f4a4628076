#include "store/engine/sqlite/ErrorMap.h"

#include "support/Printing.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cerrno>

namespace {

namespace Number = engine::Number;
using engine::sqlite::Doing;
using engine::sqlite::NumberFor;

bool IsTransient(int number) {
    return engine::IsTransientError(engine::GenericFailure, 0, QString::number(number));
}

TEST(ErrorMap, EveryCodeHasTheNumberOfItsMeaning) {
    struct Row {
        int Code;
        Doing What;
        int Expected;
        bool TriedAgain;
    };
    const Row rows[] = {
        {SQLITE_BUSY, Doing::Open, Number::FileInUse, true},
        {SQLITE_BUSY, Doing::Read, Number::LockedByAnother, true},
        {SQLITE_BUSY, Doing::Insert, Number::LockedByAnother, true},
        {SQLITE_BUSY_RECOVERY, Doing::Open, Number::FileInUse, true},
        {SQLITE_BUSY_SNAPSHOT, Doing::Update, Number::LockedByAnother, true},
        {SQLITE_LOCKED, Doing::Read, Number::TableLocked, true},
        {SQLITE_LOCKED_SHAREDCACHE, Doing::Read, Number::TableLocked, true},
        {SQLITE_CANTOPEN, Doing::Open, Number::CannotOpen, true},
        {SQLITE_CONSTRAINT_UNIQUE, Doing::Insert, Number::DuplicateKey, false},
        {SQLITE_CONSTRAINT_PRIMARYKEY, Doing::Insert, Number::DuplicateKey, false},
        {SQLITE_CONSTRAINT_ROWID, Doing::Insert, Number::DuplicateKey, false},
        {SQLITE_CONSTRAINT_NOTNULL, Doing::Update, Number::RequiredValueMissing, false},
        {SQLITE_CONSTRAINT_CHECK, Doing::Insert, Number::EmptyTextNotAllowed, false},
        {SQLITE_CONSTRAINT_FOREIGNKEY, Doing::Delete, Number::CannotDeleteReferenced, false},
        {SQLITE_CONSTRAINT_FOREIGNKEY, Doing::Insert, Number::RelatedRecordRequired, false},
        {SQLITE_CONSTRAINT_DATATYPE, Doing::Insert, Number::DataTypeMismatch, false},
        {SQLITE_CONSTRAINT, Doing::Insert, 3000, false},
        {SQLITE_CONSTRAINT_TRIGGER, Doing::Insert, 3000, false},
        {SQLITE_CONSTRAINT_FUNCTION, Doing::Update, 3000, false},
        {SQLITE_CONSTRAINT_VTAB, Doing::Update, 3000, false},
        {SQLITE_NOTADB, Doing::Open, Number::NotADatabase, false},
        {SQLITE_CORRUPT, Doing::Read, Number::Damaged, false},
        {SQLITE_CORRUPT_INDEX, Doing::Read, Number::Damaged, false},
        {SQLITE_FULL, Doing::Insert, Number::DiskFull, false},
        {SQLITE_READONLY, Doing::Insert, Number::ReadOnly, false},
        {SQLITE_READONLY_DIRECTORY, Doing::Insert, Number::ReadOnly, false},
        {SQLITE_READONLY_DBMOVED, Doing::Insert, Number::ReadOnly, false},
        {SQLITE_NOMEM, Doing::Read, Number::SystemResources, false},
        {SQLITE_IOERR_NOMEM, Doing::Insert, Number::SystemResources, false},
        {SQLITE_TOOBIG, Doing::Insert, Number::ValueTooLong, false},
        {SQLITE_MISMATCH, Doing::Insert, Number::DataTypeMismatch, false},
        {SQLITE_INTERNAL, Doing::Read, 3000, false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(NumberFor(row.Code, row.What, 0), row.Expected) << row.Code;
        EXPECT_EQ(IsTransient(row.Expected), row.TriedAgain) << row.Code;
    }
}

TEST(ErrorMap, AnOutcomeThatNobodyKnowsIsNotTriedAgain) {
    for (const int code :
         {SQLITE_IOERR_WRITE, SQLITE_IOERR_FSYNC, SQLITE_IOERR_TRUNCATE, SQLITE_IOERR_UNLOCK}) {
        for (const Doing what : {Doing::Insert, Doing::Update, Doing::Delete, Doing::Commit}) {
            EXPECT_EQ(NumberFor(code, what, EIO), Number::OutcomeUnknown) << code;
        }
    }
    EXPECT_FALSE(IsTransient(Number::OutcomeUnknown));
}

TEST(ErrorMap, AnErrorOfTheNetworkWhileReadingIsTriedAgain) {
    EXPECT_EQ(NumberFor(SQLITE_IOERR_READ, Doing::Read, EIO), Number::DiskOrNetworkError);
    EXPECT_EQ(NumberFor(SQLITE_IOERR_FSYNC, Doing::Read, EIO), Number::DiskOrNetworkError);
    EXPECT_EQ(NumberFor(SQLITE_IOERR_LOCK, Doing::Insert, EIO), Number::DiskOrNetworkError);
    EXPECT_TRUE(IsTransient(Number::DiskOrNetworkError));
}

TEST(ErrorMap, NoRoomOfAnyKindIsAFullDisk) {
    for (const int systemError : {ENOSPC, EDQUOT, EFBIG}) {
        EXPECT_EQ(NumberFor(SQLITE_IOERR_WRITE, Doing::Insert, systemError), Number::DiskFull);
    }
}

}  // namespace
