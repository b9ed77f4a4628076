#pragma once

#include <QString>
#include <QTextStream>

/// A bar on one line of a terminal, "[#####     ]  50% contacts". Draws only when a whole per cent has
/// passed, and takes its line away when it is destroyed. Without a terminal it writes nothing.
class ProgressBar {
public:
    static constexpr int Width = 30;  // of the bar, in characters

    ProgressBar(QTextStream& stream, bool isTerminal) : m_stream(stream), m_isTerminal(isTerminal) {}
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// `total` 0 counts as done.
    void Show(const QString& step, int done, int total);

    /// Whether standard error is a terminal.
    [[nodiscard]] static bool IsErrorTerminal();

private:
    QTextStream& m_stream;
    bool m_isTerminal;
    QString m_step;
    int m_percent = -1;
};
