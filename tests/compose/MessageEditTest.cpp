#include "compose/MessageEdit.h"

#include "controls/ModalDoor.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace {

class MessageEditTest : public ::testing::Test {
protected:
    void SetUp() override {
        auto* column = new QVBoxLayout(&Window);
        Edit = new MessageEdit(&Window);
        Next = new QLineEdit(&Window);
        column->addWidget(Edit);
        column->addWidget(Next);
        QObject::connect(Edit, &MessageEdit::TextChanged, Edit, [this] { ++Changes; });
        Window.show();
        Window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&Window));
        Edit->setFocus();
    }
    /// Drags the data over the middle of the box and lets it go there; whether the box takes it.
    bool Drop(const QMimeData& data) {
        QWidget* const place = Edit->viewport();
        const QPoint middle = place->rect().center();
        QDragEnterEvent enter(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(place, &enter);
        QDropEvent drop(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(place, &drop);
        return enter.isAccepted();
    }
    void Paste(const QString& text) {
        QApplication::clipboard()->setText(text);
        Edit->paste();
    }

    QWidget Window;
    MessageEdit* Edit = nullptr;
    QLineEdit* Next = nullptr;
    int Changes = 0;
};

TEST_F(MessageEditTest, EnterIsConsumedAndInsertsNothing) {
    QTest::keyClicks(Edit, QStringLiteral("ab"));
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        for (const auto modifier : {Qt::NoModifier, Qt::ShiftModifier, Qt::ControlModifier}) {
            QKeyEvent press(QEvent::KeyPress, key, modifier, QStringLiteral("\r"));
            QApplication::sendEvent(Edit, &press);
            EXPECT_TRUE(press.isAccepted());
        }
    }
    EXPECT_EQ(Edit->Text(), QStringLiteral("ab"));
}

TEST_F(MessageEditTest, CtrlASelectsTheWholeTextAndIsConsumed) {
    Edit->SetText(QStringLiteral("Hello"));
    QKeyEvent press(QEvent::KeyPress, Qt::Key_A, Qt::ControlModifier, QStringLiteral("\x01"));
    QApplication::sendEvent(Edit, &press);
    EXPECT_TRUE(press.isAccepted());
    EXPECT_EQ(Edit->textCursor().selectionStart(), 0);
    EXPECT_EQ(Edit->textCursor().selectionEnd(), 5);
}

TEST_F(MessageEditTest, TypingStopsAtTheLimit) {
    Edit->SetMaxLength(5);
    QTest::keyClicks(Edit, QStringLiteral("1234567"));
    EXPECT_EQ(Edit->Text(), QStringLiteral("12345"));
    Edit->moveCursor(QTextCursor::Start);
    QTest::keyClicks(Edit, QStringLiteral("x"));
    EXPECT_EQ(Edit->Text(), QStringLiteral("12345")) << "a full box drops nothing for a new character";
}

TEST_F(MessageEditTest, ATypedCharacterReplacesASelectionInAFullBox) {
    Edit->SetMaxLength(5);
    Edit->SetText(QStringLiteral("12345"));
    Edit->Select(1, 2);
    QTest::keyClicks(Edit, QStringLiteral("xyz"));
    EXPECT_EQ(Edit->Text(), QStringLiteral("1xy45"));
}

TEST_F(MessageEditTest, APastedTextIsCutToTheLimit) {
    Edit->SetMaxLength(8);
    QTest::keyClicks(Edit, QStringLiteral("ab"));
    Edit->moveCursor(QTextCursor::Start);
    Paste(QStringLiteral("0123456789"));
    EXPECT_EQ(Edit->Text(), QStringLiteral("012345ab"));
}

TEST_F(MessageEditTest, ACutPasteDoesNotSplitASurrogatePair) {
    Edit->SetMaxLength(4);
    Paste(QStringLiteral("abc\U0001F600"));
    EXPECT_EQ(Edit->Text(), QStringLiteral("abc"));
}

TEST_F(MessageEditTest, ATextOfAnInputMethodIsCutToTheLimit) {
    Edit->SetMaxLength(4);
    QInputMethodEvent event;
    event.setCommitString(QStringLiteral("abcdef"));
    QApplication::sendEvent(Edit, &event);
    EXPECT_EQ(Edit->Text(), QStringLiteral("abcd"));
}

TEST_F(MessageEditTest, ATextFromAnotherProgramCanBeDroppedIn) {
    QMimeData text;
    text.setText(QStringLiteral("Lunch"));
    EXPECT_TRUE(Drop(text));
    EXPECT_EQ(Edit->Text(), QStringLiteral("Lunch"));
}

TEST_F(MessageEditTest, ContactsDraggedOutOfAListCannotBeDroppedIn) {
    const std::unique_ptr<QMimeData> keys = NewKeyData(QStringLiteral("C11\r\n"));
    EXPECT_FALSE(Drop(*keys));
    EXPECT_EQ(Edit->Text(), QString());
}

TEST_F(MessageEditTest, PastedLineBreaksStayAndCountOneEach) {
    Edit->SetMaxLength(5);
    Paste(QStringLiteral("a\r\nb\nc\rd"));
    EXPECT_EQ(Edit->Text(), QStringLiteral("a\nb\nc"));
}

TEST_F(MessageEditTest, EveryOtherCharacterStaysWhatItWas) {
    const QString text = QStringLiteral("O'Neill \u00a0 \u20ac [x] \u2013 \U0001F600\t\"%#");
    Paste(text);
    EXPECT_EQ(Edit->Text(), text);
}

TEST_F(MessageEditTest, TabLeavesTheBox) {
    QTest::keyClick(Edit, Qt::Key_Tab);
    EXPECT_TRUE(Next->hasFocus());
    EXPECT_EQ(Edit->Text(), QString());
}

TEST_F(MessageEditTest, AltAndALetterIsNoText) {
    QTest::keyClick(Edit, Qt::Key_X, Qt::AltModifier);
    EXPECT_EQ(Edit->Text(), QString());
}

TEST_F(MessageEditTest, UndoTakesBackWhatWasTypedAndClearedButNotANewText) {
    QTest::keyClicks(Edit, QStringLiteral("Hello"));
    Edit->ClearText();
    Edit->undo();
    EXPECT_EQ(Edit->Text(), QStringLiteral("Hello"));
    Edit->SetText(QStringLiteral("New"));
    Edit->undo();
    EXPECT_EQ(Edit->Text(), QStringLiteral("New"));
}

TEST_F(MessageEditTest, ACutThatATypedCharacterCausesIsUndoneTogetherWithIt) {
    Edit->SetText(QStringLiteral("12345"));
    QObject::connect(Edit, &MessageEdit::TextChanged, Edit, [this] {
        if (Edit->Text().size() > 5) {
            Edit->CutTo(5);
        }
    });
    Edit->moveCursor(QTextCursor::Start);
    QTest::keyClicks(Edit, QStringLiteral("x"));
    EXPECT_EQ(Edit->Text(), QStringLiteral("x1234"));
    EXPECT_EQ(Edit->textCursor().position(), 5);
    Edit->undo();
    EXPECT_EQ(Edit->Text(), QStringLiteral("12345"));
    Edit->redo();
    EXPECT_EQ(Edit->Text(), QStringLiteral("x1234"));
}

TEST_F(MessageEditTest, WhatIsTypedInARowIsUndoneInARowWhileThereIsRoom) {
    Edit->SetUnitsLeft(100);
    QTest::keyClicks(Edit, QStringLiteral("Hello"));
    Edit->undo();
    EXPECT_EQ(Edit->Text(), QString());
}

TEST_F(MessageEditTest, APasteThatIsCutIsUndoneAtOnce) {
    QTest::keyClicks(Edit, QStringLiteral("ab"));
    QObject::connect(Edit, &MessageEdit::TextChanged, Edit, [this] {
        if (Edit->Text().size() > 5) {
            Edit->CutTo(5);
        }
    });
    Paste(QStringLiteral("0123456789"));
    EXPECT_EQ(Edit->Text(), QStringLiteral("ab012"));
    Edit->undo();
    EXPECT_EQ(Edit->Text(), QStringLiteral("ab"));
}

TEST_F(MessageEditTest, ADropThatIsCutIsUndoneAtOnceAndWhatWasTypedBeforeStaysUndoable) {
    QTest::keyClicks(Edit, QStringLiteral("ab"));
    QObject::connect(Edit, &MessageEdit::TextChanged, Edit, [this] {
        if (Edit->Text().size() > 5) {
            Edit->CutTo(5);
        }
    });
    QMimeData text;
    text.setText(QStringLiteral("0123456789"));
    EXPECT_TRUE(Drop(text));
    EXPECT_EQ(Edit->Text(), QStringLiteral("ab012"));
    Edit->undo();
    EXPECT_EQ(Edit->Text(), QStringLiteral("ab"));
    Edit->redo();
    EXPECT_EQ(Edit->Text(), QStringLiteral("ab012"));
    Edit->undo();
    Edit->undo();
    EXPECT_TRUE(Edit->Text().size() < 2) << "the keys before it";
}

TEST_F(MessageEditTest, ACutThatTheUserDidNotCauseIsForGood) {
    QTest::keyClicks(Edit, QStringLiteral("Hello"));
    Edit->CutTo(2);
    EXPECT_EQ(Edit->Text(), QStringLiteral("He"));
    Edit->undo();
    EXPECT_EQ(Edit->Text(), QStringLiteral("He"));
    QTest::keyClicks(Edit, QStringLiteral("y"));
    Edit->undo();
    EXPECT_EQ(Edit->Text(), QStringLiteral("He"));
}

TEST_F(MessageEditTest, EachChangeIsAnnouncedOnce) {
    QTest::keyClicks(Edit, QStringLiteral("abc"));
    EXPECT_EQ(Changes, 3);
    Paste(QStringLiteral("defg"));
    EXPECT_EQ(Changes, 4);
    Edit->ClearText();
    EXPECT_EQ(Changes, 5);
}

}  // namespace
