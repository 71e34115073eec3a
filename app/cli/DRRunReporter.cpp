#include "app/cli/DRRunReporter.h"

#include "app/cli/DRJsonOutput.h"
#include "app/cli/DRTerminal.h"
#include "platform/core/DRLog.h"
#include "wizard/steps/DRMGSequenceStepTransfer.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kMillisecondsBetweenStatusLines = 100;

} // namespace

DRRunReporter::DRRunReporter(DRTerminal& terminal, const DRCommandLine& line)
    : m_terminal(terminal),
      m_progress(terminal, line.json && line.progress == DRProgressMode::Auto ? DRProgressMode::None : line.progress),
      m_isJson(line.json)
{
}

void DRRunReporter::phaseChanged(const QString& title, QJsonObject line)
{
    if (!title.isEmpty()) {
        m_progress.phase(title);
    }
    line.insert(u"type"_s, u"phase"_s);
    writeLine(line);
}

void DRRunReporter::progressed(double fraction, double secondsRemaining)
{
    m_progress.progress(fraction, DRMGSequenceStepTransfer::timeText(secondsRemaining));
    if (m_sinceStatus.isValid() && m_sinceStatus.elapsed() < kMillisecondsBetweenStatusLines) {
        return;
    }
    m_sinceStatus.start();
    const double seconds = std::isfinite(secondsRemaining) ? secondsRemaining : 0.0;
    writeLine({{u"type"_s, u"status"_s}, {u"fraction"_s, fraction}, {u"secondsRemaining"_s, seconds}});
}

void DRRunReporter::warned(const QString& message)
{
    writeLine({{u"type"_s, u"warning"_s}, {u"message"_s, message}});
    m_terminal.say(u"Warning: "_s + withoutControlCharacters(message));
}

void DRRunReporter::interruptedWhileWriting()
{
    m_terminal.say(u"The phone is being written; this is finished first. Pressing Ctrl-C again ends at once and may "
                   "leave the phone partly changed."_s);
}

DRCommandOutcome DRRunReporter::abandoned(const QString& phoneBackup)
{
    const QString where = phoneBackup.isEmpty()
                              ? QString()
                              : u" To put its apps back as they were before, type: phone-migrate restore '%1'"_s.arg(
                                    withoutControlCharacters(phoneBackup));
    return {
        DRExitCode::Interrupted, u"Stopped while the phone was written; it may be partly changed."_s + where, {}, true};
}

void DRRunReporter::writeLine(const QJsonObject& line)
{
    if (m_isJson) {
        m_terminal.data(DRJsonOutput::line(line));
    }
}

void DRRunReporter::tell(const DRCommandOutcome& outcome)
{
    m_terminal.error(outcome);
}
