#include "compose/MessageBar.h"

#include <QImage>
#include <QPixmap>

#include <gtest/gtest.h>

namespace {

QImage Painted(MessageBar& bar) {
    bar.resize(100, 8);
    return bar.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

QPalette DarkPalette() {
    QPalette palette(QColor(42, 45, 49));
    palette.setColor(QPalette::Highlight, QColor(48, 112, 160));
    return palette;
}

TEST(MessageBarTest, TheColourIsReadBackAsItWasSet) {
    MessageBar bar;
    bar.setPalette(DarkPalette());
    bar.SetBarColour(QColor(128, 0, 0));
    EXPECT_EQ(bar.BarColour(), QColor(128, 0, 0));
}

TEST(MessageBarTest, TheMaximumMayBeNegativeAndThePositionIsKept) {
    MessageBar bar;
    bar.SetMaximum(-14);
    bar.SetPosition(0);
    EXPECT_EQ(bar.Maximum(), -14);
    EXPECT_EQ(bar.maximum(), -14);
    EXPECT_EQ(bar.Position(), 0);
    bar.SetMaximum(156);
    bar.SetPosition(157);
    EXPECT_EQ(bar.Maximum(), 156);
    EXPECT_EQ(bar.Position(), 157);
}

TEST(MessageBarTest, ThePartThatIsUsedIsFilled) {
    MessageBar bar;
    bar.SetBarColour(QColor(0, 0, 255));
    bar.SetMaximum(100);
    bar.SetPosition(50);
    const QImage half = Painted(bar);
    EXPECT_EQ(half.pixelColor(30, 4), QColor(0, 0, 255));
    EXPECT_NE(half.pixelColor(70, 4), QColor(0, 0, 255));
    bar.SetPosition(0);
    EXPECT_NE(Painted(bar).pixelColor(4, 4), QColor(0, 0, 255));
    bar.SetPosition(100);
    EXPECT_EQ(Painted(bar).pixelColor(95, 4), QColor(0, 0, 255));
}

TEST(MessageBarTest, WithoutAnyRoomTheBarIsFull) {
    MessageBar bar;
    bar.SetBarColour(QColor(0, 0, 255));
    for (const int maximum : {-14, 0}) {
        bar.SetMaximum(maximum);
        bar.SetPosition(0);
        EXPECT_EQ(Painted(bar).pixelColor(95, 4), QColor(0, 0, 255));
    }
}

TEST(MessageBarTest, DarkRedIsDrawnAsItIsOnLightAndBrighterOnDark) {
    MessageBar bar;
    bar.SetBarColour(QColor(128, 0, 0));
    bar.SetMaximum(100);
    bar.SetPosition(100);
    bar.setPalette(QPalette(QColor(240, 240, 240)));
    EXPECT_EQ(Painted(bar).pixelColor(50, 4), QColor(128, 0, 0));
    bar.setPalette(DarkPalette());
    const QColor drawn = Painted(bar).pixelColor(50, 4);
    EXPECT_GT(drawn.red(), 180);
    EXPECT_LT(drawn.green(), 90);
}

}  // namespace
