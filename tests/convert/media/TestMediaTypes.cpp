#include "convert/media/DRMigrateAndroidMusic.h"
#include "convert/media/DRMigrateAndroidPhotos.h"
#include "convert/media/DRMigrateAndroidVoiceMemos.h"
#include "convert/media/DRVideoCleaner.h"
#include "platform/device/DRDCNotifications.h"
#include "tests/support/DRTestDevice.h"
#include "tests/support/DRTestServices.h"
#include "tests/support/DRTestTable.h"

using namespace Qt::StringLiterals;

namespace {

DRDCFilePointer file(const QString& name, quint32 kind, quint64 size)
{
    auto made = DRDCFile::fileWithSourcePath(u"/source/"_s + name);
    made->setFileKind(kind);
    made->setFilesize(size);
    made->setMetadata(name, QLatin1StringView(DRDCFile::kTargetFileName));
    return made;
}

DREntryList mixedFiles()
{
    return {file(u"photo.jpg"_s, 0x10, 100), file(u"video.mov"_s, 0x08, 2000), file(u"clip.mp4"_s, 0x20, 30000)};
}

QStringList namesOf(const std::vector<DRDCFilePointer>& files)
{
    QStringList names;
    for (const auto& entry : files) {
        names.append(entry->metadataForKey(QLatin1StringView(DRDCFile::kTargetFileName)).toString());
    }
    return names;
}

/// Fails at every video.
class DroppingCleaner final : public DRVideoCleaner {
public:
    Outcome cleanEntries(const std::vector<DRDCFilePointer>& files) const override
    {
        return {.files = {files.front()}, .dropped = {files.begin() + 1, files.end()}};
    }
};

} // namespace

class TestMediaTypes : public QObject {
    Q_OBJECT

private:
    DRTestServices m_test;

private Q_SLOTS:

    void kindsSelectPhotosAndVideos_data()
    {
        const DRTestTable<quint32, QStringList, quint64> row("mask", "names", "bytes");
        row("photos", 0x10, {u"photo.jpg"_s}, 100);
        row("videos", 0x28, {u"video.mov"_s, u"clip.mp4"_s}, 32000);
        row("both", 0x38, {u"photo.jpg"_s, u"video.mov"_s, u"clip.mp4"_s}, 32100);
        row("none", 0, {}, 0);
    }

    void kindsSelectPhotosAndVideos()
    {
        QFETCH(quint32, mask);
        QFETCH(QStringList, names);
        QFETCH(quint64, bytes);
        DRMigrateAndroidPhotos photos(m_test.services, nullptr);
        photos.setEntries(mixedFiles());
        photos.setFileKindsToTransfer(mask);
        QCOMPARE(namesOf(photos.entriesToTransfer()), names);
        QCOMPARE(photos.bytesToTransfer(), bytes);
        QCOMPARE(photos.bytesNeededForFileKinds(mask), bytes);
        QCOMPARE(photos.mediaCountOfFileKinds(mask), names.size());

        DRMigrateAndroidVoiceMemos memos(m_test.services);
        memos.setEntries(mixedFiles());
        memos.setFileKindsToTransfer(mask);
        QCOMPARE(memos.entriesToTransfer().size(), 3U);
    }

    void bytesAreSummedOnceTheyAreThere()
    {
        DRMigrateAndroidMusic music(m_test.services);
        QCOMPARE(music.bytesToTransfer(), quint64{0});
        music.setEntries(DREntryList{file(u"a.mp3"_s, 4, 10)});
        QCOMPARE(music.bytesToTransfer(), quint64{10});
        music.setEntries(mixedFiles());
        QCOMPARE(music.bytesToTransfer(), quint64{10});
    }

    void nothingToCopyEndsAtOnce()
    {
        const auto photos = std::make_shared<DRMigrateAndroidPhotos>(m_test.services, nullptr);
        photos->setEntries(mixedFiles());
        std::optional<bool> hadResult;
        photos->transferFilesWithTarget(
            [&hadResult](const DRDCFileFailures& failures) { hadResult = failures.has_value(); });
        QCOMPARE(hadResult, std::optional(false));
        QVERIFY((photos->flags() & DRMigrateDataType::kDRMigrateDataTypeFlagRestored) != 0);
    }

    void withoutPhoneEveryFileFails()
    {
        const auto memos = std::make_shared<DRMigrateAndroidVoiceMemos>(m_test.services);
        memos->setEntries(mixedFiles());
        std::size_t failed = 0;
        memos->transferFilesWithTarget([&failed](const DRDCFileFailures& failures) { failed = failures->size(); });
        QCOMPARE(failed, 3U);
        QCOMPARE(memos->report().skipped.size(), 3U);
        QCOMPARE(memos->report().written, qint64{0});
    }

    void copyIsPlacedFollowedAndReported()
    {
        const auto phone = std::make_shared<DRTestDevice>(m_test.notifications);
        m_test.deviceController.setActiveDevice(phone);
        const auto photos = std::make_shared<DRMigrateAndroidPhotos>(m_test.services, nullptr);
        photos->setEntries(mixedFiles());
        photos->setFileKindsToTransfer(0x28);
        std::size_t failed = 0;
        photos->transferFilesWithTarget([&failed](const DRDCFileFailures& failures) { failed = failures->size(); });
        const auto task = phone->tasks.at(0);
        QCOMPARE(task->taskID(), u"kDRMigrateDeviceTaskID_Photos"_s);
        QCOMPARE(task->files().size(), 2U);
        QCOMPARE(task->files()[0]->metadataForKey(u"TargetPath"_s).toString(), u"TarvexTransfer/Media/video.mov"_s);
        QCOMPARE(task->files()[0]->metadataForKey(u"TargetFileSize"_s).toULongLong(), 2000ULL);

        const auto tell = [this](const DRDCDeviceTaskPointer& about) {
            m_test.notifications.post({.name = DRDCNotifications::kTaskDidUpdate, .object = about, .userInfo = {}});
        };
        task->setProgress(0.5);
        tell(task);
        QCOMPARE(photos->bytesTransferred(), quint64{16000});
        tell(std::make_shared<DRTestDeviceTask>(m_test.notifications));
        QCOMPARE(photos->bytesTransferred(), quint64{0});
        tell(task);
        QCOMPARE(photos->bytesTransferred(), quint64{16000});

        task->finishCopy({u"unreadable"_s});
        QCOMPARE(failed, 1U);
        QCOMPARE(photos->bytesTransferred(), quint64{32000});
        QCOMPARE(photos->report().written, qint64{1});
        QCOMPARE(photos->report().skipped.size(), 1U);
        m_test.deviceController.setActiveDevice(nullptr);
    }

    void namesFromElsewhereStayInTheFolder_data()
    {
        const DRTestTable<QString, QString> row("name", "path");
        row("usual", u"IMG_0001.JPG"_s, u"TarvexTransfer/Media/IMG_0001.JPG"_s);
        row("path", u"../../a/b.jpg"_s, u"TarvexTransfer/Media/_._.._a_b.jpg"_s);
        row("folder above", u".."_s, u"TarvexTransfer/Media/_."_s);
        row("hides its folder", u".nomedia"_s, u"TarvexTransfer/Media/_nomedia"_s);
        row("folder itself", u"."_s, u"TarvexTransfer/Media/_"_s);
        row("no character", QString(QChar::Null), u"TarvexTransfer/Media/_"_s);
    }

    void namesFromElsewhereStayInTheFolder()
    {
        QFETCH(QString, name);
        const auto phone = std::make_shared<DRTestDevice>(m_test.notifications);
        m_test.deviceController.setActiveDevice(phone);
        const auto photos = std::make_shared<DRMigrateAndroidPhotos>(m_test.services, nullptr);
        photos->setEntries(DREntryList{file(name, 0x10, 1)});
        photos->setFileKindsToTransfer(0x10);
        photos->transferFilesWithTarget([](const DRDCFileFailures&) {});
        QTEST(phone->tasks.at(0)->files().at(0)->metadataForKey(u"TargetPath"_s).toString(), "path");
        m_test.deviceController.setActiveDevice(nullptr);
    }

    void cleaningIsForOldPhonesOnly_data()
    {
        const DRTestTable<quint32, quint32, int, QStringList> row("android", "kinds", "files", "skipped");
        row("2", 2, 0x38, 1, {u"video.mov"_s, u"clip.mp4"_s});
        row("2, photos only", 2, 0x10, 3, {});
        row("3", 3, 0x38, 3, {});
        row("no phone", 0, 0x38, 3, {});
    }

    void cleaningIsForOldPhonesOnly()
    {
        QFETCH(quint32, android);
        QFETCH(quint32, kinds);
        DRDCDevicePointer device;
        if (android != 0) {
            auto phone = std::make_shared<DRTestDevice>(m_test.notifications);
            phone->baseVersion = android;
            device = phone;
        }
        m_test.deviceController.setActiveDevice(device);
        DRMigrateAndroidPhotos photos(m_test.services, std::make_shared<DroppingCleaner>());
        photos.setEntries(mixedFiles());
        photos.setFileKindsToTransfer(kinds);
        QVERIFY(photos.save());
        QTEST(int(photos.entries()->size()), "files");
        QStringList skipped;
        for (const DRMigrateSkippedItem& item : photos.report().skipped) {
            skipped << item.what;
        }
        QTEST(skipped, "skipped");
        m_test.deviceController.setActiveDevice(nullptr);
    }
};

QTEST_GUILESS_MAIN(TestMediaTypes)
#include "TestMediaTypes.moc"
