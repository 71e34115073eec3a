#pragma once

#include <QString>

/// Why a packet that could not be expanded could not be, as the second half of a sentence for a person, such as "it is
/// encrypted". Looks at the header; a packet whose header is fine has damaged content, or its archive did not fit on
/// the disk.
[[nodiscard]] QString packetProblem(const QString& packet);
