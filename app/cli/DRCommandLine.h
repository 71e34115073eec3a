#pragma once

#include <QString>
#include <QStringList>

/// How progress is shown.
enum class DRProgressMode { Auto, Bar, Lines, None };

/// What was typed: a command, its arguments and options.
struct DRCommandLine {
    QString command;       ///< empty when none was named
    QStringList arguments; ///< what follows the command, without options

    QString backupsFolder;
    QString phoneFolder;
    QString musicLibrary;
    QString logFile;
    QString only;   ///< kinds, comma-separated
    QString except; ///< kinds, comma-separated
    QString progressName;
    QString scaleText;
    bool json = false;
    bool quiet = false;
    bool verbose = false;
    bool noColor = false;
    bool help = false;
    bool version = false;
    bool dryRun = false;
    bool yes = false;
    bool again = false;
    bool keepWork = false;
    bool force = false;

    DRProgressMode progress = DRProgressMode::Auto; ///< from `progressName`
    int scale = 1;                                  ///< from `scaleText`

    /// The first thing that is wrong with what was typed; null when all is well.
    QString usageError;

    /// Reads the arguments, without the program's name. Options may stand before or after the command; a value follows
    /// its option or an equals sign; "--" ends the options. After an error the rest is still read, so that `json` is
    /// known.
    [[nodiscard]] static DRCommandLine parse(const QStringList& arguments);
};
