#include "controls/TabControl.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QSignalSpy>
#include <QToolButton>

#include <gtest/gtest.h>

namespace {

const QString Contacts = QStringLiteral("lvContacts");
const QString AnotherProgram;

/// Three tabs, and text that another program drags over them.
class TabDrop : public ::testing::Test {
protected:
    TabDrop() {
        m_data.setText(QStringLiteral("C1\r\n"));
        m_tabs.resize(400, 400);
        m_tabs.show();
        Add(3);
    }
    void Add(int count) {
        for (int i = 0; i < count; ++i) {
            m_tabs.Insert(m_tabs.Count(), QStringLiteral("Group %1").arg(i));
        }
    }
    void TakeFrom(const QString& source) {
        m_tabs.SetDropIn(source, [](int position) { return position > 0; });
    }
    QPoint Middle(int position) { return m_tabs.TabRect(position).center(); }
    QPoint Beside() { return {m_tabs.width() - 1, 1}; }
    bool Enter() {
        QDragEnterEvent enter(Middle(1), Qt::CopyAction, &m_data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&m_tabs, &enter);
        return enter.isAccepted();
    }
    bool MoveTo(const QPoint& point) {
        Enter();
        QDragMoveEvent move(point, Qt::CopyAction, &m_data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&m_tabs, &move);
        return move.isAccepted();
    }
    bool DropAt(const QPoint& point) {
        MoveTo(point);
        QDropEvent drop(QPointF(point), Qt::CopyAction, &m_data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&m_tabs, &drop);
        return drop.isAccepted();
    }

    QMimeData m_data;
    TabControl m_tabs{TabControl::Look::Strip};
};

TEST_F(TabDrop, TextIsTakenOnlyByTabsThatAreTargets) {
    TakeFrom(AnotherProgram);
    EXPECT_TRUE(Enter());
    EXPECT_FALSE(MoveTo(Middle(0)));
    EXPECT_TRUE(MoveTo(Middle(1)));
    EXPECT_FALSE(MoveTo(Beside()));
}

TEST_F(TabDrop, ADropIsToldWithItsTab) {
    TakeFrom(AnotherProgram);
    QSignalSpy drops(&m_tabs, &TabControl::TextDropped);
    EXPECT_TRUE(DropAt(Middle(1)));
    EXPECT_TRUE(DropAt(Beside()));
    ASSERT_EQ(drops.size(), 2);
    EXPECT_EQ(drops[0].at(0), QStringLiteral("C1\r\n"));
    EXPECT_EQ(drops[0].at(1), 1);
    EXPECT_EQ(drops[1].at(1), -1);
}

TEST_F(TabDrop, TextThatComesFromElsewhereIsNotTaken) {
    TakeFrom(Contacts);
    const QSignalSpy drops(&m_tabs, &TabControl::TextDropped);
    EXPECT_FALSE(Enter());
    EXPECT_FALSE(MoveTo(Middle(1)));
    EXPECT_FALSE(DropAt(Middle(1)));
    EXPECT_EQ(drops.size(), 0);
}

TEST_F(TabDrop, ATabTakesTextFromItsSourceAlone) {
    EXPECT_FALSE(m_tabs.TakesText(AnotherProgram, 1)) << "nothing was allowed yet";
    TakeFrom(Contacts);
    EXPECT_TRUE(m_tabs.TakesText(Contacts, 1));
    EXPECT_FALSE(m_tabs.TakesText(Contacts, 0));
    EXPECT_FALSE(m_tabs.TakesText(Contacts, -1));
    EXPECT_FALSE(m_tabs.TakesText(QStringLiteral("lvRecipients"), 1));
    EXPECT_FALSE(m_tabs.TakesText(AnotherProgram, 1));
}

TEST_F(TabDrop, ADragOverTheScrollButtonBringsTheNextRow) {
    Add(57);
    m_tabs.Select(0);
    TakeFrom(AnotherProgram);
    QToolButton* next = nullptr;
    const auto buttons = m_tabs.findChildren<QToolButton*>();
    for (QToolButton* button : buttons) {
        next = button->accessibleName() == QStringLiteral("Next Row Of Tabs") ? button : next;
    }
    ASSERT_NE(next, nullptr);
    MoveTo(next->geometry().center());
    EXPECT_TRUE(m_tabs.TabRect(0).isEmpty());
}

}  // namespace
