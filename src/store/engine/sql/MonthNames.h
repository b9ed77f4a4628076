#pragma once

#include <QLocale>
#include <QStringList>
#include <QStringView>

#include <array>

namespace engine::sql {

/// The names of months as dates in statements spell them: in the user's language as this program writes them,
/// in full or short, and in English (at least three letters). Case and a closing dot do not matter. What the
/// user's language says comes first: "mar" is November in Finnish.
class MonthNames {
public:
    explicit MonthNames(const QLocale& locale);
    /// 1 to 12; 0 for a name that is unknown or that could be two months.
    [[nodiscard]] int Find(QStringView name) const;

private:
    std::array<QStringList, 12> m_names;  // empty for English
    bool m_isEnglish;
};

}  // namespace engine::sql
