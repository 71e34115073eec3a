#pragma once

#include "model/packet/DRTarHeader.h"
#include "model/phone_backup/DRPhoneBackup.h"
#include "platform/core/DRPropertyList.h"
#include "tests/wizard/DRTextTables.h"
#include "tests/wizard/WizardFixture.h"
#include "wizard/restore/DRMGRestoreSequence.h"
#include "wizard/restore/DRMGRestoreStepChoose.h"
#include "wizard/restore/DRMGRestoreStepOutcome.h"
#include "wizard/restore/DRMGRestoreStepPutBack.h"

/// A computer with backups of a phone with two apps, and the sequence that puts one back; every text is its identifier.
struct RestoreFixture : WizardFixture {
    explicit RestoreFixture(const QString& stringsJson = DRTextTables::echoing()) : WizardFixture(stringsJson)
    {
        context.ledgerPath = folder.filePath(QStringLiteral("transfers.json"));
        device->packets = QStringList{kCalendar, kNotes};
        device->freeBytes = 10000;
    }

    /// A packet of one file with this content.
    [[nodiscard]] static QByteArray packet(const QByteArray& content)
    {
        const auto size = static_cast<quint64>(content.size());
        return "ANDROID BACKUP\n1\n0\nnone\n" + tarHeader("apps/x/f/data", size, 1) + content +
               QByteArray(static_cast<qsizetype>(tarPadding(size) + kTarEndBytes), '\0');
    }

    /// A backup of both apps that was made on this day of May 2014; answers its folder.
    QString addPhoneBackup(int day, const QString& phone = QStringLiteral("test-phone")) const
    {
        QString backup = backupsFolder() + QStringLiteral("/%1/%2").arg(phone).arg(day);
        const QDateTime date(QDate(2014, 5, day), QTime(12, 0), Qt::UTC);
        const bool isWritten = ::writeFile(
            backup + QStringLiteral("/BackupData.plist"),
            DRPropertyList::xmlFromDictionary({{QStringLiteral("DeviceIdentifier"), phone},
                                               {QStringLiteral("DeviceName"), QStringLiteral("Phone of ") + phone},
                                               {QStringLiteral("BackupName"), QStringLiteral("May %1").arg(day)},
                                               {QStringLiteral("BackupDate"), date},
                                               {QStringLiteral("Packets"), QVariantList{kNotes, kCalendar}}}));
        if (!isWritten || !give(backup, packet("old"))) {
            qFatal("cannot write a file of the test");
        }
        return backup;
    }

    /// Writes these bytes as both packets of the folder.
    [[nodiscard]] static bool give(const QString& backup, const QByteArray& bytes)
    {
        return ::writeFile(DRPhoneBackup::pathOfPacket(backup, kNotes), bytes) &&
               ::writeFile(DRPhoneBackup::pathOfPacket(backup, kCalendar), bytes);
    }

    void start(const QString& preferred = {})
    {
        restore = std::make_unique<DRMGRestoreSequence>(
            context, DRMGRestoreSequence::Backups{.folder = backupsFolder(),
                                                  .preferred = preferred,
                                                  .isWorkingFolderInUse = [this] { return isWorkingFolderInUse; }});
        restore->start();
    }

    /// The phone gives these packets, and ends its task.
    [[nodiscard]] bool answer(const QByteArray& bytes, const DRDCTaskResult& result = {})
    {
        const auto task = device->tasks.back();
        const bool isGiven =
            task->work() == DRTestDeviceTask::Work::Restore || give(task->backupInfo().targetPath(), bytes);
        task->finishPackets(result);
        queue.runAll();
        return isGiven;
    }

    [[nodiscard]] QString backupsFolder() const { return folder.filePath(QStringLiteral("phone-backups")); }
    [[nodiscard]] bool canGoOn() const
    {
        return (restore->choose().stateMask() & DRSequenceStep::kStateNextEnabled) != 0;
    }
    [[nodiscard]] QString key() const
    {
        return restore->currentStep() == nullptr ? QString() : restore->currentStep()->key();
    }

    inline static const QString kNotes = QStringLiteral("com.vornmobile.notes");
    inline static const QString kCalendar = QStringLiteral("com.android.providers.calendar"); // goes first
    bool isWorkingFolderInUse = false;
    std::unique_ptr<DRMGRestoreSequence> restore;
};
