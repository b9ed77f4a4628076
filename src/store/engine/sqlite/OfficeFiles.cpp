#include "store/engine/sqlite/OfficeFiles.h"

#include "platform/Clock.h"
#include "platform/Drives.h"
#include "store/engine/Error.h"
#include "store/engine/FileConnection.h"
#include "store/engine/sqlite/Database.h"

#include <QFile>

namespace OfficeFiles {

namespace {

using engine::Failure;
using engine::sqlite::Database;
using engine::sqlite::Doing;

constexpr const char* OutboxTables = R"(
CREATE TABLE Message (
    msgID INTEGER PRIMARY KEY AUTOINCREMENT,
    msgRecipient TEXT COLLATE NOCASE,
    msgAddress TEXT COLLATE NOCASE,
    msgText TEXT COLLATE NOCASE,
    msgSendTime DATETIME,
    msgSignature TEXT COLLATE NOCASE,
    msgStation TEXT COLLATE NOCASE,
    msgBodyTextSize INTEGER,
    msgStatus INTEGER NOT NULL DEFAULT 0,
    msgComplete BOOLEAN NOT NULL DEFAULT 0,
    msgDeliveryStatus INTEGER,
    msgDeliveryTime DATETIME,
    msgErrorReason TEXT COLLATE NOCASE,
    msgTariff NUMERIC,
    msgFragmentCount INTEGER);
CREATE INDEX MessageByStatus ON Message (msgStatus, msgSendTime);
CREATE INDEX MessageBySendTime ON Message (msgSendTime);
CREATE TABLE System (sysSMSMaxMessageSize INTEGER NOT NULL);
)";

// The log counts cost in hundredths, as the tariff does; a body size of 0 or none means that all of the text
// is body.
constexpr const char* OutboxQueries = R"(
CREATE VIEW qry_Report_Message_Log AS
    SELECT msgID, msgSendTime, msgRecipient, msgAddress, msgText,
        CASE WHEN msgBodyTextSize > 0 THEN substr(msgText, 1, msgBodyTextSize) ELSE msgText END AS msgBodyText,
        msgDeliveryTime, msgStatus, msgTariff, msgFragmentCount, msgTariff * msgFragmentCount AS msgCost
    FROM Message WHERE msgStatus <> 2 ORDER BY msgSendTime, msgID;
CREATE VIEW qry_Canceled_Messages AS
    SELECT msgID, msgSendTime, msgRecipient, msgAddress, msgText, msgErrorReason,
        CASE WHEN msgBodyTextSize > 0 THEN substr(msgText, 1, msgBodyTextSize) ELSE msgText END AS msgBodyText,
        msgDeliveryTime, msgStatus, msgTariff, msgFragmentCount, msgTariff * msgFragmentCount AS msgCost
    FROM Message WHERE msgStatus = 2 ORDER BY msgSendTime, msgID;
)";

// Three parts of 153 characters: what a long text message is charged as on every network.
constexpr const char* OutboxRows = "INSERT INTO System (sysSMSMaxMessageSize) VALUES (459);";

constexpr const char* PhonebookTables = R"(
CREATE TABLE Contact (
    cntID INTEGER PRIMARY KEY AUTOINCREMENT,
    cntSurname TEXT COLLATE LARKSPAN,
    cntFirstnames TEXT COLLATE LARKSPAN,
    cntPhone TEXT COLLATE NOCASE,
    cntConfirmSend BOOLEAN NOT NULL DEFAULT 0,
    cntPrivateNumber BOOLEAN NOT NULL DEFAULT 0,
    cntAlphaSurname TEXT COLLATE NOCASE,
    cntAlphaFirstNames TEXT COLLATE NOCASE,
    cntNote TEXT COLLATE NOCASE,
    cntUserField1 TEXT COLLATE NOCASE,
    cntUserField2 TEXT COLLATE NOCASE,
    cntUserField3 TEXT COLLATE NOCASE);
CREATE INDEX ContactBySurname ON Contact (cntSurname, cntFirstnames);
CREATE INDEX ContactByFirstnames ON Contact (cntFirstnames, cntSurname);
CREATE TABLE ContactGroup (
    grpID INTEGER PRIMARY KEY AUTOINCREMENT,
    grpName TEXT NOT NULL COLLATE LARKSPAN UNIQUE CHECK (grpName <> ''));
CREATE TABLE GroupMember (
    grpID INTEGER NOT NULL REFERENCES ContactGroup (grpID) ON DELETE CASCADE,
    cntID INTEGER NOT NULL REFERENCES Contact (cntID) ON DELETE CASCADE,
    PRIMARY KEY (grpID, cntID));
CREATE INDEX GroupMemberByContact ON GroupMember (cntID);
CREATE TABLE MessageTail (mtlText TEXT COLLATE NOCASE, mtlDefault BOOLEAN NOT NULL DEFAULT 0);
CREATE TABLE UserFields (hdrFieldID INTEGER PRIMARY KEY, hdrFieldCaption TEXT COLLATE NOCASE);
CREATE TABLE Config (
    cfgVersion INTEGER NOT NULL DEFAULT 2,
    cfgAllowPrivateGroup BOOLEAN NOT NULL DEFAULT 1,
    cfgCompany TEXT,
    cfgNumberPrefix TEXT,
    cfgRunWizard BOOLEAN NOT NULL DEFAULT 0,
    cfgEditPassword TEXT,
    cfgEditHiddenPassword TEXT,
    cfgPublicHistoryPassword TEXT,
    cfgReportPassword TEXT);
)";

constexpr const char* PhonebookQueries = R"(
CREATE VIEW qry_Contacts_By_Surname AS SELECT * FROM Contact ORDER BY cntSurname, cntFirstnames, cntID;
CREATE VIEW qry_Contacts_By_Firstname AS SELECT * FROM Contact ORDER BY cntFirstnames, cntSurname, cntID;
CREATE VIEW qry_Groups AS SELECT grpID, grpName FROM ContactGroup ORDER BY grpName;
CREATE VIEW qry_Group_Contacts AS
    SELECT Contact.*, GroupMember.grpID AS grpID
    FROM GroupMember JOIN Contact ON Contact.cntID = GroupMember.cntID
    ORDER BY Contact.cntSurname, Contact.cntFirstnames, Contact.cntID;
)";

constexpr const char* PhonebookRows = R"(
INSERT INTO Config (cfgVersion, cfgCompany, cfgNumberPrefix, cfgEditPassword, cfgEditHiddenPassword,
    cfgPublicHistoryPassword, cfgReportPassword) VALUES (2, '', '+', '', '', '', '');
INSERT INTO UserFields (hdrFieldID, hdrFieldCaption) VALUES (1, 'User 1'), (2, 'User 2'), (3, 'User 3');
)";

void CreateFile(const QString& path, std::initializer_list<const char*> parts) {
    const QString native = NativePath(path);
    QFile file(native);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        const bool isThere = QFile::exists(native);
        throw Failure(isThere ? engine::Number::CannotCreate : engine::Number::CannotOpen,
                      isThere ? QStringLiteral("There is a file of that name already.")
                              : QStringLiteral("The file cannot be made: ") + file.errorString());
    }
    file.close();
    try {
        SystemClock clock;
        Database database(native, clock);
        database.Run("BEGIN IMMEDIATE", Doing::Begin);
        for (const char* part : parts) {
            database.Run(part, Doing::Insert);
        }
        database.Run("COMMIT", Doing::Commit);
    } catch (...) {
        QFile::remove(native);
        QFile::remove(native + QStringLiteral("-journal"));
        throw;
    }
}

}  // namespace

void CreateOutboxFile(const QString& path) {
    CreateFile(path, {OutboxTables, OutboxQueries, OutboxRows});
}

void CreatePhonebookFile(const QString& path) {
    CreateFile(path, {PhonebookTables, PhonebookQueries, PhonebookRows});
}

void CompactFile(const QString& path) {
    const QString native = NativePath(path);
    engine::FileInspector().CheckSqlite(native);
    SystemClock clock;
    // The journal that stays in place is as large as the largest change before.
    Database(native, clock).Run("PRAGMA journal_size_limit = 0; VACUUM", Doing::Copy);
}

}  // namespace OfficeFiles
