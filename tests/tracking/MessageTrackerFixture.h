#pragma once

#include "core/Settings.h"
#include "store/DB.h"
#include "store/Outbox.h"
#include "support/FakeEngine.h"
#include "support/FakeMachine.h"
#include "tracking/MessageTracker.h"

#include <gtest/gtest.h>

#include <stdexcept>

/// Notes what is final, clears it, and calls 7 a failure.
class NotingSink final : public DeliverySink {
public:
    int Calls = 0;
    QList<MessageTracker::Slot> Final;
    bool IsFailing = false;

    qint16 PopupNotify(MessageTracker& tracker) override {
        ++Calls;
        if (IsFailing) {
            throw std::runtime_error("no popup");
        }
        qint16 failures = 0;
        for (int i = 0; i < MessageTracker::SlotCount; ++i) {
            const MessageTracker::Slot slot = tracker.SlotAt(i);
            if (slot.msgID == 0 || !mdlOutbox::IsMessageFinal(slot.status)) {
                continue;
            }
            Final.append(slot);
            failures = static_cast<qint16>(failures + (slot.status == 7 ? 1 : 0));
            tracker.ClearSlot(i);
        }
        return failures;
    }
};

/// A tracker on an outbox that answers what a test wants.
class MessageTrackerTest : public ::testing::Test {
public:
    FakeEngine Engine;
    FakeClock Time;
    FakePump Pump;
    FakeDrives Drives;
    FakeFolders Folders;
    Settings AppSettings;
    OutboxState Outbox;
    NotingSink Sink;
    MessageTracker Tracker{Outbox, AppSettings, Time};

    MessageTrackerTest() {
        AppSettings.SetApplication(UniqueApplication());
        Outbox.OutboxDB = std::make_unique<DB>(DBServices{Engine, Time, Pump, Drives, Folders});
        Tracker.SetSink(&Sink);
    }

    void Track(qint32 id) {
        Tracker.Track(id, QStringLiteral("Ann"), QStringLiteral("+3531"), QStringLiteral("Hi"));
    }
    /// What the next polls read, instead of what was set before.
    void Serve(const QList<QVariantList>& rows) {
        Engine.Serve(QStringLiteral("FROM Message"), {{QStringLiteral("msgID"), QStringLiteral("msgStatus"),
                                                       QStringLiteral("msgDeliveryTime")},
                                                      rows});
    }
    void PassInterval() { Time.Time = Time.Time.addSecs(Tracker.RefreshInterval); }
    [[nodiscard]] QList<qint32> IDs(int count) const {
        QList<qint32> ids;
        for (int i = 0; i < count; ++i) {
            ids.append(Tracker.SlotAt(i).msgID);
        }
        return ids;
    }
    [[nodiscard]] static QVariantList Row(qint64 id, const QVariant& status,
                                          const QVariant& deliveryTime = QVariant()) {
        return {id, status, deliveryTime};
    }
    /// That minute of the day on which these tests play.
    [[nodiscard]] static QVariant At(int hour, int minute) {
        return QDateTime(QDate(2026, 3, 7), QTime(hour, minute, 59));
    }

private:
    [[nodiscard]] static QString UniqueApplication() {
        static int count = 0;
        return QStringLiteral("Tracker test %1").arg(++count);
    }
};
