#pragma once

#include "store/office/SampleOffice.h"

#include <optional>
#include <stdexcept>

namespace engine {
class ConnectionFactory;
}

/// Why an office could not be made, in words for people.
class OfficeError : public std::runtime_error {
public:
    /// What a caller tells apart: something is there already, or could not be written.
    enum class Kind { Exists, CannotWrite };
    OfficeError(Kind kind, const QString& text)
        : std::runtime_error(text.toStdString()), m_kind(kind), m_text(text) {}
    [[nodiscard]] Kind What() const { return m_kind; }
    [[nodiscard]] const QString& Text() const { return m_text; }

private:
    Kind m_kind;
    QString m_text;
};

/// Makes data folders.
namespace NewOffice {

inline const QString OutboxName = QStringLiteral("smsmessages.mdb");
inline const QString PhonebookName = QStringLiteral("smscontacts.mdb");

/// Makes the two database files in `folder`, which is made too if it is missing (its parent must exist), and
/// fills the phonebook if a sample is given. Files that are there already are never touched: OfficeError
/// Exists.
///
/// The files are built under other names and get their own at the end, so that nobody finds half an office:
/// after a failure or a stop there is none, and a folder made here is gone again. Throws OfficeError;
/// engine::Failure becomes one. False if `progress` stopped it.
[[nodiscard]] bool Create(const QString& folder, const std::optional<SampleOffice::Plan>& sample,
                          engine::ConnectionFactory& engines, const OfficeProgress& progress = {});

}  // namespace NewOffice
