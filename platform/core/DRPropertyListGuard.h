#pragma once

#include <QByteArray>

/// Looks at a property list before the library parses it. The library recurses into containers and copies what is
/// referenced twice, so that a few hostile bytes could overflow the stack or fill the memory.
namespace DRPropertyListGuard {

/// Containers within containers that are still let through.
inline constexpr int kMaximumDepth = 64;

/// Whether the bytes are a binary property list ("bplist00") whose containers can be walked within the limits of depth,
/// of nodes and of bytes, each shared object counted as often as it is reached. Cycles end at the limit of depth. Keys
/// must be texts without NUL.
[[nodiscard]] bool isHarmlessBinary(const QByteArray& bytes);

/// Whether the bytes, taken as an XML property list, nest within the limit and use no markup that property lists do
/// without: entity definitions, processing instructions after the first, attributes that hide brackets, NUL characters.
/// They need not be well formed.
[[nodiscard]] bool isHarmlessXml(const QByteArray& bytes);

} // namespace DRPropertyListGuard
