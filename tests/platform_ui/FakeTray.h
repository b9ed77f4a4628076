#pragma once

#include "platform_ui/Tray.h"

#include <QMenu>
#include <QStringList>

#include <utility>

/// A notification area that is there when a test says so.
class FakeTray final : public Tray {
public:
    bool HasArea = false;
    bool IsOpen = false;
    bool IsNeeded = false;
    TrayEvents Events;
    QIcon Icon;
    int IconsSet = 0;
    QString ToolTip;
    QMenu* HostMenu = nullptr;
    QRect Rect;
    QStringList Balloons;  // "title|text"

    void Open(TrayEvents events) override {
        Events = std::move(events);
        IsOpen = true;
    }
    void Close() override {
        IsOpen = false;
        Events = {};
    }
    [[nodiscard]] bool IsThere() const override { return IsOpen && HasArea; }
    void SetNeeded(bool on) override { IsNeeded = on; }
    void SetIcon(const QIcon& icon) override {
        Icon = icon;
        ++IconsSet;
    }
    void SetToolTip(const QString& text) override { ToolTip = text; }
    void SetHostMenu(QMenu* menu) override { HostMenu = menu; }
    [[nodiscard]] QRect Place() const override { return IsThere() ? Rect : QRect(); }
    void ShowBalloonTip(int, const QString& title, const QString& text, BalloonIcon) override {
        Balloons.append(title + u'|' + text);
    }

    /// The area goes away.
    void Lose() {
        HasArea = false;
        Events.OnLost();
    }
    /// What the host's own menu shows now.
    [[nodiscard]] QStringList HostEntries() const {
        QStringList texts;
        const auto entries = HostMenu->actions();
        for (const QAction* entry : entries) {
            if (entry->isVisible()) {
                texts.append(entry->text());
            }
        }
        return texts;
    }
};
