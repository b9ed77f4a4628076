#include "addressbook/ContactList.h"

#include "addressbook/ContactRows.h"
#include "support/TempOffice.h"

#include <gtest/gtest.h>

#include <iterator>
#include <stdexcept>
#include <utility>

namespace {

Contact Keyed(const QString& key, const QString& surname = QString()) {
    Contact contact;
    contact.Key = key;
    contact.Surname = surname;
    return contact;
}

QStringList KeysOf(const ContactList& contacts) {
    QStringList keys;
    for (const Contact& contact : contacts.list()) {
        keys.append(contact.Key);
    }
    return keys;
}

}  // namespace

TEST(ContactList, StartsEmpty) {
    const ContactList contacts;
    EXPECT_EQ(contacts.Count(), 0);
    EXPECT_TRUE(contacts.list().empty());
}

TEST(ContactList, KeepsTheOrderOfAdding) {
    ContactList contacts;
    for (const char16_t* key : {u"C9", u"P1", u"C2"}) {
        contacts.Add(Keyed(QString::fromUtf16(key)));
    }
    EXPECT_EQ(contacts.Count(), 3);
    EXPECT_EQ(KeysOf(contacts),
              (QStringList{QStringLiteral("C9"), QStringLiteral("P1"), QStringLiteral("C2")}));
}

TEST(ContactList, AddingTwoUnderOneKeyKeepsTheFirst) {
    ContactList contacts;
    contacts.Add(Keyed(QStringLiteral("C1"), QStringLiteral("first")));
    const Contact& standing = contacts.Add(Keyed(QStringLiteral("C1"), QStringLiteral("second")));
    EXPECT_EQ(contacts.Count(), 1);
    EXPECT_EQ(contacts.ContactByKey(QStringLiteral("C1"))->Surname, u"first");
    EXPECT_EQ(standing.Surname, u"first");
}

TEST(ContactList, KeysAreComparedExactly) {
    ContactList contacts;
    contacts.Add(Keyed(QStringLiteral("C1")));
    EXPECT_EQ(contacts.ContactByKey(QStringLiteral("c1")), nullptr);
}

TEST(ContactList, AnUnknownKeyGivesNothing) {
    const ContactList contacts;
    EXPECT_EQ(contacts.ContactByKey(QStringLiteral("C1")), nullptr);
}

TEST(ContactList, AnUnknownKeyGivesNothingOnAFilledListEither) {
    ContactList contacts;
    contacts.Add(Keyed(QStringLiteral("C1")));
    contacts.Add(Keyed(QStringLiteral("C12")));
    for (const char* key : {"C2", "P1", "C", "C123", ""}) {
        EXPECT_EQ(contacts.ContactByKey(QString::fromLatin1(key)), nullptr) << key;
        EXPECT_EQ(std::as_const(contacts).ContactByKey(QString::fromLatin1(key)), nullptr) << key;
    }
    EXPECT_EQ(contacts.Count(), 2);
}

TEST(ContactList, RemovingAnUnknownKeyFails) {
    ContactList contacts;
    contacts.Add(Keyed(QStringLiteral("C1")));
    EXPECT_THROW(contacts.RemoveByKey(QStringLiteral("C2")), std::out_of_range);
    EXPECT_THROW(contacts.Remove(Keyed(QStringLiteral("C3"))), std::out_of_range);
    EXPECT_EQ(contacts.Count(), 1);
}

TEST(ContactList, RemovingByKeyAndByContactTakesOneOut) {
    ContactList contacts;
    for (const char16_t* key : {u"C1", u"C2", u"C3"}) {
        contacts.Add(Keyed(QString::fromUtf16(key)));
    }
    contacts.RemoveByKey(QStringLiteral("C2"));
    EXPECT_EQ(KeysOf(contacts), (QStringList{QStringLiteral("C1"), QStringLiteral("C3")}));
    contacts.Remove(*contacts.ContactByKey(QStringLiteral("C1")));
    EXPECT_EQ(KeysOf(contacts), QStringList{QStringLiteral("C3")});
    EXPECT_EQ(contacts.ContactByKey(QStringLiteral("C1")), nullptr);
}

TEST(ContactList, AKeyThatWasRemovedCanBeAddedAgainAtTheEnd) {
    ContactList contacts;
    contacts.Add(Keyed(QStringLiteral("C1")));
    contacts.Add(Keyed(QStringLiteral("C2")));
    contacts.RemoveByKey(QStringLiteral("C1"));
    contacts.Add(Keyed(QStringLiteral("C1")));
    EXPECT_EQ(KeysOf(contacts), (QStringList{QStringLiteral("C2"), QStringLiteral("C1")}));
}

TEST(ContactList, PointersStayValidWhileOthersComeAndGo) {
    ContactList contacts;
    Contact* const first = &contacts.Add(Keyed(QStringLiteral("C0"), QStringLiteral("stays")));
    for (int i = 1; i <= 1000; ++i) {
        contacts.Add(Keyed(Keys::ContactKey(i)));
    }
    for (int i = 1; i <= 1000; i += 2) {
        contacts.RemoveByKey(Keys::ContactKey(i));
    }
    EXPECT_EQ(contacts.ContactByKey(QStringLiteral("C0")), first);
    EXPECT_EQ(first->Surname, u"stays");
    EXPECT_EQ(contacts.Count(), 501);
}

TEST(ContactList, ClearLeavesNothing) {
    ContactList contacts;
    contacts.Add(Keyed(QStringLiteral("C1")));
    contacts.Clear();
    EXPECT_EQ(contacts.Count(), 0);
    EXPECT_EQ(contacts.ContactByKey(QStringLiteral("C1")), nullptr);
    contacts.Add(Keyed(QStringLiteral("C1"), QStringLiteral("new")));
    EXPECT_EQ(contacts.ContactByKey(QStringLiteral("C1"))->Surname, u"new");
}

TEST(ContactList, ShowLeavesTheListAsItWas) {
    ContactList contacts;
    contacts.Add(Keyed(QStringLiteral("C1"), QStringLiteral("Brennan")));
    contacts.Show();
    EXPECT_EQ(KeysOf(contacts), QStringList{QStringLiteral("C1")});
}

TEST(ContactList, LoadWithoutARecordsetIsFalse) {
    ContactList contacts;
    contacts.Add(Keyed(QStringLiteral("C1")));
    EXPECT_FALSE(contacts.Load(nullptr));
    EXPECT_EQ(contacts.Count(), 1);
}

TEST(ContactList, LoadTakesEveryRowAndLeavesTheRecordsetOpenAtItsEnd) {
    ContactRows source;
    engine::Recordset& rows =
        source.Open(ContactRows::AllColumns(), {ContactRows::Full(qint64{5}), ContactRows::Full(qint64{2})});
    ContactList contacts;
    EXPECT_TRUE(contacts.Load(&rows));
    EXPECT_EQ(KeysOf(contacts), (QStringList{QStringLiteral("C5"), QStringLiteral("C2")}));
    EXPECT_TRUE(rows.EndOfFile());
    EXPECT_EQ(source.Engine.OpenRecordsets, 1);
}

TEST(ContactList, LoadOfNoRowsIsTrue) {
    ContactRows source;
    ContactList contacts;
    EXPECT_TRUE(contacts.Load(&source.Open(ContactRows::AllColumns(), {})));
    EXPECT_EQ(contacts.Count(), 0);
}

TEST(ContactList, LoadAddsBehindWhatIsThereAndKeepsTheFirstOfAKey) {
    ContactRows source;
    ContactList contacts;
    contacts.Add(Keyed(QStringLiteral("C5"), QStringLiteral("earlier")));
    EXPECT_TRUE(contacts.Load(&source.Open(ContactRows::AllColumns(),
                                           {ContactRows::Full(qint64{2}), ContactRows::Full(qint64{5})})));
    EXPECT_EQ(KeysOf(contacts), (QStringList{QStringLiteral("C5"), QStringLiteral("C2")}));
    EXPECT_EQ(contacts.ContactByKey(QStringLiteral("C5"))->Surname, u"earlier");
}

TEST(ContactList, LoadDoesNotLookAtTheResultOfASingleRow) {
    ContactRows source;
    QVariantList bad = ContactRows::Full(qint64{3});
    bad[4] = QVariant();
    ContactList contacts;
    EXPECT_TRUE(contacts.Load(&source.Open(ContactRows::AllColumns(), {bad, ContactRows::Full(qint64{4})})));
    EXPECT_EQ(KeysOf(contacts), (QStringList{QStringLiteral("C3"), QStringLiteral("C4")}));
}

TEST(ContactList, RowsWithoutAUsableIDShareTheEmptyKeyAndTheFirstStays) {
    ContactRows source;
    ContactList contacts;
    EXPECT_TRUE(contacts.Load(&source.Open(
        ContactRows::AllColumns(),
        {ContactRows::Full(qint64{40000}), ContactRows::Full(qint64{40001}), ContactRows::Full(qint64{7})})));
    EXPECT_EQ(KeysOf(contacts), (QStringList{QString(), QStringLiteral("C7")}));
}

TEST(ContactList, LoadOfAClosedRecordsetIsFalseAndDoesNotThrow) {
    ContactRows source;
    engine::Recordset& rows = source.Open(ContactRows::AllColumns(), {ContactRows::Full(qint64{1})});
    rows.Close();
    ContactList contacts;
    EXPECT_FALSE(contacts.Load(&rows));
    EXPECT_EQ(contacts.Count(), 0);
}

TEST(ContactList, LoadReadsTheRowsOfARealPhonebook) {
    TempOffice office;
    ContactFields fields;
    fields.Surname = QStringLiteral("O'Neill");
    fields.Firstnames = QStringLiteral("Síle");
    fields.Phone = QStringLiteral("+353871112233");
    fields.ConfirmSend = true;
    fields.IsPrivate = true;
    fields.Note = QStringLiteral("night shift");
    fields.UserFields = {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};
    const qint32 id = office.AddContact(fields);
    office.AddContact(QStringLiteral("Zuse"), QString(), QStringLiteral("+4930123456"));

    ContactList contacts;
    const auto rows = mdlPhonebook::GetContacts(office.PhonebookValues, QStringLiteral("*"), 0);
    ASSERT_TRUE(contacts.Load(rows.get()));
    ASSERT_EQ(contacts.Count(), 2);
    const Contact& contact = contacts.list().front();
    EXPECT_EQ(contact.ID(), id);
    EXPECT_EQ(contact.DisplayName(0), u"O'Neill, Síle");
    EXPECT_EQ(contact.PhoneNumber, u"+353871112233");
    EXPECT_TRUE(contact.IsConfirmSend);
    EXPECT_TRUE(contact.IsPrivate);
    EXPECT_EQ(contact.Note, u"night shift");
    EXPECT_EQ(contact.GetUserData(1), u"b");
    const Contact& other = *std::next(contacts.list().begin());
    EXPECT_FALSE(other.IsConfirmSend);
    EXPECT_FALSE(other.IsPrivate);
    EXPECT_EQ(other.DisplayName(0), u"Zuse, ");
}
