#include "support/PaintCount.h"
#include "support/RawDatabase.h"
#include "tracking/HistoryBench.h"

#include <QSignalSpy>

namespace {

/// The window's passes over the outbox: when they run, and what they leave alone.
using HistoryPass = HistoryBench;

TEST_F(HistoryPass, TheTimerIsOffUntilTheFirstPassIsOver) {
    AddOwn(0);
    Form = std::make_unique<frmHistory>(Services());
    EXPECT_FALSE(Timer().isActive());
    bool wasActive = false;
    Office.Pump.OnProcess = [&](int) { wasActive = wasActive || Timer().isActive(); };
    Form->LoadHistory();
    EXPECT_FALSE(wasActive);
    EXPECT_TRUE(Timer().isActive());
}

TEST_F(HistoryPass, TheLoadLetsEventsRunFourTimesBetweenTheColumnsAndTheFirstPass) {
    AddOwn(0);
    int columns = -1;
    int rows = -1;
    Office.Pump.Calls.clear();
    Office.Pump.OnProcess = [&](int) {
        columns = Grid().model()->columnCount();
        rows = Grid().RecordCount();
    };
    Open();
    EXPECT_EQ(Office.Pump.Calls, QList<int>{4});
    EXPECT_EQ(columns, 3);
    EXPECT_EQ(rows, 0);
    EXPECT_EQ(Grid().RecordCount(), 1);
}

TEST_F(HistoryPass, TheHourglassStandsDuringAPassThatGetsThroughAndGoesWithIt) {
    const qint32 id = AddOwn(0);
    Open();
    SetStatus(id, 1);
    RawDatabase gateway(Office.OutboxPath());
    gateway.Execute(QStringLiteral("BEGIN EXCLUSIVE"));
    QList<Qt::CursorShape> shapes;
    Office.Pump.OnProcess = [&](int) {
        shapes.append(Form->cursor().shape());
        if (shapes.size() == 1) {
            gateway.Execute(QStringLiteral("COMMIT"));
        }
    };
    Form->UpdateHistory(false);
    ASSERT_FALSE(shapes.isEmpty()) << "nothing waited";
    EXPECT_EQ(shapes.first(), Qt::WaitCursor);
    EXPECT_EQ(RowOf(id).Items[0].Icon, 1);
    EXPECT_EQ(Form->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(HistoryPass, APassWithNothingNewRepaintsNothing) {
    AddOwn(3);
    Open();
    Form->UpdateHistory(false);
    QSignalSpy changes(Grid().model(), &QAbstractItemModel::dataChanged);
    QSignalSpy resets(Grid().model(), &QAbstractItemModel::modelReset);
    Form->UpdateHistory(false);
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(resets.count(), 0);
}

TEST_F(HistoryPass, ATickWithNothingNewPaintsNothingAtAllInEitherMode) {
    for (const bool isPublic : {false, true}) {
        const qint32 id = AddOwn(3);
        Open(isPublic);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(Form.get()));
        FireTimer();  // after the load every message is asked for once more
        for (int pass = 0; pass < 10; ++pass) {
            QCoreApplication::processEvents();
        }
        const PaintCount rows(*Grid().viewport());
        const PaintCount form(*Form);
        FireTimer();
        QCoreApplication::processEvents();
        EXPECT_EQ(rows.Count, 0) << isPublic;
        EXPECT_EQ(form.Count, 0) << isPublic;
        SetStatus(id, 5);
        FireTimer();
        QCoreApplication::processEvents();
        EXPECT_GE(rows.Count, 1) << "a change is painted";
    }
}

TEST_F(HistoryPass, APassWaitsFifteenSecondsFromTheEndOfTheOneBefore) {
    const qint32 id = AddOwn(0);
    Open();
    EXPECT_EQ(Timer().interval(), 15000);
    EXPECT_TRUE(Timer().isActive());
    Office.Pump.Calls.clear();
    bool wasActive = true;
    Office.Pump.OnProcess = [&](int) { wasActive = Timer().isActive(); };
    SetStatus(id, 1);
    FireTimer();
    EXPECT_FALSE(wasActive) << "a tick must not fall into a pass";
    EXPECT_EQ(Office.Pump.Calls, QList<int>{4});
    EXPECT_EQ(RowOf(id).Items[0].Icon, 1);
    EXPECT_TRUE(Timer().isActive());
}

TEST_F(HistoryPass, AnOutboxThatCannotBeOpenedDropsThePassAndLeavesTheHourglass) {
    const qint32 id = AddOwn(0);
    Open();
    const QString path = Office.OutboxDB().Filename;
    Office.OutboxDB().Filename = path + QStringLiteral(".gone");
    SetStatus(id, 1);
    Form->UpdateHistory(false);
    EXPECT_EQ(RowOf(id).Items[0].Icon, 0);
    EXPECT_EQ(Form->cursor().shape(), Qt::WaitCursor);
    Office.OutboxDB().Filename = path;
    Form->UpdateHistory(false);
    EXPECT_EQ(RowOf(id).Items[0].Icon, 1);
    EXPECT_EQ(Form->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(HistoryPass, LeavesTheOutboxClosedAfterEachPass) {
    AddOwn(0);
    Open();
    EXPECT_FALSE(Office.OutboxDB().IsConnected());
    Form->UpdateHistory(false);
    EXPECT_FALSE(Office.OutboxDB().IsConnected());
}

TEST_F(HistoryPass, APublicPassWithNothingNewRepaintsNothing) {
    AddRow(3);
    Open(true);
    QSignalSpy changes(Grid().model(), &QAbstractItemModel::dataChanged);
    QSignalSpy resets(Grid().model(), &QAbstractItemModel::modelReset);
    Form->UpdateHistory(false);
    EXPECT_EQ(changes.count() + resets.count(), 0);
}

}  // namespace
