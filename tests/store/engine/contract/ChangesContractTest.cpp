#include "store/engine/contract/RowsContractFixture.h"

// --- changing ---

TEST_P(RowsContractTest, ExecuteCountsTheRowsItChanged) {
    auto connection = Outbox();
    for (int i = 0; i < 3; ++i) {
        AddMessage(*connection, QStringLiteral("x"));
    }
    EXPECT_EQ(Execute(*connection, QStringLiteral("UPDATE Message SET msgStatus = 1 WHERE msgID < 3")), 2);
    EXPECT_EQ(Execute(*connection, QStringLiteral("UPDATE Message SET msgStatus = 1 WHERE msgID = 77")), 0);
    EXPECT_EQ(Execute(*connection, QStringLiteral("DELETE FROM Message")), 3);
}

TEST_P(RowsContractTest, DeletingAGroupCountsTheGroupAloneAndTakesItsMembersAlong) {
    auto connection = Phonebook();
    Execute(*connection, Contact(QStringLiteral("A")));
    Execute(*connection, Group(QStringLiteral("G")));
    Execute(*connection, QStringLiteral("INSERT INTO GroupMember (grpID, cntID) VALUES (1, 1)"));
    EXPECT_EQ(FailureOf(*connection, QStringLiteral("INSERT INTO GroupMember (grpID, cntID) VALUES (1, 1)")),
              engine::Number::DuplicateKey);
    EXPECT_EQ(Execute(*connection, QStringLiteral("DELETE FROM ContactGroup WHERE grpID = 1")), 1);
    EXPECT_EQ(Value(*connection, QStringLiteral("SELECT Count(*) FROM GroupMember")), QVariant(0));
}

TEST_P(RowsContractTest, TheIdentityIsThatOfTheSameConnection) {
    auto first = Outbox();
    auto second = Outbox();
    EXPECT_EQ(Value(*first, QStringLiteral("SELECT @@IDENTITY AS ID")), QVariant(0));
    AddMessage(*first, QStringLiteral("one"));
    AddMessage(*second, QStringLiteral("two"));
    EXPECT_EQ(Value(*first, QStringLiteral("SELECT @@IDENTITY AS ID")), QVariant(1));
    EXPECT_EQ(Value(*second, QStringLiteral("SELECT @@IDENTITY AS ID")), QVariant(2));
}

TEST_P(RowsContractTest, AFailedInsertLeavesTheIdentityAsItWas) {
    auto connection = Phonebook();
    Execute(*connection, Group(QStringLiteral("one")));
    EXPECT_EQ(FailureOf(*connection, Group(QStringLiteral("ONE"))), engine::Number::DuplicateKey);
    EXPECT_EQ(Value(*connection, QStringLiteral("SELECT @@IDENTITY AS ID")), QVariant(1));
}

TEST_P(RowsContractTest, OnlyATableThatNumbersItsRowsMovesTheIdentity) {
    auto connection = Phonebook();
    Execute(*connection, Group(QStringLiteral("one")));
    Execute(*connection, Contact(QStringLiteral("A")));
    Execute(*connection, Contact(QStringLiteral("B")));
    for (const auto& sql : {u"INSERT INTO GroupMember (grpID, cntID) VALUES (1, 1)",
                            u"INSERT INTO MessageTail (mtlText, mtlDefault) VALUES ('tail', TRUE)"}) {
        Execute(*connection, QString::fromUtf16(sql));
        EXPECT_EQ(Value(*connection, QStringLiteral("SELECT @@IDENTITY AS ID")), QVariant(2));
    }
}

TEST_P(RowsContractTest, ARecordNumberNeverComesBack) {
    auto connection = Outbox();
    AddMessage(*connection, QStringLiteral("one"));
    Execute(*connection, QStringLiteral("DELETE FROM Message"));
    AddMessage(*connection, QStringLiteral("two"));
    EXPECT_EQ(Value(*connection, QStringLiteral("SELECT msgID FROM Message")), QVariant(2));
}

TEST_P(RowsContractTest, WhatIsWrongWithAStatementHasItsNumber) {
    auto outbox = Outbox();
    auto phonebook = Phonebook();
    EXPECT_EQ(FailureOf(*outbox, QStringLiteral("SELECT * FROM Nothing")), 3078);
    EXPECT_EQ(FailureOf(*outbox, QStringLiteral("DELETE FROM Nothing")), 3078);
    EXPECT_EQ(FailureOf(*outbox, QStringLiteral("INSERT INTO Nothing (a) VALUES (1)")), 3078);
    EXPECT_EQ(FailureOf(*outbox, QStringLiteral("UPDATE Nothing SET a = 1")), 3078);
    EXPECT_EQ(FailureOf(*outbox, QStringLiteral("SELECT nothing FROM Message")), 3061);
    EXPECT_EQ(FailureOf(*outbox, QStringLiteral("SELECT msgID FROM Message WHERE nothing = 1")), 3061);
    EXPECT_EQ(FailureOf(*outbox, QStringLiteral("UPDATE Message SET nothing = 1")), 3061);
    EXPECT_EQ(FailureOf(*outbox, QStringLiteral("INSERT INTO Message (nothing) VALUES (1)")), 3061);
    EXPECT_EQ(FailureOf(*outbox, QStringLiteral("SELECT Contact.msgID FROM Message")), 3061);
    EXPECT_EQ(FailureOf(*phonebook, QStringLiteral("INSERT INTO ContactGroup (grpName) VALUES (NULL)")),
              3314);
    EXPECT_EQ(FailureOf(*phonebook, QStringLiteral("INSERT INTO GroupMember (grpID) VALUES (1)")), 3314);
    EXPECT_EQ(FailureOf(*phonebook, QStringLiteral("INSERT INTO ContactGroup (grpName) VALUES ('')")), 3315);
    EXPECT_EQ(FailureOf(*phonebook, QStringLiteral("INSERT INTO GroupMember (grpID, cntID) VALUES (8, 9)")),
              3201);
    EXPECT_EQ(FailureOf(*outbox, QStringLiteral("SELECT msgID FROM Message WHERE  ORDER BY msgID")), 3075);
    EXPECT_EQ(FailureOf(*outbox, QStringLiteral("SELECT FROM Message")), 3141);
    EXPECT_EQ(FailureOf(*outbox, QStringLiteral("INSERT INTO Message msgID VALUES (1)")), 3134);
    EXPECT_EQ(FailureOf(*outbox, QStringLiteral("UPDATE Message msgID = 1")), 3144);
    EXPECT_EQ(FailureOf(*outbox, QStringLiteral("DELETE Message")), 3128);
}

TEST_P(RowsContractTest, ASavedQueryCannotBeWritten) {
    auto connection = Phonebook();
    Execute(*connection, Group(QStringLiteral("one")));
    EXPECT_EQ(FailureOf(*connection, QStringLiteral("DELETE FROM qry_Groups")), engine::Number::ReadOnly);
    EXPECT_EQ(Value(*connection, QStringLiteral("SELECT Count(*) FROM ContactGroup")), QVariant(1));
}

TEST_P(RowsContractTest, ASecondStatementIsRefusedAndNeitherRuns) {
    auto connection = Outbox();
    AddMessage(*connection, QStringLiteral("one"));
    EXPECT_NE(FailureOf(*connection, QStringLiteral("DELETE FROM Message; DELETE FROM System")), 0);
    EXPECT_NE(FailureOf(*connection, QStringLiteral("DELETE FROM Message DELETE FROM System")), 0);
    EXPECT_EQ(Value(*connection, QStringLiteral("SELECT Count(*) FROM Message")), QVariant(1));
}

// --- transactions ---

TEST_P(RowsContractTest, OthersSeeATransactionWhenItIsCommitted) {
    auto writer = Outbox();
    auto reader = Outbox();
    const QString count = QStringLiteral("SELECT Count(*) FROM Message");
    writer->BeginTrans();
    AddMessage(*writer, QStringLiteral("one"));
    AddMessage(*writer, QStringLiteral("two"));
    EXPECT_EQ(Value(*reader, count), QVariant(0));
    EXPECT_EQ(Value(*writer, count), QVariant(2));
    writer->CommitTrans();
    EXPECT_EQ(Value(*reader, count), QVariant(2));
}

TEST_P(RowsContractTest, ARolledBackTransactionLeavesNothing) {
    auto connection = Outbox();
    connection->BeginTrans();
    AddMessage(*connection, QStringLiteral("one"));
    connection->RollbackTrans();
    EXPECT_EQ(Value(*connection, QStringLiteral("SELECT Count(*) FROM Message")), QVariant(0));
}

TEST_P(RowsContractTest, ClosingDropsAnOpenTransaction) {
    auto connection = Outbox();
    connection->BeginTrans();
    AddMessage(*connection, QStringLiteral("one"));
    connection->Close();
    EXPECT_EQ(Value(*Outbox(), QStringLiteral("SELECT Count(*) FROM Message")), QVariant(0));
}

TEST_P(RowsContractTest, AStatementThatFailsLeavesTheTransactionWhole) {
    auto connection = Phonebook();
    connection->BeginTrans();
    Execute(*connection, Group(QStringLiteral("one")));
    EXPECT_EQ(FailureOf(*connection, Group(QStringLiteral("one"))), engine::Number::DuplicateKey);
    connection->CommitTrans();
    EXPECT_EQ(Value(*connection, QStringLiteral("SELECT Count(*) FROM ContactGroup")), QVariant(1));
}

TEST_P(RowsContractTest, CommitAndRollbackWithoutATransactionFail) {
    auto connection = Outbox();
    EXPECT_NE(FailureOf(*connection, [&] { connection->CommitTrans(); }), 0);
    EXPECT_NE(FailureOf(*connection, [&] { connection->RollbackTrans(); }), 0);
    EXPECT_EQ(FailureOf(*connection, [&] { connection->BeginTrans(); }), 0);
    EXPECT_NE(FailureOf(*connection, [&] { connection->BeginTrans(); }), 0);
}

// --- rows that can be written ---

TEST_P(RowsContractTest, UpdateWritesTheChangedFieldsOfTheCurrentRow) {
    auto connection = Phonebook();
    Execute(*connection, Contact(QStringLiteral("One")));
    Execute(*connection, Contact(QStringLiteral("Two")));
    const auto rows = Writable(*connection, QStringLiteral("SELECT * FROM Contact"));
    EXPECT_FALSE(engine::FieldExists(rows.get(), u"rowid"));
    rows->MoveNext();
    rows->SetValue(u"cntAlphaSurname", QStringLiteral("T"));
    rows->SetValue(u"CNTconfirmSEND", false);
    EXPECT_EQ(rows->Value(u"cntAlphaSurname"), QVariant(QStringLiteral("T")));
    rows->Update();
    EXPECT_EQ(rows->Value(u"cntAlphaSurname"), QVariant(QStringLiteral("T")));
    rows->SetValue(u"cntAlphaSurname", QStringLiteral("U"));
    rows->Update();
    const auto written = Rows(*connection, QStringLiteral("SELECT * FROM Contact ORDER BY cntID"));
    EXPECT_TRUE(written->Value(u"cntAlphaSurname").isNull());
    written->MoveNext();
    EXPECT_EQ(written->Value(u"cntAlphaSurname"), QVariant(QStringLiteral("U")));
    EXPECT_EQ(written->Value(u"cntConfirmSend"), QVariant(false));
    EXPECT_EQ(written->Value(u"cntSurname"), QVariant(QStringLiteral("Two")));
}

TEST_P(RowsContractTest, GoingOnWritesWhatWasChanged) {
    auto connection = Phonebook();
    Execute(*connection, Contact(QStringLiteral("One")));
    const auto rows = Writable(*connection, QStringLiteral("SELECT * FROM Contact"));
    rows->SetValue(u"cntNote", QStringLiteral("a note"));
    rows->MoveNext();
    EXPECT_EQ(Value(*connection, QStringLiteral("SELECT cntNote FROM Contact")),
              QVariant(QStringLiteral("a note")));
}

TEST_P(RowsContractTest, ARowThatAnotherChangedIsNotOverwritten) {
    auto connection = Phonebook();
    Execute(*connection, Contact(QStringLiteral("One")));
    const auto rows = Writable(*connection, QStringLiteral("SELECT * FROM Contact"));
    auto other = Phonebook();
    Execute(*other, QStringLiteral("UPDATE Contact SET cntSurname = 'ONE'"));
    rows->SetValue(u"cntNote", QStringLiteral("mine"));
    try {
        rows->Update();
        ADD_FAILURE() << "overwrote the row";
    } catch (const engine::Failure& failure) {
        EXPECT_EQ(failure.Item().SQLState, QStringLiteral("3197"));
    }
    EXPECT_TRUE(Value(*connection, QStringLiteral("SELECT cntNote FROM Contact")).isNull());
}

TEST_P(RowsContractTest, MoveNextAfterAFailedUpdateGoesOnAndWritesNothing) {
    auto connection = Phonebook();
    Execute(*connection, Contact(QStringLiteral("One")));
    Execute(*connection, Contact(QStringLiteral("Two")));
    const auto rows = Writable(*connection, QStringLiteral("SELECT * FROM Contact ORDER BY cntID"));
    Execute(*Phonebook(), QStringLiteral("UPDATE Contact SET cntSurname = 'ONE' WHERE cntID = 1"));
    rows->SetValue(u"cntNote", QStringLiteral("mine"));
    EXPECT_THROW(rows->Update(), engine::Failure);
    EXPECT_TRUE(rows->Value(u"cntNote").isNull()) << "the change is given up";
    rows->MoveNext();
    EXPECT_EQ(rows->Value(u"cntSurname"), QVariant(QStringLiteral("Two")));
    rows->SetValue(u"cntNote", QStringLiteral("mine"));
    rows->Update();
    EXPECT_TRUE(Value(*connection, QStringLiteral("SELECT cntNote FROM Contact WHERE cntID = 1")).isNull());
    EXPECT_EQ(Value(*connection, QStringLiteral("SELECT cntNote FROM Contact WHERE cntID = 2")),
              QVariant(QStringLiteral("mine")));
}

TEST_P(RowsContractTest, MoveNextThatCannotWriteStaysAndThenGoesOn) {
    auto connection = Phonebook();
    Execute(*connection, Contact(QStringLiteral("One")));
    const auto rows = Writable(*connection, QStringLiteral("SELECT * FROM Contact"));
    Execute(*Phonebook(), QStringLiteral("UPDATE Contact SET cntSurname = 'ONE'"));
    rows->SetValue(u"cntNote", QStringLiteral("mine"));
    EXPECT_THROW(rows->MoveNext(), engine::Failure);
    EXPECT_FALSE(rows->EndOfFile());
    rows->MoveNext();
    EXPECT_TRUE(rows->EndOfFile());
}

TEST_P(RowsContractTest, ARowThatAnotherDeletedCannotBeWritten) {
    auto connection = Phonebook();
    Execute(*connection, Contact(QStringLiteral("One")));
    const auto rows = Writable(*connection, QStringLiteral("SELECT * FROM Contact"));
    Execute(*connection, QStringLiteral("DELETE FROM Contact"));
    rows->SetValue(u"cntNote", QStringLiteral("mine"));
    EXPECT_THROW(rows->Update(), engine::Failure);
}

TEST_P(RowsContractTest, AForwardOnlySetAndASetOfASavedQueryCannotBeWritten) {
    auto connection = Phonebook();
    Execute(*connection, Contact(QStringLiteral("One")));
    const auto forward = Rows(*connection, QStringLiteral("SELECT * FROM Contact"));
    const auto query = Writable(*connection, QStringLiteral("SELECT * FROM qry_Contacts_By_Surname"));
    EXPECT_EQ(query->Value(u"cntSurname"), QVariant(QStringLiteral("One")));
    for (engine::Recordset* rows : {forward.get(), query.get()}) {
        try {
            rows->SetValue(u"cntNote", QStringLiteral("x"));
            ADD_FAILURE() << "was written";
        } catch (const engine::Failure& failure) {
            EXPECT_EQ(failure.Item().SQLState, QStringLiteral("3027"));
        }
    }
}

TEST_P(RowsContractTest, ASetCannotBeWrittenAfterItsConnectionEnded) {
    auto connection = Phonebook();
    Execute(*connection, Contact(QStringLiteral("One")));
    const auto rows = Writable(*connection, QStringLiteral("SELECT * FROM Contact"));
    connection.reset();
    EXPECT_EQ(rows->Value(u"cntSurname"), QVariant(QStringLiteral("One")));
    rows->SetValue(u"cntNote", QStringLiteral("x"));
    EXPECT_THROW(rows->Update(), engine::Failure);
}
