#include "core/TextRules.h"
#include "core/Trap.h"
#include "platform/Drives.h"
#include "platform/Folders.h"
#include "store/DB.h"

#include <QFile>

#include <unistd.h>

#include <stdexcept>

namespace {

constexpr qint64 CopyPiece = 1 << 20;

/// Passes over a file that is not there.
void DeleteFile(const QString& path) {
    QFile file(NativePath(path));
    if (file.exists() && !file.remove()) {
        throw std::runtime_error(file.errorString().toStdString());
    }
}

/// Copies byte by byte over whatever `to` holds; the bytes are on the disk afterwards, because the next step
/// may delete the only other copy.
void CopyFileBytes(const QString& from, const QString& to, QFileDevice::Permissions permissions) {
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
    if (!target.flush() || fsync(target.handle()) != 0 || source.error() != QFileDevice::NoError) {
        throw std::runtime_error("cannot copy a database file");
    }
    target.setPermissions(permissions);
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
    const QFileDevice::Permissions permissions = QFile::permissions(NativePath(Filename));
    Trap([&] { DeleteFile(temporary); });
    bool isFine = Trap([&] { m_services.Engine.CompactDatabase(Filename, temporary); });
    isFine = Trap([&] { DeleteFile(backup); }) && isFine;
    isFine = Trap([&] { CopyFileBytes(Filename, backup, permissions); }) && isFine;
    if (isFine) {
        isFine = Trap([&] { DeleteFile(Filename); });
        isFine = Trap([&] { CopyFileBytes(temporary, Filename, permissions); }) && isFine;
        if (isFine) {
            isFine = Trap([&] { DeleteFile(temporary); });
            isFine = Trap([&] { DeleteFile(backup); }) && isFine;
        }
    }

    if (wasOpen) {
        static_cast<void>(OpenDatabase(engine::Mode::ReadWriteShared));
    }
    return isFine;
}
