#pragma once

#include "convert/contacts/DRMigrateIPhoneAddressBook.h"
#include "platform/core/DRDigest.h"
#include "platform/sqlite/DRDatabase.h"
#include "tests/support/DRTestServices.h"

#include <QDir>
#include <QFile>

inline QByteArray contentsOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Writes the file, making the folders above it.
inline bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
           file.write(bytes) == bytes.size();
}

/// An iPhone backup with the three databases of contacts and calls, as far as a test makes them.
struct DRContactsFixture {
    DRTestServices test;

    [[nodiscard]] QString path(const QString& relative) const { return test.root.filePath(relative); }

    /// Where the backup keeps a file.
    [[nodiscard]] QString backedUp(const QString& domainPath) const
    {
        return path(QStringLiteral("backup/") + sha1HexString(domainPath));
    }

    [[nodiscard]] bool makeAddressBook(const QString& rows) const
    {
        return make(
            kAddressBook,
            QStringLiteral(
                "CREATE TABLE ABMultiValueLabel (value TEXT, UNIQUE(value));"
                "CREATE TABLE ABMultiValueEntryKey (value TEXT, UNIQUE(value));"
                "CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY, First TEXT, Last TEXT, Middle TEXT, FirstPhonetic "
                "TEXT, "
                "MiddlePhonetic TEXT, LastPhonetic TEXT, Organization TEXT, Department TEXT, Note TEXT, Birthday TEXT, "
                "JobTitle TEXT, Nickname TEXT, Prefix TEXT, Suffix TEXT);"
                "CREATE TABLE ABMultiValue (UID INTEGER PRIMARY KEY, record_id INTEGER, property INTEGER, "
                "identifier INTEGER, label INTEGER, value TEXT);"
                "CREATE TABLE ABMultiValueEntry (parent_id INTEGER, key INTEGER, value TEXT, UNIQUE(parent_id, key));"
                "INSERT INTO ABMultiValueLabel VALUES (NULL), ('_$!<Mobile>!$_'), ('_$!<Home>!$_'), ('_$!<Main>!$_'), "
                "('_$!<Work>!$_'), ('_$!<HomePage>!$_'), ('At the sea'), ('_$!<Mother>!$_'), ('_$!<HomeFAX>!$_'), "
                "('_$!<WorkFAX>!$_'), ('_$!<Pager>!$_'), ('_$!<Anniversary>!$_');"
                "INSERT INTO ABMultiValueEntryKey VALUES ('Street'), ('ZIP'), ('City'), ('CountryCode'), ('State'), "
                "('Country'), ('service'), ('username'), ('InstantMessageService'), ('InstantMessageUsername');") +
                rows);
    }
    [[nodiscard]] bool makePictures(const QString& rows) const
    {
        return make(kImages,
                    QStringLiteral("CREATE TABLE ABFullSizeImage (ROWID INTEGER PRIMARY KEY, record_id INTEGER, "
                                   "data BLOB);") +
                        rows);
    }
    [[nodiscard]] bool makeCalls(const QString& rows) const
    {
        return make(kCalls, QStringLiteral("CREATE TABLE call (ROWID INTEGER PRIMARY KEY, address TEXT, date INTEGER, "
                                           "duration INTEGER, flags INTEGER);") +
                                rows);
    }

    [[nodiscard]] std::shared_ptr<DRMigrateIPhoneAddressBook> iPhoneSide() const
    {
        auto book = std::make_shared<DRMigrateIPhoneAddressBook>(test.services);
        book->setSourcePath(path(QStringLiteral("backup")));
        return book;
    }

    static inline const QString kAddressBook = QStringLiteral("HomeDomain-Library/AddressBook/AddressBook.sqlitedb");
    static inline const QString kImages = QStringLiteral("HomeDomain-Library/AddressBook/AddressBookImages.sqlitedb");
    static inline const QString kCalls = QStringLiteral("WirelessDomain-Library/CallHistory/call_history.db");

private:
    [[nodiscard]] bool make(const QString& domainPath, const QString& sql) const
    {
        QDir().mkpath(path(QStringLiteral("backup")));
        auto database = DRDatabase::open(backedUp(domainPath), DRDatabase::Profile::Create);
        return database && database->executeScript(sql);
    }
};
