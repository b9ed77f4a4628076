#include "compose/GSMCharSet.h"

#include "core/Numbers.h"

#include <QStringView>

#include <algorithm>

namespace {

constexpr QChar Euro = u'\u20AC';

}  // namespace

namespace mdlGSMCharSet {

qint16 GSMTextLength(const QString& text) {
    const auto doubled = std::count_if(text.cbegin(), text.cend(), IsGSMExtensionChar);
    return Numbers::ToInt16(static_cast<qint64>(text.size()) + static_cast<qint64>(doubled));
}

bool IsGSMExtensionChar(QChar character) {
    switch (character.unicode()) {
        case Euro.unicode():
        case u'[':
        case u']':
        case u'^':
        case u'{':
        case u'}':
        case u'~':
        case u'|':
        case u'\\':
            return true;
        default:
            return false;
    }
}

int CountChar(const QString& text, QChar character) {
    return static_cast<int>(text.count(character));
}

qint16 SMSLength(const QString& text) {
    return Numbers::ToInt16(static_cast<qint64>(text.size()) + CountChar(text, Euro));
}

}  // namespace mdlGSMCharSet
