#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include <QtGlobal>

/// One zlib stream, inflated piece by piece in bounded memory.
class DRInflater {
public:
    enum class State { Running, Ended, Damaged };

    /// What one call did: bytes taken from the input and put into the output. Running without any progress means that
    /// it needs input, so at the end of the input the stream is truncated.
    struct Step {
        State state;
        std::size_t consumed;
        std::size_t produced;
    };

    DRInflater() = default;
    virtual ~DRInflater() = default;
    Q_DISABLE_COPY_MOVE(DRInflater)

    /// Inflates as much as fits. Sizes are not limited; long spans may need several calls.
    [[nodiscard]] virtual Step inflate(std::span<const char> input, std::span<char> output) = 0;
};

/// Inflates with zlib: for all streams that others wrote. See docs/decisions/packet-inflate.md.
[[nodiscard]] std::unique_ptr<DRInflater> makeZlibInflater();

/// Inflates with the fastest library at hand: only for streams that this program has just written itself.
[[nodiscard]] std::unique_ptr<DRInflater> makeReadBackInflater();
