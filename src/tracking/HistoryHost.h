#pragma once

#include <QString>

/// What the history asks of the main window.
class HistoryHost {
public:
    virtual ~HistoryHost() = default;
    /// Puts a text into txtMessage in place of what is there.
    virtual void SetMessageText(const QString& text) = 0;
    virtual void UpdateStateDisplay() = 0;
    /// The text of cbTails, and that of txtEndWidth.
    [[nodiscard]] virtual QString SelectedTail() const = 0;
    [[nodiscard]] virtual QString SignatureText() const = 0;
};
