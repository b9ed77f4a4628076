#include "store/office/OfficeCheck.h"

#include "store/engine/sqlite/Functions.h"
#include "tools/TestOffice.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace {

OfficeReport Check(const TestOffice& office) {
    const auto report = OfficeCheck(office.Machine.Engines).Run(office.Folder());
    EXPECT_TRUE(report.has_value());
    return report.value_or(OfficeReport());
}

/// Does to a file what no statement of the program can, as a careless tool would: foreign keys are not looked
/// at.
void Mangle(const QString& path, const char* sql) {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(path.toUtf8().constData(), &database), SQLITE_OK);
    engine::sqlite::RegisterFunctions(database);
    char* error = nullptr;
    EXPECT_EQ(sqlite3_exec(database, sql, nullptr, nullptr, &error), SQLITE_OK)
        << (error != nullptr ? error : "");
    sqlite3_free(error);
    sqlite3_close(database);
}

NumberUse UseOf(const OfficeReport& report, const QString& name) {
    for (const NumberUse& use : report.Numbers) {
        if (use.Name == name) {
            return use;
        }
    }
    ADD_FAILURE() << "no numbers of " << name.toStdString();
    return {};
}

qint64 RowsOf(const OfficeReport& report, const QString& table) {
    for (const auto& [name, count] : report.Rows) {
        if (name == table) {
            return count;
        }
    }
    return -1;
}

const SampleOffice::Plan SmallPlan{60, 1};
const QDateTime Noon(QDate(2026, 3, 7), QTime(12, 0));

}  // namespace

TEST(OfficeCheck, AFreshOfficeHasNoProblem) {
    const TestOffice office;
    const OfficeReport report = Check(office);
    EXPECT_TRUE(report.IsFine()) << report.Problems.join(u'\n').toStdString();
    EXPECT_TRUE(report.Notes.isEmpty()) << report.Notes.join(u'\n').toStdString();
    ASSERT_EQ(report.Files.size(), 2);
    EXPECT_TRUE(report.Files[0].IsSound && report.Files[1].IsSound);
    EXPECT_EQ(RowsOf(report, QStringLiteral("Config")), 1);
    EXPECT_EQ(RowsOf(report, QStringLiteral("System")), 1);
    EXPECT_EQ(RowsOf(report, QStringLiteral("UserFields")), 3);
    EXPECT_EQ(RowsOf(report, QStringLiteral("Message")), 0);
}

TEST(OfficeCheck, ASampleOfficeHasNoProblemAndItsCounts) {
    const TestOffice office(SmallPlan);
    const OfficeReport report = Check(office);
    EXPECT_TRUE(report.IsFine()) << report.Problems.join(u'\n').toStdString();
    EXPECT_EQ(RowsOf(report, QStringLiteral("Contact")), 60);
    EXPECT_EQ(RowsOf(report, QStringLiteral("ContactGroup")), 8);
    EXPECT_EQ(RowsOf(report, QStringLiteral("MessageTail")), 3);
    EXPECT_EQ(UseOf(report, QStringLiteral("contact")).Last, 60);
    EXPECT_EQ(UseOf(report, QStringLiteral("group")).Last, 8);
    EXPECT_EQ(report.DuplicateContacts, 0);
    EXPECT_EQ(report.BadPhoneNumbers, 0);
}

TEST(OfficeCheck, CountsMessagesByStatus) {
    TestOffice office;
    const auto ids = office.AddMessages(6, Noon);
    office.Execute(office.Outbox(),
                   QStringLiteral("UPDATE Message SET msgStatus = 5 WHERE msgID = %1").arg(ids[0]));
    office.Execute(office.Outbox(),
                   QStringLiteral("UPDATE Message SET msgStatus = 9 WHERE msgID = %1").arg(ids[1]));
    const OfficeReport report = Check(office);
    EXPECT_EQ(report.MessagesByStatus, (std::map<qint32, qint64>{{0, 4}, {5, 1}, {9, 1}}));
}

TEST(OfficeCheck, NumbersThatWereUsedAndDeletedCountAsUsed) {
    TestOffice office;
    office.AddMessages(10, Noon);
    office.Execute(office.Outbox(), QStringLiteral("DELETE FROM Message WHERE msgID > 2"));
    EXPECT_EQ(UseOf(Check(office), QStringLiteral("message")).Last, 10);
}

TEST(OfficeCheck, TellsHowNearTheMessageNumbersAreTo32767) {
    TestOffice office;
    office.AddMessage(Noon);
    Mangle(office.Outbox(), "UPDATE Message SET msgID = 29489");
    EXPECT_TRUE(Check(office).Notes.isEmpty());
    Mangle(office.Outbox(), "UPDATE Message SET msgID = 29490");
    OfficeReport report = Check(office);
    const QString advice = QStringLiteral(
        "a fresh outbox counts from 1 again: history.sms of every workstation is put away together with the "
        "old outbox");
    EXPECT_EQ(report.Notes, (QStringList{QStringLiteral("only 3277 message numbers are left"), advice}));
    EXPECT_TRUE(report.IsFine());
    Mangle(office.Outbox(), "UPDATE Message SET msgID = 32766");
    EXPECT_TRUE(Check(office).IsFine());
    Mangle(office.Outbox(), "UPDATE Message SET msgID = 32767");
    report = Check(office);
    EXPECT_EQ(
        report.Problems,
        QStringList{QStringLiteral("the message numbers are used up (32767); new ones cannot be read back")});
    EXPECT_EQ(report.Notes, QStringList{advice});
    EXPECT_EQ(UseOf(report, QStringLiteral("message")).Left(), 0);
}

TEST(OfficeCheck, TellsHowNearContactAndGroupNumbersAreToo) {
    const TestOffice office(SmallPlan);
    Mangle(office.Phonebook(), "UPDATE Contact SET cntID = 40000 WHERE cntID = 60");
    const OfficeReport report = Check(office);
    EXPECT_FALSE(report.IsFine());
    EXPECT_EQ(UseOf(report, QStringLiteral("contact")).Last, 40000);
}

TEST(OfficeCheck, FindsMembershipsOfContactsAndGroupsThatAreGone) {
    const TestOffice office(SmallPlan);
    Mangle(office.Phonebook(), "INSERT INTO GroupMember (grpID, cntID) VALUES (1, 999), (99, 1)");
    const OfficeReport report = Check(office);
    EXPECT_EQ(report.OrphanedMembers, 2);
    EXPECT_FALSE(report.IsFine());
}

TEST(OfficeCheck, FindsMembershipsThatStandTwiceWhereAFileAllowsThem) {
    const TestOffice office(SmallPlan);
    Mangle(
        office.Phonebook(),
        "CREATE TABLE Loose (grpID INTEGER, cntID INTEGER); INSERT INTO Loose VALUES (1, 2), (1, 2), (1, 3);"
        "PRAGMA legacy_alter_table = ON; DROP TABLE GroupMember; ALTER TABLE Loose RENAME TO GroupMember");
    const OfficeReport report = Check(office);
    EXPECT_EQ(report.DuplicateMembers, 1);
    EXPECT_FALSE(report.IsFine());
}

TEST(OfficeCheck, MissingRowsAreProblems) {
    const TestOffice office;
    office.Execute(office.Outbox(), QStringLiteral("DELETE FROM System"));
    office.Execute(office.Phonebook(), QStringLiteral("DELETE FROM Config"));
    office.Execute(office.Phonebook(), QStringLiteral("DELETE FROM UserFields WHERE hdrFieldID = 2"));
    EXPECT_EQ(Check(office).Problems,
              (QStringList{QStringLiteral("System has no row"), QStringLiteral("Config has no row"),
                           QStringLiteral("UserFields has no row for field 2")}));
}

TEST(OfficeCheck, AMissingTableAndAMissingQueryAreProblems) {
    const TestOffice office;
    Mangle(office.Phonebook(), "DROP TABLE MessageTail; DROP VIEW qry_Groups");
    const OfficeReport report = Check(office);
    EXPECT_TRUE(report.Problems.contains(QStringLiteral("smscontacts.mdb has no table MessageTail")));
    EXPECT_TRUE(report.Problems.contains(QStringLiteral("smscontacts.mdb has no saved query qry_Groups")));
    EXPECT_EQ(report.Problems.size(), 2) << report.Problems.join(u'\n').toStdString();
}

TEST(OfficeCheck, AMissingFileIsAProblemAndTheOtherOneIsLookedAtAllTheSame) {
    const TestOffice office(SmallPlan);
    ASSERT_TRUE(QFile::remove(office.Outbox()));
    const OfficeReport report = Check(office);
    EXPECT_EQ(report.Problems, QStringList{QStringLiteral("smsmessages.mdb is missing")});
    EXPECT_EQ(report.Files[0].Size, -1);
    EXPECT_EQ(RowsOf(report, QStringLiteral("Contact")), 60);
}

TEST(OfficeCheck, AFileThatIsNoDatabaseIsAProblem) {
    const TestOffice office;
    QFile file(office.Outbox());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("this is a letter, not a database, and long enough to have a first page");
    file.close();
    const OfficeReport report = Check(office);
    EXPECT_FALSE(report.IsFine());
    EXPECT_TRUE(report.Problems[0].startsWith(QStringLiteral("smsmessages.mdb cannot be opened")))
        << report.Problems[0].toStdString();
    EXPECT_FALSE(report.Files[0].IsSound);
}

TEST(OfficeCheck, ADamagedPageIsFound) {
    const TestOffice office(SampleOffice::Plan{500, 1});
    QFile file(office.Phonebook());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    const qint64 page = 4096;
    ASSERT_GT(file.size(), 20 * page);
    for (qint64 position = 8 * page; position < 12 * page; position += page) {
        file.seek(position);
        file.write(QByteArray(512, '\x5A'));
    }
    file.close();
    const OfficeReport report = Check(office);
    EXPECT_FALSE(report.IsFine());
    EXPECT_FALSE(report.Files[1].IsSound);
}

TEST(OfficeCheck, ContactsThatStandTwiceAndOddNumbersAreNotes) {
    const TestOffice office(SmallPlan);
    Mangle(office.Phonebook(),
           "INSERT INTO Contact (cntSurname, cntFirstnames, cntPhone) SELECT cntSurname, cntFirstnames, "
           "cntPhone FROM Contact "
           "WHERE cntID <= 3; UPDATE Contact SET cntPhone = '086 12345' WHERE cntID = 10");
    const OfficeReport report = Check(office);
    EXPECT_TRUE(report.IsFine());
    EXPECT_EQ(report.DuplicateContacts, 3);
    EXPECT_EQ(report.BadPhoneNumbers, 1);
    EXPECT_EQ(report.Notes.size(), 2);
}

TEST(OfficeCheck, AMessageSizeBelow160AndTwoDefaultTailsAreNotes) {
    const TestOffice office(SmallPlan);
    office.Execute(office.Outbox(), QStringLiteral("UPDATE System SET sysSMSMaxMessageSize = 100"));
    office.Execute(office.Phonebook(), QStringLiteral("UPDATE MessageTail SET mtlDefault = TRUE"));
    EXPECT_EQ(
        Check(office).Notes,
        (QStringList{QStringLiteral("sysSMSMaxMessageSize is below 160 and counts as 160"),
                     QStringLiteral("3 message tails are marked as the default; the last one counts")}));
}

TEST(OfficeCheck, ChangesNothingInTheFiles) {
    const TestOffice office(SmallPlan);
    const auto contents = [&] {
        QByteArray all;
        for (const QString& path : {office.Outbox(), office.Phonebook()}) {
            QFile file(path);
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            all += file.readAll();
        }
        return all;
    };
    const QByteArray before = contents();
    static_cast<void>(Check(office));
    EXPECT_EQ(contents(), before);
}

TEST(OfficeCheck, CanBeStoppedAtEveryStep) {
    const TestOffice office(SmallPlan);
    int steps = 0;
    ASSERT_TRUE(OfficeCheck(office.Machine.Engines).Run(office.Folder(), [&](const QString&, int, int) {
        return ++steps > 0;
    }));
    EXPECT_GE(steps, 6);
    for (int stop = 1; stop <= steps; ++stop) {
        int left = stop;
        EXPECT_FALSE(OfficeCheck(office.Machine.Engines).Run(office.Folder(), [&](const QString&, int, int) {
            return --left > 0;
        })) << stop;
    }
}

TEST(OfficeCheck, TheTextNamesFilesRowsStatusesAndNumbers) {
    TestOffice office(SmallPlan);
    office.AddMessages(3, Noon);
    const QString text = Check(office).ToText();
    for (const QString& part :
         {QStringLiteral("smsmessages.mdb"), QStringLiteral(", sound"), QStringLiteral("0 waiting"),
          QStringLiteral("Contact "), QStringLiteral("32,764 left"), QStringLiteral("No problem found.")}) {
        EXPECT_TRUE(text.contains(part)) << part.toStdString() << "\n" << text.toStdString();
    }
}

TEST(OfficeCheck, TheReportTellsNothingOfAnybody) {
    TestOffice office(SmallPlan);
    office.AddMessage(Noon, QStringLiteral("+353209155555"), QStringLiteral("a private word"));
    const OfficeReport report = Check(office);
    const QString all = report.ToText() + QString::fromUtf8(QJsonDocument(report.ToJson()).toJson());
    for (const QString& secret :
         {QStringLiteral("+353"), QStringLiteral("private word"), QStringLiteral("O'Neill")}) {
        EXPECT_FALSE(all.contains(secret)) << secret.toStdString();
    }
}

TEST(OfficeCheck, TheJsonHoldsTheSameFacts) {
    TestOffice office(SmallPlan);
    office.AddMessages(3, Noon);
    office.Execute(office.Outbox(), QStringLiteral("DELETE FROM System"));
    const QJsonObject json = Check(office).ToJson();
    EXPECT_FALSE(json[QStringLiteral("fine")].toBool(true));
    EXPECT_EQ(json[QStringLiteral("problems")].toArray().size(), 1);
    EXPECT_EQ(json[QStringLiteral("rows")][QStringLiteral("Contact")].toInt(), 60);
    EXPECT_EQ(json[QStringLiteral("messagesByStatus")][QStringLiteral("0")].toInt(), 3);
    EXPECT_EQ(json[QStringLiteral("numbers")][QStringLiteral("message")][QStringLiteral("left")].toInt(),
              32764);
    EXPECT_EQ(json[QStringLiteral("files")].toArray().size(), 2);
}

TEST(StatusName, NamesEveryStatusAndCallsTheRestUnusual) {
    EXPECT_EQ(StatusName(0), QStringLiteral("waiting"));
    EXPECT_EQ(StatusName(7), QStringLiteral("not delivered"));
    EXPECT_EQ(StatusName(8), QStringLiteral("unusual"));
    EXPECT_EQ(StatusName(-1), QStringLiteral("unusual"));
}
