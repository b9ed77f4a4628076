#pragma once

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

/// No file of this process can grow beyond a number of bytes, as on a disk that is full; holds for the
/// lifetime of the object. Works for every account and needs no mount.
class FullDisk {
public:
    explicit FullDisk(qint64 bytes) {
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &m_limit), 0);
        rlimit small = m_limit;
        small.rlim_cur = static_cast<rlim_t>(bytes);
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &m_limit);
        std::signal(SIGXFSZ, m_handler);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit m_limit{};
    void (*m_handler)(int) = nullptr;
};

/// This process without the rights of the administrator, for whom no folder is read-only. Make it before the
/// folders of the test, so that they belong to the same account.
class OrdinaryUser {
public:
    OrdinaryUser() {
        if (m_before == 0) {
            constexpr uid_t Nobody = 65534;
            EXPECT_EQ(seteuid(Nobody), 0);
        }
    }
    ~OrdinaryUser() { EXPECT_EQ(seteuid(m_before), 0); }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    uid_t m_before = geteuid();
};

/// A first base of a test: comes before the folders of the others, so that they belong to this account.
struct AsOrdinaryUser {
    OrdinaryUser User;
};

/// A folder in which nothing can be made, renamed or removed, for the lifetime of the object.
class ReadOnlyFolder {
public:
    explicit ReadOnlyFolder(const QString& path) : m_path(path.toLocal8Bit()) {
        EXPECT_EQ(chmod(m_path.constData(), 0500), 0);
        EXPECT_NE(faccessat(AT_FDCWD, m_path.constData(), W_OK, AT_EACCESS), 0)
            << "make an OrdinaryUser first";
    }
    ~ReadOnlyFolder() { chmod(m_path.constData(), 0700); }
    ReadOnlyFolder(const ReadOnlyFolder&) = delete;
    ReadOnlyFolder& operator=(const ReadOnlyFolder&) = delete;

private:
    QByteArray m_path;
};
