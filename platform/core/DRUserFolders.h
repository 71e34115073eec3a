#pragma once

#include <QString>

/// The user's folders that the program works in, after the XDG base directory rules.
struct DRUserFolders {
    QString
        applicationSupport; ///< $XDG_DATA_HOME, else ~/.local/share; iPhone backups lie in "MobileSync/Backup" below it
    QString data;           ///< `applicationSupport`/phone-migrate: phone backups and the record of transfers
    QString temporary;      ///< $XDG_CACHE_HOME/phone-migrate, else ~/.cache/phone-migrate: private working files
    QString state;          ///< $XDG_STATE_HOME/phone-migrate, else ~/.local/state/phone-migrate: the usage log
    QString music;          ///< ~/Music

    /// The folders of the current user, from the environment, with links resolved. Relative values of the XDG variables
    /// are ignored. Nothing is made.
    [[nodiscard]] static DRUserFolders ofCurrentUser();
};
