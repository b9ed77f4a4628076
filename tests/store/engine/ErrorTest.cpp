#include "store/engine/Error.h"

#include "support/Printing.h"

#include <QSet>

#include <gtest/gtest.h>

namespace {

using engine::Failure;
using engine::GenericFailure;
using engine::IsTransientError;

TEST(EngineError, ThirtyOneNumbersAreTransientAndNoOtherIs) {
    const QSet<int> transient = {3006, 3008, 3009, 3040, 3043, 3045, 3046, 3051, 3052, 3158, 3186,
                                 3187, 3188, 3189, 3196, 3197, 3202, 3211, 3212, 3218, 3234, 3254,
                                 3260, 3261, 3262, 3356, 3566, 3572, 3576, 3584, 3624};
    ASSERT_EQ(transient.size(), 31);
    for (int number = 0; number < 4000; ++number) {
        EXPECT_EQ(IsTransientError(GenericFailure, 0, QString::number(number)), transient.contains(number))
            << number;
    }
}

TEST(EngineError, OnlyTheGenericFailureIsTransient) {
    EXPECT_EQ(GenericFailure, -2147467259);
    EXPECT_TRUE(IsTransientError(-2147467259, 0, QStringLiteral("3045")));
    EXPECT_FALSE(IsTransientError(0, 0, QStringLiteral("3045")));
    EXPECT_FALSE(IsTransientError(-2147467258, 0, QStringLiteral("3045")));
}

TEST(EngineError, TheNativeErrorPlaysNoPart) {
    EXPECT_TRUE(IsTransientError(GenericFailure, 12345, QStringLiteral("3045")));
    EXPECT_FALSE(IsTransientError(GenericFailure, 3045, QStringLiteral("3022")));
}

TEST(EngineError, TheStateIsReadAsALeadingNumber) {
    EXPECT_TRUE(IsTransientError(GenericFailure, 0, QStringLiteral(" 3045")));
    EXPECT_TRUE(IsTransientError(GenericFailure, 0, QStringLiteral("3045 and more")));
    EXPECT_FALSE(IsTransientError(GenericFailure, 0, QString()));
    EXPECT_FALSE(IsTransientError(GenericFailure, 0, QStringLiteral("HY000")));
    EXPECT_FALSE(IsTransientError(GenericFailure, 0, QStringLiteral("3045.5")));
}

TEST(EngineError, AFailureCarriesItsNumberInTheState) {
    const Failure failure(3022, QStringLiteral("duplicate"), 7);
    EXPECT_EQ(failure.Number(), GenericFailure);
    EXPECT_EQ(failure.Item().SQLState, QStringLiteral("3022"));
    EXPECT_EQ(failure.Item().NativeError, 7);
    EXPECT_EQ(failure.Item().Description, QStringLiteral("duplicate"));
    EXPECT_STREQ(failure.what(), "duplicate");
}

TEST(EngineError, AFailureOfAnObjectHasANumberOfItsOwnAndNoState) {
    const Failure failure = Failure::WithNumber(-2146824584, QStringLiteral("closed"));
    EXPECT_EQ(failure.Number(), -2146824584);
    EXPECT_TRUE(failure.Item().SQLState.isEmpty());
}

}  // namespace
