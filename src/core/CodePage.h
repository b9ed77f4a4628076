#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QLocale>
#include <QString>

struct CodePageTable;

/// 8-bit text in the system's ANSI code page, which all local files hold: Windows-1252, or the page of the
/// user's locale (1250 Central Europe, 1251 Cyrillic, 1253 Greek, 1254 Turkish, 1257 Baltic ...). The pages
/// are those that the Unicode consortium publishes as CP874.TXT and CP1250.TXT to CP1258.TXT.
class CodePage {
public:
    /// The page of the user's locale, as it was when it was first asked for.
    static const CodePage& System();
    /// The number of the page that belongs to a locale's language and script; 1252 for all that need no
    /// other.
    [[nodiscard]] static int NumberFor(const QLocale& locale);
    /// `number` is one of 1250..1258 or 874; any other number gives 1252.
    explicit CodePage(int number);

    [[nodiscard]] int Number() const;
    /// One byte for each UTF-16 unit; a character that the page lacks is written as "?".
    [[nodiscard]] QByteArray Encode(const QString& text) const;
    /// One character for each byte; reads back what Encode wrote. A byte without a character in the page
    /// stays the control character of its number (0x80 to 0x9F) or becomes a private character (above), and
    /// Encode writes it back.
    [[nodiscard]] QString Decode(QByteArrayView bytes) const;

private:
    const CodePageTable& m_table;
};
