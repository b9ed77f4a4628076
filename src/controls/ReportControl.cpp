#include "controls/ReportControl.h"

#include "controls/ReportPaint.h"
#include "controls/ReportPrinter.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSet>
#include <QStyledItemDelegate>

#include <algorithm>

namespace {

constexpr int RowPadding = 5;   // above and below the lines of a row
constexpr int LineGap = 2;      // between a row's cells and its preview
constexpr int CellPadding = 6;  // left and right of a text

/// The column, from 0, that Ctrl and a digit sort by; -1 for another key. On some keyboards digits take
/// Shift.
int ColumnOf(const QKeyEvent& event) {
    const bool isControl =
        (event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == Qt::ControlModifier;
    const bool isDigit = event.key() >= Qt::Key_1 && event.key() <= Qt::Key_9;
    return isControl && isDigit ? event.key() - Qt::Key_1 : -1;
}

}  // namespace

/// Asked only how large a cell would like to be: a row is drawn as a whole.
class ReportControl::RowDelegate final : public QStyledItemDelegate {
public:
    explicit RowDelegate(ReportControl& grid) : QStyledItemDelegate(&grid), m_grid(grid) {}
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex& cell) const override {
        const QString text = m_grid.RowRecord(cell.row())->TextOf(cell.column());
        return {m_grid.fontMetrics().horizontalAdvance(text) + 2 * CellPadding, m_grid.RowHeight()};
    }

private:
    const ReportControl& m_grid;
};

ReportControl::ReportControl(QWidget* parent) : QTreeView(parent), m_model(new ReportModel(this)) {
    setModel(m_model);
    setItemDelegate(new RowDelegate(*this));
    setUniformRowHeights(true);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setAllColumnsShowFocus(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(false);
    header()->setHighlightSections(false);
    connect(header(), &QHeaderView::sectionResized, this, [this](int column) {
        if (column != header()->count() - 1) {
            FitLastColumn();
        }
    });
}

void ReportControl::AddColumn(const QString& caption, int width, bool isResizable, Qt::Alignment alignment) {
    const int column = m_model->columnCount();
    m_model->AddColumn({caption, alignment | Qt::AlignVCenter});
    header()->setSectionResizeMode(column, isResizable ? QHeaderView::Interactive : QHeaderView::Fixed);
    header()->resizeSection(column, width);
}

void ReportControl::SizeLastColumn(int margin) {
    m_lastColumnMargin = margin;
    FitLastColumn();
}

void ReportControl::FitLastColumn() {
    const int last = header()->count() - 1;
    if (m_lastColumnMargin < 0 || last < 0) {
        return;
    }
    const int others = header()->length() - header()->sectionSize(last);
    header()->resizeSection(
        last, std::max(header()->minimumSectionSize(), viewport()->width() - others - m_lastColumnMargin));
}

void ReportControl::SetSortColumn(int column, Qt::SortOrder order) {
    header()->setSortIndicator(column, order);
    setSortingEnabled(true);
}

void ReportControl::SortBy(int column) {
    if (column < 0 || column >= header()->count()) {
        return;
    }
    const bool isTurned =
        header()->sortIndicatorSection() == column && header()->sortIndicatorOrder() == Qt::AscendingOrder;
    SetSortColumn(column, isTurned ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void ReportControl::SetPreviewMode(bool on) {
    m_isPreviewMode = on;
    scheduleDelayedItemsLayout();
}

int ReportControl::RowHeight() const {
    const int line = fontMetrics().height();
    const int lines = m_isPreviewMode ? line + LineGap + line : line;
    return std::max(lines, ImageSide) + 2 * RowPadding;
}

int ReportControl::PreviewIndent() const {
    const ReportRecord* first = RowRecord(0);
    int indent = 0;
    for (int column = 0; first != nullptr && column < header()->count(); ++column) {
        if (column >= first->Items.size() || !first->Items[column].HideText) {
            break;
        }
        indent += header()->sectionSize(column);
    }
    return indent;
}

void ReportControl::Populate() {
    const QList<const ReportRecord*> selected = SelectedRecords();
    const ReportRecord* current = RowRecord(currentIndex().row());
    const bool isScrolled = verticalScrollBar()->value() > 0;
    const ReportRecord* top = isScrolled ? HitTest(QPoint(0, 0)) : nullptr;
    m_model->Populate();
    Restore(selected, current, top);
}

void ReportControl::Restore(const QList<const ReportRecord*>& selected, const ReportRecord* current,
                            const ReportRecord* top) {
    const QSet<const ReportRecord*> wanted(selected.cbegin(), selected.cend());
    QItemSelection selection;
    const int lastColumn = m_model->columnCount() - 1;
    for (int row = 0; row < RowCount(); ++row) {
        const int first = row;
        while (row < RowCount() && wanted.contains(RowRecord(row))) {
            ++row;
        }
        if (row > first) {
            selection.select(m_model->index(first, 0), m_model->index(row - 1, lastColumn));
        }
    }
    const int currentRow = RowOf(current);
    if (currentRow >= 0) {
        // The cursor goes with its record, and the view stays: nobody has moved the cursor.
        setAutoScroll(false);
        selectionModel()->setCurrentIndex(m_model->index(currentRow, 0), QItemSelectionModel::NoUpdate);
        setAutoScroll(true);
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    const int topRow = RowOf(top);
    if (topRow >= 0) {
        scrollTo(m_model->index(topRow, 0), QAbstractItemView::PositionAtTop);
    }
    if (selection.isEmpty() && !selected.isEmpty()) {
        Q_EMIT RowSelectionChanged();  // what was selected is gone, which the selection does not tell
    }
}

int ReportControl::RowOf(const ReportRecord* record) const {
    for (int row = 0; record != nullptr && row < RowCount(); ++row) {
        if (RowRecord(row) == record) {
            return row;
        }
    }
    return -1;
}

QList<const ReportRecord*> ReportControl::SelectedRecords() const {
    QList<const ReportRecord*> records;
    QModelIndexList rows = selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    for (const QModelIndex& row : std::as_const(rows)) {
        records.append(RowRecord(row.row()));
    }
    return records;
}

const ReportRecord* ReportControl::HitTest(const QPoint& point) const {
    return RowRecord(indexAt(point).row());
}

void ReportControl::SelectFirstRow() {
    if (RowCount() > 0) {
        selectionModel()->setCurrentIndex(m_model->index(0, 0),
                                          QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
}

void ReportControl::Print(ModalDoor& door, const QString& title, bool isPreview) {
    ReportPrinter(*this, title).Print(door, isPreview);
}

void ReportControl::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
    const ReportRecord* record = RowRecord(index.row());
    if (record == nullptr) {
        return;
    }
    painter->save();
    QStyleOptionViewItem row = option;
    row.rect = QRect(0, option.rect.y(), viewport()->width(), option.rect.height());
    const bool isSelected = selectionModel()->isRowSelected(index.row(), {});
    row.state.setFlag(QStyle::State_Selected, isSelected);
    if (isSelected) {
        painter->fillRect(row.rect, row.palette.color(QPalette::Highlight));
    }
    DrawCells(*painter, row, *record);
    painter->setPen(palette().color(QPalette::Mid));
    painter->drawLine(row.rect.bottomLeft(), row.rect.bottomRight());
    if (hasFocus() && index.row() == currentIndex().row()) {
        QStyleOptionFocusRect ring;
        ring.QStyleOption::operator=(row);
        ring.state |= QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &ring, painter, this);
    }
    painter->restore();
}

void ReportControl::DrawCells(QPainter& painter, const QStyleOptionViewItem& option,
                              const ReportRecord& record) const {
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const QColor ground = option.palette.color(isSelected ? QPalette::Highlight : QPalette::Base);
    const QColor ink = option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text);
    const int line = fontMetrics().height();
    const int lines = m_isPreviewMode ? line + LineGap + line : line;
    const int top = option.rect.top() + (option.rect.height() - lines) / 2;
    for (int column = 0; column < header()->count() && column < record.Items.size(); ++column) {
        const ReportItem& item = record.Items[column];
        const QRect cell(header()->sectionViewportPosition(column), option.rect.top(),
                         header()->sectionSize(column), option.rect.height());
        if (!isSelected && item.BackColour.isValid()) {
            painter.fillRect(cell, ReportPaint::BackColourOn(ground, item.BackColour));
        }
        const QIcon image = Image(item.Icon);
        if (!image.isNull()) {
            QRect place(0, 0, ImageSide, ImageSide);
            place.moveCenter(cell.center());
            image.paint(&painter, place, Qt::AlignCenter, isSelected ? QIcon::Selected : QIcon::Normal);
        }
        const QColor colour = isSelected || !item.TextColour.isValid()
                                  ? ink
                                  : ReportPaint::TextColourOn(ground, item.TextColour);
        const QRect text(cell.left() + CellPadding, top, cell.width() - 2 * CellPadding, line);
        ReportPaint::DrawLine(painter, text, m_model->Column(column).Alignment, record.TextOf(column),
                              colour);
    }
    if (m_isPreviewMode) {
        const int left = PreviewIndent() + CellPadding;
        ReportPaint::DrawLine(
            painter, QRect(left, top + line + LineGap, viewport()->width() - left - CellPadding, line),
            Qt::AlignLeft, record.PreviewText, ink);
    }
}

void ReportControl::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QTreeView::selectionChanged(selected, deselected);
    viewport()->update();  // a row is filled to the edge, which lies behind the last column
    Q_EMIT RowSelectionChanged();
}

void ReportControl::mousePressEvent(QMouseEvent* event) {
    // The right button on a row that is selected opens the menu of the whole selection.
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() == Qt::RightButton && selectionModel()->isSelected(index)) {
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
        return;
    }
    QTreeView::mousePressEvent(event);
}

void ReportControl::mouseDoubleClickEvent(QMouseEvent* event) {
    QTreeView::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton) {
        Q_EMIT RowDoubleClicked(HitTest(event->position().toPoint()));
    }
}

void ReportControl::mouseReleaseEvent(QMouseEvent* event) {
    QTreeView::mouseReleaseEvent(event);
    if (event->button() == Qt::RightButton) {
        Q_EMIT ContextMenuRequested(event->position().toPoint());
    }
}

void ReportControl::contextMenuEvent(QContextMenuEvent* event) {
    // With the mouse it comes when the button is released.
    if (event->reason() == QContextMenuEvent::Keyboard && currentIndex().isValid()) {
        scrollTo(currentIndex());
        const QRect row = visualRect(currentIndex());
        Q_EMIT ContextMenuRequested(QPoint(PreviewIndent(), row.center().y()));
    }
    event->accept();
}

void ReportControl::resizeEvent(QResizeEvent* event) {
    QTreeView::resizeEvent(event);
    FitLastColumn();
}

void ReportControl::changeEvent(QEvent* event) {
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        scheduleDelayedItemsLayout();
    }
}

void ReportControl::keyPressEvent(QKeyEvent* event) {
    const int column = ColumnOf(*event);
    if (column < 0) {
        QTreeView::keyPressEvent(event);
    } else if (!event->isAutoRepeat()) {
        SortBy(column);
    }
}

void ReportControl::updateGeometries() {
    QTreeView::updateGeometries();
    horizontalScrollBar()->setRange(0, 0);  // the last column takes what there is
}
