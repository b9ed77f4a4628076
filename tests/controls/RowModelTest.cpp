#include "controls/RowModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

ListRow Row(const QString& key, const QString& text = QString()) {
    ListRow row;
    row.Key = key;
    row.Text = text.isEmpty() ? key + QStringLiteral(" text") : text;
    return row;
}

QList<ListRow> Rows(int count) {
    QList<ListRow> rows;
    for (int i = 0; i < count; ++i) {
        rows.append(Row(QStringLiteral("C%1").arg(i)));
    }
    return rows;
}

class RowModelTest : public ::testing::Test {
protected:
    RowModel m_model;
    QAbstractItemModelTester m_tester{&m_model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(RowModelTest, ARowIsFoundByItsKey) {
    EXPECT_EQ(m_model.Add(Row(QStringLiteral("C5"))), 0);
    EXPECT_EQ(m_model.Add(Row(QStringLiteral("P2"))), 1);
    EXPECT_EQ(m_model.RowOf(QStringLiteral("P2")), 1);
    EXPECT_EQ(m_model.RowOf(QStringLiteral("C2")), -1);
    EXPECT_EQ(m_model.KeyList(), QStringList({QStringLiteral("C5"), QStringLiteral("P2")}));
}

TEST_F(RowModelTest, ASecondRowWithAKeyIsRefusedAndChangesNothing) {
    m_model.Add(Row(QStringLiteral("C5"), QStringLiteral("first")));
    EXPECT_EQ(m_model.Add(Row(QStringLiteral("C5"), QStringLiteral("second"))), -1);
    EXPECT_EQ(m_model.Count(), 1);
    EXPECT_EQ(m_model.At(0).Text, QStringLiteral("first"));
}

TEST_F(RowModelTest, AddAllTakesNewKeysOnceWithOneNotice) {
    m_model.Add(Row(QStringLiteral("C1")));
    const QSignalSpy notices(&m_model, &QAbstractItemModel::rowsInserted);
    EXPECT_EQ(m_model.AddAll({Row(QStringLiteral("C1")), Row(QStringLiteral("C2")), Row(QStringLiteral("C3")),
                              Row(QStringLiteral("C2"))}),
              2);
    EXPECT_EQ(notices.size(), 1);
    EXPECT_EQ(m_model.RowOf(QStringLiteral("C3")), 2);
    EXPECT_EQ(m_model.AddAll({Row(QStringLiteral("C1"))}), 0);
    EXPECT_EQ(notices.size(), 1);
}

TEST_F(RowModelTest, AssignReplacesEverythingAndDropsRepeatedKeys) {
    m_model.Add(Row(QStringLiteral("C9")));
    m_model.Assign({Row(QStringLiteral("C1"), QStringLiteral("kept")), Row(QStringLiteral("C2")),
                    Row(QStringLiteral("C1"), QStringLiteral("dropped"))});
    EXPECT_EQ(m_model.KeyList(), QStringList({QStringLiteral("C1"), QStringLiteral("C2")}));
    EXPECT_EQ(m_model.At(0).Text, QStringLiteral("kept"));
    EXPECT_EQ(m_model.RowOf(QStringLiteral("C9")), -1);
    EXPECT_EQ(m_model.RowOf(QStringLiteral("C2")), 1);
}

TEST_F(RowModelTest, RowsOfKeysAreMadeWhenTheyAreLookedAt) {
    QStringList made;
    m_model.Assign(QStringList{QStringLiteral("C1"), QStringLiteral("C2"), QStringLiteral("C3")},
                   [&made](const QString& key) {
                       made.append(key);
                       return Row(key, QStringLiteral("made ") + key);
                   });
    made.clear();  // the model tester has looked at some
    EXPECT_EQ(m_model.Count(), 3);
    EXPECT_EQ(m_model.RowOf(QStringLiteral("C3")), 2);
    EXPECT_EQ(m_model.index(2).data(RowModel::KeyRole), QStringLiteral("C3"));
    EXPECT_EQ(made, QStringList());
    EXPECT_EQ(m_model.At(2).Text, QStringLiteral("made C3"));
    EXPECT_EQ(m_model.index(2).data(), QStringLiteral("made C3"));
    EXPECT_EQ(made, QStringList{QStringLiteral("C3")});
}

TEST_F(RowModelTest, ARowThatWasNotLookedAtIsUpdatedAndRemovedLikeAnyOther) {
    const QStringList keys{QStringLiteral("C1"), QStringLiteral("C2"), QStringLiteral("C3")};
    m_model.Assign(keys, [](const QString& key) { return Row(key, QStringLiteral("made")); });
    EXPECT_TRUE(m_model.Update(QStringLiteral("C2"), Row(QStringLiteral("C2"), QStringLiteral("edited"))));
    m_model.RemoveKeys({QStringLiteral("C1")});
    EXPECT_EQ(m_model.At(0).Text, QStringLiteral("edited"));
    EXPECT_EQ(m_model.At(1).Text, QStringLiteral("made"));
    EXPECT_EQ(m_model.At(1).Key, QStringLiteral("C3"));
    EXPECT_EQ(m_model.Add(Row(QStringLiteral("C3"))), -1);
}

TEST_F(RowModelTest, AnUpdatedRowKeepsKeyAndPlace) {
    m_model.Assign(Rows(3));
    const QSignalSpy notices(&m_model, &QAbstractItemModel::dataChanged);
    EXPECT_TRUE(m_model.Update(QStringLiteral("C1"), Row(QStringLiteral("other"), QStringLiteral("new"))));
    EXPECT_EQ(m_model.At(1).Key, QStringLiteral("C1"));
    EXPECT_EQ(m_model.At(1).Text, QStringLiteral("new"));
    EXPECT_EQ(notices.size(), 1);
    EXPECT_FALSE(m_model.Update(QStringLiteral("C7"), Row(QStringLiteral("C7"))));
}

TEST_F(RowModelTest, RemovingARunOfRowsTellsTheViewsOnce) {
    m_model.Assign(Rows(10));
    const QSignalSpy notices(&m_model, &QAbstractItemModel::rowsRemoved);
    m_model.RemoveKeys({QStringLiteral("C4"), QStringLiteral("C3"), QStringLiteral("C5"),
                        QStringLiteral("unknown"), QStringLiteral("C4")});
    EXPECT_EQ(notices.size(), 1);
    EXPECT_EQ(m_model.Count(), 7);
    EXPECT_EQ(m_model.RowOf(QStringLiteral("C6")), 3);
    EXPECT_EQ(m_model.RowOf(QStringLiteral("C4")), -1);
}

TEST_F(RowModelTest, RemovingRowsInManyPlacesIsOneReset) {
    m_model.Assign(Rows(100));
    QStringList even;
    for (int i = 0; i < 100; i += 2) {
        even.append(QStringLiteral("C%1").arg(i));
    }
    const QSignalSpy resets(&m_model, &QAbstractItemModel::modelReset);
    m_model.RemoveKeys(even);
    EXPECT_EQ(resets.size(), 1);
    EXPECT_EQ(m_model.Count(), 50);
    for (int row = 0; row < 50; ++row) {
        const QString key = QStringLiteral("C%1").arg(2 * row + 1);
        EXPECT_EQ(m_model.At(row).Key, key);
        EXPECT_EQ(m_model.RowOf(key), row);
    }
}

TEST_F(RowModelTest, RemovingUnknownKeysDoesNothing) {
    m_model.Assign(Rows(2));
    const QSignalSpy resets(&m_model, &QAbstractItemModel::modelReset);
    const QSignalSpy removals(&m_model, &QAbstractItemModel::rowsRemoved);
    m_model.RemoveKeys({QStringLiteral("C77")});
    EXPECT_EQ(m_model.Count(), 2);
    EXPECT_EQ(resets.size() + removals.size(), 0);
}

TEST_F(RowModelTest, ClearEmptiesTheKeysToo) {
    m_model.Assign(Rows(2));
    m_model.Clear();
    EXPECT_EQ(m_model.Count(), 0);
    EXPECT_EQ(m_model.RowOf(QStringLiteral("C0")), -1);
    EXPECT_EQ(m_model.Add(Row(QStringLiteral("C0"))), 0);
}

TEST_F(RowModelTest, DataTellsTextToolTipKeyAndImage) {
    ListRow row = Row(QStringLiteral("C1"), QStringLiteral("Ahern, Aoife"));
    row.ToolTip = QStringLiteral(" +353861234567 ");
    row.SmallIcon = 1;
    m_model.Add(row);
    const QModelIndex index = m_model.index(0);
    EXPECT_EQ(index.data(Qt::DisplayRole), QStringLiteral("Ahern, Aoife"));
    EXPECT_EQ(index.data(Qt::ToolTipRole), QStringLiteral(" +353861234567 "));
    EXPECT_EQ(index.data(RowModel::KeyRole), QStringLiteral("C1"));
    EXPECT_EQ(index.data(RowModel::SmallIconRole), 1);
    EXPECT_FALSE(index.data(Qt::CheckStateRole).isValid());
}

TEST_F(RowModelTest, OnlyACheckableListTicksRows) {
    m_model.Add(Row(QStringLiteral("C1")));
    EXPECT_FALSE(m_model.setData(m_model.index(0), Qt::Checked, Qt::CheckStateRole));
    m_model.SetCheckable(true);
    EXPECT_TRUE(m_model.flags(m_model.index(0)).testFlag(Qt::ItemIsUserCheckable));
    EXPECT_TRUE(m_model.setData(m_model.index(0), Qt::Checked, Qt::CheckStateRole));
    EXPECT_TRUE(m_model.At(0).IsChecked);
    EXPECT_EQ(m_model.index(0).data(Qt::CheckStateRole).toInt(), static_cast<int>(Qt::Checked));
    EXPECT_TRUE(m_model.setData(m_model.index(0), Qt::Unchecked, Qt::CheckStateRole));
    EXPECT_FALSE(m_model.At(0).IsChecked);
}

}  // namespace
