#pragma once

#include "platform/core/DRNotificationCenter.h"
#include "platform/device/DRDCDeviceTask.h"
#include "tests/support/DRTestTaskQueue.h"

#include <functional>
#include <memory>
#include <optional>

#include <QByteArray>
#include <QMap>
#include <QObject>
#include <QTemporaryDir>

/// What lies on a phone: packets by packet ID, files by their path on the storage. Anything else that a phone holds,
/// such as a temporary file, must show up here too.
struct DRPhoneContent {
    QMap<QString, QByteArray> packets;
    QMap<QString, QByteArray> storage;

    bool operator==(const DRPhoneContent&) const = default;
};

/// A phone that the suite may treat as it likes. Each kind of phone has one for its tests.
class DRPhoneUnderTest {
public:
    virtual ~DRPhoneUnderTest() = default;

    [[nodiscard]] virtual DRDCDevicePointer device() = 0;
    [[nodiscard]] virtual DRPhoneContent content() const = 0;

    /// Takes the phone away, at once and for good.
    virtual void vanish() = 0;

    /// Lets the phone accept no more than so many bytes of each file until the answer is destroyed.
    [[nodiscard]] virtual std::shared_ptr<void> failWritesAfter(quint64 bytes) = 0;
};

/// What every phone has to do. Run by a test program of each kind of phone, with a factory that makes such phones.
class DRDeviceConformance : public QObject {
    Q_OBJECT

public:
    /// Makes a phone that holds this content and has room for so many bytes in all.
    using Factory = std::function<std::unique_ptr<DRPhoneUnderTest>(
        const DRPhoneContent& content, quint64 capacityBytes, DRTaskQueue& queue, DRNotificationCenter& center)>;

    explicit DRDeviceConformance(Factory factory);

private Q_SLOTS:
    void init();
    void cleanup();

    void eventsArriveInOrder_data();
    void eventsArriveInOrder();
    void backupIsWholeAndLeavesThePhoneAlone();
    void backupNeverReplacesAnEarlierOne();
    void backupWithoutAFolderFailsEveryPacket();
    void restoreReplacesWholeOrNotAtAll_data();
    void restoreReplacesWholeOrNotAtAll();
    void copiesFiles_data();
    void copiesFiles();
    void copyThatFailsInTheMiddle();
    void deletesFiles();
    void phoneThatVanished_data();
    void phoneThatVanished();
    void phoneThatVanishesWhileCopying();
    void taskNeedsNobodyToHoldIt();

private:
    enum class Work { Backup, Restore };

    void makePhone(const DRPhoneContent& content, quint64 capacityBytes = 1000);
    void observeTasks();
    [[nodiscard]] QString computerPath(const QString& relativePath) const;
    void writeOnComputer(const QString& relativePath, const QByteArray& bytes) const;
    [[nodiscard]] QByteArray readOnComputer(const QString& relativePath) const;
    void writeRebuilt(const QMap<QString, QByteArray>& packets) const;
    [[nodiscard]] DRDCFilePointer fileToCopy(const QString& source, const QString& targetPath) const;

    /// Each runs to its end, and answers nothing when the handler was not called exactly once.
    [[nodiscard]] std::optional<DRDCTaskResult> runPackets(Work work, const QStringList& packetIDs);
    [[nodiscard]] std::optional<QStringList> runFiles(const std::vector<DRDCFilePointer>& files,
                                                      const QStringList& pathsToDelete = {});

    Factory m_factory;
    std::unique_ptr<QTemporaryDir> m_computer;
    std::unique_ptr<DRTestTaskQueue> m_queue;
    std::unique_ptr<DRNotificationCenter> m_center;
    std::unique_ptr<DRPhoneUnderTest> m_phone;
    std::vector<std::unique_ptr<DRNotificationCenter::Registration>> m_registrations;
    QStringList m_events;            ///< without the progress events, each with the value that it carries
    double m_lastProgress = -1;      ///< of the last progress event
    std::function<void()> m_onEvent; ///< called with each recorded event
};
