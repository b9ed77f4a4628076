#pragma once

#include "platform_ui/Windows.h"

#include <QString>

struct Machine;

/// How a second start finds the running copy and brings it to the front, and the two small files in the
/// temporary folder that belong to it: hwnd.sms, one line with the handle of the running main window in
/// decimal, rewritten at each start and never removed, so that it may hold a stale handle; and hwnd.app,
/// which is only ever deleted.
namespace mdlInstance {

/// The class name that the main window carries among the windows of the screen; its first 16 characters
/// count.
inline const QString FormClass = QStringLiteral("LarkspanMainForm");
inline constexpr qsizetype FormClassLength = 16;

/// A failed write goes unnoticed.
void WriteInstanceHandle(const Machine& machine, WindowHandle handle);
/// 0 if there is no such file or no number in it.
[[nodiscard]] WindowHandle ReadInstanceHandle(const Machine& machine);
/// Deletes hwnd.app; a missing one is passed over.
void DeleteInstanceMarker(const Machine& machine);

/// The window of the running copy: by class and title, else the first window of the class with the child that
/// old versions had; 0 if there is neither.
[[nodiscard]] WindowHandle FindRunningWindow(const Machine& machine);
/// Asks the running copy to show itself and brings its window forward: the one that FindRunningWindow finds,
/// else that of the handle in hwnd.sms. Where the window cannot be reached, or is known from the file alone,
/// the request goes through the local socket (too).
void ActivatePreviousInstance(const Machine& machine);

}  // namespace mdlInstance
