#pragma once

#include <QPlainTextEdit>

/// The message box: plain text with a limit on what can be typed and pasted. Enter types nothing; line breaks
/// that were pasted stay. Tab leaves the box. Everything that changes the text can be undone, but for
/// SetText and a cut that the user's own input did not cause: nothing before those can be undone any more.
class MessageEdit final : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit MessageEdit(QWidget* parent = nullptr);

    /// Characters that the box takes from the user; 0: no limit. A text that is there already stays.
    void SetMaxLength(int length) { m_maxLength = length; }
    [[nodiscard]] int MaxLength() const { return m_maxLength; }

    /// Line breaks as U+000A, all other characters as they were given.
    [[nodiscard]] QString Text() const;
    /// A new text; there is nothing to undo behind it.
    void SetText(const QString& text);
    /// Empties the box as the user would.
    void ClearText();
    /// Another text in place of what is there, which can be undone.
    void ReplaceText(const QString& text);
    /// Drops what stands behind the first `length` characters, puts the caret behind the rest and gives the
    /// box the focus. What the user's own input made too long is undone together with that input; any other
    /// cut is for good, and so is what came before it: with the text back in the box it would be cut again.
    void CutTo(int length);
    /// The units (two for a character of the extension table) that still fit before something has to be cut.
    void SetUnitsLeft(int units) { m_unitsLeft = units; }
    /// Selects `length` characters from position `start`, from 0.
    void Select(int start, int length);

Q_SIGNALS:
    /// The text has changed, by whomever.
    void TextChanged();

protected:
    bool canInsertFromMimeData(const QMimeData* source) const override;
    void dropEvent(QDropEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void insertFromMimeData(const QMimeData* source) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    class UserEdit;

    /// Characters that may still be put in place of the selection.
    [[nodiscard]] int Room() const;

    int m_maxLength = 0;
    int m_unitsLeft = 0;
    bool m_isUserEdit = false;
};
