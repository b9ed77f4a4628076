#include "controls/CIconFixer.h"

#include <QPixmap>
#include <QStringList>
#include <QWidget>

#include <gtest/gtest.h>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

/// The files that come with the program.
QString Supplied(const QString& name) {
    return Q(PACKAGING_FOLDER "/") + name;
}

QString Nothing(const QString&) {
    return {};
}

QList<QSize> SizesOf(const QIcon& icon) {
    return icon.availableSizes();
}

QIcon Plain(int side, Qt::GlobalColor colour) {
    QPixmap pixmap(side, side);
    pixmap.fill(colour);
    return {pixmap};
}

struct Row {
    IconWidths Widths;
    int Large;
    int Small;
};

class Widths : public ::testing::TestWithParam<Row> {};

}  // namespace

TEST_P(Widths, DecideWhichFilesAreUsed) {
    QStringList asked;
    const CIconFixer icons(GetParam().Widths, [&](const QString& name) {
        asked.append(name);
        return Supplied(name);
    });
    EXPECT_EQ(asked, QStringList({Q("Icons/larkspan%1x%1x256.ico").arg(GetParam().Large),
                                  Q("Icons/larkspan%1x%1x256.ico").arg(GetParam().Small)}));
    EXPECT_EQ(SizesOf(icons.LargeIcon()), QList<QSize>{QSize(GetParam().Large, GetParam().Large)});
    EXPECT_EQ(SizesOf(icons.SmallIcon()), QList<QSize>{QSize(GetParam().Small, GetParam().Small)});
}
INSTANTIATE_TEST_SUITE_P(CIconFixer, Widths,
                         ::testing::Values(Row{{32, 16}, 32, 16}, Row{{48, 20}, 48, 24},
                                           Row{{24, 24}, 48, 24}, Row{{16, 32}, 48, 24},
                                           Row{{64, 48}, 48, 24}));

TEST(CIconFixer, SetIconsGivesBothIconsAndReturnsTheOldOnes) {
    const CIconFixer icons({32, 16}, Supplied);
    QWidget window;
    const QIcon own = Plain(20, Qt::red);
    window.setWindowIcon(own);
    QIcon large;
    QIcon small;
    icons.SetIcons(window, true, true, large, small);
    EXPECT_EQ(SizesOf(window.windowIcon()).size(), 2);
    EXPECT_EQ(large.cacheKey(), own.cacheKey());
    EXPECT_EQ(small.cacheKey(), own.cacheKey());
    CIconFixer::RestoreIcons(window, large, small);
    EXPECT_EQ(window.windowIcon().cacheKey(), own.cacheKey());
}

TEST(CIconFixer, OneIconAloneIsSetWhereOnlyThatIsAskedFor) {
    const CIconFixer icons({32, 16}, Supplied);
    QWidget window;
    QIcon large = Plain(9, Qt::green);
    QIcon small;
    const qint64 before = large.cacheKey();
    icons.SetIcons(window, false, true, large, small);
    EXPECT_EQ(SizesOf(window.windowIcon()), QList<QSize>{QSize(16, 16)});
    EXPECT_EQ(large.cacheKey(), before) << "it was not set";
    icons.SetIcons(window, true, false, large, small);
    EXPECT_EQ(SizesOf(window.windowIcon()).size(), 2);
}

TEST(CIconFixer, AMissingFileLeavesTheWindowAsItIs) {
    const CIconFixer icons({32, 16}, Nothing);
    EXPECT_TRUE(icons.LargeIcon().isNull());
    EXPECT_TRUE(icons.SmallIcon().isNull());
    QWidget window;
    const QIcon own = Plain(20, Qt::red);
    window.setWindowIcon(own);
    QIcon large;
    QIcon small;
    icons.SetIcons(window, true, true, large, small);
    EXPECT_EQ(window.windowIcon().cacheKey(), own.cacheKey());
    EXPECT_TRUE(large.isNull());
}

TEST(CIconFixer, WithoutTheLargeIconTheSmallOneIsSetAndRestored) {
    const CIconFixer icons(
        {32, 16}, [](const QString& name) { return name.contains(Q("16x16")) ? Supplied(name) : QString(); });
    QWidget window;
    const QIcon own = Plain(20, Qt::red);
    window.setWindowIcon(own);
    QIcon large;
    QIcon small;
    icons.SetIcons(window, true, true, large, small);
    EXPECT_TRUE(SizesOf(window.windowIcon()).contains(QSize(16, 16)));
    EXPECT_TRUE(SizesOf(window.windowIcon()).contains(QSize(20, 20))) << "the large icon stays the window's";
    EXPECT_TRUE(large.isNull());
    EXPECT_EQ(small.cacheKey(), own.cacheKey());
    CIconFixer::RestoreIcons(window, large, small);
    EXPECT_EQ(window.windowIcon().cacheKey(), own.cacheKey());
}

TEST(CIconFixer, AFileThatIsNoIconCountsAsMissing) {
    const CIconFixer icons({32, 16}, [](const QString&) { return Q(PACKAGING_FOLDER "/larkspan.desktop"); });
    EXPECT_TRUE(icons.LargeIcon().isNull());
}

TEST(CIconFixer, SetAppIconsReachesTheWindowAtTheTopOfTheOwners) {
    const CIconFixer icons({32, 16}, Supplied);
    QWidget top;
    QWidget middle(&top, Qt::Window);
    QWidget window(&middle, Qt::Window);
    icons.SetAppIcons(window, true, true);
    EXPECT_EQ(SizesOf(top.windowIcon()).size(), 2);
    EXPECT_FALSE(middle.testAttribute(Qt::WA_SetWindowIcon));
    EXPECT_FALSE(window.testAttribute(Qt::WA_SetWindowIcon));
}

TEST(CIconFixer, SetAppIconsDoesNothingForAWindowWithoutAnOwner) {
    const CIconFixer icons({32, 16}, Supplied);
    QWidget window;
    icons.SetAppIcons(window, true, true);
    EXPECT_FALSE(window.testAttribute(Qt::WA_SetWindowIcon));
}

TEST(IconWidths, AreThoseOfTheStyleTimesTheScaleOfTheScreen) {
    const QWidget window;
    const IconWidths widths = IconWidths::Of(window);
    EXPECT_EQ(widths.Large, qRound(32 * window.devicePixelRatioF()));
    EXPECT_EQ(widths.Small, qRound(16 * window.devicePixelRatioF()));
}
