#include "platform/SuppliedFiles.h"

#include "platform/Drives.h"
#include "platform/Folders.h"
#include "platform/LocalFiles.h"

QString FindSuppliedFile(const Folders& folders, const LocalFiles& files, const QString& name) {
    for (const QString& path : {folders.ApplicationFolder() + name, folders.ShareFolder() + name}) {
        if (files.Exists(path)) {
            return NativePath(path);
        }
    }
    return {};
}
