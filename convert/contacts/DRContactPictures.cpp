#include "convert/contacts/DRContactPictures.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString kImagesDatabase = u"HomeDomain-Library/AddressBook/AddressBookImages.sqlitedb"_s;

} // namespace

bool DRContactPictures::areInBackup(const QString& backupPath)
{
    return DRIPhoneBackupFiles::holds(backupPath, kImagesDatabase);
}

std::optional<DRContactPictures> DRContactPictures::open(const QString& backupPath, const QString& temporaryFolder)
{
    auto database = DRIPhoneBackupFiles::openBackedUpDatabase(backupPath, kImagesDatabase, temporaryFolder);
    if (!database) {
        return std::nullopt;
    }
    return DRContactPictures(*std::move(database));
}

DRContactPictures::DRContactPictures(DRIPhoneBackupFiles::OpenDatabase database)
    : m_database(std::move(database)),
      m_picture(m_database->prepare(u"SELECT data FROM ABFullSizeImage WHERE ROWID=?"_s))
{
}

DRContactPictures::Rows DRContactPictures::rows()
{
    Rows rows;
    DRResultSet image =
        m_database->executeQuery(u"SELECT ROWID AS picture_row, data IS NULL AS is_missing, * FROM ABFullSizeImage"_s);
    while (image.next()) {
        if (!image.isNull("record_id") && image.integer("is_missing") == 0) {
            rows.rowByPerson.insert(image.integer("record_id"), image.integer("picture_row"));
        }
    }
    rows.isComplete = !image.hasFailed();
    return rows;
}

QByteArray DRContactPictures::pictureAt(qint64 row)
{
    DRResultSet picture = m_picture.query({row});
    return picture.next() ? picture.bytes("data") : QByteArray();
}
