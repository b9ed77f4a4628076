#include "store/Peer.h"
#include "store/Phonebook.h"
#include "store/engine/sqlite/LockWait.h"
#include "support/RawDatabase.h"
#include "support/TempOffice.h"

#include <gtest/gtest.h>

namespace {

class PhonebookFileTest : public ::testing::Test {
protected:
    TempOffice Office;
    PhonebookState& State = Office.PhonebookValues;

    qint32 Add(const char16_t* surname, const char16_t* firstnames) {
        return Office.AddContact(QString::fromUtf16(surname), QString::fromUtf16(firstnames),
                                 QStringLiteral("+353871234567"));
    }
    /// The column of all rows of a set, which is there.
    static QStringList Column(const std::unique_ptr<engine::Recordset>& rows, QStringView name) {
        QStringList values;
        EXPECT_NE(rows, nullptr);
        for (; rows != nullptr && !rows->EndOfFile(); rows->MoveNext()) {
            values.append(rows->Value(name).toString());
        }
        return values;
    }
    [[nodiscard]] QStringList Surnames(const char16_t* letter, qint32 sort = 0) const {
        return Column(mdlPhonebook::GetContacts(State, QString::fromUtf16(letter), sort), u"cntSurname");
    }
    [[nodiscard]] QStringList Groups() const { return Column(mdlPhonebook::GetGroups(State), u"grpName"); }
    /// Both alpha keys of every contact, as the file has them.
    [[nodiscard]] QStringList AlphaKeys() {
        QStringList keys;
        for (const QVariantMap& row : Office.ContactRows()) {
            keys.append(row.value(QStringLiteral("cntAlphaSurname")).toString() +
                        row.value(QStringLiteral("cntAlphaFirstNames")).toString());
        }
        return keys;
    }
    [[nodiscard]] static QStringList Names(std::initializer_list<const char16_t*> names) {
        QStringList list;
        for (const char16_t* name : names) {
            list.append(QString::fromUtf16(name));
        }
        return list;
    }
    void Reopen() { EXPECT_TRUE(mdlPhonebook::OpenPhonebook(Office.Phonebook())); }
};

// --- opening ---

TEST_F(PhonebookFileTest, ANewPhonebookOpensAsVersion2AndIsWrittenThroughModeSeventeen) {
    EXPECT_EQ(State.cfgVersion, 2);
    EXPECT_TRUE(State.cfgAllowPrivateGroup);
    EXPECT_EQ(State.cfgNumberPrefix, QStringLiteral("+"));
    EXPECT_EQ(Office.PhonebookDB().Filename, Office.DataFolder.path() + QStringLiteral("\\smscontacts.mdb"));
    EXPECT_EQ(Office.PhonebookDB().Connection()->Mode, 17);
    EXPECT_GT(Add(u"Byrne", u"Mary"), 0);
}

TEST_F(PhonebookFileTest, APhonebookWithoutTheColumnCfgVersionFiltersByTheNamesThemselves) {
    Add(u"Byrne", u"Mary");
    Add(u"Émile", u"Anne");
    Office.ExecuteOnPhonebook(QStringLiteral("ALTER TABLE Config DROP COLUMN cfgVersion"));
    Office.ExecuteOnPhonebook(QStringLiteral("UPDATE Contact SET cntAlphaSurname = 'X'"));
    Reopen();
    EXPECT_EQ(State.cfgVersion, 1);
    EXPECT_EQ(Surnames(u"B"), Names({u"Byrne"}));
    EXPECT_EQ(Surnames(u"b"), Names({u"Byrne"}));
    EXPECT_EQ(Surnames(u"X"), QStringList());
    EXPECT_EQ(Surnames(u"M", 1), Names({u"Byrne"}));
    EXPECT_EQ(Surnames(u"*"), Names({u"Byrne", u"Émile"}));
}

TEST_F(PhonebookFileTest, ANullCompanyReadsAsEmpty) {
    Office.ExecuteOnPhonebook(
        QStringLiteral("UPDATE Config SET cfgCompany = NULL, cfgNumberPrefix = NULL, cfgVersion = 3"));
    Reopen();
    EXPECT_EQ(State.cfgCompany, QString());
    EXPECT_EQ(State.cfgNumberPrefix, QString());
    EXPECT_EQ(State.cfgVersion, 3);
}

TEST_F(PhonebookFileTest, AMissingPhonebookShowsItsNumberInTheBox) {
    Office.AppSettings.SetValue(SettingNames::SectionDB, SettingNames::Contacts,
                                Office.DataFolder.filePath(QStringLiteral("gone.mdb")));
    Office.Boxes.Expect();
    EXPECT_FALSE(mdlPhonebook::OpenPhonebook(Office.Phonebook()));
    ASSERT_EQ(Office.Boxes.Shown.size(), 1);
    EXPECT_TRUE(Office.Boxes.Shown.constFirst().Text.startsWith(
        QStringLiteral("The Phonebook could not be opened.\r\nGE:0x80004005, NE:0x")));
    EXPECT_TRUE(Office.Boxes.Shown.constFirst().Text.contains(QStringLiteral(", SQL:3024 - ")));
    EXPECT_FALSE(QFile::exists(Office.DataFolder.filePath(QStringLiteral("gone.mdb")))) << "nothing is made";
}

TEST_F(PhonebookFileTest, AFileThatIsNoDatabaseShowsItsNumberAndStaysAsItIs) {
    const QString path = Office.DataFolder.filePath(QStringLiteral("letter.mdb"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(
        "Dear Sir or Madam, this is not a database, and it is longer than a header of a hundred bytes is, "
        "too.");
    file.close();
    Office.AppSettings.SetValue(SettingNames::SectionDB, SettingNames::Contacts, path);
    Office.Boxes.Expect();
    EXPECT_FALSE(mdlPhonebook::OpenPhonebook(Office.Phonebook()));
    EXPECT_TRUE(Office.Boxes.Shown.value(0).Text.contains(QStringLiteral("SQL:3343")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().startsWith("Dear Sir"));
}

TEST_F(PhonebookFileTest, TheWizardFlagAndThePasswordsAreReadWhenNeeded) {
    Office.ExecuteOnPhonebook(
        QStringLiteral("UPDATE Config SET cfgRunWizard = 1, cfgEditPassword = 'Open ', "
                       "cfgEditHiddenPassword = ''"));
    EXPECT_EQ(mdlPhonebook::ReadRunWizard(State), std::optional(true));
    EXPECT_EQ(mdlPhonebook::GetEditPassword(State, false), QStringLiteral("Open "));
    EXPECT_EQ(mdlPhonebook::GetEditPassword(State, true), QStringLiteral("Open "));
    Office.ExecuteOnPhonebook(
        QStringLiteral("UPDATE Config SET cfgRunWizard = 0, cfgEditPassword = NULL, "
                       "cfgEditHiddenPassword = 'sesame'"));
    EXPECT_EQ(mdlPhonebook::ReadRunWizard(State), std::optional(false));
    EXPECT_EQ(mdlPhonebook::GetEditPassword(State, false), QString());
    EXPECT_EQ(mdlPhonebook::GetEditPassword(State, true), QStringLiteral("sesame"));
}

// --- contacts ---

TEST_F(PhonebookFileTest, AContactNamedONeillIsStoredWithTheAlphaKeyO) {
    ContactFields fields;
    fields.Surname = QStringLiteral("O'Neill");
    fields.Firstnames = QStringLiteral("Émile");
    fields.Phone = QStringLiteral("+353861112222");
    fields.ConfirmSend = true;
    fields.IsPrivate = true;
    fields.Note = QStringLiteral("isn't \"in\"");
    fields.UserFields = {QStringLiteral("one"), QStringLiteral("t'wo"), QString()};
    EXPECT_EQ(Office.AddContact(fields), 1);
    const QVariantMap row = Office.ContactRows().value(0);
    EXPECT_EQ(row.value(QStringLiteral("cntSurname")), fields.Surname);
    EXPECT_EQ(row.value(QStringLiteral("cntFirstnames")), fields.Firstnames);
    EXPECT_EQ(row.value(QStringLiteral("cntPhone")), fields.Phone);
    EXPECT_EQ(row.value(QStringLiteral("cntConfirmSend")), 1);
    EXPECT_EQ(row.value(QStringLiteral("cntPrivateNumber")), 1);
    EXPECT_EQ(row.value(QStringLiteral("cntAlphaSurname")), QStringLiteral("O"));
    EXPECT_EQ(row.value(QStringLiteral("cntAlphaFirstNames")), QStringLiteral("#"));
    EXPECT_EQ(row.value(QStringLiteral("cntNote")), fields.Note);
    EXPECT_EQ(row.value(QStringLiteral("cntUserField2")), QStringLiteral("t'wo"));
    EXPECT_EQ(Surnames(u"O"), Names({u"O'Neill"}));
}

TEST_F(PhonebookFileTest, DigitsAndAccentedLettersStandUnderTheNumberSign) {
    Add(u"3com", u"a");
    Add(u"Ólafur", u"b");
    Add(u"", u"c");
    Add(u"Byrne", u"d");
    EXPECT_EQ(Surnames(u"#").size(), 3);
    EXPECT_EQ(Surnames(u"O"), QStringList());
    EXPECT_EQ(Surnames(u"B"), Names({u"Byrne"}));
    EXPECT_EQ(Surnames(u"D", 1), Names({u"Byrne"}));
    EXPECT_EQ(Surnames(u"*").size(), 4);
}

TEST_F(PhonebookFileTest, ContactsComeInTheOrderThatIsAskedFor) {
    Add(u"Walsh", u"Anne");
    Add(u"byrne", u"Zoe");
    Add(u"Kelly", u"mary");
    EXPECT_EQ(Surnames(u"*", 0), Names({u"byrne", u"Kelly", u"Walsh"}));
    EXPECT_EQ(Surnames(u"*", 1), Names({u"Walsh", u"Kelly", u"byrne"}));
}

TEST_F(PhonebookFileTest, AnUpdateComputesTheAlphaKeysAnew) {
    const qint32 id = Add(u"Byrne", u"Mary");
    const qint32 other = Add(u"Kelly", u"Ann");
    ContactFields fields;
    fields.Surname = QStringLiteral("d'Arcy");
    fields.Firstnames = QStringLiteral("9");
    fields.Phone = QStringLiteral("+44");
    EXPECT_TRUE(mdlPhonebook::UpdateContact(Office.Phonebook(), id, fields));
    const QList<QVariantMap> rows = Office.ContactRows();
    EXPECT_EQ(rows.at(0).value(QStringLiteral("cntSurname")), QStringLiteral("d'Arcy"));
    EXPECT_EQ(rows.at(0).value(QStringLiteral("cntAlphaSurname")), QStringLiteral("D"));
    EXPECT_EQ(rows.at(0).value(QStringLiteral("cntAlphaFirstNames")), QStringLiteral("#"));
    EXPECT_EQ(rows.at(1).value(QStringLiteral("cntID")), other);
    EXPECT_EQ(rows.at(1).value(QStringLiteral("cntSurname")), QStringLiteral("Kelly"));
}

TEST_F(PhonebookFileTest, ADeletedContactIsNoneAndDeletedOnce) {
    const qint32 id = Add(u"Byrne", u"Mary");
    EXPECT_NE(mdlPhonebook::GetContactByID(State, id), nullptr);
    EXPECT_TRUE(mdlPhonebook::DeleteContact(State, id));
    EXPECT_EQ(mdlPhonebook::GetContactByID(State, id), nullptr);
    EXPECT_FALSE(mdlPhonebook::DeleteContact(State, id));
}

TEST_F(PhonebookFileTest, AContactThatRefersToAMissingTableShowsTheErrorBox) {
    Office.ExecuteOnPhonebook(QStringLiteral("ALTER TABLE Contact RENAME COLUMN cntNote TO cntRemark"));
    Reopen();
    Office.Boxes.Expect();
    Office.Boxes.Expect();
    ContactFields fields;
    EXPECT_EQ(mdlPhonebook::AddContact(Office.Phonebook(), fields), 0);
    EXPECT_FALSE(mdlPhonebook::UpdateContact(Office.Phonebook(), 1, fields));
    ASSERT_EQ(Office.Boxes.Shown.size(), 2);
    EXPECT_TRUE(Office.Boxes.Shown.at(0).Text.startsWith(QStringLiteral("Error:\r\nGE:0x80004005, NE:0x")));
    EXPECT_TRUE(Office.Boxes.Shown.at(1).Text.startsWith(
        QStringLiteral("An Error Occured:\r\nGE:0x80004005, NE:0x")));
}

// --- groups ---

TEST_F(PhonebookFileTest, AGroupNameOf12CharactersIsStoredAsItsFirst10AndRenamedAsItsFirst6) {
    const qint16 id = Office.AddGroup(QStringLiteral("abcdefghijkl"));
    EXPECT_EQ(Groups(), Names({u"abcdefghij"}));
    mdlPhonebook::RenameGroup(State, id, QStringLiteral("mnopqrstuvwx"));
    EXPECT_EQ(Groups(), Names({u"mnopqr"}));
}

TEST_F(PhonebookFileTest, AGroupNameThatExistsAlsoAfterTheCutGivesTheInformationBoxAndZero) {
    Office.AddGroup(QStringLiteral("abcdefghij"));
    for (const char16_t* name : {u"abcdefghij", u"abcdefghijkl", u"ABCDEFGHIJ"}) {
        Office.Boxes.Expect();
        EXPECT_EQ(mdlPhonebook::AddGroup(Office.Phonebook(), QString::fromUtf16(name)), 0);
        EXPECT_EQ(Office.Boxes.Shown.constLast(),
                  (BoxRequest{QStringLiteral("Larkspan Messenger"),
                              QStringLiteral("A Group with that name already exists"), BoxIcon::Information,
                              BoxButtons::Ok}));
    }
    EXPECT_EQ(Groups(), Names({u"abcdefghij"}));
}

TEST_F(PhonebookFileTest, AnEmptyGroupNameIsRefusedByTheFileWithTheErrorBox) {
    Office.Boxes.Expect();
    EXPECT_EQ(mdlPhonebook::AddGroup(Office.Phonebook(), QString()), 0);
    EXPECT_TRUE(Office.Boxes.Shown.value(0).Text.startsWith(QStringLiteral("An error has ocurred:\r\n")));
    EXPECT_EQ(Office.Boxes.Shown.value(0).Icon, BoxIcon::Critical);
}

TEST_F(PhonebookFileTest, AGroupThatTheFileRefusesForAReasonOfItsOwnIsNoDuplicate) {
    Office.AddGroup(QStringLiteral("Staff"));
    Office.ExecuteOnPhonebook(
        QStringLiteral("CREATE TRIGGER Closed AFTER INSERT ON ContactGroup BEGIN "
                       "SELECT RAISE(ABORT, 'no more groups'); END"));
    Office.Boxes.Expect();
    EXPECT_EQ(mdlPhonebook::AddGroup(Office.Phonebook(), QStringLiteral("Drivers")), 0);
    const QString text = Office.Boxes.Shown.value(0).Text;
    EXPECT_TRUE(text.startsWith(QStringLiteral("An error has ocurred:\r\nGE:0x80004005")))
        << text.toStdString();
    EXPECT_TRUE(text.endsWith(QStringLiteral("SQL:3000 - no more groups")));
    const auto identity = Office.PhonebookDB().ExecuteRecordset(QStringLiteral("SELECT @@IDENTITY AS ID"));
    ASSERT_NE(identity, nullptr);
    EXPECT_EQ(identity->Value(u"ID"), QVariant(1)) << "the row that was undone left no number behind";
}

TEST_F(PhonebookFileTest, ARenameToAnExistingNameQuietlyDoesNothing) {
    const qint16 first = Office.AddGroup(QStringLiteral("Staff"));
    Office.AddGroup(QStringLiteral("Drivers"));
    mdlPhonebook::RenameGroup(State, first, QStringLiteral("Drivers"));
    EXPECT_EQ(Groups(), Names({u"Driver", u"Drivers"})) << "six characters are another name";
    Office.AddGroup(QStringLiteral("Boss"));
    mdlPhonebook::RenameGroup(State, first, QStringLiteral("boss"));
    EXPECT_EQ(Groups(), Names({u"Boss", u"Driver", u"Drivers"}));
}

TEST_F(PhonebookFileTest, KeysFromDragsAndFromMenusBothBecomeMembers) {
    const qint32 mary = Add(u"Byrne", u"Mary");
    const qint32 ann = Add(u"Kelly", u"Ann");
    const qint32 tom = Add(u"Walsh", u"Tom");
    const qint16 group = Office.AddGroup(QStringLiteral("Staff"), {mary});
    mdlPhonebook::AddToGroup(
        State, group,
        QStringLiteral("P1\r\nC%1\r\nC%2\t\r\nC999\r\nC\r\nCx); DROP TABLE Contact\r\nC%3\r\n")
            .arg(mary)
            .arg(ann)
            .arg(tom));
    EXPECT_EQ(Column(mdlPhonebook::GetGroupMembers(State, group), u"cntSurname"),
              Names({u"Byrne", u"Kelly", u"Walsh"}));
    EXPECT_EQ(Office.MemberRows().size(), 3) << "one row a membership, none for what is no contact";
    mdlPhonebook::RemoveFromGroup(State, group, static_cast<qint16>(ann));
    EXPECT_EQ(Column(mdlPhonebook::GetGroupMembers(State, group), u"cntSurname"),
              Names({u"Byrne", u"Walsh"}));
    EXPECT_EQ(Office.ContactRows().size(), 3);
}

TEST_F(PhonebookFileTest, AddToGroupWithASingleKeyAndNoLineBreakAddsNothing) {
    const qint32 mary = Add(u"Byrne", u"Mary");
    const qint16 group = Office.AddGroup(QStringLiteral("Staff"));
    mdlPhonebook::AddToGroup(State, group, QStringLiteral("C%1").arg(mary));
    EXPECT_TRUE(Office.MemberRows().isEmpty());
}

TEST_F(PhonebookFileTest, ADeletedGroupIsDeletedOnce) {
    const qint16 group = Office.AddGroup(QStringLiteral("Staff"), {Add(u"Byrne", u"Mary")});
    EXPECT_TRUE(mdlPhonebook::DeleteGroup(State, group));
    EXPECT_FALSE(mdlPhonebook::DeleteGroup(State, group));
    EXPECT_EQ(Office.ContactRows().size(), 1);
}

// --- user fields, tails, alpha keys ---

TEST_F(PhonebookFileTest, UserFieldsWithRows1And3GiveCaptionDefaultCaption) {
    mdlPhonebook::SaveUserFieldHeaders(
        State, {QStringLiteral("Car"), QStringLiteral("Desk"), QStringLiteral("Boss's")});
    EXPECT_EQ(mdlPhonebook::GetUserFieldHeaders(State), Names({u"Car", u"Desk", u"Boss's"}));
    Office.ExecuteOnPhonebook(QStringLiteral("DELETE FROM UserFields WHERE hdrFieldID = 2"));
    EXPECT_EQ(mdlPhonebook::GetUserFieldHeaders(State), Names({u"Car", u"User 2", u"Boss's"}));
}

TEST_F(PhonebookFileTest, MessageTailsAreRead) {
    Office.ExecuteOnPhonebook(
        QStringLiteral("INSERT INTO MessageTail VALUES ('Front desk', 1), ('Regards', 0)"));
    EXPECT_EQ(Column(mdlPhonebook::GetMessageTails(State), u"mtlText"), Names({u"Front desk", u"Regards"}));
}

TEST_F(PhonebookFileTest, RebuildingWritesTheAlphaKeysOfEveryContact) {
    Add(u"byrne", u"Mary");
    Add(u"Émile", u"zoe");
    Office.ExecuteOnPhonebook(
        QStringLiteral("UPDATE Contact SET cntAlphaSurname = NULL, cntAlphaFirstNames = 'q'"));
    Office.ExecuteOnPhonebook(QStringLiteral("INSERT INTO Contact (cntFirstnames) VALUES ('tom')"));
    mdlPhonebook::RebuildAlphaKeys(State);
    EXPECT_EQ(AlphaKeys(), Names({u"BM", u"#Z", u"#T"}));
}

TEST_F(PhonebookFileTest, RebuildingPassesOverAContactThatAnotherHasMeanwhileChanged) {
    for (const char16_t* surname : {u"Byrne", u"Kelly", u"Walsh"}) {
        Add(surname, u"Mary");
    }
    // As another station's edit, in the moment before the second row is written.
    Office.ExecuteOnPhonebook(
        QStringLiteral("UPDATE Contact SET cntAlphaSurname = 'x', cntAlphaFirstNames = 'x'; "
                       "CREATE TRIGGER Other AFTER UPDATE ON Contact WHEN NEW.cntID = 1 BEGIN "
                       "UPDATE Contact SET cntNote = 'edited' WHERE cntID = 2; END"));
    mdlPhonebook::RebuildAlphaKeys(State);
    EXPECT_EQ(AlphaKeys(), Names({u"BM", u"xx", u"WM"}));
    EXPECT_EQ(Office.ContactRows().at(1).value(QStringLiteral("cntNote")), QStringLiteral("edited"));
}

TEST_F(PhonebookFileTest, RebuildingWaitsForALockOnceAndNotForEveryContact) {
    for (const char16_t* surname : {u"Byrne", u"Kelly", u"Walsh"}) {
        Add(surname, u"Mary");
    }
    LockingPeer peer(Office.PhonebookPath(), QStringLiteral("reserved"));
    const qint64 start = Office.Time.Ticks();
    mdlPhonebook::RebuildAlphaKeys(State);
    EXPECT_LE(Office.Time.Ticks() - start,
              engine::sqlite::LockWait::MaxWait + engine::sqlite::LockWait::MaxPause);
}

TEST_F(PhonebookFileTest, RebuildingAPhonebookOfAnEarlierVersionChangesNothing) {
    Add(u"byrne", u"Mary");
    Office.ExecuteOnPhonebook(
        QStringLiteral("DROP VIEW qry_Contacts_By_Surname; DROP VIEW qry_Contacts_By_Firstname; "
                       "DROP VIEW qry_Group_Contacts; "
                       "ALTER TABLE Contact DROP COLUMN cntAlphaSurname"));
    Office.ExecuteOnPhonebook(QStringLiteral("UPDATE Contact SET cntAlphaFirstNames = 'q'"));
    mdlPhonebook::RebuildAlphaKeys(State);
    EXPECT_EQ(Office.ContactRows().value(0).value(QStringLiteral("cntAlphaFirstNames")), QStringLiteral("q"));
}

// --- another process on the file ---

TEST_F(PhonebookFileTest, WritesThatRunOutOnALockAreSilentAndWriteNothing) {
    const qint32 id = Add(u"Byrne", u"Mary");
    const qint16 group = Office.AddGroup(QStringLiteral("Staff"));
    Reopen();  // a connection that has produced no identity yet
    {
        LockingPeer peer(Office.PhonebookPath(), QStringLiteral("reserved"));
        ContactFields fields;
        fields.Surname = QStringLiteral("Late");
        EXPECT_EQ(mdlPhonebook::AddContact(Office.Phonebook(), fields), 0);
        EXPECT_TRUE(mdlPhonebook::UpdateContact(Office.Phonebook(), id, fields))
            << "attempts that ran out read as success";
        EXPECT_EQ(mdlPhonebook::AddGroup(Office.Phonebook(), QStringLiteral("Late")), 0);
        EXPECT_FALSE(mdlPhonebook::DeleteContact(State, id));
        EXPECT_FALSE(mdlPhonebook::DeleteGroup(State, group));
        mdlPhonebook::AddToGroup(State, group, QStringLiteral("C%1\r\n").arg(id));
        mdlPhonebook::RenameGroup(State, group, QStringLiteral("Late"));
        EXPECT_EQ(Surnames(u"*"), Names({u"Byrne"})) << "reading goes on beside a writer";
    }
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
    EXPECT_EQ(Surnames(u"*"), Names({u"Byrne"}));
    EXPECT_EQ(Groups(), Names({u"Staff"}));
    EXPECT_TRUE(Office.MemberRows().isEmpty());
}

TEST_F(PhonebookFileTest, QueriesGiveNoneWhileAnotherProcessKeepsTheFileToItself) {
    Add(u"Byrne", u"Mary");
    LockingPeer peer(Office.PhonebookPath(), QStringLiteral("exclusive"));
    EXPECT_EQ(mdlPhonebook::GetContacts(State, QStringLiteral("*"), 0), nullptr);
    EXPECT_EQ(mdlPhonebook::GetGroups(State), nullptr);
    EXPECT_EQ(mdlPhonebook::GetUserFieldHeaders(State), QStringList());
    EXPECT_TRUE(Office.PhonebookDB().IsError());
    peer.LetGo();
    EXPECT_EQ(Surnames(u"*"), Names({u"Byrne"}));
}

TEST_F(PhonebookFileTest, RowsThatWereReadStayReadableWhileAnotherProcessWrites) {
    Add(u"Byrne", u"Mary");
    Add(u"Kelly", u"Ann");
    const auto rows = mdlPhonebook::GetContacts(State, QStringLiteral("*"), 0);
    Office.ExecuteOnPhonebook(QStringLiteral("DELETE FROM Contact"));
    EXPECT_EQ(Column(rows, u"cntSurname"), Names({u"Byrne", u"Kelly"}));
}

// --- the connection itself ---

TEST_F(PhonebookFileTest, CompactingKeepsEveryRowAndTheDatabaseOpen) {
    Office.ExecuteOnPhonebook(QStringLiteral(
        "WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 300) "
        "INSERT INTO Contact (cntSurname, cntNote) SELECT 'Surname' || i, hex(zeroblob(200)) FROM n"));
    Office.ExecuteOnPhonebook(QStringLiteral("DELETE FROM Contact WHERE cntID <= 290"));
    const QList<QVariantMap> before = Office.ContactRows();
    const qint64 size = QFileInfo(Office.PhonebookPath()).size();
    EXPECT_TRUE(Office.PhonebookDB().Compact());
    EXPECT_LT(QFileInfo(Office.PhonebookPath()).size(), size);
    EXPECT_EQ(Office.ContactRows(), before);
    EXPECT_TRUE(Office.PhonebookDB().IsConnected());
    EXPECT_EQ(Office.PhonebookDB().Connection()->Mode, 19);
    EXPECT_EQ(Surnames(u"*").size(), 10);
    EXPECT_FALSE(QFile::exists(Office.DataFolder.filePath(QStringLiteral("smscontacts.cmp"))));
    EXPECT_GT(Add(u"New", u"One"), 300) << "record numbers go on";
}

TEST_F(PhonebookFileTest, ADamagedDatabaseIsNotReplacedByACompaction) {
    Office.PhonebookDB().CloseDatabase();
    QFile file(Office.PhonebookPath());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.seek(100);
    file.write(QByteArray(4000, '\xA5'));
    file.close();
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray damaged = file.readAll();
    file.close();
    EXPECT_FALSE(Office.PhonebookDB().Compact());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), damaged);
    EXPECT_TRUE(QFile::exists(Office.DataFolder.filePath(QStringLiteral("smscontacts.cmp"))));
}

TEST_F(PhonebookFileTest, TableNamesAreThoseOfTheFile) {
    const std::optional<QStringList> names = Office.PhonebookDB().TableNames();
    ASSERT_TRUE(names.has_value());
    for (const char16_t* name : {u"Contact", u"ContactGroup", u"GroupMember", u"MessageTail", u"UserFields",
                                 u"Config", u"qry_Groups"}) {
        EXPECT_TRUE(names->contains(QString::fromUtf16(name))) << QString::fromUtf16(name).toStdString();
    }
}

TEST_F(PhonebookFileTest, ATransactionIsTakenBackOrKeptAsAWhole) {
    DB& database = Office.PhonebookDB();
    ASSERT_TRUE(database.BeginTransaction());
    EXPECT_TRUE(database.Execute(QStringLiteral("INSERT INTO ContactGroup (grpName) VALUES ('a')")));
    EXPECT_TRUE(database.Execute(QStringLiteral("INSERT INTO ContactGroup (grpName) VALUES ('b')")));
    database.RollbackTransaction();
    EXPECT_EQ(Groups(), QStringList());
    ASSERT_TRUE(database.BeginTransaction());
    EXPECT_TRUE(database.Execute(QStringLiteral("INSERT INTO ContactGroup (grpName) VALUES ('a')")));
    EXPECT_TRUE(database.CommitTransaction());
    EXPECT_EQ(Office.GroupRows().size(), 1);
    EXPECT_FALSE(database.CommitTransaction()) << "there is none";
    EXPECT_TRUE(database.IsError());
}

TEST_F(PhonebookFileTest, ADisconnectedSetStaysReadableBehindAClosedDatabase) {
    Add(u"Byrne", u"Mary");
    const auto rows = Office.PhonebookDB().DisconnectedSet(QStringLiteral("SELECT cntSurname FROM Contact"));
    Office.PhonebookDB().CloseDatabase();
    EXPECT_EQ(Column(rows, u"cntSurname"), Names({u"Byrne"}));
}

}  // namespace
