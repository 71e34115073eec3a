#include "app/cli/DRProgressPrinter.h"

#include "app/cli/DRTerminal.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kMillisecondsBetweenLines = 5000;
constexpr int kWidestBar = 40;

DRProgressMode modeFor(const DRTerminal& terminal, DRProgressMode wanted)
{
    if (terminal.isQuiet()) {
        return DRProgressMode::None;
    }
    if (wanted == DRProgressMode::Bar || wanted == DRProgressMode::Auto) {
        return terminal.canRedraw() ? DRProgressMode::Bar : DRProgressMode::Lines;
    }
    return wanted;
}

int percent(double fraction)
{
    return static_cast<int>(std::clamp(fraction, 0.0, 1.0) * 100.0);
}

} // namespace

DRProgressPrinter::DRProgressPrinter(DRTerminal& terminal, DRProgressMode mode)
    : m_terminal(terminal), m_mode(modeFor(terminal, mode))
{
    m_sinceLine.start();
}

void DRProgressPrinter::phase(const QString& title)
{
    m_title = title;
    if (m_mode == DRProgressMode::Lines) {
        m_terminal.say(title + u" …"_s);
        m_sinceLine.restart();
    }
}

void DRProgressPrinter::progress(double fraction, const QString& timeLeft)
{
    if (m_mode == DRProgressMode::Bar) {
        drawBar(fraction, timeLeft);
    }
    if (m_mode == DRProgressMode::Lines && m_sinceLine.elapsed() >= kMillisecondsBetweenLines) {
        m_terminal.say(u"%1: %2 %, about %3 left"_s.arg(m_title).arg(percent(fraction)).arg(timeLeft));
        m_sinceLine.restart();
    }
}

void DRProgressPrinter::drawBar(double fraction, const QString& timeLeft)
{
    const QString figures = u" %1 %  about %2 left"_s.arg(percent(fraction), 3).arg(timeLeft);
    // A line as wide as the terminal would wrap, and the next one would not cover it.
    const qsizetype room = m_terminal.width() - m_title.size() - figures.size() - 4;
    const qsizetype cells = std::clamp<qsizetype>(room, 0, kWidestBar);
    const qsizetype full = cells * percent(fraction) / 100;
    const QString bar = cells == 0 ? QString() : u" ["_s + QString(full, u'#') + QString(cells - full, u'.') + u']';
    m_terminal.redraw((m_title + bar + figures).left(m_terminal.width() - 1));
}
