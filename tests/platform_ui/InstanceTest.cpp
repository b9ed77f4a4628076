#include "platform_ui/Instance.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

namespace {

constexpr int Deadline = 20000;

/// A copy of the program that does nothing but claim to be the one.
class Copy {
public:
    explicit Copy(const QTemporaryDir& folder, const QString& mode = QString()) {
        m_process.start(QString::fromLatin1(INSTANCE_PROBE), {folder.path(), mode});
    }
    ~Copy() {
        m_process.closeWriteChannel();
        if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(Deadline)) {
            ADD_FAILURE() << "a copy hangs";
            m_process.kill();
            m_process.waitForFinished();
        }
    }
    Copy(const Copy&) = delete;
    Copy& operator=(const Copy&) = delete;

    /// True as soon as the copy has printed this line.
    bool Says(const char* line) {
        return QTest::qWaitFor(
            [&] {
                m_said += m_process.readAllStandardOutput();
                return m_said.contains(QByteArray(line) + '\n');
            },
            Deadline);
    }
    /// Its first line: "first" or "second".
    QByteArray Claim() {
        Says("");
        return m_said.left(m_said.indexOf('\n'));
    }
    QByteArray AllWhenEnded() {
        m_process.waitForFinished(Deadline);
        return m_said + m_process.readAllStandardOutput();
    }
    void Kill() {
        m_process.kill();
        m_process.waitForFinished(Deadline);
    }
    void Wake() { m_process.write("x"); }

private:
    QProcess m_process;
    QByteArray m_said;
};

}  // namespace

TEST(Instance, TheFirstStartIsNoSecond) {
    const QTemporaryDir folder;
    LocalInstance instance(folder.path(), QStringLiteral("test"));
    EXPECT_FALSE(instance.IsPreviousInstance());
    EXPECT_FALSE(instance.IsPreviousInstance()) << "asking again changes nothing";
}

TEST(Instance, ASecondStartAsksTheFirstToShowItself) {
    const QTemporaryDir folder;
    Copy first(folder);
    ASSERT_TRUE(first.Says("first"));
    Copy second(folder);
    EXPECT_EQ(second.AllWhenEnded(), "second\ntold\n");
    EXPECT_TRUE(first.Says("shown"));
}

TEST(Instance, ABusyFirstCopyShowsItselfOnceItIsIdleAgain) {
    const QTemporaryDir folder;
    Copy first(folder, QStringLiteral("busy"));
    ASSERT_TRUE(first.Says("first"));
    Copy second(folder);
    EXPECT_EQ(second.AllWhenEnded(), "second\ntold\n") << "the second start does not wait for the first";
    first.Wake();
    EXPECT_TRUE(first.Says("shown"));
}

TEST(Instance, AfterACrashOfTheFirstThereIsNoPreviousInstance) {
    const QTemporaryDir folder;
    {
        Copy crashed(folder);
        ASSERT_TRUE(crashed.Says("first"));
        crashed.Kill();
    }
    ASSERT_TRUE(QFile::exists(folder.filePath(QStringLiteral("larkspan-test.socket"))))
        << "left by the crash";
    Copy restarted(folder);
    ASSERT_TRUE(restarted.Says("first"));
    Copy second(folder);
    EXPECT_EQ(second.AllWhenEnded(), "second\ntold\n");
    EXPECT_TRUE(restarted.Says("shown"));
}

TEST(Instance, ACopyThatGaveItsClaimBackMakesWayAndLeavesTheNextOneItsSocket) {
    const QTemporaryDir folder;
    LocalInstance ending(folder.path(), QStringLiteral("test"));
    ASSERT_FALSE(ending.IsPreviousInstance());
    ending.Release();
    Copy next(folder);
    ASSERT_TRUE(next.Says("first"));
    ending.Release();
    Copy second(folder);
    EXPECT_EQ(second.AllWhenEnded(), "second\ntold\n");
    EXPECT_TRUE(next.Says("shown"));
}

TEST(Instance, OfTwelveStartsAtTheSameMomentExactlyOneIsLeft) {
    const QTemporaryDir folder;
    constexpr int Starts = 12;
    std::vector<std::unique_ptr<Copy>> copies;
    copies.reserve(Starts);
    for (int i = 0; i < Starts; ++i) {
        copies.push_back(std::make_unique<Copy>(folder));
    }
    int firsts = 0;
    for (const auto& copy : copies) {
        firsts += copy->Claim() == "first" ? 1 : 0;
    }
    EXPECT_EQ(firsts, 1);
}

TEST(Instance, TwoSessionsOfOneUserHaveACopyEach) {
    const QTemporaryDir folder;
    LocalInstance one(folder.path(), QStringLiteral("-0"));
    LocalInstance other(folder.path(), QStringLiteral("-1"));
    EXPECT_FALSE(one.IsPreviousInstance());
    EXPECT_FALSE(other.IsPreviousInstance());
}

TEST(Instance, WhereNothingCanBeClaimedTheProgramStartsAllTheSame) {
    LocalInstance instance(QStringLiteral("/nonexistent/folder"), QStringLiteral("test"));
    EXPECT_FALSE(instance.IsPreviousInstance());
    LocalInstance without(QString(), QStringLiteral("test"));
    EXPECT_FALSE(without.IsPreviousInstance());
    EXPECT_FALSE(without.RequestShow());
}

TEST(Instance, AFirstCopyThatEndsOrderlyLeavesNoSocket) {
    const QTemporaryDir folder;
    {
        LocalInstance instance(folder.path(), QStringLiteral("test"));
        ASSERT_FALSE(instance.IsPreviousInstance());
        ASSERT_TRUE(QFile::exists(folder.filePath(QStringLiteral("larkspan-test.socket"))));
    }
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("larkspan-test.socket"))));
}

TEST(Instance, WhatTellsOfARunningCopyIsMarkedForCleanersAndStaysFresh) {
    const QTemporaryDir folder;
    LocalInstance instance(folder.path(), QStringLiteral("test"));
    ASSERT_FALSE(instance.IsPreviousInstance());
    const timespec old[] = {{1000, 0}, {1000, 0}};
    for (const char* name : {"larkspan-test.lock", "larkspan-test.socket"}) {
        const QByteArray path = folder.filePath(QString::fromLatin1(name)).toLocal8Bit();
        struct stat state {};
        ASSERT_EQ(stat(path.constData(), &state), 0) << name;
        EXPECT_EQ(state.st_mode & 07077U, static_cast<mode_t>(S_ISVTX))
            << name << ": sticky, and the user's own";
        ASSERT_EQ(utimensat(AT_FDCWD, path.constData(), old, 0), 0);
        instance.KeepFresh();
        ASSERT_EQ(stat(path.constData(), &state), 0) << name;
        EXPECT_GT(state.st_mtime, 1000) << name;
        EXPECT_GT(state.st_atime, 1000) << name;
    }
    EXPECT_FALSE(LocalInstance(folder.path(), QStringLiteral("other")).IsPreviousInstance());
    EXPECT_TRUE(LocalInstance(folder.path(), QStringLiteral("test")).IsPreviousInstance());
}

TEST(Instance, TheRuntimeFolderIsTheUsersOwn) {
    const QTemporaryDir folder;
    qputenv("XDG_RUNTIME_DIR", folder.path().toLocal8Bit());
    EXPECT_EQ(LocalInstance::RuntimeFolder(), folder.path());
    qunsetenv("XDG_RUNTIME_DIR");
    const QFileInfo own(LocalInstance::RuntimeFolder());
    EXPECT_TRUE(own.isDir());
    EXPECT_EQ(own.permissions() & (QFile::ReadOther | QFile::WriteOther | QFile::ReadGroup),
              QFile::Permissions());
}

TEST(Instance, TheSessionIsNamedByItsDisplay) {
    qunsetenv("WAYLAND_DISPLAY");
    for (const auto& [display, name] :
         {std::pair(":7", "-7"), std::pair(":7.0", "-7"), std::pair("10.0.0.5:7.1", "10-0-0-5-7")}) {
        qputenv("DISPLAY", display);
        EXPECT_EQ(LocalInstance::SessionName(), QString::fromLatin1(name)) << display;
    }
    qputenv("WAYLAND_DISPLAY", "wayland-1");
    EXPECT_EQ(LocalInstance::SessionName(), QStringLiteral("wayland-1"));
}
