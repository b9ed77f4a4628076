#pragma once

#include "controls/Cmenu.h"

#include <QList>
#include <QString>

/// The context menu of the contact list.
namespace ContactMenu {

/// Numbers of the entries, as Cmenu::TrackPopup gives them back.
enum Entry {
    NewGroup = -1,
    Dismissed = 0,  // also the number of a separator
    AddToRecipients = 1,
    AddToFavourites = 2,
    AddToGroup = 3,
    Print = 4,
    FirstGroup = 100  // group n is entry n + 100
};

/// A group that contacts can be added to: the number and the caption of its tab.
struct Group {
    qint16 Number = 0;
    QString Caption;
};

/// `tabNumber` is the number of the selected group tab, `groups` the tabs of groups in their order,
/// `favouriteWord` the spelling of the user's country.
[[nodiscard]] Cmenu Build(qint16 tabNumber, const QList<Group>& groups, const QString& favouriteWord);

}  // namespace ContactMenu
