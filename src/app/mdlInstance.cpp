#include "app/mdlInstance.h"

#include "app/Machine.h"
#include "core/Product.h"
#include "core/TextRules.h"
#include "platform/Folders.h"
#include "platform/LocalFiles.h"
#include "platform_ui/Instance.h"

namespace mdlInstance {

namespace {

QString HandlePath(const Machine& machine) {
    return Text::WithBackslash(machine.Places.TempFolder()) + QStringLiteral("hwnd.sms");
}

QString MarkerPath(const Machine& machine) {
    return Text::WithBackslash(machine.Places.TempFolder()) + QStringLiteral("hwnd.app");
}

bool IsFormClass(const Windows& windows, WindowHandle window) {
    return windows.ClassName(window).left(FormClassLength) == FormClass;
}

}  // namespace

void WriteInstanceHandle(const Machine& machine, WindowHandle handle) {
    static_cast<void>(machine.Files.Replace(HandlePath(machine), QByteArray::number(handle) + "\r\n"));
}

WindowHandle ReadInstanceHandle(const Machine& machine) {
    const auto bytes = machine.Files.Read(HandlePath(machine));
    if (!bytes) {
        return 0;
    }
    const qsizetype lineEnd = bytes->indexOf('\n');
    return bytes->left(lineEnd < 0 ? bytes->size() : lineEnd).trimmed().toUInt();
}

void DeleteInstanceMarker(const Machine& machine) {
    if (machine.Files.Exists(MarkerPath(machine))) {
        static_cast<void>(machine.Files.Remove(MarkerPath(machine)));
    }
}

WindowHandle FindRunningWindow(const Machine& machine) {
    const Windows& windows = machine.Desktop;
    const QList<WindowHandle> all = windows.EnumWindows();
    for (const WindowHandle window : all) {
        if (IsFormClass(windows, window) && windows.Title(window) == Product::AppTitle) {
            return window;
        }
    }
    bool recursive = false;
    for (const WindowHandle window : all) {
        if (window != 0 && IsFormClass(windows, window) &&
            FindChildWindow(windows, window, QStringLiteral("Button"), QStringLiteral("End Message"),
                            recursive) != 0) {
            return window;
        }
    }
    return 0;
}

void ActivatePreviousInstance(const Machine& machine) {
    const bool isReachable = machine.Desktop.IsReachable();
    WindowHandle window = isReachable ? FindRunningWindow(machine) : 0;
    const bool isFound = window != 0;
    if (!isFound && isReachable) {
        // The number may have become that of another program's window, or of one that this program is still
        // making: only the main window of a running copy has the class.
        const WindowHandle noted = ReadInstanceHandle(machine);
        window = IsFormClass(machine.Desktop, noted) ? noted : 0;
    }
    const bool isTold = window != 0 && machine.Desktop.SendShowRequest(window);
    if (isTold) {
        machine.Desktop.ForceForeground(window);
    }
    // The file may be that of another session of the user.
    if (!isTold || !isFound) {
        machine.OneCopy.RequestShow();
    }
}

}  // namespace mdlInstance
