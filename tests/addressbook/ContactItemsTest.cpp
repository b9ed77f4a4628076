#include "addressbook/ContactItems.h"

#include "PhonebookOffice.h"

namespace {

Contact Someone() {
    Contact contact;
    contact.SetID(12);
    contact.Surname = QStringLiteral("Ahern");
    contact.Firstnames = QStringLiteral("Aoife");
    contact.PhoneNumber = QStringLiteral("+353861234567");
    return contact;
}

TEST(ContactItems, ARowHasKeyNameAndNumberBetweenBlanks) {
    const ListRow row = ContactItems::RowOf(Someone(), 0);
    EXPECT_EQ(row.Key, QStringLiteral("C12"));
    EXPECT_EQ(row.Text, QStringLiteral("Ahern, Aoife"));
    EXPECT_EQ(row.ToolTip, QStringLiteral(" +353861234567 "));
    EXPECT_EQ(row.SmallIcon, 0);
    EXPECT_EQ(ContactItems::RowOf(Someone(), 1).Text, QStringLiteral("Aoife Ahern"));
}

TEST(ContactItems, APrivateNumberIsNotInTheToolTip) {
    Contact contact = Someone();
    contact.IsPrivate = true;
    EXPECT_EQ(ContactItems::RowOf(contact, 0).ToolTip, QStringLiteral(" Private Number "));
}

TEST(ContactItems, ConfirmationIsMarkedByTheFirstImageAndNotInTheToolTip) {
    Contact contact = Someone();
    contact.IsConfirmSend = true;
    const ListRow row = ContactItems::RowOf(contact, 0);
    EXPECT_EQ(row.SmallIcon, 1);
    EXPECT_EQ(row.ToolTip, QStringLiteral(" +353861234567 "));
}

TEST(ContactItems, AnEditedRowSaysThatItWantsConfirmation) {
    Contact contact = Someone();
    EXPECT_EQ(ContactItems::EditedRowOf(contact, 0).ToolTip, QStringLiteral(" +353861234567 "));
    contact.IsConfirmSend = true;
    const ListRow row = ContactItems::EditedRowOf(contact, 0);
    EXPECT_EQ(row.ToolTip, QStringLiteral(" +353861234567  (requires confirmation) "));
    EXPECT_EQ(row.SmallIcon, 1);
}

TEST(ContactItems, ASecondRowForAKeyIsNotAdded) {
    ListView list;
    EXPECT_EQ(ContactItems::AddContactItem(list, Someone(), false, 0), 0);
    EXPECT_EQ(ContactItems::AddContactItem(list, Someone(), true, 0), -1);
    EXPECT_EQ(list.Rows().Count(), 1);
    EXPECT_FALSE(list.HasSelection());
}

TEST(ContactItems, SelectMakesTheNewRowVisibleAndSelectsIt) {
    ListView list;
    list.resize(150, 100);
    list.show();
    for (qint16 id = 1; id <= 50; ++id) {
        Contact contact = Someone();
        contact.SetID(id);
        ContactItems::AddContactItem(list, contact, false, 0);
    }
    Contact last = Someone();
    last.SetID(99);
    EXPECT_EQ(ContactItems::AddContactItem(list, last, true, 0), 50);
    EXPECT_EQ(list.SelectedKeys(), QStringList(QStringLiteral("C99")));
    EXPECT_TRUE(list.viewport()->rect().contains(list.visualRect(list.Rows().index(50))));
}

}  // namespace
