#include "larkspan-gateway/Gateway.h"

#include "larkspan-gateway/HandOver.h"
#include "larkspan-gateway/MessageStatus.h"
#include "platform/Clock.h"
#include "store/office/SmsParts.h"

#include <algorithm>
#include <limits>

namespace {

constexpr qint64 RecoveryInterval = 5000;  // ms
constexpr int RecoveryRows = 1000;
constexpr int LongestSleep = 50;  // ms; how long a stop may go unnoticed

// Delivery reports of 3GPP TS 23.040, 9.2.3.15.
constexpr int ReportDelivered = 0x00;
constexpr int ReportUnableToConfirm = 0x01;
constexpr int ReportValidityExpired = 0x46;

const QString ReasonRefused = QStringLiteral("The network operator did not accept the message");
const QString ReasonTooLong = QStringLiteral("The message is too long");
const QString ReasonUnconfirmed = QStringLiteral("No delivery report came back");
const QString ReasonExpired = QStringLiteral("The message expired before it could be delivered");
const QString ReasonInterrupted =
    QStringLiteral("The gateway was interrupted while it handed the message over");

QString Ending(const QString& reason) {
    return QStringLiteral(", msgComplete = TRUE, msgErrorReason = '%1'").arg(reason);
}

class OpenScope {
public:
    explicit OpenScope(GatewayOutbox& outbox) : m_outbox(outbox) { m_outbox.Open(); }
    ~OpenScope() { m_outbox.Close(); }
    OpenScope(const OpenScope&) = delete;
    OpenScope& operator=(const OpenScope&) = delete;

private:
    GatewayOutbox& m_outbox;
};

class ShareScope {
public:
    explicit ShareScope(GatewayLock& lock) : m_lock(lock) {}
    ~ShareScope() { m_lock.Share(); }
    ShareScope(const ShareScope&) = delete;
    ShareScope& operator=(const ShareScope&) = delete;

private:
    GatewayLock& m_lock;
};

}  // namespace

Gateway::Gateway(const GatewaySettings& settings, const DBServices& services, const QString& outboxFile,
                 GatewayLock& lock, HandOver& handOver, Listener listener)
    : m_settings(settings),
      m_clock(services.Clock),
      m_outbox(services, outboxFile),
      m_lock(lock),
      m_handOver(handOver),
      m_listener(std::move(listener)),
      m_outcomes(settings.FailureRules, settings.FailureRate, settings.Seed),
      m_started(services.Clock.Now()),
      m_tokenTicks(services.Clock.Ticks()) {}

void Gateway::CheckOutbox() {
    const OpenScope open(m_outbox);
    try {
        static_cast<void>(m_outbox.Due(m_started, 1));
        // No row has the number 0: this only finds out whether the file can be written.
        static_cast<void>(m_outbox.Make({{0, MessageStatus::Waiting, MessageStatus::Handing, {}}}));
    } catch (const OutboxFailure& failure) {
        if (!failure.CanTryAgain()) {
            throw;
        }
    }
}

void Gateway::Run(const std::function<bool()>& isStopped) {
    bool isTroubled = false;
    while (!isStopped()) {
        std::optional<int> wait = m_settings.Poll;
        try {
            wait = Round();
            isTroubled = false;
        } catch (const OutboxFailure& failure) {
            if (!failure.CanTryAgain()) {
                throw;
            }
            if (!isTroubled && m_listener.OnTrouble) {
                m_listener.OnTrouble(QString::fromUtf8(failure.what()));
            }
            isTroubled = true;
        }
        if (!wait) {
            break;
        }
        Wait(*wait, isStopped);
    }
    Settle();
}

std::optional<int> Gateway::Round() {
    const OpenScope open(m_outbox);
    if (m_clock.Ticks() >= m_nextRecovery) {
        Recover();
    }
    const qint64 ticks = m_clock.Ticks();
    TakeReports(ticks);
    TakeAnswers(ticks);
    const QDateTime now = m_settings.Mode == GatewaySettings::RunMode::Once ? m_started : m_clock.Now();
    const int allowance = Allowance();
    const int taken = allowance > 0 ? TakeRows(now, allowance) : 0;
    if (IsAtEnd(now)) {
        return std::nullopt;
    }
    return WaitTime(taken, allowance);
}

void Gateway::TakeAnswers(qint64 ticks) {
    const auto makeMove = [this](const Flight& flight) { return AnswerOf(flight); };
    MoveDue(m_handed, ticks, makeMove, [this](Flight flight) {
        if (flight.EndStatus == MessageStatus::NotSent) {
            End(flight);
            return;
        }
        flight.DueTicks = m_clock.Ticks() + m_settings.DelayDelivery;
        m_enRoute.push_back(flight);
    });
}

void Gateway::TakeReports(qint64 ticks) {
    const auto makeMove = [this](const Flight& flight) { return ReportOf(flight); };
    MoveDue(m_enRoute, ticks, makeMove, [this](const Flight& flight) { End(flight); });
}

void Gateway::MoveDue(Flights& flights, qint64 ticks,
                      const std::function<StatusMove(const Flight&)>& makeMove,
                      const std::function<void(const Flight&)>& onMoved) {
    while (!flights.empty() && flights.front().DueTicks <= ticks) {
        QList<StatusMove> moves;
        for (const Flight& flight : flights) {
            if (flight.DueTicks > ticks || moves.size() == GatewayOutbox::Batch) {
                break;
            }
            moves.append(makeMove(flight));
        }
        const QList<qint32> changed = m_outbox.Make(moves);
        for (qsizetype i = 0; i < moves.size(); ++i) {
            const Flight flight = flights.front();
            flights.pop_front();
            if (changed.contains(flight.ID)) {
                onMoved(flight);
            } else {
                m_own.remove(flight.ID);  // somebody else changed or deleted the row: it is theirs now
            }
        }
    }
}

StatusMove Gateway::AnswerOf(const Flight& flight) const {
    const QString tariff = QStringLiteral(", msgTariff = %1, msgFragmentCount = %2").arg(m_settings.Tariff);
    if (flight.EndStatus == MessageStatus::NotSent) {
        return {flight.ID, MessageStatus::Handing, MessageStatus::NotSent,
                tariff.arg(0) + Ending(flight.Reason)};
    }
    return {flight.ID, MessageStatus::Handing, MessageStatus::EnRoute, tariff.arg(flight.Fragments)};
}

StatusMove Gateway::ReportOf(const Flight& flight) const {
    StatusMove move{flight.ID, MessageStatus::EnRoute, flight.EndStatus, {}};
    const QString code = QStringLiteral(", msgDeliveryStatus = %1");
    if (flight.EndStatus == MessageStatus::Delivered) {
        move.Assignments = code.arg(ReportDelivered) +
                           QStringLiteral(", msgComplete = TRUE, msgDeliveryTime = ") +
                           SqlDate(m_clock.Now());
    } else if (flight.EndStatus == MessageStatus::Unconfirmed) {
        move.Assignments = code.arg(ReportUnableToConfirm) + Ending(ReasonUnconfirmed);
    } else {
        move.Assignments = code.arg(ReportValidityExpired) + Ending(ReasonExpired);
    }
    return move;
}

int Gateway::TakeRows(const QDateTime& now, int limit) {
    const QList<OutboxRow> rows = m_outbox.Due(now, limit);
    QList<StatusMove> moves;
    for (const OutboxRow& row : rows) {
        moves.append({row.ID, MessageStatus::Waiting, MessageStatus::Handing, {}});
    }
    const QList<qint32> taken = m_outbox.Make(moves);
    for (const OutboxRow& row : rows) {
        if (taken.contains(row.ID)) {
            HandOverRow(row);
        }
    }
    m_tokens -= static_cast<double>(taken.size());
    return static_cast<int>(rows.size());
}

void Gateway::HandOverRow(const OutboxRow& row) {
    Flight flight{row.ID, m_outcomes.StatusFor(row.Address), SmsParts::Count(row.Text),
                  m_clock.Ticks() + m_settings.DelayOperator, ReasonRefused};
    if (flight.Fragments > SmsParts::MaxParts) {
        flight.EndStatus = MessageStatus::NotSent;
        flight.Reason = ReasonTooLong;
    } else if (!m_handOver.Send(row.ID)) {
        flight.EndStatus = MessageStatus::NotSent;
    } else {
        ++m_counts.HandedOver;
    }
    m_own.insert(flight.ID);
    m_handed.push_back(flight);
}

void Gateway::Recover() {
    m_nextRecovery = m_clock.Ticks() + RecoveryInterval;
    m_hasOrphans = false;
    if (!m_lock.TryAlone()) {
        return;  // what stands at 1 and 3 belongs to the other one, and to this one when that has ended
    }
    const ShareScope share(m_lock);
    const QList<OutboxRow> handed = m_outbox.AtStatus(MessageStatus::Handing, RecoveryRows);
    const QList<OutboxRow> enRoute = m_outbox.AtStatus(MessageStatus::EnRoute, RecoveryRows);
    m_hasOrphans = handed.size() == RecoveryRows || enRoute.size() == RecoveryRows;
    GiveUpHanded(handed);
    for (const OutboxRow& row : enRoute) {
        if (m_own.contains(row.ID)) {
            continue;
        }
        const qint32 status = m_outcomes.StatusFor(row.Address);
        m_own.insert(row.ID);
        m_enRoute.push_back({row.ID,
                             status == MessageStatus::NotSent ? MessageStatus::NotDelivered : status,
                             SmsParts::Count(row.Text),
                             m_clock.Ticks() + m_settings.DelayDelivery,
                             {}});
        ++m_counts.Recovered;
    }
}

void Gateway::GiveUpHanded(const QList<OutboxRow>& rows) {
    QList<StatusMove> moves;
    for (const OutboxRow& row : rows) {
        if (!m_own.contains(row.ID)) {
            moves.append({row.ID, MessageStatus::Handing, MessageStatus::Unconfirmed,
                          QStringLiteral(", msgDeliveryStatus = %1").arg(ReportUnableToConfirm) +
                              Ending(ReasonInterrupted)});
        }
    }
    for (const qint32 id : m_outbox.Make(moves)) {
        ++m_counts.Recovered;
        End({id, MessageStatus::Unconfirmed, 0, 0, {}});
    }
}

int Gateway::Allowance() {
    if (m_settings.Rate == 0) {
        return GatewayOutbox::Batch;
    }
    const qint64 ticks = m_clock.Ticks();
    const double burst = std::max(1.0, m_settings.Rate / 10.0);
    m_tokens =
        std::min(burst, m_tokens + static_cast<double>(ticks - m_tokenTicks) * m_settings.Rate / 1000.0);
    m_tokenTicks = ticks;
    return std::min(GatewayOutbox::Batch, static_cast<int>(m_tokens));
}

bool Gateway::IsAtEnd(const QDateTime& now) {
    if (m_settings.Mode == GatewaySettings::RunMode::Forever || InFlight() > 0 ||
        !m_outbox.Due(now, 1).isEmpty()) {
        return false;
    }
    if (m_settings.Mode == GatewaySettings::RunMode::UntilIdle) {
        Recover();
    }
    return InFlight() == 0 && !m_hasOrphans;
}

int Gateway::WaitTime(int taken, int allowance) const {
    qint64 wait = m_settings.Poll;
    if (taken == allowance) {
        wait = m_settings.Rate == 0 ? 0 : std::min<qint64>(wait, 1 + 1000 / m_settings.Rate);
    }
    const qint64 ticks = m_clock.Ticks();
    for (const Flights* flights : {&m_handed, &m_enRoute}) {
        if (!flights->empty()) {
            wait = std::min(wait, flights->front().DueTicks - ticks);
        }
    }
    return static_cast<int>(std::max<qint64>(0, wait));
}

void Gateway::Settle() {
    if (m_handed.empty()) {
        return;
    }
    try {
        const OpenScope open(m_outbox);
        TakeAnswers(std::numeric_limits<qint64>::max());
    } catch (const OutboxFailure& failure) {
        if (m_listener.OnTrouble) {
            m_listener.OnTrouble(QString::fromUtf8(failure.what()));
        }
    }
}

void Gateway::Wait(int milliseconds, const std::function<bool()>& isStopped) {
    const qint64 end = m_clock.Ticks() + milliseconds;
    for (qint64 left = milliseconds; left > 0 && !isStopped(); left = end - m_clock.Ticks()) {
        m_clock.Sleep(static_cast<int>(std::min<qint64>(left, LongestSleep)));
    }
}

void Gateway::End(const Flight& flight) {
    m_own.remove(flight.ID);
    ++m_counts.Ended;
    if (m_listener.OnEnd) {
        m_listener.OnEnd(flight.ID, flight.EndStatus,
                         flight.EndStatus == MessageStatus::NotSent ? 0 : flight.Fragments);
    }
}
