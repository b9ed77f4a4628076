#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

class CodePage;
class Folders;
class LocalFiles;
class MessageBoxes;

/// One record of history.sms: 1069 bytes, little-endian, no bytes between records.
///
/// | offset | width | type                  | field                                                  |
/// |--------|-------|-----------------------|--------------------------------------------------------|
/// | 0      | 4     | signed 32-bit integer | message ID                                             |
/// | 4      | 3     | bytes                 | reserved, never assigned, written back as read         |
/// | 7      | 30    | text                  | recipient, ANSI code page, filled with blanks          |
/// | 37     | 1024  | text                  | message as composed: merge fields in place, no tail    |
/// | 1061   | 8     | IEEE 754 double       | send time, days since 30 December 1899, local time     |
struct HistoryRecord {
    static constexpr int Size = 1069;
    static constexpr int RecipientWidth = 30;
    static constexpr int TextWidth = 1024;

    qint32 MessageID = 0;
    QByteArray Reserved = QByteArray(3, '\0');
    /// Without the blanks that fill the field.
    QString Recipient;
    QString Text;
    double SendTime = 0.0;  // as Dates::ToDays
};

/// The two local files that tell which rows of the shared outbox are this workstation's own: history.sms, the
/// newest 250 messages, newest first, and messagelog.sms, a text log with a line for each message, appended
/// to and never read back. No procedure returns an error; nothing of them stays in memory between
/// calls.
class mdlHistory {
public:
    static constexpr int MaxRecords = 250;

    /// The additions of one send: faster, since only the last history.sms has to reach the disk. Before the
    /// first one is replaced it gets a second name, ".larkspan-history" beside it, and that is removed once
    /// the last one is on the disk, at the end of the batch. When the machine itself crashes in between,
    /// history.sms can come out empty or cut short: the file of the second name then takes its place. Where
    /// there can be no second name, each addition goes to the disk on its own.
    class Batch {
    public:
        /// One at a time.
        explicit Batch(mdlHistory& history) : m_history(history) { m_history.m_batch = {true}; }
        ~Batch() { m_history.EndBatch(); }
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;

    private:
        mdlHistory& m_history;
    };

    mdlHistory(LocalFiles& files, Folders& folders, MessageBoxes& boxes, const CodePage& page);

    /// Newest first; empty where the file is missing, empty, holds more than 32767 records or was found
    /// corrupt (a box has told, and it is deleted).
    QList<HistoryRecord> ReadHistory();
    /// Puts a message in front of history.sms and a line behind messagelog.sms. A file of more than 32767
    /// records, which only another program can have made, has its first record overwritten and keeps the
    /// others.
    void AddToHistory(qint32 msgID, const QString& recipient, const QString& text, const QDateTime& sendTime);
    /// Leaves history.sms present and empty; what a batch may have left beside it goes.
    void ClearHistory();
    /// True when the file's length is 0 or a whole multiple of 1069; a missing file has length 0.
    [[nodiscard]] bool IsHistoryFileValid(const QString& path) const;

private:
    void EndBatch();
    /// True if what stood in history.sms before this batch lies beside it under its second name.
    [[nodiscard]] bool IsKeptBeside();
    /// Puts the second file in the place of history.sms, if that one shows that the machine crashed.
    void Recover();
    /// The records as they stand in the file, empty where there are none. Nothing if the file is there but
    /// cannot be read.
    [[nodiscard]] std::optional<QByteArray> ReadRecords();
    /// `file` holds whole records.
    void PutInFront(HistoryRecord record, QByteArray file);
    [[nodiscard]] QString HistoryPath() const;
    [[nodiscard]] QString SecondPath() const;
    [[nodiscard]] QString LogPath() const;

    LocalFiles& m_files;
    Folders& m_folders;
    MessageBoxes& m_boxes;
    const CodePage& m_page;
    struct {
        bool IsOpen = false;
        bool IsLinkTried = false;
        bool IsLinked = false;
        bool HasWritten = false;
    } m_batch;
};
