#pragma once

#include "controls/Cmenu.h"

#include <QString>

/// The context menu of a group tab.
namespace TabMenu {

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

[[nodiscard]] Cmenu Build(const Subject& subject);
/// The entries that move a tab. They are not offered; see `IsMovingOffered`.
void AddMoves(Cmenu& menu, const Subject& subject);
/// Switched off, while the two operations stay.
inline constexpr bool IsMovingOffered = false;

}  // namespace TabMenu
