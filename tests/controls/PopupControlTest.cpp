#include "controls/PopupControl.h"

#include "controls/PopupPlace.h"

#include <QApplication>
#include <QDialog>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

namespace {

const QRect Screen(0, 0, 1000, 800);
const QSize Size(320, 100);

TEST(PopupPlace, WithoutAPanelAndATrayItIsTheLowerRightCorner) {
    EXPECT_EQ(PopupPlace(Screen, Screen, {}, Size), QPoint(1000 - 8 - 320, 800 - 8 - 100));
}

TEST(PopupPlace, ItStandsAtThePanelsSide) {
    EXPECT_EQ(PopupPlace(Screen, QRect(0, 30, 1000, 770), {}, Size), QPoint(672, 38));
    EXPECT_EQ(PopupPlace(Screen, QRect(60, 0, 940, 800), {}, Size), QPoint(68, 692));
}

TEST(PopupPlace, AKnownTrayDecides) {
    EXPECT_EQ(PopupPlace(Screen, QRect(0, 30, 1000, 770), QRect(10, 3, 24, 24), Size), QPoint(8, 38));
    EXPECT_EQ(PopupPlace(Screen, QRect(0, 30, 1000, 740), QRect(20, 773, 24, 24), Size), QPoint(8, 662));
}

TEST(PopupPlace, TheIconStaysInViewWhereWindowsMayCoverThePanel) {
    EXPECT_EQ(PopupPlace(Screen, Screen, QRect(970, 2, 24, 24), Size), QPoint(672, 26 + 8));
    EXPECT_EQ(PopupPlace(Screen, Screen, QRect(970, 772, 24, 24), Size), QPoint(672, 772 - 8 - 100));
    EXPECT_EQ(PopupPlace(Screen, Screen, QRect(2, 700, 24, 24), Size), QPoint(8, 700 - 8 - 100));
    // A tall window and a panel at the side, the icon in its middle: beside it, and whole.
    const QSize tall(320, 500);
    EXPECT_EQ(PopupPlace(Screen, Screen, QRect(2, 370, 24, 24), tall), QPoint(26 + 8, 8));
    EXPECT_EQ(PopupPlace(Screen, Screen, QRect(974, 410, 24, 24), tall), QPoint(974 - 8 - 320, 292));
}

TEST(PopupPlace, OnASmallScreenItsUpperLeftCornerStaysInView) {
    EXPECT_EQ(PopupPlace(QRect(0, 0, 200, 80), QRect(0, 0, 200, 80), {}, Size), QPoint(0, 0));
}

TEST(PopupPlace, ASecondScreenCountsFromItsOwnCorner) {
    const QRect second(1000, 0, 1000, 800);
    EXPECT_EQ(PopupPlace(second, second, {}, Size), QPoint(1672, 692));
}

class PopupControlTest : public ::testing::Test {
public:
    PopupControl Popup;

    PopupControlTest() {
        Popup.SetSize(320, 100);
        Popup.SetShowDelay(10000);
    }
};

TEST_F(PopupControlTest, ALineIsAsHighAsItsFontAndAsWideAsItsText) {
    PopupItem& item = Popup.AddItem(40, 17, 0, 20, QStringLiteral("Ann Example"));
    item.CalculateHeight();
    item.CalculateWidth();
    EXPECT_EQ(item.Top(), 17);
    EXPECT_EQ(item.Height(), Popup.fontMetrics().height());
    EXPECT_GE(item.Width(), Popup.fontMetrics().horizontalAdvance(QStringLiteral("Ann Example")));
    item.SetWidth(30);
    EXPECT_EQ(item.Width(), 30);
}

TEST_F(PopupControlTest, AnEmptyLineStillTakesALinesHeight) {
    PopupItem& item = Popup.AddItem(40, 17, 0, 20, QString());
    item.CalculateHeight();
    EXPECT_EQ(item.Height(), Popup.fontMetrics().height());
}

TEST_F(PopupControlTest, ItIsShownWithoutTakingTheFocus) {
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    Popup.Show();
    EXPECT_TRUE(Popup.isVisible());
    EXPECT_EQ(QApplication::activeWindow(), &other);
    EXPECT_TRUE(Popup.testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_TRUE(Popup.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    EXPECT_TRUE(Popup.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
}

TEST_F(PopupControlTest, ItGoesAfterItsTime) {
    Popup.SetShowDelay(1);
    Popup.Show();
    EXPECT_TRUE(QTest::qWaitFor([this] { return !Popup.isVisible(); }, 5000));
}

TEST_F(PopupControlTest, AClickIsToldAndClosesNothingByItself) {
    QSignalSpy clicks(&Popup, &PopupControl::ItemClicked);
    Popup.Show();
    QTest::mouseClick(Popup.windowHandle(), Qt::LeftButton, {}, QPoint(20, 20));
    EXPECT_EQ(clicks.count(), 1);
    EXPECT_TRUE(Popup.isVisible());
    Popup.Close();
    EXPECT_FALSE(Popup.isVisible());
}

TEST_F(PopupControlTest, AClickIsToldWhileADialogIsOpenOverTheMainWindow) {
    QWidget main;
    main.show();
    PopupControl popup(&main);
    popup.SetSize(320, 100);
    popup.Show();
    QSignalSpy clicks(&popup, &PopupControl::ItemClicked);
    QTest::mouseClick(popup.windowHandle(), Qt::LeftButton, {}, QPoint(20, 20));
    EXPECT_EQ(clicks.count(), 1);
    QDialog dialog(&main);
    dialog.setModal(true);
    dialog.show();
    ASSERT_EQ(QApplication::activeModalWidget(), &dialog);
    // At its window, as the window system brings it: the toolkit decides there what a dialog keeps away.
    QTest::mouseClick(popup.windowHandle(), Qt::LeftButton, {}, QPoint(20, 20));
    EXPECT_EQ(clicks.count(), 2);
    PopupControl late(&main);
    late.SetSize(320, 100);
    late.Show();
    QSignalSpy lateClicks(&late, &PopupControl::ItemClicked);
    QTest::mouseClick(late.windowHandle(), Qt::LeftButton, {}, QPoint(20, 20));
    EXPECT_EQ(lateClicks.count(), 1) << "shown while the dialog was open";
}

TEST_F(PopupControlTest, RemovedItemsAreGone) {
    Popup.AddItem(0, 0, 10, 10, QStringLiteral("a"));
    Popup.AddItem(0, 0, 10, 10, QString());
    EXPECT_EQ(Popup.ItemCount(), 2);
    EXPECT_EQ(Popup.Captions(), QStringList{QStringLiteral("a")});
    Popup.RemoveAllItems();
    EXPECT_EQ(Popup.ItemCount(), 0);
}

TEST_F(PopupControlTest, ALineInAColourIsPaintedInIt) {
    Popup.AddItem(20, 50, 300, 51, QString(), 0xFF00FF);
    const QImage picture = Popup.grab().toImage();
    EXPECT_EQ(picture.pixelColor(100, 50), QColor(255, 0, 255));
    EXPECT_NE(picture.pixelColor(100, 51), QColor(255, 0, 255));
    EXPECT_NE(picture.pixelColor(19, 50), QColor(255, 0, 255));
}

TEST_F(PopupControlTest, ANameLongerThanThePopupStaysInside) {
    PopupItem& item = Popup.AddItem(40, 17, 0, 40, QString(200, u'W'));
    item.CalculateHeight();
    item.CalculateWidth();
    item.SetTextAlignment(PopupItem::SingleLine);
    const QImage picture = Popup.grab().toImage();
    const QColor ground = picture.pixelColor(300, 80);
    for (int y = 17; y < 17 + item.Height(); ++y) {
        EXPECT_EQ(picture.pixelColor(315, y), ground) << y;
    }
}

TEST_F(PopupControlTest, ItSaysItsLinesToAScreenReader) {
    Popup.AddItem(40, 17, 0, 40, QStringLiteral("Ann"));
    Popup.AddItem(40, 40, 0, 60, QStringLiteral("Hello"));
    Popup.Show();
    EXPECT_EQ(Popup.accessibleName(), QStringLiteral("Ann, Hello"));
}

}  // namespace
