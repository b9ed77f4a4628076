#pragma once

#include "core/Settings.h"
#include "store/Outbox.h"
#include "store/Phonebook.h"
#include "store/engine/Connection.h"
#include "support/FailingFiles.h"
#include "support/FakeMachine.h"

#include <QList>
#include <QString>
#include <QTemporaryDir>
#include <QVariantMap>

/// An office of one test: a temporary data folder with a new outbox and a new phonebook, the settings that
/// point at it, and a fake machine around the real engine. Both databases were opened as at start-up: the
/// phonebook stays open, the outbox is closed again. Everything is public so that a test can look at it and
/// bend it.
class TempOffice {
public:
    TempOffice();

    /// In memory where the machine has a folder for that: every commit waits for the disk, and there are
    /// thousands.
    QTemporaryDir DataFolder;
    FakeClock Time;
    engine::FileConnectionFactory FileEngine{Time};
    FakePump Pump;
    FakeDrives Drives;
    FakeFolders Folders;
    FakeKeyState Keys;
    FakeSound Sound;
    FailingFiles Files;
    Settings AppSettings;
    RecordingBoxes Boxes;
    OutboxState OutboxValues;
    PhonebookState PhonebookValues;

    [[nodiscard]] DBServices Database();
    [[nodiscard]] OutboxServices& Outbox() { return m_outbox; }
    [[nodiscard]] PhonebookServices& Phonebook() { return m_phonebook; }
    [[nodiscard]] DB& OutboxDB() const { return *OutboxValues.OutboxDB; }
    [[nodiscard]] DB& PhonebookDB() const { return *PhonebookValues.PhonebookDB; }

    [[nodiscard]] QString OutboxPath() const {
        return DataFolder.filePath(QStringLiteral("smsmessages.mdb"));
    }
    [[nodiscard]] QString PhonebookPath() const {
        return DataFolder.filePath(QStringLiteral("smscontacts.mdb"));
    }

    /// The new cntID.
    qint32 AddContact(const QString& surname, const QString& firstnames, const QString& phone);
    qint32 AddContact(const ContactFields& fields);
    /// The new grpID.
    qint16 AddGroup(const QString& name, const QList<qint32>& contactIDs = {});
    /// A row as the gateway left it: the columns given, the others as the file fills them in. The new msgID.
    qint32 AddMessageRow(const QVariantMap& columns);

    /// All rows of a table, by its key, read past the program's engine.
    [[nodiscard]] QList<QVariantMap> MessageRows();
    [[nodiscard]] QList<QVariantMap> ContactRows();
    [[nodiscard]] QList<QVariantMap> GroupRows();
    [[nodiscard]] QList<QVariantMap> MemberRows();
    /// One statement on a file past the program's engine, in SQLite's own words.
    void ExecuteOnOutbox(const QString& sql);
    void ExecuteOnPhonebook(const QString& sql);

private:
    OutboxServices m_outbox;
    PhonebookServices m_phonebook;
};
