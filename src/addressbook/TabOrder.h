#pragma once

#include <QList>
#include <QString>

/// The order of the group tabs between two runs, as numbers: the number of a tab is what follows the "G" of
/// its tag. Widgets only read the numbers of their tabs and move tabs.
namespace TabOrder {

/// The number of a tab that stands for nothing: no tab has it.
inline constexpr qint16 NoTab = 0;

/// One step of a restore: the tab that now stands at `From` goes to position `To`, both counted from 0.
struct Move {
    int From = 0;
    int To = 0;

    bool operator==(const Move&) const = default;
};

/// The numbers separated by ",", without blanks: "-1,5,2,-2,-3".
[[nodiscard]] QString Join(const QList<qint16>& numbers);
/// The entries between commas; one that is no 16-bit number gives NoTab. The empty text gives no entries.
[[nodiscard]] QList<qint16> Split(const QString& saved);

/// What turns the tabs `present` into the order `saved`, to be done one after the other. The entry at
/// position i of `saved` goes to position i, or to the end where there are not that many tabs. An entry
/// without a tab moves nothing and leaves a hole: position i keeps whatever stands there. A tab without an
/// entry is never moved by itself; the others are pulled forward past it.
[[nodiscard]] QList<Move> Moves(const QList<qint16>& present, const QList<qint16>& saved);
/// The order that these moves give.
[[nodiscard]] QList<qint16> Restore(const QList<qint16>& present, const QList<qint16>& saved);

}  // namespace TabOrder
