#pragma once

#include <QString>

/// The two database files of an office, as an installation lays them down: empty tables with their keys,
/// defaults and indexes, the saved queries, and the few rows that the program expects to find.
///
/// Dates are text "YYYY-MM-DD hh:mm:ss", booleans 0 and 1, so that any SQLite tool reads the files. Record
/// numbers are never used twice. Text columns of the outbox compare without regard to ASCII case; the names
/// in the phonebook (cntSurname, cntFirstnames, grpName) are ordered by the collation LARKSPAN, which this
/// program's connections bring.
namespace OfficeFiles {

/// Makes the outbox: Message, one System row, qry_Report_Message_Log and qry_Canceled_Messages. An existing
/// file is never overwritten: throws engine::Failure CannotCreate. What a failed attempt wrote is removed
/// again.
void CreateOutboxFile(const QString& path);

/// Makes the phonebook: Contact, ContactGroup, GroupMember, MessageTail, one Config row, three UserFields
/// rows, and the queries qry_Contacts_By_Surname, qry_Contacts_By_Firstname, qry_Groups and
/// qry_Group_Contacts. Failures as above. cfgRunWizard is FALSE: a fresh office starts straight into its main
/// window, and whoever lays the files down may set company, tails and passwords at once; the wizard can be
/// asked for by the switch /wizard.
void CreatePhonebookFile(const QString& path);

/// Writes a file anew without the room of deleted rows, in its place, under SQLite's own locks: others may
/// have it open, and an interruption leaves the old or the new state. Needs free room of twice the file's
/// size. Throws engine::Failure, NoSuchFile and NotADatabase among them.
void CompactFile(const QString& path);

}  // namespace OfficeFiles
