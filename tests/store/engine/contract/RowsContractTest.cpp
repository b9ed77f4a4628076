#include "store/engine/contract/RowsContractFixture.h"

#include <QDateTime>

using engine::CursorType;
using engine::LockType;

// --- reading ---

TEST_P(RowsContractTest, RowsComeOneByOneAndThenEndOfFile) {
    auto connection = Outbox();
    AddMessage(*connection, QStringLiteral("one"));
    AddMessage(*connection, QStringLiteral("two"));
    const auto rows = Rows(*connection, QStringLiteral("SELECT * FROM Message ORDER BY msgID"));
    EXPECT_FALSE(rows->EndOfFile());
    EXPECT_EQ(rows->Value(u"msgText"), QVariant(QStringLiteral("one")));
    rows->MoveNext();
    EXPECT_EQ(rows->Value(u"msgText"), QVariant(QStringLiteral("two")));
    rows->MoveNext();
    EXPECT_TRUE(rows->EndOfFile());
    EXPECT_THROW(rows->MoveNext(), engine::Failure);
    EXPECT_THROW(Q_UNUSED(rows->Value(u"msgText")), engine::Failure);
}

TEST_P(RowsContractTest, AnEmptyResultHasItsFieldsAndNoRow) {
    auto connection = Outbox();
    const auto rows = Rows(*connection, QStringLiteral("SELECT msgID, msgText AS [The Text] FROM Message"));
    EXPECT_TRUE(rows->EndOfFile());
    ASSERT_EQ(rows->FieldCount(), 2);
    EXPECT_EQ(rows->FieldName(0), QStringLiteral("msgID"));
    EXPECT_EQ(rows->FieldName(1), QStringLiteral("The Text"));
}

TEST_P(RowsContractTest, FieldNamesHaveNoRegardToCase) {
    auto connection = Outbox();
    AddMessage(*connection, QStringLiteral("one"));
    const auto rows = Rows(*connection, QStringLiteral("SELECT MSGid, MsgText FROM mESSAGE"));
    EXPECT_EQ(rows->FieldIndex(u"msgtext"), 1);
    EXPECT_EQ(rows->Value(u"MSGTEXT"), QVariant(QStringLiteral("one")));
    EXPECT_TRUE(engine::FieldExists(rows.get(), u"msgid"));
    EXPECT_FALSE(engine::FieldExists(rows.get(), u"msgStatus"));
    EXPECT_EQ(rows->FieldIndex(u"msgStatus"), -1);
}

TEST_P(RowsContractTest, AnUnknownFieldIs3265) {
    auto connection = Outbox();
    AddMessage(*connection, QStringLiteral("one"));
    const auto rows = Rows(*connection, QStringLiteral("SELECT * FROM Message"));
    for (const auto& step : std::initializer_list<std::function<void()>>{
             [&] { Q_UNUSED(rows->Value(u"nothing")); }, [&] { Q_UNUSED(rows->Value(-1)); },
             [&] { Q_UNUSED(rows->Value(rows->FieldCount())); }, [&] { Q_UNUSED(rows->FieldName(99)); }}) {
        try {
            step();
            ADD_FAILURE() << "did not fail";
        } catch (const engine::Failure& failure) {
            EXPECT_EQ(failure.Item().SQLState, QStringLiteral("3265"));
        }
    }
}

TEST_P(RowsContractTest, AClosedRecordsetGivesNothing) {
    auto connection = Outbox();
    const auto rows = Rows(*connection, QStringLiteral("SELECT * FROM System"));
    rows->Close();
    EXPECT_THROW(Q_UNUSED(rows->EndOfFile()), engine::Failure);
    EXPECT_THROW(Q_UNUSED(rows->Value(0)), engine::Failure);
    EXPECT_THROW(rows->Close(), engine::Failure);
    EXPECT_FALSE(engine::FieldExists(rows.get(), u"sysSMSMaxMessageSize"));
}

TEST_P(RowsContractTest, RowsOutliveTheirConnection) {
    auto connection = Outbox();
    AddMessage(*connection, QStringLiteral("one"));
    const auto rows = connection->OpenRecordset(QStringLiteral("SELECT * FROM Message"), CursorType::Static,
                                                LockType::BatchOptimistic);
    rows->Disconnect();
    connection.reset();
    EXPECT_EQ(rows->Value(u"msgText"), QVariant(QStringLiteral("one")));
}

TEST_P(RowsContractTest, ValuesComeBackAsWhatTheirColumnsAre) {
    auto connection = Outbox();
    Execute(
        *connection,
        QStringLiteral("INSERT INTO Message (msgText, msgSendTime, msgComplete, msgStatus, msgTariff) VALUES "
                       "('t', #31/December/1999 23:59:58#, TRUE, 5, 7.25)"));
    const auto rows = Rows(*connection, QStringLiteral("SELECT * FROM Message"));
    EXPECT_EQ(rows->Value(u"msgText"), QVariant(QStringLiteral("t")));
    EXPECT_EQ(rows->Value(u"msgSendTime"), QVariant(QDateTime(QDate(1999, 12, 31), QTime(23, 59, 58))));
    EXPECT_EQ(rows->Value(u"msgComplete"), QVariant(true));
    EXPECT_EQ(rows->Value(u"msgComplete").typeId(), QMetaType::Bool);
    EXPECT_EQ(rows->Value(u"msgStatus").typeId(), QMetaType::LongLong);
    EXPECT_EQ(rows->Value(u"msgTariff"), QVariant(7.25));
    EXPECT_TRUE(rows->Value(u"msgDeliveryTime").isNull());
    EXPECT_TRUE(rows->Value(u"msgErrorReason").isNull());
}

TEST_P(RowsContractTest, TheTextOfAFieldIsItsValueAsText) {
    auto connection = Outbox();
    Execute(
        *connection,
        QStringLiteral("INSERT INTO Message (msgText, msgSendTime, msgComplete, msgStatus, msgTariff) VALUES "
                       "('Zoë', #31/December/1999 23:59:58#, TRUE, 5, 7.25)"));
    const auto rows = Rows(*connection, QStringLiteral("SELECT * FROM Message"));
    for (int field = 0; field < rows->FieldCount(); ++field) {
        const QVariant value = rows->Value(field);
        EXPECT_EQ(rows->Text(field), value.isNull() ? QString() : value.toString())
            << rows->FieldName(field).toStdString();
    }
    EXPECT_EQ(rows->Text(rows->FieldIndex(u"msgText")), QStringLiteral("Zoë"));
    EXPECT_THROW(Q_UNUSED(rows->Text(rows->FieldCount())), engine::Failure);
    rows->MoveNext();
    EXPECT_THROW(Q_UNUSED(rows->Text(0)), engine::Failure);
}

TEST_P(RowsContractTest, TheTextOfAChangedFieldIsThatOfTheChange) {
    auto connection = Phonebook();
    Execute(*connection, Contact(QStringLiteral("One")));
    const auto rows = Writable(*connection, QStringLiteral("SELECT * FROM Contact"));
    const int note = rows->FieldIndex(u"cntNote");
    rows->SetValue(u"cntNote", QStringLiteral("a note"));
    EXPECT_EQ(rows->Text(note), QStringLiteral("a note"));
    rows->Update();
    EXPECT_EQ(rows->Text(note), QStringLiteral("a note"));
    EXPECT_EQ(rows->Text(rows->FieldIndex(u"cntSurname")), QStringLiteral("One"));
}

TEST_P(RowsContractTest, AClockFaceIsTheDateAsItStandsInNoZoneAndAnyOtherValueAsItIs) {
    auto connection = Phonebook();
    Execute(*connection, Contact(QStringLiteral("One")));
    const auto contacts = Writable(*connection, QStringLiteral("SELECT * FROM Contact"));
    const int surname = contacts->FieldIndex(u"cntSurname");
    EXPECT_EQ(contacts->ClockFace(surname), QVariant(QStringLiteral("One")));
    contacts->SetValue(u"cntSurname", QStringLiteral("Two"));
    EXPECT_EQ(contacts->ClockFace(surname), QVariant(QStringLiteral("Two")));

    auto outbox = Outbox();
    // Half past two of a night in which many zones have no such time.
    for (const char* time : {"#31/December/1999 23:59:58#", "#28/March/2027 02:30:00#", "#29/Feb/2024#"}) {
        Execute(*outbox, QStringLiteral("INSERT INTO Message (msgSendTime, msgStatus) VALUES (%1, 5)")
                             .arg(QString::fromLatin1(time)));
    }
    const auto rows = Rows(*outbox, QStringLiteral("SELECT msgSendTime, msgStatus, msgDeliveryTime FROM "
                                                   "Message ORDER BY msgSendTime"));
    for (const QDateTime& face : {QDateTime(QDate(1999, 12, 31), QTime(23, 59, 58), Qt::UTC),
                                  QDateTime(QDate(2024, 2, 29), QTime(0, 0), Qt::UTC),
                                  QDateTime(QDate(2027, 3, 28), QTime(2, 30), Qt::UTC)}) {
        EXPECT_EQ(rows->ClockFace(0), QVariant(face));
        EXPECT_EQ(rows->ClockFace(1), QVariant(5));
        EXPECT_TRUE(rows->ClockFace(2).isNull());
        rows->MoveNext();
    }
    EXPECT_THROW(Q_UNUSED(rows->ClockFace(0)), engine::Failure);
}

TEST_P(RowsContractTest, ARecordsetKnowsHowManyRowsItHasOrSaysThatItDoesNot) {
    auto connection = Outbox();
    AddMessage(*connection, QStringLiteral("one"));
    AddMessage(*connection, QStringLiteral("two"));
    const auto rows = Rows(*connection, QStringLiteral("SELECT * FROM Message"));
    EXPECT_TRUE(rows->RecordCount() == 2 || rows->RecordCount() == -1) << rows->RecordCount();
    rows->MoveNext();
    EXPECT_TRUE(rows->RecordCount() == 2 || rows->RecordCount() == -1) << rows->RecordCount();
}

TEST_P(RowsContractTest, ADateWithoutATimeIsItsMidnight) {
    auto connection = Outbox();
    Execute(*connection, QStringLiteral("INSERT INTO Message (msgSendTime) VALUES (#29/Feb/2024#)"));
    EXPECT_EQ(Value(*connection, QStringLiteral("SELECT msgSendTime FROM Message")),
              QVariant(QDateTime(QDate(2024, 2, 29), QTime(0, 0))));
}

TEST_P(RowsContractTest, ANewMessageHasStatusZeroAndIsNotComplete) {
    auto connection = Outbox();
    AddMessage(*connection, QStringLiteral("one"));
    const auto rows = Rows(*connection, QStringLiteral("SELECT msgStatus, msgComplete FROM Message"));
    EXPECT_EQ(rows->Value(u"msgStatus"), QVariant(0));
    EXPECT_EQ(rows->Value(u"msgComplete"), QVariant(false));
}

// --- many statements ---

TEST_P(RowsContractTest, AStatementWhoseTableWentAwayFailsHoweverManyOthersWereRun) {
    const QString tails = QStringLiteral("SELECT * FROM MessageTail");
    // Fewer than an engine keeps ready, just as many, and more.
    constexpr int FewShapes = 30;
    constexpr int ManyShapes = 50;
    for (int shapes = FewShapes; shapes <= ManyShapes; ++shapes) {
        auto connection = Phonebook();
        for (int i = 0; i < shapes; ++i) {
            const QString sql = QStringLiteral("SELECT cntID AS [c%1] FROM Contact").arg(i);
            EXPECT_TRUE(Rows(*connection, sql)->EndOfFile());
        }
        EXPECT_TRUE(Rows(*connection, tails)->EndOfFile());
        Context->DropTails();
        EXPECT_EQ(FailureOf(*connection, tails), engine::Number::NoSuchTable);
        Context->MakeTails();
        EXPECT_TRUE(Rows(*connection, tails)->EndOfFile());
    }
}

// --- comparing, ordering, reckoning ---

TEST_P(RowsContractTest, TextsAreComparedWithoutRegardToCase) {
    auto connection = Phonebook();
    Execute(*connection, Contact(QStringLiteral("ÉRIC von Łódź")));
    for (const auto& where :
         {u"cntSurname = 'éric VON łódź'", u"'éric von łÓDŹ' = cntSurname",
          u"cntSurname IN ('x', 'éric von łódź')", u"cntSurname LIKE 'éRic%'",
          u"cntSurname BETWEEN 'éric' AND 'ÉRIC Z'", u"NOT cntSurname <> 'éric von łódź'",
          u"cntFirstnames = 'ANN'", u"cntAlphaSurname IS NULL AND cntFirstnames LIKE '_nN'"}) {
        const QString sql = QStringLiteral("SELECT Count(*) FROM Contact WHERE ") + QString::fromUtf16(where);
        EXPECT_EQ(Value(*connection, sql), QVariant(1)) << sql.toStdString();
    }
    EXPECT_EQ(
        Value(*connection, QStringLiteral("SELECT Count(*) FROM Contact WHERE cntSurname = 'Eric von Lodz'")),
        QVariant(0));
}

TEST_P(RowsContractTest, CaseMakesNoDifferenceBeyondAsciiEither) {
    auto connection = Outbox();
    AddMessage(*connection, QStringLiteral("\u00c9RIC"));
    EXPECT_EQ(Value(*connection, QStringLiteral("SELECT Count(*) FROM Message WHERE msgText = '\u00e9ric'")),
              QVariant(1));
}

TEST_P(RowsContractTest, TextsOfTheOutboxAreGroupedAndOrderedWithoutRegardToCaseBeyondAscii) {
    auto connection = Outbox();
    for (const auto& name : {u"Zoe", u"Émile", u"emil", u"émile", u"ÉMILE", u"adam"}) {
        Execute(*connection, QStringLiteral("INSERT INTO Message (msgRecipient, msgFragmentCount) VALUES "
                                            "('%1', 1)")
                                 .arg(QString::fromUtf16(name)));
    }
    const auto groups =
        Rows(*connection, QStringLiteral("SELECT Sum(Message.msgFragmentCount) AS [Count], "
                                         "Message.msgRecipient FROM Message GROUP BY "
                                         "Message.msgRecipient ORDER BY Message.msgRecipient"));
    QStringList counts;
    QStringList names;
    for (; !groups->EndOfFile(); groups->MoveNext()) {
        counts.append(groups->Value(u"Count").toString());
        names.append(groups->Value(u"msgRecipient").toString().toLower());
    }
    EXPECT_EQ(names.join(u' '), QStringLiteral("adam emil émile zoe"));
    EXPECT_EQ(counts.join(u' '), QStringLiteral("1 1 3 1"));
    EXPECT_EQ(Value(*connection,
                    QStringLiteral("SELECT msgRecipient FROM Message ORDER BY MSGRECIPIENT DESC, msgID")),
              QVariant(QStringLiteral("Zoe")));
}

TEST_P(RowsContractTest, OnlyPercentAndUnderscoreAreWildcards) {
    auto connection = Phonebook();
    for (const auto& name : {u"a*b", u"a?b", u"a[b", u"a#b", u"axb"}) {
        Execute(*connection, Contact(QString::fromUtf16(name)));
    }
    const auto count = [&](const QString& pattern) {
        return Value(*connection,
                     QStringLiteral("SELECT Count(*) FROM Contact WHERE cntSurname LIKE '%1'").arg(pattern))
            .toInt();
    };
    EXPECT_EQ(count(QStringLiteral("a_b")), 5);
    EXPECT_EQ(count(QStringLiteral("a%")), 5);
    EXPECT_EQ(count(QStringLiteral("a*b")), 1);
    EXPECT_EQ(count(QStringLiteral("a?b")), 1);
    EXPECT_EQ(count(QStringLiteral("a[b")), 1);
    EXPECT_EQ(count(QStringLiteral("[a-z]%")), 0);
}

TEST_P(RowsContractTest, NamesAreOrderedByTheirLettersAndThenByTheirAccents) {
    auto connection = Phonebook();
    for (const auto& name : {u"Zoé", u"zoe", u"Zofia", u"ZOE", u"Abel", u"Ábel", u"Östen", u"Otto"}) {
        Execute(*connection, Contact(QString::fromUtf16(name)));
    }
    const auto rows = Rows(*connection, QStringLiteral("SELECT * FROM qry_Contacts_By_Surname"));
    QStringList names;
    for (; !rows->EndOfFile(); rows->MoveNext()) {
        names.append(rows->Value(u"cntSurname").toString());
    }
    EXPECT_EQ(names, QStringLiteral("Abel Ábel Östen Otto zoe ZOE Zoé Zofia").split(u' '));
}

TEST_P(RowsContractTest, DivisionIsNeverOneOfWholeNumbers) {
    auto connection = Outbox();
    EXPECT_EQ(Value(*connection, QStringLiteral("SELECT 7 / 2 AS Half")), QVariant(3.5));
    EXPECT_EQ(Value(*connection, QStringLiteral("SELECT 100 / 8 / 5 AS Both")), QVariant(2.5));
}

INSTANTIATE_TEST_SUITE_P(Engines, RowsContractTest, Engines(), EngineName);
