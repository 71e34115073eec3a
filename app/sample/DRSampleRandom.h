#pragma once

#include <QtGlobal>

#include <vector>

/// A pseudo-random sequence that is the same on every machine and in every run, which the standard distributions do not
/// promise.
class DRSampleRandom {
public:
    explicit DRSampleRandom(quint64 seed) : m_state(seed) {}

    /// A number from 0 up to, without, `bound`, which must be above 0.
    [[nodiscard]] int below(int bound) { return static_cast<int>(next() % static_cast<quint64>(bound)); }

    /// One of the elements; the list must not be empty.
    template <typename List> [[nodiscard]] const auto& pick(const List& list)
    {
        return list[static_cast<typename List::size_type>(below(static_cast<int>(list.size())))];
    }

private:
    // A Weyl sequence whose steps are mixed: each output differs in about half its bits from the one before.
    quint64 next()
    {
        m_state += 0x9E3779B97F4A7C15ULL;
        quint64 mixed = (m_state ^ (m_state >> 32U)) * 0xD6E8FEB86659FD93ULL;
        mixed = (mixed ^ (mixed >> 32U)) * 0xD6E8FEB86659FD93ULL;
        return mixed ^ (mixed >> 32U);
    }

    quint64 m_state;
};
