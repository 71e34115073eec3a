#pragma once

#include <chrono>
#include <functional>
#include <vector>

#include <QtGlobal>

/// How far work on a list of items has come, by bytes; tells of it at most ten times a second. One thread at a time.
class DRProgressMeter {
public:
    using Report = std::function<void(double fraction)>;

    /// `itemBytes`: the size of each item. Sizes are those known beforehand; an item that turns out larger counts no
    /// more.
    DRProgressMeter(std::vector<quint64> itemBytes, Report report);

    /// So many bytes of the current item are done.
    void advance(quint64 bytes);

    /// The current item is done, whatever became of it.
    void finishItem();

private:
    void tell(quint64 done);

    std::vector<quint64> m_itemBytes;
    Report m_report;
    std::size_t m_current = 0;
    quint64 m_total = 0;
    quint64 m_done = 0; ///< of the items before the current one
    std::chrono::steady_clock::time_point m_lastTold = std::chrono::steady_clock::now();
};
