#include "app/cli/DRTerminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <QByteArray>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

/// False when not all of it could be written.
bool writeAll(int descriptor, const QByteArray& bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t written =
            ::write(descriptor, bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done));
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        done += written;
    }
    return true;
}

bool isTerminal(int descriptor)
{
    return ::isatty(descriptor) == 1;
}

} // namespace

DRTerminal::DRTerminal(Loudness loudness, Colours colours)
    : m_isQuiet(loudness == Loudness::Quiet),
      m_hasColours(colours == Colours::IfWanted && isTerminal(STDERR_FILENO) &&
                   qEnvironmentVariableIsEmpty("NO_COLOR") && qgetenv("TERM") != "dumb"),
      m_canRedraw(isTerminal(STDERR_FILENO) && qgetenv("TERM") != "dumb"),
      m_canAsk(isTerminal(STDIN_FILENO) && isTerminal(STDERR_FILENO))
{
}

void DRTerminal::data(const QByteArray& bytes)
{
    m_hasLostData = !writeAll(STDOUT_FILENO, bytes) || m_hasLostData;
}

void DRTerminal::say(const QString& line)
{
    if (!m_isQuiet) {
        message(line);
    }
}

void DRTerminal::ask(const QString& question)
{
    writeAll(STDERR_FILENO, question.toUtf8());
}

void DRTerminal::error(const DRCommandOutcome& outcome)
{
    if (outcome.message.isEmpty()) {
        return;
    }
    if (outcome.isByChoice) {
        message(outcome.message);
        return;
    }
    message((m_hasColours ? u"\x1b[1mError:\x1b[0m "_s : u"Error: "_s) + outcome.message);
    if (!outcome.nextStep.isEmpty()) {
        message(u"Next: "_s + outcome.nextStep);
    }
}

void DRTerminal::redraw(const QString& line)
{
    // Blanks instead of an escape code wipe the rest of the line before, so that NO_COLOR terminals can show it, too.
    const QString padded = line.leftJustified(m_drawnLength, u' ');
    m_drawnLength = line.size();
    writeAll(STDERR_FILENO, (u'\r' + padded).toUtf8());
}

int DRTerminal::width() const
{
    static constexpr int kUsualWidth = 80;
    winsize size{};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) {
        return kUsualWidth;
    }
    return size.ws_col;
}

void DRTerminal::message(const QString& line)
{
    const QString wiped = m_drawnLength == 0 ? QString() : u'\r' + QString(m_drawnLength, u' ') + u'\r';
    m_drawnLength = 0;
    writeAll(STDERR_FILENO, (wiped + line + u'\n').toUtf8());
}
