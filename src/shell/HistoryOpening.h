#pragma once

#include <QString>

#include <functional>

class AppContext;
class ComposeArea;
class HistoryHost;
class QWidget;
struct Machine;

/// What the history window needs of the main window.
struct HistoryOpeningParts {
    QWidget& Form;
    HistoryHost& Host;
    ComposeArea& Compose;
    /// Asks for the password of the public history.
    std::function<bool()> PublicHistoryPasswordCheck;
    /// True once the window was closed: nothing is opened over it any more.
    std::function<bool()> IsUnloaded;
};

/// A press on cmdHistory: opens the message history, the public one with Ctrl held and its password, and goes
/// back to the message when a text was taken from there.
class HistoryOpening {
public:
    /// Everything given outlives it.
    HistoryOpening(AppContext& context, const Machine& machine, HistoryOpeningParts parts);

    /// A press while a long operation runs, or while the history is open, does nothing.
    void Open();

private:
    void ShowHistory();

    AppContext& m_context;
    const Machine& m_machine;
    HistoryOpeningParts m_parts;
};
