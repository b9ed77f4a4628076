#include "controls/RowModel.h"

#include "controls/PlainToolTip.h"

#include <QSet>

#include <algorithm>
#include <utility>

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
    if (role == KeyRole) {
        return m_keys.at(index.row());
    }
    const ListRow& row = At(index.row());
    switch (role) {
        case Qt::DisplayRole:
            return row.Text;
        case Qt::ToolTipRole:
            return PlainToolTip(row.ToolTip);
        case Qt::AccessibleDescriptionRole:
            return row.ToolTip.trimmed();
        case Qt::CheckStateRole:
            return m_isCheckable ? QVariant(row.IsChecked ? Qt::Checked : Qt::Unchecked) : QVariant();
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
    MadeRow(index.row()).IsChecked = value.toInt() == Qt::Checked;
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

const ListRow& RowModel::At(int row) const {
    return MadeRow(row);
}

ListRow& RowModel::MadeRow(int row) const {
    auto& made = m_made.at(static_cast<std::size_t>(row));
    if (made == nullptr) {
        const QString& key = m_keys.at(row);
        made = std::make_unique<ListRow>(m_maker(key));
        made->Key = key;
    }
    return *made;
}

int RowModel::RowOf(const QString& key) const {
    return Index().value(key, -1);
}

void RowModel::Clear() {
    if (!m_keys.isEmpty()) {
        Assign(QStringList(), nullptr);
    }
}

void RowModel::Assign(QList<ListRow> rows) {
    QSet<QString> seen;
    seen.reserve(rows.size());
    rows.removeIf([&seen](const ListRow& row) {
        const qsizetype countBefore = seen.size();
        seen.insert(row.Key);
        return seen.size() == countBefore;
    });
    beginResetModel();
    m_keys.clear();
    m_made.clear();
    m_keys.reserve(rows.size());
    m_made.reserve(static_cast<std::size_t>(rows.size()));
    Append(rows);
    m_isIndexed = false;
    endResetModel();
}

void RowModel::Assign(const QStringList& keys, RowMaker maker) {
    beginResetModel();
    m_keys = keys;
    m_made.clear();
    m_made.resize(static_cast<std::size_t>(keys.size()));
    m_maker = std::move(maker);
    m_isIndexed = false;
    endResetModel();
}

int RowModel::Add(const ListRow& row) {
    return AddAll({row}) == 1 ? Count() - 1 : -1;
}

int RowModel::AddAll(const QList<ListRow>& rows) {
    QList<ListRow> added;
    QSet<QString> seen;
    for (const ListRow& row : rows) {
        if (!Index().contains(row.Key) && !seen.contains(row.Key)) {
            seen.insert(row.Key);
            added.append(row);
        }
    }
    if (added.isEmpty()) {
        return 0;
    }
    const int first = Count();
    beginInsertRows({}, first, first + static_cast<int>(added.size()) - 1);
    Append(added);
    for (int row = first; row < Count(); ++row) {
        m_byKey.insert(m_keys.at(row), row);
    }
    endInsertRows();
    return static_cast<int>(added.size());
}

bool RowModel::Update(const QString& key, const ListRow& row) {
    const int place = RowOf(key);
    if (place < 0) {
        return false;
    }
    auto& made = m_made[static_cast<std::size_t>(place)];
    made = std::make_unique<ListRow>(row);
    made->Key = m_keys.at(place);
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
    QList<Run> runs = RunsOf(doomed);
    if (runs.size() > MaxRunNotices) {
        beginResetModel();
        QStringList keptKeys;
        std::vector<std::unique_ptr<ListRow>> kept;
        keptKeys.reserve(m_keys.size() - doomed.size());
        kept.reserve(m_made.size());
        auto next = doomed.cbegin();
        for (int row = 0; row < Count(); ++row) {
            if (next != doomed.cend() && *next == row) {
                ++next;
            } else {
                keptKeys.append(m_keys.at(row));
                kept.push_back(std::move(m_made[static_cast<std::size_t>(row)]));
            }
        }
        m_keys = std::move(keptKeys);
        m_made = std::move(kept);
        Reindex();
        endResetModel();
        return;
    }
    while (!runs.isEmpty()) {
        const Run run = runs.takeLast();
        beginRemoveRows({}, run.First, run.Last);
        m_keys.remove(run.First, run.Last - run.First + 1);
        m_made.erase(m_made.begin() + run.First, m_made.begin() + run.Last + 1);
        Reindex();
        endRemoveRows();
    }
}

void RowModel::Append(const QList<ListRow>& rows) {
    for (const ListRow& row : rows) {
        m_keys.append(row.Key);
        m_made.push_back(std::make_unique<ListRow>(row));
    }
}

void RowModel::Reindex() const {
    m_byKey.clear();
    m_byKey.reserve(m_keys.size());
    for (int row = 0; row < Count(); ++row) {
        m_byKey.insert(m_keys.at(row), row);
    }
    m_isIndexed = true;
}

const QHash<QString, int>& RowModel::Index() const {
    if (!m_isIndexed) {
        Reindex();
    }
    return m_byKey;
}
