#pragma once

#include "larkspan-gateway/Gateway.h"
#include "larkspan-gateway/HandOver.h"
#include "larkspan-gateway/MessageStatus.h"
#include "support/FakeMachine.h"
#include "tools/TestOffice.h"

#include <QMap>
#include <QStringList>

#include <gtest/gtest.h>

#include <memory>

/// Counts what is handed over.
class CountingHandOver final : public HandOver {
public:
    QMap<qint32, int> Sent;
    bool IsFailing = false;
    std::function<void(qint32)> OnSend;

    [[nodiscard]] bool Send(qint32 id) override {
        ++Sent[id];
        if (OnSend) {
            OnSend(id);
        }
        return !IsFailing;
    }
};

/// A gateway on a real outbox with a clock that the test moves on.
class GatewayFixture : public ::testing::Test {
protected:
    struct Ended {
        qint32 ID;
        qint32 Status;
        int Fragments;
        bool operator==(const Ended&) const = default;
    };

    [[nodiscard]] DBServices Services() { return {Engines, Time, Pump, MappedDrives, LocalFolders}; }

    [[nodiscard]] std::unique_ptr<Gateway> NewGateway(GatewayLock& lock) {
        Gateway::Listener listener;
        listener.OnEnd = [this](qint32 id, qint32 status, int fragments) {
            Ends.append({id, status, fragments});
        };
        listener.OnTrouble = [this](const QString& text) { Troubles.append(text); };
        return std::make_unique<Gateway>(Settings, Services(), Office.Outbox(), lock, Operator, listener);
    }
    /// One gateway alone, until its mode's end or `stopAfter` questions whether to stop.
    void RunAlone(int stopAfter = 100000) {
        GatewayLock lock(Office.Folder());
        const auto gateway = NewGateway(lock);
        gateway->Run([&] { return --stopAfter < 0; });
    }
    void RunUntilIdle() {
        Settings.Mode = GatewaySettings::RunMode::UntilIdle;
        RunAlone();
    }
    [[nodiscard]] QDateTime Now() const { return Time.Time; }

    TestOffice Office;
    FakeClock Time;
    FakePump Pump;
    FakeDrives MappedDrives;
    FakeFolders LocalFolders;
    engine::FileConnectionFactory Engines{Time};
    CountingHandOver Operator;
    GatewaySettings Settings;
    QList<Ended> Ends;
    QStringList Troubles;
};
