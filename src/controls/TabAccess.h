#pragma once

class TabControl;

/// Tells screen readers about the tabs of a TabControl, which are painted and no widgets of their own.
namespace TabAccess {

/// Safe to call any number of times.
void Install();
/// Tells that the tab at `position`, from 0, has become the selected one.
void NotifySelection(TabControl& control, int position);

}  // namespace TabAccess
