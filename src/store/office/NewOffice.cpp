#include "store/office/NewOffice.h"

#include "platform/Drives.h"
#include "store/engine/Connection.h"
#include "store/engine/sqlite/OfficeFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace {

OfficeError CannotWrite(const QString& text) {
    return {OfficeError::Kind::CannotWrite, text};
}

/// The folder, made if it was missing, and then removed again unless Keep was called.
class FolderScope {
public:
    explicit FolderScope(const QString& path) : m_path(path) {
        if (QFileInfo(path).isDir()) {
            return;
        }
        if (QFileInfo::exists(path)) {
            throw CannotWrite(QStringLiteral("%1 is not a folder").arg(path));
        }
        if (!QDir().mkdir(path)) {
            throw CannotWrite(QStringLiteral("the folder %1 cannot be made").arg(path));
        }
        m_isMine = true;
    }
    ~FolderScope() {
        if (m_isMine) {
            QDir().rmdir(m_path);
        }
    }
    FolderScope(const FolderScope&) = delete;
    FolderScope& operator=(const FolderScope&) = delete;
    void Keep() { m_isMine = false; }

private:
    QString m_path;
    bool m_isMine = false;
};

void RefuseExisting(const QString& path) {
    if (QFileInfo::exists(path) || QFileInfo(path).isSymLink()) {
        throw OfficeError(OfficeError::Kind::Exists, QStringLiteral("%1 is there already").arg(path));
    }
}

/// Gives a finished file its name; never onto another file.
void Publish(const QString& built, const QString& path) {
    if (!QFile::rename(built, path)) {
        RefuseExisting(path);
        throw CannotWrite(QStringLiteral("%1 cannot be written").arg(path));
    }
}

bool FillPhonebook(const QString& path, const SampleOffice& office, engine::ConnectionFactory& engines,
                   const OfficeProgress& progress) {
    const auto connection = engines.NewConnection();
    connection->Mode = engine::Mode::ReadWriteShared;
    connection->Open(path);
    const bool isDone = office.WriteTo(*connection, progress);
    connection->Close();
    return isDone;
}

bool Build(const QDir& folder, const std::optional<SampleOffice>& office, engine::ConnectionFactory& engines,
           const OfficeProgress& progress) {
    const QTemporaryDir building(folder.filePath(QStringLiteral(".larkspan-new-XXXXXX")));
    if (!building.isValid()) {
        throw CannotWrite(QStringLiteral("the folder %1 cannot be written").arg(folder.path()));
    }
    const QString outbox = building.filePath(NewOffice::OutboxName);
    const QString phonebook = building.filePath(NewOffice::PhonebookName);
    OfficeFiles::CreateOutboxFile(outbox);
    OfficeFiles::CreatePhonebookFile(phonebook);
    if (office && !FillPhonebook(phonebook, *office, engines, progress)) {
        return false;
    }
    Publish(phonebook, folder.filePath(NewOffice::PhonebookName));
    try {
        Publish(outbox, folder.filePath(NewOffice::OutboxName));
    } catch (...) {
        QFile::remove(folder.filePath(NewOffice::PhonebookName));
        throw;
    }
    return true;
}

}  // namespace

bool NewOffice::Create(const QString& folder, const std::optional<SampleOffice::Plan>& sample,
                       engine::ConnectionFactory& engines, const OfficeProgress& progress) {
    const QDir target(NativePath(folder));
    RefuseExisting(target.filePath(OutboxName));
    RefuseExisting(target.filePath(PhonebookName));
    std::optional<SampleOffice> office;
    if (sample) {
        office.emplace(*sample);
    }
    FolderScope scope(target.path());
    try {
        if (!Build(target, office, engines, progress)) {
            return false;
        }
    } catch (const engine::Failure& failure) {
        throw CannotWrite(failure.Item().Description);
    }
    scope.Keep();
    return true;
}
