#include "larkspan-gateway/Outcomes.h"

#include "larkspan-gateway/MessageStatus.h"

#include <algorithm>
#include <iterator>

QList<FailureRule> Outcomes::DefaultRules() {
    return {{QStringLiteral("004"), MessageStatus::NotSent},
            {QStringLiteral("006"), MessageStatus::Unconfirmed},
            {QStringLiteral("007"), MessageStatus::NotDelivered}};
}

Outcomes::Outcomes(const QList<FailureRule>& rules, double failureRate, quint32 seed)
    : m_rules(rules), m_failureRate(failureRate), m_random(seed) {}

qint32 Outcomes::StatusFor(const QString& address) {
    QString digits;
    std::copy_if(address.begin(), address.end(), std::back_inserter(digits),
                 [](QChar character) { return character >= u'0' && character <= u'9'; });
    for (const FailureRule& rule : m_rules) {
        if (digits.endsWith(rule.Digits)) {
            return rule.Status;
        }
    }
    if (m_failureRate <= 0 || m_random.generateDouble() * 100 >= m_failureRate) {
        return MessageStatus::Delivered;
    }
    constexpr qint32 Failures[] = {MessageStatus::NotSent, MessageStatus::Unconfirmed,
                                   MessageStatus::NotDelivered};
    return Failures[m_random.bounded(3)];
}
