#pragma once

#include <QAbstractButton>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <vector>

/// Questions about the type of a control.
namespace FormTypes {

using Test = bool (*)(const QObject*);

template <typename Type>
bool Is(const QObject* object) {
    return dynamic_cast<const Type*>(object) != nullptr;
}
inline bool IsTextBox(const QObject* object) {
    return Is<QPlainTextEdit>(object) || Is<QTextEdit>(object);
}
inline bool IsFrame(const QObject* object) {
    return Is<QFrame>(object) || Is<QGroupBox>(object);
}
inline constexpr Test Button = &Is<QAbstractButton>;
inline constexpr Test Label = &Is<QLabel>;

}  // namespace FormTypes

/// A form on the screen, together with what it stands on.
class OpenForm {
public:
    virtual ~OpenForm() = default;
    [[nodiscard]] virtual QWidget& Form() = 0;
    /// Nothing for a form that is not asked.
    [[nodiscard]] virtual std::optional<bool> IsCanceled() const { return std::nullopt; }
};

/// What becomes of a form by a key that is pressed right after it has opened.
enum class Ending { StaysOpen, Closed, Accepted, Canceled };

struct FormControl {
    const char* Name;
    FormTypes::Test IsType;
    /// Tab stops here.
    bool IsStop;
};

/// What is known of a form.
struct FormRow {
    const char* Name;
    std::function<std::unique_ptr<OpenForm>()> Open;
    /// As the eye reads.
    std::vector<FormControl> Controls;
    /// Null for none.
    const char* DefaultButton;
    Ending Enter;
    Ending Escape;
    /// Mnemonics that two of its captions share, as they were given.
    const char* SharedMnemonics = "";
};

/// For the messages of a test.
inline void PrintTo(const FormRow& row, std::ostream* stream) {
    *stream << row.Name;
}

/// One row for each form of the program.
[[nodiscard]] const std::vector<FormRow>& FormTable();
