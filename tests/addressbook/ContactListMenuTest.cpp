#include "ContactListOffice.h"

namespace {

TEST_F(ContactListView, TheMenuOffersTheGroupsInTheOrderOfTheirTabs) {
    Office.AddGroup(QStringLiteral("Crew"));
    Start();
    ChooseOnList(0, QString());
    EXPECT_EQ(Door.Menus.last(),
              QStringList({QStringLiteral("Add To Recipients"), QStringLiteral("(Add To Favourite)"),
                           QStringLiteral("Add Selection To Group > Crew"),
                           QStringLiteral("Add Selection To Group > Drivers"),
                           QStringLiteral("Add Selection To Group > -"),
                           QStringLiteral("Add Selection To Group > {New Group}"),
                           QStringLiteral("(Print Contact List)")}));
}

TEST_F(ContactListView, TheMenuAddsTheSelectionToTheRecipients) {
    Start();
    SelectRows({0, 2});
    ChooseOnList(2, QStringLiteral("Add To Recipients"));
    EXPECT_EQ(Host.Added, QList<QStringList>({{KeyOf(0), KeyOf(2)}}));
}

TEST_F(ContactListView, TheMenuAddsTheSelectionToAGroup) {
    Start();
    SelectRows({0, 2});
    ChooseOnList(2, QStringLiteral("Add Selection To Group > Drivers"));
    ClickTab(Drivers);
    EXPECT_EQ(Names().size(), 4);
}

TEST_F(ContactListView, TheMenuMakesANewGroupOfTheSelection) {
    Start();
    SelectRows({0, 2});
    ExpectName(QStringLiteral("Crew"));
    ChooseOnList(2, QStringLiteral("Add Selection To Group > {New Group}"));
    ClickTab(QStringLiteral("Crew"));
    EXPECT_EQ(Names(), QStringList({QStringLiteral("Ahern, Aoife"), QStringLiteral("Costa, Joao")}));
}

TEST_F(ContactListView, ADismissedMenuAddsTheSelectionToAGroupThatCannotBe) {
    Start();
    const auto before = Office.MemberRows();
    SelectRows({0, 2});
    ChooseOnList(2, QString());
    EXPECT_EQ(Office.MemberRows(), before) << "the store refuses the group -100";
    EXPECT_TRUE(Office.PhonebookDB().IsError()) << "and was asked";
    EXPECT_TRUE(Host.Added.isEmpty());
}

TEST_F(ContactListView, OnTheFavouriteAndPrivateTabsTheMenuOffersNoGroups) {
    Office.PhonebookValues.cfgAllowPrivateGroup = true;
    Start();
    ContactList one;
    one.Add(*AddressContacts.ContactByKey(KeyOf(0)));
    for (const QString& tab : {QStringLiteral("Favourite"), QStringLiteral("Private")}) {
        ClickTab(tab);
        Area->FillContactList(one);
        ChooseOnList(0, QString());
        EXPECT_EQ(Door.Menus.last(),
                  QStringList({QStringLiteral("Add To Recipients"), QStringLiteral("(Print Contact List)")}));
    }
}

TEST_F(ContactListView, TheMenuOfTheListOpensAtTheMouse) {
    Start();
    ChooseOnList(2, QString());
    const QPoint place = lvContacts().visualRect(lvContacts().Rows().index(2)).center();
    EXPECT_EQ(Door.MenuPosition, lvContacts().viewport()->mapToGlobal(place));
}

}  // namespace
