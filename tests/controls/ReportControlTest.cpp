#include "controls/ReportControl.h"

#include "controls/ReportPaint.h"
#include "controls/ReportRecords.h"

#include <QContextMenuEvent>
#include <QDateTime>
#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace {

/// A grid with three columns, sorted by its numbers, largest first.
class ReportControlTest : public ::testing::Test {
public:
    ReportControl Grid;

    ReportControlTest() {
        Grid.AddColumn(QString(), 32, false, Qt::AlignHCenter);
        Grid.AddColumn(QStringLiteral("Number"), 80, true);
        Grid.AddColumn(QStringLiteral("Name"), 120, true);
        Grid.SetSortColumn(1, Qt::DescendingOrder);
        Grid.SetPreviewMode(true);
        Grid.resize(400, 300);
        Grid.show();
    }
    void Add(const QString& name, int value) { Grid.AddRecord(RecordNamed(name, value)); }
    void AddThree() {
        Add(QStringLiteral("a"), 1);
        Add(QStringLiteral("b"), 3);
        Add(QStringLiteral("c"), 2);
        Grid.Populate();
    }
    [[nodiscard]] QString Order() const {
        QString order;
        for (int row = 0; row < Grid.RowCount(); ++row) {
            order += Grid.RowRecord(row)->Tag;
        }
        return order;
    }
    [[nodiscard]] QString RowTag(int row) const {
        const ReportRecord* record = Grid.RowRecord(row);
        return record == nullptr ? QString() : record->Tag;
    }
    [[nodiscard]] QPoint Middle(int row) const {
        return Grid.visualRect(Grid.model()->index(row, 2)).center();
    }
};

TEST_F(ReportControlTest, ADoubleClickOnAColumnsEdgeMakesItAsWideAsItsLongestText) {
    const QString name = QStringLiteral("Maximiliane Featherstonehaugh the younger");
    Add(name, 1);
    Add(QStringLiteral("a"), 2);
    Grid.Populate();
    QHeaderView& header = *Grid.header();
    const int edge = header.sectionViewportPosition(2) + header.sectionSize(2) - 1;
    const QPoint place(edge, header.height() / 2);
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(header.viewport(), Qt::LeftButton, {}, place);
    EXPECT_GE(header.sectionSize(2), Grid.fontMetrics().horizontalAdvance(name));
}

TEST_F(ReportControlTest, RecordsShowOnlyAfterPopulateInTheOrderOfTheSort) {
    Add(QStringLiteral("a"), 1);
    Add(QStringLiteral("b"), 2);
    EXPECT_EQ(Grid.RowCount(), 0);
    Grid.Populate();
    EXPECT_EQ(Order(), QStringLiteral("ba"));
    EXPECT_EQ(Grid.Record(0)->Tag, QStringLiteral("a")) << "records stay where they are";
}

TEST_F(ReportControlTest, EqualValuesStandInTheOrderOfTheRecords) {
    Add(QStringLiteral("a"), 1);
    Add(QStringLiteral("b"), 1);
    Grid.InsertRecord(0, RecordNamed(QStringLiteral("c"), 1));
    Grid.Populate();
    EXPECT_EQ(Order(), QStringLiteral("cab"));
}

TEST_F(ReportControlTest, RemovedRecordsStandUntilPopulate) {
    AddThree();
    Grid.RemoveRecord(1);
    EXPECT_EQ(Grid.RecordCount(), 2);
    EXPECT_EQ(Order(), QStringLiteral("bca"));
    Grid.Populate();
    EXPECT_EQ(Order(), QStringLiteral("ca"));
    Grid.RemoveRecord(17);
    Grid.RemoveRecord(-1);
    EXPECT_EQ(Grid.RecordCount(), 2);
    Grid.DeleteAllRecords();
    EXPECT_EQ(Grid.RecordCount(), 0);
    EXPECT_EQ(Order(), QStringLiteral("ca"));
    Grid.Populate();
    EXPECT_EQ(Grid.RowCount(), 0);
}

TEST_F(ReportControlTest, ControlAndADigitSortByThatColumnAndOnceMoreTurnTheOrder) {
    AddThree();
    QTest::keyClick(&Grid, Qt::Key_3, Qt::ControlModifier);
    EXPECT_EQ(Order(), QStringLiteral("abc"));
    EXPECT_EQ(Grid.header()->sortIndicatorSection(), 2) << "the head shows it";
    QTest::keyClick(&Grid, Qt::Key_3, Qt::ControlModifier);
    EXPECT_EQ(Order(), QStringLiteral("cba"));
    QTest::keyClick(&Grid, Qt::Key_2, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(Order(), QStringLiteral("acb")) << "where digits take Shift";
}

TEST_F(ReportControlTest, OtherKeysAndADigitWithoutAColumnSortNothing) {
    AddThree();
    QTest::keyClick(&Grid, Qt::Key_4, Qt::ControlModifier);
    QTest::keyClick(&Grid, Qt::Key_0, Qt::ControlModifier);
    QTest::keyClick(&Grid, Qt::Key_3);
    QTest::keyClick(&Grid, Qt::Key_3, Qt::AltModifier);
    EXPECT_EQ(Order(), QStringLiteral("bca"));
    QKeyEvent held(QEvent::KeyPress, Qt::Key_3, Qt::ControlModifier, QString(), true);
    QCoreApplication::sendEvent(&Grid, &held);
    EXPECT_EQ(Order(), QStringLiteral("bca")) << "a key that is held down does not flicker";
}

TEST_F(ReportControlTest, TheHeadsTellTheirKeys) {
    for (int column = 0; column < 3; ++column) {
        const QString key = QStringLiteral("Ctrl+%1").arg(column + 1);
        for (const int role : {int(Qt::ToolTipRole), int(Qt::WhatsThisRole)}) {
            const QString told = Grid.model()->headerData(column, Qt::Horizontal, role).toString();
            EXPECT_TRUE(told.contains(key)) << told.toStdString();
        }
    }
}

TEST_F(ReportControlTest, TheMenuKeyBringsTheCursorsRowIntoViewFirst) {
    for (int i = 0; i < 50; ++i) {
        Add(QString::number(i), i);
    }
    Grid.Populate();
    Grid.SelectFirstRow();
    QCoreApplication::processEvents();
    Grid.scrollToBottom();
    ASSERT_NE(Grid.HitTest(QPoint(40, 2)), Grid.RowRecord(0));
    QSignalSpy menus(&Grid, &ReportControl::ContextMenuRequested);
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(0, 0), QPoint(0, 0));
    QCoreApplication::sendEvent(Grid.viewport(), &event);
    ASSERT_EQ(menus.size(), 1);
    const QPoint place = menus.first().first().toPoint();
    EXPECT_TRUE(Grid.viewport()->rect().contains(place)) << place.y();
    EXPECT_EQ(Grid.HitTest(place), Grid.RowRecord(0));
}

TEST_F(ReportControlTest, ThirtyThousandSelectedRowsAreSortedWithTheirSelection) {
    constexpr int Rows = 30000;
    for (int i = 0; i < Rows; ++i) {
        Add(QString::number(i), i);
    }
    Grid.Populate();
    Grid.selectAll();
    // One row less, or the selection is kept as a whole instead of row by row.
    Grid.selectionModel()->select(Grid.model()->index(0, 0),
                                  QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
    const ReportRecord* spared = Grid.RowRecord(0);
    Grid.SetSortColumn(1, Qt::AscendingOrder);
    EXPECT_EQ(Grid.RowRecord(Rows - 1), spared);
    const QList<const ReportRecord*> selected = Grid.SelectedRecords();
    EXPECT_EQ(selected.size(), Rows - 1);
    EXPECT_FALSE(selected.contains(spared));
}

TEST_F(ReportControlTest, OutsideTheRecordsThereIsNone) {
    AddThree();
    EXPECT_EQ(Grid.Record(-1), nullptr);
    EXPECT_EQ(Grid.Record(3), nullptr);
    EXPECT_EQ(Grid.RowRecord(3), nullptr);
    EXPECT_EQ(Grid.HitTest(QPoint(10, 290)), nullptr);
    EXPECT_EQ(Grid.HitTest(Middle(1))->Tag, QStringLiteral("c"));
}

TEST_F(ReportControlTest, PopulateKeepsSelectionAndCursorOfTheRecordsThatStay) {
    AddThree();
    Grid.SelectFirstRow();  // b
    Add(QStringLiteral("d"), 9);
    Grid.Populate();
    ASSERT_EQ(Grid.SelectedRecords().size(), 1);
    EXPECT_EQ(Grid.SelectedRecords().first()->Tag, QStringLiteral("b"));
    EXPECT_EQ(Grid.currentIndex().row(), 1);
}

TEST_F(ReportControlTest, ASelectionThatGoesIsTold) {
    AddThree();
    Grid.SelectFirstRow();
    QSignalSpy told(&Grid, &ReportControl::RowSelectionChanged);
    Grid.DeleteAllRecords();
    Grid.Populate();
    EXPECT_GE(told.count(), 1);
    EXPECT_TRUE(Grid.SelectedRecords().isEmpty());
}

TEST_F(ReportControlTest, PopulateKeepsTheRowsThatAreReadInTheirPlace) {
    for (int i = 0; i < 50; ++i) {
        Add(QString::number(i), i);
    }
    Grid.Populate();
    QCoreApplication::processEvents();
    Grid.verticalScrollBar()->setValue(20);
    ASSERT_EQ(Grid.verticalScrollBar()->value(), 20);
    const ReportRecord* top = Grid.HitTest(QPoint(40, 2));
    Add(QStringLiteral("new"), 100);
    Grid.Populate();
    EXPECT_EQ(Grid.HitTest(QPoint(40, 2)), top);
}

TEST_F(ReportControlTest, AtTheTopANewRowComesIntoView) {
    for (int i = 0; i < 50; ++i) {
        Add(QString::number(i), i);
    }
    Grid.Populate();
    Add(QStringLiteral("new"), 100);
    Grid.Populate();
    EXPECT_EQ(Grid.HitTest(QPoint(40, 2))->Tag, QStringLiteral("new"));
}

TEST_F(ReportControlTest, WithTheFirstRowCurrentTheNewestRowsStayInViewHoweverManyCome) {
    for (int i = 0; i < 50; ++i) {
        Add(QString::number(i), i);
    }
    Grid.Populate();
    Grid.SelectFirstRow();
    QCoreApplication::processEvents();
    for (int i = 100; i < 130; ++i) {
        Add(QStringLiteral("new %1").arg(i), i);
        Grid.Populate();
        QCoreApplication::processEvents();
        ASSERT_EQ(Grid.HitTest(QPoint(40, 2))->Tag, QStringLiteral("new %1").arg(i));
    }
    EXPECT_EQ(RowTag(Grid.currentIndex().row()), QStringLiteral("49")) << "the cursor stays on its record";
}

TEST_F(ReportControlTest, ACursorBelowTheViewDoesNotPullTheViewDownAtTheNextChange) {
    for (int i = 0; i < 50; ++i) {
        Add(QString::number(i), i);
    }
    Grid.Populate();
    QCoreApplication::processEvents();
    Grid.setCurrentIndex(Grid.model()->index(30, 0));
    ASSERT_GT(Grid.verticalScrollBar()->value(), 0);
    Grid.verticalScrollBar()->setValue(0);
    Add(QStringLiteral("new"), 100);
    Grid.Populate();
    QCoreApplication::processEvents();
    EXPECT_EQ(Grid.verticalScrollBar()->value(), 0);
    EXPECT_EQ(Grid.currentIndex().row(), 31);
    QTest::keyClick(&Grid, Qt::Key_Down);
    EXPECT_GT(Grid.verticalScrollBar()->value(), 0) << "a key brings the cursor back into view";
}

TEST_F(ReportControlTest, SelectedRecordsComeInTheOrderOfTheRows) {
    AddThree();
    Grid.selectAll();
    QString tags;
    for (const ReportRecord* record : Grid.SelectedRecords()) {
        tags += record->Tag;
    }
    EXPECT_EQ(tags, QStringLiteral("bca"));
}

TEST_F(ReportControlTest, AClickOnAHeadSortsByItAndKeepsTheSelection) {
    AddThree();
    Grid.SelectFirstRow();
    const QPoint head(Grid.header()->sectionViewportPosition(2) + 40, Grid.header()->height() / 2);
    QTest::mouseClick(Grid.header()->viewport(), Qt::LeftButton, {}, head);
    EXPECT_EQ(Grid.header()->sortIndicatorSection(), 2);
    const Qt::SortOrder first = Grid.header()->sortIndicatorOrder();
    EXPECT_EQ(Order(), first == Qt::AscendingOrder ? QStringLiteral("abc") : QStringLiteral("cba"));
    QTest::mouseClick(Grid.header()->viewport(), Qt::LeftButton, {}, head);
    EXPECT_EQ(Order(), first == Qt::AscendingOrder ? QStringLiteral("cba") : QStringLiteral("abc"));
    ASSERT_EQ(Grid.SelectedRecords().size(), 1);
    EXPECT_EQ(Grid.SelectedRecords().first()->Tag, QStringLiteral("b"));
}

TEST_F(ReportControlTest, DatesAreShownByTheirFormatAndSortedByTheirValue) {
    for (const int day : {9, 10, 2}) {
        ReportRecord record = RecordNamed(QString::number(day), 0);
        record.Items[1].Value = QDateTime(QDate(2026, 3, day), QTime(8, 5));
        record.Items[1].Format = QStringLiteral("dd mmm hh:nn");
        Grid.AddRecord(record);
    }
    Grid.Populate();
    EXPECT_EQ(Order(), QStringLiteral("1092"));
    EXPECT_EQ(Grid.RowRecord(0)->TextOf(1), QStringLiteral("10 Mar 08:05"));
}

TEST_F(ReportControlTest, ACellWithoutTextSaysItsToolTipToAScreenReader) {
    AddThree();
    const QModelIndex cell = Grid.model()->index(0, 0);
    EXPECT_EQ(cell.data(Qt::DisplayRole).toString(), QString());
    EXPECT_EQ(cell.data(Qt::AccessibleTextRole).toString(), QStringLiteral(" <b>tip</b> of b"));
    EXPECT_EQ(cell.data(Qt::AccessibleDescriptionRole).toString(), QStringLiteral("Preview of b"));
}

TEST_F(ReportControlTest, AToolTipThatLooksLikeMarkupIsShownAsItStands) {
    AddThree();
    const QString tip = Grid.model()->index(0, 0).data(Qt::ToolTipRole).toString();
    EXPECT_TRUE(tip.contains(QStringLiteral("&lt;b&gt;tip"))) << tip.toStdString();
}

TEST_F(ReportControlTest, TheLastColumnTakesWhatTheOthersLeave) {
    Grid.SizeLastColumn(4);
    EXPECT_EQ(Grid.header()->length(), Grid.viewport()->width() - 4);
    Grid.resize(600, 300);
    EXPECT_EQ(Grid.header()->length(), Grid.viewport()->width() - 4);
}

TEST_F(ReportControlTest, RowsGrowWithTheFont) {
    AddThree();
    const int before = Grid.RowHeight();
    QFont large = Grid.font();
    large.setPointSizeF(large.pointSizeF() * 2);
    Grid.setFont(large);
    EXPECT_GT(Grid.RowHeight(), before);
    QCoreApplication::processEvents();
    EXPECT_EQ(Grid.visualRect(Grid.model()->index(0, 1)).height(), Grid.RowHeight());
}

TEST_F(ReportControlTest, ADoubleClickTellsTheRecord) {
    AddThree();
    QList<QString> told;
    QObject::connect(&Grid, &ReportControl::RowDoubleClicked, &Grid, [&](const ReportRecord* record) {
        told.append(record == nullptr ? QStringLiteral("-") : record->Tag);
    });
    QTest::mouseDClick(Grid.viewport(), Qt::LeftButton, {}, Middle(1));
    QTest::mouseDClick(Grid.viewport(), Qt::LeftButton, {}, QPoint(10, 290));
    EXPECT_EQ(told, (QList<QString>{QStringLiteral("c"), QStringLiteral("-")}));
}

TEST_F(ReportControlTest, EnterIsLeftToTheDialog) {
    AddThree();
    Grid.SelectFirstRow();
    QSignalSpy told(&Grid, &ReportControl::RowDoubleClicked);
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
    QCoreApplication::sendEvent(&Grid, &enter);
    EXPECT_EQ(told.count(), 0);
    EXPECT_FALSE(enter.isAccepted());
}

TEST_F(ReportControlTest, TheRightButtonKeepsASelectionThatItHitsAndTakesAnotherRow) {
    AddThree();
    QSignalSpy menus(&Grid, &ReportControl::ContextMenuRequested);
    Grid.selectAll();
    QTest::mouseClick(Grid.viewport(), Qt::RightButton, {}, Middle(1));
    EXPECT_EQ(Grid.SelectedRecords().size(), 3);
    Grid.SelectFirstRow();
    QTest::mouseClick(Grid.viewport(), Qt::RightButton, {}, Middle(2));
    ASSERT_EQ(Grid.SelectedRecords().size(), 1);
    EXPECT_EQ(Grid.SelectedRecords().first()->Tag, QStringLiteral("a"));
    ASSERT_EQ(menus.count(), 2);
    EXPECT_EQ(menus.last().first().toPoint(), Middle(2));
}

TEST_F(ReportControlTest, ColoursForLightPaperTurnRoundOnADarkGround) {
    const QColor dark(0x1E, 0x21, 0x25);
    EXPECT_EQ(ReportPaint::TextColourOn(Qt::white, QColor(128, 0, 0)), QColor(128, 0, 0));
    EXPECT_GT(ReportPaint::TextColourOn(dark, QColor(128, 0, 0)).lightness(), 128);
    EXPECT_EQ(ReportPaint::BackColourOn(dark, Qt::white), dark);
    EXPECT_EQ(ReportPaint::BackColourOn(Qt::white, QColor(250, 250, 200)), QColor(250, 250, 200));
}

}  // namespace
