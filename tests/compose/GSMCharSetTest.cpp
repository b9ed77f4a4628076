#include "compose/GSMCharSet.h"

#include "core/Numbers.h"

#include <gtest/gtest.h>

using namespace mdlGSMCharSet;

TEST(GSMCharSet, NineCharactersTakeAnEscape) {
    int count = 0;
    for (uint code = 0; code <= 0xFFFF; ++code) {
        count += IsGSMExtensionChar(QChar(static_cast<char16_t>(code))) ? 1 : 0;
    }
    EXPECT_EQ(count, 9);
    for (const QChar character : QStringLiteral("\u20AC[]^{}~|\\")) {
        EXPECT_TRUE(IsGSMExtensionChar(character)) << +static_cast<ushort>(character.unicode());
    }
}

TEST(GSMCharSet, LookalikesAreNoExtensionCharacters) {
    for (const QChar character : QStringLiteral("()/E\u00A6\u02C6\u02DC\uFF3B")) {
        EXPECT_FALSE(IsGSMExtensionChar(character)) << +static_cast<ushort>(character.unicode());
    }
}

TEST(GSMCharSet, ATextIsAsLongAsItsCharactersAndOneMoreForEachExtensionCharacter) {
    EXPECT_EQ(GSMTextLength(QString()), 0);
    EXPECT_EQ(GSMTextLength(QStringLiteral("hello")), 5);
    EXPECT_EQ(GSMTextLength(QStringLiteral("5 \u20AC")), 4);
    EXPECT_EQ(GSMTextLength(QStringLiteral("\u20AC[]^{}~|\\")), 18);
}

TEST(GSMCharSet, ACharacterOutsideTheAlphabetCountsOne) {
    EXPECT_EQ(GSMTextLength(QStringLiteral("\u0416\u2603\u00E9\t")), 4);
    EXPECT_EQ(GSMTextLength(QString(200, u'\u0416')), 200) << "no second coding, no limit of 70";
}

TEST(GSMCharSet, ALengthBeyondSixteenBitsFails) {
    EXPECT_EQ(GSMTextLength(QString(32767, u'a')), 32767);
    EXPECT_THROW((void)GSMTextLength(QString(32768, u'a')), OverflowError);
    EXPECT_EQ(GSMTextLength(QString(16383, u'[')), 32766);
    EXPECT_THROW((void)GSMTextLength(QString(16384, u'[')), OverflowError);
}

TEST(GSMCharSet, CountCharCountsOneCharacterExactly) {
    EXPECT_EQ(CountChar(QStringLiteral("banana"), u'a'), 3);
    EXPECT_EQ(CountChar(QStringLiteral("banana"), u'A'), 0);
    EXPECT_EQ(CountChar(QString(), u'a'), 0);
}

TEST(GSMCharSet, SMSLengthDoublesOnlyTheEuroSign) {
    EXPECT_EQ(SMSLength(QStringLiteral("\u20AC[]^{}~|\\")), 10);
    EXPECT_EQ(SMSLength(QStringLiteral("hello")), 5);
    EXPECT_THROW((void)SMSLength(QString(32768, u'a')), OverflowError);
}
