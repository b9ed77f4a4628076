#pragma once

#include "store/engine/sql/Lexer.h"
#include "store/engine/sql/MonthNames.h"
#include "store/engine/sql/Tree.h"

#include <optional>

namespace engine::sql {

/// The value of a number: a whole one of up to 18 digits as such, any other as a double; nothing if it is
/// infinite.
[[nodiscard]] std::optional<Literal> ReadNumber(QStringView text);

/// The value of a text token, its doubled quotes made single.
[[nodiscard]] QString ReadText(const Token& token);

/// The value of what stands between # signs: dd/mmm/yyyy, with or without hh:nn or hh:nn:ss behind it.
/// Nothing if it is no date that exists.
[[nodiscard]] std::optional<DateLiteral> ReadDate(QStringView text, const MonthNames& months);

}  // namespace engine::sql
