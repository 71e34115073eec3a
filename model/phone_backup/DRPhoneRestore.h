#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <QDateTime>
#include <QString>

#include "model/phone_backup/DRPhoneRestorePlan.h"
#include "platform/core/DRNotificationCenter.h"
#include "platform/device/DRBRBackupInfo.h"
#include "platform/device/DRDCDeviceTask.h"

struct DRMigrateServices;

/// How putting a phone's apps back ended.
struct DRPhoneRestoreResult {
    enum class Ending {
        PutBack,        ///< every app of the plan is on the phone again as the backup holds it
        NotKept,        ///< the phone's present state could not be kept, see `failures`; nothing was written
        NotEnoughSpace, ///< on the phone, see `missingBytes`; nothing was written
        PhoneGone,      ///< before anything was written
        Failed,         ///< while or after the phone was written, see `failures`
    };

    Ending ending = Ending::Failed;
    QStringList putBack;                     ///< packet IDs that the phone holds again, which was verified
    std::vector<DRDCPacketProblem> failures; ///< every other one of the plan, once the phone was written
    quint64 missingBytes = 0;
    QString keptPath; ///< the folder of the phone backup that was made before; empty when there is none
};

/// Puts a phone's apps back to what a phone backup holds: keeps their present state as a new phone backup, hands the
/// backup's packets to the phone, each whole or not at all, asks the phone for them again and compares. What else is
/// on the phone stays, copied media included. Main thread; lives until its end or until it is cancelled.
class DRPhoneRestore final : public std::enable_shared_from_this<DRPhoneRestore> {
    struct Token {};

public:
    enum class Phase { BackUp, Restore, Verify };

    /// Is told how it goes.
    class Observer {
    public:
        virtual ~Observer() = default;

        /// `Restore` is told just before the phone is written.
        virtual void phaseChanged(Phase phase) = 0;

        /// The share of all the work that is done, 0 to 1.
        virtual void progressed(double fraction) = 0;

        virtual void ended(const DRPhoneRestoreResult& result) = 0;
    };

    struct Request {
        DRDCDevicePointer phone;
        DRPhoneRestorePlan plan; ///< checked, and without an obstacle
        QString keptName;        ///< of the new phone backup
        QDateTime keptDate;
        QString applicationVersion; ///< of the program that makes it
        QString checkFolder;        ///< a private folder for what is fetched to compare; the caller removes it
    };

    /// Begins; the observer outlives the end, or the call of `cancel`.
    [[nodiscard]] static std::shared_ptr<DRPhoneRestore>
    start(Request request, const DRMigrateServices& services, Observer& observer);

    /// For `start` only.
    DRPhoneRestore(Token token, Request request, const DRMigrateServices& services, Observer& observer);

    [[nodiscard]] Phase phase() const { return m_phase; }

    /// The folder of the new phone backup; empty before it is complete.
    [[nodiscard]] const QString& keptPath() const { return m_result.keptPath; }

    /// Ends without a further word. Only before the phone is written: later it is finished first.
    void cancel();

private:
    [[nodiscard]] DRBRBackupInfo description(const QString& folder, const QStringList& packetIDs) const;
    [[nodiscard]] DRDCDeviceTaskPointer newTask(Phase phase);
    [[nodiscard]] QStringList sortOrder() const;

    void backUp();
    void didBackUp(const QString& folder, const DRDCTaskResult& result);
    [[nodiscard]] quint64 missingBytes() const;
    void restore();
    void didRestore(const DRDCTaskResult& result);
    void verify();
    void didFetchAgain(const DRDCTaskResult& result);
    void didCompare(const QStringList& different);
    void end(DRPhoneRestoreResult::Ending ending);

    Request m_request;
    const DRMigrateServices& m_services;
    Observer* m_observer; ///< null once it is cancelled
    Phase m_phase = Phase::BackUp;
    QStringList m_written; ///< packet IDs that the phone has taken, less those that are known to have failed
    DRPhoneRestoreResult m_result;
    DRDCDeviceTaskPointer m_task;
    std::unique_ptr<DRNotificationCenter::Registration> m_progress;
};
