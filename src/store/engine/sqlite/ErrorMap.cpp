#include "store/engine/sqlite/ErrorMap.h"

#include <sqlite3.h>

#include <QString>

#include <cerrno>

namespace engine::sqlite {

namespace {

constexpr int OtherError = 3000;  // "reserved error"

int ForConstraint(int code, Doing doing) {
    switch (code) {
        case SQLITE_CONSTRAINT_UNIQUE:
        case SQLITE_CONSTRAINT_PRIMARYKEY:
        case SQLITE_CONSTRAINT_ROWID:
            return Number::DuplicateKey;
        case SQLITE_CONSTRAINT_NOTNULL:
            return Number::RequiredValueMissing;
        case SQLITE_CONSTRAINT_CHECK:
            return Number::EmptyTextNotAllowed;
        case SQLITE_CONSTRAINT_FOREIGNKEY:
            return doing == Doing::Delete ? Number::CannotDeleteReferenced : Number::RelatedRecordRequired;
        case SQLITE_CONSTRAINT_DATATYPE:
            return Number::DataTypeMismatch;
        default:
            return OtherError;
    }
}

/// Errors that come up before the first byte of a change is final.
bool IsBeforeCommit(int code) {
    switch (code) {
        case SQLITE_IOERR_READ:
        case SQLITE_IOERR_SHORT_READ:
        case SQLITE_IOERR_FSTAT:
        case SQLITE_IOERR_RDLOCK:
        case SQLITE_IOERR_LOCK:
        case SQLITE_IOERR_CHECKRESERVEDLOCK:
        case SQLITE_IOERR_BLOCKED:
        case SQLITE_IOERR_ACCESS:
            return true;
        default:
            return false;
    }
}

bool IsNoSpace(int systemError) {
    return systemError == ENOSPC || systemError == EDQUOT || systemError == EFBIG;
}

int ForInputOutput(int code, Doing doing, int systemError) {
    if (code == SQLITE_IOERR_NOMEM) {
        return Number::SystemResources;
    }
    if (code == SQLITE_IOERR_CORRUPTFS || code == SQLITE_IOERR_DATA) {
        return Number::Damaged;
    }
    if (IsNoSpace(systemError)) {
        return Number::DiskFull;
    }
    const bool isWriting =
        doing == Doing::Insert || doing == Doing::Update || doing == Doing::Delete || doing == Doing::Commit;
    return isWriting && !IsBeforeCommit(code) ? Number::OutcomeUnknown : Number::DiskOrNetworkError;
}

/// What the machine said last about the database file or its journal. SQLite itself knows a full disk only,
/// not a used up quota, and by the time it reports that, its rollback may have had errors of its own.
int SystemErrorOf(sqlite3* database) {
    int systemError = 0;
    sqlite3_file_control(database, nullptr, SQLITE_FCNTL_LAST_ERRNO, &systemError);
    if (IsNoSpace(systemError)) {
        return systemError;
    }
    sqlite3_file* journal = nullptr;
    sqlite3_file_control(database, nullptr, SQLITE_FCNTL_JOURNAL_POINTER, &journal);
    if (journal != nullptr && journal->pMethods != nullptr) {
        journal->pMethods->xFileControl(journal, SQLITE_FCNTL_LAST_ERRNO, &systemError);
    }
    return IsNoSpace(systemError) ? systemError : sqlite3_system_errno(database);
}

}  // namespace

int NumberFor(int code, Doing doing, int systemError) {
    constexpr int PrimaryCode = 0xFF;
    switch (code & PrimaryCode) {
        case SQLITE_BUSY:
        case SQLITE_PROTOCOL:
            return doing == Doing::Open ? Number::FileInUse : Number::LockedByAnother;
        case SQLITE_LOCKED:
        case SQLITE_SCHEMA:
            return Number::TableLocked;
        case SQLITE_READONLY:
            return Number::ReadOnly;
        case SQLITE_CANTOPEN:
        case SQLITE_PERM:
        case SQLITE_AUTH:
            return Number::CannotOpen;
        case SQLITE_FULL:
            return Number::DiskFull;
        case SQLITE_CORRUPT:
            return Number::Damaged;
        case SQLITE_NOTADB:
            return Number::NotADatabase;
        case SQLITE_NOMEM:
            return Number::SystemResources;
        case SQLITE_IOERR:
            return ForInputOutput(code, doing, systemError);
        case SQLITE_CONSTRAINT:
            return ForConstraint(code, doing);
        case SQLITE_TOOBIG:
            return Number::ValueTooLong;
        case SQLITE_MISMATCH:
            return Number::DataTypeMismatch;
        default:
            return OtherError;
    }
}

void ThrowFailure(sqlite3* database, int code, Doing doing) {
    const int systemError = database != nullptr ? SystemErrorOf(database) : 0;
    const char* message = database != nullptr ? sqlite3_errmsg(database) : sqlite3_errstr(code);
    throw Failure(NumberFor(code, doing, systemError), QString::fromUtf8(message), code);
}

}  // namespace engine::sqlite
