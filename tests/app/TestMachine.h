#pragma once

#include "app/Machine.h"
#include "core/CodePage.h"
#include "core/Log.h"
#include "platform_ui/FakeTray.h"
#include "platform_ui/FakeWindows.h"
#include "platform_ui/Instance.h"
#include "support/RecordingDoor.h"
#include "support/TempOffice.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

/// Says what a test wants about a previous instance.
class FakeInstance final : public Instance {
public:
    bool IsPrevious = false;
    int ShowRequests = 0;
    int Releases = 0;
    std::function<void()> OnRelease;
    std::function<void()> OnShow;

    [[nodiscard]] bool IsPreviousInstance() override { return IsPrevious; }
    bool RequestShow() override {
        ++ShowRequests;
        return true;
    }
    void Release() override {
        ++Releases;
        if (OnRelease) {
            OnRelease();
        }
    }
    void SetOnShow(std::function<void()> onShow) override { OnShow = std::move(onShow); }
};

/// Gives one test settings of its own.
class FreshSettings {
public:
    FreshSettings() {
        for (const auto format : {QSettings::NativeFormat, QSettings::IniFormat}) {
            QSettings::setPath(format, QSettings::UserScope, m_folder.path());
        }
    }

private:
    QTemporaryDir m_folder;
};

/// A machine with an office on it, for whatever takes a Machine. Everything is public so that a test can bend
/// it.
class TestMachine {
public:
    FreshSettings OwnSettings;
    TempOffice Office;
    RecordingDoor Door;
    FakeNotices Notices;
    FakeTray Tray;
    FakeWeb Web;
    FakeWindows Desktop;
    FakeInstance OneCopy;
    CodePage Page{1252};
    Log AppLog{Office.Files, Office.Time};

    [[nodiscard]] Machine Seams() {
        return {Office.Time,       Office.Pump, Office.Keys,    Office.Sound,  Notices,      Tray,    Web,
                Office.Boxes,      Door,        Office.Folders, Office.Drives, Office.Files, Desktop, OneCopy,
                Office.FileEngine, Page,        AppLog};
    }

    /// What was logged after this call can be read by LogLines.
    void KeepLog() { AppLog.LogToFile(LogPath()); }
    [[nodiscard]] QString LogLines() const {
        QFile file(LogPath());
        return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
    }
    /// A setting of the program under its own name, as another start of it would find it.
    [[nodiscard]] static QString Stored(const QString& section, const QString& key) {
        Settings settings;
        settings.SetApplication(QStringLiteral("Larkspan Messenger"));
        return settings.GetValue(section, key, QStringLiteral("(none)"));
    }
    static void Store(const QString& section, const QString& key, const QString& value) {
        Settings settings;
        settings.SetApplication(QStringLiteral("Larkspan Messenger"));
        settings.SetValue(section, key, value);
    }
    /// Settings as after a finished setup on this office.
    void StoreOffice() {
        Store(SettingNames::SectionSetup, SettingNames::RunWizard, QStringLiteral("0"));
        Store(SettingNames::SectionDB, SettingNames::Outbox, Office.DataFolder.path());
    }

private:
    [[nodiscard]] QString LogPath() const { return Office.Folders.Root.filePath(QStringLiteral("test.log")); }
};
