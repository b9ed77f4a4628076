#include "ContactListOffice.h"

namespace {

TEST_F(ContactListView, AnEditedContactIsShownInBothLists) {
    Start();
    Contact edited = *AddressContacts.ContactByKey(KeyOf(0));
    edited.Surname = QStringLiteral("Aherne");
    edited.PhoneNumber = QStringLiteral("+35399");
    edited.IsConfirmSend = true;
    Area->UpdateContactItems(edited);
    const ListRow row = lvContacts().Rows().At(0);
    EXPECT_EQ(row.Text, QStringLiteral("Aherne, Aoife"));
    EXPECT_EQ(row.ToolTip, QStringLiteral(" +35399  (requires confirmation) "));
    EXPECT_EQ(row.SmallIcon, 1);
    ASSERT_EQ(Host.UpdatedRecipients.size(), 1);
    EXPECT_EQ(Host.UpdatedRecipients.first().Key, KeyOf(0));
    EXPECT_EQ(Host.UpdatedRecipients.first().ToolTip, row.ToolTip);
}

TEST_F(ContactListView, AfterAnEditTheLongerToolTipStaysUntilTheListIsRebuilt) {
    Start();
    Area->UpdateContactItems(*AddressContacts.ContactByKey(KeyOf(3)));
    EXPECT_EQ(lvContacts().Rows().At(3).ToolTip, QStringLiteral(" Private Number  (requires confirmation) "));
    Area->ShowGroup();
    EXPECT_EQ(lvContacts().Rows().At(3).ToolTip, QStringLiteral(" Private Number "));
}

TEST_F(ContactListView, AnEditedContactWithoutConfirmationLosesItsMark) {
    Start();
    Contact edited = *AddressContacts.ContactByKey(KeyOf(3));
    edited.IsConfirmSend = false;
    edited.IsPrivate = false;
    Area->UpdateContactItems(edited);
    EXPECT_EQ(lvContacts().Rows().At(3).SmallIcon, 0);
    EXPECT_EQ(lvContacts().Rows().At(3).ToolTip, QStringLiteral(" +35344 "));
}

TEST_F(ContactListView, AnEditedContactThatIsNotListedGivesTheRecipientsRowNothingToFollow) {
    Start();
    Contact edited = *AddressContacts.ContactByKey(KeyOf(0));
    ClickTab(Drivers);
    edited.Surname = QStringLiteral("Aherne");
    edited.IsConfirmSend = true;
    Area->UpdateContactItems(edited);
    EXPECT_EQ(Names(), QStringList({QStringLiteral("Byrne, Declan"), QStringLiteral("Doyle, Zoe")}));
    ASSERT_EQ(Host.UpdatedRecipients.size(), 1) << "the recipient's data are brought in line for all that";
    EXPECT_EQ(Host.UpdatedRecipients.first().Key, KeyOf(0));
    EXPECT_TRUE(Host.UpdatedRecipients.first().ToolTip.isEmpty());
}

}  // namespace
