#include "store/engine/sql/MonthNames.h"

#include "core/Dates.h"

namespace engine::sql {

namespace {

constexpr std::array<QStringView, 12> EnglishNames = {u"january",   u"february", u"march",    u"april",
                                                      u"may",       u"june",     u"july",     u"august",
                                                      u"september", u"october",  u"november", u"december"};

int FindEnglish(QStringView name) {
    constexpr qsizetype ShortestName = 3;
    if (name.size() < ShortestName) {
        return 0;
    }
    for (std::size_t month = 0; month < EnglishNames.size(); ++month) {
        if (EnglishNames[month].startsWith(name, Qt::CaseInsensitive)) {
            return static_cast<int>(month) + 1;
        }
    }
    return 0;
}

QStringView WithoutDot(QStringView name) {
    return name.endsWith(u'.') ? name.chopped(1) : name;
}

}  // namespace

MonthNames::MonthNames(const QLocale& locale) {
    const bool isEnglish = locale.language() == QLocale::English && locale.script() == QLocale::LatinScript;
    if (isEnglish || locale.language() == QLocale::C) {
        return;
    }
    for (int month = 1; month <= 12; ++month) {
        QStringList& names = m_names.at(static_cast<std::size_t>(month - 1));
        const QDateTime day(QDate(2000, month, 1), QTime(0, 0), Qt::UTC);
        const auto add = [&names](const QString& name) {
            const QString bare = WithoutDot(name).toString();
            if (!bare.isEmpty() && !names.contains(bare)) {
                names.append(bare);
            }
        };
        add(Dates::Format(day, QStringLiteral("mmm"), locale));
        add(Dates::Format(day, QStringLiteral("mmmm"), locale));
        add(locale.monthName(month, QLocale::ShortFormat));
        add(locale.monthName(month, QLocale::LongFormat));
        add(locale.standaloneMonthName(month, QLocale::ShortFormat));
        add(locale.standaloneMonthName(month, QLocale::LongFormat));
    }
}

int MonthNames::Find(QStringView name) const {
    const QStringView bare = WithoutDot(name);
    int found = FindEnglish(bare);
    if (found != 0) {
        return found;
    }
    for (std::size_t month = 0; month < m_names.size(); ++month) {
        if (m_names[month].contains(bare, Qt::CaseInsensitive)) {
            if (found != 0) {
                return 0;
            }
            found = static_cast<int>(month) + 1;
        }
    }
    return found;
}

}  // namespace engine::sql
