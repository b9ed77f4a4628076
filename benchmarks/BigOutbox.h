#pragma once

#include "BareOutbox.h"
#include "support/Ratio.h"

#include "store/engine/sqlite/OfficeFiles.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>

/// A fresh outbox for each run: both sides write into a file of the same size.
inline QString FreshOutbox(const QTemporaryDir& folder, const QString& name) {
    QString file = folder.filePath(name);
    QFile::remove(file);
    QFile::remove(file + QStringLiteral("-journal"));
    OfficeFiles::CreateOutboxFile(file);
    return file;
}

/// An outbox of so many rows, and the messages in it that a full tracker asks about.
class BigOutbox {
public:
    BigOutbox(const QTemporaryDir& folder, int rows)
        : m_file(FreshOutbox(folder, QStringLiteral("big.mdb"))), m_spread(std::min(300, rows / 110)) {
        BareOutbox outbox(m_file);
        outbox.Execute("BEGIN");
        outbox.Insert(rows);
        outbox.Execute("COMMIT");
    }
    [[nodiscard]] const QString& File() const { return m_file; }
    /// Message numbers all over the outbox: the one of `index`, from 0 to 99.
    [[nodiscard]] int IDOf(int index) const { return 1 + index * m_spread; }

private:
    QString m_file;
    int m_spread;
};

/// Milliseconds of one of so many runs.
inline double TimeOfOne(int runs, const std::function<void()>& run) {
    return Ratio::Time([&] {
               for (int i = 0; i < runs; ++i) {
                   run();
               }
           }) /
           runs;
}
