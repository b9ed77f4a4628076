#include "controls/Cmenu.h"

#include "controls/ModalDoor.h"
#include "core/NumberedFailure.h"

#include <QCursor>
#include <QWidget>

#include <gtest/gtest.h>

#include <functional>

namespace {

/// Chooses what a test says.
class ChoosingDoor final : public ModalDoor {
public:
    std::function<QAction*(QMenu&)> OnMenu;
    QPoint Position;

    void ShowModal(QDialog&, QWidget*) override { ADD_FAILURE() << "a dialog was not expected"; }
    QAction* ShowMenu(QMenu& menu, const QPoint& position) override {
        Position = position;
        return OnMenu(menu);
    }
};

TEST(Cmenu, AnswersWithTheNumberOfTheEntryChosen) {
    Cmenu menu;
    menu.AddItem(5, QStringLiteral("First"));
    menu.AddItem(-2, QStringLiteral("Second"));
    ChoosingDoor door;
    door.OnMenu = [](QMenu& shown) { return shown.actions().at(1); };
    EXPECT_EQ(menu.TrackPopup(door, QPoint(30, 40)), -2);
    EXPECT_EQ(door.Position, QPoint(30, 40));
}

TEST(Cmenu, AnEntryThatAUserNamedIsChosenWhateverItsName) {
    Cmenu menu;
    menu.AddName(5, QStringLiteral("-"));
    menu.AddName(6, QStringLiteral("Late\tCtrl+L"), true);
    ChoosingDoor door;
    door.OnMenu = [](QMenu& shown) {
        EXPECT_EQ(shown.actions().at(1)->text(), QStringLiteral("Late Ctrl+L")) << "no column of shortcuts";
        EXPECT_TRUE(shown.actions().at(1)->isChecked());
        EXPECT_FALSE(shown.actions().at(0)->isSeparator());
        return shown.actions().at(0);
    };
    EXPECT_EQ(menu.TrackPopup(door, QPoint()), 5);
}

TEST(Cmenu, AnswersZeroWhenItIsDismissed) {
    Cmenu menu;
    menu.AddItem(5, QStringLiteral("First"));
    ChoosingDoor door;
    door.OnMenu = [](QMenu&) { return nullptr; };
    EXPECT_EQ(menu.TrackPopup(door, QPoint()), 0);
}

TEST(Cmenu, StandsAtTheGivenPointAndAtThePointerWhereNoneIsGiven) {
    Cmenu menu;
    menu.AddItem(5, QStringLiteral("First"));
    ChoosingDoor door;
    door.OnMenu = [](QMenu& shown) { return shown.actions().at(0); };
    const QWidget window;
    QCursor::setPos(70, 80);
    const QPoint pointer = QCursor::pos();
    EXPECT_EQ(menu.TrackPopup(door, &window, 30, 40), 5);
    EXPECT_EQ(door.Position, QPoint(30, 40));
    EXPECT_EQ(menu.TrackPopup(door, &window, -1, 40), 5);
    EXPECT_EQ(door.Position, QPoint(pointer.x(), 40));
    EXPECT_EQ(menu.TrackPopup(door, &window, 30, -1), 5);
    EXPECT_EQ(door.Position, QPoint(30, pointer.y()));
    EXPECT_EQ(menu.TrackPopup(door, &window), 5);
    EXPECT_EQ(door.Position, pointer);
}

TEST(Cmenu, StandsAtTheLowerLeftCornerOfItsAnchorWhateverThePoint) {
    Cmenu menu;
    menu.AddItem(5, QStringLiteral("First"));
    ChoosingDoor door;
    door.OnMenu = [](QMenu&) { return nullptr; };
    QWidget window;
    QWidget anchor(&window);
    window.setGeometry(200, 100, 300, 200);
    anchor.setGeometry(10, 20, 50, 30);
    EXPECT_EQ(menu.TrackPopup(door, &window, 1, 2, &anchor), 0);
    EXPECT_EQ(door.Position, QPoint(210, 150));
}

TEST(Cmenu, WithoutAWindowItTakesTheProgramsFirstOneEvenIfThatIsHidden) {
    Cmenu menu;
    menu.AddItem(5, QStringLiteral("First"));
    ChoosingDoor door;
    door.OnMenu = [](QMenu& shown) { return shown.actions().at(0); };
    const QWidget window;
    EXPECT_EQ(menu.TrackPopup(door, nullptr, 30, 40), 5);
}

TEST(Cmenu, WithoutAnyWindowItFailsAndSaysSo) {
    Cmenu menu;
    menu.AddItem(5, QStringLiteral("First"));
    ChoosingDoor door;
    door.OnMenu = [](QMenu&) -> QAction* {
        ADD_FAILURE() << "it was shown";
        return nullptr;
    };
    try {
        static_cast<void>(menu.TrackPopup(door, nullptr));
        ADD_FAILURE() << "no failure";
    } catch (const NumberedFailure& failure) {
        EXPECT_STREQ(failure.what(), "Cannot find top window of current process!");
        EXPECT_EQ(failure.Source(), QStringLiteral("cMenu.TrackPopup"));
    }
}

TEST(Cmenu, EntriesOfASubmenuAnswerWithTheirOwnNumbers) {
    Cmenu inner(QStringLiteral("More"));
    inner.AddItem(107, QStringLiteral("Inside"));
    Cmenu menu;
    menu.AddItem(std::move(inner));
    ChoosingDoor door;
    door.OnMenu = [](QMenu& shown) { return shown.actions().at(0)->menu()->actions().at(0); };
    EXPECT_EQ(menu.TrackPopup(door, QPoint()), 107);
}

TEST(Cmenu, ADashIsASeparator) {
    Cmenu menu;
    menu.AddItem(1, QStringLiteral("One"));
    menu.AddItem(4, QStringLiteral("-"));
    menu.AddItem(2, QStringLiteral("Two"));
    EXPECT_EQ(menu.Texts(), QStringList({QStringLiteral("One"), QStringLiteral("-"), QStringLiteral("Two")}));
}

TEST(Cmenu, TextsTellTheEntriesOfASubmenuBehindItsCaption) {
    Cmenu inner(QStringLiteral("Add To"));
    inner.AddItem(101, QStringLiteral("Drivers"));
    inner.AddItem(0, QStringLiteral("-"));
    Cmenu menu;
    menu.AddItem(std::move(inner));
    EXPECT_EQ(menu.Texts(), QStringList({QStringLiteral("Add To > Drivers"), QStringLiteral("Add To > -")}));
}

TEST(Cmenu, DefaultGrayedAndCheckedEntriesLookSo) {
    Cmenu menu;
    menu.AddItem(1, QStringLiteral("Default"), true);
    menu.AddItem(2, QStringLiteral("Grayed"), false, 0, true);
    menu.AddItem(3, QStringLiteral("Checked"), false, 0, false, false, true);
    ChoosingDoor door;
    door.OnMenu = [](QMenu& shown) -> QAction* {
        EXPECT_EQ(shown.defaultAction(), shown.actions().at(0));
        EXPECT_TRUE(shown.actions().at(0)->isEnabled());
        EXPECT_FALSE(shown.actions().at(1)->isEnabled());
        EXPECT_TRUE(shown.actions().at(2)->isChecked());
        EXPECT_FALSE(shown.actions().at(1)->isChecked());
        return nullptr;
    };
    EXPECT_EQ(menu.TrackPopup(door, QPoint()), 0);
}

TEST(Cmenu, ADisabledEntryCannotBeChosen) {
    Cmenu menu;
    menu.AddItem(1, QStringLiteral("Disabled"), false, 0, false, true);
    menu.AddItem(2, QStringLiteral("Enabled"));
    ChoosingDoor door;
    door.OnMenu = [](QMenu& shown) -> QAction* {
        EXPECT_FALSE(shown.actions().at(0)->isEnabled());
        EXPECT_TRUE(shown.actions().at(1)->isEnabled());
        return nullptr;
    };
    EXPECT_EQ(menu.TrackPopup(door, QPoint()), 0);
}

TEST(Cmenu, AColumnBreakIsASeparatorInFrontOfItsEntryUnlessThatIsTheFirst) {
    Cmenu menu;
    menu.AddItem(1, QStringLiteral("One"), false, Cmenu::ColumnBreak);
    menu.AddItem(2, QStringLiteral("Two"));
    menu.AddItem(3, QStringLiteral("Three"), false, Cmenu::ColumnBreak);
    EXPECT_EQ(menu.Texts(), QStringList({QStringLiteral("One"), QStringLiteral("Two"), QStringLiteral("-"),
                                         QStringLiteral("Three")}));
}

TEST(Cmenu, ASubmenuCanBeTheDefaultAndGrayedAndDisabled) {
    Cmenu menu;
    menu.AddItem(Cmenu(QStringLiteral("Default")), true);
    menu.AddItem(Cmenu(QStringLiteral("Grayed")), false, true);
    menu.AddItem(Cmenu(QStringLiteral("Disabled")), false, false, true);
    ChoosingDoor door;
    door.OnMenu = [](QMenu& shown) -> QAction* {
        EXPECT_EQ(shown.defaultAction(), shown.actions().at(0));
        EXPECT_TRUE(shown.actions().at(0)->isEnabled());
        EXPECT_FALSE(shown.actions().at(1)->isEnabled());
        EXPECT_FALSE(shown.actions().at(2)->isEnabled());
        return nullptr;
    };
    EXPECT_EQ(menu.TrackPopup(door, QPoint()), 0);
}

TEST(Cmenu, AnAmpersandInANameIsShownAndIsNoMnemonic) {
    Cmenu menu;
    menu.AddItem(1, QStringLiteral("Add 'R&D' Group"));
    ChoosingDoor door;
    door.OnMenu = [](QMenu& shown) -> QAction* {
        EXPECT_EQ(shown.actions().at(0)->text(), QStringLiteral("Add 'R&&D' Group"));
        return nullptr;
    };
    EXPECT_EQ(menu.TrackPopup(door, QPoint()), 0);
    EXPECT_EQ(menu.Texts(), QStringList(QStringLiteral("Add 'R&D' Group")));
}

}  // namespace
