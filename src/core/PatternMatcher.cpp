#include "core/PatternMatcher.h"

#include <QRegularExpression>

#include <stdexcept>

#include "core/TextRules.h"

PatternMatcher PatternMatcher::WithoutRegEx() {
    PatternMatcher matcher;
    matcher.m_isRegEx = false;
    return matcher;
}

bool PatternMatcher::IsInternationalPhone(const QString& text) const {
    // "$" would let a line break at the end pass; \z is the very end.
    return m_isRegEx ? Test(QStringLiteral(R"(^\+[0-9]{5,30}\z)"), text)
                     : Test(QStringLiteral("+[0-9]*"), text);
}

bool PatternMatcher::Test(const QString& pattern, const QString& text) const {
    if (!m_isRegEx) {
        return Text::MatchesWildcard(text, pattern);
    }
    const QRegularExpression expression(pattern);
    if (!expression.isValid()) {
        throw std::invalid_argument("malformed regular expression");
    }
    return expression.match(text).hasMatch();
}
