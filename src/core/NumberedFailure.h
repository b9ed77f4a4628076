#pragma once

#include <QString>

#include <stdexcept>
#include <utility>

/// A failure with a number and the name of what failed, as a log line tells them. what() is the description
/// in UTF-8; it never holds a message text, a phone number or a password.
class NumberedFailure : public std::runtime_error {
public:
    NumberedFailure(qint32 number, const QString& description, QString source = {})
        : std::runtime_error(description.toStdString()), m_number(number), m_source(std::move(source)) {}

    [[nodiscard]] virtual qint32 Number() const { return m_number; }
    [[nodiscard]] const QString& Source() const { return m_source; }

private:
    qint32 m_number;
    QString m_source;
};
