#pragma once

#include <QString>

/// The pattern test behind phone numbers. With the platform's regular expressions (the normal case) patterns
/// are regular expressions; without them (`WithoutRegEx`) they are wildcard patterns, and the test is weaker.
class PatternMatcher {
public:
    PatternMatcher() = default;
    /// A matcher as on a platform without regular expressions.
    [[nodiscard]] static PatternMatcher WithoutRegEx();

    /// A plus sign and 5 to 30 digits, nothing else; without regular expressions a plus sign, a digit and
    /// anything after that.
    [[nodiscard]] bool IsInternationalPhone(const QString& text) const;
    /// True if `pattern` is found in `text`; without regular expressions if the whole text matches the
    /// wildcard pattern.
    [[nodiscard]] bool Test(const QString& pattern, const QString& text) const;
    [[nodiscard]] bool IsRegEx() const { return m_isRegEx; }

private:
    bool m_isRegEx = true;
};
