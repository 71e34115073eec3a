#pragma once

#include "app/DRMigrateStartup.h"

/// What was typed behind the program's name.
struct DRWizardOptions {
    DRMigrateStartupOptions startup; ///< what is not typed comes from the environment
    QString logFile;
    bool isRestore = false; ///< whether to put a phone's apps back instead of moving content
    QString error;          ///< what is wrong with the arguments, for a person; null when nothing is
    QString help;           ///< what to print instead of starting; null when nothing was asked

    /// `arguments` begin with the program's name.
    [[nodiscard]] static DRWizardOptions parse(const QStringList& arguments);
};
