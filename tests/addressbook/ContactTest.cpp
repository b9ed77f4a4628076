#include "addressbook/Contact.h"

#include "addressbook/ContactRows.h"
#include "core/Numbers.h"

#include <gtest/gtest.h>

namespace {

Contact Named(const QString& surname, const QString& firstnames) {
    Contact contact;
    contact.Surname = surname;
    contact.Firstnames = firstnames;
    return contact;
}

}  // namespace

TEST(Keys, AreOneLetterAndADecimalNumber) {
    EXPECT_EQ(Keys::ContactKey(12), u"C12");
    EXPECT_EQ(Keys::PrivateKey(3), u"P3");
    EXPECT_EQ(Keys::GroupTag(7), u"G7");
    EXPECT_EQ(Keys::GroupTag(Keys::EveryoneTab), u"G-1");
    EXPECT_EQ(Keys::GroupTag(Keys::FavouritesTab), u"G-2");
    EXPECT_EQ(Keys::GroupTag(Keys::PrivateTab), u"G-3");
}

TEST(Keys, NumberIsEverythingBehindTheLetter) {
    EXPECT_EQ(Keys::Number(QStringLiteral("C12")), 12);
    EXPECT_EQ(Keys::Number(QStringLiteral("G-1")), -1);
    EXPECT_EQ(Keys::Number(QStringLiteral("C32767")), 32767);
    EXPECT_EQ(Keys::Number(QStringLiteral("C")), 0);
    EXPECT_EQ(Keys::Number(QString()), 0);
}

TEST(Keys, NumberBeyondSixteenBitsFails) {
    EXPECT_THROW((void)Keys::Number(QStringLiteral("C32768")), OverflowError);
    EXPECT_THROW((void)Keys::Number(QStringLiteral("G-32769")), OverflowError);
}

TEST(Keys, LetterTellsContactsFromPrivateOnes) {
    EXPECT_TRUE(Keys::IsContact(QStringLiteral("C1")));
    EXPECT_FALSE(Keys::IsContact(QStringLiteral("P1")));
    EXPECT_FALSE(Keys::IsContact(QStringLiteral("c1")));
    EXPECT_TRUE(Keys::IsPrivate(QStringLiteral("P1")));
    EXPECT_FALSE(Keys::IsPrivate(QStringLiteral("C1")));
    EXPECT_FALSE(Keys::IsPrivate(QString()));
}

TEST(Contact, WritingIDSetsTheKey) {
    Contact contact;
    contact.SetID(12);
    EXPECT_EQ(contact.ID(), 12);
    EXPECT_EQ(contact.Key, u"C12");
}

TEST(Contact, WritingIDAfterKeyOverwritesTheKey) {
    Contact contact;
    contact.Key = QStringLiteral("P3");
    contact.SetID(3);
    EXPECT_EQ(contact.Key, u"C3");
}

TEST(Contact, WritingKeyAfterIDKeepsTheKey) {
    Contact contact;
    contact.SetID(3);
    contact.Key = QStringLiteral("P3");
    EXPECT_EQ(contact.ID(), 3);
    EXPECT_EQ(contact.Key, u"P3");
}

TEST(Contact, UserDataHasThreePlaces) {
    Contact contact;
    contact.SetUserData(0, QStringLiteral("a"));
    contact.SetUserData(2, QStringLiteral(" c "));
    EXPECT_EQ(contact.GetUserData(0), u"a");
    EXPECT_EQ(contact.GetUserData(1), QString());
    EXPECT_EQ(contact.GetUserData(2), u" c ") << "no checks and no trimming on writing";
}

TEST(Contact, DisplayNameBySurnameHasTheComma) {
    EXPECT_EQ(Named(QStringLiteral("Brennan"), QStringLiteral("Aoife")).DisplayName(0), u"Brennan, Aoife");
}

TEST(Contact, DisplayNameBySurnameWithFirstNamesOnlyHasNoComma) {
    EXPECT_EQ(Named(QString(), QStringLiteral("Aoife")).DisplayName(0), u"Aoife");
}

TEST(Contact, DisplayNameBySurnameWithSurnameOnlyKeepsTheSeparator) {
    EXPECT_EQ(Named(QStringLiteral("Brennan"), QString()).DisplayName(0), u"Brennan, ");
}

TEST(Contact, DisplayNameByFirstNameHasABlankBetween) {
    EXPECT_EQ(Named(QStringLiteral("Brennan"), QStringLiteral("Aoife")).DisplayName(1), u"Aoife Brennan");
}

TEST(Contact, DisplayNameByFirstNameWithOneNameOnlyHasNoBlankAtItsEnds) {
    EXPECT_EQ(Named(QStringLiteral("Brennan"), QString()).DisplayName(1), u"Brennan");
    EXPECT_EQ(Named(QString(), QStringLiteral("Aoife")).DisplayName(1), u"Aoife");
}

TEST(Contact, DisplayNameOfEveryOtherModeIsBySurname) {
    const Contact contact = Named(QStringLiteral("Brennan"), QStringLiteral("Aoife"));
    EXPECT_EQ(contact.DisplayName(7), u"Brennan, Aoife");
    EXPECT_EQ(contact.DisplayName(-1), u"Brennan, Aoife");
    EXPECT_EQ(contact.DisplayName(2), u"Brennan, Aoife");
}

TEST(Contact, ToolTipIsTheNumberBetweenBlanks) {
    Contact contact;
    contact.PhoneNumber = QStringLiteral("+353861234567");
    EXPECT_EQ(contact.NumberToolTip(), u" +353861234567 ");
}

TEST(Contact, ToolTipOfAPrivateNumberDoesNotTellIt) {
    Contact contact;
    contact.PhoneNumber = QStringLiteral("+353861234567");
    contact.IsPrivate = true;
    EXPECT_EQ(contact.NumberToolTip(), u" Private Number ");
}

TEST(Contact, LoadReadsEveryField) {
    ContactRows source;
    Contact contact;
    EXPECT_TRUE(contact.Load(source.Open(ContactRows::AllColumns(), {ContactRows::Full(qint64{12})})));
    EXPECT_EQ(contact.ID(), 12);
    EXPECT_EQ(contact.Key, u"C12");
    EXPECT_EQ(contact.Surname, u"Brennan");
    EXPECT_EQ(contact.Firstnames, u"Aoife");
    EXPECT_EQ(contact.PhoneNumber, u"+353861234567");
    EXPECT_TRUE(contact.IsConfirmSend);
    EXPECT_FALSE(contact.IsPrivate);
    EXPECT_EQ(contact.Note, u"back door");
    EXPECT_EQ(contact.GetUserData(0), u"one");
    EXPECT_EQ(contact.GetUserData(1), u"two");
    EXPECT_EQ(contact.GetUserData(2), u"three");
}

TEST(Contact, LoadReadsThePrivateFlag) {
    ContactRows source;
    Contact contact;
    EXPECT_TRUE(contact.Load(source.OpenWith(QStringLiteral("cntPrivateNumber"), true)));
    EXPECT_TRUE(contact.IsPrivate);
}

TEST(Contact, LoadTrimsEveryTextButKeepsTabs) {
    ContactRows source;
    QVariantList row = ContactRows::Full(qint64{12});
    for (const int column : {1, 2, 3, 6, 7, 8, 9}) {
        row[column] = QStringLiteral("  \tx ");
    }
    Contact contact;
    EXPECT_TRUE(contact.Load(source.Open(ContactRows::AllColumns(), {row})));
    for (const QString& text : {contact.Surname, contact.Firstnames, contact.PhoneNumber, contact.Note,
                                contact.GetUserData(0), contact.GetUserData(1), contact.GetUserData(2)}) {
        EXPECT_EQ(text, u"\tx");
    }
}

TEST(Contact, LoadReadsANullTextAsEmpty) {
    ContactRows source;
    QVariantList row = ContactRows::Full(qint64{12});
    for (const int column : {1, 2, 3, 6, 7, 8, 9}) {
        row[column] = QVariant();
    }
    Contact contact;
    contact.Surname = QStringLiteral("before");
    EXPECT_TRUE(contact.Load(source.Open(ContactRows::AllColumns(), {row})));
    for (const QString& text : {contact.Surname, contact.Firstnames, contact.PhoneNumber, contact.Note,
                                contact.GetUserData(0), contact.GetUserData(1), contact.GetUserData(2)}) {
        EXPECT_EQ(text, QString());
    }
}

TEST(Contact, LoadWithoutOneUserFieldIsStillTrue) {
    ContactRows source;
    Contact contact;
    EXPECT_TRUE(contact.Load(source.OpenWithout(QStringLiteral("cntUserField2"))));
    EXPECT_EQ(contact.GetUserData(0), u"one");
    EXPECT_EQ(contact.GetUserData(1), QString());
    EXPECT_EQ(contact.GetUserData(2), u"three");
}

TEST(Contact, LoadFindsColumnsWithoutRegardToCase) {
    ContactRows source;
    QStringList columns = ContactRows::AllColumns();
    columns[2] = QStringLiteral("CNTFirstNames");
    Contact contact;
    EXPECT_TRUE(contact.Load(source.Open(columns, {ContactRows::Full(qint64{12})})));
    EXPECT_EQ(contact.Firstnames, u"Aoife");
}

TEST(Contact, LoadOfAnIDBeyondSixteenBitsIsFalseAndReadsTheRest) {
    ContactRows source;
    Contact contact;
    EXPECT_FALSE(contact.Load(source.OpenWith(QStringLiteral("cntID"), qint64{32768})));
    EXPECT_EQ(contact.ID(), 0);
    EXPECT_EQ(contact.Key, QString());
    EXPECT_EQ(contact.Surname, u"Brennan");
    EXPECT_EQ(contact.Firstnames, u"Aoife");
    EXPECT_EQ(contact.PhoneNumber, u"+353861234567");
    EXPECT_TRUE(contact.IsConfirmSend);
    EXPECT_EQ(contact.Note, u"back door");
    EXPECT_EQ(contact.GetUserData(0), u"one");
    EXPECT_EQ(contact.GetUserData(2), u"three");
}

TEST(Contact, LoadOfTheLargestIDIsTrue) {
    ContactRows source;
    Contact contact;
    EXPECT_TRUE(contact.Load(source.OpenWith(QStringLiteral("cntID"), qint64{32767})));
    EXPECT_EQ(contact.Key, u"C32767");
}

TEST(Contact, LoadAtTheEndOfFileIsFalse) {
    ContactRows source;
    Contact contact;
    EXPECT_FALSE(contact.Load(source.Open(ContactRows::AllColumns(), {})));
}

TEST(Contact, LoadOfAClosedRecordsetIsFalse) {
    ContactRows source;
    engine::Recordset& rows = source.Open(ContactRows::AllColumns(), {ContactRows::Full(qint64{12})});
    rows.Close();
    Contact contact;
    EXPECT_FALSE(contact.Load(rows));
}

namespace {

/// A contact that has something else in every field than the rows have.
Contact Before() {
    Contact contact;
    contact.SetID(99);
    contact.Surname = contact.Firstnames = contact.PhoneNumber = contact.Note = QStringLiteral("before");
    contact.IsPrivate = true;
    for (int i = 0; i < 3; ++i) {
        contact.SetUserData(i, QStringLiteral("before"));
    }
    return contact;
}

/// Every field by the name of its column.
QVariantMap FieldsOf(const Contact& contact) {
    return {{QStringLiteral("cntID"), QVariantList({contact.ID(), contact.Key})},
            {QStringLiteral("cntSurname"), contact.Surname},
            {QStringLiteral("cntFirstnames"), contact.Firstnames},
            {QStringLiteral("cntPhone"), contact.PhoneNumber},
            {QStringLiteral("cntConfirmSend"), contact.IsConfirmSend},
            {QStringLiteral("cntPrivateNumber"), contact.IsPrivate},
            {QStringLiteral("cntNote"), contact.Note},
            {QStringLiteral("cntUserField1"), contact.GetUserData(0)},
            {QStringLiteral("cntUserField2"), contact.GetUserData(1)},
            {QStringLiteral("cntUserField3"), contact.GetUserData(2)}};
}

/// Expects what a load of ContactRows::Full gives, save in one field, which is as it was.
void ExpectAllBut(const QString& column, const Contact& loaded) {
    ContactRows source;
    Contact whole = Before();
    ASSERT_TRUE(whole.Load(source.Open(ContactRows::AllColumns(), {ContactRows::Full(qint64{12})})));
    QVariantMap expected = FieldsOf(whole);
    ASSERT_NE(expected.value(column), FieldsOf(Before()).value(column)) << column.toStdString();
    expected[column] = FieldsOf(Before()).value(column);
    const QVariantMap fields = FieldsOf(loaded);
    for (const QString& name : ContactRows::AllColumns()) {
        EXPECT_EQ(fields.value(name), expected.value(name)) << name.toStdString();
    }
}

}  // namespace

class ContactColumn : public ::testing::TestWithParam<const char*> {};

TEST_P(ContactColumn, MissingMakesLoadFalseAndEveryOtherFieldIsRead) {
    const QString column = QString::fromLatin1(GetParam());
    ContactRows source;
    Contact contact = Before();
    EXPECT_FALSE(contact.Load(source.OpenWithout(column)));
    ExpectAllBut(column, contact);
}

INSTANTIATE_TEST_SUITE_P(Each, ContactColumn,
                         ::testing::Values("cntID", "cntSurname", "cntFirstnames", "cntPhone",
                                           "cntConfirmSend", "cntPrivateNumber", "cntNote"),
                         [](const auto& tested) { return std::string(tested.param); });

class ContactUserField : public ::testing::TestWithParam<const char*> {};

TEST_P(ContactUserField, MissingChangesNeitherTheResultNorAnotherField) {
    const QString column = QString::fromLatin1(GetParam());
    ContactRows source;
    Contact contact = Before();
    EXPECT_TRUE(contact.Load(source.OpenWithout(column)));
    ExpectAllBut(column, contact);
}

INSTANTIATE_TEST_SUITE_P(Each, ContactUserField,
                         ::testing::Values("cntUserField1", "cntUserField2", "cntUserField3"),
                         [](const auto& tested) { return std::string(tested.param); });

class ContactNull : public ::testing::TestWithParam<const char*> {};

TEST_P(ContactNull, InAColumnThatIsNoTextMakesLoadFalseAndEveryOtherFieldIsRead) {
    const QString column = QString::fromLatin1(GetParam());
    ContactRows source;
    Contact contact = Before();
    EXPECT_FALSE(contact.Load(source.OpenWith(column, QVariant())));
    ExpectAllBut(column, contact);
}

INSTANTIATE_TEST_SUITE_P(Each, ContactNull, ::testing::Values("cntID", "cntConfirmSend", "cntPrivateNumber"),
                         [](const auto& tested) { return std::string(tested.param); });
