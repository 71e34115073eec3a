#pragma once

#include <QString>

#include "app/cli/DRCommandOutcome.h"

/// The two output streams and what they can do. Data goes to the standard output, messages to the error stream, each
/// line written at once. No escape codes unless the error stream is a terminal that wants them.
class DRTerminal {
public:
    enum class Loudness { Normal, Quiet };
    enum class Colours { IfWanted, Never };

    DRTerminal(Loudness loudness, Colours colours);

    /// Writes data. What could not be written (a full disk, a closed pipe) is remembered in `hasLostData`.
    void data(const QByteArray& bytes);
    void data(const QString& text) { data(text.toUtf8()); }
    [[nodiscard]] bool hasLostData() const { return m_hasLostData; }

    /// Writes a message line, unless quiet.
    void say(const QString& line);

    /// Writes a question, also when quiet; the answer is typed behind it.
    void ask(const QString& question);

    /// Writes an error with its next step, also when quiet.
    void error(const DRCommandOutcome& outcome);

    /// Draws `line` over the progress line drawn before. Only for terminals that can (`canRedraw`).
    void redraw(const QString& line);

    [[nodiscard]] bool isQuiet() const { return m_isQuiet; }
    [[nodiscard]] bool canRedraw() const { return m_canRedraw; }

    /// Whether a person can be asked: both the input and the error stream are a terminal.
    [[nodiscard]] bool canAsk() const { return m_canAsk; }

    /// The number of columns; 80 when it is not known.
    [[nodiscard]] int width() const;

private:
    void message(const QString& line);

    bool m_isQuiet;
    bool m_hasColours;
    bool m_canRedraw;
    bool m_canAsk;
    bool m_hasLostData = false;
    qsizetype m_drawnLength = 0;
};
