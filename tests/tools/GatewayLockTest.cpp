#include "larkspan-gateway/GatewayLock.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <stdexcept>

TEST(GatewayLock, OneGatewayIsAlone) {
    const QTemporaryDir folder;
    GatewayLock lock(folder.path());
    EXPECT_TRUE(lock.TryAlone());
    lock.Share();
    EXPECT_TRUE(lock.TryAlone());
}

TEST(GatewayLock, OfTwoGatewaysNeitherIsAlone) {
    const QTemporaryDir folder;
    GatewayLock first(folder.path());
    GatewayLock second(folder.path());
    EXPECT_FALSE(first.TryAlone());
    EXPECT_FALSE(second.TryAlone());
}

TEST(GatewayLock, AFailedTryKeepsTheShare) {
    const QTemporaryDir folder;
    GatewayLock first(folder.path());
    {
        GatewayLock second(folder.path());
        EXPECT_FALSE(first.TryAlone());
        EXPECT_FALSE(second.TryAlone());
    }
    EXPECT_TRUE(first.TryAlone());
}

TEST(GatewayLock, TheLastOneIsAloneAgain) {
    const QTemporaryDir folder;
    GatewayLock first(folder.path());
    { const GatewayLock second(folder.path()); }
    EXPECT_TRUE(first.TryAlone());
}

TEST(GatewayLock, TheFileStaysAndIsEmpty) {
    const QTemporaryDir folder;
    { const GatewayLock lock(folder.path()); }
    EXPECT_EQ(QFile(folder.filePath(GatewayLock::FileName)).size(), 0);
    EXPECT_TRUE(QFile::exists(folder.filePath(GatewayLock::FileName)));
}

TEST(GatewayLock, AFolderThatIsNotThereIsAClearError) {
    try {
        const GatewayLock lock(QStringLiteral("/nowhere/at/all"));
        ADD_FAILURE() << "locked a missing folder";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(
            QString::fromUtf8(error.what()),
            QStringLiteral("/nowhere/at/all/smsgateway.lock cannot be locked: No such file or directory"));
    }
}
