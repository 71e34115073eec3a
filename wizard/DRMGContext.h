#pragma once

#include <QString>

struct DRMigrateServices;
class DRAnalytics;
class DRLocalizedStrings;
class DRSequenceResourceManager;
class DRTimerSource;

/// What the wizard's steps work with. Made by the program's start; all of it outlives the sequence.
struct DRMGContext {
    const DRMigrateServices& services;
    DRAnalytics& analytics;
    const DRLocalizedStrings& strings;
    DRSequenceResourceManager& resources;
    DRTimerSource& timers;
    QString backupsFolder;      ///< where iPhone backups are looked for
    QString applicationVersion; ///< this program's version, kept in phone backups
    QString supportAddress;     ///< the page where people get help; empty when there is none
    QString ledgerPath;         ///< where transfers are remembered; empty when the caller sees to repeats itself
};
