#include "store/engine/sqlite/Rows.h"

#include "store/engine/sqlite/TextCodec.h"

#include <sqlite3.h>

#include <QDateTime>

#include <algorithm>
#include <cstring>

namespace engine::sqlite {

namespace {

enum Tag : char { Null, Integer, Real, Text };

constexpr std::size_t NumberSize = 8;
constexpr std::size_t LengthSize = 4;

ColumnType TypeOf(const char* declaration) {
    const QByteArrayView type(declaration);
    const auto startsWith = [type](QByteArrayView word) {
        return type.size() >= word.size() &&
               qstrnicmp(type.data(), word.data(), static_cast<size_t>(word.size())) == 0;
    };
    if (startsWith("DATE") || startsWith("TIMESTAMP")) {
        return ColumnType::DateTime;
    }
    return startsWith("BOOL") || startsWith("YESNO") ? ColumnType::Boolean : ColumnType::Plain;
}

/// The number that the digits from `from` on make; -1 where one is none.
int DigitsAt(QByteArrayView text, qsizetype from, int count) {
    int number = 0;
    for (const char digit : text.sliced(from, count)) {
        if (digit < '0' || digit > '9') {
            return -1;
        }
        number = number * 10 + (digit - '0');
    }
    return number;
}

/// "YYYY-MM-DD hh:mm:ss", as this program writes it; invalid for any other shape.
QDateTime ReadWrittenDate(QByteArrayView text, Qt::TimeSpec kind) {
    if (text.size() != 19 || text[4] != '-' || text[7] != '-' || text[10] != ' ' || text[13] != ':' ||
        text[16] != ':') {
        return {};
    }
    const int year = DigitsAt(text, 0, 4);
    const QDate day(year, DigitsAt(text, 5, 2), DigitsAt(text, 8, 2));
    const QTime time(DigitsAt(text, 11, 2), DigitsAt(text, 14, 2), DigitsAt(text, 17, 2));
    return year > 0 && day.isValid() && time.isValid() ? QDateTime(day, time, kind) : QDateTime();
}

/// "YYYY-MM-DD hh:mm:ss", a "T" for the blank, fractions of a second, or the day alone.
QVariant ReadDate(QStringView text, Qt::TimeSpec kind) {
    constexpr qsizetype DayLength = 10;
    const QDate day = QDate::fromString(text.left(DayLength), Qt::ISODate);
    const QTime time =
        text.size() > DayLength ? QTime::fromString(text.sliced(DayLength + 1), Qt::ISODate) : QTime(0, 0);
    return day.isValid() && time.isValid() ? QVariant(QDateTime(day, time, kind)) : QVariant(text.toString());
}

}  // namespace

void Rows::TakeColumns(sqlite3_stmt* statement, int hidden) {
    const int count = sqlite3_column_count(statement);
    m_hidden = hidden;
    m_names.reserve(count);
    for (int i = 0; i < count; ++i) {
        const QString name = QString::fromUtf8(sqlite3_column_name(statement, i));
        m_isRepeated.push_back(m_names.contains(name, Qt::CaseInsensitive));
        m_names.append(name);
        m_types.push_back(TypeOf(sqlite3_column_decltype(statement, i)));
    }
}

void Rows::Append(sqlite3_stmt* statement) {
    m_rowStarts.push_back(m_bytes.size());
    const auto put = [this](char tag, const void* data, std::size_t size) {
        m_bytes.push_back(tag);
        const char* bytes = static_cast<const char*>(data);
        m_bytes.insert(m_bytes.end(), bytes, bytes + size);
    };
    const int count = static_cast<int>(m_names.size());
    for (int i = 0; i < count; ++i) {
        switch (sqlite3_column_type(statement, i)) {
            case SQLITE_NULL:
                m_bytes.push_back(Null);
                break;
            case SQLITE_INTEGER: {
                const qint64 number = sqlite3_column_int64(statement, i);
                put(Integer, &number, NumberSize);
                break;
            }
            case SQLITE_FLOAT: {
                const double number = sqlite3_column_double(statement, i);
                put(Real, &number, NumberSize);
                break;
            }
            default: {
                const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, i));
                const auto length = static_cast<quint32>(sqlite3_column_bytes(statement, i));
                put(Tag::Text, &length, LengthSize);
                m_bytes.insert(m_bytes.end(), text, text + length);
            }
        }
    }
}

void Rows::Finish() {
    m_bytes.shrink_to_fit();
    m_rowStarts.shrink_to_fit();
}

int Rows::Find(QStringView name, int hint) const {
    const int count = ColumnCount();
    const auto isColumn = [this, name](int column) {
        const QString& own = m_names.at(column);
        return own.size() == name.size() && (name == own || name.compare(own, Qt::CaseInsensitive) == 0);
    };
    // A name may occur twice; the first column of that name is meant.
    if (hint >= 0 && hint < count && !m_isRepeated[static_cast<std::size_t>(hint)] && isColumn(hint)) {
        return hint;
    }
    for (int i = 0; i < count; ++i) {
        if (isColumn(i)) {
            return i;
        }
    }
    return -1;
}

void Rows::Locate(std::size_t row, std::vector<std::size_t>* cells) const {
    cells->clear();
    std::size_t position = m_rowStarts.at(row);
    for (qsizetype i = 0; i < m_names.size(); ++i) {
        cells->push_back(position);
        const char tag = m_bytes[position++];
        if (tag == Tag::Text) {
            quint32 length = 0;
            std::memcpy(&length, &m_bytes[position], LengthSize);
            position += LengthSize + length;
        } else if (tag != Tag::Null) {
            position += NumberSize;
        }
    }
}

QVariant Rows::RawValue(std::size_t cell) const {
    const char* data = m_bytes.data() + cell + 1;
    switch (m_bytes[cell]) {
        case Integer: {
            qint64 number = 0;
            std::memcpy(&number, data, NumberSize);
            return number;
        }
        case Real: {
            double number = 0;
            std::memcpy(&number, data, NumberSize);
            return number;
        }
        case Tag::Text:
            return TextAt(cell);
        default:
            return {};
    }
}

QVariant Rows::Value(std::size_t cell, int column, Qt::TimeSpec kind) const {
    const ColumnType type = m_types.at(static_cast<std::size_t>(column));
    const char tag = m_bytes[cell];
    if (type == ColumnType::Boolean && tag == Integer) {
        return RawValue(cell).toLongLong() != 0;
    }
    if (type == ColumnType::DateTime && tag == Tag::Text) {
        const QDateTime written = ReadWrittenDate(BytesAt(cell), kind);
        return written.date().isValid() ? QVariant(written) : ReadDate(TextAt(cell), kind);
    }
    return RawValue(cell);
}

QString Rows::Text(std::size_t cell, int column) const {
    if (m_bytes[cell] == Tag::Text && m_types[static_cast<std::size_t>(column)] != ColumnType::DateTime) {
        return TextAt(cell);
    }
    return m_bytes[cell] == Tag::Null ? QString() : Value(cell, column).toString();
}

QByteArrayView Rows::BytesAt(std::size_t cell) const {
    const char* data = m_bytes.data() + cell + 1;
    quint32 length = 0;
    std::memcpy(&length, data, LengthSize);
    return {data + LengthSize, static_cast<qsizetype>(length)};
}

QString Rows::TextAt(std::size_t cell) const {
    return DecodeText(BytesAt(cell));
}

}  // namespace engine::sqlite
