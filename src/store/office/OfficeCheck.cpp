#include "store/office/OfficeCheck.h"

#include "core/Numbers.h"
#include "core/PatternMatcher.h"
#include "platform/Drives.h"
#include "store/engine/Connection.h"
#include "store/office/NewOffice.h"
#include "store/office/SqliteProbe.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSet>

#include <memory>

namespace {

struct NumberedTable {
    QString Table;
    QString Column;
    QString Name;
};

struct FilePlan {
    QString Name;
    QStringList Tables;
    QStringList Queries;
    QList<NumberedTable> Numbered;
};

FilePlan OutboxPlan() {
    return {NewOffice::OutboxName,
            {QStringLiteral("Message"), QStringLiteral("System")},
            {QStringLiteral("qry_Report_Message_Log"), QStringLiteral("qry_Canceled_Messages")},
            {{QStringLiteral("Message"), QStringLiteral("msgID"), QStringLiteral("message")}}};
}

FilePlan PhonebookPlan() {
    return {NewOffice::PhonebookName,
            {QStringLiteral("Contact"), QStringLiteral("ContactGroup"), QStringLiteral("GroupMember"),
             QStringLiteral("MessageTail"), QStringLiteral("UserFields"), QStringLiteral("Config")},
            {QStringLiteral("qry_Contacts_By_Surname"), QStringLiteral("qry_Contacts_By_Firstname"),
             QStringLiteral("qry_Groups"), QStringLiteral("qry_Group_Contacts")},
            {{QStringLiteral("Contact"), QStringLiteral("cntID"), QStringLiteral("contact")},
             {QStringLiteral("ContactGroup"), QStringLiteral("grpID"), QStringLiteral("group")}}};
}

/// Thrown when the caller wants no more.
struct Stopped {};

constexpr int StepsOfFile = 3;
constexpr int Steps = 2 * StepsOfFile;
constexpr qint16 SmallestMessageSize = 160;

/// One run over one folder.
class Inspection {
public:
    Inspection(engine::ConnectionFactory& engines, const QString& folder,
               const OfficeCheck::Progress& progress)
        : m_engines(engines), m_folder(NativePath(folder)), m_progress(progress) {}

    OfficeReport Run() {
        Inspect(OutboxPlan(), [this] { LookAtOutbox(); });
        Inspect(PhonebookPlan(), [this] { LookAtPhonebook(); });
        JudgeNumbers();
        Ask(QStringLiteral("done"));
        return m_report;
    }

private:
    void Ask(const QString& step) const {
        if (m_progress && !m_progress(step, m_stepsDone, Steps)) {
            throw Stopped();
        }
    }
    void Begin(const QString& step) {
        Ask(step);
        ++m_stepsDone;
    }
    void Problem(const QString& text) { m_report.Problems.append(text); }
    void Note(const QString& text) { m_report.Notes.append(text); }

    void Inspect(const FilePlan& plan, const std::function<void()>& lookInside);
    void LookInto(const FilePlan& plan, const QString& path, const std::function<void()>& lookInside);
    void Probe(const FilePlan& plan, const QString& path);

    /// Reads all rows of a statement; what fails is a problem, and false.
    bool ForEach(const QString& sql, const std::function<void(const engine::Recordset&)>& onRow);
    qint64 Single(const QString& sql);
    void LookForTables(const FilePlan& plan);
    void CountRows(const FilePlan& plan);
    void LookAtOutbox();
    void LookAtPhonebook();
    QSet<qint64> RecordNumbers(const QString& table, const QString& column);
    void LookAtMembers();
    void LookAtContacts();
    void LookAtUserFields();
    void LookAtTails();
    void ExpectOneRow(const QString& table);
    void JudgeNumbers();

    engine::ConnectionFactory& m_engines;
    QDir m_folder;
    const OfficeCheck::Progress& m_progress;
    int m_stepsDone = 0;
    std::unique_ptr<engine::Connection> m_connection;
    QSet<QString> m_tables;  // that are there, of the file being looked at
    OfficeReport m_report;
};

void Inspection::Inspect(const FilePlan& plan, const std::function<void()>& lookInside) {
    const QString path = m_folder.filePath(plan.Name);
    const QFileInfo info(path);
    m_report.Files.append({path, info.isFile() ? info.size() : -1, false});
    if (!info.isFile()) {
        Problem(QStringLiteral("%1 is missing").arg(plan.Name));
        m_stepsDone += StepsOfFile;
        return;
    }
    Begin(plan.Name);
    try {
        LookInto(plan, path, lookInside);
    } catch (const engine::Failure& failure) {
        Problem(QStringLiteral("%1 cannot be opened: %2").arg(plan.Name, failure.Item().Description));
        m_connection.reset();
        ++m_stepsDone;
        return;
    }
    Begin(plan.Name + QStringLiteral(": soundness"));
    Probe(plan, path);
}

void Inspection::LookInto(const FilePlan& plan, const QString& path,
                          const std::function<void()>& lookInside) {
    m_connection = m_engines.NewConnection();
    m_connection->Mode = engine::Mode::ReadShared;
    m_connection->Open(path);
    LookForTables(plan);
    CountRows(plan);
    Begin(plan.Name + QStringLiteral(": rows"));
    lookInside();
    m_connection->Close();
    m_connection.reset();
}

void Inspection::Probe(const FilePlan& plan, const QString& path) {
    if (!SqliteProbe::IsSqlite(path)) {
        m_report.Files.last().IsSound = true;
        Note(QStringLiteral("%1 is not of the kind whose pages can be checked here").arg(plan.Name));
        return;
    }
    const auto probe = SqliteProbe::Look(
        path, [this] { return m_progress && !m_progress(QStringLiteral("soundness"), m_stepsDone, Steps); });
    if (!probe) {
        throw Stopped();
    }
    for (const QString& damage : probe->Damages) {
        Problem(QStringLiteral("%1 is damaged: %2").arg(plan.Name, damage));
    }
    m_report.Files.last().IsSound = probe->Damages.isEmpty();
    for (const NumberedTable& numbered : plan.Numbered) {
        for (NumberUse& use : m_report.Numbers) {
            if (use.Name == numbered.Name) {
                use.Last = std::max(use.Last, probe->LastNumbers.value(numbered.Table));
            }
        }
    }
}

bool Inspection::ForEach(const QString& sql, const std::function<void(const engine::Recordset&)>& onRow) {
    try {
        const auto rows =
            m_connection->OpenRecordset(sql, engine::CursorType::ForwardOnly, engine::LockType::ReadOnly);
        for (; !rows->EndOfFile(); rows->MoveNext()) {
            onRow(*rows);
        }
        return true;
    } catch (const engine::Failure& failure) {
        Problem(QStringLiteral("\"%1\" fails: %2").arg(sql, failure.Item().Description));
        return false;
    }
}

qint64 Inspection::Single(const QString& sql) {
    qint64 value = 0;
    ForEach(sql, [&](const engine::Recordset& row) { value = row.Value(0).toLongLong(); });
    return value;
}

void Inspection::LookForTables(const FilePlan& plan) {
    m_tables.clear();
    QSet<QString> names;
    for (const QString& name : m_connection->TableNames()) {
        names.insert(name.toLower());
    }
    for (const QString& table : plan.Tables) {
        if (names.contains(table.toLower())) {
            m_tables.insert(table);
        } else {
            Problem(QStringLiteral("%1 has no table %2").arg(plan.Name, table));
        }
    }
    for (const QString& query : plan.Queries) {
        if (!names.contains(query.toLower())) {
            Problem(QStringLiteral("%1 has no saved query %2").arg(plan.Name, query));
        }
    }
}

void Inspection::CountRows(const FilePlan& plan) {
    for (const QString& table : plan.Tables) {
        if (m_tables.contains(table)) {
            m_report.Rows.append(
                {table, Single(QStringLiteral("SELECT Count(*) AS Amount FROM %1").arg(table))});
        }
    }
    for (const NumberedTable& numbered : plan.Numbered) {
        if (m_tables.contains(numbered.Table)) {
            const QString sql =
                QStringLiteral("SELECT Max(%1) AS Highest FROM %2").arg(numbered.Column, numbered.Table);
            m_report.Numbers.append({numbered.Name, Single(sql)});
        }
    }
}

void Inspection::LookAtOutbox() {
    if (m_tables.contains(QStringLiteral("Message"))) {
        ForEach(QStringLiteral("SELECT msgStatus, Count(*) AS Amount FROM Message GROUP BY msgStatus"),
                [this](const engine::Recordset& row) {
                    const qint32 status = row.Value(0).isNull() ? -1 : row.Value(0).toInt();
                    m_report.MessagesByStatus[status] += row.Value(1).toLongLong();
                });
    }
    if (m_tables.contains(QStringLiteral("System"))) {
        ExpectOneRow(QStringLiteral("System"));
        ForEach(QStringLiteral("SELECT sysSMSMaxMessageSize FROM System"),
                [this](const engine::Recordset& row) {
                    if (row.Value(0).toInt() < SmallestMessageSize) {
                        Note(QStringLiteral("sysSMSMaxMessageSize is below 160 and counts as 160"));
                    }
                });
    }
}

void Inspection::LookAtPhonebook() {
    if (m_tables.contains(QStringLiteral("Config"))) {
        ExpectOneRow(QStringLiteral("Config"));
    }
    if (m_tables.contains(QStringLiteral("UserFields"))) {
        LookAtUserFields();
    }
    if (m_tables.contains(QStringLiteral("MessageTail"))) {
        LookAtTails();
    }
    if (m_tables.contains(QStringLiteral("Contact"))) {
        LookAtContacts();
    }
    if (m_tables.contains(QStringLiteral("GroupMember"))) {
        LookAtMembers();
    }
}

void Inspection::ExpectOneRow(const QString& table) {
    for (const auto& [name, count] : m_report.Rows) {
        if (name == table && count != 1) {
            Problem(count == 0 ? QStringLiteral("%1 has no row").arg(table)
                               : QStringLiteral("%1 has %2 rows instead of one").arg(table).arg(count));
        }
    }
}

void Inspection::LookAtUserFields() {
    QSet<qint64> found;
    ForEach(QStringLiteral("SELECT hdrFieldID FROM UserFields"),
            [&](const engine::Recordset& row) { found.insert(row.Value(0).toLongLong()); });
    for (qint64 field = 1; field <= 3; ++field) {
        if (!found.contains(field)) {
            Problem(QStringLiteral("UserFields has no row for field %1").arg(field));
        }
    }
}

void Inspection::LookAtTails() {
    const qint64 defaults =
        Single(QStringLiteral("SELECT Count(*) AS Amount FROM MessageTail WHERE mtlDefault = TRUE"));
    if (defaults > 1) {
        Note(QStringLiteral("%1 message tails are marked as the default; the last one counts").arg(defaults));
    }
}

void Inspection::LookAtContacts() {
    const PatternMatcher matcher;
    QSet<QStringList> seen;
    ForEach(QStringLiteral("SELECT cntSurname, cntFirstnames, cntPhone FROM Contact"),
            [&](const engine::Recordset& row) {
                const QStringList key{Numbers::NullToString(row.Value(0)),
                                      Numbers::NullToString(row.Value(1)),
                                      Numbers::NullToString(row.Value(2))};
                m_report.DuplicateContacts += seen.contains(key) ? 1 : 0;
                m_report.BadPhoneNumbers += matcher.IsInternationalPhone(key[2].trimmed()) ? 0 : 1;
                seen.insert(key);
            });
    if (m_report.DuplicateContacts > 0) {
        Note(QStringLiteral("contacts that stand twice: %1").arg(m_report.DuplicateContacts));
    }
    if (m_report.BadPhoneNumbers > 0) {
        Note(QStringLiteral("contacts whose number is not in international form: %1")
                 .arg(m_report.BadPhoneNumbers));
    }
}

QSet<qint64> Inspection::RecordNumbers(const QString& table, const QString& column) {
    QSet<qint64> numbers;
    ForEach(QStringLiteral("SELECT %1 FROM %2").arg(column, table),
            [&](const engine::Recordset& row) { numbers.insert(row.Value(0).toLongLong()); });
    return numbers;
}

void Inspection::LookAtMembers() {
    const QSet<qint64> contacts = RecordNumbers(QStringLiteral("Contact"), QStringLiteral("cntID"));
    const QSet<qint64> groups = RecordNumbers(QStringLiteral("ContactGroup"), QStringLiteral("grpID"));
    QSet<std::pair<qint64, qint64>> seen;
    ForEach(QStringLiteral("SELECT grpID, cntID FROM GroupMember"), [&](const engine::Recordset& row) {
        const std::pair<qint64, qint64> member{row.Value(0).toLongLong(), row.Value(1).toLongLong()};
        m_report.OrphanedMembers += groups.contains(member.first) && contacts.contains(member.second) ? 0 : 1;
        m_report.DuplicateMembers += seen.contains(member) ? 1 : 0;
        seen.insert(member);
    });
    if (m_report.OrphanedMembers > 0) {
        Problem(QStringLiteral("memberships of a contact or group that is gone: %1")
                    .arg(m_report.OrphanedMembers));
    }
    if (m_report.DuplicateMembers > 0) {
        Problem(QStringLiteral("memberships that stand twice: %1").arg(m_report.DuplicateMembers));
    }
}

void Inspection::JudgeNumbers() {
    for (const NumberUse& use : m_report.Numbers) {
        if (use.Last >= NumberUse::Limit) {
            Problem(QStringLiteral("the %1 numbers are used up (%2); new ones cannot be read back")
                        .arg(use.Name)
                        .arg(use.Last));
        } else if (use.Last >= NumberUse::Near) {
            Note(QStringLiteral("only %1 %2 numbers are left").arg(use.Left()).arg(use.Name));
        }
        if (use.Last >= NumberUse::Near && use.Name == QStringLiteral("message")) {
            Note(
                QStringLiteral("a fresh outbox counts from 1 again: history.sms of every workstation is put "
                               "away together with the old outbox"));
        }
    }
}

}  // namespace

std::optional<OfficeReport> OfficeCheck::Run(const QString& folder, const Progress& progress) {
    try {
        return Inspection(m_engines, folder, progress).Run();
    } catch (const Stopped&) {
        return std::nullopt;
    }
}
