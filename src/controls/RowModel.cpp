#include "controls/RowModel.h"

#include <QSet>

#include <algorithm>

namespace {

struct Run {
    int First;
    int Last;
};

/// Above this many runs a removal is told to the views as one reset: one notice a run would make it
/// quadratic.
constexpr int MaxRunNotices = 8;

QList<Run> RunsOf(const QList<int>& sortedRows) {
    QList<Run> runs;
    for (const int row : sortedRows) {
        if (!runs.isEmpty() && runs.last().Last == row - 1) {
            runs.last().Last = row;
        } else {
            runs.append(Run{row, row});
        }
    }
    return runs;
}

}  // namespace

RowModel::RowModel(QObject* parent) : QAbstractListModel(parent) {}

int RowModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : Count();
}

QVariant RowModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= Count()) {
        return {};
    }
    const ListRow& row = m_rows[index.row()];
    switch (role) {
        case Qt::DisplayRole:
            return row.Text;
        case Qt::ToolTipRole:
            return row.ToolTip;
        case Qt::AccessibleDescriptionRole:
            return row.ToolTip.trimmed();
        case Qt::CheckStateRole:
            return m_isCheckable ? QVariant(row.IsChecked ? Qt::Checked : Qt::Unchecked) : QVariant();
        case KeyRole:
            return row.Key;
        case SmallIconRole:
            return row.SmallIcon;
        default:
            return {};
    }
}

Qt::ItemFlags RowModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) {
        return Qt::ItemIsDropEnabled;
    }
    const Qt::ItemFlags plain =
        Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
    return m_isCheckable ? plain | Qt::ItemIsUserCheckable : plain;
}

bool RowModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!m_isCheckable || role != Qt::CheckStateRole || !index.isValid() || index.row() >= Count()) {
        return false;
    }
    m_rows[index.row()].IsChecked = value.toInt() == Qt::Checked;
    Q_EMIT dataChanged(index, index, {Qt::CheckStateRole});
    return true;
}

void RowModel::SetCheckable(bool checkable) {
    if (checkable == m_isCheckable) {
        return;
    }
    beginResetModel();
    m_isCheckable = checkable;
    endResetModel();
}

int RowModel::RowOf(const QString& key) const {
    return m_byKey.value(key, -1);
}

QStringList RowModel::KeyList() const {
    QStringList keys;
    keys.reserve(m_rows.size());
    for (const ListRow& row : m_rows) {
        keys.append(row.Key);
    }
    return keys;
}

void RowModel::Clear() {
    if (m_rows.isEmpty()) {
        return;
    }
    beginResetModel();
    m_rows.clear();
    m_byKey.clear();
    endResetModel();
}

void RowModel::Assign(QList<ListRow> rows) {
    beginResetModel();
    m_byKey.clear();
    m_byKey.reserve(rows.size());
    int place = 0;
    rows.removeIf([this, &place](const ListRow& row) {
        const auto sizeBefore = m_byKey.size();
        int& known = m_byKey[row.Key];
        const bool isNew = m_byKey.size() != sizeBefore;
        if (isNew) {
            known = place++;
        }
        return !isNew;
    });
    m_rows = std::move(rows);
    endResetModel();
}

int RowModel::Add(const ListRow& row) {
    return AddAll({row}) == 1 ? Count() - 1 : -1;
}

int RowModel::AddAll(const QList<ListRow>& rows) {
    QList<ListRow> added;
    QSet<QString> seen;
    for (const ListRow& row : rows) {
        if (!m_byKey.contains(row.Key) && !seen.contains(row.Key)) {
            seen.insert(row.Key);
            added.append(row);
        }
    }
    if (added.isEmpty()) {
        return 0;
    }
    const int first = Count();
    beginInsertRows({}, first, first + static_cast<int>(added.size()) - 1);
    m_rows.append(added);
    for (int row = first; row < Count(); ++row) {
        m_byKey.insert(m_rows[row].Key, row);
    }
    endInsertRows();
    return static_cast<int>(added.size());
}

bool RowModel::Update(const QString& key, const ListRow& row) {
    const int place = RowOf(key);
    if (place < 0) {
        return false;
    }
    m_rows[place] = row;
    m_rows[place].Key = key;
    Q_EMIT dataChanged(index(place), index(place));
    return true;
}

void RowModel::RemoveKeys(const QStringList& keys) {
    QList<int> doomed;
    doomed.reserve(keys.size());
    for (const QString& key : keys) {
        const int row = RowOf(key);
        if (row >= 0) {
            doomed.append(row);
        }
    }
    if (doomed.isEmpty()) {
        return;
    }
    std::sort(doomed.begin(), doomed.end());
    doomed.erase(std::unique(doomed.begin(), doomed.end()), doomed.end());
    const QList<Run> runs = RunsOf(doomed);
    if (runs.size() > MaxRunNotices) {
        beginResetModel();
        const QSet<int> rows(doomed.cbegin(), doomed.cend());
        QList<ListRow> kept;
        kept.reserve(m_rows.size() - doomed.size());
        for (int row = 0; row < Count(); ++row) {
            if (!rows.contains(row)) {
                kept.append(m_rows[row]);
            }
        }
        m_rows = kept;
        Reindex();
        endResetModel();
        return;
    }
    for (auto run = runs.crbegin(); run != runs.crend(); ++run) {
        beginRemoveRows({}, run->First, run->Last);
        m_rows.remove(run->First, run->Last - run->First + 1);
        Reindex();
        endRemoveRows();
    }
}

void RowModel::Reindex() {
    m_byKey.clear();
    m_byKey.reserve(m_rows.size());
    for (int row = 0; row < Count(); ++row) {
        m_byKey.insert(m_rows[row].Key, row);
    }
}
