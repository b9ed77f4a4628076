#include "addressbook/frmTabName.h"

#include "PhonebookOffice.h"

#include <QApplication>
#include <QPushButton>

namespace {

class frmTabNameTest : public ::testing::Test {
protected:
    frmTabNameTest() { m_dialog.show(); }
    QLineEdit& txtName() { return *m_dialog.findChild<QLineEdit*>(QStringLiteral("txtName")); }

    FakeSound m_sound;
    FakeClock m_clock;
    frmTabName m_dialog{m_sound, m_clock};
};

TEST_F(frmTabNameTest, ItIsCanceledFromTheStartAndHasNoButtons) {
    EXPECT_TRUE(m_dialog.IsCanceled());
    EXPECT_TRUE(m_dialog.findChildren<QAbstractButton*>().isEmpty());
    EXPECT_EQ(m_dialog.windowTitle(), QStringLiteral("Larkspan Messenger - Group Name"));
}

TEST_F(frmTabNameTest, ItsTitleIsNotCut) {
    QApplication::processEvents();
    constexpr int IconAndButtons = 25;  // in characters
    const auto characters = static_cast<int>(m_dialog.windowTitle().size()) + IconAndButtons;
    const int room = m_dialog.fontMetrics().averageCharWidth() * characters;
    EXPECT_GE(m_dialog.width(), room);
    m_dialog.resize(10, 10);
    EXPECT_GE(m_dialog.width(), room);
}

TEST_F(frmTabNameTest, EnterTakesTheNameAndHides) {
    QTest::keyClicks(&txtName(), QStringLiteral("  Night shift "));
    QTest::keyClick(&txtName(), Qt::Key_Return);
    EXPECT_FALSE(m_dialog.IsCanceled());
    EXPECT_FALSE(m_dialog.isVisible());
    EXPECT_EQ(m_dialog.EditValue(), QStringLiteral("Night shift"));
}

TEST_F(frmTabNameTest, TheEnterKeyOfTheNumberPadTakesItToo) {
    QTest::keyClick(&txtName(), Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_FALSE(m_dialog.IsCanceled());
}

TEST_F(frmTabNameTest, EscapeHidesAndStaysCanceled) {
    QTest::keyClicks(&txtName(), QStringLiteral("Drivers"));
    QTest::keyClick(&txtName(), Qt::Key_Escape);
    EXPECT_TRUE(m_dialog.IsCanceled());
    EXPECT_FALSE(m_dialog.isVisible());
}

TEST_F(frmTabNameTest, TheCloseButtonHidesAndStaysCanceled) {
    m_dialog.close();
    EXPECT_TRUE(m_dialog.IsCanceled());
    EXPECT_FALSE(m_dialog.isVisible());
}

TEST_F(frmTabNameTest, AStarBeepsAndKeepsTheDialogOpenWithItsTextSelected) {
    QTest::keyClicks(&txtName(), QStringLiteral(" * "));
    QTest::keyClick(&txtName(), Qt::Key_Return);
    EXPECT_EQ(m_sound.Beeps, 1);
    EXPECT_TRUE(m_dialog.isVisible());
    EXPECT_TRUE(m_dialog.IsCanceled());
    EXPECT_EQ(txtName().selectedText(), QStringLiteral(" * "));
    EXPECT_EQ(m_dialog.focusWidget(), &txtName());
    QTest::keyClick(&txtName(), Qt::Key_Escape);
    EXPECT_TRUE(m_dialog.IsCanceled());
}

TEST_F(frmTabNameTest, TheEmptyNameIsNotRefusedHere) {
    QTest::keyClick(&txtName(), Qt::Key_Return);
    EXPECT_FALSE(m_dialog.IsCanceled());
    EXPECT_TRUE(m_dialog.EditValue().isEmpty());
    EXPECT_EQ(m_sound.Beeps, 0);
}

TEST_F(frmTabNameTest, ControlASelectsAllTheText) {
    m_dialog.SetEditValue(QStringLiteral("Drivers"));
    QTest::keyClick(&txtName(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(txtName().selectedText(), QStringLiteral("Drivers"));
}

TEST_F(frmTabNameTest, AValueIsWrittenTrimmedWithTheCaretAtItsEnd) {
    m_dialog.SetEditValue(QStringLiteral("  Drivers "));
    EXPECT_EQ(txtName().text(), QStringLiteral("Drivers"));
    EXPECT_EQ(txtName().cursorPosition(), 7);
    EXPECT_FALSE(txtName().hasSelectedText());
}

TEST_F(frmTabNameTest, ItOpensWithTheCaretBehindTheNameAndNothingSelected) {
    frmTabName dialog(m_sound, m_clock);
    dialog.SetEditValue(QStringLiteral("Drivers"));
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    auto* box = dialog.findChild<QLineEdit*>(QStringLiteral("txtName"));
    EXPECT_TRUE(box->hasFocus());
    EXPECT_FALSE(box->hasSelectedText());
    QTest::keyClicks(box, QStringLiteral("2"));
    EXPECT_EQ(dialog.EditValue(), QStringLiteral("Drivers2"));
}

TEST_F(frmTabNameTest, AKeyStillHeldFromTheMenuTakesNothing) {
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
    QApplication::sendEvent(&txtName(), &held);
    EXPECT_TRUE(m_dialog.isVisible());
    EXPECT_TRUE(m_dialog.IsCanceled());
}

}  // namespace
