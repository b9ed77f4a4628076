#pragma once

#include "controls/KeyRepeats.h"

#include <QApplication>

class Log;
class MessageBoxes;

/// The application with a last resort: a failure that reaches it out of an event handler is logged and told
/// in one box, and the program goes on. Keys that are held down are told from keys that are pressed again.
class Application final : public QApplication {
    Q_OBJECT
public:
    Application(int& argc, char** argv);

    /// Until this is called, or after it was called with nulls, a failure is only passed over.
    void SetLastResort(Log* log, MessageBoxes* boxes);
    bool notify(QObject* receiver, QEvent* event) override;

private:
    void Report(const std::exception* failure) noexcept;

    KeyRepeats m_keys;
    Log* m_log = nullptr;
    MessageBoxes* m_boxes = nullptr;
    bool m_isReporting = false;
};
