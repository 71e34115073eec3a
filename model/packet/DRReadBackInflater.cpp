#include "model/packet/DRInflater.h"

#ifdef MIGRATE_HAS_ISAL

#include <algorithm>
#include <isa-l/igzip_lib.h>
#include <limits>

namespace {

uint32_t isalSize(std::size_t size)
{
    return static_cast<uint32_t>(std::min<std::size_t>(size, std::numeric_limits<uint32_t>::max()));
}

class DRIsalInflater final : public DRInflater {
public:
    DRIsalInflater()
    {
        isal_inflate_init(&m_state);
        m_state.crc_flag = ISAL_ZLIB;
    }

    [[nodiscard]] Step inflate(std::span<const char> input, std::span<char> output) override
    {
        const uint32_t inputSize = isalSize(input.size());
        const uint32_t outputSize = isalSize(output.size());
        // The library takes its input as not constant, but only reads it.
        m_state.next_in = const_cast<uint8_t*>(reinterpret_cast<const uint8_t*>(input.data()));
        m_state.avail_in = inputSize;
        m_state.next_out = reinterpret_cast<uint8_t*>(output.data());
        m_state.avail_out = outputSize;
        const int result = isal_inflate(&m_state);
        return {stateAfter(result), usedInput(inputSize - m_state.avail_in), outputSize - m_state.avail_out};
    }

private:
    [[nodiscard]] State stateAfter(int result) const
    {
        if (result != ISAL_DECOMP_OK && result != ISAL_END_INPUT && result != ISAL_OUT_OVERFLOW) {
            return State::Damaged;
        }
        return m_state.block_state == ISAL_BLOCK_FINISH ? State::Ended : State::Running;
    }

    /// After the end of the stream the library may hold whole bytes in its bit buffer that it took, but did not use.
    [[nodiscard]] std::size_t usedInput(std::size_t taken) const
    {
        const bool hasEnded = m_state.block_state == ISAL_BLOCK_FINISH;
        const auto unused = static_cast<std::size_t>(hasEnded ? m_state.read_in_length / 8 : 0);
        return taken - std::min(taken, unused);
    }

    inflate_state m_state{};
};

} // namespace

std::unique_ptr<DRInflater> makeReadBackInflater()
{
    return std::make_unique<DRIsalInflater>();
}

#else

std::unique_ptr<DRInflater> makeReadBackInflater()
{
    return makeZlibInflater();
}

#endif
