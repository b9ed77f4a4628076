#include "compose/MessageSize.h"

#include "compose/GSMCharSet.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace {

const QString ShortTail = QStringLiteral(" - ");

/// The rule as it is told: drop one character, measure all of the rest again.
MessageSize MeasureSlowly(QString text, const QString& tail, qint16 maximum) {
    MessageSize size;
    size.TailLen = static_cast<qint16>(tail.size() + 1);
    size.Available = static_cast<qint16>(maximum - size.TailLen);
    size.Used = mdlGSMCharSet::GSMTextLength(text);
    size.Remaining = static_cast<qint16>(size.Available - size.Used);
    while (size.Remaining < 0 && !text.isEmpty()) {
        text.chop(1);
        size.Used = mdlGSMCharSet::GSMTextLength(text);
        size.Remaining = static_cast<qint16>(size.Available - size.Used);
        size.IsCut = true;
    }
    size.Text = text;
    return size;
}

/// A text of `total` units with the short tail counted in.
MessageSize OfTotal(int total, qint16 maximum = 1000) {
    return MessageSize::Measure(QString(total - 5, u'a'), ShortTail, maximum);
}

}  // namespace

TEST(MessageSize, AnEmptyMessageWithAnEmptyTail) {
    const MessageSize size = MessageSize::Measure(QString(), BuildTailText(QString(), QString()), 160);
    EXPECT_EQ(size.TailLen, 4);
    EXPECT_EQ(size.Available, 156);
    EXPECT_EQ(size.Used, 0);
    EXPECT_EQ(size.Remaining, 156);
    EXPECT_EQ(size.TotalLen, 5);
    EXPECT_EQ(size.Parts, 1);
    EXPECT_FALSE(size.IsCut);
}

TEST(MessageSize, AMaximumBelow160BehavesAs160) {
    for (const qint16 maximum : std::initializer_list<qint16>{0, 100, 159, -1, 160}) {
        EXPECT_EQ(MessageSize::Measure(QString(), ShortTail, maximum).Available, 156) << maximum;
    }
    EXPECT_EQ(MessageSize::Measure(QString(), ShortTail, 161).Available, 157);
}

TEST(MessageSize, TwoHundredBracketsAreCutTo78) {
    const MessageSize size = MessageSize::Measure(QString(200, u'['), ShortTail, 160);
    EXPECT_EQ(size.Text, QString(78, u'['));
    EXPECT_EQ(size.Used, 156);
    EXPECT_EQ(size.Remaining, 0);
    EXPECT_TRUE(size.IsCut);
}

TEST(MessageSize, ATextThatFitsExactlyIsNotCut) {
    const MessageSize size = MessageSize::Measure(QString(156, u'a'), ShortTail, 160);
    EXPECT_EQ(size.Remaining, 0);
    EXPECT_FALSE(size.IsCut);
    EXPECT_EQ(size.Text.size(), 156);
}

TEST(MessageSize, OneUnitTooManyInAnExtensionCharacterLeavesOneUnitFree) {
    const MessageSize size = MessageSize::Measure(QString(155, u'a') + u'\u20AC', ShortTail, 160);
    EXPECT_EQ(size.Text, QString(155, u'a'));
    EXPECT_EQ(size.Used, 155);
    EXPECT_EQ(size.Remaining, 1);
    EXPECT_TRUE(size.IsCut);
}

TEST(MessageSize, ALongerTailShortensTheText) {
    const QString text(150, u'a');
    const MessageSize before = MessageSize::Measure(text, ShortTail, 160);
    EXPECT_FALSE(before.IsCut);
    const MessageSize after = MessageSize::Measure(text, QStringLiteral(" - Reception"), 160);
    EXPECT_TRUE(after.IsCut);
    EXPECT_EQ(after.Text.size(), 147);
    EXPECT_EQ(MessageSize::Measure(after.Text, ShortTail, 160).Text.size(), 147)
        << "what is cut does not come back";
}

TEST(MessageSize, ATailLongerThanTheMaximumEmptiesTheTextAndStaysNegative) {
    const MessageSize size = MessageSize::Measure(QStringLiteral("hello"), QString(200, u't'), 160);
    EXPECT_EQ(size.Text, QString());
    EXPECT_TRUE(size.IsCut);
    EXPECT_EQ(size.TailLen, 201);
    EXPECT_EQ(size.Available, -41);
    EXPECT_EQ(size.Used, 0);
    EXPECT_EQ(size.Remaining, -41);
}

TEST(MessageSize, AnEmptyTextIsNotCutHoweverLongTheTail) {
    const MessageSize size = MessageSize::Measure(QString(), QString(200, u't'), 160);
    EXPECT_FALSE(size.IsCut);
    EXPECT_EQ(size.Remaining, -41);
}

TEST(MessageSize, PartsGoFromOneToTwoAtATotalOf161) {
    EXPECT_EQ(OfTotal(160).TotalLen, 160);
    EXPECT_EQ(OfTotal(160).Parts, 1);
    EXPECT_EQ(OfTotal(161).Parts, 2);
}

TEST(MessageSize, PartsAreTheWholeNumberOf152AndOne) {
    EXPECT_EQ(OfTotal(303).Parts, 2);
    EXPECT_EQ(OfTotal(304).Parts, 3);
    EXPECT_EQ(OfTotal(455).Parts, 3);
    EXPECT_EQ(OfTotal(456).Parts, 4);
}

TEST(MessageSize, AFullBoxWithATailOfTenIsTwoPartsAndOneCharacterLessIsOne) {
    const QString tail(10, u't');
    const MessageSize full = MessageSize::Measure(QString(149, u'a'), tail, 160);
    EXPECT_EQ(full.TailLen, 11);
    EXPECT_EQ(full.Available, 149);
    EXPECT_EQ(full.Remaining, 0);
    EXPECT_EQ(full.TotalLen, 161);
    EXPECT_EQ(full.Parts, 2);
    EXPECT_EQ(MessageSize::Measure(QString(148, u'a'), tail, 160).Parts, 1);
}

TEST(MessageSize, ExtensionCharactersOfTheTailCountOnce) {
    const MessageSize size = MessageSize::Measure(QString(), QStringLiteral("[[[\u20AC"), 160);
    EXPECT_EQ(size.TailLen, 5);
    EXPECT_EQ(size.TotalLen, 6);
}

TEST(MessageSize, MergeFieldsCountWithTheirLiteralText) {
    EXPECT_EQ(MessageSize::Measure(QStringLiteral("@SN @?"), ShortTail, 160).Used, 6);
}

TEST(MessageSize, CuttingManyCharactersGivesWhatCuttingOneByOneGives) {
    QRandomGenerator random(42);
    const QString characters = QStringLiteral("ab [\u20AC~\u00E9");
    for (int i = 0; i < 300; ++i) {
        QString text;
        for (int length = random.bounded(500); length > 0; --length) {
            text += characters[random.bounded(static_cast<int>(characters.size()))];
        }
        const QString tail(random.bounded(200), u't');
        const auto maximum = static_cast<qint16>(160 + random.bounded(200));
        const MessageSize quick = MessageSize::Measure(text, tail, maximum);
        const MessageSize slow = MeasureSlowly(text, tail, maximum);
        ASSERT_EQ(quick.Text, slow.Text);
        ASSERT_EQ(quick.Used, slow.Used);
        ASSERT_EQ(quick.Remaining, slow.Remaining);
        ASSERT_EQ(quick.IsCut, slow.IsCut);
    }
}

TEST(MessageSize, TheLargestTextIsMeasuredAndCut) {
    const MessageSize size = MessageSize::Measure(QString(32767, u'a'), ShortTail, 160);
    EXPECT_EQ(size.Text.size(), 156);
    EXPECT_EQ(size.Remaining, 0);
    const MessageSize large = MessageSize::Measure(QString(32000, u'a'), ShortTail, 32767);
    EXPECT_FALSE(large.IsCut);
    EXPECT_EQ(large.TotalLen, 32005);
    EXPECT_EQ(large.Parts, 211);
}

TEST(MessageSize, AQuantityThatDoesNotFitStaysZeroAndTheOthersGoOn) {
    const MessageSize used = MessageSize::Measure(QString(20000, u'['), ShortTail, 32767);
    EXPECT_EQ(used.Used, 0);
    EXPECT_EQ(used.Remaining, 32763);
    EXPECT_FALSE(used.IsCut);
    const MessageSize total = MessageSize::Measure(QString(32763, u'a'), ShortTail, 32767);
    EXPECT_EQ(total.Remaining, 0);
    EXPECT_EQ(total.TotalLen, 0);
    EXPECT_EQ(total.Parts, 1);
    const MessageSize tail = MessageSize::Measure(QStringLiteral("hello"), QString(40000, u't'), 160);
    EXPECT_EQ(tail.TailLen, 0);
    EXPECT_EQ(tail.Available, 160);
    EXPECT_EQ(tail.Text, u"hello");
}

TEST(TailText, HasTheSignatureBetweenColonAndDash) {
    EXPECT_EQ(BuildTailText(QStringLiteral("Ann"), QStringLiteral("Reception")), u": Ann - Reception");
}

TEST(TailText, WithoutASignatureBeginsWithTheDash) {
    EXPECT_EQ(BuildTailText(QString(), QStringLiteral("Reception")), u" - Reception");
    EXPECT_EQ(BuildTailText(QStringLiteral("   "), QStringLiteral("Reception")), u" - Reception");
}

TEST(TailText, IsNeverEmpty) {
    EXPECT_EQ(BuildTailText(QString(), QString()), u" - ");
}

TEST(TailText, TrimsTheSignatureAndNotTheTail) {
    EXPECT_EQ(BuildTailText(QStringLiteral("  Ann B "), QStringLiteral(" x ")), u": Ann B -  x ");
    EXPECT_EQ(BuildTailText(QStringLiteral("\tAnn"), QString()), u": \tAnn - ");
}
