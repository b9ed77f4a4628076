#pragma once

/// The one place that lets pending events run in the middle of a routine.
class EventPump {
public:
    virtual ~EventPump() = default;
    /// Lets the user interface process its pending events, `passes` times in a row.
    virtual void Process(int passes) = 0;
};

/// Pumps the event loop of the running QCoreApplication; does nothing where there is none.
class ApplicationEventPump final : public EventPump {
public:
    void Process(int passes) override;
};
