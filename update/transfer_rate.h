#pragma once

#include <QtGlobal>

#include <deque>

/// How fast a transfer goes: the mean over the last three seconds, or since its beginning if that is less.
class TransferRate
{
public:
    /// @param ms     of any clock that only goes forward
    /// @param bytes  received until then; fewer than before: a new transfer
    void add(qint64 ms, qint64 bytes);
    qint64 bytesPerSecond(qint64 ms) const; ///< 0 before the second sample

private:
    struct Sample
    {
        qint64 ms;
        qint64 bytes;
    };

    std::deque<Sample> m_samples; ///< oldest first; all but the first are younger than three seconds at the last one
};
