#pragma once

#include <QList>
#include <QRandomGenerator>
#include <QString>

/// Numbers that end in `Digits` end in `Status` (4, 6 or 7).
struct FailureRule {
    QString Digits;
    qint32 Status = 0;

    bool operator==(const FailureRule&) const = default;
};

/// What becomes of a message: 5 unless a rule on its number or the rate of failures says otherwise.
class Outcomes {
public:
    /// ...004 cannot be sent, ...006 is never confirmed, ...007 is not delivered.
    [[nodiscard]] static QList<FailureRule> DefaultRules();

    /// `failureRate` in per cent, 0 to 100, shared evenly by 4, 6 and 7. The same seed and order of calls
    /// give the same answers.
    Outcomes(const QList<FailureRule>& rules, double failureRate, quint32 seed);

    /// The status that a message to this number ends in. Only the digits of `address` count; the first rule
    /// that fits wins.
    [[nodiscard]] qint32 StatusFor(const QString& address);

private:
    QList<FailureRule> m_rules;
    double m_failureRate;
    QRandomGenerator m_random;
};
