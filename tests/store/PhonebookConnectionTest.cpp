#include "store/PhonebookFileFixture.h"

#include "store/Peer.h"

#include <QFile>

// --- another process on the file ---

TEST_F(PhonebookFileTest, WritesThatRunOutOnALockAreSilentAndWriteNothing) {
    const qint32 id = Add(u"Byrne", u"Mary");
    const qint16 group = Office.AddGroup(QStringLiteral("Staff"));
    Reopen();  // a connection that has produced no identity yet
    {
        LockingPeer peer(Office.PhonebookPath(), QStringLiteral("reserved"));
        ContactFields fields;
        fields.Surname = QStringLiteral("Late");
        EXPECT_EQ(mdlPhonebook::AddContact(Office.Phonebook(), fields), 0);
        EXPECT_TRUE(mdlPhonebook::UpdateContact(Office.Phonebook(), id, fields))
            << "attempts that ran out read as success";
        EXPECT_EQ(mdlPhonebook::AddGroup(Office.Phonebook(), QStringLiteral("Late")), 0);
        EXPECT_FALSE(mdlPhonebook::DeleteContact(State, id));
        EXPECT_FALSE(mdlPhonebook::DeleteGroup(State, group));
        mdlPhonebook::AddToGroup(State, group, QStringLiteral("C%1\r\n").arg(id));
        mdlPhonebook::RenameGroup(State, group, QStringLiteral("Late"));
        EXPECT_EQ(Surnames(u"*"), Names({u"Byrne"})) << "reading goes on beside a writer";
    }
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
    EXPECT_EQ(Surnames(u"*"), Names({u"Byrne"}));
    EXPECT_EQ(Groups(), Names({u"Staff"}));
    EXPECT_TRUE(Office.MemberRows().isEmpty());
}

TEST_F(PhonebookFileTest, AnAdditionThatRunsOutOnALockGivesTheNumberThatTheConnectionGaveOutLast) {
    const qint32 id = Add(u"Byrne", u"Mary");
    LockingPeer peer(Office.PhonebookPath(), QStringLiteral("reserved"));
    ContactFields fields;
    fields.Surname = QStringLiteral("Late");
    EXPECT_EQ(mdlPhonebook::AddContact(Office.Phonebook(), fields), id);
    EXPECT_EQ(mdlPhonebook::AddGroup(Office.Phonebook(), QStringLiteral("Late")), id);
    EXPECT_EQ(Surnames(u"*"), Names({u"Byrne"}));
    EXPECT_EQ(Groups(), QStringList());
    EXPECT_TRUE(Office.Boxes.Shown.isEmpty());
}

TEST_F(PhonebookFileTest, QueriesGiveNoneWhileAnotherProcessKeepsTheFileToItself) {
    Add(u"Byrne", u"Mary");
    LockingPeer peer(Office.PhonebookPath(), QStringLiteral("exclusive"));
    EXPECT_EQ(mdlPhonebook::GetContacts(State, QStringLiteral("*"), 0), nullptr);
    EXPECT_EQ(mdlPhonebook::GetGroups(State), nullptr);
    EXPECT_EQ(mdlPhonebook::GetUserFieldHeaders(State), QStringList());
    EXPECT_TRUE(Office.PhonebookDB().IsError());
    peer.LetGo();
    EXPECT_EQ(Surnames(u"*"), Names({u"Byrne"}));
}

TEST_F(PhonebookFileTest, RowsThatWereReadStayReadableWhileAnotherProcessWrites) {
    Add(u"Byrne", u"Mary");
    Add(u"Kelly", u"Ann");
    const auto rows = mdlPhonebook::GetContacts(State, QStringLiteral("*"), 0);
    Office.ExecuteOnPhonebook(QStringLiteral("DELETE FROM Contact"));
    EXPECT_EQ(Column(rows, u"cntSurname"), Names({u"Byrne", u"Kelly"}));
}

// --- the connection itself ---

TEST_F(PhonebookFileTest, CompactingKeepsEveryRowAndTheDatabaseOpen) {
    Office.ExecuteOnPhonebook(QStringLiteral(
        "WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 300) "
        "INSERT INTO Contact (cntSurname, cntNote) SELECT 'Surname' || i, hex(zeroblob(200)) FROM n"));
    Office.ExecuteOnPhonebook(QStringLiteral("DELETE FROM Contact WHERE cntID <= 290"));
    const QList<QVariantMap> before = Office.ContactRows();
    const qint64 size = QFileInfo(Office.PhonebookPath()).size();
    EXPECT_TRUE(Office.PhonebookDB().Compact());
    EXPECT_LT(QFileInfo(Office.PhonebookPath()).size(), size);
    EXPECT_EQ(Office.ContactRows(), before);
    EXPECT_TRUE(Office.PhonebookDB().IsConnected());
    EXPECT_EQ(Office.PhonebookDB().Connection()->Mode, 19);
    EXPECT_EQ(Surnames(u"*").size(), 10);
    EXPECT_FALSE(QFile::exists(Office.DataFolder.filePath(QStringLiteral("smscontacts.cmp"))));
    EXPECT_GT(Add(u"New", u"One"), 300) << "record numbers go on";
}

TEST_F(PhonebookFileTest, ADamagedDatabaseIsNotReplacedByACompaction) {
    Office.PhonebookDB().CloseDatabase();
    QFile file(Office.PhonebookPath());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.seek(100);
    file.write(QByteArray(4000, '\xA5'));
    file.close();
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray damaged = file.readAll();
    file.close();
    EXPECT_FALSE(Office.PhonebookDB().Compact());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), damaged);
    EXPECT_TRUE(QFile::exists(Office.DataFolder.filePath(QStringLiteral("smscontacts.cmp"))));
}

TEST_F(PhonebookFileTest, TableNamesAreThoseOfTheFile) {
    const std::optional<QStringList> names = Office.PhonebookDB().TableNames();
    ASSERT_TRUE(names.has_value());
    for (const char16_t* name : {u"Contact", u"ContactGroup", u"GroupMember", u"MessageTail", u"UserFields",
                                 u"Config", u"qry_Groups"}) {
        EXPECT_TRUE(names->contains(QString::fromUtf16(name))) << QString::fromUtf16(name).toStdString();
    }
}

TEST_F(PhonebookFileTest, ATransactionIsTakenBackOrKeptAsAWhole) {
    DB& database = Office.PhonebookDB();
    ASSERT_TRUE(database.BeginTransaction());
    EXPECT_TRUE(database.Execute(QStringLiteral("INSERT INTO ContactGroup (grpName) VALUES ('a')")));
    EXPECT_TRUE(database.Execute(QStringLiteral("INSERT INTO ContactGroup (grpName) VALUES ('b')")));
    database.RollbackTransaction();
    EXPECT_EQ(Groups(), QStringList());
    ASSERT_TRUE(database.BeginTransaction());
    EXPECT_TRUE(database.Execute(QStringLiteral("INSERT INTO ContactGroup (grpName) VALUES ('a')")));
    EXPECT_TRUE(database.CommitTransaction());
    EXPECT_EQ(Office.GroupRows().size(), 1);
    EXPECT_FALSE(database.CommitTransaction()) << "there is none";
    EXPECT_TRUE(database.IsError());
}

TEST_F(PhonebookFileTest, ADisconnectedSetStaysReadableBehindAClosedDatabase) {
    Add(u"Byrne", u"Mary");
    const auto rows = Office.PhonebookDB().DisconnectedSet(QStringLiteral("SELECT cntSurname FROM Contact"));
    Office.PhonebookDB().CloseDatabase();
    EXPECT_EQ(Column(rows, u"cntSurname"), Names({u"Byrne"}));
}
