#include "convert/contacts/DRMigrateAndroidAddressBook.h"

#include "convert/contacts/DRCallLogText.h"
#include "convert/contacts/DRContactCard.h"
#include "convert/contacts/DRContactPictures.h"
#include "convert/contacts/DRMigrateIPhoneAddressBook.h"
#include "convert/contacts/DRVCardFile.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "platform/contacts/DRVCardPicture.h"
#include "platform/core/DRFiles.h"
#include "platform/core/DRLog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString kManifest = u"_manifest"_s;
const QString kCallLog = u"f/TempCallLogs"_s;
const QString kCards = u"f/full_backup_vcard.vcf"_s;

constexpr qint64 kLargestCallLog = qint64{256} * 1024 * 1024; ///< a larger one counts as unreadable

constexpr auto kKeptInBackup = "; the phone's backup keeps them"_L1;

/// What of the phone's own contacts goes when they are written anew; told before the restore and named at the end.
void tellLosses(DRMigrateReport& report, const DRVCardFile::Contents& contents, const QString& path)
{
    if (!contents.isReadable && QFileInfo::exists(path)) {
        report.warnings.append(u"The contacts on the phone cannot be read and are replaced by the new ones"_s +
                               kKeptInBackup);
        report.skipped.push_back({.what = u"The phone's own contacts"_s, .why = u"their file is not readable text"_s});
    } else if (contents.isDamaged) {
        report.warnings.append(
            u"The file of the phone's contacts is damaged: what stands in it outside whole contacts goes"_s +
            kKeptInBackup);
        report.skipped.push_back(
            {.what = u"A part of the phone's own contacts"_s, .why = u"their file is damaged: no whole card"_s});
    }
    if (!contents.version.isEmpty() && contents.version != "3.0") {
        report.warnings.append(
            u"The phone's own contacts are in version %1 of vCard and the new ones in 3.0; if the phone "
            "does not take both in one file, put its apps back from the phone's backup"_s.arg(
                QString::fromLatin1(contents.version)));
    }
}

/// Reads pictures one by one while the cards are written, and remembers which could not be had.
class PictureReader {
public:
    PictureReader(QString backupPath, QString temporaryFolder)
        : m_backupPath(std::move(backupPath)), m_temporaryFolder(std::move(temporaryFolder))
    {
    }

    QByteArray pictureOf(const DRContactCard& card)
    {
        if (!m_isOpened) {
            m_isOpened = true;
            m_pictures = DRContactPictures::open(m_backupPath, m_temporaryFolder);
        }
        QByteArray picture = m_pictures ? m_pictures->pictureAt(*card.pictureRow) : QByteArray();
        if (picture.isEmpty()) {
            skip(card, u"it cannot be read in the backup"_s);
        } else if (DRVCardPicture::formatOf(picture) == DRVCardPicture::Format::Unknown) {
            skip(card, u"it is neither JPEG nor PNG"_s);
        }
        return picture;
    }

    [[nodiscard]] const std::vector<DRMigrateSkippedItem>& skipped() const { return m_skipped; }

private:
    void skip(const DRContactCard& card, const QString& why)
    {
        const QString name = card.name.isEmpty() ? u"a contact without a name"_s : card.name;
        m_skipped.push_back({.what = u"The picture of "_s + name, .why = why});
    }

    QString m_backupPath;
    QString m_temporaryFolder;
    bool m_isOpened = false;
    std::optional<DRContactPictures> m_pictures;
    std::vector<DRMigrateSkippedItem> m_skipped;
};

void warnOfBrokenLog(DRMigrateReport& report, qint64 calls)
{
    if (calls > 0) {
        report.warnings.append(
            u"Calls whose number holds “&”, “<” or the like, so that the phone may refuse its call log: %1"_s.arg(
                calls));
    }
}

void warnOfLeftOutFiles(DRMigrateReport& report, const QStringList& files)
{
    if (!files.isEmpty()) {
        report.warnings.append(
            u"Files of the phone's contacts app that have no place in its packet: %1"_s.arg(files.join(u", "_s)) +
            kKeptInBackup);
    }
}

} // namespace

bool DRMigrateAndroidAddressBook::load()
{
    setEntries(DREntryList());
    if (ignoreDataType()) {
        return true;
    }
    if (sourcePath().isEmpty() || targetPath().isEmpty() || packetID().isEmpty()) {
        return false;
    }
    const bool isExpanded = expandPacket(); // whether there is a manifest tells whether it is of use
    const QString path = pathInApp(kCards);
    const DRVCardFile::Contents contents = DRVCardFile::read(path);
    if (contents.didDiskFail) {
        return false; // the phone's own contacts must not be replaced for that
    }
    setEntries(DREntryList(contents.cards.begin(), contents.cards.end()));
    DRMigrateReport outcome = report();
    tellLosses(outcome, contents, path);
    setReport(std::move(outcome));
    const bool hasManifest = checkForManifest();
    if (!hasManifest && isExpanded) {
        skipWithoutManifest(u"The contacts app"_s);
    }
    return hasManifest;
}

bool DRMigrateAndroidAddressBook::mergeDataFrom(const DRMigrateDataType& source)
{
    DRMigrateReport outcome = report();
    outcome.found = static_cast<qint64>(source.entries()->size());
    if (!ignoreDataType() && !targetPath().isEmpty() && !packetID().isEmpty()) {
        if (const auto* addressBook = dynamic_cast<const DRMigrateIPhoneAddressBook*>(&source)) {
            mergeCalls(*addressBook, outcome);
        }
        m_pictureBackup = source.sourcePath();
        static_cast<void>(DRMigrateDataType::mergeDataFrom(source)); // the base appends, and that cannot fail
        outcome.written = outcome.found;
    }
    setReport(std::move(outcome));
    return true;
}

void DRMigrateAndroidAddressBook::mergeCalls(const DRMigrateIPhoneAddressBook& source, DRMigrateReport& outcome) const
{
    const QString path = pathInApp(kCallLog);
    const auto existing = DRFiles::readRegularFile(path, kLargestCallLog);
    if (!existing && errno == EIO) { // what it holds is unknown, so it stays
        outcome.skipped.push_back(
            {.what = u"The call log"_s, .why = u"the phone's own cannot be read on this computer"_s});
        return;
    }
    DRCallLogText::Base base = DRCallLogText::baseFor(existing);
    if (!existing && QFileInfo::exists(path)) {
        base.reasonOfReplacement = u"it cannot be read"_s;
    }
    if (!base.reasonOfReplacement.isNull()) {
        outcome.warnings.append(u"The call log on the phone is replaced, for %1; the phone's backup keeps it"_s.arg(
            base.reasonOfReplacement));
    }
    const auto& calls = source.callLog();
    warnOfBrokenLog(outcome, std::ranges::count_if(calls, DRCallLogText::breaksTheLog));

    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    file.remove();
    const QByteArray text = DRCallLogText::withCalls(base, calls);
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush()) {
        outcome.counts[u"calls"_s] = static_cast<qint64>(calls.size());
        return;
    }
    qCWarning(lcMigrate, "The call log cannot be written: %ls", qUtf16Printable(file.errorString()));
    file.remove(); // a part of it must not reach the phone in place of the whole: without it, packing fails
    outcome.skipped.push_back(
        {.what = u"The call log"_s, .why = u"it cannot be written; is the disk of this computer full?"_s});
}

bool DRMigrateAndroidAddressBook::save()
{
    if (ignoreDataType()) {
        return true;
    }
    if (targetPath().isEmpty() || packetID().isEmpty()) {
        return false;
    }
    DRMigrateReport outcome = report();
    QStringList files;
    for (const QString& file : {kManifest, kCallLog, kCards}) {
        files.append(u"apps/%1/%2"_s.arg(packetID(), file));
    }
    const bool isWritten = writeCards(outcome);
    if (!isWritten) {
        outcome.skipped.push_back({.what = u"All contacts"_s, .why = u"they could not be written to the disk"_s});
    }
    QStringList others = filesInAppsFolder().value_or(QStringList());
    others.removeIf([&files](const QString& file) { return files.contains(file); });
    warnOfLeftOutFiles(outcome, others);
    setReport(std::move(outcome));
    return isWritten && packFiles(files);
}

bool DRMigrateAndroidAddressBook::writeCards(DRMigrateReport& outcome) const
{
    PictureReader pictures(m_pictureBackup, services().folders.temporary);
    const bool isWritten = DRVCardFile::write(
        pathInApp(kCards), *entries(), [&pictures](const DRContactCard& card) { return pictures.pictureOf(card); });
    const auto skipped = pictures.skipped();
    outcome.skipped.insert(outcome.skipped.end(), skipped.begin(), skipped.end());
    return isWritten;
}
