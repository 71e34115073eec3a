#include "app/cli/DRBackupsCommand.h"
#include "app/cli/DRCommandHelp.h"
#include "app/cli/DRDoctorCommand.h"
#include "app/cli/DRInspectCommand.h"
#include "app/cli/DRJsonOutput.h"
#include "app/cli/DRPacketCommand.h"
#include "app/cli/DRPhoneBackupsCommand.h"
#include "app/cli/DRPhoneCommand.h"
#include "app/cli/DRRestoreCommand.h"
#include "app/cli/DRRestoreText.h"
#include "app/cli/DRSampleCommand.h"
#include "app/cli/DRTerminal.h"
#include "app/cli/DRTransferCommand.h"
#include "app/cli/DRTransferSummaryText.h"
#include "app/DRMigrateStartup.h"
#include "platform/core/DRLog.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdlib>
#include <map>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

template <typename Command>
std::unique_ptr<DRCommand> make(const DRCommandLine& line, DRMigrateStartup& startup, DRTerminal& terminal)
{
    return std::make_unique<Command>(line, startup, terminal);
}

std::unique_ptr<DRCommand> commandOf(const DRCommandLine& line, DRMigrateStartup& startup, DRTerminal& terminal)
{
    static const std::map<QString, std::unique_ptr<DRCommand> (*)(const DRCommandLine&, DRMigrateStartup&, DRTerminal&)>
        kCommands{
            {u"backups"_s, make<DRBackupsCommand>}, {u"inspect"_s, make<DRInspectCommand>},
            {u"phone"_s, make<DRPhoneCommand>},     {u"transfer"_s, make<DRTransferCommand>},
            {u"packet"_s, make<DRPacketCommand>},   {u"sample"_s, make<DRSampleCommand>},
            {u"doctor"_s, make<DRDoctorCommand>},   {u"phone-backups"_s, make<DRPhoneBackupsCommand>},
            {u"restore"_s, make<DRRestoreCommand>},
        };
    return kCommands.at(line.command)(line, startup, terminal);
}

DRCommandOutcome usageError(const DRCommandLine& line, DRTerminal& terminal)
{
    DRCommandOutcome outcome{DRExitCode::Usage, withoutControlCharacters(line.usageError) + u'.',
                             u"see what there is: phone-migrate --help"_s};
    if (line.json && line.command == u"transfer") {
        terminal.data(DRJsonOutput::line(DRTransferSummaryText::jsonOfRefusal(outcome)));
    }
    if (line.json && line.command == u"restore") {
        terminal.data(DRJsonOutput::line(DRRestoreText::jsonOfRefusal(outcome)));
    }
    return outcome;
}

bool installLog(const DRCommandLine& line)
{
    const DRLog::Verbosity loud = line.verbose ? DRLog::Verbosity::Verbose : DRLog::Verbosity::Normal;
    return DRLog::install(line.quiet ? DRLog::Verbosity::Quiet : loud, line.logFile);
}

DRMigrateStartupOptions startupOptions(const DRCommandLine& line)
{
    DRMigrateStartupOptions options = DRMigrateStartupOptions::fromEnvironment();
    const auto choose = [](QString& option, const QString& typed) { option = typed.isEmpty() ? option : typed; };
    choose(options.backupsFolder, line.backupsFolder);
    choose(options.phoneFolder, line.phoneFolder);
    choose(options.musicLibrary, line.musicLibrary);
    return options;
}

int end(const DRCommandOutcome& outcome, DRTerminal& terminal)
{
    terminal.error(outcome);
    if (terminal.hasLostData() && outcome.code == DRExitCode::Done) {
        terminal.error({DRExitCode::InternalError, u"The output could not be written."_s,
                        u"write it where there is room, and to a program that reads it to its end"_s});
        return static_cast<int>(DRExitCode::InternalError);
    }
    return static_cast<int>(outcome.code);
}

} // namespace

int main(int argc, char* argv[])
{
    // A reader of our output that goes away must not end a transfer in its middle.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    const QCoreApplication application(argc, argv);
    const DRCommandLine line = DRCommandLine::parse(QCoreApplication::arguments().mid(1));
    DRTerminal terminal(line.quiet ? DRTerminal::Loudness::Quiet : DRTerminal::Loudness::Normal,
                        line.noColor ? DRTerminal::Colours::Never : DRTerminal::Colours::IfWanted);
    if (!line.usageError.isNull()) {
        return end(usageError(line, terminal), terminal);
    }
    if (line.help || line.version) {
        terminal.data(line.help ? DRCommandHelp::text(line.command) : DRCommandHelp::version());
        return end({}, terminal);
    }
    if (!installLog(line)) {
        return end({DRExitCode::Usage,
                    u"The log file %1 cannot be written."_s.arg(withoutControlCharacters(line.logFile)),
                    u"name another one: --log FILE"_s},
                   terminal);
    }
    DRMigrateStartup startup(startupOptions(line));
    const int code = end(commandOf(line, startup, terminal)->run(), terminal);
    if (code == static_cast<int>(DRExitCode::Interrupted)) {
        // Background tasks may still run; whoever pressed Ctrl-C does not wait for them.
        startup.discardScratch();
        std::_Exit(code);
    }
    return code;
}
