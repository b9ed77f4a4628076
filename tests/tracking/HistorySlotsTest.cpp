#include "tracking/HistorySlots.h"

#include "tracking/History.h"

#include <gtest/gtest.h>

namespace {

QList<HistoryRecord> Records(int count) {
    QList<HistoryRecord> records;
    for (int i = 0; i < count; ++i) {
        HistoryRecord record;
        record.MessageID = 1000 + i;
        records.append(record);
    }
    return records;
}

TEST(HistorySlots, AreFreeWithoutAStatusAtFirst) {
    HistorySlots slots;
    slots.At(3) = {17, 5};
    slots.InitMsgArray();
    for (int i = 0; i < HistorySlots::Count; ++i) {
        EXPECT_EQ(slots.At(i).MessageID, 0);
        EXPECT_EQ(slots.At(i).Status, -1);
    }
}

TEST(HistorySlots, OfALongHistoryTheHundredNewestAreTaken) {
    HistorySlots slots;
    slots.LoadHistoryIDs(Records(250));
    EXPECT_EQ(slots.At(0).MessageID, 1000);
    EXPECT_EQ(slots.At(99).MessageID, 1099);
    EXPECT_EQ(slots.FindSlot(1100), -1);
    EXPECT_EQ(slots.FindSlot(1099), 99);
    EXPECT_EQ(slots.FindSlot(0), -1) << "no slot is free";
}

TEST(HistorySlots, TheFirstFreeOneIsFoundByTheIdZero) {
    HistorySlots slots;
    slots.LoadHistoryIDs(Records(7));
    EXPECT_EQ(slots.FindSlot(0), 7);
}

TEST(HistorySlots, ScrollingMovesAllUpLosesTheLastAndKeepsTheFirst) {
    HistorySlots slots;
    slots.LoadHistoryIDs(Records(100));
    slots.At(0).Status = 5;
    slots.ScrollMsgArray();
    EXPECT_EQ(slots.At(0).MessageID, 1000);
    EXPECT_EQ(slots.At(1).MessageID, 1000);
    EXPECT_EQ(slots.At(1).Status, 5);
    EXPECT_EQ(slots.At(99).MessageID, 1098);
    EXPECT_EQ(slots.FindSlot(1099), -1);
}

TEST(HistorySlots, TheFirstStatementAsksForEveryIdInTheOrderOfTheSlots) {
    HistorySlots slots;
    slots.At(0).MessageID = 9;
    slots.At(5).MessageID = 7;
    EXPECT_EQ(
        slots.OwnLoadSQL(),
        QStringLiteral("SELECT msgID, msgSendTime, msgStatus, msgRecipient, msgText, msgBodyTextSize, "
                       "msgDeliveryStatus, msgDeliveryTime, msgErrorReason FROM Message WHERE MsgID = 9 "
                       "OR MsgID = 7 ORDER BY msgSendTime DESC;"));
}

TEST(HistorySlots, WithoutAnyIdNothingStandsBetweenWhereAndOrder) {
    EXPECT_TRUE(HistorySlots().OwnLoadSQL().endsWith(
        QStringLiteral("FROM Message WHERE ORDER BY msgSendTime DESC;")));
}

TEST(HistorySlots, TheRefreshAsksOnlyForWhatCanStillChange) {
    HistorySlots slots;
    const QList<qint32> statuses = {0, 1, 2, 3, 4, 5, 6, 7, 9, -1};
    for (int i = 0; i < statuses.size(); ++i) {
        slots.At(i) = {i + 1, statuses[i]};
    }
    slots.At(50) = {0, 0};  // free
    EXPECT_EQ(slots.OwnRefreshSQL(),
              QStringLiteral("SELECT msgID, msgStatus, msgDeliveryStatus, msgDeliveryTime, msgErrorReason "
                             "FROM Message WHERE MsgID = 1 OR MsgID = 2 OR MsgID = 4 OR MsgID = 5 ORDER BY "
                             "msgSendTime DESC;"));
}

TEST(HistorySlots, WithEverythingFinalThereIsNothingToAsk) {
    HistorySlots slots;
    slots.At(0) = {1, 5};
    slots.At(1) = {2, -1};
    EXPECT_EQ(slots.OwnRefreshSQL(), QString());
}

TEST(HistorySlots, ThePublicHistoryReachesOneMinuteAhead) {
    EXPECT_EQ(HistorySlots::PublicSQL(QDateTime(QDate(2026, 3, 7), QTime(23, 59, 30))),
              QStringLiteral("SELECT TOP 100 msgSendTime, msgID, msgComplete, msgStatus, msgDeliveryStatus, "
                             "msgRecipient, msgText, msgSignature, msgStation, msgBodyTextSize, "
                             "msgDeliveryTime, msgErrorReason FROM Message WHERE msgSendTime <= "
                             "#08/Mar/2026 00:00:30# ORDER BY msgSendTime DESC, msgID DESC;"));
}

}  // namespace
