#include "support/TempOffice.h"

#include "store/engine/sqlite/OfficeFiles.h"
#include "support/MemoryFolder.h"
#include "support/RawDatabase.h"

#include <QStringList>

namespace {

QString NextApplicationName() {
    static int count = 0;
    return QStringLiteral("Larkspan Messenger test %1").arg(++count);
}

QString Literal(const QVariant& value) {
    if (value.isNull()) {
        return QStringLiteral("NULL");
    }
    switch (value.typeId()) {
        case QMetaType::QDateTime:
            return value.toDateTime().toString(QStringLiteral("''yyyy-MM-dd HH:mm:ss''"));
        case QMetaType::Bool:
            return value.toBool() ? QStringLiteral("1") : QStringLiteral("0");
        case QMetaType::QString:
            return u'\'' + mdlOutbox::QuoteSQL(value.toString()) + u'\'';
        default:
            return value.toString();
    }
}

}  // namespace

TempOffice::TempOffice()
    : DataFolder(MemoryFolder(QStringLiteral("larkspan-office"))),
      m_outbox{OutboxValues, AppSettings, Boxes, Database()},
      m_phonebook{PhonebookValues, AppSettings, Boxes, Database(), {}} {
    OfficeFiles::CreateOutboxFile(OutboxPath());
    OfficeFiles::CreatePhonebookFile(PhonebookPath());
    AppSettings.SetApplication(NextApplicationName());
    AppSettings.SetValue(SettingNames::SectionDB, SettingNames::Outbox, DataFolder.path());
    EXPECT_TRUE(mdlOutbox::OpenOutbox(m_outbox));
    EXPECT_TRUE(mdlPhonebook::OpenPhonebook(m_phonebook));
}

DBServices TempOffice::Database() {
    return {FileEngine, Time, Pump, Drives, Folders};
}

qint32 TempOffice::AddContact(const QString& surname, const QString& firstnames, const QString& phone) {
    ContactFields fields;
    fields.Surname = surname;
    fields.Firstnames = firstnames;
    fields.Phone = phone;
    return AddContact(fields);
}

qint32 TempOffice::AddContact(const ContactFields& fields) {
    const qint32 id = mdlPhonebook::AddContact(m_phonebook, fields);
    EXPECT_GT(id, 0);
    return id;
}

qint16 TempOffice::AddGroup(const QString& name, const QList<qint32>& contactIDs) {
    const qint16 id = mdlPhonebook::AddGroup(m_phonebook, name);
    EXPECT_GT(id, 0);
    QString keys;
    for (const qint32 contact : contactIDs) {
        keys += QStringLiteral("C%1\r\n").arg(contact);
    }
    mdlPhonebook::AddToGroup(PhonebookValues, id, keys);
    return id;
}

qint32 TempOffice::AddMessageRow(const QVariantMap& columns) {
    QStringList names;
    QStringList values;
    for (auto column = columns.constBegin(); column != columns.constEnd(); ++column) {
        names.append(column.key());
        values.append(Literal(column.value()));
    }
    RawDatabase file(OutboxPath());
    file.Execute(QStringLiteral("INSERT INTO Message (") + names.join(u',') + QStringLiteral(") VALUES (") +
                 values.join(u',') + u')');
    return file.Value(QStringLiteral("SELECT last_insert_rowid()")).toInt();
}

QList<QVariantMap> TempOffice::MessageRows() {
    return RawDatabase(OutboxPath()).Rows(QStringLiteral("SELECT * FROM Message ORDER BY msgID"));
}

QList<QVariantMap> TempOffice::ContactRows() {
    return RawDatabase(PhonebookPath()).Rows(QStringLiteral("SELECT * FROM Contact ORDER BY cntID"));
}

QList<QVariantMap> TempOffice::GroupRows() {
    return RawDatabase(PhonebookPath()).Rows(QStringLiteral("SELECT * FROM ContactGroup ORDER BY grpID"));
}

QList<QVariantMap> TempOffice::MemberRows() {
    return RawDatabase(PhonebookPath())
        .Rows(QStringLiteral("SELECT * FROM GroupMember ORDER BY grpID, cntID"));
}

void TempOffice::ExecuteOnOutbox(const QString& sql) {
    RawDatabase(OutboxPath()).Execute(sql);
}

void TempOffice::ExecuteOnPhonebook(const QString& sql) {
    RawDatabase(PhonebookPath()).Execute(sql);
}
