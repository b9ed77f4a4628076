#include "tracking/HistoryFixture.h"

#include "core/Dates.h"

#include <QRandomGenerator>

#include <algorithm>

namespace {

const BoxRequest CorruptionBox{
    QStringLiteral("Larkspan Messenger"),
    QStringLiteral("The History File is corrupt or is an older version.\r\nIT WILL BE CLEARED"),
    BoxIcon::Critical, BoxButtons::Ok};

/// What reading into text and writing again makes of a field.
QByteArray Refilled(const QByteArray& field, const CodePage& page) {
    QString text = page.Decode(field);
    while (text.startsWith(u' ')) {
        text.remove(0, 1);
    }
    while (text.endsWith(u' ')) {
        text.chop(1);
    }
    return page.Encode(text).leftJustified(field.size(), ' ');
}

QByteArray RewrittenRecord(const QByteArray& record, const CodePage& page) {
    return record.left(7) + Refilled(record.mid(7, 30), page) + Refilled(record.mid(37, 1024), page) +
           record.mid(1061);
}

/// Any bytes at all, with a run of blanks at each end of both text fields.
QByteArray AnyRecord(QRandomGenerator& random) {
    QByteArray record(HistoryRecord::Size, '\0');
    std::generate(record.begin(), record.end(), [&] { return static_cast<char>(random.bounded(256)); });
    const auto blanks = [&](int offset, int width) {
        record.replace(offset, random.bounded(width + 1), QByteArray());
        record.insert(offset, QByteArray(HistoryRecord::Size - record.size(), ' '));
    };
    blanks(7, 30);
    blanks(37, 1024);
    return record;
}

using HistoryTest = HistoryFixture;

}  // namespace

TEST_F(HistoryTest, AMissingFileIsAnEmptyHistoryAndStaysMissing) {
    EXPECT_TRUE(History.ReadHistory().isEmpty());
    EXPECT_FALSE(QFile::exists(HistoryPath()));
    EXPECT_EQ(Files.Writes, 0);
}

TEST_F(HistoryTest, TheFirstMessageMakesAFileOfOneRecord) {
    Add(17);
    EXPECT_EQ(Bytes(HistoryPath()).size(), 1069);
    EXPECT_EQ(Bytes(LogPath()), QByteArrayLiteral("17,20260307120000,\"Aoife Brennan\",\"Hello\"\r\n"));
}

TEST_F(HistoryTest, ARecordHasTheseBytes) {
    History.AddToHistory(0x01020304, QStringLiteral("Síle €"), QStringLiteral("5 € é \u2603"), Noon);
    QByteArray expected = QByteArray::fromHex("04030201");
    expected += QByteArray(3, '\0');
    expected += QByteArrayLiteral("S\xEDle \x80") + QByteArray(24, ' ');
    expected += QByteArrayLiteral("5 \x80 \xE9 ?") + QByteArray(1017, ' ');
    expected += QByteArray::fromHex("000000001081e640");  // 46088.5 days since 30 December 1899
    EXPECT_EQ(Bytes(HistoryPath()).toHex(), expected.toHex());
}

TEST_F(HistoryTest, ANegativeOrLargeIDKeepsItsFourBytes) {
    Add(-2);
    Add(2147483647);
    EXPECT_EQ(Record(1).left(4), QByteArray::fromHex("feffffff"));
    EXPECT_EQ(Record(0).left(4), QByteArray::fromHex("ffffff7f"));
    EXPECT_EQ(History.ReadHistory().at(0).MessageID, 2147483647);
    EXPECT_EQ(History.ReadHistory().at(1).MessageID, -2);
}

TEST_F(HistoryTest, ReadingGivesWhatWasAddedNewestFirst) {
    const QDateTime later = Noon.addSecs(3723);
    Add(1, QStringLiteral("Ann"), QStringLiteral("one"));
    History.AddToHistory(2, QStringLiteral("Béla"), QStringLiteral("two @SN"), later);
    const QList<HistoryRecord> records = History.ReadHistory();
    ASSERT_EQ(records.size(), 2);
    EXPECT_EQ(records[0].MessageID, 2);
    EXPECT_EQ(records[0].Recipient, u"Béla");
    EXPECT_EQ(records[0].Text, u"two @SN");
    EXPECT_EQ(Dates::FromDays(records[0].SendTime), later);
    EXPECT_EQ(records[0].Reserved, QByteArray(3, '\0'));
    EXPECT_EQ(records[1].MessageID, 1);
    EXPECT_EQ(records[1].Recipient, u"Ann");
    EXPECT_EQ(Dates::FromDays(records[1].SendTime), Noon);
}

TEST_F(HistoryTest, ARecipientOf31CharactersIsStoredWith30AndStandsWholeInTheLog) {
    const QString name = QStringLiteral("abcdefghijklmnopqrstuvwxyz01234");
    ASSERT_EQ(name.size(), 31);
    Add(1, name);
    EXPECT_EQ(Record(0).mid(7, 30), QByteArrayLiteral("abcdefghijklmnopqrstuvwxyz0123"));
    EXPECT_EQ(History.ReadHistory().at(0).Recipient, name.left(30));
    EXPECT_TRUE(Bytes(LogPath()).contains("\"abcdefghijklmnopqrstuvwxyz01234\""));
}

TEST_F(HistoryTest, AMessageOf1500CharactersIsStoredWith1024AndStandsWholeInTheLog) {
    const QString text = QString(1024, u'a') + QString(476, u'b');
    Add(1, QStringLiteral("Ann"), text);
    EXPECT_EQ(Bytes(HistoryPath()).size(), 1069);
    EXPECT_EQ(History.ReadHistory().at(0).Text, QString(1024, u'a'));
    EXPECT_TRUE(Bytes(LogPath()).contains(text.toLatin1()));
}

TEST_F(HistoryTest, LeadingBlanksAreGoneAfterAReadAndARewrite) {
    Add(1, QStringLiteral("  Ann"), QStringLiteral("   indented  "));
    EXPECT_TRUE(Record(0).mid(37, 1024).startsWith("   indented"));
    EXPECT_EQ(History.ReadHistory().at(0).Text, u"indented");
    EXPECT_EQ(History.ReadHistory().at(0).Recipient, u"Ann");
    Add(2);
    EXPECT_EQ(Record(1).mid(37, 1024), QByteArrayLiteral("indented").leftJustified(1024, ' '));
    EXPECT_EQ(Record(1).mid(7, 30), QByteArrayLiteral("Ann").leftJustified(30, ' '));
}

TEST_F(HistoryTest, TabsAndBlanksInsideATextStay) {
    Add(1, QStringLiteral("\tA  n"), QStringLiteral("\t x\t"));
    Add(2);
    EXPECT_EQ(History.ReadHistory().at(1).Text, u"\t x\t");
    EXPECT_EQ(History.ReadHistory().at(1).Recipient, u"\tA  n");
}

TEST_F(HistoryTest, EmptyTextsAreFieldsOfBlanks) {
    Add(1, QString(), QString());
    Add(2);
    EXPECT_EQ(Record(1).mid(7, 1054), QByteArray(1054, ' '));
    EXPECT_EQ(History.ReadHistory().at(1).Text, QString());
}

TEST_F(HistoryTest, ANewRecordInheritsTheReservedBytesOfTheNewest) {
    Write(HistoryPath(), RawRecord(9, QByteArrayLiteral("\x01\x02\x03"), "old", "text") +
                             RawRecord(8, QByteArrayLiteral("\x04\x05\x06"), "older", "text"));
    Add(10);
    EXPECT_EQ(Record(0).mid(4, 3), QByteArrayLiteral("\x01\x02\x03"));
    EXPECT_EQ(Record(1).mid(4, 3), QByteArrayLiteral("\x01\x02\x03"));
    EXPECT_EQ(Record(2).mid(4, 3), QByteArrayLiteral("\x04\x05\x06"));
    EXPECT_EQ(History.ReadHistory().at(2).Reserved, QByteArrayLiteral("\x04\x05\x06"));
}

TEST_F(HistoryTest, WhatStandsInTheFileIsRewrittenAsReadingAndFillingAgainWould) {
    QRandomGenerator random(20260307);
    QByteArray file;
    QByteArray expected;
    for (int i = 0; i < 60; ++i) {
        const QByteArray record = AnyRecord(random);
        file += record;
        expected += RewrittenRecord(record, Page);
    }
    Write(HistoryPath(), file);
    Add(1);
    EXPECT_EQ(Bytes(HistoryPath()).mid(HistoryRecord::Size), expected);
}

TEST_F(HistoryTest, With250RecordsTheNewestPushesTheOldestOut) {
    for (qint32 id = 1; id <= 250; ++id) {
        Add(id);
    }
    ASSERT_EQ(Bytes(HistoryPath()).size(), 267250);
    Add(251);
    EXPECT_EQ(Bytes(HistoryPath()).size(), 267250);
    const QList<HistoryRecord> records = History.ReadHistory();
    ASSERT_EQ(records.size(), 250);
    EXPECT_EQ(records.first().MessageID, 251);
    EXPECT_EQ(records.last().MessageID, 2) << "message 1 was the oldest";
    EXPECT_EQ(Bytes(LogPath()).count("\r\n"), 251);
}

TEST_F(HistoryTest, ALongerFileIsNotTruncated) {
    QByteArray file;
    for (int i = 0; i < 252; ++i) {
        file +=
            RawRecord(static_cast<char>(i < 127 ? i : 0), QByteArray(3, '\0'), QByteArray::number(i), "text");
    }
    Write(HistoryPath(), file);
    EXPECT_EQ(History.ReadHistory().size(), 252);
    Add(1);
    const QList<HistoryRecord> records = History.ReadHistory();
    ASSERT_EQ(records.size(), 252);
    EXPECT_EQ(records[1].Recipient, u"0");
    EXPECT_EQ(records[249].Recipient, u"248");
    EXPECT_EQ(records[250].Recipient, u"250");
    EXPECT_EQ(records[251].Recipient, u"251");
}

TEST_F(HistoryTest, AFileOfZeroBytesIsValidAndEmptyWithoutAMessage) {
    Write(HistoryPath(), QByteArray());
    EXPECT_TRUE(History.IsHistoryFileValid(HistoryPath()));
    EXPECT_TRUE(History.ReadHistory().isEmpty());
    EXPECT_TRUE(QFile::exists(HistoryPath()));
}

class HistoryOfBadLength : public HistoryFixture, public ::testing::WithParamInterface<int> {};

TEST_P(HistoryOfBadLength, IsToldAndDeleted) {
    Write(HistoryPath(), QByteArray(GetParam(), 'x'));
    EXPECT_FALSE(History.IsHistoryFileValid(HistoryPath()));
    Boxes.Expect();
    EXPECT_TRUE(History.ReadHistory().isEmpty());
    EXPECT_EQ(Boxes.Shown, QList<BoxRequest>{CorruptionBox});
    EXPECT_FALSE(QFile::exists(HistoryPath()));
    Add(5);
    EXPECT_EQ(Bytes(HistoryPath()).size(), 1069);
    EXPECT_EQ(History.ReadHistory().at(0).MessageID, 5);
}

TEST_P(HistoryOfBadLength, IsToldAndReplacedByTheMessageThatIsAdded) {
    Write(HistoryPath(), QByteArray(GetParam(), 'x'));
    Boxes.Expect();
    Add(5);
    EXPECT_EQ(Boxes.Shown, QList<BoxRequest>{CorruptionBox});
    EXPECT_EQ(Bytes(HistoryPath()).size(), 1069);
    EXPECT_EQ(Record(0).mid(4, 3), QByteArray(3, '\0'));
    EXPECT_EQ(Bytes(LogPath()).count("\r\n"), 1);
}

INSTANTIATE_TEST_SUITE_P(Lengths, HistoryOfBadLength, ::testing::Values(1, 1068, 1070, 267251));

TEST_F(HistoryTest, AFileOfTheRightLengthWithNonsenseInItPasses) {
    Write(HistoryPath(), QByteArray(2138, '\xFF'));
    EXPECT_TRUE(History.IsHistoryFileValid(HistoryPath()));
    EXPECT_EQ(History.ReadHistory().size(), 2);
    EXPECT_EQ(History.ReadHistory().at(0).MessageID, -1);
}

TEST_F(HistoryTest, AMissingFileIsValid) {
    EXPECT_TRUE(History.IsHistoryFileValid(HistoryPath()));
}

TEST_F(HistoryTest, ACountOfRecordsBeyondSixteenBitsReadsAsNone) {
    QFile file(HistoryPath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(qint64{32768} * HistoryRecord::Size));
    file.close();
    EXPECT_TRUE(History.ReadHistory().isEmpty());
    ASSERT_TRUE(QFile::resize(HistoryPath(), qint64{32767} * HistoryRecord::Size));
    EXPECT_EQ(History.ReadHistory().size(), 32767);
}

TEST_F(HistoryTest, AMessageOverwritesTheFirstOfMoreThan32767RecordsAndTheOthersStay) {
    QByteArray file(qsizetype{32768} * HistoryRecord::Size, 'x');
    file.replace(0, HistoryRecord::Size, RawRecord(9, QByteArrayLiteral("\x01\x02\x03"), "old", "text"));
    file.replace(HistoryRecord::Size, HistoryRecord::Size,
                 RawRecord(8, QByteArrayLiteral("\x04\x05\x06"), "  older", "  text"));
    Write(HistoryPath(), file);
    Add(10);
    const QByteArray after = Bytes(HistoryPath());
    ASSERT_EQ(after.size(), file.size());
    EXPECT_EQ(Record(0).left(12), QByteArrayLiteral("\x0a\0\0\0\0\0\0Aoife"));
    EXPECT_TRUE(after.mid(HistoryRecord::Size) == file.mid(HistoryRecord::Size)) << "to the byte";
    EXPECT_EQ(Bytes(LogPath()).count("\r\n"), 1);
}

TEST_F(HistoryTest, AMessagePushesTheOldestOfTheFirst250OutOf32767Records) {
    QByteArray file;
    for (int i = 0; i < 252; ++i) {
        file += RawRecord(1, QByteArray(3, '\0'), QByteArray::number(i), "text");
    }
    file += QByteArray(qsizetype{32767} * HistoryRecord::Size - file.size(), 'x');
    Write(HistoryPath(), file);
    Add(10);
    const QByteArray after = Bytes(HistoryPath());
    ASSERT_EQ(after.size(), file.size());
    constexpr int Shifted = 249 * HistoryRecord::Size;
    EXPECT_TRUE(after.mid(HistoryRecord::Size, Shifted) == file.left(Shifted));
    EXPECT_TRUE(after.mid(HistoryRecord::Size + Shifted) == file.mid(HistoryRecord::Size + Shifted));
}

TEST_F(HistoryTest, TheLogTakesQuotesAndLineBreaksAsTheyStand) {
    Add(1, QStringLiteral("Ann \"Bo\", jr"), QStringLiteral("a\"b\r\nc,d"));
    Add(2);
    EXPECT_EQ(Bytes(LogPath()), QByteArrayLiteral("1,20260307120000,\"Ann \"Bo\", jr\",\"a\"b\r\nc,d\"\r\n"
                                                  "2,20260307120000,\"Aoife Brennan\",\"Hello\"\r\n"));
}

TEST_F(HistoryTest, TheLogIsWrittenInTheCodePage) {
    Add(1, QStringLiteral("Síle"), QStringLiteral("€ \u2603"));
    EXPECT_EQ(Bytes(LogPath()), QByteArrayLiteral("1,20260307120000,\"S\xEDle\",\"\x80 ?\"\r\n"));
}

TEST_F(HistoryTest, TheLogTellsTheSendTimeInFourteenDigits) {
    History.AddToHistory(1, QStringLiteral("A"), QStringLiteral("b"),
                         QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5)));
    EXPECT_TRUE(Bytes(LogPath()).startsWith("1,20260102030405,\"A\""));
}

TEST_F(HistoryTest, AMessageTakesOneWriteOfEachFile) {
    Add(1);
    Add(2);
    Files.Writes = 0;
    Add(3);
    EXPECT_EQ(Files.Writes, 2);
}

TEST_F(HistoryTest, ClearingLeavesAnEmptyFileAndTheLogAlone) {
    Add(1);
    const QByteArray log = Bytes(LogPath());
    History.ClearHistory();
    EXPECT_TRUE(QFile::exists(HistoryPath()));
    EXPECT_EQ(QFile(HistoryPath()).size(), 0);
    EXPECT_EQ(Bytes(LogPath()), log);
    EXPECT_TRUE(History.ReadHistory().isEmpty());
}

TEST_F(HistoryTest, ClearingAMissingFileMakesAnEmptyOne) {
    History.ClearHistory();
    EXPECT_TRUE(QFile::exists(HistoryPath()));
    EXPECT_EQ(QFile(HistoryPath()).size(), 0);
    EXPECT_FALSE(QFile::exists(LogPath()));
}

TEST_F(HistoryTest, TwoProgramsOnOneFolderSeeEachOthersMessages) {
    mdlHistory other(Files, Folders, Boxes, Page);
    Add(1);
    other.AddToHistory(2, QStringLiteral("Ann"), QStringLiteral("x"), Noon);
    Add(3);
    const QList<HistoryRecord> records = other.ReadHistory();
    ASSERT_EQ(records.size(), 3);
    EXPECT_EQ(records[1].MessageID, 2);
}
