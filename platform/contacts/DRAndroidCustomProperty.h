#pragma once

#include "platform/contacts/DRGDataElements.h"

#include <QByteArray>

/// Properties for what a vCard has no name for: they name a row of Android's contacts database, its MIME type and its
/// columns data1 to data15. Each is written as the lines of a card.
namespace DRAndroidCustomProperty {

/// A day such as an anniversary. Empty when its date is invalid.
[[nodiscard]] QByteArray ofEvent(const GDataContactEvent& event);

/// A related person. Empty when its value is null.
[[nodiscard]] QByteArray ofRelation(const GDataContactRelation& relation);

/// A messaging account with a service that Android does not know by number, or with none.
[[nodiscard]] QByteArray ofAccount(const GDataIM& account);

} // namespace DRAndroidCustomProperty
