#pragma once

#include "model/phone_backup/DRPhoneRestore.h"

#include <functional>
#include <memory>

#include <QString>

struct DRMigrateServices;

/// Puts a phone's apps back to what a phone backup holds, and does what belongs to that beside the phone: names and
/// dates the new phone backup, notes in the ledger what leaves the phone and what returns to it, and leaves no private
/// files in the working folder, which the caller has locked. The command line and the window use the same. Main thread.
class DRPhoneUndo final : private DRPhoneRestore::Observer {
public:
    struct Setup {
        const DRMigrateServices& services;
        QString ledgerPath;
        QString applicationVersion;         ///< of this program, kept in the new phone backup
        std::function<void()> filesAreLeft; ///< called each time the working folder cannot be emptied
    };

    /// What `setup` refers to, and the observer, outlive this object.
    DRPhoneUndo(Setup setup, DRPhoneRestore::Observer& observer);

    /// Cancels. Once the phone is written, the object must stand until that has ended.
    ~DRPhoneUndo() override;
    DRPhoneUndo(const DRPhoneUndo&) = delete;
    DRPhoneUndo& operator=(const DRPhoneUndo&) = delete;

    /// Reads the plan's packets to their end, in the background; `done` gets the plan that tells which are damaged.
    /// Nothing is written.
    void check(const DRPhoneRestorePlan& plan, std::function<void(const DRPhoneRestorePlan&)> done);

    /// Puts the apps of a checked plan without an obstacle back, once. The observer is told how it goes.
    void start(const DRDCDevicePointer& phone, const DRPhoneRestorePlan& plan);

    /// Ends the check or, before the phone is written, the work, without a further word.
    void cancel();

    /// The name of the new phone backup; null before the start.
    [[nodiscard]] const QString& keptName() const { return m_request.keptName; }

    /// The folder of the new phone backup; empty before it is complete.
    [[nodiscard]] QString keptPath() const;

    /// Whether the ledger could be written as far as there was something to note.
    [[nodiscard]] bool isNoted() const { return m_isNoted; }

private:
    struct Check;

    void phaseChanged(DRPhoneRestore::Phase phase) override;
    void progressed(double fraction) override;
    void ended(const DRPhoneRestoreResult& result) override;

    void clearWorkingFolder() const;

    Setup m_setup;
    DRPhoneRestore::Observer& m_observer;
    std::shared_ptr<Check> m_check; ///< shared with the background
    DRPhoneRestore::Request m_request;
    std::shared_ptr<DRPhoneRestore> m_restore;
    bool m_isNoted = true;
};
