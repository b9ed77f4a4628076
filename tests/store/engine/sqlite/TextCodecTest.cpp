#include "store/engine/sqlite/TextCodec.h"

#include "support/Printing.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace {

using engine::sqlite::DecodeText;
using engine::sqlite::EncodeText;

QString Units(std::initializer_list<ushort> units) {
    QString text;
    for (const ushort unit : units) {
        text.append(QChar(unit));
    }
    return text;
}

TEST(TextCodec, OrdinaryTextIsPlainUtf8) {
    const QString text = QStringLiteral("O'Neill \u00e9 \u0141\u00f3d\u017a \U0001F600");
    EXPECT_EQ(EncodeText(text), text.toUtf8());
    EXPECT_EQ(DecodeText(text.toUtf8()), text);
    EXPECT_EQ(EncodeText(QString()).size(), 0);
    EXPECT_EQ(DecodeText({}), QString());
}

TEST(TextCodec, ALoneSurrogateTakesThreeBytesAndComesBack) {
    EXPECT_EQ(EncodeText(Units({0xD800})), QByteArray("\xED\xA0\x80"));
    EXPECT_EQ(EncodeText(Units({0xDFFF})), QByteArray("\xED\xBF\xBF"));
    for (const QString& text :
         {Units({0xD800}), Units({0xDC00}), Units({'a', 0xD800, 'b'}), Units({0xDC00, 0xD800}),
          Units({0xD83D, 0xD83D, 0xDE00}), Units({0xD83D, 0xDE00, 0xDE00}), Units({0xD7FF, 0xE000, 0xD800}),
          Units({0xD55C, 0xAE00})}) {
        EXPECT_EQ(DecodeText(EncodeText(text)), text);
    }
}

TEST(TextCodec, AByteOrderMarkIsACharacterLikeAnyOther) {
    for (const QString& text :
         {Units({0xFEFF}), Units({0xFEFF, 0xFEFF, 'a'}), Units({0xD800, 0xFEFF, 'a', 0xFEFF})}) {
        EXPECT_EQ(DecodeText(EncodeText(text)), text);
    }
}

TEST(TextCodec, NulIsACharacterLikeAnyOther) {
    const QString text = Units({'a', 0, 'b', 0});
    EXPECT_EQ(EncodeText(text), QByteArray("a\0b\0", 4));
    EXPECT_EQ(DecodeText(EncodeText(text)), text);
}

TEST(TextCodec, BytesThatAreNoUtf8BecomeReplacementCharacters) {
    EXPECT_EQ(DecodeText("a\xFFz"), QStringLiteral("a\uFFFDz"));
}

TEST(TextCodec, EverySequenceOfUnitsComesBack) {
    QRandomGenerator random(7);
    for (int i = 0; i < 20000; ++i) {
        QString text;
        const int length = random.bounded(8);
        for (int unit = 0; unit < length; ++unit) {
            text.append(QChar(static_cast<ushort>(random.bounded(2) == 0 ? random.bounded(0xD7F0, 0xE010)
                                                                         : random.bounded(0x10000))));
        }
        ASSERT_EQ(DecodeText(EncodeText(text)), text);
    }
}

}  // namespace
