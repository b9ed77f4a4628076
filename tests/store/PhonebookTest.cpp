#include "store/PhonebookFixture.h"

#include <gtest/gtest.h>

using engine::CursorType;
using engine::LockType;
using Operation = FakeEngine::Operation;

namespace {

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

}  // namespace
