#include "tracking/HistoryStatus.h"

#include <gtest/gtest.h>

namespace {

MessageState State(qint32 status) {
    MessageState state;
    state.Status = status;
    return state;
}

TEST(HistoryStatus, EveryStatusHasItsIconAndSixAndSevenCrossOver) {
    const QList<int> icons = {0, 1, 2, 3, 4, 5, 7, 6};
    for (int status = 0; status < icons.size(); ++status) {
        EXPECT_EQ(HistoryStatus::StatusIcon(status), icons[status]) << status;
    }
    for (const qint32 status : {-1, 8, 9, 250, -32768}) {
        EXPECT_EQ(HistoryStatus::StatusIcon(status), 8) << status;
    }
}

TEST(HistoryStatus, TheSentencesStandAsTheyAre) {
    EXPECT_EQ(HistoryStatus::StatusSentence(State(0)),
              QStringLiteral(" The message is waiting to be processed. "));
    EXPECT_EQ(HistoryStatus::StatusSentence(State(1)),
              QStringLiteral(" The message is being sent to your network operator. "));
    EXPECT_EQ(HistoryStatus::StatusSentence(State(2)), QStringLiteral(" The message was canceled. "));
    EXPECT_EQ(HistoryStatus::StatusSentence(State(3)),
              QStringLiteral(" The message is en route with the network operator. "));
    EXPECT_EQ(HistoryStatus::StatusSentence(State(4)), QStringLiteral(" The message could not be sent. "));
    EXPECT_EQ(HistoryStatus::StatusSentence(State(6)),
              QStringLiteral(" Message delivery could not be confirmed. "));
}

TEST(HistoryStatus, ADeliveredMessageTellsItsTimeAndNothingWithoutOne) {
    MessageState state = State(5);
    EXPECT_EQ(HistoryStatus::StatusSentence(state), QStringLiteral(" The message has been delivered. "));
    state.DeliveryTime = QDateTime(QDate(1899, 12, 30), QTime(0, 0));
    EXPECT_EQ(HistoryStatus::StatusSentence(state), QStringLiteral(" The message has been delivered. "));
    state.DeliveryTime = QDateTime(QDate(2026, 3, 7), QTime(9, 5));
    EXPECT_EQ(HistoryStatus::StatusSentence(state), QStringLiteral(" The message was delieverd at 09:05. "));
}

TEST(HistoryStatus, ANumberBehindAMessageNotDeliveredIsOneByteInHexadecimal) {
    MessageState state = State(7);
    const QList<std::pair<qint32, QString>> cases = {{65, QStringLiteral("41")},
                                                     {10, QStringLiteral("A")},
                                                     {0, QStringLiteral("0")},
                                                     {255, QStringLiteral("FF")},
                                                     {256 + 10, QStringLiteral("A")}};
    for (const auto& [deliveryStatus, shown] : cases) {
        state.DeliveryStatus = deliveryStatus;
        EXPECT_EQ(HistoryStatus::StatusSentence(state),
                  QStringLiteral(" The message could not be delivered. [0x%1] ").arg(shown));
    }
}

TEST(HistoryStatus, TheReasonStandsDirectlyBehindACanceledMessage) {
    MessageState state = State(2);
    state.ErrorReason = QStringLiteral("Canceled by user");
    EXPECT_EQ(HistoryStatus::StatusSentence(state),
              QStringLiteral(" The message was canceled. Canceled by user"));
}

TEST(HistoryStatus, AnUnknownStatusStandsBetweenBracketsInDecimal) {
    EXPECT_EQ(HistoryStatus::StatusSentence(State(9)),
              QStringLiteral(" The message status [9] is unusual. "));
    EXPECT_EQ(HistoryStatus::StatusSentence(State(-1)),
              QStringLiteral(" The message status [-1] is unusual. "));
}

TEST(HistoryStatus, CanceledNotSentAndNotDeliveredAreBadNews) {
    for (const qint32 status : {2, 4, 7}) {
        EXPECT_TRUE(HistoryStatus::IsBadNews(status)) << status;
    }
    for (const qint32 status : {0, 1, 3, 5, 6, 8, 9, -1}) {
        EXPECT_FALSE(HistoryStatus::IsBadNews(status)) << status;
    }
}

}  // namespace
