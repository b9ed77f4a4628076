#include "core/Log.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <stdexcept>

#include "core/Numbers.h"
#include "support/FailingFiles.h"
#include "support/FakeMachine.h"
#include "support/Printing.h"

using namespace Qt::StringLiterals;

namespace {

class LogTest : public testing::Test {
protected:
    [[nodiscard]] QString Path() const { return m_folder.filePath(u"applog.txt"_s); }
    [[nodiscard]] QByteArray FileText() const { return m_files.Read(Path()).value_or(QByteArray("no file")); }

    /// What `step` writes to standard error.
    template <typename Step>
    static std::string StandardErrorOf(Step step) {
        testing::internal::CaptureStderr();
        step();
        return testing::internal::GetCapturedStderr();
    }

    QTemporaryDir m_folder;
    FailingFiles m_files;
    FakeClock m_clock;
    Log m_log{m_files, m_clock};
};

}  // namespace

TEST_F(LogTest, ALineGoesToThePlatformsLogAndToNoFile) {
    EXPECT_EQ(StandardErrorOf([&] { m_log.Write(u"Application Terminated"_s); }), "Application Terminated\n");
    EXPECT_FALSE(m_files.Exists(Path()));
}

TEST_F(LogTest, ALineIsAppendedToTheFileWithItsTimeOnceTheFileIsOn) {
    StandardErrorOf([&] {
        m_log.Write(u"before"_s);
        m_log.LogToFile(Path());
        m_log.Write(u"first"_s);
        m_log.Write(u"second"_s);
    });
    EXPECT_EQ(FileText(), QByteArray("2026-03-07 14:30:15 first\n2026-03-07 14:30:15 second\n"));
}

TEST_F(LogTest, ALogOfAnEarlierRunIsContinued) {
    ASSERT_TRUE(m_files.Replace(Path(), "earlier\n"));
    StandardErrorOf([&] {
        m_log.LogToFile(Path());
        m_log.Write(u"now"_s);
    });
    EXPECT_EQ(FileText(), QByteArray("earlier\n2026-03-07 14:30:15 now\n"));
}

TEST_F(LogTest, LineBreaksInsideALineBecomeBlanks) {
    const std::string text = StandardErrorOf([&] {
        m_log.LogToFile(Path());
        m_log.Write(u"a\r\nb\nc\u2028d\u0085e\tf\0g\u001B[31m"_s);
    });
    EXPECT_EQ(text, "a  b c d e f g [31m\n");
    EXPECT_EQ(FileText(), QByteArray("2026-03-07 14:30:15 a  b c d e f g [31m\n"));
}

TEST_F(LogTest, AFailureIsPrefixNumberDescriptionAndSource) {
    const NumberedFailure failure(3045, u"File is in use."_s, u"Store"_s);
    EXPECT_EQ(StandardErrorOf([&] { m_log.WriteFailure(u"Reset Error "_s, failure); }),
              "Reset Error 3045 File is in use. Store\n");
    EXPECT_EQ(StandardErrorOf([&] { m_log.WriteFailure(u"InitGrouptabs_Error : "_s, OverflowError()); }),
              "InitGrouptabs_Error : 6 Overflow \n");
}

TEST_F(LogTest, AFailureToldBrieflyHasNoSource) {
    const NumberedFailure failure(3704, u"The phonebook is closed."_s, u"Store"_s);
    EXPECT_EQ(StandardErrorOf([&] { m_log.WriteFailureBriefly(u"InitGrouptabs_Error : "_s, failure); }),
              "InitGrouptabs_Error : 3704 The phonebook is closed.\n");
}

TEST_F(LogTest, AFailureWithoutANumberHasTheNumberZero) {
    EXPECT_EQ(
        StandardErrorOf([&] { m_log.WriteFailure(u"Reset Error "_s, std::runtime_error("a step failed")); }),
        "Reset Error 0 a step failed \n");
}

TEST_F(LogTest, AFileThatCannotBeWrittenIsPassedOver) {
    m_files.WritesLeft = 0;
    const std::string text = StandardErrorOf([&] {
        m_log.LogToFile(Path());
        m_log.Write(u"first"_s);
    });
    EXPECT_EQ(text, "first\n");
    m_files.WritesLeft = -1;
    StandardErrorOf([&] { m_log.Write(u"second"_s); });
    EXPECT_EQ(FileText(), QByteArray("2026-03-07 14:30:15 second\n"));
}

TEST_F(LogTest, AFolderThatIsMissingIsPassedOver) {
    EXPECT_EQ(StandardErrorOf([&] {
                  m_log.LogToFile(m_folder.filePath(u"missing/applog.txt"_s));
                  m_log.Write(u"line"_s);
              }),
              "line\n");
}
