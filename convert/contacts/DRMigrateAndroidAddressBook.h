#pragma once

#include "model/backup_entry/DRMigrateDataType.h"

class DRMigrateIPhoneAddressBook;

/// Appends contacts and calls to the phone's contacts app, which keeps them as two files in its packet: a file of vCards
/// and a call log in XML. Entries are the phone's own contacts as `DRPhoneCard`, after the merge followed by the source's
/// as `DRContactCard`.
class DRMigrateAndroidAddressBook final : public DRMigrateDataType {
public:
    using DRMigrateDataType::DRMigrateDataType;

    /// Expands the packet and finds the contacts in its vCard file; without one there are none. False when the packet
    /// has no manifest. True at once when this packet was set to be ignored, because the phone could not hand it out.
    [[nodiscard]] bool load() override;

    /// Writes the calls of the source, which must be a `DRMigrateIPhoneAddressBook`, into the call log and takes its
    /// contacts over; those that the phone has already, also the same ones, stay. Always true: when the call log cannot
    /// be written, none is left there, so that saving fails.
    [[nodiscard]] bool mergeDataFrom(const DRMigrateDataType& source) override;

    /// Writes the vCard file and packs it with the call log and the manifest; other files of the app have no place in
    /// the packet and are told in the report.
    [[nodiscard]] bool save() override;

private:
    void mergeCalls(const DRMigrateIPhoneAddressBook& source, DRMigrateReport& outcome) const;
    [[nodiscard]] bool writeCards(DRMigrateReport& outcome) const;

    QString m_pictureBackup; ///< the iPhone backup that holds the pictures of the merged contacts
};
