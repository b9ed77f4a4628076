#include "store/engine/FileConnection.h"

#include "store/engine/sqlite/OfficeFiles.h"
#include "support/FakeMachine.h"
#include "support/Printing.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace Number = engine::Number;

class FileConnectionTest : public ::testing::Test {
protected:
    QTemporaryDir Folder;
    FakeClock Time;
    engine::FileConnectionFactory Factory{Time};

    [[nodiscard]] QString Write(const QByteArray& bytes) const {
        QString path = Folder.filePath(QStringLiteral("file.mdb"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return path;
    }
    engine::Error FailureOf(const QString& path) {
        auto connection = Factory.NewConnection();
        try {
            connection->Open(path);
        } catch (const engine::Failure& failure) {
            EXPECT_EQ(failure.Number(), engine::GenericFailure);
            return failure.Item();
        }
        return {};
    }
};

TEST_F(FileConnectionTest, TheNameOfAFileDoesNotMatter) {
    const QString path = Folder.filePath(QStringLiteral("notes.txt"));
    OfficeFiles::CreateOutboxFile(path);
    EXPECT_EQ(FailureOf(path).SQLState, QString());
}

TEST_F(FileConnectionTest, AnEmptyFileIsNoDatabaseAndStaysEmpty) {
    const QString path = Write({});
    EXPECT_EQ(FailureOf(path).SQLState, QString::number(Number::NotADatabase));
    EXPECT_EQ(QFile(path).size(), 0);
}

TEST_F(FileConnectionTest, AJetFileAndALinkFileAreNamedAsWhatTheyAre) {
    const engine::Error jet =
        FailureOf(Write(QByteArray("\0\1\0\0Standard Jet DB\0", 20) + QByteArray(4076, '\0')));
    EXPECT_EQ(jet.SQLState, QString::number(Number::NotADatabase));
    EXPECT_TRUE(jet.Description.contains(QStringLiteral("Jet")));
    const engine::Error link = FailureOf(Write("[larkspan-link]\nhost=db.example\n"));
    EXPECT_EQ(link.SQLState, QString::number(Number::NotADatabase));
    EXPECT_TRUE(link.Description.contains(QStringLiteral("server")));
}

TEST_F(FileConnectionTest, AnyOtherFileIsNoDatabaseAndIsNotTouched) {
    for (const QByteArray& bytes : {QByteArray("x"), QByteArray("SQLite format 3"), QByteArray(5000, 'x'),
                                    QByteArray("SQLite format 3\0", 16) + QByteArray(84, '\xFF')}) {
        const QString path = Write(bytes);
        EXPECT_EQ(FailureOf(path).SQLState, QString::number(Number::NotADatabase))
            << bytes.left(20).constData();
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), bytes);
    }
}

TEST_F(FileConnectionTest, AFileThatMayNotBeReadIsTriedAgain) {
    const QString path = Folder.filePath(QStringLiteral("outbox.mdb"));
    OfficeFiles::CreateOutboxFile(path);
    chmod(Folder.path().toUtf8().constData(), 0755);
    chmod(path.toUtf8().constData(), 0);
    const uid_t user = geteuid();
    constexpr uid_t Nobody = 65534;
    ASSERT_EQ(seteuid(user == 0 ? Nobody : user), 0);
    const QString number = FailureOf(path).SQLState;
    ASSERT_EQ(seteuid(user), 0);
    EXPECT_EQ(number, QString::number(Number::CannotOpen));
    EXPECT_TRUE(engine::IsTransientError(engine::GenericFailure, 0, number));
}

TEST_F(FileConnectionTest, AFileThatWasReplacedIsLookedAtAnew) {
    const QString path = Folder.filePath(QStringLiteral("outbox.mdb"));
    OfficeFiles::CreateOutboxFile(path);
    EXPECT_EQ(FailureOf(path).SQLState, QString());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.write("[larkspan-link]\n");
    file.close();
    EXPECT_EQ(FailureOf(path).SQLState, QString::number(Number::NotADatabase));
    EXPECT_TRUE(FailureOf(path).Description.contains(QStringLiteral("server")));
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(FailureOf(path).SQLState, QString::number(Number::NoSuchFile));
    OfficeFiles::CreateOutboxFile(path);
    EXPECT_EQ(FailureOf(path).SQLState, QString());
}

TEST_F(FileConnectionTest, TheNameOfASpecialFileOfTheEngineIsAFileName) {
    for (const auto& name : {u":memory:", u"file:x?mode=memory", u"file::memory:"}) {
        EXPECT_EQ(FailureOf(QString::fromUtf16(name)).SQLState, QString::number(Number::NoSuchFile));
    }
}

}  // namespace
