#include "platform/folder_phone/DRProgressMeter.h"

#include <algorithm>
#include <numeric>
#include <utility>

DRProgressMeter::DRProgressMeter(std::vector<quint64> itemBytes, Report report)
    : m_itemBytes(std::move(itemBytes)),
      m_report(std::move(report)),
      m_total(std::accumulate(m_itemBytes.begin(), m_itemBytes.end(), quint64{0}))
{
}

void DRProgressMeter::advance(quint64 bytes)
{
    if (m_current < m_itemBytes.size()) {
        tell(m_done + std::min(bytes, m_itemBytes[m_current]));
    }
}

void DRProgressMeter::finishItem()
{
    if (m_current < m_itemBytes.size()) {
        m_done += m_itemBytes[m_current];
        ++m_current;
        tell(m_done);
    }
}

void DRProgressMeter::tell(quint64 done)
{
    constexpr std::chrono::milliseconds kInterval(100);
    const auto now = std::chrono::steady_clock::now();
    if (m_total == 0 || now - m_lastTold < kInterval) {
        return;
    }
    m_lastTold = now;
    m_report(static_cast<double>(done) / static_cast<double>(m_total));
}
