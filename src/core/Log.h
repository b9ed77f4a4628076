#pragma once

#include <QString>

#include <exception>

class Clock;
class LocalFiles;

/// The application's log. It has no levels. Every line goes to the platform's event log (standard error, which a desktop
/// session hands to its journal), and to a file only after LogToFile. A line never holds a message text, a phone
/// number or a password.
class Log {
public:
    Log(LocalFiles& files, Clock& clock);
    /// From now on every line is also appended to this file ("applog.txt" under the switch /error).
    void LogToFile(const QString& path);
    void Write(const QString& line);
    /// "`prefix``number` `description` `source`" of a failure: `prefix` brings its own blank or colon.
    void WriteFailure(const QString& prefix, const std::exception& failure);

private:
    LocalFiles& m_files;
    Clock& m_clock;
    QString m_path;
};
