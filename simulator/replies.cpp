#include "simulator/replies.h"

#include "simulator/wire_frame.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace {

struct FixedReply
{
    quint8 query;
    const char* hexPayload;
};

// Queries whose answer never changes. The payloads are made up, in the shape that the name of the query suggests.
constexpr FixedReply kFixedReplies[] = {
    {0x04, "040001"},                             // firmware 1.0.4, least significant part first
    {0x08, "30323a35313a34323a30303a30303a3031"}, // "02:51:42:00:00:01", a locally administered address
    {0x0A, "51425349 4d303030303031"},            // "QBSIM000001"
    {0x0E, "3c0f"},                               // battery voltage: 3900 mV
    {0x10, "03"},                                 // battery voltage state: full
    {0x12, "1900"},                               // head temperature: 25 °C
    {0x15, "01"},                                 // factory mark: set
    {0x17, "00"},                                 // Bluetooth state: not connected
    {0x1B, "00"},                                 // self-test page: printed
    {0x1C, "02"},                                 // density: medium
    {0x1F, "0f00"},                               // auto power-off: 15 minutes
    {0x23, "0100"},                               // main board 1
    {0x25, "51420100"},                           // hardware: "QB", 1
    {0x28, "f000"},                               // longest gap: 240 dot lines
    {0x2A, "00"},                                 // paper: continuous
    {0x2D, "0056"},                               // country code: 86, binary coded decimal, high byte first
    {0x30, "30"},                                 // print mode: "0"
};

} // namespace

Reply replyTo(quint8 query, const DeviceFacts& facts)
{
    Reply reply;
    reply.known = true;
    reply.code = static_cast<quint8>(query + 1);
    switch (query) {
    case 0x06:
        reply.payload = facts.model;
        return reply;
    case 0x0C:
        reply.payload = wireBytes16(facts.statusByte);
        return reply;
    case 0x34:
        reply.payload = wireBytes32(printedLengthCount(facts.printedLines));
        return reply;
    default:
        break;
    }
    const auto* fixed = std::find_if(std::begin(kFixedReplies), std::end(kFixedReplies),
                                     [query](const FixedReply& candidate) { return candidate.query == query; });
    reply.known = fixed != std::end(kFixedReplies);
    if (reply.known)
        reply.payload = QByteArray::fromHex(fixed->hexPayload);
    return reply;
}

quint32 printedLengthCount(qint64 dotLines)
{
    const qint64 count = (dotLines * 125 + 20) / 21;
    return static_cast<quint32>(std::min<qint64>(count, std::numeric_limits<quint32>::max()));
}
