#pragma once

#include "platform/Notices.h"
#include "platform/PopupSurface.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <stdexcept>
#include <vector>

/// An item that keeps what it is told. A line is 16 high; a character is 10 wide.
class FakePopupItem final : public PopupItem {
public:
    static constexpr int LineHeight = 16;
    static constexpr int CharWidth = 10;

    int Left = 0;
    int TopEdge = 0;
    int WidthNow = 0;
    int HeightNow = 0;
    int MeasuredHeight = LineHeight;
    QString Caption;
    std::optional<unsigned> Background;
    int Format = 0;
    int Icon = 0;
    bool IsLink = true;
    bool IsBold = false;

    [[nodiscard]] int Top() const override { return TopEdge; }
    [[nodiscard]] int Width() const override { return WidthNow; }
    [[nodiscard]] int Height() const override { return HeightNow; }
    void SetWidth(int width) override { WidthNow = width; }
    void CalculateHeight() override { HeightNow = MeasuredHeight; }
    void CalculateWidth() override { WidthNow = CharWidth * static_cast<int>(Caption.size()); }
    void SetTextAlignment(int format) override { Format = format; }
    void SetHyperLink(bool on) override { IsLink = on; }
    void SetBold(bool on) override { IsBold = on; }
    void SetIcon(int number) override { Icon = number; }
};

/// A popup that keeps what it is told, in order.
class FakePopup final : public PopupSurface {
public:
    /// An item as it was asked for, before it was measured.
    struct Added {
        int Left = 0;
        int Top = 0;
        int Right = 0;
        int Bottom = 0;
        QString Caption;
        [[nodiscard]] bool operator==(const Added& other) const = default;
    };
    QStringList Calls;
    QList<Added> Asked;
    std::vector<std::unique_ptr<FakePopupItem>> Items;
    int WidthNow = 0;
    int HeightNow = 0;
    int ShowDelay = 0;
    bool IsShown = false;
    bool IsFailing = false;  // at the next Show
    std::function<void()> OnShow;
    /// The height that each test item, the "H" at 0, 0, is to have when it has been measured; 0: a line's.
    int HeightOfH = 0;

    void Close() override {
        Calls.append(QStringLiteral("Close"));
        IsShown = false;
    }
    void RemoveAllItems() override {
        Calls.append(QStringLiteral("RemoveAllItems"));
        Items.clear();
    }
    [[nodiscard]] int ItemCount() const override { return static_cast<int>(Items.size()); }
    [[nodiscard]] PopupItem& Item(int index) override { return *Items.at(static_cast<size_t>(index)); }
    PopupItem& AddItem(int left, int top, int right, int bottom, const QString& caption,
                       std::optional<unsigned> background) override {
        auto item = std::make_unique<FakePopupItem>();
        item->Left = left;
        item->TopEdge = top;
        item->WidthNow = right - left;
        item->HeightNow = bottom - top;
        item->Caption = caption;
        item->Background = background;
        item->MeasuredHeight =
            HeightOfH > 0 && caption == QStringLiteral("H") ? HeightOfH : FakePopupItem::LineHeight;
        Asked.append({left, top, right, bottom, caption});
        Items.push_back(std::move(item));
        return *Items.back();
    }
    void SetSize(int width, int height) override {
        WidthNow = width;
        HeightNow = height;
    }
    [[nodiscard]] int Width() const override { return WidthNow; }
    void SetShowDelay(int milliseconds) override { ShowDelay = milliseconds; }
    void Show() override {
        Calls.append(QStringLiteral("Show"));
        if (OnShow) {
            OnShow();
        }
        if (IsFailing) {
            throw std::runtime_error("no popup");
        }
        IsShown = true;
    }

    [[nodiscard]] const FakePopupItem& At(int index) const { return *Items.at(static_cast<size_t>(index)); }
    [[nodiscard]] QStringList Captions() const {
        QStringList captions;
        for (const auto& item : Items) {
            captions.append(item->Caption);
        }
        return captions;
    }
};

/// Keeps the balloons that it was asked for.
class FakeBalloon final : public TrayBalloon {
public:
    struct Balloon {
        int TimeValue = 0;
        QString Title;
        QString Text;
        BalloonIcon Icon = BalloonIcon::Information;
    };
    QList<Balloon> Shown;

    void ShowBalloonTip(int timeValue, const QString& title, const QString& text, BalloonIcon icon) override {
        Shown.append({timeValue, title, text, icon});
    }
};
