#include "store/PhonebookFileFixture.h"

#include "store/Peer.h"
#include "store/engine/sqlite/LockWait.h"

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

TEST_F(PhonebookFileTest, RebuildingWaitsForALockThreeTimesAtMostAndNotForEveryContact) {
    for (const char16_t* surname : {u"Byrne", u"Kelly", u"Walsh", u"Ahern", u"Moore"}) {
        Add(surname, u"Mary");
    }
    LockingPeer peer(Office.PhonebookPath(), QStringLiteral("reserved"));
    const qint64 start = Office.Time.Ticks();
    mdlPhonebook::RebuildAlphaKeys(State);
    EXPECT_LE(Office.Time.Ticks() - start,
              3 * (engine::sqlite::LockWait::MaxWait + engine::sqlite::LockWait::MaxPause));
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
