#include "app/gui/DRWizardOptions.h"

#include <QCommandLineParser>

#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Option {
    QStringView name;
    QStringView value;
    QStringView description;
    QString& target;
};

} // namespace

DRWizardOptions DRWizardOptions::parse(const QStringList& arguments)
{
    DRWizardOptions options{.startup = DRMigrateStartupOptions::fromEnvironment()};
    const std::array known{
        Option{u"backups", u"dir", u"Look for iPhone backups in this folder.", options.startup.backupsFolder},
        Option{u"phone", u"dir", u"Use the phone kept in this folder.", options.startup.phoneFolder},
        Option{u"music", u"file", u"Take songs from this music library.", options.startup.musicLibrary},
        Option{u"log", u"file", u"Write a log to this file.", options.logFile},
    };
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Moves content from an iPhone backup to an Android phone, step by step."_s);
    for (const Option& option : known) {
        parser.addOption(
            QCommandLineOption(option.name.toString(), option.description.toString(), option.value.toString()));
    }
    const QCommandLineOption restore(u"restore"_s, u"Put a phone's apps back from a phone backup."_s);
    parser.addOption(restore);
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    if (!parser.parse(arguments)) {
        options.error = parser.errorText();
        return options;
    }
    if (!parser.positionalArguments().isEmpty()) {
        options.error = u"There is nothing to do with \"%1\"."_s.arg(parser.positionalArguments().constFirst());
    }
    for (const Option& option : known) {
        const QString typed = parser.value(option.name.toString());
        option.target = typed.isEmpty() ? option.target : typed;
    }
    options.isRestore = parser.isSet(restore);
    if (parser.isSet(help)) {
        options.help = parser.helpText();
    } else if (parser.isSet(version)) {
        options.help = QStringLiteral("phone-migrate-wizard " MIGRATE_VERSION "\n");
    }
    return options;
}
