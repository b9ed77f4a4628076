#include "core/Numbers.h"
#include "store/PhonebookFixture.h"

#include <gtest/gtest.h>

using engine::CursorType;
using engine::LockType;
using Operation = FakeEngine::Operation;

namespace {

class PhonebookWriteTest : public PhonebookTest {};

// --- contacts ---

TEST_F(PhonebookWriteTest, AddingAContactWritesAllColumnsAndReadsA32BitIdentity) {
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

TEST_F(PhonebookWriteTest, AContactThatCannotBeAddedShowsItsBoxAndGivesZero) {
    Open();
    Office.Engine.Fail(Operation::Execute, 3314);
    Office.Boxes.Expect();
    EXPECT_EQ(mdlPhonebook::AddContact(Services, AnyContact()), 0);
    EXPECT_EQ(Office.Boxes.Shown,
              QList{Box(QStringLiteral("Error:\r\nGE:0x80004005, NE:0x0, SQL:3314 - fake failure 3314"),
                        BoxIcon::Critical)});
    EXPECT_EQ(Office.Engine.Statements.size(), 1);
}

TEST_F(PhonebookWriteTest, AnAddedContactWhoseIdentityCannotBeReadGivesZero) {
    Open();
    Office.Engine.Fail(Operation::Execute, 3049, 2, 2);
    EXPECT_EQ(mdlPhonebook::AddContact(Services, AnyContact()), 0);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(PhonebookWriteTest, UpdatingAContactKeepsTheStatementsOddBlanksAndComputesTheKeysAnew) {
    Open();
    EXPECT_TRUE(mdlPhonebook::UpdateContact(Services, 12, AnyContact()));
    EXPECT_EQ(
        Statement(),
        QStringLiteral("UPDATE Contact SET cntSurname = 'O''Neill',cntFirstnames ='eoin',cntPhone ="
                       "'+353861112222',cntConfirmSend = TRUE,cntPrivateNumber = FALSE,cntAlphaSurname ='O',"
                       "cntAlphaFirstNames = 'E',cntNote = '2nd floor',cntUserField1 = 'a''b',cntUserField2 "
                       "= '',cntUserField3 = 'c' WHERE cntID = 12"));
}

TEST_F(PhonebookWriteTest, AContactThatCannotBeUpdatedShowsItsBoxAndGivesFalse) {
    Open();
    Office.Engine.Fail(Operation::Execute, 3027);
    Office.Boxes.Expect();
    EXPECT_FALSE(mdlPhonebook::UpdateContact(Services, 12, AnyContact()));
    EXPECT_EQ(
        Office.Boxes.Shown,
        QList{Box(QStringLiteral("An Error Occured:\r\nGE:0x80004005, NE:0x0, SQL:3027 - fake failure 3027"),
                  BoxIcon::Critical)});
}

TEST_F(PhonebookWriteTest, DeletingIsTrueForExactlyOneRowAndTouchesNoMemberships) {
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

TEST_F(PhonebookWriteTest, AddToGroupTakesContactsOnlyAndTheTextBehindTheLetterAsItStands) {
    Open();
    mdlPhonebook::AddToGroup(State, 7, QStringLiteral("C12\r\nP3\r\nC13\t\r\nG2\r\n\r\nc14\r\nC15"));
    EXPECT_EQ(Office.Engine.Statements,
              (QStringList{QStringLiteral("INSERT INTO GroupMember (grpID, cntID) VALUES (7,12)"),
                           QStringLiteral("INSERT INTO GroupMember (grpID, cntID) VALUES (7,13\t)"),
                           QStringLiteral("INSERT INTO GroupMember (grpID, cntID) VALUES (7,15)")}));
}

TEST_F(PhonebookWriteTest, AddToGroupWithASingleKeyAndNoLineBreakAddsNothing) {
    Open();
    mdlPhonebook::AddToGroup(State, 7, QStringLiteral("C12"));
    mdlPhonebook::AddToGroup(State, 7, QString());
    EXPECT_TRUE(Office.Engine.Statements.isEmpty());
}

TEST_F(PhonebookWriteTest, AddToGroupGoesOnBehindAContactThatIsAlreadyInTheGroup) {
    Open();
    Office.Engine.Fail(Operation::Execute, 3022, 1, 1);
    mdlPhonebook::AddToGroup(State, 7, QStringLiteral("C12\r\nC13\r\n"));
    EXPECT_EQ(Office.Engine.Statements.size(), 2);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(PhonebookWriteTest, RemovingFromAGroupIsSilent) {
    Open();
    mdlPhonebook::RemoveFromGroup(State, 7, 12);
    EXPECT_EQ(Statement(), QStringLiteral("DELETE FROM GroupMember WHERE grpID = 7 AND cntID = 12"));
    Office.Engine.Fail(Operation::Execute, 3027);
    mdlPhonebook::RemoveFromGroup(State, 7, 12);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(PhonebookWriteTest, ANewGroupKeepsTenCharactersOfItsName) {
    Open();
    ServeIdentity(qint64{9});
    EXPECT_EQ(mdlPhonebook::AddGroup(Services, QStringLiteral("Night'shift team")), 9);
    EXPECT_EQ(Statement(), QStringLiteral("INSERT INTO ContactGroup (grpName) VALUES ('Night''shif')"));
    EXPECT_EQ(Office.Engine.Statements.value(1), QStringLiteral("SELECT @@IDENTITY AS ID"));
    EXPECT_EQ(Office.Engine.OpenRecordsets, 0);
}

TEST_F(PhonebookWriteTest, AGroupNameThatExistsGivesTheInformationBoxAndZero) {
    Open();
    Office.Engine.Fail(Operation::Execute, 3022);
    Office.Boxes.Expect();
    EXPECT_EQ(mdlPhonebook::AddGroup(Services, QStringLiteral("Staff")), 0);
    EXPECT_EQ(Office.Boxes.Shown,
              QList{Box(QStringLiteral("A Group with that name already exists"), BoxIcon::Information)});
}

TEST_F(PhonebookWriteTest, AGroupThatCannotBeAddedShowsItsBoxAndGivesZero) {
    Open();
    Office.Engine.Fail(Operation::Execute, 3315);
    Office.Boxes.Expect();
    EXPECT_EQ(mdlPhonebook::AddGroup(Services, QString()), 0);
    EXPECT_EQ(Office.Boxes.Shown,
              QList{Box(QStringLiteral(
                            "An error has ocurred:\r\nGE:0x80004005, NE:0x0, SQL:3315 - fake failure 3315"),
                        BoxIcon::Critical)});
}

TEST_F(PhonebookWriteTest, AGroupIdentityIs16BitsWideAndZeroWithoutARow) {
    Open();
    ServeIdentity(qint64{32767});
    EXPECT_EQ(mdlPhonebook::AddGroup(Services, QStringLiteral("a")), 32767);
    ServeIdentity(qint64{32768});
    EXPECT_THROW(static_cast<void>(mdlPhonebook::AddGroup(Services, QStringLiteral("b"))), OverflowError);
    Office.Engine.Serve(QStringLiteral("@@IDENTITY"), {{QStringLiteral("ID")}, {}});
    EXPECT_EQ(mdlPhonebook::AddGroup(Services, QStringLiteral("c")), 0);
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(PhonebookWriteTest, ARenamedGroupKeepsSixCharactersOfItsNameAndFailsInSilence) {
    Open();
    mdlPhonebook::RenameGroup(State, 7, QStringLiteral("Night's"));
    EXPECT_EQ(Statement(), QStringLiteral("UPDATE ContactGroup SET grpName = 'Night''' WHERE grpID = 7"));
    Office.Engine.Fail(Operation::Execute, 3022);
    mdlPhonebook::RenameGroup(State, 7, QStringLiteral("Staff"));
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

// --- user fields ---

TEST_F(PhonebookWriteTest, UserFieldsWithoutARowKeepTheirDefaultCaption) {
    Open();
    Office.Engine.Serve(QStringLiteral("UserFields"),
                        {{QStringLiteral("hdrFieldID"), QStringLiteral("hdrFieldCaption")},
                         {{qint64{3}, QStringLiteral("Room")}, {qint64{1}, QStringLiteral("Car")}}});
    EXPECT_EQ(mdlPhonebook::GetUserFieldHeaders(State),
              (QStringList{QStringLiteral("Car"), QStringLiteral("User 2"), QStringLiteral("Room")}));
    EXPECT_EQ(Statement(), QStringLiteral("SELECT * FROM UserFields"));
}

TEST_F(PhonebookWriteTest, UserFieldsBeyondTheThreeArePassedOver) {
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

TEST_F(PhonebookWriteTest, AFailedQueryLeavesNoCaptionsNotTheDefaults) {
    Open();
    Office.Engine.Fail(Operation::Recordset, 3078);
    EXPECT_EQ(mdlPhonebook::GetUserFieldHeaders(State), QStringList());
}

TEST_F(PhonebookWriteTest, CaptionsAreSavedOneByOne) {
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

TEST_F(PhonebookWriteTest, TheAlphaKeyIsTheFirstLetterInUpperCaseOrTheNumberSign) {
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

TEST_F(PhonebookWriteTest, RebuildingWritesBothKeysOfEveryRowThroughADynamicSet) {
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

TEST_F(PhonebookWriteTest, RebuildingAPhonebookWithoutAlphaColumnsDoesNothing) {
    Open();
    Office.Engine.Serve(QStringLiteral("FROM Contact"),
                        {{QStringLiteral("cntSurname"), QStringLiteral("cntFirstnames")},
                         {{QStringLiteral("byrne"), QStringLiteral("mary")}}});
    mdlPhonebook::RebuildAlphaKeys(State);
    EXPECT_TRUE(Office.Engine.Updates.isEmpty());
}

TEST_F(PhonebookWriteTest, RebuildingGoesOnBehindARowThatAnotherHasChanged) {
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

TEST_F(PhonebookWriteTest, RebuildingGoesOnBehindALockAndEndsAtTheThirdInARow) {
    Open();
    Office.Engine.Serve(QStringLiteral("FROM Contact"),
                        {{QStringLiteral("cntSurname"), QStringLiteral("cntFirstnames"),
                          QStringLiteral("cntAlphaSurname"), QStringLiteral("cntAlphaFirstNames")},
                         QList<QVariantList>(9, {QString(), QString(), QString(), QString()})});
    Office.Engine.Fail(Operation::Update, 3218, 2, 3);
    mdlPhonebook::RebuildAlphaKeys(State);
    EXPECT_EQ(Office.Engine.Updates.size(), 7) << "two in a row are passed over";
    Office.Engine.Updates.clear();
    const int before = Office.Engine.Attempts(Operation::Update);
    Office.Engine.Fail(Operation::Update, 3218, before + 2);
    mdlPhonebook::RebuildAlphaKeys(State);
    EXPECT_EQ(Office.Engine.Updates.size(), 1);
    EXPECT_EQ(Office.Engine.Attempts(Operation::Update) - before, 4);
    EXPECT_EQ(Office.Engine.OpenRecordsets, 0);
}

}  // namespace
