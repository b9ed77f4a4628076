#pragma once

#include "larkspan-gateway/GatewayLock.h"
#include "larkspan-gateway/GatewayOutbox.h"
#include "larkspan-gateway/Outcomes.h"

#include <QSet>

#include <deque>
#include <functional>
#include <optional>

class HandOver;

/// What a gateway is told when it starts.
struct GatewaySettings {
    /// Until it is stopped; until what is due has come to its end; the same for what another run left too.
    enum class RunMode { Forever, Once, UntilIdle };

    RunMode Mode = RunMode::Forever;
    int DelayOperator = 1000;  // ms from the hand-over to the operator's answer
    int DelayDelivery = 3000;  // ms from that answer to the delivery report
    int Poll = 500;            // ms between two looks at an outbox where nothing is due
    int Rate = 0;              // hand-overs a second; 0: as fast as they go
    int Tariff = 9;            // hundredths of the currency unit for each fragment
    QList<FailureRule> FailureRules = Outcomes::DefaultRules();
    double FailureRate = 0;  // per cent
    quint32 Seed = 1;
};

/// A stand-in for the service that sends the messages of an outbox. It takes the rows that are due, hands
/// each one over once, moves its status from 0 to 1, 3 and 5 (or to 4, 6 or 7), and writes delivery and cost.
///
/// Never twice: a row is taken by an update that changes it only while its status is 0, so that of several
/// gateways and a user who cancels exactly one wins; the hand-over follows when that stands in the file. A
/// row that another run left at status 1 may or may not have reached the operator: it is not handed over
/// again and ends at 6, delivery unconfirmed. A row left at 3 goes on to its delivery report. Whether another
/// run still lives is told by GatewayLock.
class Gateway {
public:
    /// What there is to say. Message numbers only: no phone number, no text.
    struct Listener {
        /// A message reached the last status that this gateway gives it; `fragments` is 0 if it was not sent
        /// or not known.
        std::function<void(qint32 id, qint32 status, int fragments)> OnEnd;
        /// Something went wrong that is tried again; told once until it works again.
        std::function<void(const QString& text)> OnTrouble;
    };

    /// What one run has done so far, in messages.
    struct Counts {
        int HandedOver = 0;
        int Ended = 0;
        int Recovered = 0;  // taken on from an earlier run
    };

    Gateway(const GatewaySettings& settings, const DBServices& services, const QString& outboxFile,
            GatewayLock& lock, HandOver& handOver, Listener listener);

    /// Throws OutboxFailure if this is no outbox that can be opened, read and written. That somebody holds a
    /// lock is no reason.
    void CheckOutbox();

    /// Works until the mode's end or until `isStopped` says so. Rows that were handed over then get the
    /// operator's answer at once and stand at 3 or further; the next run goes on with them. Throws
    /// OutboxFailure if the outbox can no longer be written for a reason that does not pass.
    void Run(const std::function<bool()>& isStopped);

    /// One round: moves what is due to be moved, takes what is due. Returns the milliseconds until there is
    /// something to do, 0 to Poll; nothing when the mode's end is reached. Throws OutboxFailure.
    [[nodiscard]] std::optional<int> Round();

    [[nodiscard]] const Counts& Done() const { return m_counts; }
    /// Rows that were handed over and have not reached their end.
    [[nodiscard]] int InFlight() const { return static_cast<int>(m_handed.size() + m_enRoute.size()); }

private:
    struct Flight {
        qint32 ID = 0;
        qint32 EndStatus = 0;
        int Fragments = 0;
        qint64 DueTicks = 0;
        QString Reason;
    };
    using Flights = std::deque<Flight>;

    void MoveDue(Flights& flights, qint64 ticks, const std::function<StatusMove(const Flight&)>& makeMove,
                 const std::function<void(const Flight&)>& onMoved);
    void TakeAnswers(qint64 ticks);
    void TakeReports(qint64 ticks);
    [[nodiscard]] StatusMove AnswerOf(const Flight& flight) const;
    [[nodiscard]] StatusMove ReportOf(const Flight& flight) const;
    [[nodiscard]] int TakeRows(const QDateTime& now, int limit);
    void HandOverRow(const OutboxRow& row);
    void Recover();
    void GiveUpHanded(const QList<OutboxRow>& rows);
    [[nodiscard]] int Allowance();
    [[nodiscard]] bool IsAtEnd(const QDateTime& now);
    [[nodiscard]] int WaitTime(int taken, int allowance) const;
    void Settle();
    void Wait(int milliseconds, const std::function<bool()>& isStopped);
    void End(const Flight& flight);

    GatewaySettings m_settings;
    Clock& m_clock;
    GatewayOutbox m_outbox;
    GatewayLock& m_lock;
    HandOver& m_handOver;
    Listener m_listener;
    Outcomes m_outcomes;
    Counts m_counts;
    Flights m_handed;    // at status 1, in the order of their hand-over
    Flights m_enRoute;   // at status 3
    QSet<qint32> m_own;  // the numbers of both
    QDateTime m_started;
    double m_tokens = 1;
    qint64 m_tokenTicks = 0;
    qint64 m_nextRecovery = 0;
    bool m_hasOrphans = false;
};
