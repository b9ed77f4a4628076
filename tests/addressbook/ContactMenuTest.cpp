#include "addressbook/ContactMenu.h"

#include "PhonebookOffice.h"

namespace {

const QString Favourite = QStringLiteral("Favourite");

TEST(ContactMenu, OnAGroupTabItOffersFavouritesAndGroups) {
    const Cmenu menu =
        ContactMenu::Build(7, {{7, QStringLiteral("Drivers")}, {9, QStringLiteral("R&D")}}, Favourite);
    EXPECT_EQ(
        menu.Texts(),
        QStringList(
            {QStringLiteral("Add To Recipients"), QStringLiteral("Add To Favourite"),
             QStringLiteral("Add Selection To Group > Drivers"),
             QStringLiteral("Add Selection To Group > R&D"), QStringLiteral("Add Selection To Group > -"),
             QStringLiteral("Add Selection To Group > {New Group}"), QStringLiteral("Print Contact List")}));
}

TEST(ContactMenu, AGroupNamedLikeASeparatorCanBeChosen) {
    const Cmenu menu = ContactMenu::Build(7, {{8, QStringLiteral("-")}}, Favourite);
    RecordingDoor door;
    door.ExpectMenu(QStringLiteral("Add Selection To Group > -"));
    EXPECT_EQ(menu.TrackPopup(door, QPoint()), ContactMenu::FirstGroup + 8);
}

TEST(ContactMenu, OnFavouritesAndPrivateItOffersNeither) {
    for (const qint16 tab : {qint16(-2), qint16(-3)}) {
        const Cmenu menu = ContactMenu::Build(tab, {{7, QStringLiteral("Drivers")}}, Favourite);
        EXPECT_EQ(menu.Texts(),
                  QStringList({QStringLiteral("Add To Recipients"), QStringLiteral("Print Contact List")}));
    }
}

TEST(ContactMenu, TheAmericanSpellingIsUsedWhereItIsAsked) {
    EXPECT_EQ(ContactMenu::Build(-1, {}, QStringLiteral("Favorite")).Texts().at(1),
              QStringLiteral("Add To Favorite"));
}

}  // namespace
