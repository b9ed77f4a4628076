#include "controls/ListView.h"
#include "controls/TabControl.h"
#include "e2e/RealProgram.h"

#include <QApplication>
#include <QMenu>
#include <QPlainTextEdit>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

ListView& List(const char* name) {
    return Driver::Find<ListView>(Q(name));
}

QString TextOf(const QAction* entry) {
    // What stands behind a tab is the entry's key.
    return entry != nullptr ? entry->text().section(u'\t', 0, 0).remove(u'&') : QString();
}

/// Goes down with the keyboard to the entry of this text and presses Enter on it; gives up with Escape.
void ChooseByKeyboard(QMenu& menu, const QString& text) {
    const auto entries = menu.actions().size();
    for (qsizetype i = 0; i <= entries && TextOf(menu.activeAction()) != text; ++i) {
        RealInput::Do({Q("key"), Q("Down")});
        Driver::Settle();
    }
    const bool isThere = TextOf(menu.activeAction()) == text;
    EXPECT_TRUE(isThere) << "no entry " << text.toStdString() << " that the keyboard reaches";
    RealInput::Do({Q("key"), isThere ? Q("Return") : Q("Escape")});
}

enum class Opener { RightButton, MenuKey };

/// Each of the program's menus, opened in both ways.
class MenuOnTheScreen : public ::testing::TestWithParam<Opener> {
protected:
    /// Opens the menu of a place, by the mouse there or by the key, which goes to the control with the focus;
    /// and chooses an entry.
    static void Choose(const QPoint& place, const QString& entry) {
        bool isOver = false;
        Driver::WhenMenu([&isOver, &entry](QMenu& menu) {
            ChooseByKeyboard(menu, entry);
            isOver = true;
        });
        if (GetParam() == Opener::MenuKey) {
            RealInput::Do({Q("key"), Q("Menu")});
        } else {
            RealInput::Do(
                {Q("mousemove"), QString::number(place.x()), QString::number(place.y()), Q("click"), Q("3")});
        }
        Driver::WaitFor(Q("the menu, and its end"), [&isOver] { return isOver; });
    }
    RealOffice m_office;
    RealProgram m_program{m_office};
};

}  // namespace

TEST_P(MenuOnTheScreen, OfTheContactsAddsTheContactToTheRecipients) {
    const QString name = List("lvContacts").Rows().At(3).Text;
    if (GetParam() == Opener::MenuKey) {
        RealInput::Do({Q("key"), Q("alt+c"), Q("key"), Q("Home"), Q("key"), Q("Down"), Q("key"), Q("Down"),
                       Q("key"), Q("Down")});
    }
    Choose(Driver::RowPosition(Q("lvContacts"), name), Q("Add To Recipients"));
    Driver::WaitFor(Q("a recipient"), [] { return List("lvRecipients").Rows().Count() == 1; });
    EXPECT_EQ(List("lvRecipients").Rows().At(0).Text, name);
}

TEST_P(MenuOnTheScreen, OfAGroupAddsItsMembersToTheRecipients) {
    const auto groups = mdlPhonebook::GetGroups(m_program.Context);
    const QString group = groups->Value(u"grpName").toString();
    qsizetype members = 0;
    const auto rows = mdlPhonebook::GetGroupMembers(m_program.Context, groups->Value(u"grpID").toInt());
    for (; !rows->EndOfFile(); rows->MoveNext()) {
        ++members;
    }
    ASSERT_GT(members, 0);
    if (GetParam() == Opener::MenuKey) {
        Driver::ClickTab(Q("tabGroup"), group);
        Driver::Find(Q("tabGroup")).setFocus();
    }
    Choose(Driver::TabPosition(Q("tabGroup"), group), Q("Add '%1' Group To Recipients").arg(group));
    Driver::WaitFor(Q("the members"), [&] { return List("lvRecipients").Rows().Count() == members; });
}

TEST_P(MenuOnTheScreen, OfTheRecipientsMakesAGroupOfThem) {
    const QString name = Q("Lunch");
    m_program.Window().AddKeysToRecipients(List("lvContacts").Rows().KeyList().mid(2, 2));
    m_program.Window().UpdateStateDisplay();
    Driver::WhenDialog(Q("frmTabName"), [&name] {
        RealInput::Do({Q("type"), name});
        RealInput::Do({Q("key"), Q("Return")});
    });
    RealInput::Do({Q("key"), Q("alt+r")});
    Choose(Driver::RowPosition(Q("lvRecipients"), List("lvRecipients").Rows().At(1).Text),
           Q("Create New Group From Recipients"));
    const auto& tabs = Driver::Find<TabControl>(Q("tabGroup"));
    const auto place = [&tabs, &name] {
        int tab = tabs.Count() - 1;
        while (tab >= 0 && tabs.Caption(tab) != name) {
            --tab;
        }
        return tab;
    };
    Driver::WaitFor(Q("the new group's tab"), [&] { return place() >= 0; });
    Driver::ClickTab(Q("tabGroup"), name);
    Driver::WaitFor(Q("its two members"), [] { return List("lvContacts").Rows().Count() == 2; });
}

TEST_P(MenuOnTheScreen, OfTheMessageSelectsTheWholeText) {
    RealInput::Do({Q("key"), Q("alt+m")});
    RealInput::Do({Q("type"), Q("Lunch at noon")});
    auto& message = Driver::Find<QPlainTextEdit>(Q("txtMessage"));
    Driver::WaitFor(Q("the text"), [&] { return message.toPlainText() == Q("Lunch at noon"); });
    Choose(message.viewport()->mapToGlobal(message.viewport()->rect().center()), Q("Select All"));
    Driver::WaitFor(Q("the selection"),
                    [&] { return message.textCursor().selectedText() == Q("Lunch at noon"); });
    EXPECT_EQ(message.toPlainText(), Q("Lunch at noon"));
}

INSTANTIATE_TEST_SUITE_P(By, MenuOnTheScreen, ::testing::Values(Opener::RightButton, Opener::MenuKey),
                         [](const auto& opener) {
                             return opener.param == Opener::MenuKey ? "TheMenuKey" : "TheRightButton";
                         });
