#include "platform_ui/Windows.h"

#include "platform_ui/X11Windows.h"

#include <QGuiApplication>

std::unique_ptr<Windows> MakeWindows() {
    if (QGuiApplication::platformName() == QStringLiteral("xcb")) {
        auto windows = std::make_unique<X11Windows>();
        if (windows->IsReachable()) {
            return windows;
        }
    }
    return std::make_unique<NullWindows>();
}

WindowHandle FindChildWindow(const Windows& windows, WindowHandle parent, const QString& className,
                             const QString& caption, bool& recursive) {
    constexpr qsizetype BufferSize = 255;
    const QString wantedClass = className.toUpper();
    const QString wantedCaption = caption.toUpper();
    for (const WindowHandle child : windows.Children(parent)) {
        const bool isClass =
            wantedClass.isEmpty() || windows.ClassName(child).left(BufferSize).toUpper() == wantedClass;
        const bool isCaption =
            wantedCaption.isEmpty() || windows.Title(child).left(BufferSize).toUpper() == wantedCaption;
        if (isClass && isCaption) {
            return child;
        }
        if (recursive) {
            const WindowHandle found = FindChildWindow(windows, child, className, caption, recursive);
            recursive = true;
            if (found != 0) {
                return found;
            }
        }
    }
    return 0;
}
