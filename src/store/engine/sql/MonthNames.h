#pragma once

#include <QLocale>
#include <QStringList>
#include <QStringView>

#include <array>

namespace engine::sql {

/// The names of months as dates in statements spell them: in English (at least the first three letters) or in
/// the user's language as this program writes them, in full or short. Case and a closing dot do not matter.
/// English comes first, because that is what this program's own statements are written in: "mar" is March in
/// Finnish too.
class MonthNames {
public:
    explicit MonthNames(const QLocale& locale);
    /// 1 to 12; 0 for a name that is unknown or that could be two months.
    [[nodiscard]] int Find(QStringView name) const;

private:
    std::array<QStringList, 12> m_names;  // of the user's language; empty for English
};

}  // namespace engine::sql
