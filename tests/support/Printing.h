#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <ostream>

// How a failed comparison shows Qt's values.

inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray& bytes, std::ostream* stream) {
    *stream << '"' << bytes.toPercentEncoding(" /:,-+").constData() << '"';
}

inline void PrintTo(const QDateTime& time, std::ostream* stream) {
    *stream << time.toString(Qt::ISODateWithMs).toStdString();
}
