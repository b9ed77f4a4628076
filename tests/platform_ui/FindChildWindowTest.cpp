#include "platform_ui/FakeWindows.h"

#include <gtest/gtest.h>

namespace {

QString Q(const char* text) {
    return QString::fromLatin1(text);
}

/// 1 the parent; 2 a frame with the button 4 in it; 3 a button beside the frame.
struct Desktop {
    FakeWindows Windows;
    Desktop() {
        Windows.Add(1, Q("Parent"), Q("parent"));
        Windows.Add(2, Q("Frame"), Q("frame"), 1);
        Windows.Add(4, Q("Button"), Q("End Message"), 2);
        Windows.Add(3, Q("Button"), Q("Other"), 1);
    }
    WindowHandle Find(const char* className, const char* caption, bool& recursive) const {
        return FindChildWindow(Windows, 1, Q(className), Q(caption), recursive);
    }
};

}  // namespace

TEST(FindChildWindow, ComparesClassAndCaptionWithoutRegardToCase) {
    const Desktop desktop;
    bool recursive = false;
    EXPECT_EQ(desktop.Find("bUTTON", "oTHER", recursive), 3U);
}

TEST(FindChildWindow, AnEmptyClassMatchesEveryClassAndAnEmptyCaptionEveryCaption) {
    const Desktop desktop;
    bool recursive = false;
    EXPECT_EQ(desktop.Find("", "other", recursive), 3U);
    EXPECT_EQ(desktop.Find("button", "", recursive), 3U);
    EXPECT_EQ(desktop.Find("", "", recursive), 2U) << "the first child";
}

TEST(FindChildWindow, WithoutRecursionOnlyTheDirectChildrenAreLookedAt) {
    const Desktop desktop;
    bool recursive = false;
    EXPECT_EQ(desktop.Find("Button", "End Message", recursive), 0U);
    EXPECT_EQ(desktop.Windows.Calls, QStringList{Q("children of 1")});
}

TEST(FindChildWindow, WithRecursionAChildThatDoesNotMatchIsSearchedBeforeTheWalkGoesOn) {
    const Desktop desktop;
    bool recursive = true;
    EXPECT_EQ(desktop.Find("Button", "", recursive), 4U) << "found inside the frame before button 3";
    EXPECT_TRUE(recursive);
    EXPECT_EQ(desktop.Find("Button", "End Message", recursive), 4U);
}

TEST(FindChildWindow, GivesNoneWhenNothingMatchesOrTheParentIsGone) {
    const Desktop desktop;
    bool recursive = true;
    EXPECT_EQ(desktop.Find("Slider", "", recursive), 0U);
    EXPECT_EQ(FindChildWindow(desktop.Windows, 99, QString(), QString(), recursive), 0U);
}

TEST(FindChildWindow, TextsAreReadUpTo255Characters) {
    FakeWindows windows;
    const QString caption(255, u'x');
    windows.Add(1, Q("Parent"), Q("parent"));
    windows.Add(2, Q("Button"), caption + Q("tail"), 1);
    bool recursive = false;
    EXPECT_EQ(FindChildWindow(windows, 1, QString(), caption, recursive), 2U);
}
