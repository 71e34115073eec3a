#pragma once

#include "platform/device/DRMigrateFileKinds.h"

#include <QString>

/// The keys of the kinds of content, and the IDs (Android package names) of the app packets that hold them on the
/// phone.
namespace DRMigrateKeys {

inline const QString kContacts = QStringLiteral("contacts");
inline const QString kTextMessages = QStringLiteral("textMessages");
inline const QString kNotes = QStringLiteral("notes");
inline const QString kCalendar = QStringLiteral("calendar");
inline const QString kBookmarks = QStringLiteral("bookmarks");
inline const QString kImages = QStringLiteral("images");
inline const QString kMusic = QStringLiteral("music");
inline const QString kVoiceMemos = QStringLiteral("voicememos");

/// A selection key only: videos are carried by the "images" data type.
inline const QString kVideos = QStringLiteral("videos");

inline const QString kContactsImportPacket = QStringLiteral("com.vornmobile.android.contactsimport");
inline const QString kPhonebookPacket = QStringLiteral("com.vornmobile.android.socialphonebook");
inline const QString kTelephonyPacket = QStringLiteral("com.android.providers.telephony");
inline const QString kCalendarPacket = QStringLiteral("com.android.providers.calendar");
inline const QString kChromePacket = QStringLiteral("com.android.chrome");
inline const QString kBrowserPacket = QStringLiteral("com.android.browser");
inline const QString kNotesPacket = QStringLiteral("com.vornmobile.notes");

} // namespace DRMigrateKeys
