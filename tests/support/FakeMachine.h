#pragma once

#include "platform/Clock.h"
#include "platform/Drives.h"
#include "platform/EventPump.h"
#include "platform/Folders.h"
#include "platform/KeyState.h"
#include "platform/MessageBoxes.h"
#include "platform/Notices.h"
#include "platform/Sound.h"
#include "platform/UrlOpener.h"

#include <QList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>

/// A clock that stands still until it is told; sleeping moves it on and is recorded.
class FakeClock final : public Clock {
public:
    QDateTime Time = QDateTime(QDate(2026, 3, 7), QTime(14, 30, 15));
    QList<int> Sleeps;
    /// Runs in the middle of each sleep.
    std::function<void(int)> OnSleep;

    [[nodiscard]] QDateTime Now() const override { return Time; }
    [[nodiscard]] qint64 Ticks() const override { return Time.toMSecsSinceEpoch(); }
    void Sleep(int milliseconds) override {
        Sleeps.append(milliseconds);
        Time = Time.addMSecs(milliseconds);
        if (OnSleep) {
            OnSleep(milliseconds);
        }
    }
};

/// Counts passes and runs nothing but what a test puts in.
class FakePump final : public EventPump {
public:
    QList<int> Calls;
    std::function<void(int)> OnProcess;

    void Process(int passes) override {
        Calls.append(passes);
        if (OnProcess) {
            OnProcess(passes);
        }
    }
};

class FakeKeyState final : public KeyState {
public:
    QList<Key> Down;
    [[nodiscard]] bool IsKeyDown(Key key) const override { return Down.contains(key); }
};

class FakeSound final : public Sound {
public:
    int Beeps = 0;
    std::function<void()> OnBeep;
    QStringList Played;
    std::function<void()> OnPlay;
    void Beep() override {
        ++Beeps;
        if (OnBeep) {
            OnBeep();
        }
    }
    void Play(const QString& path) override {
        Played.append(path);
        if (OnPlay) {
            OnPlay();
        }
    }
};

/// Keeps what the desktop was told.
class FakeNotices final : public DesktopNotices {
public:
    QStringList Shown;  // "title|text"
    void Show(const QString& title, const QString& text, BalloonIcon) override {
        Shown.append(title + u'|' + text);
    }
};

/// Keeps the addresses that were to be opened.
class FakeWeb final : public UrlOpener {
public:
    QStringList Opened;
    void Open(const QString& url) override { Opened.append(url); }
};

/// Answers boxes in the order that was prepared. A box that was not expected fails the test, and so does a
/// prepared answer that was not used.
class RecordingBoxes final : public MessageBoxes {
public:
    QList<BoxRequest> Shown;
    /// Runs while a box stands.
    std::function<void()> OnShow;

    ~RecordingBoxes() override {
        EXPECT_TRUE(m_answers.isEmpty()) << m_answers.size() << " expected box(es) did not come";
    }
    void Expect(BoxAnswer answer = BoxAnswer::Ok) { m_answers.append(answer); }
    BoxAnswer Show(const BoxRequest& request) override {
        Shown.append(request);
        if (OnShow) {
            OnShow();
        }
        if (m_answers.isEmpty()) {
            ADD_FAILURE() << "unexpected box: " << request.Text.toStdString();
            return request.Buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::No;
        }
        return m_answers.takeFirst();
    }

private:
    QList<BoxAnswer> m_answers;
};

/// Folders inside one temporary folder of the test.
class FakeFolders final : public Folders {
public:
    QTemporaryDir Root;
    QString Temp;  // empty: the application folder
    QString Current = QStringLiteral("/");

    [[nodiscard]] QString ApplicationFolder() const override { return Root.path() + u'/'; }
    [[nodiscard]] QString ShareFolder() const override { return Root.path() + QStringLiteral("/share/"); }
    [[nodiscard]] QString TempFolder() const override { return Temp.isEmpty() ? ApplicationFolder() : Temp; }
    [[nodiscard]] QString CurrentFolder() const override { return Current; }
};

class FakeDrives final : public Drives {
public:
    QHash<QString, QString> Connections;  // "X:" to remote name
    mutable QStringList Asked;
    QStringList Restored;

    [[nodiscard]] QString GetNetworkConnection(const QString& drive) const override {
        Asked.append(drive);
        return Connections.value(drive);
    }
    bool RestoreNetworkDrive(int, const QString& drive) override {
        Restored.append(drive);
        return false;
    }
};
