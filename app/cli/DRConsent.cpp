#include "app/cli/DRConsent.h"

#include "app/cli/DRTerminal.h"
#include "app/DRInterrupt.h"

using namespace Qt::StringLiterals;

DRCommandOutcome DRConsent::ask(const QString& question, DRTerminal& terminal, DRInterrupt& interrupt)
{
    if (!terminal.canAsk()) {
        return {DRExitCode::Usage, u"Nobody can be asked here whether to start, because this is no terminal."_s,
                u"add --yes to start without asking, or --dry-run to see what would be done"_s};
    }
    terminal.ask(question);
    const bool isWanted = interrupt.readsYes();
    if (interrupt.hasCome()) {
        terminal.ask(u"\n"_s);
        return stopped();
    }
    if (isWanted) {
        return {};
    }
    return {DRExitCode::FailedPhoneUnchanged, u"Not started, nothing was written to the phone."_s, {}, true};
}

DRCommandOutcome DRConsent::stopped()
{
    return {DRExitCode::Interrupted, u"Stopped, nothing was written to the phone."_s, {}, true};
}
