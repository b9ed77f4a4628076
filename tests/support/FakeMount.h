#pragma once

#include "support/Environment.h"

#include <QFile>
#include <QList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// A program "mount" of the test's own, found before the machine's for the lifetime of the object. It notes
/// what it is called with, and then does what `work` says, in the words of the shell.
class FakeMount {
public:
    explicit FakeMount(const QByteArray& work = "true")
        : m_path("PATH", m_folder.path().toLocal8Bit() + ':' + qgetenv("PATH")) {
        QFile program(m_folder.filePath(QStringLiteral("mount")));
        EXPECT_TRUE(program.open(QIODevice::WriteOnly));
        program.write("#!/bin/sh\necho \"$@\" >> '" + CallsPath().toLocal8Bit() + "'\n" + work + '\n');
        EXPECT_TRUE(program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }

    /// The arguments of each call until now.
    [[nodiscard]] QList<QByteArray> Calls() const {
        QFile file(CallsPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().split('\n') : QList<QByteArray>();
    }

private:
    [[nodiscard]] QString CallsPath() const { return m_folder.filePath(QStringLiteral("calls")); }

    QTemporaryDir m_folder;
    EnvironmentVariable m_path;
};
