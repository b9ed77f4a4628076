#include "core/TextRules.h"

#include <QStringView>

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

struct Token {
    enum class Kind { Literal, AnyRun, AnyOne, Digit, Set };
    Kind Type = Kind::Literal;
    char16_t Character = 0;
    bool IsNegated = false;
    std::vector<std::pair<char16_t, char16_t>> Ranges;

    [[nodiscard]] bool Accepts(char16_t character) const {
        switch (Type) {
            case Kind::Literal:
                return character == Character;
            case Kind::AnyOne:
                return true;
            case Kind::Digit:
                return character >= u'0' && character <= u'9';
            case Kind::Set:
                return IsNegated != std::any_of(Ranges.begin(), Ranges.end(), [character](const auto& range) {
                           return character >= range.first && character <= range.second;
                       });
            case Kind::AnyRun:
                break;
        }
        return false;
    }
};

Token ParseSet(QStringView list) {
    Token token;
    token.Type = Token::Kind::Set;
    if (list.size() > 1 && list.front() == u'!') {
        token.IsNegated = true;
        list = list.mid(1);
    }
    for (qsizetype index = 0; index < list.size(); ++index) {
        const char16_t first = list[index].unicode();
        char16_t last = first;
        if (index + 2 < list.size() && list[index + 1] == u'-') {
            last = list[index + 2].unicode();
            index += 2;
        }
        if (last < first) {
            throw std::invalid_argument("descending range in a wildcard pattern");
        }
        token.Ranges.emplace_back(first, last);
    }
    return token;
}

std::vector<Token> ParsePattern(QStringView pattern) {
    std::vector<Token> tokens;
    for (qsizetype index = 0; index < pattern.size(); ++index) {
        const char16_t character = pattern[index].unicode();
        if (character == u'[') {
            const qsizetype close = pattern.indexOf(u']', index + 1);
            if (close < 0) {
                throw std::invalid_argument("unclosed list in a wildcard pattern");
            }
            if (close > index + 1) {  // an empty list stands for the empty text
                tokens.push_back(ParseSet(pattern.mid(index + 1, close - index - 1)));
            }
            index = close;
            continue;
        }
        Token token;
        token.Character = character;
        if (character == u'*') {
            token.Type = Token::Kind::AnyRun;
        } else if (character == u'?') {
            token.Type = Token::Kind::AnyOne;
        } else if (character == u'#') {
            token.Type = Token::Kind::Digit;
        }
        tokens.push_back(std::move(token));
    }
    return tokens;
}

}  // namespace

QString Text::Trim(const QString& text) {
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && text.at(first) == u' ') {
        ++first;
    }
    while (last > first && text.at(last - 1) == u' ') {
        --last;
    }
    return text.mid(first, last - first);
}

QString Text::WithBackslash(const QString& path) {
    return path.endsWith(u'\\') ? path : path + u'\\';
}

QString Text::PathOnly(const QString& path) {
    if (!path.contains(u'.')) {
        return path;
    }
    const qsizetype separator = std::max(path.lastIndexOf(u'\\'), path.lastIndexOf(u'/'));
    return separator >= 0 ? path.left(separator) : path.left(path.indexOf(u':') + 1);
}

bool Text::MatchesWildcard(const QString& text, const QString& pattern) {
    const std::vector<Token> tokens = ParsePattern(pattern);
    // Only the last run needs to be widened again: a later run can take whatever an earlier one could.
    std::size_t token = 0;
    qsizetype position = 0;
    std::size_t runToken = tokens.size();
    qsizetype runPosition = 0;
    while (position < text.size()) {
        if (token < tokens.size() && tokens[token].Type == Token::Kind::AnyRun) {
            runToken = token++;
            runPosition = position;
        } else if (token < tokens.size() && tokens[token].Accepts(text.at(position).unicode())) {
            ++token;
            ++position;
        } else if (runToken < tokens.size()) {
            token = runToken + 1;
            position = ++runPosition;
        } else {
            return false;
        }
    }
    return std::all_of(tokens.begin() + static_cast<std::ptrdiff_t>(token), tokens.end(),
                       [](const Token& rest) { return rest.Type == Token::Kind::AnyRun; });
}
