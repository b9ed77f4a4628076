#include "tracking/History.h"

#include "core/CodePage.h"
#include "core/Dates.h"
#include "core/Product.h"
#include "core/TextRules.h"
#include "core/Trap.h"
#include "platform/Folders.h"
#include "platform/LocalFiles.h"
#include "platform/MessageBoxes.h"

#include <QtEndian>

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <tuple>
#include <utility>

namespace {

constexpr int ReservedOffset = 4;
constexpr int ReservedSize = 3;
constexpr int RecipientOffset = 7;
constexpr int TextOffset = 37;
constexpr int SendTimeOffset = 1061;
constexpr int SizeLimit = HistoryRecord::Size * mdlHistory::MaxRecords;

/// Moves the text of a field of `width` bytes to its start: what stripping and filling it again does to it.
void StripLeadingBlanks(char* field, qsizetype width) {
    qsizetype blanks = 0;
    while (blanks < width && field[blanks] == ' ') {
        ++blanks;
    }
    if (blanks == 0) {
        return;
    }
    std::memmove(field, field + blanks, static_cast<size_t>(width - blanks));
    std::memset(field + width - blanks, ' ', static_cast<size_t>(blanks));
}

/// Most of a field is filling, which need not become characters first.
QString TextOf(QByteArrayView field, const CodePage& page) {
    while (field.endsWith(' ')) {
        field.chop(1);
    }
    return Text::Trim(page.Decode(field));
}

HistoryRecord RecordAt(const char* record, const CodePage& page) {
    HistoryRecord result;
    result.MessageID = qFromLittleEndian<qint32>(record);
    result.Reserved = QByteArray(record + ReservedOffset, ReservedSize);
    result.Recipient = TextOf({record + RecipientOffset, HistoryRecord::RecipientWidth}, page);
    result.Text = TextOf({record + TextOffset, HistoryRecord::TextWidth}, page);
    result.SendTime = std::bit_cast<double>(qFromLittleEndian<quint64>(record + SendTimeOffset));
    return result;
}

QByteArray Field(const QString& text, int width, const CodePage& page) {
    return page.Encode(text.left(width)).leftJustified(width, ' ', true);
}

QByteArray NewRecord(const HistoryRecord& value, const CodePage& page) {
    QByteArray record(HistoryRecord::Size, '\0');
    qToLittleEndian<qint32>(value.MessageID, record.data());
    record.replace(ReservedOffset, ReservedSize, value.Reserved);
    record.replace(RecipientOffset, HistoryRecord::RecipientWidth,
                   Field(value.Recipient, HistoryRecord::RecipientWidth, page));
    record.replace(TextOffset, HistoryRecord::TextWidth, Field(value.Text, HistoryRecord::TextWidth, page));
    qToLittleEndian<quint64>(std::bit_cast<quint64>(value.SendTime), record.data() + SendTimeOffset);
    return record;
}

/// Bytes of the records that count as elements of the history: all that stand in the file, or none where
/// there are more than a 16-bit count can tell.
qsizetype BytesOfElements(const QByteArray& file) {
    return file.size() / HistoryRecord::Size > std::numeric_limits<qint16>::max() ? 0 : file.size();
}

}  // namespace

mdlHistory::mdlHistory(LocalFiles& files, Folders& folders, MessageBoxes& boxes, const CodePage& page)
    : m_files(files), m_folders(folders), m_boxes(boxes), m_page(page) {}

QList<HistoryRecord> mdlHistory::ReadHistory() {
    QList<HistoryRecord> records;
    Trap([&] {
        const QByteArray bytes = ReadRecords().value_or(QByteArray());
        const qsizetype end = BytesOfElements(bytes);
        records.reserve(end / HistoryRecord::Size);
        for (qsizetype offset = 0; offset < end; offset += HistoryRecord::Size) {
            records.append(RecordAt(bytes.constData() + offset, m_page));
        }
    });
    return records;
}

void mdlHistory::AddToHistory(qint32 msgID, const QString& recipient, const QString& text,
                              const QDateTime& sendTime) {
    Trap([&] {
        std::optional<QByteArray> file = ReadRecords();
        // A file that is there but cannot be read now keeps its records: better one message less in the
        // history than all of them.
        if (file.has_value()) {
            PutInFront({msgID, QByteArray(), recipient, text, Dates::ToDays(sendTime)}, std::move(*file));
        }
    });
    Trap([&] {
        const QString line =
            QString::number(msgID) + u',' + Dates::Format(sendTime, QStringLiteral("YYYYMMDDHHNNSS")) +
            QStringLiteral(",\"") + recipient + QStringLiteral("\",\"") + text + QStringLiteral("\"\r\n");
        std::ignore = m_files.Append(LogPath(), m_page.Encode(line));
    });
}

void mdlHistory::ClearHistory() {
    Trap([&] {
        if (m_files.Exists(SecondPath())) {
            std::ignore = m_files.Remove(SecondPath());
        }
    });
    Trap([&] { std::ignore = m_files.Remove(HistoryPath()); });
    Trap([&] { std::ignore = m_files.Replace(HistoryPath(), QByteArray()); });
}

bool mdlHistory::IsHistoryFileValid(const QString& path) const {
    const qint64 size = m_files.Size(path);
    return size <= 0 || size % HistoryRecord::Size == 0;
}

void mdlHistory::EndBatch() {
    const auto batch = std::exchange(m_batch, {});
    Trap([&] {
        if ((batch.HasWritten || batch.IsLinked) && m_files.Sync(HistoryPath())) {
            std::ignore = m_files.Remove(SecondPath());
        }
    });
}

bool mdlHistory::IsKeptBeside() {
    if (m_batch.IsOpen && !m_batch.IsLinkTried && m_files.Size(HistoryPath()) > 0) {
        m_batch.IsLinkTried = true;
        // Another batch that came to no end has not waited for the disk.
        const bool isLeft = m_files.Exists(SecondPath());
        if ((!isLeft && !m_batch.HasWritten) || m_files.Sync(HistoryPath())) {
            std::ignore = isLeft && m_files.Remove(SecondPath());
            m_batch.IsLinked = m_files.Link(HistoryPath(), SecondPath());
        }
    }
    // Another copy of the program that works here may have ended its own batch.
    return m_batch.IsLinked && m_files.Exists(SecondPath());
}

void mdlHistory::Recover() {
    const qint64 size = m_files.Size(HistoryPath());
    if (size == 0 || !IsHistoryFileValid(HistoryPath())) {
        const qint64 kept = m_files.Size(SecondPath());
        if (kept > 0 && kept % HistoryRecord::Size == 0) {
            std::ignore = m_files.Rename(SecondPath(), HistoryPath());
        }
    }
}

std::optional<QByteArray> mdlHistory::ReadRecords() {
    Recover();
    const QString path = HistoryPath();
    if (m_files.Size(path) <= 0) {
        return QByteArray();
    }
    if (!IsHistoryFileValid(path)) {
        m_boxes.Show(
            {Product::AppTitle,
             QStringLiteral("The History File is corrupt or is an older version.\r\nIT WILL BE CLEARED"),
             BoxIcon::Critical, BoxButtons::Ok});
        std::ignore = m_files.Remove(path);
        return QByteArray();
    }
    std::optional<QByteArray> bytes = m_files.Read(path);
    if (!bytes.has_value()) {
        return std::nullopt;
    }
    bytes->truncate(bytes->size() / HistoryRecord::Size * HistoryRecord::Size);
    return bytes;
}

void mdlHistory::PutInFront(HistoryRecord record, QByteArray file) {
    const qsizetype old = BytesOfElements(file);
    // The new record is written over the newest one, whose reserved bytes stay.
    record.Reserved = old == 0 ? QByteArray(ReservedSize, '\0') : file.mid(ReservedOffset, ReservedSize);
    const QByteArray newest = NewRecord(record, m_page);
    const qsizetype kept = std::min<qsizetype>(old, SizeLimit - HistoryRecord::Size);
    // A longer file, which only another program can have made, keeps what stands behind the records written
    // here.
    const qsizetype behind = std::min<qsizetype>(file.size(), kept + HistoryRecord::Size);
    char* const begin = file.data();
    for (qsizetype offset = 0; offset < kept; offset += HistoryRecord::Size) {
        StripLeadingBlanks(begin + offset + RecipientOffset, HistoryRecord::RecipientWidth);
        StripLeadingBlanks(begin + offset + TextOffset, HistoryRecord::TextWidth);
    }
    const QString path = HistoryPath();
    if (!IsHistoryFileValid(path)) {
        std::ignore = m_files.Remove(path);
    }
    const QByteArrayView bytes(file);
    const QList<QByteArrayView> pieces = {newest, bytes.first(kept), bytes.sliced(behind)};
    if (IsKeptBeside() ? m_files.ReplaceInHaste(path, pieces) : m_files.Replace(path, pieces)) {
        m_batch.HasWritten = true;
    }
}

QString mdlHistory::HistoryPath() const {
    return Text::WithBackslash(m_folders.ApplicationFolder()) + QStringLiteral("history.sms");
}

QString mdlHistory::SecondPath() const {
    return Text::WithBackslash(m_folders.ApplicationFolder()) + QStringLiteral(".larkspan-history");
}

QString mdlHistory::LogPath() const {
    return Text::WithBackslash(m_folders.ApplicationFolder()) + QStringLiteral("messagelog.sms");
}
