#pragma once

#include <QAbstractListModel>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

/// One row of a ListView.
struct ListRow {
    QString Key;  // unique in its list
    QString Text;
    QString ToolTip;
    int SmallIcon = 0;       // image of the list's image list, counted from 1; 0: none
    bool IsChecked = false;  // shown only by a list with check boxes

    bool operator==(const ListRow&) const = default;
};

/// Makes what the row of a key shows.
using RowMaker = std::function<ListRow(const QString& key)>;

/// The rows behind a ListView, each under a key. Looking a row up by key takes constant time; adding and
/// removing a batch takes time linear in the rows.
class RowModel : public QAbstractListModel {
    Q_OBJECT
public:
    /// Besides Qt's own roles, `data` answers these: the row's key, and the number of its image.
    enum Role { KeyRole = Qt::UserRole, SmallIconRole };

    explicit RowModel(QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    /// Rows get a check box that `setData` with Qt::CheckStateRole changes.
    void SetCheckable(bool checkable);
    [[nodiscard]] int Count() const { return static_cast<int>(m_keys.size()); }
    /// `row` from 0, not checked.
    [[nodiscard]] const ListRow& At(int row) const;
    /// -1 for an unknown key.
    [[nodiscard]] int RowOf(const QString& key) const;
    [[nodiscard]] QStringList KeyList() const { return m_keys; }
    void Clear();
    /// Replaces all rows; rows whose key repeats are left out.
    void Assign(QList<ListRow> rows);
    /// Replaces all rows by these keys, none of which may repeat. `maker` is asked for a row when it is first
    /// looked at: of tens of thousands a list shows a page.
    void Assign(const QStringList& keys, RowMaker maker);
    /// Row number of the new row; -1 when the key is already there, and nothing changes.
    int Add(const ListRow& row);
    /// Appends the rows whose keys are new, with one notice to the views. Returns how many.
    int AddAll(const QList<ListRow>& rows);
    /// False for an unknown key. The row keeps its key and place.
    bool Update(const QString& key, const ListRow& row);
    /// Removes these keys (unknown ones are passed over) in one pass. When they lie in many places the views
    /// get one reset, and lose their selection.
    void RemoveKeys(const QStringList& keys);

private:
    [[nodiscard]] ListRow& MadeRow(int row) const;
    void Append(const QList<ListRow>& rows);
    void Reindex() const;
    [[nodiscard]] const QHash<QString, int>& Index() const;

    QStringList m_keys;
    mutable std::vector<std::unique_ptr<ListRow>> m_made;  // as many; null: not looked at yet
    RowMaker m_maker;
    mutable QHash<QString, int> m_byKey;
    mutable bool m_isIndexed = true;  // a list on show seldom needs to know where its keys stand
    bool m_isCheckable = false;
};
