#include "tools/GatewayFixture.h"

#include "common/ExitCode.h"
#include "larkspan-gateway/GatewayCommand.h"

using namespace MessageStatus;

namespace {

class GatewayRecovery : public GatewayFixture {
protected:
    /// As a gateway leaves a row that was killed.
    qint32 RowAt(qint32 status, const QString& address = QStringLiteral("+353209112345")) {
        const qint32 id = Office.AddMessage(Now().addSecs(-10), address);
        Office.Execute(
            Office.Outbox(),
            QStringLiteral("UPDATE Message SET msgStatus = %1 WHERE msgID = %2").arg(status).arg(id));
        return id;
    }
};

}  // namespace

TEST_F(GatewayRecovery, ARowThatAKilledRunLeftAtTheHandOverEndsUnconfirmedAndIsNotSentAgain) {
    const qint32 id = RowAt(Handing);
    RunUntilIdle();
    EXPECT_EQ(Office.Status(id), Unconfirmed);
    EXPECT_TRUE(Office.Field(id, QStringLiteral("msgComplete")).toBool());
    EXPECT_EQ(Office.Field(id, QStringLiteral("msgErrorReason")).toString(),
              QStringLiteral("The gateway was interrupted while it handed the message over"));
    EXPECT_TRUE(Operator.Sent.isEmpty());
    EXPECT_EQ(Ends, (QList<Ended>{{id, Unconfirmed, 0}}));
}

TEST_F(GatewayRecovery, ARowThatWasEnRouteGoesOnToItsReport) {
    const qint32 id = RowAt(EnRoute);
    const qint32 lost = RowAt(EnRoute, QStringLiteral("+353209112007"));
    RunUntilIdle();
    EXPECT_EQ(Office.Status(id), Delivered);
    EXPECT_EQ(Office.Status(lost), NotDelivered);
    EXPECT_TRUE(Operator.Sent.isEmpty());
}

TEST_F(GatewayRecovery, ARowThatWasAcceptedOnceIsNotSaidToBeUnsentLater) {
    const qint32 id = RowAt(EnRoute, QStringLiteral("+353209112004"));
    RunUntilIdle();
    EXPECT_EQ(Office.Status(id), NotDelivered);
}

TEST_F(GatewayRecovery, OnceFinishesWhatAnEarlierRunLeft) {
    const qint32 id = RowAt(EnRoute);
    Settings.Mode = GatewaySettings::RunMode::Once;
    RunAlone();
    EXPECT_EQ(Office.Status(id), Delivered);
}

TEST_F(GatewayRecovery, MoreRowsThanOneLookTakesAreAllFinished) {
    Office.AddMessages(2100, Now().addSecs(-10));
    Office.Execute(Office.Outbox(), QStringLiteral("UPDATE Message SET msgStatus = 3 WHERE msgID > 0"));
    RunUntilIdle();
    EXPECT_EQ(Office.Statuses(), (QMap<int, int>{{Delivered, 2100}}));
    Office.Execute(Office.Outbox(), QStringLiteral("UPDATE Message SET msgStatus = 1 WHERE msgID > 0"));
    RunUntilIdle();
    EXPECT_EQ(Office.Statuses(), (QMap<int, int>{{Unconfirmed, 2100}}));
}

TEST_F(GatewayRecovery, RowsOfAGatewayThatStillLivesAreLeftAlone) {
    GatewayLock otherLock(Office.Folder());
    const auto other = NewGateway(otherLock);
    Office.AddMessages(5, Now());
    ASSERT_TRUE(other->Round().has_value());
    ASSERT_EQ(Office.Statuses(), (QMap<int, int>{{Handing, 5}}));
    RunUntilIdle();  // ends: what is on its way belongs to the other one
    EXPECT_EQ(Office.Statuses(), (QMap<int, int>{{Handing, 5}}));
    for (int i = 0; i < 3; ++i) {
        Time.Sleep(5000);
        ASSERT_TRUE(other->Round().has_value());
    }
    EXPECT_EQ(Office.Statuses(), (QMap<int, int>{{Delivered, 5}}));
}

TEST_F(GatewayRecovery, WhatADeadGatewayLeftIsTakenOnByTheOneThatStillRuns) {
    const auto ids = Office.AddMessages(5, Now());
    GatewayLock lock(Office.Folder());
    const auto survivor = NewGateway(lock);
    {
        GatewayLock otherLock(Office.Folder());
        const auto other = NewGateway(otherLock);
        ASSERT_TRUE(other->Round().has_value());
        ASSERT_TRUE(survivor->Round().has_value());
        EXPECT_EQ(Office.Statuses(), (QMap<int, int>{{Handing, 5}}));
    }  // gone without a word, as after a kill
    Time.Sleep(5000);
    ASSERT_TRUE(survivor->Round().has_value());
    EXPECT_EQ(Office.Statuses(), (QMap<int, int>{{Unconfirmed, 5}}));
    for (const qint32 id : ids) {
        EXPECT_EQ(Operator.Sent.value(id), 1);
    }
}

TEST_F(GatewayRecovery, TwoGatewaysTurnByTurnNeverSendARowTwice) {
    const auto ids = Office.AddMessages(300, Now());
    GatewayLock firstLock(Office.Folder());
    GatewayLock secondLock(Office.Folder());
    const auto first = NewGateway(firstLock);
    const auto second = NewGateway(secondLock);
    for (int i = 0; i < 40; ++i) {
        ASSERT_TRUE(first->Round().has_value());
        ASSERT_TRUE(second->Round().has_value());
        Time.Sleep(500);
    }
    EXPECT_EQ(Office.Statuses(), (QMap<int, int>{{Delivered, 300}}));
    for (const qint32 id : ids) {
        EXPECT_EQ(Operator.Sent.value(id), 1);
    }
    EXPECT_GT(first->Done().HandedOver, 0);
    EXPECT_GT(second->Done().HandedOver, 0);
    EXPECT_EQ(first->Done().HandedOver + second->Done().HandedOver, 300);
}

TEST_F(GatewayRecovery, AMessageCanceledBetweenTheLookAndTheTakingIsNotSent) {
    // The first hand-over of a batch happens after all of it was taken, so the cancel is put where the second
    // look begins.
    const auto ids = Office.AddMessages(60, Now());
    Operator.OnSend = [&](qint32 id) {
        if (id == ids[0]) {
            EXPECT_FALSE(Office.Cancel(ids[1]));  // taken together with the first
            EXPECT_TRUE(Office.Cancel(ids[55]));
        }
    };
    RunUntilIdle();
    EXPECT_EQ(Office.Statuses(), (QMap<int, int>{{Canceled, 1}, {Delivered, 59}}));
    EXPECT_FALSE(Operator.Sent.contains(ids[55]));
}
