#pragma once

/// How the program ends, for scripts. 11 to 17 are 10 plus the code of the wizard's error event.
enum class DRExitCode {
    Done = 0,
    InternalError = 1,
    Usage = 2,
    NotEnoughSpace = 11,
    NoBackup = 12,
    EncryptedBackup = 13,
    SystemTooOld = 14,
    PhoneIncompatible = 15,
    FailedPhoneUnchanged = 16, ///< also: refused before it started
    FailedPhoneChanged = 17,
    NoPhone = 18,
    UnreadableLayout = 19,
    DoneWithSkips = 20, ///< something was skipped; the summary names it
    Interrupted = 130,
};
