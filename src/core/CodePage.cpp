#include "core/CodePage.h"

#include <algorithm>

#include "core/CodePageTables.h"

namespace {

bool IsCyrillicByDefault(QLocale::Language language) {
    switch (language) {
        case QLocale::Russian:
        case QLocale::Ukrainian:
        case QLocale::Belarusian:
        case QLocale::Bulgarian:
        case QLocale::Macedonian:
        case QLocale::Serbian:
        case QLocale::Mongolian:
        case QLocale::Kazakh:
        case QLocale::Kirghiz:
        case QLocale::Tatar:
        case QLocale::Bashkir:
        case QLocale::Tajik:
        case QLocale::Sakha:
        case QLocale::Ossetic:
        case QLocale::Chechen:
            return true;
        default:
            return false;
    }
}

int NumberByLanguage(QLocale::Language language) {
    switch (language) {
        case QLocale::Czech:
        case QLocale::Slovak:
        case QLocale::Polish:
        case QLocale::Hungarian:
        case QLocale::Slovenian:
        case QLocale::Croatian:
        case QLocale::Serbian:
        case QLocale::Bosnian:
        case QLocale::Romanian:
        case QLocale::Albanian:
        case QLocale::UpperSorbian:
        case QLocale::LowerSorbian:
        case QLocale::Turkmen:
            return 1250;
        case QLocale::Greek:
            return 1253;
        case QLocale::Turkish:
        case QLocale::Azerbaijani:
        case QLocale::Uzbek:
            return 1254;
        case QLocale::Estonian:
        case QLocale::Latvian:
        case QLocale::Lithuanian:
            return 1257;
        case QLocale::Vietnamese:
            return 1258;
        case QLocale::Thai:
            return 874;
        default:
            return 1252;
    }
}

}  // namespace

const CodePage& CodePage::System() {
    static const CodePage page(NumberFor(QLocale::system()));
    return page;
}

int CodePage::NumberFor(const QLocale& locale) {
    switch (locale.script()) {
        case QLocale::CyrillicScript:
            return 1251;
        case QLocale::GreekScript:
            return 1253;
        case QLocale::HebrewScript:
            return 1255;
        case QLocale::ArabicScript:
            return 1256;
        case QLocale::LatinScript:
            return NumberByLanguage(locale.language());
        default:
            return IsCyrillicByDefault(locale.language()) ? 1251 : NumberByLanguage(locale.language());
    }
}

CodePage::CodePage(int number) : m_table(FindCodePageTable(number)) {}

int CodePage::Number() const {
    return m_table.Number;
}

QByteArray CodePage::Encode(const QString& text) const {
    QByteArray bytes(text.size(), '?');
    for (qsizetype index = 0; index < text.size(); ++index) {
        const char16_t character = text.at(index).unicode();
        if (character < 0x80) {
            bytes[index] = static_cast<char>(character);
            continue;
        }
        const auto found =
            std::lower_bound(m_table.ByCharacter.begin(), m_table.ByCharacter.end(), character,
                             [](const auto& item, char16_t wanted) { return item.first < wanted; });
        if (found != m_table.ByCharacter.end() && found->first == character) {
            bytes[index] = static_cast<char>(found->second);
        }
    }
    return bytes;
}

QString CodePage::Decode(QByteArrayView bytes) const {
    QString text(bytes.size(), Qt::Uninitialized);
    std::transform(bytes.begin(), bytes.end(), text.begin(), [this](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return QChar(byte < 0x80 ? char16_t{byte} : m_table.Upper[byte - 0x80U]);
    });
    return text;
}
