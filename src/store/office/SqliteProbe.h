#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

/// What only SQLite itself can tell about a file.
struct SqliteProbe {
    /// What its check of pages, indexes, constraints and references found; empty if the file is sound.
    QStringList Damages;
    /// The highest number that a table ever gave out, by table.
    QHash<QString, qint64> LastNumbers;

    /// Looks at a file on this machine (see NativePath) that nothing in this process has open. Nothing if
    /// `isStopped`, asked now and then, stopped it. A file that cannot be opened has that as its damage.
    [[nodiscard]] static std::optional<SqliteProbe> Look(const QString& path,
                                                         const std::function<bool()>& isStopped);
    /// Whether the first bytes of a file are those of an SQLite database.
    [[nodiscard]] static bool IsSqlite(const QString& path);
};
