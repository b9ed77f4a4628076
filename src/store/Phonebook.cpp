#include "store/Phonebook.h"

#include "core/Numbers.h"
#include "core/Product.h"
#include "core/Settings.h"
#include "core/TextRules.h"
#include "core/Trap.h"
#include "platform/MessageBoxes.h"
#include "store/Outbox.h"

#include <utility>

namespace {

constexpr int NewGroupNameWidth = 10;
constexpr int RenamedGroupNameWidth = 6;

std::unique_ptr<engine::Recordset> OpenRows(const PhonebookState& state, const QString& sql) {
    if (state.PhonebookDB == nullptr) {
        return nullptr;
    }
    return state.PhonebookDB->OpenDynaset(sql, engine::CursorType::ForwardOnly, engine::LockType::ReadOnly);
}

bool Execute(const PhonebookState& state, const QString& sql) {
    return state.PhonebookDB != nullptr && state.PhonebookDB->Execute(sql);
}

qint32 ExecuteRecordResult(const PhonebookState& state, const QString& sql) {
    return state.PhonebookDB == nullptr ? 0 : state.PhonebookDB->ExecuteRecordResult(sql);
}

QString LastError(const PhonebookState& state) {
    return state.PhonebookDB == nullptr ? QString() : state.PhonebookDB->LastError();
}

/// What "SELECT @@IDENTITY" says; null if there is no row.
QVariant ReadIdentity(const PhonebookState& state) {
    const auto rows = state.PhonebookDB->ExecuteRecordset(QStringLiteral("SELECT @@IDENTITY AS ID"));
    return rows == nullptr || rows->EndOfFile() ? QVariant() : rows->Value(u"ID");
}

void ShowBox(MessageBoxes& boxes, const QString& text, BoxIcon icon) {
    boxes.Show({Product::AppTitle, text, icon, BoxButtons::Ok});
}

QString Quoted(const QString& text) {
    return u'\'' + mdlOutbox::QuoteSQL(text) + u'\'';
}

QString Truth(bool value) {
    return value ? QStringLiteral("TRUE") : QStringLiteral("FALSE");
}

void ReplaceDatabase(const PhonebookServices& services) {
    PhonebookState& state = services.State;
    if (state.PhonebookDB != nullptr && state.PhonebookDB->IsBusy()) {
        state.PhonebookDB->CloseDatabase();
        state.Replaced.push_back(std::move(state.PhonebookDB));
    }
    state.PhonebookDB = std::make_unique<DB>(services.Database);
}

void ReadConfig(PhonebookState& state, const engine::Recordset& rows) {
    Trap([&] { state.cfgAllowPrivateGroup = rows.Value(u"cfgAllowPrivateGroup").toBool(); });
    Trap([&] { state.cfgCompany = Numbers::NullToString(rows.Value(u"cfgCompany")); });
    Trap([&] { state.cfgNumberPrefix = Numbers::NullToString(rows.Value(u"cfgNumberPrefix")); });
    if (engine::FieldExists(&rows, u"cfgVersion")) {
        Trap([&] { state.cfgVersion = Numbers::ToInt16(rows.Value(u"cfgVersion")); });
    }
}

QString ContactsQuery(qint32 sort) {
    return sort == 1 ? QStringLiteral("SELECT * FROM qry_Contacts_By_Firstname")
                     : QStringLiteral("SELECT * FROM qry_Contacts_By_Surname");
}

/// A lock may stand in the way of every row behind this one as well; a row that another changed stands alone.
bool IsLock(const engine::Failure& failure) {
    const engine::Error& item = failure.Item();
    return engine::IsTransientError(failure.Number(), item.NativeError, item.SQLState) &&
           item.SQLState != QString::number(engine::Number::RowChangedByAnother);
}

/// False for a row that a lock keeps from being written; one that fails otherwise is passed over.
bool WriteAlphaKeys(engine::Recordset& row) {
    QString name;
    Trap([&] { name = Numbers::NullToString(row.Value(u"cntSurname")); });
    Trap([&] { row.SetValue(u"cntAlphaSurname", mdlPhonebook::GetAlphaKey(name)); });
    name.clear();
    Trap([&] { name = Numbers::NullToString(row.Value(u"cntFirstNames")); });
    Trap([&] { row.SetValue(u"cntAlphaFirstNames", mdlPhonebook::GetAlphaKey(name)); });
    try {
        row.Update();
    } catch (const engine::Failure& failure) {
        return !IsLock(failure);
    }
    return true;
}

}  // namespace

namespace mdlPhonebook {

QString GetPhonebookPath(const Settings& settings) {
    QString contacts = settings.GetValue(SettingNames::SectionDB, SettingNames::Contacts, QString());
    if (!contacts.isEmpty()) {
        return contacts;
    }
    const QString outbox = settings.GetValue(SettingNames::SectionDB, SettingNames::Outbox, QString());
    return outbox.isEmpty() ? QString() : Text::WithBackslash(outbox) + QStringLiteral("smscontacts.mdb");
}

bool OpenPhonebook(const PhonebookServices& services) {
    if (services.NewContactLists) {
        services.NewContactLists();
    }
    PhonebookState& state = services.State;
    ReplaceDatabase(services);
    state.cfgVersion = 1;
    state.PhonebookDB->Filename = GetPhonebookPath(services.AppSettings);
    if (!state.PhonebookDB->OpenDatabase(engine::Mode::ReadShared)) {
        ShowBox(services.Boxes, QStringLiteral("The Phonebook could not be opened.\r\n") + LastError(state),
                BoxIcon::Critical);
        return false;
    }
    const auto rows = OpenRows(state, QStringLiteral("SELECT * FROM Config"));
    if (rows == nullptr) {
        return false;
    }
    ReadConfig(state, *rows);
    return true;
}

std::optional<bool> ReadRunWizard(const PhonebookState& state) {
    const auto rows = OpenRows(state, QStringLiteral("SELECT * FROM Config"));
    if (rows == nullptr) {
        return std::nullopt;
    }
    bool isDue = false;
    Trap([&] { isDue = rows->Value(u"cfgRunWizard").toBool(); });
    return isDue;
}

QString GetEditPassword(const PhonebookState& state, bool hidden) {
    QString edit;
    QString hiddenEdit;
    Trap([&] {
        const auto rows =
            OpenRows(state, QStringLiteral("SELECT cfgEditPassword, cfgEditHiddenPassword FROM Config"));
        if (rows != nullptr && !rows->EndOfFile()) {
            edit = Numbers::NullToString(rows->Value(u"cfgEditPassword"));
            hiddenEdit = Numbers::NullToString(rows->Value(u"cfgEditHiddenPassword"));
        }
    });
    return hidden && !hiddenEdit.isEmpty() ? hiddenEdit : edit;
}

std::unique_ptr<engine::Recordset> GetContacts(const PhonebookState& state, const QString& letter,
                                               qint32 sort) {
    if (state.cfgVersion >= 2) {
        return GetContactsByAlpha(state, letter, sort);
    }
    QString sql = ContactsQuery(sort);
    if (letter != QStringLiteral("*")) {
        sql += (sort == 1 ? QStringLiteral(" WHERE cntFirstnames LIKE '")
                          : QStringLiteral(" WHERE cntSurname LIKE '")) +
               mdlOutbox::QuoteSQL(letter) + QStringLiteral("%'");
    }
    return OpenRows(state, sql);
}

std::unique_ptr<engine::Recordset> GetContactsByAlpha(const PhonebookState& state, const QString& letter,
                                                      qint32 sort) {
    QString sql = ContactsQuery(sort);
    if (letter != QStringLiteral("*")) {
        sql += (sort == 1 ? QStringLiteral(" WHERE cntAlphaFirstnames = ")
                          : QStringLiteral(" WHERE cntAlphaSurname = ")) +
               Quoted(letter);
    }
    return OpenRows(state, sql);
}

std::unique_ptr<engine::Recordset> GetGroups(const PhonebookState& state) {
    return OpenRows(state, QStringLiteral("SELECT * FROM qry_Groups;"));
}

std::unique_ptr<engine::Recordset> GetGroupMembers(const PhonebookState& state, qint32 groupID) {
    return OpenRows(state, QStringLiteral("SELECT * FROM [qry_Group_Contacts] WHERE grpID = ") +
                               QString::number(groupID));
}

std::unique_ptr<engine::Recordset> GetMessageTails(const PhonebookState& state) {
    return OpenRows(state, QStringLiteral("SELECT * FROM MessageTail"));
}

std::unique_ptr<engine::Recordset> GetContactByID(const PhonebookState& state, qint32 id) {
    auto rows = OpenRows(state, QStringLiteral("SELECT * FROM Contact WHERE cntID = ") + QString::number(id));
    return rows != nullptr && rows->EndOfFile() ? nullptr : std::move(rows);
}

qint32 AddContact(const PhonebookServices& services, const ContactFields& fields) {
    const QString sql =
        QStringLiteral(
            "INSERT INTO Contact (cntSurname, cntFirstnames, cntPhone, cntConfirmSend, cntPrivateNumber, "
            "cntAlphaSurname, cntAlphaFirstNames, cntNote, cntUserField1, cntUserField2, cntUserField3) "
            "VALUES (") +
        Quoted(fields.Surname) + u',' + Quoted(fields.Firstnames) + u',' + Quoted(fields.Phone) + u',' +
        Truth(fields.ConfirmSend) + u',' + Truth(fields.IsPrivate) + u',' +
        Quoted(GetAlphaKey(fields.Surname)) + u',' + Quoted(GetAlphaKey(fields.Firstnames)) + u',' +
        Quoted(fields.Note) + u',' + Quoted(fields.UserFields[0]) + u',' + Quoted(fields.UserFields[1]) +
        u',' + Quoted(fields.UserFields[2]) + u')';
    if (!Execute(services.State, sql)) {
        ShowBox(services.Boxes, QStringLiteral("Error:\r\n") + LastError(services.State), BoxIcon::Critical);
        return 0;
    }
    qint32 id = 0;
    Trap([&] { id = Numbers::NullToLong(ReadIdentity(services.State)); });
    return id;
}

bool UpdateContact(const PhonebookServices& services, qint32 id, const ContactFields& fields) {
    const QString sql =
        QStringLiteral("UPDATE Contact SET cntSurname = ") + Quoted(fields.Surname) +
        QStringLiteral(",cntFirstnames =") + Quoted(fields.Firstnames) + QStringLiteral(",cntPhone =") +
        Quoted(fields.Phone) + QStringLiteral(",cntConfirmSend = ") + Truth(fields.ConfirmSend) +
        QStringLiteral(",cntPrivateNumber = ") + Truth(fields.IsPrivate) +
        QStringLiteral(",cntAlphaSurname =") + Quoted(GetAlphaKey(fields.Surname)) +
        QStringLiteral(",cntAlphaFirstNames = ") + Quoted(GetAlphaKey(fields.Firstnames)) +
        QStringLiteral(",cntNote = ") + Quoted(fields.Note) + QStringLiteral(",cntUserField1 = ") +
        Quoted(fields.UserFields[0]) + QStringLiteral(",cntUserField2 = ") + Quoted(fields.UserFields[1]) +
        QStringLiteral(",cntUserField3 = ") + Quoted(fields.UserFields[2]) +
        QStringLiteral(" WHERE cntID = ") + QString::number(id);
    if (!Execute(services.State, sql)) {
        ShowBox(services.Boxes, QStringLiteral("An Error Occured:\r\n") + LastError(services.State),
                BoxIcon::Critical);
        return false;
    }
    return true;
}

bool DeleteContact(const PhonebookState& state, qint32 id) {
    return ExecuteRecordResult(
               state, QStringLiteral("DELETE FROM Contact WHERE cntID = ") + QString::number(id)) == 1;
}

void AddToGroup(const PhonebookState& state, qint16 groupID, const QString& keys) {
    const QString lineBreak = QStringLiteral("\r\n");
    if (!keys.contains(lineBreak)) {
        return;
    }
    for (const QString& key : keys.split(lineBreak)) {
        if (key.startsWith(u'C')) {
            // A key from a menu ends in a tab; between the parts of a statement that is as good as a blank.
            static_cast<void>(
                Execute(state, QStringLiteral("INSERT INTO GroupMember (grpID, cntID) VALUES (") +
                                   QString::number(groupID) + u',' + key.mid(1) + u')'));
        }
    }
}

void RemoveFromGroup(const PhonebookState& state, qint16 groupID, qint16 contactID) {
    static_cast<void>(Execute(state, QStringLiteral("DELETE FROM GroupMember WHERE grpID = ") +
                                         QString::number(groupID) + QStringLiteral(" AND cntID = ") +
                                         QString::number(contactID)));
}

qint16 AddGroup(const PhonebookServices& services, const QString& name) {
    const PhonebookState& state = services.State;
    if (Execute(state, QStringLiteral("INSERT INTO ContactGroup (grpName) VALUES (") +
                           Quoted(name.left(NewGroupNameWidth)) + u')')) {
        const QVariant id = ReadIdentity(state);
        return id.isNull() ? qint16(0) : Numbers::ToInt16(id);
    }
    if (LastError(state).contains(QStringLiteral("SQL:3022"))) {
        ShowBox(services.Boxes, QStringLiteral("A Group with that name already exists"),
                BoxIcon::Information);
    } else {
        ShowBox(services.Boxes, QStringLiteral("An error has ocurred:\r\n") + LastError(state),
                BoxIcon::Critical);
    }
    return 0;
}

void RenameGroup(const PhonebookState& state, qint16 groupID, const QString& name) {
    static_cast<void>(Execute(state, QStringLiteral("UPDATE ContactGroup SET grpName = ") +
                                         Quoted(name.left(RenamedGroupNameWidth)) +
                                         QStringLiteral(" WHERE grpID = ") + QString::number(groupID)));
}

bool DeleteGroup(const PhonebookState& state, qint32 groupID) {
    return ExecuteRecordResult(state, QStringLiteral("DELETE FROM ContactGroup WHERE grpID = ") +
                                          QString::number(groupID)) == 1;
}

QStringList GetUserFieldHeaders(const PhonebookState& state) {
    const auto rows = OpenRows(state, QStringLiteral("SELECT * FROM UserFields"));
    if (rows == nullptr) {
        return {};
    }
    QStringList captions = {QStringLiteral("User 1"), QStringLiteral("User 2"), QStringLiteral("User 3")};
    Trap([&] {
        for (; !rows->EndOfFile(); rows->MoveNext()) {
            const qint64 index = qint64{Numbers::NullToLong(rows->Value(u"hdrFieldID"))} - 1;
            if (index >= 0 && index < captions.size()) {
                captions[index] = Numbers::NullToString(rows->Value(u"hdrFieldCaption"));
            }
        }
    });
    return captions;
}

void SaveUserFieldHeaders(const PhonebookState& state, const QStringList& captions) {
    for (qsizetype i = 0; i < captions.size(); ++i) {
        ExecuteRecordResult(state, QStringLiteral("UPDATE UserFields SET hdrFieldCaption = ") +
                                       Quoted(captions.at(i)) + QStringLiteral(" WHERE hdrFieldID = ") +
                                       QString::number(i + 1));
    }
}

QString GetAlphaKey(const QString& name) {
    const QChar first = name.isEmpty() ? QChar(u'#') : name.at(0).toUpper();
    return first >= u'A' && first <= u'Z' ? QString(first) : QStringLiteral("#");
}

void RebuildAlphaKeys(const PhonebookState& state) {
    if (state.PhonebookDB == nullptr) {
        return;
    }
    const auto rows = state.PhonebookDB->OpenDynaset(
        QStringLiteral("SELECT * FROM Contact"), engine::CursorType::Dynamic, engine::LockType::Optimistic);
    if (!engine::FieldExists(rows.get(), u"cntAlphaSurname")) {
        return;
    }
    // Each row waits for a lock; after so many in a row it will not go soon, and there may be thousands.
    constexpr int MaxLocksInARow = 3;
    Trap([&] {
        for (int locks = 0; !rows->EndOfFile() && locks < MaxLocksInARow; rows->MoveNext()) {
            locks = WriteAlphaKeys(*rows) ? 0 : locks + 1;
        }
    });
}

}  // namespace mdlPhonebook
