#pragma once

#include "controls/Cmenu.h"

#include <QString>

/// The context menu of a group tab.
namespace TabMenu {

/// Numbers of the entries, as Cmenu::TrackPopup gives them back; 0 is a dismissed menu.
enum Entry {
    EditPrivate = -2,
    AddToRecipients = 1,
    Rename = 2,
    Delete = 3,
    Separator = 4,
    AddNew = 5,
    MoveSeparator = 6,
    MoveUp = 7,
    MoveDown = 8
};

/// What the menu depends on.
struct Subject {
    qint16 Number = 0;
    QString Caption;
    int Position = 0;
    int TabCount = 0;
};

/// The entries that this tab offers. Only a group can be renamed, deleted and added to the recipients; for
/// other tabs the last is greyed, and the tab "*" does not have it. Editing private contacts is greyed.
[[nodiscard]] Cmenu Build(const Subject& subject);
/// The entries that move a tab. They are not offered; see `IsMovingOffered`.
void AddMoves(Cmenu& menu, const Subject& subject);
/// Switched off, while the two operations stay.
inline constexpr bool IsMovingOffered = false;

}  // namespace TabMenu
