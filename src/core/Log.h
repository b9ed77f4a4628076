#pragma once

#include <QString>

#include <exception>

class Clock;
class LocalFiles;

/// The application's log. It has no levels, and it never throws: a file that cannot be written is passed
/// over. Every line goes to the platform's event log (standard error, which a desktop session hands to its
/// journal), and to a file only after LogToFile. A line never holds a message text, a phone number or a
/// password.
class Log {
public:
    Log(LocalFiles& files, Clock& clock);
    /// From now on every line is also appended to this file ("applog.txt" under the switch /error).
    void LogToFile(const QString& path);
    /// Line breaks and other control characters become blanks. In the file the line has the date and time
    /// before it, is in the system's code page and ends in LF.
    void Write(const QString& line) noexcept;
    /// "`prefix``number` `description` `source`" of a failure: `prefix` brings its own blank or colon. Number
    /// and source are those of a NumberedFailure, 0 and empty for any other.
    void WriteFailure(const QString& prefix, const std::exception& failure) noexcept;
    /// The same without the source.
    void WriteFailureBriefly(const QString& prefix, const std::exception& failure) noexcept;

private:
    LocalFiles& m_files;
    Clock& m_clock;
    QString m_path;
};
