#pragma once

#include <QByteArray>
#include <QString>

/// 8-bit text in the system's ANSI code page, which all local files hold: Windows-1252, or the page of the user's
/// locale (1250 Central Europe, 1251 Cyrillic, 1253 Greek, 1254 Turkish, 1257 Baltic ...).
class CodePage {
public:
    /// The page of the user's locale.
    static const CodePage& System();
    /// `number` is one of 1250..1258 or 874; any other number gives 1252.
    explicit CodePage(int number);

    [[nodiscard]] int Number() const { return m_number; }
    /// One byte for each UTF-16 unit; a character that the page lacks is written as "?".
    [[nodiscard]] QByteArray Encode(const QString& text) const;
    /// One character for each byte; reads back what Encode wrote. A byte without a character in the page stays the
    /// control character of its number, and Encode writes it back.
    [[nodiscard]] QString Decode(const QByteArray& bytes) const;

private:
    int m_number;
};
