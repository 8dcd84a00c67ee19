#include "simulator/frame_decoder.h"

namespace {

constexpr int kTagAt = 2;
constexpr int kLengthAt = 3;
constexpr quint8 kHighestTag = 1;

} // namespace

void FrameDecoder::append(const unsigned char* data, int length)
{
    m_bytes.remove(0, m_at);
    m_at = 0;
    m_bytes.append(reinterpret_cast<const char*>(data), length);
}

bool FrameDecoder::next(WireFrame* frame)
{
    while (m_at < m_bytes.size()) {
        const Candidate candidate = examine();
        if (candidate == Candidate::Cut)
            return false;
        if (candidate == Candidate::Noise) {
            ++m_at;
            ++m_skipped;
            continue;
        }
        const int length = payloadBytes();
        frame->code = static_cast<quint8>(m_bytes.at(m_at + 1));
        frame->tag = static_cast<quint8>(m_bytes.at(m_at + kTagAt));
        frame->payload = m_bytes.mid(m_at + kHeaderBytes, length);
        frame->seal = wireNumber32(m_bytes.constData() + m_at + kHeaderBytes + length);
        m_at += length + kOverheadBytes;
        return true;
    }
    return false;
}

void FrameDecoder::clear()
{
    m_bytes.clear();
    m_at = 0;
}

FrameDecoder::Candidate FrameDecoder::examine() const
{
    const int waiting = m_bytes.size() - m_at;
    if (static_cast<quint8>(m_bytes.at(m_at)) != kStartMarker)
        return Candidate::Noise;
    if (waiting > kTagAt && static_cast<quint8>(m_bytes.at(m_at + kTagAt)) > kHighestTag)
        return Candidate::Noise;
    if (waiting < kHeaderBytes)
        return Candidate::Cut;
    const int length = payloadBytes();
    if (length > kLongestPayload)
        return Candidate::Noise;
    const int frameBytes = length + kOverheadBytes;
    if (waiting < frameBytes)
        return Candidate::Cut;
    const bool ended = static_cast<quint8>(m_bytes.at(m_at + frameBytes - 1)) == kEndMarker;
    return ended ? Candidate::Whole : Candidate::Noise;
}

int FrameDecoder::payloadBytes() const
{
    return wireNumber16(m_bytes.constData() + m_at + kLengthAt);
}
