#include "shell/MainWindow.h"

#include "controls/ListView.h"
#include "controls/TabControl.h"
#include "shell/MainWindowKeys.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <tuple>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

struct FocusRow {
    Qt::Key Key;
    const char* Control;
};
struct ClickRow {
    Qt::Key Key;
    const char* Button;
};

}  // namespace

class FocusKeys : public ::testing::TestWithParam<FocusRow> {};

TEST_P(FocusKeys, MovesTheFocusThere) {
    MainWindow window;
    window.Open();
    window.Find("cmdExit")->setFocus();
    window.AltKey(GetParam().Key);
    EXPECT_TRUE(window.Find(GetParam().Control)->hasFocus());
}
INSTANTIATE_TEST_SUITE_P(Alt, FocusKeys,
                         ::testing::Values(FocusRow{Qt::Key_M, "txtMessage"},
                                           FocusRow{Qt::Key_C, "lvContacts"},
                                           FocusRow{Qt::Key_R, "lvRecipients"}));

class ClickKeys : public ::testing::TestWithParam<ClickRow> {};

TEST_P(ClickKeys, IsAsAClickOnTheButtonOnceThatIsEnabled) {
    MainWindow window;
    window.Open();
    auto* button = window.Find<QAbstractButton>(GetParam().Button);
    ASSERT_NE(button, nullptr);
    const QSignalSpy clicks(button, &QAbstractButton::clicked);
    button->setEnabled(false);
    window.AltKey(GetParam().Key);
    EXPECT_EQ(clicks.count(), 0) << "a disabled button takes no click";
    button->setEnabled(true);
    window.AltKey(GetParam().Key);
    EXPECT_EQ(clicks.count(), 1);
}
INSTANTIATE_TEST_SUITE_P(
    Alt, ClickKeys,
    ::testing::Values(ClickRow{Qt::Key_E, "cmdEditContact"}, ClickRow{Qt::Key_F, "cmdSearch"},
                      ClickRow{Qt::Key_1, "cmdQuickFire0"}, ClickRow{Qt::Key_2, "cmdQuickFire1"},
                      ClickRow{Qt::Key_3, "cmdQuickFire2"}, ClickRow{Qt::Key_4, "cmdQuickFire3"},
                      ClickRow{Qt::Key_5, "cmdQuickFire4"}, ClickRow{Qt::Key_6, "cmdQuickFire5"},
                      ClickRow{Qt::Key_7, "cmdQuickFire6"}, ClickRow{Qt::Key_8, "cmdQuickFire7"},
                      ClickRow{Qt::Key_9, "cmdQuickFire8"}, ClickRow{Qt::Key_0, "cmdQuickFire9"}));

TEST(Keys, TheStarOfTheNumberPadSelectsTheFirstTabOfBothRows) {
    MainWindow window([](TestMachine& machine) { machine.Office.AddGroup(Q("Drivers")); });
    window.Open();
    auto* groups = window.Find<TabControl>("tabGroup");
    auto* letters = window.Find<TabControl>("tabAlpha");
    letters->Select(5);
    groups->Select(1);
    window.AltKey(Qt::Key_Asterisk, Qt::KeypadModifier);
    EXPECT_EQ(groups->Selected(), 0);
    EXPECT_EQ(letters->Selected(), 0);
}

TEST(Keys, TheDigitsOfTheNumberPadDoNothing) {
    MainWindow window;
    window.Open();
    for (int digit = 0; digit < 10; ++digit) {
        const QByteArray name = "cmdQuickFire" + QByteArray::number((digit + 9) % 10);
        auto* button = window.Find<QAbstractButton>(name.constData());
        button->setEnabled(true);
        const QSignalSpy clicks(button, &QAbstractButton::clicked);
        window.AltKey(static_cast<Qt::Key>(Qt::Key_0 + digit), Qt::KeypadModifier);
        EXPECT_EQ(clicks.count(), 0) << digit;
    }
}

TEST(Keys, AnotherModifierOrAnotherKeyDoesNothingHere) {
    MainWindow window;
    window.Open();
    QWidget* exit = window.Find("cmdExit");
    exit->setFocus();
    QTest::keyClick(exit, Qt::Key_M, Qt::ControlModifier);
    QTest::keyClick(exit, Qt::Key_M, Qt::AltModifier | Qt::ShiftModifier);
    QTest::keyClick(exit, Qt::Key_M, Qt::AltModifier | Qt::ControlModifier);
    QTest::keyClick(exit, Qt::Key_Asterisk, Qt::AltModifier);
    QTest::keyClick(exit, Qt::Key_Q, Qt::AltModifier);
    QTest::keyClick(exit, Qt::Key_F4);
    EXPECT_TRUE(exit->hasFocus());
    EXPECT_TRUE(window.Form->isVisible());
}

TEST(Keys, F8ReachesTheBarBetweenAddressBookAndMessageAndTheArrowsMoveIt) {
    MainWindow window;
    window.Open();
    for (const char* name : {"txtMessage", "lvContacts", "tabGroup", "txtEndWidth", "cbTails", "cmdExit"}) {
        QWidget* control = window.Find(name);
        control->setFocus();
        QTest::keyClick(control, Qt::Key_F8);
        const int before = window.Find("lvContacts")->width();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
        EXPECT_GT(window.Find("lvContacts")->width(), before) << name;
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_F8);
        EXPECT_TRUE(control->hasFocus()) << name;
    }
}

TEST(Keys, TheKeysWorkWhereverTheFocusIs) {
    MainWindow window;
    window.Open();
    for (const char* name : {"txtMessage", "lvContacts", "tabGroup", "txtEndWidth", "cbTails"}) {
        window.Find(name)->setFocus();
        window.AltKey(Qt::Key_R);
        EXPECT_TRUE(window.Find("lvRecipients")->hasFocus()) << name;
    }
    EXPECT_TRUE(window.Find("txtMessage")->property("plainText").toString().isEmpty())
        << "no letter is typed";
}

TEST(Keys, TheyBelongToTheMainWindowAlone) {
    MainWindow window;
    window.Open();
    window.Find("lvContacts")->setFocus();
    QDialog dialog(window.Form.get());
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_M, Qt::AltModifier);
    EXPECT_FALSE(window.Find("txtMessage")->hasFocus());
}

namespace {

struct LayoutRow {
    const char* Layout;
    int Key;  // what the layout types there
    quint32 ScanCode;
    const char* Control;  // what gets the focus
};

/// Presses a key as the window system reports it, with Alt.
void PressAlt(QWidget& control, int key, quint32 scanCode) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::AltModifier, scanCode, 0, 0, QString());
    QCoreApplication::sendEvent(&control, &press);
}

}  // namespace

class LayoutKeys : public ::testing::TestWithParam<LayoutRow> {};

TEST_P(LayoutKeys, CountByTheirPlaceWhereTheyTypeNoLatinLetter) {
    const LayoutRow& row = GetParam();
    MainWindow window;
    window.Open();
    QWidget* exit = window.Find("cmdExit");
    exit->setFocus();
    PressAlt(*exit, row.Key, row.ScanCode);
    EXPECT_TRUE(window.Find(row.Control)->hasFocus()) << row.Layout;
}
INSTANTIATE_TEST_SUITE_P(
    Alt, LayoutKeys,
    ::testing::Values(LayoutRow{"Russian", 0x042C, 58, "txtMessage"},
                      LayoutRow{"Russian", 0x0421, 54, "lvContacts"},
                      LayoutRow{"Russian", 0x041A, 27, "lvRecipients"},
                      LayoutRow{"Greek", 0x039C, 58, "txtMessage"},
                      LayoutRow{"AZERTY, the M beside the L", Qt::Key_M, 47, "txtMessage"},
                      LayoutRow{"AZERTY, the comma", Qt::Key_Comma, 58, "cmdExit"},
                      LayoutRow{"Dvorak, the J in place of the C", Qt::Key_J, 54, "cmdExit"},
                      LayoutRow{"Escape with a strange number", Qt::Key_Escape, 58, "cmdExit"}));

TEST(Keys, LettersOfAnotherScriptClickTheButtonsAsWell) {
    MainWindow window;
    window.Open();
    for (const auto& [key, scanCode, name] :
         {std::tuple(0x0423, 26U, "cmdEditContact"), std::tuple(0x0410, 41U, "cmdSearch")}) {
        auto* button = window.Find<QAbstractButton>(name);
        button->setEnabled(true);
        const QSignalSpy clicks(button, &QAbstractButton::clicked);
        PressAlt(*window.Find("cmdExit"), key, scanCode);
        EXPECT_EQ(clicks.count(), 1) << name;
    }
}

TEST(Keys, TheRowOfDigitsWorksWhereItTypesOtherSigns) {
    MainWindow window;
    window.Open();
    const QList<int> azerty = {Qt::Key_Ampersand, Qt::Key_Eacute, Qt::Key_QuoteDbl, Qt::Key_Apostrophe,
                               Qt::Key_ParenLeft, Qt::Key_Minus,  Qt::Key_Egrave,   Qt::Key_Underscore,
                               Qt::Key_Ccedilla,  Qt::Key_Agrave};
    for (int place = 0; place < azerty.size(); ++place) {
        const QByteArray name = "cmdQuickFire" + QByteArray::number(place);
        auto* button = window.Find<QAbstractButton>(name.constData());
        button->setEnabled(true);
        const QSignalSpy clicks(button, &QAbstractButton::clicked);
        PressAlt(*window.Find("cmdExit"), azerty[place], 10U + static_cast<quint32>(place));
        EXPECT_EQ(clicks.count(), 1) << name.constData();
    }
}
