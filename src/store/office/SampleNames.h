#pragma once

#include <QList>
#include <QString>

#include <span>

/// First names and surnames of one language, for offices that exist only to try the program.
struct SampleLanguage {
    QStringView Name;  // "Irish"
    std::span<const QStringView> Firstnames;
    std::span<const QStringView> Surnames;
};

namespace SampleNames {

/// The languages whose people work in a sample office; the first one is the office's own.
[[nodiscard]] std::span<const SampleLanguage> Languages();
/// Notes that people write about their colleagues; one of them has two lines.
[[nodiscard]] std::span<const QStringView> Notes();
/// Where people work: one of their user fields.
[[nodiscard]] std::span<const QStringView> Departments();
/// At most 10 characters each, which is as long as the name of a group can be.
[[nodiscard]] std::span<const QStringView> Groups();
/// The first one is preselected.
[[nodiscard]] std::span<const QStringView> Tails();

}  // namespace SampleNames
