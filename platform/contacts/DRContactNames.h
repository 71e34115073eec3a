#pragma once

#include "platform/contacts/DRGDataElements.h"

namespace DRContactNames {

/// The name in one text: "Dr. Ann Mary Lee jr."; family first where family or given name is in Chinese, Japanese or
/// Korean script, parted by a blank only in Japanese ("山田 はな", "王小明"). Empty when the contact has no name.
[[nodiscard]] QString formatted(const GDataName& name);

} // namespace DRContactNames
