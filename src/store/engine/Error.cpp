#include "store/engine/Error.h"

#include "core/Numbers.h"

#include <algorithm>
#include <array>
#include <utility>

namespace engine {

namespace {

constexpr std::array<int, 31> TransientNumbers = {
    3006, 3008, 3009, 3040, 3043, 3045, 3046, 3051, 3052, 3158, 3186, 3187, 3188, 3189, 3196, 3197,
    3202, 3211, 3212, 3218, 3234, 3254, 3260, 3261, 3262, 3356, 3566, 3572, 3576, 3584, 3624};
static_assert(std::is_sorted(TransientNumbers.begin(), TransientNumbers.end()));

}  // namespace

Failure::Failure(int number, const QString& description, qint32 nativeError)
    : NumberedFailure(GenericFailure, description),
      m_item{nativeError, QString::number(number), description} {}

Failure Failure::WithNumber(qint32 generic, const QString& description) {
    Failure failure(0, description);
    failure.m_number = generic;
    failure.m_item.SQLState.clear();
    return failure;
}

bool IsTransientError(qint32 number, qint32 nativeError, const QString& sqlState) {
    Q_UNUSED(nativeError)
    if (number != GenericFailure) {
        return false;
    }
    const double state = Numbers::Read(sqlState);
    return std::any_of(TransientNumbers.begin(), TransientNumbers.end(),
                       [state](int transient) { return state == static_cast<double>(transient); });
}

}  // namespace engine
