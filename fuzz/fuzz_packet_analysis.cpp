#include "device/packet_analysis.h"

// What a batch tells, code and payload of each reply, by one look at a time.
static QVector<QByteArray> slowlyRead(const unsigned char* batch, int length)
{
    QVector<QByteArray> replies;
    for (int at = 0; at + 1 < length; ++at) {
        const int left = length - at;
        const int size = left < 5 ? left : batch[at + 3] + 256 * batch[at + 4];
        if (batch[at] == 2 && batch[at + 1] == 0x1A) {
            at += 11;
        } else if (batch[at] == 2 && size + 5 <= left) {
            const char* bytes = reinterpret_cast<const char*>(batch + at);
            replies += bytes[1] + QByteArray(bytes + 5, size).toHex();
            at += size + 10 <= left ? size + 9 : 0;
        }
    }
    return replies;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size)
{
    QVector<QByteArray> replies;
    for (const PacketTrace& trace : analysePackets(bytes, static_cast<int>(size))) {
        if (trace.report)
            replies += static_cast<char>(trace.report->pkgTag) + trace.hex.toLatin1();
    }
    Q_ASSERT(replies == slowlyRead(bytes, static_cast<int>(size)));
    return 0;
}
