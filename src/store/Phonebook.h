#pragma once

#include "store/DB.h"

#include <QString>
#include <QStringList>

#include <array>
#include <functional>
#include <memory>
#include <vector>

class MessageBoxes;
class Settings;

/// What is global about the phonebook: the database, open from start to exit, and what its Config row says.
struct PhonebookState {
    std::unique_ptr<DB> PhonebookDB;
    qint16 cfgVersion = 1;
    bool cfgAllowPrivateGroup = false;
    QString cfgCompany;
    QString cfgNumberPrefix;
    /// Replaced while a statement of theirs was still waiting for its next attempt; closed.
    std::vector<std::unique_ptr<DB>> Replaced;
};

/// What the phonebook operations need.
struct PhonebookServices {
    PhonebookState& State;
    Settings& AppSettings;
    MessageBoxes& Boxes;
    DBServices Database;
    /// Called by OpenPhonebook before it opens: whoever holds contacts of the previous phonebook starts anew.
    std::function<void()> NewContactLists;
};

/// The fields of a contact as AddContact and UpdateContact write them.
struct ContactFields {
    QString Surname;
    QString Firstnames;
    QString Phone;
    bool ConfirmSend = false;
    bool IsPrivate = false;
    QString Note;
    std::array<QString, 3> UserFields;
};

/// The statements on PhonebookDB, one routine a statement. Recordsets are forward-only and read-only and
/// belong to the caller; none on failure. Boxes carry the product's title.
namespace mdlPhonebook {

/// The file of the phonebook: the setting Contacts, or "smscontacts.mdb" behind the setting Outbox, which
/// then has to be a folder; empty if both are.
[[nodiscard]] QString GetPhonebookPath(const Settings& settings);
/// Opens the phonebook and reads the Config row into the state. A failed open has shown its box.
bool OpenPhonebook(const PhonebookServices& services);
/// The phonebook wizard's flag of the Config row; nothing if there is no recordset.
[[nodiscard]] std::optional<bool> ReadRunWizard(const PhonebookState& state);

/// The edit password, or the one for private numbers (the edit password where that is empty). Empty on any
/// failure.
[[nodiscard]] QString GetEditPassword(const PhonebookState& state, bool hidden);

/// `letter` "*" means all. `sort` 0 by surname, 1 by first name.
[[nodiscard]] std::unique_ptr<engine::Recordset> GetContacts(const PhonebookState& state,
                                                             const QString& letter, qint32 sort);
/// The same by the stored alpha keys, "A" to "Z" and "#"; what GetContacts does from version 2 of a phonebook
/// on.
[[nodiscard]] std::unique_ptr<engine::Recordset> GetContactsByAlpha(const PhonebookState& state,
                                                                    const QString& letter, qint32 sort);
/// All groups, by qry_Groups.
[[nodiscard]] std::unique_ptr<engine::Recordset> GetGroups(const PhonebookState& state);
/// The contacts of a group, by qry_Group_Contacts; no rows for an unknown one.
[[nodiscard]] std::unique_ptr<engine::Recordset> GetGroupMembers(const PhonebookState& state, qint32 groupID);
/// All rows of MessageTail.
[[nodiscard]] std::unique_ptr<engine::Recordset> GetMessageTails(const PhonebookState& state);
/// None also if there is no such row.
[[nodiscard]] std::unique_ptr<engine::Recordset> GetContactByID(const PhonebookState& state, qint32 id);

/// The new cntID, 0 on failure (a box has told why). A lock that lasts longer than all attempts reads as
/// success, here and below: nothing is written, no box tells it, and what comes back is the number that this
/// connection gave out last, 0 if it has given out none.
[[nodiscard]] qint32 AddContact(const PhonebookServices& services, const ContactFields& fields);
/// Writes all fields of the row `id`. True also if there is none, and if a lock outlasted all attempts; false
/// for any other failed statement (a box has told why).
[[nodiscard]] bool UpdateContact(const PhonebookServices& services, qint32 id, const ContactFields& fields);
/// True if exactly one row was affected.
bool DeleteContact(const PhonebookState& state, qint32 id);

/// `keys`: list keys separated by line breaks; without any line break nothing happens. Only keys "C..."
/// count. Failures are passed over.
void AddToGroup(const PhonebookState& state, qint16 groupID, const QString& keys);
/// Failures are passed over, a membership that is not there too.
void RemoveFromGroup(const PhonebookState& state, qint16 groupID, qint16 contactID);
/// Stores the first 10 characters. The new grpID, 0 on failure (a box has told why); for a lock that
/// outlasted all attempts as AddContact. Throws OverflowError for a grpID beyond 32767: the row is written by
/// then.
[[nodiscard]] qint16 AddGroup(const PhonebookServices& services, const QString& name);
/// Stores the first 6 characters; failures are not reported.
void RenameGroup(const PhonebookState& state, qint16 groupID, const QString& name);
/// True if exactly one row was affected; the memberships go with it.
bool DeleteGroup(const PhonebookState& state, qint32 groupID);

/// Three captions; empty if the query fails.
[[nodiscard]] QStringList GetUserFieldHeaders(const PhonebookState& state);
/// Writes the captions of the user fields, in order from the first; failures are passed over.
void SaveUserFieldHeaders(const PhonebookState& state, const QStringList& captions);

/// The first character in upper case; "#" if that is not in A to Z.
[[nodiscard]] QString GetAlphaKey(const QString& name);
/// Writes the alpha keys of every contact anew. A row that cannot be written is passed over; three in a row
/// that a lock held up end it. Nothing is reported.
void RebuildAlphaKeys(const PhonebookState& state);

}  // namespace mdlPhonebook
