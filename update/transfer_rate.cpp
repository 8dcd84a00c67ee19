#include "update/transfer_rate.h"

#include <algorithm>

namespace {
constexpr qint64 kWindowMs = 3000;
} // namespace

void TransferRate::add(qint64 ms, qint64 bytes)
{
    if (!m_samples.empty() && bytes < m_samples.back().bytes)
        m_samples.clear();
    m_samples.push_back({ms, bytes});
    while (m_samples.size() > 1 && m_samples[1].ms <= ms - kWindowMs)
        m_samples.pop_front();
}

qint64 TransferRate::bytesPerSecond(qint64 ms) const
{
    if (m_samples.empty())
        return 0;
    // What had come when the window began is what the last sample before that says.
    auto start = m_samples.begin();
    while (std::next(start) != m_samples.end() && std::next(start)->ms <= ms - kWindowMs)
        ++start;
    const qint64 duration = std::clamp<qint64>(ms - start->ms, 1, kWindowMs);
    return (m_samples.back().bytes - start->bytes) * 1000 / duration;
}
