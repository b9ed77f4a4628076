#include "larkspan-gateway/GatewayOutbox.h"

#include "larkspan-gateway/MessageStatus.h"
#include "support/UnreadableDisk.h"
#include "tools/TestOffice.h"

#include <gtest/gtest.h>

using namespace MessageStatus;

namespace {

const QDateTime Noon(QDate(2026, 3, 7), QTime(12, 0));

QList<StatusMove> Taking(const QList<OutboxRow>& rows) {
    QList<StatusMove> moves;
    for (const OutboxRow& row : rows) {
        moves.append({row.ID, Waiting, Handing, {}});
    }
    return moves;
}

}  // namespace

TEST(GatewayOutbox, ARowThatIsCanceledAfterTheLookIsNotTaken) {
    TestOffice office;
    const auto ids = office.AddMessages(3, Noon);
    GatewayOutbox outbox(office.Machine.Services(), office.Outbox());
    outbox.Open();
    const auto rows = outbox.Due(Noon, 10);
    ASSERT_EQ(rows.size(), 3);
    ASSERT_TRUE(office.Cancel(ids[1]));
    EXPECT_EQ(outbox.Make(Taking(rows)), (QList<qint32>{ids[0], ids[2]}));
    EXPECT_EQ(office.Status(ids[1]), Canceled);
}

TEST(GatewayOutbox, OfTwoThatSawTheSameRowsOneTakesThem) {
    TestOffice office;
    const auto ids = office.AddMessages(3, Noon);
    GatewayOutbox first(office.Machine.Services(), office.Outbox());
    GatewayOutbox second(office.Machine.Services(), office.Outbox());
    first.Open();
    second.Open();
    const auto seenByFirst = first.Due(Noon, 10);
    const auto seenBySecond = second.Due(Noon, 10);
    EXPECT_EQ(first.Make(Taking(seenByFirst)), ids);
    EXPECT_EQ(seenBySecond.size(), 3);
    EXPECT_TRUE(second.Make(Taking(seenBySecond)).isEmpty());
}

TEST(GatewayOutbox, AStepThatFailsInTheMiddleLeavesNothingOfIt) {
    TestOffice office;
    office.AddMessages(3, Noon);
    GatewayOutbox outbox(office.Machine.Services(), office.Outbox());
    outbox.Open();
    QList<StatusMove> moves = Taking(outbox.Due(Noon, 10));
    moves[1].Assignments = QStringLiteral(", msgNoSuchColumn = 1");
    try {
        static_cast<void>(outbox.Make(moves));
        ADD_FAILURE() << "an unknown column was written";
    } catch (const OutboxFailure& failure) {
        EXPECT_FALSE(failure.CanTryAgain());
    }
    EXPECT_EQ(office.Statuses(), (QMap<int, int>{{Waiting, 3}}));
    moves[1].Assignments.clear();
    EXPECT_EQ(outbox.Make(moves).size(), 3);  // and the outbox is ready for the next step
}

TEST(GatewayOutbox, AStepThatTheDiskTookBackCanBeMadeAgainAsAWhole) {
    UnreadableDisk disk;
    TestOffice office;
    const auto ids = office.AddMessages(3, Noon);
    GatewayOutbox outbox(office.Machine.Services(), office.Outbox());
    outbox.Open();
    const auto moves = QList<StatusMove>{{ids[0], Waiting, Handing, {}}, {ids[1], Waiting, Handing, {}}};
    disk.Failures = 1;
    try {
        static_cast<void>(outbox.Make(moves));
        ADD_FAILURE() << "the step was made";
    } catch (const OutboxFailure& failure) {
        EXPECT_TRUE(failure.CanTryAgain());
    }
    EXPECT_EQ(office.Statuses(), (QMap<int, int>{{Waiting, 3}}));
    EXPECT_EQ(outbox.Make(moves).size(), 2);
}

TEST(GatewayOutbox, DatesInStatementsHaveEnglishMonths) {
    EXPECT_EQ(SqlDate(QDateTime(QDate(2026, 5, 1), QTime(3, 4, 5))),
              QStringLiteral("#01/May/2026 03:04:05#"));
}
