#pragma once

#include "store/engine/Connection.h"
#include "support/FakeMachine.h"

#include <QString>

#include <gtest/gtest.h>

#include <memory>

/// What the contract suite needs of one engine: an office's two databases, and the world around them. An
/// engine adds one class, and its own file holds only what is its own. Each test makes a new context.
class EngineContext {
public:
    virtual ~EngineContext() = default;

    /// Time stands still but for the engine's own waits.
    FakeClock Time;

    [[nodiscard]] virtual engine::ConnectionFactory& Factory() = 0;
    /// Files of a new, empty office, as Connection::Open takes them.
    [[nodiscard]] virtual QString Outbox() const = 0;
    [[nodiscard]] virtual QString Phonebook() const = 0;
    /// A file of the same folder that is not there.
    [[nodiscard]] virtual QString Missing() const = 0;

    /// Locks held by another program, let go at the end of their life.
    class Lock {
    public:
        virtual ~Lock() = default;
    };
    /// Nobody else writes to the outbox.
    [[nodiscard]] virtual std::unique_ptr<Lock> LockForWriting() = 0;
    /// Everybody else can begin a change of the outbox and nobody can end one.
    [[nodiscard]] virtual std::unique_ptr<Lock> LockForReading() = 0;
    /// Nobody else writes or reads the outbox, nor opens it.
    [[nodiscard]] virtual std::unique_ptr<Lock> LockForAll() = 0;
    /// The outbox and its folder cannot be written as long as it lives.
    [[nodiscard]] virtual std::unique_ptr<Lock> MakeReadOnly() = 0;
    /// The outbox cannot grow as long as it lives, as on a full disk.
    [[nodiscard]] virtual std::unique_ptr<Lock> FillDisk() = 0;
    /// A writer of another process puts `text` into every row of the outbox's messages and dies before it is
    /// done.
    virtual void DieWhileWriting(const QString& text) = 0;
    /// Another program takes the table MessageTail out of the phonebook, and makes it again, empty.
    virtual void DropTails() = 0;
    virtual void MakeTails() = 0;
    /// Spoils the outbox in its middle.
    virtual void Damage() = 0;
    /// All bytes of the outbox, to see that nobody touched it.
    [[nodiscard]] virtual QByteArray Bytes() const = 0;
};

using MakeContext = std::unique_ptr<EngineContext> (*)();
struct EngineParameter {
    const char* Name;
    MakeContext Make;
};

inline void PrintTo(const EngineParameter& parameter, std::ostream* stream) {
    *stream << parameter.Name;
}

/// The engine's contexts under test.
std::unique_ptr<EngineContext> MakeSqliteContext();
