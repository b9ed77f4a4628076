#pragma once

#include <QString>

#include <optional>

/// An item of a PopupSurface: a line of text, an image, or an area of one colour. Positions and sizes are
/// those of the popup, in pixels of the screen's scale, from its upper left corner.
class PopupItem {
public:
    /// Bits of a text format, with the values that the format of a window system's text has.
    static constexpr int SingleLine = 32;
    static constexpr int EndEllipsis = 32768;

    virtual ~PopupItem() = default;
    [[nodiscard]] virtual int Top() const = 0;
    [[nodiscard]] virtual int Width() const = 0;
    [[nodiscard]] virtual int Height() const = 0;
    virtual void SetWidth(int width) = 0;
    /// Height and width become those of the caption; an empty one keeps a line's height.
    virtual void CalculateHeight() = 0;
    virtual void CalculateWidth() = 0;
    virtual void SetTextAlignment(int format) = 0;
    virtual void SetHyperLink(bool on) = 0;
    virtual void SetBold(bool on) = 0;
    /// Image `number` of imgTrackerStatus, from 1.
    virtual void SetIcon(int number) = 0;
};

/// The small window in the corner of the screen in which the user is told of something, as those see it who
/// have something to tell: items are put in, measured and shown for a while.
class PopupSurface {
public:
    virtual ~PopupSurface() = default;
    virtual void Close() = 0;
    virtual void RemoveAllItems() = 0;
    [[nodiscard]] virtual int ItemCount() const = 0;
    /// `index` from 0 to ItemCount() - 1. An item lives until it is removed.
    [[nodiscard]] virtual PopupItem& Item(int index) = 0;
    /// `background` is 0xRRGGBB.
    virtual PopupItem& AddItem(int left, int top, int right, int bottom, const QString& caption,
                               std::optional<unsigned> background = std::nullopt) = 0;
    virtual void SetSize(int width, int height) = 0;
    [[nodiscard]] virtual int Width() const = 0;
    /// How long it stands, in milliseconds, unless it is closed before.
    virtual void SetShowDelay(int milliseconds) = 0;
    virtual void Show() = 0;
};
