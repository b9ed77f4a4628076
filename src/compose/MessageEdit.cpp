#include "compose/MessageEdit.h"

#include "controls/ModalDoor.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QTextBlock>

#include <algorithm>
#include <limits>
#include <optional>

namespace {

bool IsLineBreak(QChar character) {
    return character == QChar::ParagraphSeparator || character == QChar::LineSeparator ||
           character == QChar(0xfdd0) || character == QChar(0xfdd1);  // the document's frame marks
}

/// At most `length` characters, and no half of a surrogate pair at the end.
QString Shortened(const QString& text, int length) {
    QString result = text.left(length);
    if (result.size() < text.size() && !result.isEmpty() && result.back().isHighSurrogate()) {
        result.chop(1);
    }
    return result;
}

bool TypesText(const QKeyEvent& key) {
    const Qt::KeyboardModifiers modifiers = key.modifiers() & ~Qt::KeypadModifier;
    const bool isCommand =
        modifiers == Qt::ControlModifier || modifiers == (Qt::ControlModifier | Qt::ShiftModifier);
    return !isCommand && !key.text().isEmpty() && key.text().front().isPrint();
}

bool TypesLineBreak(const QKeyEvent& key) {
    return key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter ||
           key.matches(QKeySequence::InsertParagraphSeparator) ||
           key.matches(QKeySequence::InsertLineSeparator);
}

}  // namespace

/// Makes one step of undo of what the user does in its lifetime. The change is announced at its end, and a
/// cut that follows from it still joins the step.
class MessageEdit::UserEdit {
public:
    explicit UserEdit(MessageEdit& edit)
        : m_edit(edit), m_before(edit.m_isUserEdit), m_cursor(edit.textCursor()) {
        m_edit.m_isUserEdit = true;
        m_cursor.beginEditBlock();
    }
    ~UserEdit() {
        m_cursor.endEditBlock();
        m_edit.m_isUserEdit = m_before;
        m_edit.ensureCursorVisible();
    }
    UserEdit(const UserEdit&) = delete;
    UserEdit& operator=(const UserEdit&) = delete;

private:
    MessageEdit& m_edit;
    bool m_before;  // one may stand within another
    QTextCursor m_cursor;
};

MessageEdit::MessageEdit(QWidget* parent) : QPlainTextEdit(parent) {
    setTabChangesFocus(true);
    connect(this, &QPlainTextEdit::textChanged, this, &MessageEdit::TextChanged);
}

QString MessageEdit::Text() const {
    QString text = document()->toRawText();
    std::replace_if(text.begin(), text.end(), IsLineBreak, QChar(u'\n'));
    return text;
}

void MessageEdit::SetText(const QString& text) {
    setPlainText(text);
}

void MessageEdit::ClearText() {
    QTextCursor cursor(document());
    cursor.select(QTextCursor::Document);
    cursor.removeSelectedText();
}

void MessageEdit::ReplaceText(const QString& text) {
    const UserEdit step(*this);
    QTextCursor cursor(document());
    cursor.select(QTextCursor::Document);
    cursor.insertText(text);
}

void MessageEdit::CutTo(int length) {
    QTextCursor cursor(document());
    if (m_isUserEdit) {
        cursor.joinPreviousEditBlock();
    } else {
        cursor.beginEditBlock();
    }
    cursor.setPosition(length);
    cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    cursor.endEditBlock();
    if (!m_isUserEdit) {
        document()->clearUndoRedoStacks();
    }
    moveCursor(QTextCursor::End);
    setFocus();
}

void MessageEdit::Select(int start, int length) {
    QTextCursor cursor(document());
    cursor.setPosition(start);
    cursor.setPosition(start + length, QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

bool MessageEdit::canInsertFromMimeData(const QMimeData* source) const {
    return source->hasText() && !IsKeyData(*source);
}

void MessageEdit::dropEvent(QDropEvent* event) {
    const UserEdit step(*this);
    QPlainTextEdit::dropEvent(event);
}

void MessageEdit::insertFromMimeData(const QMimeData* source) {
    QString text = source->text();
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    const UserEdit step(*this);
    textCursor().insertText(Shortened(text, Room()));
}

void MessageEdit::inputMethodEvent(QInputMethodEvent* event) {
    const int room = Room() + event->replacementLength();
    std::optional<UserEdit> step;
    if (!event->commitString().isEmpty()) {
        step.emplace(*this);
    }
    if (event->commitString().size() <= room) {
        QPlainTextEdit::inputMethodEvent(event);
        return;
    }
    QInputMethodEvent shorter(event->preeditString(), event->attributes());
    shorter.setCommitString(Shortened(event->commitString(), room), event->replacementStart(),
                            event->replacementLength());
    QPlainTextEdit::inputMethodEvent(&shorter);
}

void MessageEdit::keyPressEvent(QKeyEvent* event) {
    if (TypesLineBreak(*event)) {
        event->accept();
        return;
    }
    if (event->matches(QKeySequence::SelectAll)) {
        event->accept();
        selectAll();
        return;
    }
    // Keys that surely fit stay outside of steps, so that what is typed in a row is undone in a row.
    std::optional<UserEdit> step;
    if (TypesText(*event)) {
        if (event->modifiers() == Qt::AltModifier) {
            event->ignore();
            return;
        }
        if (event->text().size() > Room()) {
            event->accept();
            return;
        }
        if (2 * event->text().size() > m_unitsLeft) {
            step.emplace(*this);
        }
    }
    QPlainTextEdit::keyPressEvent(event);
}

int MessageEdit::Room() const {
    if (m_maxLength <= 0) {
        return std::numeric_limits<int>::max() / 2;
    }
    const QTextCursor cursor = textCursor();
    const int selected = cursor.selectionEnd() - cursor.selectionStart();
    return std::max(0, m_maxLength - (document()->characterCount() - 1 - selected));
}
