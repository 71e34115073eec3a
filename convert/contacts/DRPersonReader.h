#pragma once

#include <QDateTime>
#include <QString>

class DRCSContact;
class DRResultSet;
struct DRAddressBookValues;

/// The contact that a row of `ABPerson` and the values of that person make. The labels of every kind of value are looked
/// up among those of telephone numbers: kept, so that a related name "mother" gets the general rel and the iPhone's own
/// label text.
[[nodiscard]] DRCSContact contactFromPerson(const DRResultSet& person, const DRAddressBookValues& values);

/// The moment that a text gives in seconds since 2001-01-01 00:00:00 UTC, as a decimal number with "." whatever the
/// locale; that reference date for a text that is no number.
[[nodiscard]] QDateTime dateFromString(const QString& text);
