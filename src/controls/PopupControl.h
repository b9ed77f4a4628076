#pragma once

#include "platform/PopupSurface.h"

#include <QIcon>
#include <QList>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

class QTimer;

/// A small window in a corner of the screen, above all other windows but open menus, that never takes the
/// focus. It goes by itself after a while; a click on it is told, also while a dialog is open that keeps the
/// user from all other windows, and whoever is told closes it.
class PopupControl final : public QWidget, public PopupSurface {
    Q_OBJECT
public:
    explicit PopupControl(QWidget* parent = nullptr);
    ~PopupControl() override;

    /// Image 1 is the first.
    void SetImages(const QList<QIcon>& images) { m_images = images; }
    /// Where on the screen the tray's icon is; an empty rectangle where that is not known.
    void SetTrayPlace(std::function<QRect()> trayPlace) { m_trayPlace = std::move(trayPlace); }

    void Close() override;
    void RemoveAllItems() override;
    [[nodiscard]] int ItemCount() const override { return static_cast<int>(m_items.size()); }
    [[nodiscard]] PopupItem& Item(int index) override;
    PopupItem& AddItem(int left, int top, int right, int bottom, const QString& caption,
                       std::optional<unsigned> background = std::nullopt) override;
    void SetSize(int width, int height) override;
    [[nodiscard]] int Width() const override { return m_size.width(); }
    void SetShowDelay(int milliseconds) override;
    void Show() override;

    /// The captions in order, for a screen reader and for tests; items without one are left out.
    [[nodiscard]] QStringList Captions() const;

Q_SIGNALS:
    void ItemClicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class Line;

    void MoveToCorner();
    void StayOnTop();

    QList<QIcon> m_images;
    std::function<QRect()> m_trayPlace;
    std::vector<std::unique_ptr<Line>> m_items;
    QSize m_size;
    QTimer* m_showTimer;
    QTimer* m_raiseTimer;
};
