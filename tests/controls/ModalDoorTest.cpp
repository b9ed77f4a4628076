#include "controls/ModalDoor.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QMenu>
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

}  // namespace
