#include "core/PatternMatcher.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace Qt::StringLiterals;

TEST(PatternMatcher, APhoneOfFourDigitsIsRefusedWithRegularExpressionsAndTakenWithout) {
    EXPECT_FALSE(PatternMatcher().IsInternationalPhone(u"+1234"_s));
    EXPECT_TRUE(PatternMatcher::WithoutRegEx().IsInternationalPhone(u"+1234"_s));
}

TEST(PatternMatcher, APhoneWithABlankIsRefusedWithRegularExpressions) {
    EXPECT_FALSE(PatternMatcher().IsInternationalPhone(u"+353 86"_s));
    EXPECT_TRUE(PatternMatcher::WithoutRegEx().IsInternationalPhone(u"+353 86"_s));
}

TEST(PatternMatcher, APhoneHasAPlusSignAndFiveToThirtyDigits) {
    const PatternMatcher matcher;
    EXPECT_TRUE(matcher.IsInternationalPhone(u"+12345"_s));
    EXPECT_TRUE(matcher.IsInternationalPhone(u"+"_s + QString(30, u'7')));
    EXPECT_FALSE(matcher.IsInternationalPhone(u"+"_s + QString(31, u'7')));
    EXPECT_FALSE(matcher.IsInternationalPhone(u"12345"_s));
    EXPECT_FALSE(matcher.IsInternationalPhone(u"x+12345"_s));
    EXPECT_FALSE(matcher.IsInternationalPhone(u"+12345x"_s));
    EXPECT_FALSE(matcher.IsInternationalPhone(QString()));
}

TEST(PatternMatcher, APhoneWithALineBreakBehindItIsRefused) {
    EXPECT_FALSE(PatternMatcher().IsInternationalPhone(u"+353861234567\n"_s));
}

TEST(PatternMatcher, APhoneOfDigitsOfAnotherScriptIsRefused) {
    EXPECT_FALSE(PatternMatcher().IsInternationalPhone(u"+\u0661\u0662\u0663\u0664\u0665\u0666"_s));
}

TEST(PatternMatcher, WithoutRegularExpressionsAPhoneIsAPlusSignADigitAndAnything) {
    const PatternMatcher matcher = PatternMatcher::WithoutRegEx();
    EXPECT_TRUE(matcher.IsInternationalPhone(u"+1 anything"_s));
    EXPECT_FALSE(matcher.IsInternationalPhone(u"+"_s));
    EXPECT_FALSE(matcher.IsInternationalPhone(u"+x1"_s));
    EXPECT_FALSE(matcher.IsInternationalPhone(u"1+1"_s));
}

TEST(PatternMatcher, TestFindsARegularExpressionAnywhereInTheText) {
    const PatternMatcher matcher;
    EXPECT_TRUE(matcher.Test(u"[0-9]{2}"_s, u"ab12"_s));
    EXPECT_FALSE(matcher.Test(u"^[0-9]{2}"_s, u"ab12"_s));
    EXPECT_FALSE(matcher.Test(u"AB"_s, u"ab"_s));
}

TEST(PatternMatcher, TestTakesAWildcardPatternForTheWholeTextWithoutRegularExpressions) {
    const PatternMatcher matcher = PatternMatcher::WithoutRegEx();
    EXPECT_TRUE(matcher.Test(u"a?[0-9]*"_s, u"ab12"_s));
    EXPECT_FALSE(matcher.Test(u"[0-9]"_s, u"ab12"_s));
}

TEST(PatternMatcher, AMalformedPatternThrowsEitherWay) {
    EXPECT_THROW(static_cast<void>(PatternMatcher().Test(u"("_s, u"a"_s)), std::invalid_argument);
    EXPECT_THROW(static_cast<void>(PatternMatcher::WithoutRegEx().Test(u"[a"_s, u"a"_s)),
                 std::invalid_argument);
}

TEST(PatternMatcher, IsRegExTellsWhichKindOfPatternItTakes) {
    EXPECT_TRUE(PatternMatcher().IsRegEx());
    EXPECT_FALSE(PatternMatcher::WithoutRegEx().IsRegEx());
}
