#pragma once

#include "controls/TabFlow.h"

#include <QList>
#include <QString>
#include <QWidget>

#include <functional>

class QToolButton;
struct TabPaint;

/// A strip of tabs without pages, in one of two looks: a horizontal strip whose tabs are never cut off (they
/// flow into up to three rows, and beyond that the rows scroll and a button lists all tabs), or a vertical
/// column of letters spread over the whole height. Positions count from 0; -1 stands for no tab.
///
/// The selection belongs to a tab, not to a position: it goes with a tab that moves. The first tab put into
/// an empty control becomes the selected one.
class TabControl : public QWidget {
    Q_OBJECT
public:
    enum class Look { Strip, Letters };

    explicit TabControl(Look look, QWidget* parent = nullptr);

    void RemoveAll();
    /// `position` is held within 0 and Count().
    void Insert(int position, const QString& caption);
    /// A removed tab that was selected hands the selection to the one that takes its place, or to the last.
    void RemoveAt(int position);
    [[nodiscard]] int Count() const { return static_cast<int>(m_tabs.size()); }
    /// Caption and tag of a tab; `position` is not checked.
    [[nodiscard]] QString Caption(int position) const { return m_tabs[position].Caption; }
    /// Texts that a caller keeps with a tab: the caption is shown, the tag is not.
    void SetCaption(int position, const QString& caption);
    [[nodiscard]] QString Tag(int position) const { return m_tabs[position].Tag; }
    void SetTag(int position, const QString& tag);
    [[nodiscard]] int Selected() const { return m_selected; }
    /// SelectionChanged comes only when another tab becomes the selected one.
    void Select(int position);
    /// The tab at `from` then stands at `to`; the selection goes with its tab.
    void Move(int from, int to);
    /// In the control's own coordinates.
    [[nodiscard]] int TabUnder(const QPoint& point) const;
    /// Where the tab is drawn; empty while its row is scrolled away.
    [[nodiscard]] QRect TabRect(int position) const;

    /// A quiet control shows its selection as a mere outline: for a choice that is kept, but has no effect
    /// just now.
    void SetQuiet(bool quiet);

    /// Text dragged out of the widget with the object name `source` (empty: out of another program) can be
    /// dropped on tabs for which `isTarget` says so; without this call nothing can.
    void SetDropIn(const QString& source, std::function<bool(int)> isTarget);
    /// False for -1.
    [[nodiscard]] bool TakesText(const QString& source, int position) const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    void SelectionChanged(int position);
    /// The user clicked the tab that is the selected one already.
    void SelectedAgain(int position);
    /// The left button was pressed (also as the second press of a double click), after its effect on the
    /// selection.
    void LeftPressed(const QPoint& point);
    /// Any other button was released; or the menu key was pressed, and the point is the middle of the
    /// selected tab.
    void OtherButton(const QPoint& point);
    /// Text was dropped; -1 beside the tabs.
    void TextDropped(const QString& text, int position);
    /// The button that lists all tabs was pressed; global position for the list.
    void AllTabsRequested(const QPoint& position);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    static constexpr int MaxRows = 3;  // shown at once; more are scrolled through

    struct Tab {
        QString Caption;
        QString Tag;
    };

    void MakeScrollButtons();
    void Relayout();
    void FlowIntoRows(int room);
    void PlaceScrollButtons();
    void ShowRow(int row);
    void ScrollRows(int steps);
    void SetSelected(int position);
    void SetHovered(int position);
    void SetDropTarget(int position);
    [[nodiscard]] bool IsTextFromSource(const QDropEvent& event) const;
    void Press(const QPoint& point);
    [[nodiscard]] int TabForKey(const QKeyEvent& event) const;
    [[nodiscard]] int RowHeight() const;
    [[nodiscard]] int RowCount() const;
    [[nodiscard]] QFont LetterFont() const;
    [[nodiscard]] TabPaint PaintOf(int position) const;

    Look m_look;
    QList<Tab> m_tabs;
    QList<TabFlow::Place> m_places;  // of the tabs, in the unscrolled strip
    int m_selected = -1;
    int m_hovered = -1;
    int m_dropTarget = -1;
    int m_firstRow = 0;
    bool m_isQuiet = false;
    QString m_dropSource;
    std::function<bool(int)> m_isDropTarget;
    QToolButton* m_rowsUp = nullptr;
    QToolButton* m_rowsDown = nullptr;
    QToolButton* m_allTabs = nullptr;
};
