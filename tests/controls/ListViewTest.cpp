#include "controls/ListView.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDrag>
#include <QDropEvent>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <memory>

namespace {

/// Sees when a list begins a drag: it gets a child then.
class DragWatch final : public QObject {
public:
    bool IsDragged = false;

    explicit DragWatch(ListView& list) { list.installEventFilter(this); }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        IsDragged = IsDragged || event->type() == QEvent::ChildAdded;
        return false;
    }
};

class ListViewTest : public ::testing::Test {
protected:
    ListViewTest() {
        m_list.setObjectName(QStringLiteral("lvTest"));
        m_list.resize(200, 200);
    }

    void Fill(int count) {
        QList<ListRow> rows;
        for (int i = 1; i <= count; ++i) {
            ListRow row;
            row.Key = QStringLiteral("C%1").arg(i);
            row.Text = QStringLiteral("Name %1").arg(i, 6, 10, QLatin1Char('0'));
            rows.append(row);
        }
        m_list.Rows().Assign(rows);
        m_list.show();
    }
    QPoint MiddleOf(int row) { return m_list.visualRect(m_list.Rows().index(row)).center(); }
    void SelectRows(std::initializer_list<int> rows) {
        m_list.UnselectAllRows();
        for (const int row : rows) {
            m_list.selectionModel()->select(m_list.Rows().index(row), QItemSelectionModel::Select);
        }
    }
    /// As the window system reports it: click, then the second press.
    void DoubleClick(const QPoint& point) {
        QTest::mouseClick(m_list.viewport(), Qt::LeftButton, Qt::NoModifier, point);
        QTest::mouseDClick(m_list.viewport(), Qt::LeftButton, Qt::NoModifier, point);
        QTest::mouseRelease(m_list.viewport(), Qt::LeftButton, Qt::NoModifier, point);
    }
    void Move(Qt::MouseButton button, const QPoint& point) {
        QMouseEvent move(QEvent::MouseMove, point, m_list.viewport()->mapToGlobal(point), Qt::NoButton,
                         button, Qt::NoModifier);
        QApplication::sendEvent(m_list.viewport(), &move);
    }
    /// Presses on the second row and moves on to the third, while the button is down; whether that dragged.
    bool DragsWith(Qt::MouseButton button) {
        DragWatch watch(m_list);
        QTimer end;
        QObject::connect(&end, &QTimer::timeout, &QDrag::cancel);
        end.start(0);
        QTest::mousePress(m_list.viewport(), button, Qt::NoModifier, MiddleOf(1));
        Move(button, MiddleOf(1) + QPoint(2 * QApplication::startDragDistance(), 0));
        Move(button, MiddleOf(2));
        return watch.IsDragged;
    }
    void AskForTheMenuByKey() {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(0, 0), QPoint(0, 0));
        QApplication::sendEvent(m_list.viewport(), &event);
    }
    void Drop(const QString& text) {
        QMimeData data;
        data.setText(text);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_list.viewport(), &enter);
        m_isDragAccepted = enter.isAccepted();
        QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_list.viewport(), &event);
    }

    ListView m_list;
    bool m_isDragAccepted = false;
};

TEST_F(ListViewTest, SelectedKeysStandInRowOrderWhateverTheOrderOfSelecting) {
    Fill(5);
    SelectRows({3, 0, 2});
    EXPECT_EQ(m_list.SelectedKeys(),
              QStringList({QStringLiteral("C1"), QStringLiteral("C3"), QStringLiteral("C4")}));
    EXPECT_EQ(m_list.SelectedCount(), 3);
    EXPECT_TRUE(m_list.HasSelection());
    m_list.UnselectAllRows();
    EXPECT_TRUE(m_list.SelectedKeys().isEmpty());
    EXPECT_FALSE(m_list.HasSelection());
}

TEST_F(ListViewTest, ATenThousandRowsApartFromEachOtherAreSelectedAndFound) {
    Fill(30000);
    QItemSelection every;
    for (int row = 0; row < 30000; row += 3) {
        const QModelIndex index = m_list.Rows().index(row);
        every.append(QItemSelectionRange(index));
    }
    m_list.selectionModel()->select(every, QItemSelectionModel::ClearAndSelect);
    const QStringList keys = m_list.SelectedKeys();
    m_list.UnselectAllRows();
    EXPECT_EQ(keys.size(), 10000);
    EXPECT_EQ(keys.last(), QStringLiteral("C29998"));
}

TEST_F(ListViewTest, ControlASelectsEveryRow) {
    Fill(40);
    QTest::keyClick(&m_list, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(m_list.SelectedCount(), 40);
}

TEST_F(ListViewTest, ControlAOnAnEmptyListDoesNothing) {
    m_list.show();
    QTest::keyClick(&m_list, Qt::Key_A, Qt::ControlModifier);
    EXPECT_FALSE(m_list.HasSelection());
}

TEST_F(ListViewTest, EnterAndDeleteAreTold) {
    Fill(2);
    const QSignalSpy enter(&m_list, &ListView::EnterPressed);
    const QSignalSpy del(&m_list, &ListView::DeletePressed);
    QTest::keyClick(&m_list, Qt::Key_Return);
    QTest::keyClick(&m_list, Qt::Key_Enter);
    QTest::keyClick(&m_list, Qt::Key_Delete);
    EXPECT_EQ(enter.size(), 2);
    EXPECT_EQ(del.size(), 1);
}

TEST_F(ListViewTest, AClickTellsTheKeyOfItsRow) {
    Fill(3);
    QSignalSpy clicks(&m_list, &ListView::ItemClicked);
    QTest::mouseClick(m_list.viewport(), Qt::LeftButton, Qt::NoModifier, MiddleOf(1));
    ASSERT_EQ(clicks.size(), 1);
    EXPECT_EQ(clicks.first().first(), QStringLiteral("C2"));
    EXPECT_EQ(m_list.CurrentKey(), QStringLiteral("C2"));
}

TEST_F(ListViewTest, ARowThatTakesTheCursorByAKeyIsToldAsAClick) {
    Fill(3);
    m_list.SelectKey(QStringLiteral("C2"));
    QSignalSpy clicks(&m_list, &ListView::ItemClicked);
    QTest::keyClick(&m_list, Qt::Key_Down);
    QTest::keyClick(&m_list, Qt::Key_Home);
    ASSERT_EQ(clicks.size(), 2);
    EXPECT_EQ(clicks[0].first(), QStringLiteral("C3"));
    EXPECT_EQ(clicks[1].first(), QStringLiteral("C1"));
}

TEST_F(ListViewTest, GoHomeGivesTheFirstRowTheCursorAndIsToldAsAClick) {
    Fill(3);
    SelectRows({1, 2});
    QSignalSpy clicks(&m_list, &ListView::ItemClicked);
    m_list.GoHome();
    EXPECT_EQ(m_list.CurrentKey(), QStringLiteral("C1"));
    EXPECT_EQ(m_list.SelectedKeys(), QStringList(QStringLiteral("C1")));
    m_list.GoHome();
    ASSERT_EQ(clicks.size(), 2) << "also when the cursor is there already";
    EXPECT_EQ(clicks[1].first(), QStringLiteral("C1"));
}

TEST_F(ListViewTest, GoHomeOnAnEmptyListDoesNothing) {
    const QSignalSpy clicks(&m_list, &ListView::ItemClicked);
    m_list.GoHome();
    EXPECT_EQ(clicks.size(), 0);
    EXPECT_TRUE(m_list.CurrentKey().isEmpty());
}

TEST_F(ListViewTest, ADoubleClickOnOneOfThreeSelectedRowsFindsAllThree) {
    Fill(6);
    SelectRows({0, 2, 4});
    QStringList seen;
    QObject::connect(&m_list, &ListView::ItemDoubleClicked, &m_list, [&] { seen = m_list.SelectedKeys(); });
    DoubleClick(MiddleOf(2));
    EXPECT_EQ(seen, QStringList({QStringLiteral("C1"), QStringLiteral("C3"), QStringLiteral("C5")}));
}

TEST_F(ListViewTest, ADoubleClickOnARowThatWasNotSelectedFindsThatRowAlone) {
    Fill(6);
    SelectRows({0, 2, 4});
    QStringList seen;
    QObject::connect(&m_list, &ListView::ItemDoubleClicked, &m_list, [&] { seen = m_list.SelectedKeys(); });
    DoubleClick(MiddleOf(3));
    EXPECT_EQ(seen, QStringList(QStringLiteral("C4")));
}

TEST_F(ListViewTest, ADoubleClickWhoseFirstPressWasLostFindsWhatIsSelectedNow) {
    Fill(6);
    const auto doubleClickAlone = [this] {
        QTest::mouseDClick(m_list.viewport(), Qt::LeftButton, Qt::NoModifier, MiddleOf(2));
        return m_list.SelectedKeys();
    };
    SelectRows({0, 2, 4});
    QTest::mouseClick(m_list.viewport(), Qt::LeftButton, Qt::NoModifier, MiddleOf(2));
    QTest::keyClick(&m_list, Qt::Key_Home);
    EXPECT_EQ(doubleClickAlone(), QStringList(QStringLiteral("C1"))) << "after a key";
    SelectRows({0, 2, 4});
    QTest::mouseClick(m_list.viewport(), Qt::LeftButton, Qt::NoModifier, MiddleOf(2));
    m_list.SelectKey(QStringLiteral("C6"));
    EXPECT_EQ(doubleClickAlone(), QStringList(QStringLiteral("C6"))) << "after the program's choice";
}

TEST_F(ListViewTest, ADoubleClickBesideTheRowsHasNoKey) {
    Fill(1);
    QSignalSpy doubles(&m_list, &ListView::ItemDoubleClicked);
    DoubleClick(QPoint(50, 150));
    ASSERT_EQ(doubles.size(), 1);
    EXPECT_TRUE(doubles.first().first().toString().isEmpty());
}

TEST_F(ListViewTest, TheMenuIsAskedForWhenTheRightButtonIsReleased) {
    Fill(3);
    QSignalSpy menus(&m_list, &ListView::ContextMenuRequested);
    QTest::mousePress(m_list.viewport(), Qt::RightButton, Qt::NoModifier, MiddleOf(1));
    EXPECT_EQ(menus.size(), 0);
    QTest::mouseRelease(m_list.viewport(), Qt::RightButton, Qt::NoModifier, MiddleOf(1));
    ASSERT_EQ(menus.size(), 1);
    EXPECT_EQ(menus.first().first(), m_list.viewport()->mapToGlobal(MiddleOf(1)));
    EXPECT_EQ(m_list.SelectedKeys(), QStringList(QStringLiteral("C2")));
}

TEST_F(ListViewTest, ARightClickOnARowIsToldAsAClickInFrontOfTheMenu) {
    Fill(3);
    QStringList told;
    QObject::connect(&m_list, &ListView::ItemClicked, &m_list, [&](const QString& key) { told += key; });
    QObject::connect(&m_list, &ListView::ContextMenuRequested, &m_list,
                     [&] { told += QStringLiteral("menu"); });
    QTest::mouseClick(m_list.viewport(), Qt::RightButton, Qt::NoModifier, MiddleOf(1));
    EXPECT_EQ(told, QStringList({QStringLiteral("C2"), QStringLiteral("menu")}));
    QTest::mouseClick(m_list.viewport(), Qt::RightButton, Qt::NoModifier, QPoint(50, 150));
    EXPECT_EQ(told.mid(2), QStringList(QStringLiteral("menu"))) << "beside the rows";
}

TEST_F(ListViewTest, ARightClickOnASelectionKeepsIt) {
    Fill(5);
    SelectRows({1, 3});
    QTest::mouseClick(m_list.viewport(), Qt::RightButton, Qt::NoModifier, MiddleOf(3));
    EXPECT_EQ(m_list.SelectedCount(), 2);
}

TEST_F(ListViewTest, TheMenuKeyAsksForTheMenuAtTheCursorsRow) {
    Fill(5);
    m_list.SelectKey(QStringLiteral("C2"));
    QSignalSpy menus(&m_list, &ListView::ContextMenuRequested);
    AskForTheMenuByKey();
    ASSERT_EQ(menus.size(), 1);
    const QRect row = m_list.visualRect(m_list.Rows().index(1));
    EXPECT_EQ(menus.first().first(), m_list.viewport()->mapToGlobal(row.bottomLeft()));
}

TEST_F(ListViewTest, TheMenuKeyBringsTheCursorsRowIntoViewFirst) {
    Fill(100);
    m_list.SelectKey(QStringLiteral("C2"));
    m_list.scrollToBottom();
    QSignalSpy menus(&m_list, &ListView::ContextMenuRequested);
    AskForTheMenuByKey();
    ASSERT_EQ(menus.size(), 1);
    const QPoint place = m_list.viewport()->mapFromGlobal(menus.first().first().toPoint());
    EXPECT_TRUE(m_list.viewport()->rect().contains(place)) << place.y();
    EXPECT_EQ(m_list.indexAt(place).row(), 1);
}

TEST_F(ListViewTest, ARowIsDraggedWithTheLeftButton) {
    Fill(3);
    m_list.SetDragOut(true);
    m_list.SelectKey(QStringLiteral("C2"));
    EXPECT_TRUE(DragsWith(Qt::LeftButton));
}

TEST_F(ListViewTest, ARightClickWithAnUnsteadyHandDragsNothingAndOpensTheMenu) {
    Fill(3);
    m_list.SetDragOut(true);
    m_list.SelectKey(QStringLiteral("C2"));
    const QSignalSpy menus(&m_list, &ListView::ContextMenuRequested);
    EXPECT_FALSE(DragsWith(Qt::RightButton));
    QTest::mouseRelease(m_list.viewport(), Qt::RightButton, Qt::NoModifier, MiddleOf(2));
    EXPECT_EQ(menus.size(), 1);
    EXPECT_EQ(m_list.SelectedKeys(), QStringList(QStringLiteral("C2")));
}

TEST_F(ListViewTest, TheMiddleButtonDragsNothing) {
    Fill(3);
    m_list.SetDragOut(true);
    m_list.SelectKey(QStringLiteral("C2"));
    EXPECT_FALSE(DragsWith(Qt::MiddleButton));
}

TEST_F(ListViewTest, ADragCarriesTheSelectedKeysEachClosedByALineBreak) {
    Fill(4);
    SelectRows({2, 0});
    EXPECT_EQ(m_list.DragText(), QStringLiteral("C1\r\nC3\r\n"));
    m_list.UnselectAllRows();
    EXPECT_TRUE(m_list.DragText().isEmpty());
}

TEST_F(ListViewTest, TextDroppedOnItIsToldWhenItTakesDrops) {
    Fill(2);
    m_list.SetDropIn(true);
    QSignalSpy drops(&m_list, &ListView::TextDropped);
    Drop(QStringLiteral("C7\r\n"));
    ASSERT_EQ(drops.size(), 1);
    EXPECT_EQ(drops.first().at(0), QStringLiteral("C7\r\n"));
    EXPECT_TRUE(drops.first().at(1).toString().isEmpty());
    EXPECT_TRUE(m_isDragAccepted);
}

TEST_F(ListViewTest, AListThatTakesNoDropsIgnoresThem) {
    Fill(2);
    const QSignalSpy drops(&m_list, &ListView::TextDropped);
    Drop(QStringLiteral("C7\r\n"));
    EXPECT_EQ(drops.size(), 0);
    EXPECT_FALSE(m_isDragAccepted);
}

TEST_F(ListViewTest, EnsureVisibleScrollsNoFurtherThanNeeded) {
    Fill(100);
    const int page = m_list.RowsPerPage();
    ASSERT_GT(page, 3);
    ASSERT_LT(page, 30);
    m_list.EnsureVisible(50);
    EXPECT_EQ(m_list.TopRow(), 50 - page + 1);
    m_list.EnsureVisible(50 - page + 1);
    EXPECT_EQ(m_list.TopRow(), 50 - page + 1);
    m_list.EnsureVisible(10);
    EXPECT_EQ(m_list.TopRow(), 10);
    m_list.EnsureVisible(1000);
    m_list.EnsureVisible(-1);
    EXPECT_EQ(m_list.TopRow(), 10);
}

TEST_F(ListViewTest, ScrollToItemBringsALowerRowToTheTop) {
    Fill(100);
    mdlListViewBugFix::ScrollToItem(m_list, 51);
    EXPECT_EQ(m_list.TopRow(), 50);
}

TEST_F(ListViewTest, ScrollToItemBringsAnUpperRowToTheTop) {
    Fill(100);
    m_list.EnsureVisible(99);
    mdlListViewBugFix::ScrollToItem(m_list, 5);
    EXPECT_EQ(m_list.TopRow(), 4);
}

TEST_F(ListViewTest, ScrollToItemNearTheEndShowsTheLastRow) {
    Fill(100);
    mdlListViewBugFix::ScrollToItem(m_list, 99);
    EXPECT_EQ(m_list.TopRow(), 100 - m_list.RowsPerPage());
}

TEST_F(ListViewTest, ScrollToItemLeavesARowThatIsOnThePage) {
    Fill(100);
    m_list.EnsureVisible(60);
    const int top = m_list.TopRow();
    mdlListViewBugFix::ScrollToItem(m_list, top + 1);
    mdlListViewBugFix::ScrollToItem(m_list, top + m_list.RowsPerPage());
    EXPECT_EQ(m_list.TopRow(), top);
}

TEST_F(ListViewTest, ScrollToItemWithAPlaceBeyondTheRowsShowsTheLastRow) {
    Fill(100);
    mdlListViewBugFix::ScrollToItem(m_list, 500);
    EXPECT_EQ(m_list.TopRow(), 100 - m_list.RowsPerPage());
}

TEST_F(ListViewTest, ScrollToItemOnAnEmptyListDoesNothing) {
    m_list.show();
    mdlListViewBugFix::ScrollToItem(m_list, 5);
    EXPECT_EQ(m_list.TopRow(), 0);
}

TEST_F(ListViewTest, RowsHaveTheirImageOnlyWhenTheyAskForIt) {
    QPixmap red(16, 16);
    red.fill(Qt::red);
    m_list.SetImage(1, QIcon(red));
    Fill(2);
    ListRow row = m_list.Rows().At(1);
    row.SmallIcon = 1;
    m_list.Rows().Update(row.Key, row);
    const auto hasRed = [this](int number) {
        const QImage image =
            m_list.viewport()->grab(m_list.visualRect(m_list.Rows().index(number))).toImage();
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, image.height() / 2) == QColor(Qt::red)) {
                return true;
            }
        }
        return false;
    };
    EXPECT_FALSE(hasRed(0));
    EXPECT_TRUE(hasRed(1));
}

TEST(RedrawOff, PutsBackWhatWasThereBefore) {
    QWidget widget;
    {
        const RedrawOff outer(widget);
        EXPECT_FALSE(widget.updatesEnabled());
        { const RedrawOff inner(widget); }
        EXPECT_FALSE(widget.updatesEnabled());
    }
    EXPECT_TRUE(widget.updatesEnabled());
}

TEST(RedrawOff, AWidgetMayDieFirst) {
    auto widget = std::make_unique<QWidget>();
    {
        const RedrawOff still(*widget);
        widget.reset();
    }
    EXPECT_EQ(widget, nullptr);
}

}  // namespace
