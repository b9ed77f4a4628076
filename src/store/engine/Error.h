#pragma once

#include <QString>

#include "core/NumberedFailure.h"

namespace engine {

/// The number that every failure of an engine carries outside; what went wrong stands in SQLState.
inline constexpr qint32 GenericFailure = static_cast<qint32>(0x80004005U);

/// Engine errors that this program tells apart, by the numbers that the field gives them. They stand in
/// SQLState as decimal text.
namespace Number {
inline constexpr int TableLockedExclusive = 3008;
inline constexpr int TableLocked = 3211;
inline constexpr int SystemResources = 3035;
inline constexpr int DiskOrNetworkError = 3043;
inline constexpr int InvalidStatement = 3129;    // begins with no known verb
inline constexpr int CharactersAfterEnd = 3142;  // a second statement, or anything else behind the end
inline constexpr int NotPartOfAggregate = 3122;  // a column that is not grouped by
inline constexpr int QueryTooComplex = 3360;
inline constexpr int DataTypeMismatch = 3421;
inline constexpr int ValueTooLong = 3163;
inline constexpr int RelatedRecordRequired = 3201;
inline constexpr int CannotCreate = 3012;  // an object of that name already exists
inline constexpr int RequiredValueMissing = 3314;
inline constexpr int EmptyTextNotAllowed = 3315;
inline constexpr int DuplicateKey = 3022;
inline constexpr int NoSuchFile = 3024;
inline constexpr int DiskFull = 3026;
inline constexpr int ReadOnly = 3027;
inline constexpr int FileInUse = 3045;
inline constexpr int CannotOpen = 3051;
inline constexpr int Damaged = 3049;
inline constexpr int NotADatabase = 3343;
inline constexpr int UnknownColumn = 3061;
inline constexpr int SyntaxInExpression = 3075;
inline constexpr int SyntaxInSelect = 3141;
inline constexpr int SyntaxInInsert = 3134;
inline constexpr int SyntaxInUpdate = 3144;
inline constexpr int SyntaxInDelete = 3128;
inline constexpr int NoSuchTable = 3078;
inline constexpr int TransactionLost = 3034;  // rolled back by a failure, not by whoever began it
inline constexpr int OutcomeUnknown = 3146;
inline constexpr int RowChangedByAnother = 3197;
inline constexpr int LockedByAnother = 3218;
inline constexpr int RowLocked = 3260;
inline constexpr int ItemNotFound = 3265;
inline constexpr int ObjectClosed = 3704;
inline constexpr int CannotDeleteReferenced = 3200;
}  // namespace Number

/// One item of a connection's error collection.
struct Error {
    qint32 NativeError = 0;
    /// The engine error in decimal, "3045".
    QString SQLState;
    QString Description;
};

/// What an engine throws: the generic number and the item that is also put into the error collection.
class Failure : public NumberedFailure {
public:
    /// `number` is one of Number; `description` is for people and is never searched.
    Failure(int number, const QString& description, qint32 nativeError = 0);
    /// A failure with another generic number than GenericFailure, as for the use of a closed object.
    static Failure WithNumber(qint32 generic, const QString& description);

    [[nodiscard]] qint32 Number() const override { return m_number; }
    [[nodiscard]] const Error& Item() const { return m_item; }

private:
    qint32 m_number = GenericFailure;
    Error m_item;
};

/// The one question that callers ask of an error: can the same thing be tried again? True for the 31 numbers
/// by which engines report lock and sharing conflicts, and only under GenericFailure. `sqlState` is read as a
/// number.
[[nodiscard]] bool IsTransientError(qint32 number, qint32 nativeError, const QString& sqlState);

}  // namespace engine
