#include "store/Phonebook.h"

#include "core/Numbers.h"
#include "store/FakeOffice.h"

#include <gtest/gtest.h>

using engine::CursorType;
using engine::LockType;
using engine::Mode::ReadShared;
using Operation = FakeEngine::Operation;

namespace {

class PhonebookTest : public ::testing::Test {
protected:
    FakeOffice Office;
    PhonebookServices Services = Office.Phonebook();
    PhonebookState& State = Office.PhonebookValues;

    void ServeConfig(const QStringList& fields, const QVariantList& values) {
        Office.Engine.Serve(QStringLiteral("FROM Config"), {fields, {values}});
    }
    void Open() {
        Office.SetContacts(QStringLiteral("X:\\sms\\smscontacts.mdb"));
        ASSERT_TRUE(mdlPhonebook::OpenPhonebook(Services));
        Office.Engine.Statements.clear();
        Office.Engine.Cursors.clear();
        Office.Engine.Locks.clear();
    }
    void ServeIdentity(const QVariant& id) {
        Office.Engine.Serve(QStringLiteral("@@IDENTITY"), {{QStringLiteral("ID")}, {{id}}});
    }
    [[nodiscard]] QString Statement() const { return Office.Engine.Statements.value(0); }
    [[nodiscard]] static ContactFields AnyContact() {
        ContactFields fields;
        fields.Surname = QStringLiteral("O'Neill");
        fields.Firstnames = QStringLiteral("eoin");
        fields.Phone = QStringLiteral("+353861112222");
        fields.ConfirmSend = true;
        fields.IsPrivate = false;
        fields.Note = QStringLiteral("2nd floor");
        fields.UserFields = {QStringLiteral("a'b"), QString(), QStringLiteral("c")};
        return fields;
    }
    [[nodiscard]] static BoxRequest Box(const QString& text, BoxIcon icon) {
        return {QStringLiteral("Larkspan Messenger"), text, icon, BoxButtons::Ok};
    }
};

// --- path and opening ---

TEST_F(PhonebookTest, ThePhonebookLiesBesideTheOutboxUnlessItsOwnSettingNamesIt) {
    EXPECT_EQ(mdlPhonebook::GetPhonebookPath(Office.AppSettings), QString());
    Office.SetOutbox(QStringLiteral("X:\\sms"));
    EXPECT_EQ(mdlPhonebook::GetPhonebookPath(Office.AppSettings), QStringLiteral("X:\\sms\\smscontacts.mdb"));
    Office.SetOutbox(QStringLiteral("X:\\sms\\"));
    EXPECT_EQ(mdlPhonebook::GetPhonebookPath(Office.AppSettings), QStringLiteral("X:\\sms\\smscontacts.mdb"));
    Office.SetContacts(QStringLiteral("Y:\\people.mdb"));
    EXPECT_EQ(mdlPhonebook::GetPhonebookPath(Office.AppSettings), QStringLiteral("Y:\\people.mdb"));
}

TEST_F(PhonebookTest, AnOutboxThatNamesAFileIsTakenAsAFolderHereAllTheSame) {
    Office.SetOutbox(QStringLiteral("X:\\data\\other.mdb"));
    EXPECT_EQ(mdlPhonebook::GetPhonebookPath(Office.AppSettings),
              QStringLiteral("X:\\data\\other.mdb\\smscontacts.mdb"));
}

TEST_F(PhonebookTest, OpeningMakesNewContactListsThenOpensAndReadsTheConfigRow) {
    int lists = 0;
    Services.NewContactLists = [&] {
        ++lists;
        EXPECT_EQ(Office.Engine.Attempts(Operation::Open), 0);
    };
    ServeConfig({QStringLiteral("cfgAllowPrivateGroup"), QStringLiteral("cfgCompany"),
                 QStringLiteral("cfgNumberPrefix"), QStringLiteral("cfgVersion")},
                {true, QStringLiteral("Brenmoor"), QStringLiteral("+353"), qint64{2}});
    Office.SetContacts(QStringLiteral("X:\\sms\\smscontacts.mdb"));
    EXPECT_TRUE(mdlPhonebook::OpenPhonebook(Services));
    EXPECT_EQ(lists, 1);
    EXPECT_EQ(Office.Engine.Filenames, QStringList{QStringLiteral("X:\\sms\\smscontacts.mdb")});
    EXPECT_EQ(Office.Engine.Modes, QList<qint32>{17});
    EXPECT_EQ(Statement(), QStringLiteral("SELECT * FROM Config"));
    EXPECT_TRUE(State.cfgAllowPrivateGroup);
    EXPECT_EQ(State.cfgCompany, QStringLiteral("Brenmoor"));
    EXPECT_EQ(State.cfgNumberPrefix, QStringLiteral("+353"));
    EXPECT_EQ(State.cfgVersion, 2);
    EXPECT_EQ(Office.Engine.OpenRecordsets, 0);
    EXPECT_TRUE(State.PhonebookDB->IsConnected()) << "the phonebook stays open";
}

TEST_F(PhonebookTest, APhonebookWithoutTheColumnCfgVersionReadsAsVersion1) {
    State.cfgVersion = 2;
    ServeConfig({QStringLiteral("cfgAllowPrivateGroup"), QStringLiteral("cfgCompany"),
                 QStringLiteral("cfgNumberPrefix")},
                {false, QStringLiteral("Brenmoor"), QStringLiteral("+353")});
    Open();
    EXPECT_EQ(State.cfgVersion, 1);
    const auto rows = mdlPhonebook::GetContacts(State, QStringLiteral("O"), 0);
    EXPECT_EQ(Statement(),
              QStringLiteral("SELECT * FROM qry_Contacts_By_Surname WHERE cntSurname LIKE 'O%'"));
}

TEST_F(PhonebookTest, NullsInTheConfigRowReadAsEmpty) {
    ServeConfig({QStringLiteral("cfgAllowPrivateGroup"), QStringLiteral("cfgCompany"),
                 QStringLiteral("cfgNumberPrefix"), QStringLiteral("cfgVersion")},
                {QVariant(), QVariant(), QVariant(), QVariant()});
    State.cfgCompany = QStringLiteral("before");
    Open();
    EXPECT_EQ(State.cfgCompany, QString());
    EXPECT_EQ(State.cfgNumberPrefix, QString());
    EXPECT_FALSE(State.cfgAllowPrivateGroup);
    EXPECT_EQ(State.cfgVersion, 1);
}

TEST_F(PhonebookTest, AnEmptyConfigTableStillOpensThePhonebook) {
    Office.Engine.Serve(QStringLiteral("FROM Config"), {{QStringLiteral("cfgCompany")}, {}});
    Open();
    EXPECT_EQ(State.cfgVersion, 1);
    EXPECT_EQ(State.cfgCompany, QString());
}

TEST_F(PhonebookTest, APhonebookThatCannotBeOpenedShowsItsBox) {
    Office.SetContacts(QStringLiteral("X:\\sms\\smscontacts.mdb"));
    Office.Engine.Fail(Operation::Open, 3024);
    Office.Boxes.Expect();
    EXPECT_FALSE(mdlPhonebook::OpenPhonebook(Services));
    EXPECT_EQ(
        Office.Boxes.Shown,
        QList{Box(QStringLiteral("The Phonebook could not be opened.\r\nGE:0x80004005, NE:0x0, SQL:3024 - "
                                 "fake failure 3024"),
                  BoxIcon::Critical)});
    EXPECT_FALSE(State.PhonebookDB->IsConnected());
}

TEST_F(PhonebookTest, WithoutAConnectionEveryOperationComesBackEmpty) {
    Office.Engine.Fail(Operation::Open, 3024);
    Office.Boxes.Expect();
    EXPECT_FALSE(mdlPhonebook::OpenPhonebook(Services));
    for (const bool isMissing : {false, true}) {
        if (isMissing) {
            State.PhonebookDB.reset();
        }
        EXPECT_EQ(mdlPhonebook::GetContacts(State, QStringLiteral("*"), 0), nullptr);
        EXPECT_EQ(mdlPhonebook::GetContactsByAlpha(State, QStringLiteral("#"), 1), nullptr);
        EXPECT_EQ(mdlPhonebook::GetGroups(State), nullptr);
        EXPECT_EQ(mdlPhonebook::GetGroupMembers(State, 1), nullptr);
        EXPECT_EQ(mdlPhonebook::GetMessageTails(State), nullptr);
        EXPECT_EQ(mdlPhonebook::GetContactByID(State, 1), nullptr);
        EXPECT_FALSE(mdlPhonebook::DeleteContact(State, 1));
        EXPECT_FALSE(mdlPhonebook::DeleteGroup(State, 1));
        EXPECT_EQ(mdlPhonebook::GetUserFieldHeaders(State), QStringList());
        EXPECT_EQ(mdlPhonebook::GetEditPassword(State, true), QString());
        EXPECT_EQ(mdlPhonebook::ReadRunWizard(State), std::nullopt);
        mdlPhonebook::AddToGroup(State, 1, QStringLiteral("C1\r\n"));
        mdlPhonebook::RemoveFromGroup(State, 1, 1);
        mdlPhonebook::RenameGroup(State, 1, QStringLiteral("x"));
        mdlPhonebook::SaveUserFieldHeaders(State, {QStringLiteral("x")});
        mdlPhonebook::RebuildAlphaKeys(State);
    }
}

TEST_F(PhonebookTest, AConfigTableThatCannotBeReadGivesFalseWithoutABox) {
    Office.SetContacts(QStringLiteral("X:\\sms\\smscontacts.mdb"));
    Office.Engine.Fail(Operation::Recordset, 3078);
    EXPECT_FALSE(mdlPhonebook::OpenPhonebook(Services));
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(PhonebookTest, OpeningAgainReplacesThePhonebookAndClosesThePreviousOne) {
    Open();
    Office.SetContacts(QStringLiteral("Y:\\other.mdb"));
    EXPECT_TRUE(mdlPhonebook::OpenPhonebook(Services));
    EXPECT_EQ(Office.Engine.OpenConnections, 1);
    EXPECT_EQ(State.PhonebookDB->Filename, QStringLiteral("Y:\\other.mdb"));
}

TEST_F(PhonebookTest, APhonebookThatIsReplacedDuringAWaitLetsTheStatementFindItsWayOut) {
    Open();
    Office.Engine.Fail(Operation::Execute, 3045, 1, 1);
    bool isFirst = true;
    Office.Pump.OnProcess = [&](int) {
        if (std::exchange(isFirst, false)) {
            EXPECT_TRUE(mdlPhonebook::OpenPhonebook(Services));
        }
    };
    EXPECT_FALSE(State.PhonebookDB->Execute(QStringLiteral("DELETE FROM Contact WHERE cntID = 1")));
    EXPECT_EQ(Office.Engine.OpenConnections, 1);
}

TEST_F(PhonebookTest, TheWizardFlagIsReadFromTheConfigRow) {
    Open();
    ServeConfig({QStringLiteral("cfgRunWizard")}, {true});
    EXPECT_EQ(mdlPhonebook::ReadRunWizard(State), std::optional(true));
    EXPECT_EQ(Statement(), QStringLiteral("SELECT * FROM Config"));
    ServeConfig({QStringLiteral("cfgRunWizard")}, {false});
    EXPECT_EQ(mdlPhonebook::ReadRunWizard(State), std::optional(false));
    Office.Engine.Serve(QStringLiteral("FROM Config"), {{QStringLiteral("cfgRunWizard")}, {}});
    EXPECT_EQ(mdlPhonebook::ReadRunWizard(State), std::optional(false));
    Office.Engine.Fail(Operation::Recordset, 3078);
    EXPECT_EQ(mdlPhonebook::ReadRunWizard(State), std::nullopt);
}

// --- passwords ---

TEST_F(PhonebookTest, TheEditPasswordOpensPrivateNumbersTooWhereTheirOwnIsEmpty) {
    Open();
    const QStringList fields = {QStringLiteral("cfgEditPassword"), QStringLiteral("cfgEditHiddenPassword")};
    const auto passwords = [&](const QVariant& edit, const QVariant& hidden) {
        ServeConfig(fields, {edit, hidden});
        return QStringList{mdlPhonebook::GetEditPassword(State, false),
                           mdlPhonebook::GetEditPassword(State, true)};
    };
    const QString open = QStringLiteral("open");
    const QString closed = QStringLiteral(" Closed ");
    EXPECT_EQ(passwords(open, closed), (QStringList{open, closed}));
    EXPECT_EQ(passwords(open, QString()), (QStringList{open, open}));
    EXPECT_EQ(passwords(open, QVariant()), (QStringList{open, open}));
    EXPECT_EQ(passwords(QVariant(), closed), (QStringList{QString(), closed}));
    EXPECT_EQ(passwords(QVariant(), QVariant()), (QStringList{QString(), QString()}));
    EXPECT_EQ(Statement(), QStringLiteral("SELECT cfgEditPassword, cfgEditHiddenPassword FROM Config"));
}

TEST_F(PhonebookTest, PasswordsThatCannotBeReadLeaveTheLocksOpen) {
    Open();
    Office.Engine.Serve(QStringLiteral("FROM Config"),
                        {{QStringLiteral("cfgEditPassword"), QStringLiteral("cfgEditHiddenPassword")}, {}});
    EXPECT_EQ(mdlPhonebook::GetEditPassword(State, false), QString());
    Office.Engine.Fail(Operation::Recordset, 3061);
    EXPECT_EQ(mdlPhonebook::GetEditPassword(State, false), QString());
    EXPECT_EQ(mdlPhonebook::GetEditPassword(State, true), QString());
}

// --- queries ---

TEST_F(PhonebookTest, ContactsOfAVersion1PhonebookAreFilteredByTheNamesThemselves) {
    Open();
    const auto sql = [&](const char16_t* letter, qint32 sort) {
        Office.Engine.Statements.clear();
        EXPECT_NE(mdlPhonebook::GetContacts(State, QString::fromUtf16(letter), sort), nullptr);
        return Statement();
    };
    EXPECT_EQ(sql(u"*", 0), QStringLiteral("SELECT * FROM qry_Contacts_By_Surname"));
    EXPECT_EQ(sql(u"*", 1), QStringLiteral("SELECT * FROM qry_Contacts_By_Firstname"));
    EXPECT_EQ(sql(u"B", 0),
              QStringLiteral("SELECT * FROM qry_Contacts_By_Surname WHERE cntSurname LIKE 'B%'"));
    EXPECT_EQ(sql(u"B", 1),
              QStringLiteral("SELECT * FROM qry_Contacts_By_Firstname WHERE cntFirstnames LIKE 'B%'"));
    EXPECT_EQ(sql(u"#", 0),
              QStringLiteral("SELECT * FROM qry_Contacts_By_Surname WHERE cntSurname LIKE '#%'"));
}

TEST_F(PhonebookTest, ContactsOfALaterPhonebookAreFilteredByTheirAlphaKeys) {
    Open();
    for (const qint16 version : {qint16{2}, qint16{3}}) {
        State.cfgVersion = version;
        const auto sql = [&](const char16_t* letter, qint32 sort) {
            Office.Engine.Statements.clear();
            EXPECT_NE(mdlPhonebook::GetContacts(State, QString::fromUtf16(letter), sort), nullptr);
            return Statement();
        };
        EXPECT_EQ(sql(u"*", 0), QStringLiteral("SELECT * FROM qry_Contacts_By_Surname"));
        EXPECT_EQ(sql(u"*", 1), QStringLiteral("SELECT * FROM qry_Contacts_By_Firstname"));
        EXPECT_EQ(sql(u"#", 0),
                  QStringLiteral("SELECT * FROM qry_Contacts_By_Surname WHERE cntAlphaSurname = '#'"));
        EXPECT_EQ(sql(u"B", 1),
                  QStringLiteral("SELECT * FROM qry_Contacts_By_Firstname WHERE cntAlphaFirstnames = 'B'"));
    }
}

TEST_F(PhonebookTest, TheOtherQueriesAreWrittenLetterForLetterAndForwardOnly) {
    Open();
    EXPECT_NE(mdlPhonebook::GetGroups(State), nullptr);
    EXPECT_NE(mdlPhonebook::GetGroupMembers(State, 70000), nullptr);
    EXPECT_NE(mdlPhonebook::GetMessageTails(State), nullptr);
    EXPECT_EQ(Office.Engine.Statements,
              (QStringList{QStringLiteral("SELECT * FROM qry_Groups;"),
                           QStringLiteral("SELECT * FROM [qry_Group_Contacts] WHERE grpID = 70000"),
                           QStringLiteral("SELECT * FROM MessageTail")}));
    EXPECT_EQ(Office.Engine.Cursors, QList<CursorType>(3, CursorType::ForwardOnly));
    EXPECT_EQ(Office.Engine.Locks, QList<LockType>(3, LockType::ReadOnly));
}

TEST_F(PhonebookTest, QueriesThatFailGiveNoRecordset) {
    Open();
    Office.Engine.Fail(Operation::Recordset, 3078);
    EXPECT_EQ(mdlPhonebook::GetContacts(State, QStringLiteral("*"), 0), nullptr);
    EXPECT_EQ(mdlPhonebook::GetGroups(State), nullptr);
    EXPECT_EQ(mdlPhonebook::GetGroupMembers(State, 1), nullptr);
    EXPECT_EQ(mdlPhonebook::GetMessageTails(State), nullptr);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(PhonebookTest, AContactByIDIsItsRowOrNone) {
    Open();
    Office.Engine.Serve(QStringLiteral("cntID = 12"), {{QStringLiteral("cntID")}, {{qint64{12}}}});
    const auto found = mdlPhonebook::GetContactByID(State, 12);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->Value(u"cntID"), QVariant(qint64{12}));
    EXPECT_EQ(Statement(), QStringLiteral("SELECT * FROM Contact WHERE cntID = 12"));
    EXPECT_EQ(mdlPhonebook::GetContactByID(State, 99), nullptr);
    EXPECT_EQ(Office.Engine.OpenRecordsets, 1);
}

// --- contacts ---

TEST_F(PhonebookTest, AddingAContactWritesAllColumnsAndReadsA32BitIdentity) {
    Open();
    ServeIdentity(qint64{70000});
    EXPECT_EQ(mdlPhonebook::AddContact(Services, AnyContact()), 70000);
    EXPECT_EQ(
        Statement(),
        QStringLiteral("INSERT INTO Contact (cntSurname, cntFirstnames, cntPhone, cntConfirmSend, "
                       "cntPrivateNumber, cntAlphaSurname, cntAlphaFirstNames, cntNote, cntUserField1, "
                       "cntUserField2, cntUserField3) VALUES ('O''Neill','eoin','+353861112222',TRUE,FALSE,"
                       "'O','E','2nd floor','a''b','','c')"));
    EXPECT_EQ(Office.Engine.Statements.value(1), QStringLiteral("SELECT @@IDENTITY AS ID"));
    EXPECT_EQ(Office.Engine.OpenRecordsets, 0);
}

TEST_F(PhonebookTest, AContactThatCannotBeAddedShowsItsBoxAndGivesZero) {
    Open();
    Office.Engine.Fail(Operation::Execute, 3314);
    Office.Boxes.Expect();
    EXPECT_EQ(mdlPhonebook::AddContact(Services, AnyContact()), 0);
    EXPECT_EQ(Office.Boxes.Shown,
              QList{Box(QStringLiteral("Error:\r\nGE:0x80004005, NE:0x0, SQL:3314 - fake failure 3314"),
                        BoxIcon::Critical)});
    EXPECT_EQ(Office.Engine.Statements.size(), 1);
}

TEST_F(PhonebookTest, AnAddedContactWhoseIdentityCannotBeReadGivesZero) {
    Open();
    Office.Engine.Fail(Operation::Execute, 3049, 2, 2);
    EXPECT_EQ(mdlPhonebook::AddContact(Services, AnyContact()), 0);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(PhonebookTest, UpdatingAContactKeepsTheStatementsOddBlanksAndComputesTheKeysAnew) {
    Open();
    EXPECT_TRUE(mdlPhonebook::UpdateContact(Services, 12, AnyContact()));
    EXPECT_EQ(
        Statement(),
        QStringLiteral("UPDATE Contact SET cntSurname = 'O''Neill',cntFirstnames ='eoin',cntPhone ="
                       "'+353861112222',cntConfirmSend = TRUE,cntPrivateNumber = FALSE,cntAlphaSurname ='O',"
                       "cntAlphaFirstNames = 'E',cntNote = '2nd floor',cntUserField1 = 'a''b',cntUserField2 "
                       "= '',cntUserField3 = 'c' WHERE cntID = 12"));
}

TEST_F(PhonebookTest, AContactThatCannotBeUpdatedShowsItsBoxAndGivesFalse) {
    Open();
    Office.Engine.Fail(Operation::Execute, 3027);
    Office.Boxes.Expect();
    EXPECT_FALSE(mdlPhonebook::UpdateContact(Services, 12, AnyContact()));
    EXPECT_EQ(
        Office.Boxes.Shown,
        QList{Box(QStringLiteral("An Error Occured:\r\nGE:0x80004005, NE:0x0, SQL:3027 - fake failure 3027"),
                  BoxIcon::Critical)});
}

TEST_F(PhonebookTest, DeletingIsTrueForExactlyOneRowAndTouchesNoMemberships) {
    Open();
    EXPECT_TRUE(mdlPhonebook::DeleteContact(State, 12));
    EXPECT_TRUE(mdlPhonebook::DeleteGroup(State, 7));
    EXPECT_EQ(Office.Engine.Statements,
              (QStringList{QStringLiteral("DELETE FROM Contact WHERE cntID = 12"),
                           QStringLiteral("DELETE FROM ContactGroup WHERE grpID = 7")}));
    for (const int count : {0, 2}) {
        Office.Engine.SetRowsAffected(QStringLiteral("DELETE"), count);
        EXPECT_FALSE(mdlPhonebook::DeleteContact(State, 12));
        EXPECT_FALSE(mdlPhonebook::DeleteGroup(State, 7));
    }
    Office.Engine.Fail(Operation::Execute, 3200);
    EXPECT_FALSE(mdlPhonebook::DeleteContact(State, 12));
    EXPECT_FALSE(mdlPhonebook::DeleteGroup(State, 7));
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

// --- groups ---

TEST_F(PhonebookTest, AddToGroupTakesContactsOnlyAndTheTextBehindTheLetterAsItStands) {
    Open();
    mdlPhonebook::AddToGroup(State, 7, QStringLiteral("C12\r\nP3\r\nC13\t\r\nG2\r\n\r\nc14\r\nC15"));
    EXPECT_EQ(Office.Engine.Statements,
              (QStringList{QStringLiteral("INSERT INTO GroupMember (grpID, cntID) VALUES (7,12)"),
                           QStringLiteral("INSERT INTO GroupMember (grpID, cntID) VALUES (7,13\t)"),
                           QStringLiteral("INSERT INTO GroupMember (grpID, cntID) VALUES (7,15)")}));
}

TEST_F(PhonebookTest, AddToGroupWithASingleKeyAndNoLineBreakAddsNothing) {
    Open();
    mdlPhonebook::AddToGroup(State, 7, QStringLiteral("C12"));
    mdlPhonebook::AddToGroup(State, 7, QString());
    EXPECT_TRUE(Office.Engine.Statements.isEmpty());
}

TEST_F(PhonebookTest, AddToGroupGoesOnBehindAContactThatIsAlreadyInTheGroup) {
    Open();
    Office.Engine.Fail(Operation::Execute, 3022, 1, 1);
    mdlPhonebook::AddToGroup(State, 7, QStringLiteral("C12\r\nC13\r\n"));
    EXPECT_EQ(Office.Engine.Statements.size(), 2);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(PhonebookTest, RemovingFromAGroupIsSilent) {
    Open();
    mdlPhonebook::RemoveFromGroup(State, 7, 12);
    EXPECT_EQ(Statement(), QStringLiteral("DELETE FROM GroupMember WHERE grpID = 7 AND cntID = 12"));
    Office.Engine.Fail(Operation::Execute, 3027);
    mdlPhonebook::RemoveFromGroup(State, 7, 12);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(PhonebookTest, ANewGroupKeepsTenCharactersOfItsName) {
    Open();
    ServeIdentity(qint64{9});
    EXPECT_EQ(mdlPhonebook::AddGroup(Services, QStringLiteral("Night'shift team")), 9);
    EXPECT_EQ(Statement(), QStringLiteral("INSERT INTO ContactGroup (grpName) VALUES ('Night''shif')"));
    EXPECT_EQ(Office.Engine.Statements.value(1), QStringLiteral("SELECT @@IDENTITY AS ID"));
    EXPECT_EQ(Office.Engine.OpenRecordsets, 0);
}

TEST_F(PhonebookTest, AGroupNameThatExistsGivesTheInformationBoxAndZero) {
    Open();
    Office.Engine.Fail(Operation::Execute, 3022);
    Office.Boxes.Expect();
    EXPECT_EQ(mdlPhonebook::AddGroup(Services, QStringLiteral("Staff")), 0);
    EXPECT_EQ(Office.Boxes.Shown,
              QList{Box(QStringLiteral("A Group with that name already exists"), BoxIcon::Information)});
}

TEST_F(PhonebookTest, AGroupThatCannotBeAddedShowsItsBoxAndGivesZero) {
    Open();
    Office.Engine.Fail(Operation::Execute, 3315);
    Office.Boxes.Expect();
    EXPECT_EQ(mdlPhonebook::AddGroup(Services, QString()), 0);
    EXPECT_EQ(Office.Boxes.Shown,
              QList{Box(QStringLiteral(
                            "An error has ocurred:\r\nGE:0x80004005, NE:0x0, SQL:3315 - fake failure 3315"),
                        BoxIcon::Critical)});
}

TEST_F(PhonebookTest, AGroupIdentityIs16BitsWideAndZeroWithoutARow) {
    Open();
    ServeIdentity(qint64{32767});
    EXPECT_EQ(mdlPhonebook::AddGroup(Services, QStringLiteral("a")), 32767);
    ServeIdentity(qint64{32768});
    EXPECT_THROW(static_cast<void>(mdlPhonebook::AddGroup(Services, QStringLiteral("b"))), OverflowError);
    Office.Engine.Serve(QStringLiteral("@@IDENTITY"), {{QStringLiteral("ID")}, {}});
    EXPECT_EQ(mdlPhonebook::AddGroup(Services, QStringLiteral("c")), 0);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(PhonebookTest, ARenamedGroupKeepsSixCharactersOfItsNameAndFailsInSilence) {
    Open();
    mdlPhonebook::RenameGroup(State, 7, QStringLiteral("Night's"));
    EXPECT_EQ(Statement(), QStringLiteral("UPDATE ContactGroup SET grpName = 'Night''' WHERE grpID = 7"));
    Office.Engine.Fail(Operation::Execute, 3022);
    mdlPhonebook::RenameGroup(State, 7, QStringLiteral("Staff"));
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

// --- user fields ---

TEST_F(PhonebookTest, UserFieldsWithoutARowKeepTheirDefaultCaption) {
    Open();
    Office.Engine.Serve(QStringLiteral("UserFields"),
                        {{QStringLiteral("hdrFieldID"), QStringLiteral("hdrFieldCaption")},
                         {{qint64{3}, QStringLiteral("Room")}, {qint64{1}, QStringLiteral("Car")}}});
    EXPECT_EQ(mdlPhonebook::GetUserFieldHeaders(State),
              (QStringList{QStringLiteral("Car"), QStringLiteral("User 2"), QStringLiteral("Room")}));
    EXPECT_EQ(Statement(), QStringLiteral("SELECT * FROM UserFields"));
}

TEST_F(PhonebookTest, UserFieldsBeyondTheThreeArePassedOver) {
    Open();
    Office.Engine.Serve(QStringLiteral("UserFields"),
                        {{QStringLiteral("hdrFieldID"), QStringLiteral("hdrFieldCaption")},
                         {{qint64{0}, QStringLiteral("zero")},
                          {qint64{4}, QStringLiteral("four")},
                          {qint64{-1}, QStringLiteral("minus")},
                          {QVariant(), QStringLiteral("null")},
                          {qint64{2}, QVariant()}}});
    EXPECT_EQ(mdlPhonebook::GetUserFieldHeaders(State),
              (QStringList{QStringLiteral("User 1"), QString(), QStringLiteral("User 3")}));
}

TEST_F(PhonebookTest, AFailedQueryLeavesNoCaptionsNotTheDefaults) {
    Open();
    Office.Engine.Fail(Operation::Recordset, 3078);
    EXPECT_EQ(mdlPhonebook::GetUserFieldHeaders(State), QStringList());
}

TEST_F(PhonebookTest, CaptionsAreSavedOneByOne) {
    Open();
    Office.Engine.Fail(Operation::Execute, 3027, 1, 1);
    mdlPhonebook::SaveUserFieldHeaders(
        State, {QStringLiteral("Car"), QStringLiteral("Boss's"), QStringLiteral("Room")});
    EXPECT_EQ(
        Office.Engine.Statements,
        (QStringList{QStringLiteral("UPDATE UserFields SET hdrFieldCaption = 'Car' WHERE hdrFieldID = 1"),
                     QStringLiteral("UPDATE UserFields SET hdrFieldCaption = 'Boss''s' WHERE hdrFieldID = 2"),
                     QStringLiteral("UPDATE UserFields SET hdrFieldCaption = 'Room' WHERE hdrFieldID = 3")}));
}

// --- alpha keys ---

TEST_F(PhonebookTest, TheAlphaKeyIsTheFirstLetterInUpperCaseOrTheNumberSign) {
    const auto key = [](const char16_t* name) { return mdlPhonebook::GetAlphaKey(QString::fromUtf16(name)); };
    EXPECT_EQ(key(u"Byrne"), QStringLiteral("B"));
    EXPECT_EQ(key(u"o'Neill"), QStringLiteral("O"));
    EXPECT_EQ(key(u"A"), QStringLiteral("A"));
    EXPECT_EQ(key(u"zoe"), QStringLiteral("Z"));
    for (const char16_t* other : {u"", u"3com", u"Émile", u"éamon", u"Ärzte", u" Byrne", u"'t Hooft", u"[x",
                                  u"@x", u"`x", u"{x", u"Жук", u"\u2160", u"\uff21"}) {
        EXPECT_EQ(key(other), QStringLiteral("#")) << QString::fromUtf16(other).toStdString();
    }
}

TEST_F(PhonebookTest, RebuildingWritesBothKeysOfEveryRowThroughADynamicSet) {
    Open();
    Office.Engine.Serve(QStringLiteral("FROM Contact"),
                        {{QStringLiteral("cntSurname"), QStringLiteral("cntFirstnames"),
                          QStringLiteral("cntAlphaSurname"), QStringLiteral("cntAlphaFirstNames")},
                         {{QStringLiteral("byrne"), QVariant(), QString(), QString()},
                          {QVariant(), QStringLiteral("zoe"), QString(), QString()}}});
    mdlPhonebook::RebuildAlphaKeys(State);
    EXPECT_EQ(Statement(), QStringLiteral("SELECT * FROM Contact"));
    EXPECT_EQ(Office.Engine.Cursors, QList{CursorType::Dynamic});
    EXPECT_EQ(Office.Engine.Locks, QList{LockType::Optimistic});
    const auto keys = [](const char16_t* surname, const char16_t* firstnames) {
        return QVariantMap{{QStringLiteral("cntAlphaSurname"), QString::fromUtf16(surname)},
                           {QStringLiteral("cntAlphaFirstNames"), QString::fromUtf16(firstnames)}};
    };
    EXPECT_EQ(Office.Engine.Updates, (QList<QVariantMap>{keys(u"B", u"#"), keys(u"#", u"Z")}));
    EXPECT_EQ(Office.Engine.OpenRecordsets, 0);
}

TEST_F(PhonebookTest, RebuildingAPhonebookWithoutAlphaColumnsDoesNothing) {
    Open();
    Office.Engine.Serve(QStringLiteral("FROM Contact"),
                        {{QStringLiteral("cntSurname"), QStringLiteral("cntFirstnames")},
                         {{QStringLiteral("byrne"), QStringLiteral("mary")}}});
    mdlPhonebook::RebuildAlphaKeys(State);
    EXPECT_TRUE(Office.Engine.Updates.isEmpty());
}

TEST_F(PhonebookTest, RebuildingGoesOnBehindARowThatAnotherHasChanged) {
    Open();
    Office.Engine.Serve(QStringLiteral("FROM Contact"),
                        {{QStringLiteral("cntSurname"), QStringLiteral("cntFirstnames"),
                          QStringLiteral("cntAlphaSurname"), QStringLiteral("cntAlphaFirstNames")},
                         {{QStringLiteral("byrne"), QStringLiteral("mary"), QString(), QString()},
                          {QStringLiteral("kelly"), QStringLiteral("ann"), QString(), QString()}}});
    Office.Engine.Fail(Operation::Update, 3197, 1, 1);
    mdlPhonebook::RebuildAlphaKeys(State);
    ASSERT_EQ(Office.Engine.Updates.size(), 1);
    EXPECT_EQ(Office.Engine.Updates.constFirst().value(QStringLiteral("cntAlphaSurname")),
              QStringLiteral("K"));
    Office.Engine.Fail(Operation::Recordset, 3045);
    mdlPhonebook::RebuildAlphaKeys(State);
}

}  // namespace
