#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

#include <map>
#include <utility>

/// How far the numbers of one kind of record have gone. They come back to the program as 16-bit signed
/// values, so the last one that works is 32767.
struct NumberUse {
    QString Name;  // "message"
    qint64 Last =
        0;  // the highest number ever given out; the highest that stands, where the engine does not remember
    static constexpr qint64 Limit = 32767;
    /// From here on it is time to plan for a fresh file.
    static constexpr qint64 Near = Limit * 9 / 10;

    [[nodiscard]] qint64 Left() const { return Last < Limit ? Limit - Last : 0; }
    /// How much of the limit is used up; beyond 100 for a number past it.
    [[nodiscard]] double Percent() const {
        return 100.0 * static_cast<double>(Last) / static_cast<double>(Limit);
    }
};

/// What a look at a data folder found. `Problems` need mending; `Notes` are worth knowing.
struct OfficeReport {
    /// One of the two database files.
    struct File {
        QString Path;
        qint64 Size = -1;      // bytes; -1 if it is missing
        bool IsSound = false;  // it opens, and its own check of its pages found nothing
    };
    QList<File> Files;
    QList<std::pair<QString, qint64>> Rows;  // table and number of rows, in the order of the tables
    std::map<qint32, qint64> MessagesByStatus;
    QList<NumberUse> Numbers;
    qint64 OrphanedMembers = 0;    // memberships of a contact or group that is gone
    qint64 DuplicateMembers = 0;   // memberships that stand more than once
    qint64 DuplicateContacts = 0;  // contacts equal to an earlier one in both names and the number
    qint64 BadPhoneNumbers = 0;    // contacts whose number is not + and 5 to 30 digits
    QStringList Problems;
    QStringList Notes;

    [[nodiscard]] bool IsFine() const { return Problems.isEmpty(); }
    /// For people, lines closed by "\n".
    [[nodiscard]] QString ToText() const;
    /// For programs; the same facts. No names, numbers or texts of anybody.
    [[nodiscard]] QJsonObject ToJson() const;
};

/// "waiting", "canceled" and so on; "unusual" for a status that means nothing.
[[nodiscard]] QString StatusName(qint32 status);
