#include "core/Log.h"

#include <cstdio>

#include "core/CodePage.h"
#include "core/Dates.h"
#include "core/NumberedFailure.h"
#include "core/Trap.h"
#include "platform/Clock.h"
#include "platform/LocalFiles.h"

namespace {

QString OneLine(QString line) {
    for (QChar& character : line) {
        if (character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
            character == QChar::ParagraphSeparator) {
            character = u' ';
        }
    }
    return line;
}

QString NumberAndDescription(const std::exception& failure) {
    const auto* numbered = dynamic_cast<const NumberedFailure*>(&failure);
    return QString::number(numbered == nullptr ? 0 : numbered->Number()) + u' ' +
           QString::fromUtf8(failure.what());
}

}  // namespace

Log::Log(LocalFiles& files, Clock& clock) : m_files(files), m_clock(clock) {}

void Log::LogToFile(const QString& path) {
    m_path = path;
}

void Log::Write(const QString& line) noexcept {
    Trap([&] {
        const QString text = OneLine(line) + u'\n';
        const QByteArray bytes = text.toLocal8Bit();
        std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stderr);
        if (!m_path.isEmpty()) {
            const QString time = Dates::Format(m_clock.Now(), QStringLiteral("yyyy-mm-dd hh:nn:ss "));
            // A log that cannot be written must not stop the program, and there is nobody left to tell.
            static_cast<void>(m_files.Append(m_path, CodePage::System().Encode(time + text)));
        }
    });
}

void Log::WriteFailure(const QString& prefix, const std::exception& failure) noexcept {
    Trap([&] {
        const auto* numbered = dynamic_cast<const NumberedFailure*>(&failure);
        Write(prefix + NumberAndDescription(failure) + u' ' +
              (numbered == nullptr ? QString() : numbered->Source()));
    });
}

void Log::WriteFailureBriefly(const QString& prefix, const std::exception& failure) noexcept {
    Trap([&] { Write(prefix + NumberAndDescription(failure)); });
}
