#include "core/TextRules.h"
#include "core/Trap.h"
#include "platform/Drives.h"
#include "platform/Folders.h"
#include "store/DB.h"

#include <QFile>
#include <QFileInfo>

#include <stdexcept>

namespace {

constexpr qint32 ReopenMode = engine::Mode::ReadWriteShared;
constexpr qint64 CopyPiece = 1 << 20;

/// Passes over a file that is not there.
void DeleteFile(const QString& path) {
    QFile file(NativePath(path));
    if (file.exists() && !file.remove()) {
        throw std::runtime_error(file.errorString().toStdString());
    }
}

/// Copies byte by byte over whatever `to` holds.
void CopyFileBytes(const QString& from, const QString& to) {
    QFile source(NativePath(from));
    QFile target(NativePath(to));
    if (!source.open(QIODevice::ReadOnly) || !target.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        throw std::runtime_error("cannot copy a database file");
    }
    while (!source.atEnd()) {
        const QByteArray piece = source.read(CopyPiece);
        if (piece.isEmpty() || target.write(piece) != piece.size()) {
            throw std::runtime_error("cannot copy a database file");
        }
    }
    if (!target.flush() || source.error() != QFileDevice::NoError) {
        throw std::runtime_error("cannot copy a database file");
    }
    target.setPermissions(source.permissions());
}

QString BackupName(const QString& filename) {
    const qsizetype dot = filename.lastIndexOf(u'.');
    return (dot < 0 ? filename : filename.left(dot)) + QStringLiteral(".cmp");
}

}  // namespace

bool DB::Compact() noexcept {
    const bool wasOpen = IsConnected();
    CloseDatabase();

    const QString temporary =
        Text::WithBackslash(m_services.Folders.TempFolder()) + GetFilename() + QStringLiteral("$compact.mdb");
    const QString backup = BackupName(Filename);
    Trap([&] { DeleteFile(temporary); });
    bool isFine = Trap([&] { m_services.Engine.CompactDatabase(Filename, temporary); });
    isFine = Trap([&] { DeleteFile(backup); }) && isFine;
    isFine = Trap([&] { CopyFileBytes(Filename, backup); }) && isFine;
    if (isFine) {
        isFine = Trap([&] { DeleteFile(Filename); });
        isFine = Trap([&] { CopyFileBytes(temporary, Filename); }) && isFine;
        if (isFine) {
            isFine = Trap([&] { DeleteFile(temporary); });
            isFine = Trap([&] { DeleteFile(backup); }) && isFine;
        }
    }

    if (wasOpen) {
        static_cast<void>(OpenDatabase(ReopenMode));
    }
    return isFine;
}
