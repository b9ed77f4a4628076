#include "core/SupportRoutines.h"

#include "platform/Drives.h"
#include "platform/Folders.h"

QString FirstNetworkDrive(const Drives& drives, const Folders& folders) {
    constexpr int LetterCount = 25;
    for (int index = 0; index < LetterCount; ++index) {
        const QString drive = QString(QChar(u'C' + index)) + u':';
        if (!drives.GetNetworkConnection(drive).isEmpty()) {
            return drive + u'\\';
        }
    }
    const QString current = folders.CurrentFolder();
    const bool hasDrive = current.size() >= 3 && QChar::isLetter(current.at(0).unicode()) &&
                          current.mid(1, 2) == QStringLiteral(":\\");
    return hasDrive ? current.left(3) : current;
}
