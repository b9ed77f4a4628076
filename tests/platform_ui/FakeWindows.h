#pragma once

#include "platform_ui/Windows.h"

#include <QHash>
#include <QStringList>

#include <functional>

/// A desktop out of made-up windows; what is asked of them is recorded as sentences.
class FakeWindows final : public Windows {
public:
    struct Window {
        WindowHandle Handle = 0;
        QString Class;
        QString Title;
        QList<WindowHandle> Children;
    };
    QList<Window> All;
    /// Those of All that are top-level windows, the one on top first.
    QList<WindowHandle> TopLevel;
    bool Reachable = true;
    mutable QStringList Calls;
    /// Runs in the middle of SetAppWindowStyle.
    std::function<void()> OnSetAppWindowStyle;

    void Add(WindowHandle handle, const QString& className, const QString& title, WindowHandle parent = 0) {
        All.append({handle, className, title, {}});
        if (parent == 0) {
            TopLevel.append(handle);
        } else {
            Find(parent)->Children.append(handle);
        }
    }

    [[nodiscard]] bool IsReachable() const override { return Reachable; }
    [[nodiscard]] QList<WindowHandle> EnumWindows() const override { return TopLevel; }
    [[nodiscard]] QList<WindowHandle> Children(WindowHandle parent) const override {
        Calls.append(QStringLiteral("children of %1").arg(parent));
        const Window* window = Find(parent);
        return window == nullptr ? QList<WindowHandle>() : window->Children;
    }
    [[nodiscard]] QString ClassName(WindowHandle handle) const override {
        const Window* window = Find(handle);
        return window == nullptr ? QString() : window->Class;
    }
    [[nodiscard]] QString Title(WindowHandle handle) const override {
        const Window* window = Find(handle);
        return window == nullptr ? QString() : window->Title;
    }
    void SetClassName(WindowHandle handle, const QString& name) override {
        Calls.append(QStringLiteral("class of %1 is %2").arg(handle).arg(name));
    }
    bool SendShowRequest(WindowHandle handle) override {
        Calls.append(QStringLiteral("show request to %1").arg(handle));
        return Find(handle) != nullptr;
    }
    bool ForceForeground(WindowHandle handle) override {
        Calls.append(QStringLiteral("foreground %1").arg(handle));
        return Find(handle) != nullptr;
    }
    void SetAppWindowStyle(WindowHandle handle, bool on) override {
        Calls.append(QStringLiteral("task bar entry of %1 %2").arg(handle).arg(on ? 1 : 0));
        if (OnSetAppWindowStyle) {
            OnSetAppWindowStyle();
        }
    }

private:
    [[nodiscard]] const Window* Find(WindowHandle handle) const {
        for (const Window& window : All) {
            if (window.Handle == handle) {
                return &window;
            }
        }
        return nullptr;
    }
    [[nodiscard]] Window* Find(WindowHandle handle) {
        return const_cast<Window*>(static_cast<const FakeWindows*>(this)->Find(handle));
    }
};
