#include "store/office/SmsParts.h"

#include <QString>

#include <gtest/gtest.h>

namespace {

QString Repeated(int count, const QString& text) {
    return text.repeated(count);
}

}  // namespace

TEST(SmsParts, AnEmptyTextIsOnePart) {
    EXPECT_EQ(SmsParts::Count(u""), 1);
}

TEST(SmsParts, EveryCharacterOfTheDefaultAlphabetTakesOneSeptet) {
    const QString alphabet = QStringLiteral(
        "@£$¥èéùìòÇ\nØø\rÅåΔ_ΦΓΛΩΠΨΣΘΞÆæßÉ !\"#¤%&'()*+,-./0123456789:;<=>?¡ABCDEFGHIJKLMNOPQRSTUVWXYZÄÖÑÜ§¿"
        "abcdefghijklmnopqrstuvwxyzäöñüà");
    EXPECT_EQ(alphabet.size(), 127);  // 128 codes less the escape
    for (const QChar character : alphabet) {
        EXPECT_EQ(SmsParts::Septets(character), 1)
            << "U+" << std::hex << static_cast<int>(character.unicode());
    }
}

TEST(SmsParts, EveryCharacterOfTheExtensionTableTakesTwoSeptets) {
    for (const QChar character : QStringLiteral("\f^{}\\[~]|€")) {
        EXPECT_EQ(SmsParts::Septets(character), 2)
            << "U+" << std::hex << static_cast<int>(character.unicode());
    }
}

TEST(SmsParts, CharactersOutsideBothTablesTakeTheWholeTextToUcs2) {
    for (const QString& text :
         {QStringLiteral("ç"), QStringLiteral("`"), QStringLiteral("Ł"), QStringLiteral("á"),
          QStringLiteral("\t"), QStringLiteral("\x1B"), QStringLiteral("’"), QStringLiteral("😀")}) {
        EXPECT_EQ(SmsParts::CodingOf(QStringLiteral("plain ") + text), SmsParts::Coding::Ucs2)
            << text.toStdString();
    }
    EXPECT_EQ(SmsParts::CodingOf(u"Å {€}\n"), SmsParts::Coding::Gsm7Bit);
}

TEST(SmsParts, ASevenBitTextHas160SeptetsInOnePartAnd153InEachOfMore) {
    EXPECT_EQ(SmsParts::Count(Repeated(160, QStringLiteral("a"))), 1);
    EXPECT_EQ(SmsParts::Count(Repeated(161, QStringLiteral("a"))), 2);
    EXPECT_EQ(SmsParts::Count(Repeated(306, QStringLiteral("a"))), 2);
    EXPECT_EQ(SmsParts::Count(Repeated(307, QStringLiteral("a"))), 3);
    EXPECT_EQ(SmsParts::Count(Repeated(459, QStringLiteral("a"))), 3);
    EXPECT_EQ(SmsParts::Count(Repeated(460, QStringLiteral("a"))), 4);
}

TEST(SmsParts, ExtensionCharactersCountTwice) {
    EXPECT_EQ(SmsParts::Count(Repeated(80, QStringLiteral("€"))), 1);
    EXPECT_EQ(SmsParts::Count(Repeated(80, QStringLiteral("€")) + u'a'), 2);
}

TEST(SmsParts, AnEscapeAndItsCodeAreNeverPutIntoTwoParts) {
    // 152 septets, then a pair that does not fit the 153rd: the first part stays one short.
    const QString text =
        Repeated(152, QStringLiteral("a")) + QStringLiteral("€") + Repeated(151, QStringLiteral("a"));
    EXPECT_EQ(SmsParts::Count(text), 2);
    EXPECT_EQ(SmsParts::Count(text + u'a'),
              3);  // 306 septets, which two parts hold where no pair is in the way
    // Pairs alone fill 152 of 153.
    EXPECT_EQ(SmsParts::Count(Repeated(152, QStringLiteral("["))), 2);
    EXPECT_EQ(SmsParts::Count(Repeated(153, QStringLiteral("["))), 3);
}

TEST(SmsParts, AUcs2TextHas70UnitsInOnePartAnd67InEachOfMore) {
    EXPECT_EQ(SmsParts::Count(Repeated(70, QStringLiteral("Ł"))), 1);
    EXPECT_EQ(SmsParts::Count(Repeated(71, QStringLiteral("Ł"))), 2);
    EXPECT_EQ(SmsParts::Count(Repeated(134, QStringLiteral("Ł"))), 2);
    EXPECT_EQ(SmsParts::Count(Repeated(135, QStringLiteral("Ł"))), 3);
}

TEST(SmsParts, InUcs2ExtensionCharactersCountOnce) {
    EXPECT_EQ(SmsParts::Count(QStringLiteral("Ł") + Repeated(69, QStringLiteral("€"))), 1);
    EXPECT_EQ(SmsParts::Count(QStringLiteral("Ł") + Repeated(70, QStringLiteral("€"))), 2);
}

TEST(SmsParts, ASurrogatePairIsNeverPutIntoTwoParts) {
    EXPECT_EQ(SmsParts::Count(Repeated(35, QStringLiteral("😀"))), 1);  // 70 units
    // 66 units, then a pair that does not fit the 67th.
    const QString text =
        Repeated(66, QStringLiteral("Ł")) + QStringLiteral("😀") + Repeated(65, QStringLiteral("Ł"));
    EXPECT_EQ(SmsParts::Count(text), 2);
    EXPECT_EQ(SmsParts::Count(text + QStringLiteral("Ł")), 3);
    EXPECT_EQ(SmsParts::Count(Repeated(66, QStringLiteral("😀"))), 2);
    EXPECT_EQ(SmsParts::Count(Repeated(67, QStringLiteral("😀"))), 3);
}

TEST(SmsParts, LoneSurrogatesCountOneUnitEach) {
    EXPECT_EQ(SmsParts::Count(QString(70, QChar(0xD83D))), 1);
    EXPECT_EQ(SmsParts::Count(QString(71, QChar(0xD83D))), 2);
    EXPECT_EQ(SmsParts::Count(QString(71, QChar(0xDE00))), 2);
}

TEST(SmsParts, TheLargestMessageOfAnOfficeIsCounted) {
    EXPECT_EQ(SmsParts::Count(Repeated(32767, QStringLiteral("a"))), 215);
    EXPECT_GT(SmsParts::Count(Repeated(32767, QStringLiteral("Ł"))), SmsParts::MaxParts);
}
