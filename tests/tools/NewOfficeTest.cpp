#include "store/office/NewOffice.h"

#include "store/engine/Connection.h"
#include "tools/TestOffice.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace {

QStringList EverythingIn(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                  QDir::Name);
}

QByteArray Contents(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

void Write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

/// Creates and returns the reason why it failed; empty if it worked.
QString FailureOf(const QString& folder, const std::optional<SampleOffice::Plan>& plan = std::nullopt) {
    engine::FileConnectionFactory engines;
    try {
        static_cast<void>(NewOffice::Create(folder, plan, engines));
    } catch (const OfficeError& error) {
        return error.Text();
    }
    return {};
}

class NewOfficeInFolder : public ::testing::Test {
protected:
    [[nodiscard]] QString Path(const QString& name) const { return m_root.filePath(name); }

    QTemporaryDir m_root;
};

}  // namespace

TEST_F(NewOfficeInFolder, MakesTheFolderAndBothFilesAndNothingElse) {
    EXPECT_EQ(FailureOf(Path(QStringLiteral("office"))), QString());
    EXPECT_EQ(EverythingIn(Path(QStringLiteral("office"))),
              (QStringList{NewOffice::PhonebookName, NewOffice::OutboxName}));
}

TEST_F(NewOfficeInFolder, AnExistingFolderKeepsWhatIsInIt) {
    Write(Path(QStringLiteral("notes.txt")), "mine");
    EXPECT_EQ(FailureOf(m_root.path()), QString());
    EXPECT_EQ(EverythingIn(m_root.path()),
              (QStringList{QStringLiteral("notes.txt"), NewOffice::PhonebookName, NewOffice::OutboxName}));
}

TEST_F(NewOfficeInFolder, AnExistingFileIsNeverTouched) {
    for (const QString& name : {NewOffice::OutboxName, NewOffice::PhonebookName}) {
        const QTemporaryDir root;
        Write(root.filePath(name), "somebody's work");
        const QString failure = FailureOf(root.path(), SampleOffice::Plan{10, 1});
        EXPECT_TRUE(failure.contains(name) && failure.endsWith(QStringLiteral("is there already")))
            << failure.toStdString();
        EXPECT_EQ(Contents(root.filePath(name)), "somebody's work");
        EXPECT_EQ(EverythingIn(root.path()), QStringList{name});
    }
}

TEST_F(NewOfficeInFolder, ALinkThatLeadsNowhereCountsAsAFile) {
    ASSERT_TRUE(QFile::link(Path(QStringLiteral("gone")), Path(NewOffice::OutboxName)));
    EXPECT_TRUE(FailureOf(m_root.path()).endsWith(QStringLiteral("is there already")));
    EXPECT_EQ(EverythingIn(m_root.path()), QStringList{NewOffice::OutboxName});
}

TEST_F(NewOfficeInFolder, AStopLeavesNothingBehind) {
    engine::FileConnectionFactory engines;
    const QString folder = Path(QStringLiteral("office"));
    EXPECT_FALSE(NewOffice::Create(folder, SampleOffice::Plan{100, 1}, engines,
                                   [](int done, int) { return done < 60; }));
    EXPECT_FALSE(QFile::exists(folder));
    EXPECT_TRUE(EverythingIn(m_root.path()).isEmpty());
}

TEST_F(NewOfficeInFolder, AStopInAnExistingFolderLeavesTheFolder) {
    engine::FileConnectionFactory engines;
    EXPECT_FALSE(NewOffice::Create(m_root.path(), SampleOffice::Plan{100, 1}, engines,
                                   [](int, int) { return false; }));
    EXPECT_TRUE(QFile::exists(m_root.path()));
    EXPECT_TRUE(EverythingIn(m_root.path()).isEmpty());
}

TEST_F(NewOfficeInFolder, AFileWhereTheFolderShouldBeIsAClearError) {
    Write(Path(QStringLiteral("office")), "a file");
    EXPECT_TRUE(FailureOf(Path(QStringLiteral("office"))).endsWith(QStringLiteral("is not a folder")));
    EXPECT_EQ(Contents(Path(QStringLiteral("office"))), "a file");
}

TEST_F(NewOfficeInFolder, AFolderInAMissingFolderIsAClearError) {
    EXPECT_TRUE(FailureOf(Path(QStringLiteral("missing/office"))).endsWith(QStringLiteral("cannot be made")));
    EXPECT_TRUE(EverythingIn(m_root.path()).isEmpty());
}

TEST_F(NewOfficeInFolder, TooManyContactsMakeNothing) {
    engine::FileConnectionFactory engines;
    const QString folder = Path(QStringLiteral("office"));
    EXPECT_THROW(static_cast<void>(NewOffice::Create(folder, SampleOffice::Plan{40000, 1}, engines)),
                 std::invalid_argument);
    EXPECT_FALSE(QFile::exists(folder));
}

TEST_F(NewOfficeInFolder, ProgressRunsFromNothingToAllContacts) {
    engine::FileConnectionFactory engines;
    QList<int> seen;
    ASSERT_TRUE(NewOffice::Create(Path(QStringLiteral("office")), SampleOffice::Plan{60, 1}, engines,
                                  [&](int done, int total) {
                                      EXPECT_EQ(total, 60);
                                      seen.append(done);
                                      return true;
                                  }));
    EXPECT_EQ(seen.constFirst(), 0);
    EXPECT_EQ(seen.constLast(), 60);
    EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end()));
}

TEST_F(NewOfficeInFolder, ANameWithBlanksAndAccentsWorks) {
    const QString folder = Path(QStringLiteral("Büro – Ó Dálaigh & 'Co'"));
    EXPECT_EQ(FailureOf(folder), QString());
    EXPECT_TRUE(QFile::exists(folder + u'/' + NewOffice::OutboxName));
}
