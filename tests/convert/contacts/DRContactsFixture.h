#pragma once

#include "convert/contacts/DRMigrateIPhoneAddressBook.h"
#include "tests/convert/DRConverterFixture.h"

/// An iPhone backup with the three databases of contacts and calls, as far as a test makes them.
struct DRContactsFixture : DRConverterFixture {
    using DRConverterFixture::DRConverterFixture;

    [[nodiscard]] bool makeAddressBook(const QString& rows) const
    {
        return run(
            backedUp(kAddressBook),
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
        return run(backedUp(kImages),
                   QStringLiteral("CREATE TABLE ABFullSizeImage (ROWID INTEGER PRIMARY KEY, record_id INTEGER, "
                                  "data BLOB);") +
                       rows);
    }
    [[nodiscard]] bool makeCalls(const QString& rows) const
    {
        return run(backedUp(kCalls),
                   QStringLiteral("CREATE TABLE call (ROWID INTEGER PRIMARY KEY, address TEXT, date INTEGER, "
                                  "duration INTEGER, flags INTEGER);") +
                       rows);
    }

    [[nodiscard]] auto iPhoneSide() const { return DRConverterFixture::iPhoneSide<DRMigrateIPhoneAddressBook>(); }

    static inline const QString kAddressBook = QStringLiteral("HomeDomain-Library/AddressBook/AddressBook.sqlitedb");
    static inline const QString kImages = QStringLiteral("HomeDomain-Library/AddressBook/AddressBookImages.sqlitedb");
    static inline const QString kCalls = QStringLiteral("WirelessDomain-Library/CallHistory/call_history.db");
};
