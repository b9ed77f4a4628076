#pragma once

#include <QString>

#include <stdexcept>

/// The moment at which a real gateway would give a message to the operator: what must never happen twice for
/// a row.
class HandOver {
public:
    virtual ~HandOver() = default;
    /// False if the message could not be handed over; it is not tried again.
    [[nodiscard]] virtual bool Send(qint32 id) = 0;
};

/// Hands over to nobody.
class NoHandOver final : public HandOver {
public:
    [[nodiscard]] bool Send(qint32) override { return true; }
};

/// Appends a line "msgID sent" to a file for each message, one write a line, so that several gateways can
/// share the file.
class JournalHandOver final : public HandOver {
public:
    /// Throws std::runtime_error if the file cannot be opened. A new one gets mode 0600.
    explicit JournalHandOver(const QString& path);
    ~JournalHandOver() override;
    JournalHandOver(const JournalHandOver&) = delete;
    JournalHandOver& operator=(const JournalHandOver&) = delete;
    [[nodiscard]] bool Send(qint32 id) override;

private:
    int m_descriptor = -1;
};
