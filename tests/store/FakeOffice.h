#pragma once

#include "core/Settings.h"
#include "store/Outbox.h"
#include "store/Phonebook.h"
#include "support/FakeEngine.h"
#include "support/FakeMachine.h"

#include <numeric>

/// A DB on an engine that fails on demand, and all of the machine that it needs.
struct FakeDatabase {
    FakeEngine Engine;
    FakeClock Time;
    FakePump Pump;
    FakeDrives Drives;
    FakeFolders Folders;

    [[nodiscard]] DBServices Services() { return {Engine, Time, Pump, Drives, Folders}; }
    [[nodiscard]] int TotalSleep() const {
        return std::accumulate(Time.Sleeps.begin(), Time.Sleeps.end(), 0);
    }
};

/// Outbox and phonebook on such an engine.
struct FakeOffice : FakeDatabase {
    RecordingBoxes Boxes;
    Settings AppSettings;
    OutboxState OutboxValues;
    PhonebookState PhonebookValues;

    FakeOffice() { AppSettings.SetApplication(QStringLiteral("Larkspan Messenger fake office")); }
    ~FakeOffice() {
        SetOutbox(QString());
        SetContacts(QString());
    }
    [[nodiscard]] OutboxServices Outbox() { return {OutboxValues, AppSettings, Boxes, Services()}; }
    [[nodiscard]] PhonebookServices Phonebook() {
        return {PhonebookValues, AppSettings, Boxes, Services(), {}};
    }
    void SetOutbox(const QString& value) {
        AppSettings.SetValue(SettingNames::SectionDB, SettingNames::Outbox, value);
    }
    void SetContacts(const QString& value) {
        AppSettings.SetValue(SettingNames::SectionDB, SettingNames::Contacts, value);
    }
};
