#include "addressbook/ContactMenu.h"

#include "addressbook/Contact.h"

Cmenu ContactMenu::Build(qint16 tabNumber, const QList<Group>& groups, const QString& favouriteWord) {
    Cmenu menu;
    menu.AddItem(AddToRecipients, QStringLiteral("Add To Recipients"));
    if (tabNumber != Keys::FavouritesTab && tabNumber != Keys::PrivateTab) {
        menu.AddItem(AddToFavourites, QStringLiteral("Add To ") + favouriteWord, false, 0, true);
        Cmenu inner(QStringLiteral("Add Selection To Group"));
        for (const Group& group : groups) {
            inner.AddName(group.Number + FirstGroup, group.Caption);
        }
        inner.AddItem(Dismissed, QStringLiteral("-"));
        inner.AddItem(NewGroup, QStringLiteral("{New Group}"));
        menu.AddItem(std::move(inner));
    }
    menu.AddItem(Print, QStringLiteral("Print Contact List"), false, 0, true);
    return menu;
}
