#include "tracking/MessageTrackerFixture.h"

using Operation = FakeEngine::Operation;

TEST_F(MessageTrackerTest, WithNothingPendingNoPollRunsAndTheNextMessageIsPolledAtOnce) {
    EXPECT_FALSE(Tracker.CheckDB());
    EXPECT_FALSE(Tracker.NextCheck().isValid());
    EXPECT_EQ(Engine.Attempts(Operation::Open), 0);
    Track(1);
    EXPECT_TRUE(Tracker.CheckDB());
}

TEST_F(MessageTrackerTest, AllPendingMessagesAreReadInOneStatement) {
    Track(17);
    Track(18);
    Track(40000);
    EXPECT_TRUE(Tracker.CheckDB());
    EXPECT_EQ(Engine.Statements,
              QStringList{QStringLiteral("SELECT msgID, msgStatus, msgDeliveryTime FROM Message WHERE "
                                         "msgID = 17 OR msgID = 18 OR msgID = 40000")});
    EXPECT_EQ(Engine.Modes, QList<qint32>{17});
    EXPECT_EQ(Engine.Cursors, QList<engine::CursorType>{engine::CursorType::ForwardOnly});
    EXPECT_EQ(Engine.Locks, QList<engine::LockType>{engine::LockType::ReadOnly});
}

TEST_F(MessageTrackerTest, AFullTableIsStillOneStatement) {
    for (qint32 id = 1; id <= 50; ++id) {
        Track(id);
    }
    EXPECT_TRUE(Tracker.CheckDB());
    ASSERT_EQ(Engine.Statements.size(), 1);
    EXPECT_EQ(Engine.Statements.first().count(QStringLiteral("msgID = ")), 50);
}

TEST_F(MessageTrackerTest, TheOutboxIsClosedAfterThePollThatOpenedIt) {
    Track(1);
    EXPECT_TRUE(Tracker.CheckDB());
    EXPECT_FALSE(Outbox.OutboxDB->IsConnected());
    EXPECT_EQ(Engine.OpenConnections, 0);
    EXPECT_EQ(Engine.OpenRecordsets, 0);
}

TEST_F(MessageTrackerTest, AnOutboxThatIsOpenIsUsedAndStaysOpen) {
    ASSERT_TRUE(Outbox.OutboxDB->OpenDatabase(engine::Mode::ReadWriteShared));
    Track(1);
    EXPECT_TRUE(Tracker.CheckDB());
    EXPECT_EQ(Engine.Attempts(Operation::Open), 1);
    EXPECT_TRUE(Outbox.OutboxDB->IsConnected());
    EXPECT_EQ(Engine.OpenRecordsets, 0);
}

TEST_F(MessageTrackerTest, AnOutboxThatCannotBeOpenedIsTriedAgainAfterTheIntervalSilently) {
    Engine.Fail(Operation::Open, engine::Number::NoSuchFile);
    Track(1);
    EXPECT_FALSE(Tracker.CheckDB());
    EXPECT_EQ(Tracker.NextCheck(), Time.Time.addSecs(60));
    EXPECT_EQ(IDs(1), QList<qint32>{1});
    Engine.StopFailing();
    EXPECT_FALSE(Tracker.CheckDB());
    PassInterval();
    EXPECT_TRUE(Tracker.CheckDB());
}

TEST_F(MessageTrackerTest, WithoutAnOutboxThePollFailsSilently) {
    Outbox.OutboxDB.reset();
    Track(1);
    EXPECT_EQ(Tracker.Update(), 0);
    EXPECT_EQ(Tracker.NextCheck(), Time.Time.addSecs(60));
    EXPECT_EQ(IDs(1), QList<qint32>{1});
}

TEST_F(MessageTrackerTest, AStatementThatFailsClosesTheOutboxAndIsTriedAgainAfterTheInterval) {
    Engine.Fail(Operation::Recordset, engine::Number::NoSuchTable);
    Track(1);
    EXPECT_EQ(Tracker.Update(), 0);
    EXPECT_EQ(Sink.Calls, 0);
    EXPECT_EQ(Tracker.NextCheck(), Time.Time.addSecs(60));
    EXPECT_EQ(Engine.OpenConnections, 0);
    EXPECT_EQ(IDs(1), QList<qint32>{1});
}

TEST_F(MessageTrackerTest, AStatementThatFailsLeavesAnOutboxOpenThatWasOpen) {
    ASSERT_TRUE(Outbox.OutboxDB->OpenDatabase(engine::Mode::ReadShared));
    Engine.Fail(Operation::Recordset, engine::Number::NoSuchTable);
    Track(1);
    EXPECT_FALSE(Tracker.CheckDB());
    EXPECT_TRUE(Outbox.OutboxDB->IsConnected());
}

TEST_F(MessageTrackerTest, ThePollRunsAgainWhenTheIntervalHasPassedAndNotBefore) {
    Track(1);
    EXPECT_TRUE(Tracker.CheckDB());
    EXPECT_EQ(Tracker.NextCheck(), Time.Time.addSecs(60));
    Time.Time = Time.Time.addSecs(59);
    EXPECT_FALSE(Tracker.CheckDB());
    Time.Time = Time.Time.addSecs(1);
    EXPECT_TRUE(Tracker.CheckDB());
    EXPECT_EQ(Engine.Statements.size(), 2);
}

TEST_F(MessageTrackerTest, AnIntervalOfZeroPollsOnEveryTick) {
    Tracker.RefreshInterval = 0;
    Track(1);
    EXPECT_TRUE(Tracker.CheckDB());
    EXPECT_TRUE(Tracker.CheckDB());
}

TEST_F(MessageTrackerTest, ANegativeIntervalPollsOnEveryTick) {
    Tracker.RefreshInterval = -5;
    Track(1);
    EXPECT_TRUE(Tracker.CheckDB());
    EXPECT_TRUE(Tracker.CheckDB());
}

TEST_F(MessageTrackerTest, StatusAndDeliveryTimeGoIntoTheSlotOfTheMessage) {
    Track(17);
    Track(18);
    Serve({Row(18, 5, At(9, 7)), Row(17, 1)});
    EXPECT_TRUE(Tracker.CheckDB());
    EXPECT_EQ(Tracker.SlotAt(0).status, 1);
    EXPECT_EQ(Tracker.SlotAt(0).deliveryTime, QString());
    EXPECT_EQ(Tracker.SlotAt(1).status, 5);
    EXPECT_EQ(Tracker.SlotAt(1).deliveryTime, u"09:07");
}

TEST_F(MessageTrackerTest, ARowWithoutASlotIsSkipped) {
    Track(17);
    Serve({Row(99, 5), Row(0, 5), Row(17, 3)});
    EXPECT_TRUE(Tracker.CheckDB());
    EXPECT_EQ(Tracker.SlotAt(0).status, 3);
    EXPECT_EQ(Tracker.SlotAt(1).status, 0);
    EXPECT_EQ(IDs(2), (QList<qint32>{17, 0}));
}

TEST_F(MessageTrackerTest, AFinalMessageWithoutADeliveryTimeHasAnEmptyOne) {
    Track(17);
    Serve({Row(17, 5, At(9, 7))});
    Tracker.SetSink(nullptr);
    EXPECT_EQ(Tracker.Update(), 0);
    EXPECT_EQ(Tracker.SlotAt(0).deliveryTime, u"09:07");
    Tracker.CancelTracking(17);
    Track(18);
    Serve({Row(18, 5)});
    PassInterval();
    Tracker.Update();
    EXPECT_EQ(Tracker.SlotAt(0).status, 5);
    EXPECT_EQ(Tracker.SlotAt(0).deliveryTime, QString());
}

TEST_F(MessageTrackerTest, ADeliveryTimeThatHasBecomeNullIsForgotten) {
    Track(17);
    Serve({Row(17, 3, At(9, 7))});
    ASSERT_TRUE(Tracker.CheckDB());
    ASSERT_EQ(Tracker.SlotAt(0).deliveryTime, u"09:07");
    Serve({Row(17, 3)});
    PassInterval();
    ASSERT_TRUE(Tracker.CheckDB());
    EXPECT_EQ(Tracker.SlotAt(0).deliveryTime, QString());
}

TEST_F(MessageTrackerTest, AStatusThatIsNullStaysWhatItWas) {
    Track(17);
    Serve({Row(17, 3)});
    ASSERT_TRUE(Tracker.CheckDB());
    Serve({Row(17, QVariant(), At(9, 7))});
    PassInterval();
    ASSERT_TRUE(Tracker.CheckDB());
    EXPECT_EQ(Tracker.SlotAt(0).status, 3);
    EXPECT_EQ(Tracker.SlotAt(0).deliveryTime, u"09:07");
}

TEST_F(MessageTrackerTest, AMessageThatTheGatewayDeletedStaysPendingAndIsPolledOn) {
    Track(17);
    Serve({});
    for (int poll = 0; poll < 3; ++poll) {
        EXPECT_EQ(Tracker.Update(), 0);
        PassInterval();
    }
    EXPECT_EQ(Engine.Statements.size(), 3);
    EXPECT_EQ(Tracker.SlotAt(0).msgID, 17);
}

TEST_F(MessageTrackerTest, WaitingMessagesGiveNoNoticeWhateverTheOrderOfTheirStatus) {
    Track(17);
    for (const int status : {0, 1, 4, 3, 4, 1}) {
        Serve({Row(17, status)});
        EXPECT_EQ(Tracker.Update(), 0);
        EXPECT_EQ(Tracker.SlotAt(0).status, status);
        PassInterval();
    }
    EXPECT_TRUE(Sink.Final.isEmpty());
    EXPECT_EQ(Engine.Statements.size(), 6);
}

TEST_F(MessageTrackerTest, EveryOtherStatusIsHandedOverOnceAndForgotten) {
    qint32 id = 0;
    for (const int status : {2, 5, 6, 7, 9, 255}) {
        Track(++id);
        Serve({Row(id, status)});
        EXPECT_EQ(Tracker.Update(), status == 7 ? 1 : 0) << "status " << status;
        ASSERT_EQ(Sink.Final.size(), id);
        EXPECT_EQ(Sink.Final.last().status, status);
        EXPECT_EQ(Tracker.SlotAt(0).msgID, 0);
        PassInterval();
    }
    EXPECT_EQ(Tracker.Update(), 0);
    EXPECT_EQ(Sink.Final.size(), 6);
}

TEST_F(MessageTrackerTest, UpdateReturnsTheNumberOfFailures) {
    Track(1);
    Track(2);
    Track(3);
    Serve({Row(1, 7), Row(2, 5), Row(3, 7)});
    EXPECT_EQ(Tracker.Update(), 2);
}

TEST_F(MessageTrackerTest, FinalMessagesWaitWhileThereIsNobodyToTell) {
    Tracker.SetSink(nullptr);
    Track(17);
    Track(18);
    Serve({Row(17, 5), Row(18, 1)});
    EXPECT_EQ(Tracker.Update(), 0);
    EXPECT_EQ(Tracker.SlotAt(0).status, 5);
    Tracker.SetSink(&Sink);
    PassInterval();
    EXPECT_EQ(Tracker.Update(), 0);
    EXPECT_EQ(Engine.Statements.last().count(QStringLiteral("msgID = ")), 1)
        << "a final message is not read again";
    ASSERT_EQ(Sink.Final.size(), 1);
    EXPECT_EQ(Sink.Final.first().msgID, 17);
}

TEST_F(MessageTrackerTest, FinalMessagesAloneStartNoPoll) {
    Tracker.SetSink(nullptr);
    Track(17);
    Serve({Row(17, 5)});
    Tracker.Update();
    PassInterval();
    const QDateTime before = Tracker.NextCheck();
    EXPECT_FALSE(Tracker.CheckDB());
    EXPECT_EQ(Tracker.NextCheck(), before);
    EXPECT_EQ(Engine.Statements.size(), 1);
}

TEST_F(MessageTrackerTest, ANotificationThatFailsIsPassedOver) {
    Sink.IsFailing = true;
    Track(17);
    Serve({Row(17, 7)});
    EXPECT_EQ(Tracker.Update(), 0);
    EXPECT_EQ(Sink.Calls, 1);
    EXPECT_EQ(Tracker.SlotAt(0).msgID, 17);
}

TEST_F(MessageTrackerTest, ATickInsideAPollStartsNoSecondOne) {
    Track(17);
    Serve({Row(17, 7)});
    Engine.Fail(Operation::Recordset, engine::Number::LockedByAnother, 1, 1);
    int inner = 0;
    Pump.OnProcess = [&](int) {
        ++inner;
        EXPECT_EQ(Tracker.Update(), 0);
    };
    EXPECT_EQ(Tracker.Update(), 1);
    EXPECT_GT(inner, 0);
    EXPECT_EQ(Sink.Final.size(), 1);
    EXPECT_EQ(Engine.Statements.size(), 2) << "the two attempts of one poll";
}

TEST_F(MessageTrackerTest, AMessageCanceledDuringAPollIsNotBroughtBack) {
    Track(17);
    Serve({Row(17, 7)});
    Engine.Fail(Operation::Recordset, engine::Number::LockedByAnother, 1, 1);
    Pump.OnProcess = [&](int) { Tracker.CancelTracking(17); };
    EXPECT_EQ(Tracker.Update(), 0);
    EXPECT_TRUE(Sink.Final.isEmpty());
}

TEST_F(MessageTrackerTest, AnOutboxThatIsReplacedDuringAPollIsLeftAsItsNewUserWantsIt) {
    Track(17);
    Engine.Fail(Operation::Recordset, engine::Number::LockedByAnother, 1, 1);
    Pump.OnProcess = [&](int) {
        if (Outbox.Replaced.empty()) {
            Outbox.OutboxDB->CloseDatabase();
            Outbox.Replaced.push_back(std::move(Outbox.OutboxDB));
            Outbox.OutboxDB = std::make_unique<DB>(DBServices{Engine, Time, Pump, Drives, Folders});
            ASSERT_TRUE(Outbox.OutboxDB->OpenDatabase(engine::Mode::ReadShared));
        }
    };
    EXPECT_FALSE(Tracker.CheckDB());
    EXPECT_TRUE(Outbox.OutboxDB->IsConnected());
}

TEST_F(MessageTrackerTest, AnOutboxThatIsReplacedWhileItIsOpenedIsNotLeftOpen) {
    Track(17);
    Engine.Fail(Operation::Open, engine::Number::FileInUse, 1, 1);
    Pump.OnProcess = [&](int) {
        if (Outbox.Replaced.empty()) {
            Outbox.Replaced.push_back(std::move(Outbox.OutboxDB));
            Outbox.OutboxDB = std::make_unique<DB>(DBServices{Engine, Time, Pump, Drives, Folders});
        }
    };
    EXPECT_TRUE(Tracker.CheckDB());
    EXPECT_EQ(Engine.OpenConnections, 0);
}
