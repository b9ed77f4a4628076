#include "controls/FormTools.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTextEdit>

#include <gtest/gtest.h>

namespace {

TEST(FormTools, ACaptionIsTheProductsNameAndTheTitle) {
    QWidget form;
    FormTools::SetFormCaption(form, QStringLiteral("History"));
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Larkspan Messenger - History"));
}

TEST(FormTools, AnEmptyTitleGivesTheProductsNameAlone) {
    QWidget form;
    FormTools::SetFormCaption(form, QString());
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Larkspan Messenger"));
}

TEST(FormTools, TheTwoCharactersOfALineBreakBecomeOneInLabelsAlone) {
    QWidget form;
    QLabel label(QStringLiteral("One\\nTwo\\n"), &form);
    QLineEdit edit(QStringLiteral("C:\\new"), &form);
    FormTools::BreakLines(form);
    EXPECT_EQ(label.text(), QStringLiteral("One\nTwo\n"));
    EXPECT_EQ(edit.text(), QStringLiteral("C:\\new"));
}

TEST(FormTools, IndentPutsThatManyBlanksInFront) {
    QWidget form;
    FormTools::SetFormCaption(form, QStringLiteral("A"), 3);
    EXPECT_EQ(form.windowTitle(), QStringLiteral("   Larkspan Messenger - A"));
}

TEST(FormTools, PlaceholdersAreReplacedInEveryControlAndInTheTitle) {
    QWidget form;
    form.setWindowTitle(QStringLiteral("{APP} - About"));
    QLabel label(QStringLiteral("{APP} of {SUITE}, {YEAR}"), &form);
    QPushButton button(QStringLiteral("Close {APP}"), &form);
    QGroupBox frame(QStringLiteral("{SUITE}"), &form);
    auto* edit = new QPlainTextEdit(QStringLiteral("(c) {YEAR}"), &frame);
    FormTools::ExpandPlaceholders(form, 2026);
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Larkspan Messenger - About"));
    EXPECT_EQ(label.text(), QStringLiteral("Larkspan Messenger of Larkspan Business, 2026"));
    EXPECT_EQ(button.text(), QStringLiteral("Close Larkspan Messenger"));
    EXPECT_EQ(frame.title(), QStringLiteral("Larkspan Business"));
    EXPECT_EQ(edit->toPlainText(), QStringLiteral("(c) 2026"));
}

TEST(FormTools, TheYearHasFourDigits) {
    QWidget form;
    QLabel label(QStringLiteral("{YEAR}"), &form);
    FormTools::ExpandControl(label, 987);
    EXPECT_EQ(label.text(), QStringLiteral("0987"));
}

TEST(FormTools, ATextWithoutPlaceholdersIsNotWritten) {
    QLineEdit edit(QStringLiteral("plain"));
    int writes = 0;
    QObject::connect(&edit, &QLineEdit::textChanged, &edit, [&writes] { ++writes; });
    edit.setCursorPosition(2);
    FormTools::ExpandControl(edit, 2026);
    EXPECT_EQ(edit.cursorPosition(), 2);
    EXPECT_EQ(writes, 0);
}

TEST(FormTools, AControlWithoutAnyTextIsPassedOver) {
    QWidget bare;
    FormTools::ExpandControl(bare, 2026);
    EXPECT_FALSE(bare.property("text").isValid());
}

TEST(FormTools, SelectAllTextSelectsAndFocusesIfAsked) {
    QWidget form;
    QLineEdit line(QStringLiteral("some words"), &form);
    QPlainTextEdit plain(QStringLiteral("two\nlines"), &form);
    QTextEdit rich(&form);
    rich.setPlainText(QStringLiteral("rich"));
    form.show();
    FormTools::SelectAllText(plain, true);
    EXPECT_EQ(plain.textCursor().selectionEnd() - plain.textCursor().selectionStart(), 9);
    EXPECT_EQ(form.focusWidget(), &plain);
    FormTools::SelectAllText(line, false);
    EXPECT_EQ(line.selectedText(), QStringLiteral("some words"));
    EXPECT_EQ(form.focusWidget(), &plain);
    FormTools::SelectAllText(rich, false);
    EXPECT_EQ(rich.textCursor().selectedText(), QStringLiteral("rich"));
}

TEST(FormTools, CaretToEndSelectsNothingAndTakesTheFocus) {
    QWidget form;
    QLineEdit line(QStringLiteral("some words"), &form);
    QPlainTextEdit plain(QStringLiteral("two\nlines"), &form);
    form.show();
    line.selectAll();
    FormTools::CaretToEnd(line);
    EXPECT_EQ(line.cursorPosition(), 10);
    EXPECT_FALSE(line.hasSelectedText());
    EXPECT_EQ(form.focusWidget(), &line);
    FormTools::CaretToEnd(plain);
    EXPECT_EQ(plain.textCursor().position(), 9);
    EXPECT_FALSE(plain.textCursor().hasSelection());
    EXPECT_EQ(form.focusWidget(), &plain);
}

TEST(FormTools, AFormCannotBecomeTooNarrowForItsTitle) {
    QWidget form;
    form.setWindowTitle(QStringLiteral("Larkspan Messenger - Schedule"));
    FormTools::KeepTitleWhole(form);
    form.show();
    form.resize(10, 10);
    const int title = form.fontMetrics().averageCharWidth() * static_cast<int>(form.windowTitle().size());
    EXPECT_GT(form.width(), title);
    form.resize(title * 3, 10);
    EXPECT_EQ(form.width(), title * 3);
}

TEST(FormTools, AControlWithoutTextGetsTheFocusAllTheSame) {
    QWidget form;
    QLineEdit line(&form);
    QPushButton button(&form);
    form.show();
    line.setFocus();
    FormTools::SelectAllText(button, false);
    EXPECT_EQ(form.focusWidget(), &line);
    FormTools::SelectAllText(button, true);
    EXPECT_EQ(form.focusWidget(), &button);
    line.setFocus();
    FormTools::CaretToEnd(button);
    EXPECT_EQ(form.focusWidget(), &button);
}

}  // namespace
