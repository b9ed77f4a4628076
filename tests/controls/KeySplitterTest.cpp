#include "controls/KeySplitter.h"

#include <QAccessible>
#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace {

/// A window with two fields side by side.
class KeySplitterTest : public ::testing::Test {
protected:
    KeySplitterTest() : m_splitter(new KeySplitter(Qt::Horizontal, m_window, Qt::Key_F8)) {
        m_splitter->setChildrenCollapsible(false);
        m_splitter->setHandleWidth(10);
        m_splitter->addWidget(m_left);
        m_splitter->addWidget(m_right);
        m_splitter->SetBarName(QStringLiteral("Division"), QStringLiteral("Help"));
        (new QVBoxLayout(&m_window))->addWidget(m_splitter);
        m_window.resize(600, 100);
        m_window.show();
        m_window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
        m_right->setFocus();
    }
    static void Press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
    [[nodiscard]] QWidget* Bar() const { return m_splitter->handle(1); }

    QWidget m_window;
    QLineEdit* m_left = new QLineEdit;
    QLineEdit* m_right = new QLineEdit;
    KeySplitter* m_splitter;
};

TEST_F(KeySplitterTest, ItsKeyGivesTheBarTheFocusAndGivesItBack) {
    Press(Qt::Key_F8);
    EXPECT_TRUE(Bar()->hasFocus());
    Press(Qt::Key_F8);
    EXPECT_TRUE(m_right->hasFocus());
    m_left->setFocus();
    for (const Qt::Key end : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
        Press(Qt::Key_F8);
        ASSERT_TRUE(Bar()->hasFocus());
        Press(end);
        EXPECT_TRUE(m_left->hasFocus()) << end;
    }
}

TEST_F(KeySplitterTest, TheArrowsMoveTheBar) {
    Press(Qt::Key_F8);
    const int before = m_left->width();
    Press(Qt::Key_Left);
    EXPECT_LT(m_left->width(), before);
    Press(Qt::Key_Right);
    EXPECT_EQ(m_left->width(), before);
    Press(Qt::Key_Right);
    EXPECT_GT(m_left->width(), before);
}

TEST_F(KeySplitterTest, HomeAndEndMoveItAsFarAsItGoes) {
    m_left->setMinimumWidth(70);
    m_right->setMinimumWidth(90);
    Press(Qt::Key_F8);
    Press(Qt::Key_Home);
    EXPECT_EQ(m_left->width(), 70);
    Press(Qt::Key_Left);
    EXPECT_EQ(m_left->width(), 70);
    Press(Qt::Key_End);
    EXPECT_EQ(m_right->width(), 90);
}

TEST_F(KeySplitterTest, TabAndTheMousePassTheBarBy) {
    m_left->setFocus();
    Press(Qt::Key_Tab);
    EXPECT_TRUE(m_right->hasFocus());
    QTest::mouseClick(Bar(), Qt::LeftButton);
    EXPECT_TRUE(m_right->hasFocus());
    Press(Qt::Key_F8);
    Press(Qt::Key_Tab);
    EXPECT_FALSE(Bar()->hasFocus());
    QTest::mouseClick(Bar(), Qt::LeftButton);
    EXPECT_FALSE(Bar()->hasFocus()) << "nor once it had the focus";
}

TEST_F(KeySplitterTest, TheBarHasANameAndShowsTheFocus) {
    const QImage before = Bar()->grab().toImage();
    Press(Qt::Key_F8);
    EXPECT_NE(Bar()->grab().toImage(), before);
    const QAccessibleInterface* voice = QAccessible::queryAccessibleInterface(Bar());
    ASSERT_NE(voice, nullptr);
    EXPECT_EQ(voice->text(QAccessible::Name), QStringLiteral("Division"));
    EXPECT_EQ(voice->text(QAccessible::Description), QStringLiteral("Help"));
    EXPECT_TRUE(voice->state().focusable);
}

TEST_F(KeySplitterTest, AFieldThatIsGoneMeanwhileTakesNoFocus) {
    auto* other = new QLineEdit;
    m_window.layout()->addWidget(other);
    other->show();
    other->setFocus();
    Press(Qt::Key_F8);
    ASSERT_TRUE(Bar()->hasFocus());
    delete other;
    Press(Qt::Key_Escape);
    EXPECT_FALSE(Bar()->hasFocus());
}

TEST_F(KeySplitterTest, WithOneWidgetThereIsNoBarToReach) {
    delete m_right;
    m_left->setFocus();
    Press(Qt::Key_F8);
    EXPECT_TRUE(m_left->hasFocus());
}

}  // namespace
