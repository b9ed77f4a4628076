#include "addressbook/TabMenu.h"

#include "addressbook/Contact.h"

Cmenu TabMenu::Build(const Subject& subject) {
    Cmenu menu;
    const bool isEveryone = subject.Caption == QStringLiteral("*");
    const bool isGroup = subject.Number >= 1;
    if (!isEveryone) {
        const QString text =
            QStringLiteral("Add '") + subject.Caption + QStringLiteral("' Group To Recipients");
        menu.AddItem(AddToRecipients, text, false, 0, !isGroup);
    }
    if (isGroup) {
        menu.AddItem(Rename, QStringLiteral("Rename Group '") + subject.Caption + u'\'');
        menu.AddItem(Delete, QStringLiteral("Delete Group '") + subject.Caption + u'\'');
    } else if (subject.Number == Keys::PrivateTab) {
        menu.AddItem(EditPrivate, QStringLiteral("Edit Private Contacts"), false, 0, true);
    }
    if (!isEveryone) {
        menu.AddItem(Separator, QStringLiteral("-"));
    }
    menu.AddItem(AddNew, QStringLiteral("Add New Group"));
    if (subject.Number > 0 && IsMovingOffered) {
        AddMoves(menu, subject);
    }
    return menu;
}

void TabMenu::AddMoves(Cmenu& menu, const Subject& subject) {
    const bool canGoUp = subject.Position > 1;
    const bool canGoDown = subject.Position < subject.TabCount - 3;
    if (canGoUp || canGoDown) {
        menu.AddItem(MoveSeparator, QStringLiteral("-"));
    }
    if (canGoUp) {
        menu.AddItem(MoveUp, QStringLiteral("Move Up"));
    }
    if (canGoDown) {
        menu.AddItem(MoveDown, QStringLiteral("Move Down"));
    }
}
