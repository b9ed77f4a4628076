#include "controls/ModalDoor.h"

#include "controls/HeldKeyGuard.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <memory>

namespace {

TEST(ModalDoor, ADialogIsShownOverItsOwnerUntilItHides) {
    QWidget owner;
    owner.show();
    QDialog dialog;
    QWidget* ownerSeen = nullptr;
    bool wasModal = false;
    QTimer::singleShot(0, &dialog, [&] {
        ownerSeen = dialog.parentWidget();
        wasModal = dialog.isVisible() && QApplication::activeModalWidget() == &dialog;
        dialog.hide();
    });
    ScreenModalDoor().ShowModal(dialog, &owner);
    EXPECT_EQ(ownerSeen, &owner);
    EXPECT_TRUE(wasModal);
    EXPECT_FALSE(dialog.isVisible());
}

TEST(ModalDoor, AfterwardsTheDialogBelongsToItsCallerAgain) {
    auto owner = std::make_unique<QWidget>();
    QDialog dialog;
    QTimer::singleShot(0, &dialog, [&] { dialog.hide(); });
    ScreenModalDoor().ShowModal(dialog, owner.get());
    EXPECT_EQ(dialog.parentWidget(), nullptr);
    owner.reset();
}

TEST(ModalDoor, ADialogThatWasPlacedStaysThere) {
    QWidget owner;
    QDialog dialog;
    dialog.move(120, 90);
    QPoint place;
    QTimer::singleShot(0, &dialog, [&] {
        place = dialog.pos();
        dialog.hide();
    });
    ScreenModalDoor().ShowModal(dialog, &owner);
    EXPECT_EQ(place, QPoint(120, 90));
}

TEST(ModalDoor, ADialogThatDiesMeanwhileDoesNoHarm) {
    QWidget owner;
    auto* dialog = new QDialog;
    QTimer::singleShot(0, dialog, [dialog] { delete dialog; });
    ScreenModalDoor().ShowModal(*dialog, &owner);
    EXPECT_TRUE(owner.children().isEmpty());
}

TEST(ModalDoor, AKeyThatIsStillHeldDownDoesNotAnswer) {
    QMessageBox box;
    QPushButton* const ok = box.addButton(QMessageBox::Ok);
    bool wasAnswered = true;
    QTimer::singleShot(0, &box, [&] {
        for (QWidget* widget : {static_cast<QWidget*>(ok), static_cast<QWidget*>(&box)}) {
            for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
                QKeyEvent repeat(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
                QApplication::sendEvent(widget, &repeat);
            }
        }
        wasAnswered = !box.isVisible();
        QTest::keyClick(ok, Qt::Key_Return);
    });
    ScreenModalDoor().ShowModal(box, nullptr);
    EXPECT_FALSE(wasAnswered);
    EXPECT_EQ(box.clickedButton(), ok) << "a key that is pressed anew answers";
}

TEST(HeldKeyGuard, DropsRepeatsInItsWindowOnly) {
    QDialog guarded;
    auto* inside = new QCheckBox(&guarded);
    QCheckBox outside;
    const HeldKeyGuard guard(guarded);
    for (QCheckBox* box : {inside, &outside}) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QString(), true);
        press.setAccepted(false);
        QApplication::sendEvent(box, &press);
    }
    QTest::keyClick(inside, Qt::Key_Space);
    EXPECT_TRUE(inside->isChecked()) << "a key that is pressed now works";
    QLineEdit line(&guarded);
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"), true);
    QApplication::sendEvent(&line, &letter);
    EXPECT_EQ(line.text(), QStringLiteral("a")) << "letters repeat";
}

TEST(ModalDoor, AMenuAnswersWithTheActionChosenOrNone) {
    QMenu menu;
    QAction* second = nullptr;
    menu.addAction(QStringLiteral("first"));
    second = menu.addAction(QStringLiteral("second"));
    QTimer::singleShot(0, &menu, [&] {
        menu.setActiveAction(second);
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QApplication::sendEvent(&menu, &press);
    });
    EXPECT_EQ(ScreenModalDoor().ShowMenu(menu, QPoint(5, 5)), second);
    QTimer::singleShot(0, &menu, [&] { menu.close(); });
    EXPECT_EQ(ScreenModalDoor().ShowMenu(menu, QPoint(5, 5)), nullptr);
}

TEST(ModalDoor, InAMenuAndItsSubmenusOnlyTheLeftButtonChooses) {
    QMenu menu;
    menu.addAction(QStringLiteral("first"));
    QMenu* inner = menu.addMenu(QStringLiteral("more"));
    QAction* inside = inner->addAction(QStringLiteral("inside"));
    int stayedOpen = 0;
    QTimer::singleShot(0, &menu, [&] {
        menu.setActiveAction(inner->menuAction());
        for (QMenu* shown : {&menu, inner}) {
            const QPoint entry = shown->actionGeometry(shown->actions().at(0)).center();
            for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
                QTest::mouseClick(shown, button, Qt::NoModifier, entry);
                QTest::mouseDClick(shown, button, Qt::NoModifier, entry);
                stayedOpen += menu.isVisible() && inner->isVisible() ? 1 : 0;
            }
        }
        QTest::mouseClick(inner, Qt::LeftButton, Qt::NoModifier, inner->actionGeometry(inside).center());
        menu.close();
    });
    EXPECT_EQ(ScreenModalDoor().ShowMenu(menu, QPoint(5, 5)), inside);
    EXPECT_EQ(stayedOpen, 4);
}

TEST(ModalDoor, APressOutsideAMenuClosesItWhateverTheButton) {
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        QMenu menu;
        menu.addAction(QStringLiteral("first"));
        bool isClosed = false;
        QTimer::singleShot(0, &menu, [&] {
            QTest::mouseClick(&menu, button, Qt::NoModifier, QPoint(-20, -20));
            isClosed = !menu.isVisible();
            menu.close();
        });
        EXPECT_EQ(ScreenModalDoor().ShowMenu(menu, QPoint(105, 105)), nullptr);
        EXPECT_TRUE(isClosed) << button;
    }
}

}  // namespace
