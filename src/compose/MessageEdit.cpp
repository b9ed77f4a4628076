#include "compose/MessageEdit.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QTextBlock>

#include <algorithm>
#include <limits>

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

MessageEdit::MessageEdit(QWidget* parent) : QPlainTextEdit(parent) {
    setTabChangesFocus(true);
    connect(this, &QPlainTextEdit::textChanged, this, &MessageEdit::AnnounceChange);
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

void MessageEdit::CutTo(int length) {
    QTextCursor cursor(document());
    if (m_announcing > 0) {
        cursor.joinPreviousEditBlock();
    } else {
        cursor.beginEditBlock();
    }
    cursor.setPosition(length);
    cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    cursor.endEditBlock();
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
    return source->hasText();
}

void MessageEdit::insertFromMimeData(const QMimeData* source) {
    QString text = source->text();
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    QTextCursor cursor = textCursor();
    cursor.insertText(Shortened(text, Room()));
    ensureCursorVisible();
}

void MessageEdit::inputMethodEvent(QInputMethodEvent* event) {
    const int room = Room() + event->replacementLength();
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
    if (TypesText(*event)) {
        if (event->modifiers() == Qt::AltModifier) {
            event->ignore();
            return;
        }
        if (event->text().size() > Room()) {
            event->accept();
            return;
        }
    }
    QPlainTextEdit::keyPressEvent(event);
}

void MessageEdit::AnnounceChange() {
    ++m_announcing;
    Q_EMIT TextChanged();
    --m_announcing;
}

int MessageEdit::Room() const {
    if (m_maxLength <= 0) {
        return std::numeric_limits<int>::max() / 2;
    }
    const QTextCursor cursor = textCursor();
    const int selected = cursor.selectionEnd() - cursor.selectionStart();
    return std::max(0, m_maxLength - (document()->characterCount() - 1 - selected));
}
