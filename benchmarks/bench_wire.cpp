#include "benchmarks/contest.h"
#include "device/crc32.h"
#include "device/packet.h"
#include "device/port.h"
#include "device/printer_win.h"

#include <QtGlobal>
#include <zlib.h>

#include <cstring>
#include <random>
#include <utility>
#include <vector>

// What the wire costs without the wire: the seal, and all the frames of a page, which a port takes and lets go.

namespace {

constexpr std::size_t kMegabyte = 1U << 20;
constexpr std::size_t kRasterSize = 294'912; ///< bytes, 576 × 4096 dots

/// Every seal that was made, in one number: the proof that both sides did the same.
std::uint32_t s_seals = 0;

void note(std::uint32_t seal)
{
    s_seals = s_seals * 31 + seal;
}

} // namespace

extern "C" int io_port_creator(port** out, const char*)
{
    static port sink = [] {
        port made{};
        made.write = [](port*, const unsigned char* buffer, int, int length, int* written) {
            std::uint32_t seal = 0; // as the processor has it, and so does the peer
            std::memcpy(&seal, buffer + length - 5, sizeof seal);
            note(seal);
            *written = length;
            return 0;
        };
        return made;
    }();
    *out = &sink;
    return 0;
}

namespace {

const unsigned char* noise()
{
    static const auto bytes = [] {
        std::mt19937 random(1);
        std::vector<unsigned char> made(kMegabyte);
        for (auto& byte : made)
            byte = static_cast<unsigned char>(random());
        return made;
    }();
    return bytes.data();
}

/// @param piece  bytes that one call of `seal` takes, of the megabyte that is gone through
template <typename Seal>
auto sealPieces(std::size_t piece, Seal seal)
{
    return [piece, seal] {
        for (std::size_t at = 0; at + piece <= kMegabyte; at += piece)
            note(static_cast<std::uint32_t>(seal(kDefaultCrcKey, noise() + at, piece)));
    };
}

void sendPage()
{
    if (printerConnection()->sendRaster(noise(), int{kRasterSize}) != 0)
        qFatal("the page is not sent");
}

void copyAndSealPage()
{
    unsigned char frame[kPrintDataPayload + kFrameOverhead];
    for (std::size_t at = 0; at < kRasterSize; at += kPrintDataPayload) {
        const std::size_t piece = qMin<std::size_t>(kPrintDataPayload, kRasterSize - at);
        std::memcpy(frame + kFrameHeaderSize, noise() + at, piece);
        note(static_cast<std::uint32_t>(crc32_z(kDefaultCrcKey, frame + kFrameHeaderSize, piece)));
    }
}

/// Adds the contest when both sides make the same seals.
void add(const Contest& contest)
{
    s_seals = 0;
    contest.ours();
    const std::uint32_t ours = std::exchange(s_seals, 0);
    contest.theirs();
    if (ours != s_seals)
        qFatal("%s: the seals differ", contest.operation.c_str());
    addContest(contest);
}

} // namespace

int main(int argc, char** argv)
{
    const auto ours = [](auto key, auto bytes, auto length) { return crc32(key, bytes, length); };
    const auto theirs = [](auto key, auto bytes, auto length) { return crc32_z(key, bytes, length); };
    constexpr std::size_t kPieces = kMegabyte / kPrintDataPayload * kPrintDataPayload;
    add({"CRC-32 of 1008 bytes", "zlib", double{kPieces}, sealPieces(kPrintDataPayload, ours),
         sealPieces(kPrintDataPayload, theirs)});
    add({"CRC-32 of 1 MB", "zlib", double{kMegabyte}, sealPieces(kMegabyte, ours), sealPieces(kMegabyte, theirs)});
    printerConnection()->openPort();
    add({"frames of a page of 576 x 4096", "zlib, memcpy", double{kRasterSize}, sendPage, copyAndSealPage});
    return runContests(argc, argv);
}
