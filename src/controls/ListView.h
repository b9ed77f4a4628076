#pragma once

#include "controls/RowModel.h"

#include <QIcon>
#include <QItemSelection>
#include <QListView>
#include <QPointer>

/// A list of one column with uniform row heights on a RowModel: extended selection, image list, text dragged
/// out of it (the selected keys, each closed by CR LF), text dropped on it. Ignorant of what its rows stand
/// for.
///
/// A double click acts on the selection as it was before its first click: with three rows selected it finds
/// three.
class ListView : public QListView {
    Q_OBJECT
public:
    explicit ListView(QWidget* parent = nullptr);

    [[nodiscard]] RowModel& Rows() { return *m_rows; }
    [[nodiscard]] const RowModel& Rows() const { return *m_rows; }

    /// Image `number`, counted from 1, for rows whose SmallIcon is that number.
    void SetImage(int number, const QIcon& icon);

    /// In row order; linear in the rows selected.
    [[nodiscard]] QStringList SelectedKeys() const;
    [[nodiscard]] int SelectedCount() const;
    [[nodiscard]] bool HasSelection() const;
    /// Key of the row that has the cursor; empty if none.
    [[nodiscard]] QString CurrentKey() const;
    void SelectAllRows();
    void UnselectAllRows();
    /// Selects this row alone and gives it the cursor; an unknown key changes nothing.
    void SelectKey(const QString& key);
    /// What the key Home does: the first row takes cursor and selection. An empty list stays as it is.
    void GoHome();
    /// Scrolls as little as needed; `row` from 0, one outside the rows does nothing.
    void EnsureVisible(int row);
    /// First visible row, from 0, and how many whole rows fit.
    [[nodiscard]] int TopRow() const;
    [[nodiscard]] int RowsPerPage() const;

    /// Text that a drag out of this list carries; text/plain.
    [[nodiscard]] QString DragText() const;
    /// Whether rows can be dragged out as DragText, with the left button; off at creation.
    void SetDragOut(bool on);
    /// Whether text/plain of another widget can be dropped here; off at creation.
    void SetDropIn(bool on);

Q_SIGNALS:
    /// A row was clicked with the left button, pressed with the right one (told when that is released, in
    /// front of ContextMenuRequested), or took the cursor by a key or by GoHome.
    void ItemClicked(const QString& key);
    /// Empty key when no row is under the mouse.
    void ItemDoubleClicked(const QString& key);
    /// Enter or Return; the repeats of a key that is held down are not told.
    void EnterPressed();
    void DeletePressed();
    /// The right button was released, or the menu key pressed; global position.
    void ContextMenuRequested(const QPoint& position);
    /// Text was dropped here. `source` is the object name of the widget that the drag came from, empty if
    /// from outside.
    void TextDropped(const QString& text, const QString& source);

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void startDrag(Qt::DropActions actions) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    [[nodiscard]] QList<int> SelectedRows() const;
    [[nodiscard]] bool IsTextFromElsewhere(const QDropEvent& event) const;

    RowModel* m_rows;
    QList<QIcon> m_images;
    QItemSelection m_selectionBeforeClick;
    QPersistentModelIndex m_clickedIndex;
    Qt::MouseButton m_pressedButton = Qt::NoButton;
    bool m_isDropIn = false;
};

/// Switches off repainting of a widget for its lifetime; does nothing if it was off already, and is safe if
/// the widget dies first.
class RedrawOff {
public:
    explicit RedrawOff(QWidget& widget);
    ~RedrawOff();
    RedrawOff(const RedrawOff&) = delete;
    RedrawOff& operator=(const RedrawOff&) = delete;

private:
    QPointer<QWidget> m_widget;
};

/// Brings a row to the top of the visible part of a list.
namespace mdlListViewBugFix {
/// `index` is the row's position counted from 1.
void ScrollToItem(ListView& list, int index);
}  // namespace mdlListViewBugFix
