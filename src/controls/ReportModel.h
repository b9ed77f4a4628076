#pragma once

#include "controls/ReportRecord.h"

#include <QAbstractTableModel>
#include <QIcon>

#include <memory>
#include <vector>

/// A column of a ReportControl.
struct ReportColumn {
    QString Caption;
    Qt::Alignment Alignment = Qt::AlignLeft | Qt::AlignVCenter;
};

/// The records behind a ReportControl, and the rows that the view shows of them. Records come and go without
/// the view; rows follow them, in the order of the sort, when they are populated.
class ReportModel final : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit ReportModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    /// Sorts the rows; records stay where they are.
    void sort(int column, Qt::SortOrder order) override;

    void AddColumn(const ReportColumn& column);
    [[nodiscard]] const ReportColumn& Column(int column) const {
        return m_columns[static_cast<size_t>(column)];
    }
    void SetImages(const QList<QIcon>& images) { m_images = images; }
    /// A null icon for a number that no image has.
    [[nodiscard]] QIcon Image(int number) const { return m_images.value(number); }

    [[nodiscard]] int RecordCount() const { return static_cast<int>(m_records.size()); }
    /// Null outside the records.
    [[nodiscard]] ReportRecord* Record(int index);
    /// `index` from 0; one behind the end appends.
    void InsertRecord(int index, ReportRecord record);
    /// Does nothing outside the records. A row that shows the record stands until the next Populate.
    void RemoveRecord(int index);
    void DeleteAllRecords();

    /// Makes the rows anew out of the records, in the order of the sort (equal ones in the order of the
    /// records).
    void Populate();
    /// Tells the views that what the rows show has changed.
    void Redraw();
    /// The record that a row shows; it lives until it is removed and Populate has run. Null outside the rows.
    [[nodiscard]] const ReportRecord* RowRecord(int row) const;

private:
    void SortRows();

    std::vector<ReportColumn> m_columns;
    QList<QIcon> m_images;
    std::vector<std::unique_ptr<ReportRecord>> m_records;
    std::vector<std::unique_ptr<ReportRecord>> m_removed;  // still shown by a row
    std::vector<ReportRecord*> m_rows;
    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
};
