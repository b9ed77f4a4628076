#pragma once

#include <QDir>
#include <QFileInfo>
#include <QString>

/// Where a test makes a temporary folder for files that are written often: in memory where the machine has a
/// place for that, since every commit waits for the disk. `name` begins the folder's name; the six letters
/// behind it, which are anybody's guess, stand behind no point: ".mdb" in a path names a file.
inline QString MemoryFolder(const QString& name) {
    const QString inMemory = QStringLiteral("/dev/shm");
    return (QFileInfo(inMemory).isWritable() ? inMemory : QDir::tempPath()) + u'/' + name + u'-' +
           QString(6, u'X');
}
