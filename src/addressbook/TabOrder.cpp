#include "addressbook/TabOrder.h"

#include "core/Numbers.h"
#include "core/Trap.h"

#include <QStringList>

#include <algorithm>

namespace TabOrder {

QString Join(const QList<qint16>& numbers) {
    QStringList entries;
    entries.reserve(numbers.size());
    for (const qint16 number : numbers) {
        entries.append(QString::number(number));
    }
    return entries.join(u',');
}

QList<qint16> Split(const QString& saved) {
    QList<qint16> numbers;
    if (saved.isEmpty()) {
        return numbers;
    }
    for (const QString& entry : saved.split(u',')) {
        qint16 number = NoTab;
        Trap([&] { number = Numbers::ToInt16(entry); });
        numbers.append(number);
    }
    return numbers;
}

QList<Move> Moves(const QList<qint16>& present, const QList<qint16>& saved) {
    QList<qint16> tabs = present;
    QList<Move> moves;
    for (int i = 0; i < saved.size(); ++i) {
        const int from = static_cast<int>(tabs.indexOf(saved[i]));
        if (from < 0) {
            continue;
        }
        const int to = std::min(i, static_cast<int>(tabs.size()) - 1);
        if (from != to) {
            tabs.move(from, to);
            moves.append({from, to});
        }
    }
    return moves;
}

QList<qint16> Restore(const QList<qint16>& present, const QList<qint16>& saved) {
    QList<qint16> tabs = present;
    for (const Move& move : Moves(present, saved)) {
        tabs.move(move.From, move.To);
    }
    return tabs;
}

}  // namespace TabOrder
