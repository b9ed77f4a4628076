#pragma once

#include "controls/ReportModel.h"

#include <QTreeView>

class ModalDoor;

/// A grid of records with columns, a line of preview text under each row, images, and a sort that a click on
/// a column's head changes, or a key: Ctrl with 1 for the first column, with 2 for the second, and so on. The
/// column that sorts already turns its order. Rows are of one height. What happens to the records is seen
/// from the next Populate on, what happens inside them from the next Redraw. Ignorant of what its records
/// stand for.
class ReportControl final : public QTreeView {
    Q_OBJECT
public:
    static constexpr int ImageSide = 24;  // pixels of the screen's scale

    explicit ReportControl(QWidget* parent = nullptr);

    /// Width in pixels. A column that is not resizable keeps its width.
    void AddColumn(const QString& caption, int width, bool isResizable,
                   Qt::Alignment alignment = Qt::AlignLeft);
    /// The last column takes what the others leave of the width, less `margin` pixels, now and whenever the
    /// grid changes its size.
    void SizeLastColumn(int margin);
    void SetSortColumn(int column, Qt::SortOrder order);
    /// What a click on the column's head does; nothing outside the columns.
    void SortBy(int column);
    /// Image 0 is the first.
    void SetImages(const QList<QIcon>& images) { m_model->SetImages(images); }
    [[nodiscard]] QIcon Image(int number) const { return m_model->Image(number); }
    void SetPreviewMode(bool on);
    [[nodiscard]] bool IsPreviewMode() const { return m_isPreviewMode; }
    [[nodiscard]] QString ColumnCaption(int column) const { return m_model->Column(column).Caption; }
    [[nodiscard]] Qt::Alignment ColumnAlignment(int column) const {
        return m_model->Column(column).Alignment;
    }

    [[nodiscard]] int RecordCount() const { return m_model->RecordCount(); }
    /// Null outside the records; `index` from 0 in the order of the records, whatever the sort.
    [[nodiscard]] ReportRecord* Record(int index) { return m_model->Record(index); }
    void AddRecord(ReportRecord record) { m_model->InsertRecord(RecordCount(), std::move(record)); }
    void InsertRecord(int index, ReportRecord record) { m_model->InsertRecord(index, std::move(record)); }
    void RemoveRecord(int index) { m_model->RemoveRecord(index); }
    void DeleteAllRecords() { m_model->DeleteAllRecords(); }

    /// Rebuilds the rows from the records. Rows that stay keep selection, cursor and place on the screen.
    void Populate();
    /// Repaints without rebuilding.
    void Redraw() { m_model->Redraw(); }

    [[nodiscard]] int RowCount() const { return m_model->rowCount(); }
    /// The record that a row shows, from the top; null outside the rows.
    [[nodiscard]] const ReportRecord* RowRecord(int row) const { return m_model->RowRecord(row); }
    /// In row order.
    [[nodiscard]] QList<const ReportRecord*> SelectedRecords() const;
    /// The record at a point of the viewport; null where no row is.
    [[nodiscard]] const ReportRecord* HitTest(const QPoint& point) const;
    /// The first row takes cursor and selection; an empty grid stays as it is.
    void SelectFirstRow();

    /// Prints all rows under `title`. With a preview the user sees the pages first and chooses printer and
    /// paper there; without one they go to the default printer.
    void Print(ModalDoor& door, const QString& title, bool isPreview);

    /// Height of a row in pixels.
    [[nodiscard]] int RowHeight() const;
    /// The cells that show no text stand beside both lines of a row; the preview begins behind them.
    [[nodiscard]] int PreviewIndent() const;

Q_SIGNALS:
    /// `record` is null when no row was under the mouse. It lives until the next Populate.
    void RowDoubleClicked(const ReportRecord* record);
    /// The right button was released, or the menu key pressed; a point of the viewport, for HitTest.
    void ContextMenuRequested(const QPoint& point);
    void RowSelectionChanged();

protected:
    void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                 const QModelIndex& index) const override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void updateGeometries() override;

private:
    class RowDelegate;

    void FitLastColumn();
    void DrawCells(QPainter& painter, const QStyleOptionViewItem& option, const ReportRecord& record) const;
    void Restore(const QList<const ReportRecord*>& selected, const ReportRecord* current,
                 const ReportRecord* top);
    [[nodiscard]] int RowOf(const ReportRecord* record) const;

    ReportModel* m_model;
    int m_lastColumnMargin = -1;
    bool m_isPreviewMode = false;
};
