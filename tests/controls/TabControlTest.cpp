#include "controls/TabControl.h"

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

#include <memory>

namespace {

class TabControlTest : public ::testing::Test {
protected:
    explicit TabControlTest(TabControl::Look look = TabControl::Look::Strip) : m_tabs(look) {
        m_tabs.resize(400, 400);
        m_tabs.show();
    }

    void Add(const QStringList& captions) {
        for (const QString& caption : captions) {
            m_tabs.Insert(m_tabs.Count(), caption);
        }
    }
    void AddNumbered(int count) {
        for (int i = 0; i < count; ++i) {
            m_tabs.Insert(i, QStringLiteral("Group %1").arg(i));
        }
    }
    QStringList Captions() const {
        QStringList captions;
        for (int i = 0; i < m_tabs.Count(); ++i) {
            captions.append(m_tabs.Caption(i));
        }
        return captions;
    }
    void Click(int position, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(&m_tabs, button, Qt::NoModifier, m_tabs.TabRect(position).center());
    }
    QToolButton* Button(const QString& name) {
        const auto buttons = m_tabs.findChildren<QToolButton*>();
        for (QToolButton* button : buttons) {
            if (button->accessibleName() == name) {
                return button;
            }
        }
        return nullptr;
    }

    TabControl m_tabs;
};

class LetterTabsTest : public TabControlTest {
protected:
    LetterTabsTest() : TabControlTest(TabControl::Look::Letters) {}
};

const QString A = QStringLiteral("A");
const QString B = QStringLiteral("B");
const QString C = QStringLiteral("C");
const QString D = QStringLiteral("D");

TEST_F(TabControlTest, TabsAreInsertedAtTheirPlace) {
    Add({A, C});
    m_tabs.Insert(1, B);
    m_tabs.Insert(99, D);
    EXPECT_EQ(Captions(), QStringList({A, B, C, D}));
}

TEST_F(TabControlTest, TheFirstTabBecomesTheSelectedOne) {
    EXPECT_EQ(m_tabs.Selected(), -1);
    const QSignalSpy changes(&m_tabs, &TabControl::SelectionChanged);
    Add({A, B});
    EXPECT_EQ(m_tabs.Selected(), 0);
    EXPECT_EQ(changes.size(), 1);
}

TEST_F(TabControlTest, TheSelectionGoesWithItsTab) {
    Add({A, B, C, D});
    m_tabs.Select(1);
    const QSignalSpy changes(&m_tabs, &TabControl::SelectionChanged);
    m_tabs.Insert(0, QStringLiteral("new"));
    EXPECT_EQ(m_tabs.Caption(m_tabs.Selected()), B);
    m_tabs.Move(2, 4);
    EXPECT_EQ(m_tabs.Selected(), 4);
    m_tabs.Move(0, 4);
    EXPECT_EQ(m_tabs.Caption(m_tabs.Selected()), B);
    m_tabs.Move(4, 0);
    EXPECT_EQ(m_tabs.Caption(m_tabs.Selected()), B);
    m_tabs.RemoveAt(0);
    EXPECT_EQ(m_tabs.Caption(m_tabs.Selected()), B);
    EXPECT_EQ(changes.size(), 0);
}

TEST_F(TabControlTest, ATabMovesWithCaptionAndTag) {
    Add({A, B, C});
    m_tabs.SetTag(0, QStringLiteral("G7"));
    m_tabs.Move(0, 2);
    EXPECT_EQ(Captions(), QStringList({B, C, A}));
    EXPECT_EQ(m_tabs.Tag(2), QStringLiteral("G7"));
    EXPECT_TRUE(m_tabs.Tag(0).isEmpty());
}

TEST_F(TabControlTest, ARemovedSelectedTabHandsTheSelectionOn) {
    Add({A, B, C});
    m_tabs.Select(1);
    QSignalSpy changes(&m_tabs, &TabControl::SelectionChanged);
    m_tabs.RemoveAt(1);
    EXPECT_EQ(m_tabs.Caption(m_tabs.Selected()), C);
    m_tabs.RemoveAt(1);
    EXPECT_EQ(m_tabs.Caption(m_tabs.Selected()), A);
    EXPECT_EQ(changes.size(), 2);
    m_tabs.RemoveAt(0);
    EXPECT_EQ(m_tabs.Selected(), -1);
    EXPECT_EQ(m_tabs.Count(), 0);
}

TEST_F(TabControlTest, RemoveAllLeavesNoTabAndNoSelection) {
    Add({A, B});
    m_tabs.RemoveAll();
    EXPECT_EQ(m_tabs.Count(), 0);
    EXPECT_EQ(m_tabs.Selected(), -1);
    EXPECT_EQ(m_tabs.TabUnder(QPoint(5, 5)), -1);
}

TEST_F(TabControlTest, SelectingTellsOnlyARealChange) {
    Add({A, B});
    QSignalSpy changes(&m_tabs, &TabControl::SelectionChanged);
    m_tabs.Select(0);
    m_tabs.Select(7);
    m_tabs.Select(-1);
    EXPECT_EQ(changes.size(), 0);
    m_tabs.Select(1);
    ASSERT_EQ(changes.size(), 1);
    EXPECT_EQ(changes.first().first(), 1);
}

TEST_F(TabControlTest, ALeftClickSelectsBeforeItIsTold) {
    Add({A, B});
    int selectedThen = -1;
    QObject::connect(&m_tabs, &TabControl::LeftPressed, &m_tabs, [&] { selectedThen = m_tabs.Selected(); });
    Click(1);
    EXPECT_EQ(selectedThen, 1);
}

TEST_F(TabControlTest, BothPressesOfADoubleClickAreTold) {
    Add({A, B});
    const QSignalSpy presses(&m_tabs, &TabControl::LeftPressed);
    Click(1);
    QTest::mouseDClick(&m_tabs, Qt::LeftButton, Qt::NoModifier, m_tabs.TabRect(1).center());
    EXPECT_EQ(presses.size(), 2);
}

TEST_F(TabControlTest, AClickOnTheSelectedTabIsToldAsThat) {
    Add({A, B});
    const QSignalSpy changes(&m_tabs, &TabControl::SelectionChanged);
    const QSignalSpy again(&m_tabs, &TabControl::SelectedAgain);
    Click(0);
    EXPECT_EQ(changes.size(), 0);
    EXPECT_EQ(again.size(), 1);
}

TEST_F(TabControlTest, AnyOtherButtonIsToldOnceWithItsPointAndSelectsNothing) {
    Add({A, B});
    QSignalSpy others(&m_tabs, &TabControl::OtherButton);
    Click(1, Qt::RightButton);
    Click(1, Qt::MiddleButton);
    ASSERT_EQ(others.size(), 2);
    EXPECT_EQ(m_tabs.TabUnder(others.first().first().toPoint()), 1);
    EXPECT_EQ(m_tabs.Selected(), 0);
}

TEST_F(TabControlTest, TheMenuKeyCountsAsAClickOnTheSelectedTab) {
    Add({A, B});
    m_tabs.Select(1);
    QSignalSpy others(&m_tabs, &TabControl::OtherButton);
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(0, 0), QPoint(0, 0));
    QApplication::sendEvent(&m_tabs, &event);
    ASSERT_EQ(others.size(), 1);
    EXPECT_EQ(m_tabs.TabUnder(others.first().first().toPoint()), 1);
}

TEST_F(TabControlTest, NoTabIsEverCutOff) {
    AddNumbered(60);
    for (const int width : {120, 200, 333, 500, 900}) {
        m_tabs.resize(width, m_tabs.height());
        for (int i = 0; i < m_tabs.Count(); ++i) {
            m_tabs.Select(i);
            const QRect place = m_tabs.TabRect(i);
            EXPECT_FALSE(place.isEmpty()) << "the selected tab is in sight";
            EXPECT_TRUE(m_tabs.rect().contains(place)) << i << " at " << width;
        }
    }
}

TEST_F(TabControlTest, ManyTabsTakeThreeRowsAndTheRestScrolls) {
    AddNumbered(4);
    EXPECT_FALSE(Button(QStringLiteral("All Tabs"))->isVisible());
    const int oneRow = m_tabs.height();
    AddNumbered(60);
    EXPECT_EQ(m_tabs.height(), 3 * oneRow);
    EXPECT_TRUE(Button(QStringLiteral("All Tabs"))->isVisible());
    m_tabs.Select(0);
    EXPECT_TRUE(m_tabs.TabRect(m_tabs.Count() - 1).isEmpty());
    EXPECT_FALSE(Button(QStringLiteral("Previous Row Of Tabs"))->isEnabled());
    Button(QStringLiteral("Next Row Of Tabs"))->click();
    EXPECT_TRUE(m_tabs.TabRect(0).isEmpty());
    EXPECT_TRUE(Button(QStringLiteral("Previous Row Of Tabs"))->isEnabled());
    m_tabs.Select(m_tabs.Count() - 1);
    EXPECT_FALSE(Button(QStringLiteral("Next Row Of Tabs"))->isEnabled());
}

TEST_F(TabControlTest, TheScrollButtonsStandBesideTheTabs) {
    AddNumbered(60);
    for (const QString& name : {QStringLiteral("Previous Row Of Tabs"), QStringLiteral("All Tabs"),
                                QStringLiteral("Next Row Of Tabs")}) {
        const QRect button = Button(name)->geometry();
        EXPECT_TRUE(m_tabs.rect().contains(button));
        for (int i = 0; i < m_tabs.Count(); ++i) {
            EXPECT_FALSE(m_tabs.TabRect(i).intersects(button)) << i;
        }
    }
}

TEST_F(TabControlTest, TheButtonOfAllTabsAsksForTheirList) {
    AddNumbered(60);
    const QSignalSpy asked(&m_tabs, &TabControl::AllTabsRequested);
    Button(QStringLiteral("All Tabs"))->click();
    EXPECT_EQ(asked.size(), 1);
}

TEST_F(TabControlTest, TheWheelScrollsTheRows) {
    AddNumbered(60);
    m_tabs.Select(0);
    QWheelEvent down(QPointF(5, 5), m_tabs.mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, -120),
                     Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&m_tabs, &down);
    EXPECT_TRUE(m_tabs.TabRect(0).isEmpty());
}

TEST_F(TabControlTest, TheArrowKeysReachEveryTab) {
    AddNumbered(12);
    m_tabs.Select(0);
    for (int i = 1; i < 12; ++i) {
        QTest::keyClick(&m_tabs, Qt::Key_Right);
        EXPECT_EQ(m_tabs.Selected(), i);
    }
    QTest::keyClick(&m_tabs, Qt::Key_Right);
    EXPECT_EQ(m_tabs.Selected(), 11);
    QTest::keyClick(&m_tabs, Qt::Key_Left);
    EXPECT_EQ(m_tabs.Selected(), 10);
    QTest::keyClick(&m_tabs, Qt::Key_Home);
    EXPECT_EQ(m_tabs.Selected(), 0);
    QTest::keyClick(&m_tabs, Qt::Key_Down);
    EXPECT_GT(m_tabs.TabRect(m_tabs.Selected()).top(), 0);
    QTest::keyClick(&m_tabs, Qt::Key_Up);
    EXPECT_EQ(m_tabs.Selected(), 0);
    QTest::keyClick(&m_tabs, Qt::Key_End);
    EXPECT_EQ(m_tabs.Selected(), 11);
}

TEST_F(TabControlTest, FromRightToLeftTheArrowsAreMirrored) {
    m_tabs.setLayoutDirection(Qt::RightToLeft);
    Add({A, B});
    EXPECT_GT(m_tabs.TabRect(0).left(), m_tabs.TabRect(1).left());
    QTest::keyClick(&m_tabs, Qt::Key_Left);
    EXPECT_EQ(m_tabs.Selected(), 1);
}

TEST_F(TabControlTest, ALetterGoesToTheNextTabThatBeginsWithIt) {
    Add({QStringLiteral("*"), QStringLiteral("Drivers"), QStringLiteral("Kitchen"), QStringLiteral("Kin")});
    QTest::keyClick(&m_tabs, Qt::Key_K);
    EXPECT_EQ(m_tabs.Selected(), 2);
    QTest::keyClick(&m_tabs, Qt::Key_K);
    EXPECT_EQ(m_tabs.Selected(), 3);
    QTest::keyClick(&m_tabs, Qt::Key_X);
    EXPECT_EQ(m_tabs.Selected(), 3);
}

TEST_F(TabControlTest, KeysWithAltAreLeftToTheWindow) {
    Add({QStringLiteral("*"), QStringLiteral("Crew")});
    QTest::keyClick(&m_tabs, Qt::Key_C, Qt::AltModifier);
    EXPECT_EQ(m_tabs.Selected(), 0);
}

TEST_F(TabControlTest, SelectionAndFocusAreSeen) {
    Add({A, B});
    const auto picture = [this] { return m_tabs.grab().toImage(); };
    const QImage first = picture();
    m_tabs.Select(1);
    const QImage second = picture();
    EXPECT_NE(first, second);
    m_tabs.activateWindow();
    m_tabs.setFocus();
    ASSERT_TRUE(QTest::qWaitFor([this] { return m_tabs.hasFocus(); }));
    EXPECT_NE(picture(), second);
}

TEST_F(TabControlTest, AQuietControlShowsItsSelectionAsAnOutline) {
    Add({A, B});
    m_tabs.Select(1);
    const QColor full = m_tabs.palette().color(QPalette::Highlight);
    const auto isFilled = [&] {
        return m_tabs.grab().toImage().pixelColor(m_tabs.TabRect(1).center() - QPoint(0, 9)) == full;
    };
    EXPECT_TRUE(isFilled());
    const QImage loud = m_tabs.grab().toImage();
    m_tabs.SetQuiet(true);
    EXPECT_FALSE(isFilled());
    m_tabs.SetQuiet(false);
    EXPECT_EQ(m_tabs.grab().toImage(), loud);
}

TEST_F(TabControlTest, AScreenReaderFindsTheTabs) {
    Add({A, B});
    m_tabs.setAccessibleName(QStringLiteral("Groups"));
    QAccessibleInterface* all = QAccessible::queryAccessibleInterface(&m_tabs);
    ASSERT_NE(all, nullptr);
    EXPECT_EQ(all->role(), QAccessible::PageTabList);
    EXPECT_EQ(all->text(QAccessible::Name), QStringLiteral("Groups"));
    ASSERT_EQ(all->childCount(), 2);
    QAccessibleInterface* second = all->child(1);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->role(), QAccessible::PageTab);
    EXPECT_EQ(second->text(QAccessible::Name), B);
    EXPECT_FALSE(second->state().selected);
    EXPECT_EQ(all->indexOfChild(second), 1);
    EXPECT_EQ(second->parent(), all);
    second->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(m_tabs.Selected(), 1);
    EXPECT_TRUE(second->state().selected);
    const QPoint middle = m_tabs.mapToGlobal(m_tabs.TabRect(1).center());
    EXPECT_EQ(all->childAt(middle.x(), middle.y()), second);
    m_tabs.RemoveAt(1);
    EXPECT_TRUE(second->state().invalid);
    EXPECT_EQ(all->child(1), nullptr);
}

TEST_F(LetterTabsTest, TheLettersFillTheHeight) {
    m_tabs.resize(26, 364);
    AddNumbered(28);
    EXPECT_EQ(m_tabs.TabRect(0).top(), 0);
    EXPECT_EQ(m_tabs.TabRect(27).bottom(), 363);
    EXPECT_EQ(m_tabs.TabUnder(QPoint(10, 363)), 27);
}

TEST_F(LetterTabsTest, TheUpAndDownKeysWalkTheLetters) {
    Add({A, B, C});
    QTest::keyClick(&m_tabs, Qt::Key_Down);
    QTest::keyClick(&m_tabs, Qt::Key_Down);
    EXPECT_EQ(m_tabs.Selected(), 2);
    QTest::keyClick(&m_tabs, Qt::Key_Down);
    EXPECT_EQ(m_tabs.Selected(), 2);
    QTest::keyClick(&m_tabs, Qt::Key_Up);
    EXPECT_EQ(m_tabs.Selected(), 1);
    QTest::keyClick(&m_tabs, Qt::Key_A);
    EXPECT_EQ(m_tabs.Selected(), 0);
}

TEST_F(LetterTabsTest, ALetterIsClickable) {
    Add({A, B, C});
    Click(2);
    EXPECT_EQ(m_tabs.Selected(), 2);
}

}  // namespace
