#include "controls/Icons.h"

#include <QApplication>
#include <QImage>
#include <QPalette>
#include <QPixmap>

#include <gtest/gtest.h>

namespace {

/// The darkest and lightest of the opaque pixels tell which colour a line drawing has.
QColor InkOf(const QIcon& icon, QIcon::Mode mode = QIcon::Normal) {
    const QImage image =
        icon.pixmap(QSize(48, 48), 1.0, mode).toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() == 255) {
                return image.pixelColor(x, y);
            }
        }
    }
    return {};
}

class PaletteOfTest {
public:
    explicit PaletteOfTest(const QColor& text, const QColor& disabled) : m_before(QApplication::palette()) {
        QPalette palette = m_before;
        palette.setColor(QPalette::Active, QPalette::ButtonText, text);
        palette.setColor(QPalette::Disabled, QPalette::ButtonText, disabled);
        QApplication::setPalette(palette);
    }
    ~PaletteOfTest() { QApplication::setPalette(m_before); }

private:
    QPalette m_before;
};

TEST(Icons, EveryNameGivesADrawing) {
    const QStringList names = Icons::Names();
    ASSERT_GE(names.size(), 20);
    for (const QString& name : names) {
        const QImage image = Icons::Get(name).pixmap(QSize(32, 32)).toImage();
        bool isDrawn = false;
        for (int y = 0; y < image.height() && !isDrawn; ++y) {
            for (int x = 0; x < image.width() && !isDrawn; ++x) {
                isDrawn = image.pixelColor(x, y).alpha() > 100;
            }
        }
        EXPECT_TRUE(isDrawn) << name.toStdString();
    }
}

TEST(Icons, AnUnknownNameGivesNoIcon) {
    EXPECT_TRUE(Icons::Get(QStringLiteral("no such drawing")).isNull());
}

TEST(Icons, ADrawingFollowsThePaletteAfterItWasMade) {
    const QIcon icon = Icons::Get(QStringLiteral("add"));
    {
        const PaletteOfTest light(QColor(10, 20, 30), Qt::gray);
        EXPECT_EQ(InkOf(icon), QColor(10, 20, 30));
    }
    const PaletteOfTest dark(QColor(240, 240, 250), Qt::gray);
    EXPECT_EQ(InkOf(icon), QColor(240, 240, 250));
}

TEST(Icons, ADisabledButtonsDrawingHasTheDisabledColour) {
    const PaletteOfTest palette(Qt::black, QColor(150, 151, 152));
    EXPECT_EQ(InkOf(Icons::Get(QStringLiteral("edit")), QIcon::Disabled), QColor(150, 151, 152));
}

TEST(Icons, TheMarkForConfirmationKeepsItsColourInAnyPalette) {
    const PaletteOfTest palette(Qt::white, Qt::gray);
    const QColor ink = InkOf(Icons::Get(QStringLiteral("confirm")));
    EXPECT_GT(ink.red(), ink.blue() + 50);
}

TEST(Icons, ADrawingIsSharpAtTwiceTheScale) {
    const QPixmap twice = Icons::Get(QStringLiteral("search")).pixmap(QSize(16, 16), 2.0);
    EXPECT_EQ(twice.size(), QSize(32, 32));
    EXPECT_EQ(twice.devicePixelRatio(), 2.0);
}

}  // namespace
