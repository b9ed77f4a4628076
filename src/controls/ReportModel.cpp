#include "controls/ReportModel.h"

#include "controls/PlainToolTip.h"

#include <QCollator>
#include <QHash>

#include <algorithm>
#include <iterator>

namespace {

/// What a column's head tells about sorting by it.
QString SortTip(int column) {
    constexpr int LastKey = 9;
    const QString tip = QStringLiteral("Sort by this column");
    return column < LastKey ? tip + QStringLiteral(" (Ctrl+%1)").arg(column + 1) : tip;
}

/// Below 0, 0 or above: texts as a reader expects them, everything else by its value; nulls first.
int Compare(const QVariant& one, const QVariant& other, const QCollator& collator) {
    if (one.userType() == QMetaType::QString && other.userType() == QMetaType::QString) {
        return collator.compare(one.toString(), other.toString());
    }
    if (one.isNull() || other.isNull()) {
        return static_cast<int>(other.isNull()) - static_cast<int>(one.isNull());
    }
    const QPartialOrdering order = QVariant::compare(one, other);
    return order == QPartialOrdering::Less ? -1 : static_cast<int>(order == QPartialOrdering::Greater);
}

const QVariant& ValueOf(const ReportRecord& record, int column) {
    static const QVariant none;
    return column < record.Items.size() ? record.Items[column].Value : none;
}

}  // namespace

int ReportModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int ReportModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant ReportModel::data(const QModelIndex& index, int role) const {
    const ReportRecord* record = RowRecord(index.row());
    if (record == nullptr || index.column() >= record->Items.size()) {
        return {};
    }
    const ReportItem& item = record->Items[index.column()];
    switch (role) {
        case Qt::DisplayRole:
            return record->TextOf(index.column());
        case Qt::ToolTipRole:
            return PlainToolTip(item.ToolTip.isEmpty() ? record->PreviewText : item.ToolTip);
        case Qt::AccessibleTextRole:
            return item.HideText ? item.ToolTip : record->TextOf(index.column());
        case Qt::AccessibleDescriptionRole:
            return record->PreviewText;
        case Qt::TextAlignmentRole:
            return QVariant(Column(index.column()).Alignment);
        default:
            return {};
    }
}

QVariant ReportModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) {
        return {};
    }
    if (role == Qt::DisplayRole) {
        return Column(section).Caption;
    }
    if (role == Qt::ToolTipRole || role == Qt::WhatsThisRole || role == Qt::AccessibleDescriptionRole) {
        return SortTip(section);
    }
    return role == Qt::TextAlignmentRole ? QVariant(Column(section).Alignment) : QVariant();
}

void ReportModel::sort(int column, Qt::SortOrder order) {
    m_sortColumn = column;
    m_sortOrder = order;
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<const ReportRecord*> records;
    records.reserve(static_cast<size_t>(before.size()));
    for (const QModelIndex& index : before) {
        records.push_back(RowRecord(index.row()));
    }
    SortRows();
    QHash<const ReportRecord*, int> rowOf;
    rowOf.reserve(rowCount());
    for (int row = 0; row < rowCount(); ++row) {
        rowOf.insert(RowRecord(row), row);
    }
    QModelIndexList after;
    after.reserve(before.size());
    for (qsizetype i = 0; i < before.size(); ++i) {
        after.append(index(rowOf.value(records[static_cast<size_t>(i)], -1), before[i].column()));
    }
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void ReportModel::AddColumn(const ReportColumn& column) {
    const int place = columnCount();
    beginInsertColumns({}, place, place);
    m_columns.push_back(column);
    endInsertColumns();
}

ReportRecord* ReportModel::Record(int index) {
    return index >= 0 && index < RecordCount() ? m_records[static_cast<size_t>(index)].get() : nullptr;
}

void ReportModel::InsertRecord(int index, ReportRecord record) {
    const int place = std::clamp(index, 0, RecordCount());
    m_records.insert(m_records.begin() + place, std::make_unique<ReportRecord>(std::move(record)));
}

void ReportModel::RemoveRecord(int index) {
    if (Record(index) != nullptr) {
        m_removed.push_back(std::move(m_records[static_cast<size_t>(index)]));
        m_records.erase(m_records.begin() + index);
    }
}

void ReportModel::DeleteAllRecords() {
    std::move(m_records.begin(), m_records.end(), std::back_inserter(m_removed));
    m_records.clear();
}

void ReportModel::Populate() {
    beginResetModel();
    m_rows.clear();
    std::transform(m_records.cbegin(), m_records.cend(), std::back_inserter(m_rows),
                   [](const std::unique_ptr<ReportRecord>& record) { return record.get(); });
    m_removed.clear();
    SortRows();
    endResetModel();
}

void ReportModel::Redraw() {
    if (!m_rows.empty() && !m_columns.empty()) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    }
}

const ReportRecord* ReportModel::RowRecord(int row) const {
    return row >= 0 && row < rowCount() ? m_rows[static_cast<size_t>(row)] : nullptr;
}

void ReportModel::SortRows() {
    if (m_sortColumn < 0) {
        return;
    }
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    const bool isDescending = m_sortOrder == Qt::DescendingOrder;
    const auto isBefore = [&](const ReportRecord* one, const ReportRecord* other) {
        const int order = Compare(ValueOf(*one, m_sortColumn), ValueOf(*other, m_sortColumn), collator);
        return isDescending ? order > 0 : order < 0;
    };
    // Mostly the records come in the order of the sort already.
    if (!std::is_sorted(m_rows.cbegin(), m_rows.cend(), isBefore)) {
        std::stable_sort(m_rows.begin(), m_rows.end(), isBefore);
    }
}
