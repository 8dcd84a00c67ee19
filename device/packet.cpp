#include "device/packet.h"

#include "device/crc32.h"

#include <atomic>
#include <cstddef>
#include <cstring>

namespace {

std::atomic<std::uint32_t> currentKey{kDefaultCrcKey};

void putLittleEndian32(unsigned char* out, std::uint32_t value)
{
    for (int i = 0; i < 4; ++i)
        out[i] = static_cast<unsigned char>(value >> (8 * i));
}

} // namespace

std::uint32_t currentCrcKey()
{
    return currentKey;
}

void setCurrentCrcKey(std::uint32_t key)
{
    currentKey = key;
}

void buildFrame(unsigned char* out, unsigned char code, unsigned char tag, const unsigned char* payload,
                int payloadSize, std::uint32_t key)
{
    const auto size = static_cast<std::size_t>(payloadSize);
    out[0] = kFrameStart;
    out[1] = code;
    out[2] = tag;
    out[3] = static_cast<unsigned char>(size & 0xFFU);
    out[4] = static_cast<unsigned char>(size >> 8);
    if (size > 0)
        std::memcpy(out + kFrameHeaderSize, payload, size);
    putLittleEndian32(out + kFrameHeaderSize + size, crc32(key, payload, size));
    out[kFrameHeaderSize + size + 4] = kFrameEnd;
}

void buildCommandFrame(unsigned char* out, unsigned char code, std::uint16_t value, std::uint32_t key)
{
    const unsigned char payload[2] = {static_cast<unsigned char>(value & 0xFFU),
                                      static_cast<unsigned char>(value >> 8)};
    buildFrame(out, code, 0, payload, sizeof payload, key);
}

void buildSetKeyFrame(unsigned char* out, std::uint32_t newKey)
{
    unsigned char payload[4];
    putLittleEndian32(payload, newKey ^ kCrcKeyMask);
    buildFrame(out, CommandSetCrcKey, 1, payload, sizeof payload, kCrcKeyMask);
}
