#pragma once

#include "core/Settings.h"
#include "platform/Clock.h"
#include "platform/Drives.h"
#include "platform/EventPump.h"
#include "platform/Folders.h"
#include "platform/LocalFiles.h"
#include "platform/MessageBoxes.h"
#include "store/Outbox.h"

#include "hammer/ObservedEngine.h"

#include <QTextStream>

#include <cstdio>

/// Folders of a process under load: its local files lie in a home of its own.
class HammerFolders final : public Folders {
public:
    explicit HammerFolders(QString home) : m_home(std::move(home)) {}
    [[nodiscard]] QString ApplicationFolder() const override { return m_home + u'/'; }
    [[nodiscard]] QString ShareFolder() const override { return m_home + u'/'; }
    [[nodiscard]] QString TempFolder() const override { return m_home + u'/'; }
    [[nodiscard]] QString CurrentFolder() const override { return m_home; }

private:
    QString m_home;
};

/// Nobody sits in front of these processes: a box is counted and its title goes to standard error.
class CountingBoxes final : public MessageBoxes {
public:
    int Count = 0;
    BoxAnswer Show(const BoxRequest& request) override {
        ++Count;
        std::fprintf(stderr, "box: %s\n", qUtf8Printable(request.Text));
        return request.Buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::No;
    }
};

/// The real parts of a client's store side, on one outbox file.
class HammerOffice {
public:
    HammerOffice(const QString& outboxFile, const QString& home)
        : LocalFolders(home),
          Database{Engine, Time, Pump, NetworkDrives, LocalFolders},
          Outbox{State, AppSettings, Boxes, Database} {
        State.OutboxDB = std::make_unique<DB>(Database);
        State.OutboxDB->Filename = outboxFile;
        State.MaxMessageSize = 459;
    }

    /// What this process met, a word and a number a line.
    void Report(QTextStream& out) const {
        const EngineObservations& seen = Engine.Seen;
        out << "boxes " << Boxes.Count << "\ntransient " << seen.TransientFailures << "\ntransientInARow "
            << seen.WorstTransientInARow << "\notherFailures " << seen.OtherFailures << '\n';
    }

    ObservedFactory Engine;
    SystemClock Time;
    ApplicationEventPump Pump;
    SystemDrives NetworkDrives;
    HammerFolders LocalFolders;
    DiskFiles Files;
    CountingBoxes Boxes;
    Settings AppSettings;
    OutboxState State;
    DBServices Database;
    OutboxServices Outbox;
};
