#include "core/CodePage.h"

#include <gtest/gtest.h>

#include <QSet>

#include "support/Printing.h"

using namespace Qt::StringLiterals;

namespace {

QByteArray AllBytes() {
    QByteArray bytes;
    for (int value = 0; value < 256; ++value) {
        bytes.append(static_cast<char>(value));
    }
    return bytes;
}

}  // namespace

class EveryCodePage : public testing::TestWithParam<int> {};

TEST_P(EveryCodePage, ReadsBackAll256BytesAsTheyWere) {
    const CodePage page(GetParam());
    EXPECT_EQ(page.Number(), GetParam());
    EXPECT_EQ(page.Encode(page.Decode(AllBytes())), AllBytes());
}

TEST_P(EveryCodePage, HasOneCharacterForEachByte) {
    const QString text = CodePage(GetParam()).Decode(AllBytes());
    ASSERT_EQ(text.size(), 256);
    const QSet<QChar> characters(text.cbegin(), text.cend());
    EXPECT_EQ(characters.size(), 256);
}

TEST_P(EveryCodePage, HoldsAsciiAsItIs) {
    const QByteArray ascii = AllBytes().left(128);
    EXPECT_EQ(CodePage(GetParam()).Decode(ascii), QString::fromLatin1(ascii));
    EXPECT_EQ(CodePage(GetParam()).Encode(QString::fromLatin1(ascii)), ascii);
}

INSTANTIATE_TEST_SUITE_P(CodePage, EveryCodePage,
                         testing::Values(874, 1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258));

TEST(CodePage, HasTheLettersOfItsPage) {
    EXPECT_EQ(CodePage(1252).Encode(u"\u20AC\u00FC\u00E9\u0160"_s), QByteArray("\x80\xFC\xE9\x8A"));
    EXPECT_EQ(CodePage(1250).Encode(u"\u0158\u0142\u017D"_s), QByteArray("\xD8\xB3\x8E"));
    EXPECT_EQ(CodePage(1251).Encode(u"\u0416\u044F\u0401"_s), QByteArray("\xC6\xFF\xA8"));
    EXPECT_EQ(CodePage(1253).Encode(u"\u03A9\u03AC"_s), QByteArray("\xD9\xDC"));
    EXPECT_EQ(CodePage(1254).Encode(u"\u0130\u015F"_s), QByteArray("\xDD\xFE"));
    EXPECT_EQ(CodePage(1255).Encode(u"\u05D0"_s), QByteArray("\xE0"));
    EXPECT_EQ(CodePage(1256).Encode(u"\u0627"_s), QByteArray("\xC7"));
    EXPECT_EQ(CodePage(1257).Encode(u"\u0101\u0173"_s), QByteArray("\xE2\xF8"));
    EXPECT_EQ(CodePage(1258).Encode(u"\u01A1"_s), QByteArray("\xF5"));
    EXPECT_EQ(CodePage(874).Encode(u"\u0E01"_s), QByteArray("\xA1"));
}

TEST(CodePage, WritesACharacterThatThePageLacksAsAQuestionMark) {
    EXPECT_EQ(CodePage(1252).Encode(u"a\u0416b"_s), QByteArray("a?b"));
    EXPECT_EQ(CodePage(1251).Encode(u"\u00E9"_s), QByteArray("?"));
    EXPECT_EQ(CodePage(1253).Encode(u"\u00D2"_s), QByteArray("?"));
    EXPECT_EQ(CodePage(1252).Encode(u"\u0085"_s), QByteArray("?"));
}

TEST(CodePage, WritesOneByteForEachUnit) {
    EXPECT_EQ(CodePage(1252).Encode(u"x\U0001F600y"_s), QByteArray("x??y"));
    EXPECT_EQ(CodePage(1252).Encode(QString(QChar(0xD800))), QByteArray("?"));
    EXPECT_EQ(CodePage(1252).Encode(u"a\0b"_s), QByteArray("a\0b", 3));
    EXPECT_EQ(CodePage(1252).Encode(QString()), QByteArray());
}

TEST(CodePage, KeepsABlankCharacterPositionAsItsControlCharacter) {
    EXPECT_EQ(CodePage(1252).Decode(QByteArray("\x81")), QString(QChar(0x81)));
    EXPECT_EQ(CodePage(1252).Encode(QString(QChar(0x81))), QByteArray("\x81"));
}

TEST(CodePage, OfAnUnknownNumberIs1252) {
    EXPECT_EQ(CodePage(65001).Number(), 1252);
    EXPECT_EQ(CodePage(0).Number(), 1252);
}

TEST(CodePage, BelongsToTheLanguageOfTheLocale) {
    const QHash<QString, int> pages = {
        {u"en_IE"_s, 1252},     {u"de_DE"_s, 1252}, {u"fr_FR"_s, 1252},      {u"sv_SE"_s, 1252},
        {u"pl_PL"_s, 1250},     {u"cs_CZ"_s, 1250}, {u"hu_HU"_s, 1250},      {u"ro_RO"_s, 1250},
        {u"ru_RU"_s, 1251},     {u"uk_UA"_s, 1251}, {u"bg_BG"_s, 1251},      {u"el_GR"_s, 1253},
        {u"tr_TR"_s, 1254},     {u"he_IL"_s, 1255}, {u"ar_EG"_s, 1256},      {u"fa_IR"_s, 1256},
        {u"et_EE"_s, 1257},     {u"lv_LV"_s, 1257}, {u"lt_LT"_s, 1257},      {u"vi_VN"_s, 1258},
        {u"th_TH"_s, 874},      {u"C"_s, 1252},     {u"sr_Latn_RS"_s, 1250}, {u"sr_Cyrl_RS"_s, 1251},
        {u"uz_Latn_UZ"_s, 1254}};
    for (auto page = pages.cbegin(); page != pages.cend(); ++page) {
        EXPECT_EQ(CodePage::NumberFor(QLocale(page.key())), page.value()) << page.key().toStdString();
    }
}

TEST(CodePage, OfTheSystemIsThatOfTheUsersLocale) {
    EXPECT_EQ(CodePage::System().Number(), CodePage::NumberFor(QLocale::system()));
}
