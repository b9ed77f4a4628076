#include "core/TextRules.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "support/Printing.h"

using namespace Qt::StringLiterals;

TEST(TextRules, TrimRemovesBlanksAtBothEndsAndNothingElse) {
    EXPECT_EQ(Text::Trim(u"  a b  "_s), u"a b"_s);
    EXPECT_EQ(Text::Trim(u"\t a \r\n"_s), u"\t a \r\n"_s);
    EXPECT_EQ(Text::Trim(u" \ta\t "_s), u"\ta\t"_s);
    EXPECT_EQ(Text::Trim(u"\u00A0a\u00A0"_s), u"\u00A0a\u00A0"_s);
    EXPECT_EQ(Text::Trim(u"   "_s), u""_s);
    EXPECT_EQ(Text::Trim(QString()), u""_s);
}

TEST(TextRules, WithBackslashAddsOneUnlessThereIsOne) {
    EXPECT_EQ(Text::WithBackslash(u"C:\\data"_s), u"C:\\data\\"_s);
    EXPECT_EQ(Text::WithBackslash(u"C:\\data\\"_s), u"C:\\data\\"_s);
    EXPECT_EQ(Text::WithBackslash(u"/srv/data/"_s), u"/srv/data/\\"_s);
    EXPECT_EQ(Text::WithBackslash(u"/srv/data"_s), u"/srv/data\\"_s);
}

TEST(TextRules, WithBackslashOfTheEmptyPathIsASingleBackslash) {
    EXPECT_EQ(Text::WithBackslash(QString()), u"\\"_s);
}

TEST(TextRules, PathOnlyOfAFileIsItsFolder) {
    EXPECT_EQ(Text::PathOnly(u"C:\\data\\a.mdb"_s), u"C:\\data"_s);
    EXPECT_EQ(Text::PathOnly(u"/srv/data/a.mdb"_s), u"/srv/data"_s);
    EXPECT_EQ(Text::PathOnly(u"C:\\data/sub\\a.mdb"_s), u"C:\\data/sub"_s);
    EXPECT_EQ(Text::PathOnly(u"C:\\data/a.mdb"_s), u"C:\\data"_s);
    EXPECT_EQ(Text::PathOnly(u"/a.mdb"_s), u""_s);
}

TEST(TextRules, PathOnlyOfAPathWithoutADotIsThePathAsItStands) {
    EXPECT_EQ(Text::PathOnly(u"C:\\data"_s), u"C:\\data"_s);
    EXPECT_EQ(Text::PathOnly(u"C:\\data\\"_s), u"C:\\data\\"_s);
    EXPECT_EQ(Text::PathOnly(QString()), u""_s);
}

TEST(TextRules, PathOnlyOfABareFileNameIsEmpty) {
    EXPECT_EQ(Text::PathOnly(u"a.mdb"_s), u""_s);
}

TEST(TextRules, PathOnlyOfAFileOfADriveIsTheDrive) {
    EXPECT_EQ(Text::PathOnly(u"C:a.mdb"_s), u"C:"_s);
    EXPECT_EQ(Text::PathOnly(u"C:a:b.mdb"_s), u"C:"_s);
}

TEST(TextRules, PathOnlyOfAFolderWithADotLosesItsLastPart) {
    EXPECT_EQ(Text::PathOnly(u"C:\\data.old\\x"_s), u"C:\\data.old"_s);
    EXPECT_EQ(Text::PathOnly(u"C:\\data.old"_s), u"C:"_s);
}

struct WildcardCase {
    const char16_t* Pattern;
    const char16_t* Text;
    bool IsMatch;
};

class Wildcards : public testing::TestWithParam<WildcardCase> {};

TEST_P(Wildcards, MatchTheWholeText) {
    const WildcardCase& item = GetParam();
    EXPECT_EQ(Text::MatchesWildcard(QString::fromUtf16(item.Text), QString::fromUtf16(item.Pattern)),
              item.IsMatch)
        << QString::fromUtf16(item.Pattern).toStdString() << " on "
        << QString::fromUtf16(item.Text).toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    TextRules, Wildcards,
    testing::Values(WildcardCase{u"", u"", true}, WildcardCase{u"", u"a", false},
                    WildcardCase{u"a", u"", false}, WildcardCase{u"abc", u"abc", true},
                    WildcardCase{u"abc", u"abcd", false}, WildcardCase{u"abc", u"ABC", false},
                    WildcardCase{u"*", u"", true}, WildcardCase{u"*", u"a\r\nb", true},
                    WildcardCase{u"a*c", u"ac", true}, WildcardCase{u"a*c", u"abcbc", true},
                    WildcardCase{u"a*c", u"abcb", false}, WildcardCase{u"a*b*c", u"a-b-b-c", true},
                    WildcardCase{u"a*b*c", u"a-c-b", false}, WildcardCase{u"**a**", u"bab", true},
                    WildcardCase{u"?", u"a", true}, WildcardCase{u"?", u"", false},
                    WildcardCase{u"a?c", u"abc", true}, WildcardCase{u"#", u"7", true},
                    WildcardCase{u"#", u"x", false}, WildcardCase{u"#", u"\u0663", false},
                    WildcardCase{u"##-*", u"12-", true}, WildcardCase{u"[abc]x", u"bx", true},
                    WildcardCase{u"[abc]x", u"dx", false}, WildcardCase{u"[!abc]x", u"dx", true},
                    WildcardCase{u"[!abc]x", u"ax", false}, WildcardCase{u"[!abc]", u"", false},
                    WildcardCase{u"[a-cx-z]", u"y", true}, WildcardCase{u"[a-cx-z]", u"d", false},
                    WildcardCase{u"[a-c]", u"B", false}, WildcardCase{u"[-a]", u"-", true},
                    WildcardCase{u"[a-]", u"-", true}, WildcardCase{u"[*?#]", u"*", true},
                    WildcardCase{u"[*?#]", u"x", false}, WildcardCase{u"[[]", u"[", true},
                    WildcardCase{u"[!]", u"!", true}, WildcardCase{u"a]", u"a]", true},
                    WildcardCase{u"a[]b", u"ab", true}, WildcardCase{u"+[0-9]*", u"+3", true},
                    WildcardCase{u"+[0-9]*", u"+", false}, WildcardCase{u"*[0-9]", u"a1b2", true},
                    WildcardCase{u"??", u"\U0001F600", true}));

TEST(TextRules, AMalformedWildcardPatternThrows) {
    EXPECT_THROW(static_cast<void>(Text::MatchesWildcard(u"a"_s, u"[a"_s)), std::invalid_argument);
    EXPECT_THROW(static_cast<void>(Text::MatchesWildcard(u"a"_s, u"["_s)), std::invalid_argument);
    EXPECT_THROW(static_cast<void>(Text::MatchesWildcard(u"b"_s, u"[z-a]"_s)), std::invalid_argument);
}

TEST(TextRules, AMalformedWildcardPatternThrowsWhereverTheTextEnds) {
    EXPECT_THROW(static_cast<void>(Text::MatchesWildcard(QString(), u"abc[d"_s)), std::invalid_argument);
    EXPECT_THROW(static_cast<void>(Text::MatchesWildcard(u"x"_s, u"abc[d"_s)), std::invalid_argument);
}

TEST(TextRules, AWildcardPatternOfManyRunsTakesNoLongerThanTextTimesPattern) {
    const QString text(20000, u'a');
    EXPECT_FALSE(Text::MatchesWildcard(text, u"*a*a*a*a*a*a*a*a*a*a*b"_s));
}
