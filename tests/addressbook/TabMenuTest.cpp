#include "addressbook/TabMenu.h"

#include "PhonebookOffice.h"

namespace {

TabMenu::Subject Tab(qint16 number, const QString& caption, int position = 2, int count = 9) {
    return {number, caption, position, count};
}

QStringList MovesOf(const TabMenu::Subject& subject) {
    Cmenu menu;
    TabMenu::AddMoves(menu, subject);
    return menu.Texts();
}

TEST(TabMenu, EveryoneHasTheOneEntryAddNewGroup) {
    EXPECT_EQ(TabMenu::Build(Tab(-1, QStringLiteral("*"))).Texts(),
              QStringList(QStringLiteral("Add New Group")));
}

TEST(TabMenu, AGroupCanBeAddedRenamedAndDeleted) {
    EXPECT_EQ(TabMenu::Build(Tab(7, QStringLiteral("Drivers"))).Texts(),
              QStringList({QStringLiteral("Add 'Drivers' Group To Recipients"),
                           QStringLiteral("Rename Group 'Drivers'"), QStringLiteral("Delete Group 'Drivers'"),
                           QStringLiteral("-"), QStringLiteral("Add New Group")}));
}

TEST(TabMenu, FavouritesCanBeAddedOnly) {
    EXPECT_EQ(TabMenu::Build(Tab(-2, QStringLiteral("Favourite"))).Texts(),
              QStringList({QStringLiteral("Add 'Favourite' Group To Recipients"), QStringLiteral("-"),
                           QStringLiteral("Add New Group")}));
}

TEST(TabMenu, ThePrivateTabGivesAddEditPrivateASeparatorAndAddNewGroup) {
    EXPECT_EQ(TabMenu::Build(Tab(-3, QStringLiteral("Private"))).Texts(),
              QStringList({QStringLiteral("Add 'Private' Group To Recipients"),
                           QStringLiteral("Edit Private Contacts"), QStringLiteral("-"),
                           QStringLiteral("Add New Group")}));
}

TEST(TabMenu, MovingIsNotOffered) {
    EXPECT_FALSE(
        TabMenu::Build(Tab(7, QStringLiteral("D"), 3, 9)).Texts().contains(QStringLiteral("Move Up")));
}

TEST(TabMenu, UpIsPossibleAbovePosition1AndDownBelowTheThirdFromTheEnd) {
    EXPECT_EQ(MovesOf(Tab(7, QStringLiteral("D"), 3, 9)),
              QStringList({QStringLiteral("-"), QStringLiteral("Move Up"), QStringLiteral("Move Down")}));
    EXPECT_EQ(MovesOf(Tab(7, QStringLiteral("D"), 1, 9)),
              QStringList({QStringLiteral("-"), QStringLiteral("Move Down")}));
    EXPECT_EQ(MovesOf(Tab(7, QStringLiteral("D"), 6, 9)),
              QStringList({QStringLiteral("-"), QStringLiteral("Move Up")}));
    EXPECT_TRUE(MovesOf(Tab(7, QStringLiteral("D"), 1, 4)).isEmpty());
}

}  // namespace
