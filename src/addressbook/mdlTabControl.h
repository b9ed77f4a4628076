#pragma once

#include "controls/TabControl.h"

#include <QList>

class Settings;
struct PhonebookState;

/// The group tabs and their order, which survives between two runs. A tab's tag is a key ("G7"), and its
/// number is what follows the letter.
namespace mdlTabControl {

/// The number of a tab; 0, which no tab has, if its tag holds no 16-bit number.
[[nodiscard]] qint16 NumberOf(const TabControl& tabs, int position);
/// The first tab with this tag; -1 if there is none.
[[nodiscard]] int TabWithTag(const TabControl& tabs, const QString& tag);

/// Inserts one tab for each group from position `index` on, and moves `index` past them. Throws
/// engine::Failure if the groups cannot be read; the tabs made so far stay.
void LoadGroupTabs(const PhonebookState& state, TabControl& tabs, int& index);

/// The numbers of all tabs in their order.
[[nodiscard]] QList<qint16> GetTabIDs(const TabControl& tabs);
/// Writes the numbers of all tabs to the settings, separated by ",".
void SaveTabOrder(const TabControl& tabs, Settings& settings);
/// Empty if no order was saved.
[[nodiscard]] QList<qint16> LoadTabOrder(const Settings& settings);
/// Moves the tab of each saved number to that number's place in the saved list. Tabs that the list does not
/// know are never moved themselves: the others are pulled forward past them, so that they end up behind
/// those, save where the list has a hole (the number of a group that is gone), which one of them can fill.
void RestoreTabOrder(TabControl& tabs, const Settings& settings);

/// The tabs that are no groups: everyone, favourites, private.
[[nodiscard]] bool IsSystemTab(const TabControl& tabs, int position);
/// Both put the tab one place on as a new tab with caption and tag of the old one, and `position` follows it.
/// Neither moves a system tab; up does nothing at position 1, down at the number of tabs minus 3. Neither
/// moves a tab beyond the first place or the last.
void MoveTabUp(TabControl& tabs, int& position);
void MoveTabDown(TabControl& tabs, int& position);

}  // namespace mdlTabControl
