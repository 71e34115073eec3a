#include "app/cli/DRCommandLine.h"

#include "app/cli/DRKinds.h"

#include <algorithm>
#include <array>
#include <span>
#include <variant>

using namespace Qt::StringLiterals;

namespace {

using Flag = bool DRCommandLine::*;
using Value = QString DRCommandLine::*;

struct Option {
    QString name;
    QChar letter;         ///< null when there is no short form
    QStringList commands; ///< the commands that take it; empty for all
    std::variant<Flag, Value> target;
};

std::span<const Option> options()
{
    static const QStringList kEvery;
    static const QStringList kTransfer{u"transfer"_s};
    static const QStringList kWriting{u"transfer"_s, u"restore"_s};
    static const std::array kOptions{
        Option{u"backups"_s, {}, kEvery, &DRCommandLine::backupsFolder},
        Option{u"phone"_s, {}, kEvery, &DRCommandLine::phoneFolder},
        Option{u"music"_s, {}, kEvery, &DRCommandLine::musicLibrary},
        Option{u"log"_s, {}, kEvery, &DRCommandLine::logFile},
        Option{u"progress"_s, {}, kEvery, &DRCommandLine::progressName},
        Option{u"json"_s, {}, kEvery, &DRCommandLine::json},
        Option{u"quiet"_s, {}, kEvery, &DRCommandLine::quiet},
        Option{u"verbose"_s, {}, kEvery, &DRCommandLine::verbose},
        Option{u"no-color"_s, {}, kEvery, &DRCommandLine::noColor},
        Option{u"help"_s, u'h', kEvery, &DRCommandLine::help},
        Option{u"version"_s, u'V', kEvery, &DRCommandLine::version},
        Option{u"only"_s, {}, kWriting, &DRCommandLine::only},
        Option{u"except"_s, {}, kWriting, &DRCommandLine::except},
        Option{u"dry-run"_s, u'n', kWriting, &DRCommandLine::dryRun},
        Option{u"yes"_s, u'y', kWriting, &DRCommandLine::yes},
        Option{u"again"_s, {}, kTransfer, &DRCommandLine::again},
        Option{u"keep-work"_s, {}, kTransfer, &DRCommandLine::keepWork},
        Option{u"force"_s, {}, {u"packet"_s}, &DRCommandLine::force},
        Option{u"scale"_s, {}, {u"sample"_s}, &DRCommandLine::scaleText},
    };
    return kOptions;
}

struct Command {
    QString name;
    qsizetype least; ///< how many arguments it takes
    qsizetype most;
    QString missing; ///< what to say when one is missing
};

std::span<const Command> commands()
{
    static const std::array kCommands{
        Command{u"backups"_s, 0, 0, {}},
        Command{u"inspect"_s, 0, 1, {}},
        Command{u"phone"_s, 0, 0, {}},
        Command{u"transfer"_s, 0, 1, {}},
        Command{u"phone-backups"_s, 0, 0, {}},
        Command{u"restore"_s, 1, 1, u"restore needs a phone backup: a number or name of phone-backups, or a folder"_s},
        Command{u"packet"_s, 2, 3, u"packet needs show FILE, expand FILE DIR or pack DIR FILE"_s},
        Command{u"sample"_s, 1, 1, u"sample needs the folder to write to"_s},
        Command{u"doctor"_s, 0, 0, {}},
    };
    return kCommands;
}

/// Walks through the arguments once and fills the command line.
class Parser {
public:
    explicit Parser(const QStringList& arguments) : m_arguments(arguments) {}

    DRCommandLine parse()
    {
        for (m_at = 0; m_at < m_arguments.size(); ++m_at) {
            take(m_arguments.at(m_at));
        }
        checkCommand();
        checkOptions();
        return m_line;
    }

private:
    void fail(const QString& what)
    {
        if (m_line.usageError.isNull()) {
            m_line.usageError = what;
        }
    }

    void take(const QString& argument)
    {
        if (!m_optionsEnded && argument == u"--") {
            m_optionsEnded = true;
            return;
        }
        if (!m_optionsEnded && argument.startsWith(u"--")) {
            takeLong(argument.mid(2));
            return;
        }
        if (!m_optionsEnded && argument.size() > 1 && argument.startsWith(u'-')) {
            takeLetters(argument.mid(1));
            return;
        }
        if (m_line.command.isEmpty() && !argument.isEmpty()) {
            m_line.command = argument;
            return;
        }
        m_line.arguments << argument;
    }

    void takeLong(const QString& text)
    {
        const qsizetype equals = text.indexOf(u'=');
        const QString name = equals < 0 ? text : text.left(equals);
        const auto found = std::ranges::find(options(), name, &Option::name);
        if (found == options().end()) {
            fail(u"unknown option --"_s + name);
            return;
        }
        apply(*found, equals < 0 ? QString() : text.mid(equals + 1), equals >= 0);
    }

    void takeLetters(const QString& letters)
    {
        for (const QChar letter : letters) {
            const auto found = std::ranges::find(options(), letter, &Option::letter);
            if (found == options().end()) {
                fail(u"unknown option -"_s + letter);
                return;
            }
            apply(*found, {}, false);
        }
    }

    void apply(const Option& option, const QString& attached, bool isAttached)
    {
        m_used << option.name;
        if (const Flag* flag = std::get_if<Flag>(&option.target)) {
            m_line.*(*flag) = true;
            if (isAttached) {
                fail(u"--"_s + option.name + u" takes no value"_s);
            }
            return;
        }
        QString value = attached;
        if (!isAttached && m_at + 1 < m_arguments.size() && !m_arguments.at(m_at + 1).startsWith(u"--")) {
            value = m_arguments.at(++m_at);
        }
        if (value.isEmpty()) {
            fail(u"--"_s + option.name + u" needs a value"_s);
            return;
        }
        m_line.*std::get<Value>(option.target) = value;
    }

    void checkCommand()
    {
        if (m_line.command.isEmpty()) {
            if (!m_line.help && !m_line.version) {
                fail(u"no command was named"_s);
            }
            return;
        }
        const auto found = std::ranges::find(commands(), m_line.command, &Command::name);
        if (found == commands().end()) {
            fail(u"unknown command "_s + m_line.command);
            return;
        }
        if (m_line.help || m_line.version) {
            return;
        }
        if (m_line.arguments.size() < found->least) {
            fail(found->missing);
        }
        if (m_line.arguments.size() > found->most) {
            fail(u"too many arguments: "_s + m_line.arguments.at(found->most));
        }
        for (const Option& option : options()) {
            if (m_used.contains(option.name) && !option.commands.isEmpty() &&
                !option.commands.contains(m_line.command)) {
                fail(u"--"_s + option.name + u" does not go with "_s + m_line.command);
            }
        }
    }

    void checkOptions()
    {
        if (m_used.contains(u"only"_s) && m_used.contains(u"except"_s)) {
            fail(u"--only and --except exclude each other"_s);
        }
        for (const QString& kinds : {m_line.only, m_line.except}) {
            const QString unknown = kinds.isEmpty() ? QString() : DRKinds::fromText(kinds).unknown;
            if (!unknown.isNull()) {
                fail(u"unknown kind \"%1\"; the kinds are %2"_s.arg(unknown, DRKinds::namesOf(DRKinds::allKeys())));
            }
        }
        if (m_line.quiet && m_line.verbose) {
            fail(u"--quiet and --verbose exclude each other"_s);
        }
        checkProgress();
        checkScale();
    }

    void checkProgress()
    {
        static const QStringList kNames{u"auto"_s, u"bar"_s, u"lines"_s, u"none"_s};
        if (m_line.progressName.isEmpty()) {
            return;
        }
        const qsizetype index = kNames.indexOf(m_line.progressName);
        if (index < 0) {
            fail(u"--progress takes auto, bar, lines or none"_s);
            return;
        }
        m_line.progress = static_cast<DRProgressMode>(index);
    }

    void checkScale()
    {
        static constexpr int kLargestScale = 1000;
        if (m_line.scaleText.isEmpty()) {
            return;
        }
        bool isNumber = false;
        m_line.scale = m_line.scaleText.toInt(&isNumber);
        if (!isNumber || m_line.scale < 1 || m_line.scale > kLargestScale) {
            fail(u"--scale takes a number from 1 to %1"_s.arg(kLargestScale));
        }
    }

    const QStringList& m_arguments;
    qsizetype m_at = 0;
    bool m_optionsEnded = false;
    QStringList m_used;
    DRCommandLine m_line;
};

} // namespace

DRCommandLine DRCommandLine::parse(const QStringList& arguments)
{
    return Parser(arguments).parse();
}
