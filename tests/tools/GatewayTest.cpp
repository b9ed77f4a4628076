#include "tools/GatewayFixture.h"

#include "store/engine/Connection.h"
#include "store/engine/sql/Parser.h"
#include "store/engine/sql/Writer.h"
#include "store/engine/sqlite/SqliteDialect.h"

#include <sqlite3.h>

using namespace MessageStatus;

namespace {

class GatewayTest : public GatewayFixture {};

QString Name(const char16_t* name) {
    return QString::fromUtf16(name);
}

}  // namespace

TEST_F(GatewayTest, ADueMessageIsTakenAcceptedAndDeliveredAfterTheDelays) {
    const qint32 id = Office.AddMessage(Now());
    GatewayLock lock(Office.Folder());
    const auto gateway = NewGateway(lock);
    ASSERT_TRUE(gateway->Round().has_value());
    EXPECT_EQ(Office.Status(id), Handing);
    EXPECT_EQ(Operator.Sent.value(id), 1);
    Time.Sleep(999);
    ASSERT_TRUE(gateway->Round().has_value());
    EXPECT_EQ(Office.Status(id), Handing);
    Time.Sleep(1);
    ASSERT_TRUE(gateway->Round().has_value());
    EXPECT_EQ(Office.Status(id), EnRoute);
    EXPECT_FALSE(Office.Field(id, Name(u"msgComplete")).toBool());
    Time.Sleep(2999);
    ASSERT_TRUE(gateway->Round().has_value());
    EXPECT_EQ(Office.Status(id), EnRoute);
    Time.Sleep(1);
    ASSERT_TRUE(gateway->Round().has_value());
    EXPECT_EQ(Office.Status(id), Delivered);
    EXPECT_EQ(Operator.Sent.value(id), 1);
    EXPECT_EQ(Ends, (QList<Ended>{{id, Delivered, 1}}));
}

TEST_F(GatewayTest, ADeliveredMessageIsCompleteWithTimeReportAndCost) {
    Settings.Tariff = 12;
    const qint32 id = Office.AddMessage(Now(), QStringLiteral("+353209112345"), QString(200, u'x'));
    RunUntilIdle();
    EXPECT_TRUE(Office.Field(id, Name(u"msgComplete")).toBool());
    EXPECT_EQ(Office.Field(id, Name(u"msgDeliveryStatus")).toInt(), 0);
    EXPECT_EQ(Office.Field(id, Name(u"msgTariff")).toInt(), 12);
    EXPECT_EQ(Office.Field(id, Name(u"msgFragmentCount")).toInt(), 2);
    const QDateTime delivered = Office.Field(id, Name(u"msgDeliveryTime")).toDateTime();
    EXPECT_GE(delivered, QDateTime(QDate(2026, 3, 7), QTime(14, 30, 19)));
    EXPECT_LE(delivered, Time.Time);
    EXPECT_TRUE(Office.Field(id, Name(u"msgErrorReason")).toString().isEmpty());
}

TEST_F(GatewayTest, WhatTheClientWroteStaysAsItWas) {
    const QString text = QStringLiteral("It's “Łódź” € [1] 😀");
    const qint32 id = Office.AddMessage(Now(), QStringLiteral("+353209112345"), text);
    RunUntilIdle();
    EXPECT_EQ(Office.Field(id, Name(u"msgText")).toString(), text);
    EXPECT_EQ(Office.Field(id, Name(u"msgRecipient")).toString(), QStringLiteral("Aoife O'Neill"));
    EXPECT_EQ(Office.Field(id, Name(u"msgSendTime")).toDateTime(),
              QDateTime(QDate(2026, 3, 7), QTime(14, 30, 15)));
}

TEST_F(GatewayTest, FragmentsAreCountedByTheAlphabetOfTheText) {
    const QList<std::pair<QString, int>> texts{{QString(160, u'a'), 1},
                                               {QString(161, u'a'), 2},
                                               {QString(81, u'€'), 2},
                                               {QString(70, u'Ł'), 1},
                                               {QString(71, u'Ł'), 2}};
    QList<qint32> ids;
    for (const auto& [text, parts] : texts) {
        ids.append(Office.AddMessage(Now(), QStringLiteral("+353209112345"), text));
    }
    RunUntilIdle();
    for (qsizetype i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(Office.Field(ids[i], Name(u"msgFragmentCount")).toInt(), texts[i].second) << i;
    }
}

TEST_F(GatewayTest, AMessageForLaterIsNotTakenBeforeItsSecond) {
    const qint32 id = Office.AddMessage(Now().addSecs(60));
    GatewayLock lock(Office.Folder());
    const auto gateway = NewGateway(lock);
    Time.Sleep(59999);
    ASSERT_TRUE(gateway->Round().has_value());
    EXPECT_EQ(Office.Status(id), Waiting);
    Time.Sleep(1);
    ASSERT_TRUE(gateway->Round().has_value());
    EXPECT_EQ(Office.Status(id), Handing);
}

TEST_F(GatewayTest, OlderMessagesGoFirst) {
    const qint32 younger = Office.AddMessage(Now());
    const qint32 older = Office.AddMessage(Now().addSecs(-60));
    QList<qint32> order;
    Operator.OnSend = [&](qint32 id) { order.append(id); };
    RunUntilIdle();
    EXPECT_EQ(order, (QList<qint32>{older, younger}));
}

TEST_F(GatewayTest, ACanceledMessageIsNeverSent) {
    const auto ids = Office.AddMessages(3, Now());
    ASSERT_TRUE(Office.Cancel(ids[1]));
    RunUntilIdle();
    EXPECT_EQ(Office.Status(ids[1]), Canceled);
    EXPECT_EQ(Office.Field(ids[1], Name(u"msgErrorReason")).toString(), QStringLiteral("Canceled by user"));
    EXPECT_EQ(Operator.Sent, (QMap<qint32, int>{{ids[0], 1}, {ids[2], 1}}));
}

TEST_F(GatewayTest, ATakenMessageCannotBeCanceledAnyMore) {
    const qint32 id = Office.AddMessage(Now());
    GatewayLock lock(Office.Folder());
    ASSERT_TRUE(NewGateway(lock)->Round().has_value());
    EXPECT_FALSE(Office.Cancel(id));
    EXPECT_EQ(Office.Status(id), Handing);
}

TEST_F(GatewayTest, AMessageThatIsDeletedOnItsWayIsLetGo) {
    const auto ids = Office.AddMessages(3, Now());
    GatewayLock lock(Office.Folder());
    const auto gateway = NewGateway(lock);
    ASSERT_TRUE(gateway->Round().has_value());
    Office.Execute(Office.Outbox(), QStringLiteral("DELETE FROM Message WHERE msgID = %1").arg(ids[1]));
    for (int i = 0; i < 3; ++i) {
        Time.Sleep(5000);
        ASSERT_TRUE(gateway->Round().has_value());
    }
    EXPECT_EQ(gateway->InFlight(), 0);
    EXPECT_EQ(Office.Statuses(), (QMap<int, int>{{Delivered, 2}}));
}

TEST_F(GatewayTest, ANumberWithTheSuffixOf4CouldNotBeSentAndCostsNothing) {
    const qint32 id = Office.AddMessage(Now(), QStringLiteral("+353209112004"));
    RunUntilIdle();
    EXPECT_EQ(Office.Status(id), NotSent);
    EXPECT_TRUE(Office.Field(id, Name(u"msgComplete")).toBool());
    EXPECT_EQ(Office.Field(id, Name(u"msgFragmentCount")).toInt(), 0);
    EXPECT_EQ(Office.Field(id, Name(u"msgErrorReason")).toString(),
              QStringLiteral("The network operator did not accept the message"));
    EXPECT_TRUE(Office.Field(id, Name(u"msgDeliveryTime")).isNull());
    EXPECT_EQ(Ends, (QList<Ended>{{id, NotSent, 0}}));
}

TEST_F(GatewayTest, ANumberWithTheSuffixOf6StaysUnconfirmed) {
    const qint32 id = Office.AddMessage(Now(), QStringLiteral("+353209112006"));
    RunUntilIdle();
    EXPECT_EQ(Office.Status(id), Unconfirmed);
    EXPECT_TRUE(Office.Field(id, Name(u"msgComplete")).toBool());
    EXPECT_EQ(Office.Field(id, Name(u"msgDeliveryStatus")).toInt(), 1);
    EXPECT_EQ(Office.Field(id, Name(u"msgFragmentCount")).toInt(), 1);
    EXPECT_TRUE(Office.Field(id, Name(u"msgDeliveryTime")).isNull());
}

TEST_F(GatewayTest, ANumberWithTheSuffixOf7IsNotDeliveredAndCostsAllTheSame) {
    const qint32 id = Office.AddMessage(Now(), QStringLiteral("+353209112007"));
    RunUntilIdle();
    EXPECT_EQ(Office.Status(id), NotDelivered);
    EXPECT_TRUE(Office.Field(id, Name(u"msgComplete")).toBool());
    EXPECT_EQ(Office.Field(id, Name(u"msgDeliveryStatus")).toInt(), 0x46);
    EXPECT_EQ(Office.Field(id, Name(u"msgFragmentCount")).toInt(), 1);
    EXPECT_FALSE(Office.Field(id, Name(u"msgErrorReason")).toString().isEmpty());
}

TEST_F(GatewayTest, AFailedMessageIsNotTakenAgain) {
    const qint32 id = Office.AddMessage(Now(), QStringLiteral("+353209112004"));
    RunUntilIdle();
    RunUntilIdle();
    EXPECT_EQ(Operator.Sent.value(id), 1);
}

TEST_F(GatewayTest, ATextOfMoreThan255PartsIsNeverHandedOver) {
    const qint32 id =
        Office.AddMessage(Now(), QStringLiteral("+353209112345"), QString(qsizetype{67} * 256, u'Ł'));
    const qint32 fits =
        Office.AddMessage(Now(), QStringLiteral("+353209112345"), QString(qsizetype{67} * 255, u'Ł'));
    RunUntilIdle();
    EXPECT_EQ(Office.Status(id), NotSent);
    EXPECT_EQ(Office.Field(id, Name(u"msgErrorReason")).toString(),
              QStringLiteral("The message is too long"));
    EXPECT_EQ(Office.Field(fits, Name(u"msgFragmentCount")).toInt(), 255);
    EXPECT_EQ(Operator.Sent, (QMap<qint32, int>{{fits, 1}}));
}

TEST_F(GatewayTest, AHandOverThatFailsIsNotTriedAgain) {
    const qint32 id = Office.AddMessage(Now());
    Operator.IsFailing = true;
    RunUntilIdle();
    EXPECT_EQ(Office.Status(id), NotSent);
    EXPECT_EQ(Operator.Sent.value(id), 1);
}

TEST_F(GatewayTest, ARowWithoutNumberAndTextIsHandledAsAnyOther) {
    const qint32 id = Office.AddMessage(Now());
    Office.Execute(
        Office.Outbox(),
        QStringLiteral("UPDATE Message SET msgText = NULL, msgAddress = NULL WHERE msgID = %1").arg(id));
    RunUntilIdle();
    EXPECT_EQ(Office.Status(id), Delivered);
    EXPECT_EQ(Office.Field(id, Name(u"msgFragmentCount")).toInt(), 1);
}

TEST_F(GatewayTest, HundredsOfMessagesAreEachHandedOverOnce) {
    const auto ids = Office.AddMessages(330, Now());
    RunUntilIdle();
    EXPECT_EQ(Office.Statuses(), (QMap<int, int>{{Delivered, 330}}));
    EXPECT_EQ(Operator.Sent.size(), 330);
    for (const qint32 id : ids) {
        EXPECT_EQ(Operator.Sent.value(id), 1);
    }
}

TEST_F(GatewayTest, OnceTakesOnlyWhatIsDueAtItsStart) {
    Settings.Mode = GatewaySettings::RunMode::Once;
    const qint32 due = Office.AddMessage(Now());
    const qint32 soon = Office.AddMessage(Now().addSecs(1));
    RunAlone();
    EXPECT_EQ(Office.Status(due), Delivered);
    EXPECT_EQ(Office.Status(soon), Waiting);
}

TEST_F(GatewayTest, UntilIdleTakesWhatComesDueWhileOthersAreOnTheirWayButDoesNotWaitForLater) {
    const qint32 due = Office.AddMessage(Now());
    const qint32 soon = Office.AddMessage(Now().addSecs(2));
    const qint32 later = Office.AddMessage(Now().addSecs(3600));
    RunUntilIdle();
    EXPECT_EQ(Office.Status(due), Delivered);
    EXPECT_EQ(Office.Status(soon), Delivered);
    EXPECT_EQ(Office.Status(later), Waiting);
    EXPECT_LT(Time.Time, QDateTime(QDate(2026, 3, 7), QTime(14, 31)));
}

TEST_F(GatewayTest, UntilIdleEndsAtOnceOnAnEmptyOutbox) {
    RunUntilIdle();
    EXPECT_TRUE(Time.Sleeps.isEmpty());
}

TEST_F(GatewayTest, ForeverGoesOnUntilItIsStopped) {
    RunAlone(200);
    EXPECT_FALSE(Time.Sleeps.isEmpty());
    for (const int sleep : Time.Sleeps) {
        EXPECT_LE(sleep, 50);  // a stop is noticed soon
    }
}

TEST_F(GatewayTest, ARateIsKept) {
    Settings.Rate = 20;
    Office.AddMessages(200, Now());
    QList<qint64> times;
    Operator.OnSend = [&](qint32) { times.append(Time.Ticks()); };
    RunUntilIdle();
    ASSERT_EQ(times.size(), 200);
    EXPECT_NEAR(static_cast<double>(times.constLast() - times.constFirst()), 10000, 300);
    for (qsizetype i = 0; i + 30 < times.size(); ++i) {
        EXPECT_GE(times[i + 30] - times[i], 1000) << i;  // never many more than 20 in a second
    }
}

TEST_F(GatewayTest, ARateOfOneIsKept) {
    Settings.Rate = 1;
    Office.AddMessages(4, Now());
    const qint64 start = Time.Ticks();
    RunUntilIdle();
    EXPECT_GE(Time.Ticks() - start, 3000 + 4000);
    EXPECT_LE(Time.Ticks() - start, 3000 + 4000 + 1000);
}

TEST_F(GatewayTest, TheDelaysCanBeNothing) {
    Settings.DelayOperator = 0;
    Settings.DelayDelivery = 0;
    const auto ids = Office.AddMessages(60, Now());
    RunUntilIdle();
    EXPECT_EQ(Office.Statuses(), (QMap<int, int>{{Delivered, 60}}));
}

TEST_F(GatewayTest, AStopLeavesNoRowAtTheHandOver) {
    Office.AddMessages(40, Now());
    Operator.OnSend = {};
    int questions = 3;
    {
        GatewayLock lock(Office.Folder());
        const auto gateway = NewGateway(lock);
        gateway->Run([&] { return --questions < 0; });
        EXPECT_EQ(gateway->InFlight(), 40);
    }
    EXPECT_EQ(Office.Statuses(), (QMap<int, int>{{EnRoute, 40}}));
}

TEST_F(GatewayTest, AStoppedRunIsFinishedByTheNextWithoutSendingAgain) {
    const auto ids = Office.AddMessages(40, Now());
    RunAlone(3);
    ASSERT_EQ(Office.Statuses(), (QMap<int, int>{{EnRoute, 40}}));
    RunUntilIdle();
    EXPECT_EQ(Office.Statuses(), (QMap<int, int>{{Delivered, 40}}));
    for (const qint32 id : ids) {
        EXPECT_EQ(Operator.Sent.value(id), 1);
    }
}

TEST_F(GatewayTest, AnOutboxThatAnotherProgramSitsOnIsTriedAgainAndToldOnce) {
    const qint32 id = Office.AddMessage(Now());
    auto blocker = Office.Machine.Engines.NewConnection();
    blocker->Mode = engine::Mode::ReadWriteShared;
    blocker->Open(Office.Outbox());
    blocker->BeginTrans();
    const QDateTime release = Now().addSecs(60);
    Time.OnSleep = [&](int) {
        if (Time.Time >= release && blocker) {
            blocker->RollbackTrans();
            blocker.reset();
        }
    };
    RunUntilIdle();
    EXPECT_EQ(Office.Status(id), Delivered);
    EXPECT_EQ(Operator.Sent.value(id), 1);
    EXPECT_EQ(Troubles.size(), 1) << Troubles.join(u'\n').toStdString();
}

TEST_F(GatewayTest, AnOutboxThatGoesAwayWhileItRunsIsTriedAgain) {
    const qint32 id = Office.AddMessage(Now());
    const QString away = Office.Outbox() + QStringLiteral(".away");
    GatewayLock lock(Office.Folder());
    const auto gateway = NewGateway(lock);
    ASSERT_TRUE(QFile::rename(Office.Outbox(), away));
    EXPECT_THROW(
        try { static_cast<void>(gateway->Round()); } catch (const OutboxFailure& failure) {
            EXPECT_TRUE(failure.CanTryAgain());
            throw;
        },
        OutboxFailure);
    ASSERT_TRUE(QFile::rename(away, Office.Outbox()));
    ASSERT_TRUE(gateway->Round().has_value());
    EXPECT_EQ(Office.Status(id), Handing);
}

TEST_F(GatewayTest, AnOutboxWithoutItsTableEndsTheRun) {
    GatewayLock lock(Office.Folder());
    const auto gateway = std::make_unique<Gateway>(Settings, Services(), Office.Phonebook(), lock, Operator,
                                                   Gateway::Listener());
    EXPECT_THROW(gateway->CheckOutbox(), OutboxFailure);
    EXPECT_THROW(gateway->Run([] { return false; }), OutboxFailure);
}

TEST_F(GatewayTest, CheckingAnOutboxChangesNothing) {
    Office.AddMessages(3, Now());
    GatewayLock lock(Office.Folder());
    NewGateway(lock)->CheckOutbox();
    EXPECT_EQ(Office.Statuses(), (QMap<int, int>{{Waiting, 3}}));
}

TEST_F(GatewayTest, TheSearchForDueRowsGoesAlongTheIndexWithoutSorting) {
    const QString due = QStringLiteral(
        "SELECT TOP 50 msgID, msgAddress, msgText FROM Message WHERE msgStatus = 0 AND msgSendTime <= "
        "#07/Mar/2026 14:30:15# "
        "ORDER BY msgSendTime, msgID");
    const auto written = engine::sql::Write(engine::sql::Parse(due, engine::sql::MonthNames(QLocale::c())),
                                            engine::sqlite::SqliteDialect());
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(Office.Outbox().toUtf8().constData(), &database), SQLITE_OK);
    sqlite3_stmt* statement = nullptr;
    const QByteArray explain = "EXPLAIN QUERY PLAN " + written.Sql;
    ASSERT_EQ(sqlite3_prepare_v2(database, explain.constData(), -1, &statement, nullptr), SQLITE_OK)
        << explain.constData();
    QByteArray plan;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        plan += reinterpret_cast<const char*>(sqlite3_column_text(statement, 3));
        plan += '\n';
    }
    sqlite3_finalize(statement);
    sqlite3_close(database);
    EXPECT_TRUE(plan.contains("USING INDEX MessageByStatus (msgStatus=? AND msgSendTime<?)"))
        << plan.constData();
    EXPECT_FALSE(plan.contains("TEMP B-TREE")) << plan.constData();
}
