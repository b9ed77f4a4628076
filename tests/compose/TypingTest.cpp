#include "ComposeBench.h"

#include "support/FolderWatch.h"

#include <QApplication>
#include <QClipboard>

namespace {

constexpr int TailLength = 4;  // of an empty signature and no tail, with the blank before it
constexpr int RoomForKeys = 40;

/// A composition with five hundred recipients, on an office whose phonebook is open.
class TypingTest : public ComposeBench, public ::testing::WithParamInterface<int> {
protected:
    void SetUp() override {
        ComposeBench::SetUp();
        QStringList keys;
        for (qint16 id = 1; id <= 500; ++id) {
            keys.append(ShowContact(id, QStringLiteral("S%1").arg(id)));
        }
        Area->AddKeysToRecipients(keys);
        ASSERT_TRUE(Office.PhonebookDB().IsConnected());
        QApplication::clipboard()->setText(QStringLiteral("and [more]"));
        ShowWindow();
        txtMessage().setFocus();
    }
    void WriteText(int length) {
        SetMaxMessageSize(static_cast<qint16>(length + TailLength + RoomForKeys));
        txtMessage().SetText(QString(length, u'x'));
        txtMessage().moveCursor(QTextCursor::End);
        QApplication::processEvents();
    }
    [[nodiscard]] QStringList Folders() const {
        return {Office.DataFolder.path(), Office.Folders.ApplicationFolder()};
    }
    /// Presses the key, lets all that follows from it happen and tells how the count of used characters
    /// changed.
    int Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        const int before = Used().toInt();
        QTest::keyClick(&txtMessage(), static_cast<Qt::Key>(key), modifiers);
        QApplication::processEvents();
        return Used().toInt() - before;
    }
};

TEST_P(TypingTest, NoKeyOpensReadsOrWritesAFile) {
    WriteText(GetParam());
    ASSERT_EQ(lvRecipients().Rows().Count(), 500);
    FolderWatch watch(Folders());
    const int looks = Office.Files.Looks;
    EXPECT_EQ(Press(Qt::Key_A), 1);
    EXPECT_EQ(Press(Qt::Key_Space), 1);
    EXPECT_EQ(Press(Qt::Key_BracketLeft), 2);
    EXPECT_EQ(Press(Qt::Key_At) + Press(Qt::Key_Question), 2) << "a place to fill in: the buttons go dim";
    EXPECT_EQ(Press(Qt::Key_Backspace), -1);
    EXPECT_EQ(Press(Qt::Key_Home) + Press(Qt::Key_Right), 0);
    EXPECT_EQ(Press(Qt::Key_Delete), -1);
    EXPECT_EQ(Press(Qt::Key_V, Qt::ControlModifier), 12);
    EXPECT_EQ(Press(Qt::Key_Z, Qt::ControlModifier), -12);
    EXPECT_EQ(Press(Qt::Key_Return), 0);
    EXPECT_EQ(Press(Qt::Key_A, Qt::ControlModifier), 0);
    EXPECT_EQ(Press(Qt::Key_B), 1 - GetParam() - 4) << "in place of all";
    EXPECT_EQ(watch.Events(), QStringList());
    EXPECT_EQ(Office.Files.Looks, looks);
}

TEST_P(TypingTest, NeitherDoesAKeyThatFillsTheBoxOrIsCutOff) {
    WriteText(GetParam());
    SetMaxMessageSize(static_cast<qint16>(GetParam() + TailLength + 1));
    FolderWatch watch(Folders());
    const int looks = Office.Files.Looks;
    EXPECT_EQ(Press(Qt::Key_A), 1);
    EXPECT_EQ(Left(), QStringLiteral("0"));
    EXPECT_GT(Office.Sound.Beeps, 0);
    EXPECT_EQ(Press(Qt::Key_B), 0);
    txtMessage().moveCursor(QTextCursor::Start);
    EXPECT_EQ(Press(Qt::Key_C), 0) << "pushes the last character out";
    EXPECT_TRUE(txtMessage().Text().startsWith(u'c', Qt::CaseInsensitive));
    EXPECT_EQ(watch.Events(), QStringList());
    EXPECT_EQ(Office.Files.Looks, looks);
}

TEST_P(TypingTest, AKeyThatReadTheOutboxOrThePhonebookWouldBeSeen) {
    WriteText(GetParam());
    FolderWatch watch(Folders());
    const int looks = Office.Files.Looks;
    QObject onKey;
    QObject::connect(&txtMessage(), &MessageEdit::TextChanged, &onKey,
                     [this] { (void)mdlPhonebook::GetMessageTails(Office.PhonebookValues); });
    Press(Qt::Key_A);
    EXPECT_TRUE(watch.Events().contains(QStringLiteral("read smscontacts.mdb"))) << "although it is open";
    QObject::connect(&txtMessage(), &MessageEdit::TextChanged, &onKey,
                     [this] { (void)Office.OutboxDB().OpenDatabase(engine::Mode::ReadShared); });
    Press(Qt::Key_B);
    EXPECT_TRUE(watch.Events().contains(QStringLiteral("open smsmessages.mdb")));
    QObject::connect(&txtMessage(), &MessageEdit::TextChanged, &onKey, [this] { History.ReadHistory(); });
    Press(Qt::Key_C);
    EXPECT_GT(Office.Files.Looks, looks);
}

INSTANTIATE_TEST_SUITE_P(TextsOf, TypingTest, ::testing::Values(160, 1600),
                         [](const auto& text) { return std::to_string(text.param) + "Characters"; });

}  // namespace
