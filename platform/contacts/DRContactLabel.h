#pragma once

#include <QString>

/// What the value of a contact is for, as a person reads it.
namespace DRContactLabel {

/// The word inside an iPhone's own label ("_$!<Mother>!$_" is "Mother"); a label that a person typed as it is.
[[nodiscard]] QString plain(const QString& label);

/// The purpose in words, for where the other side knows no type for this rel: the plain label when the rel is null or
/// only says "other"; else the name of the rel, such as "Home Fax". Empty when there is neither.
[[nodiscard]] QString nameOf(const QString& rel, const QString& label);

} // namespace DRContactLabel
