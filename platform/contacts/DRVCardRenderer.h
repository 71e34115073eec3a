#pragma once

#include <QByteArray>

class DRCSContact;

namespace DRVCardRenderer {

/// The contact as a card without its picture; see `DRCSContact::vCardRepresentation`.
[[nodiscard]] QByteArray cardOf(const DRCSContact& contact);

} // namespace DRVCardRenderer
