#pragma once

#include "simulator/wire_frame.h"

/// Finds frames in a stream of bytes that may be cut anywhere. Looks at the markers, the tag and the length; the CRC
/// is the caller's, because the key may change with every frame. Not thread-safe.
///
/// Whatever cannot be a frame is skipped one byte at a time, so a frame behind noise is found wherever it begins.
class FrameDecoder
{
public:
    /// @param data  `length` bytes, copied
    void append(const unsigned char* data, int length);

    /// Takes the next whole frame.
    /// @return  false when more bytes are needed; what has come so far is kept
    bool next(WireFrame* frame);

    /// Forgets the bytes that have not become a frame.
    void clear();

    /// Bytes passed over as noise, since construction.
    qint64 skippedBytes() const { return m_skipped; }

private:
    enum class Candidate { Whole, Cut, Noise };

    Candidate examine() const;
    int payloadBytes() const;

    QByteArray m_bytes;
    int m_at = 0; ///< everything before it has been dealt with
    qint64 m_skipped = 0;
};
