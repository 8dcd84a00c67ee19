#include "device/packet_analysis.h"

#include "device/packet.h"

#include <QByteArray>
#include <QCoreApplication>

namespace {

constexpr int kFeedAnswerSize = kCommandFrameSize; ///< the command comes back as it was sent

unsigned byteAt(const QByteArray& bytes, int index)
{
    return static_cast<unsigned char>(bytes.at(index));
}

/// The firmware sends its version with the least significant part first.
QString versionText(const QByteArray& payload)
{
    QString text;
    for (int i = payload.size() - 1; i >= 0; --i)
        text += QString::number(byteAt(payload, i), 16);
    return text;
}

QString statusText(const QByteArray& payload)
{
    if (payload.size() != 2)
        return {};
    const unsigned status = byteAt(payload, 0);
    // The windows are built around one status: with the byte in both halves only 0 matches, and the other two are
    // never reported (docs/architecture.md, "Kept behaviour").
    switch (status << 8 | status) {
    case 1:
        return QCoreApplication::translate("PrinterReadThread", "羽毛盒没纸了");
    case 16:
        return QCoreApplication::translate("PrinterReadThread", "羽毛盒张嘴了");
    case 0:
        return QCoreApplication::translate("PrinterReadThread", "羽毛盒复活了");
    default:
        return {};
    }
}

quint32 printedCountOf(const QByteArray& payload)
{
    if (payload.size() != 4)
        return 0;
    return byteAt(payload, 0) | byteAt(payload, 1) << 8 | byteAt(payload, 2) << 16 | byteAt(payload, 3) << 24;
}

/// One count is 0.25 × 0.084 mm, which is 21 µm.
QString printedLengthText(quint32 count)
{
    return QString::number(quint64{count} * 21 / 1000) + QStringLiteral("mm");
}

void decodePayload(const QByteArray& payload, PacketTrace* trace)
{
    trace->hex = QString::fromLatin1(payload.toHex());
    trace->report = PacketReport{trace->code, trace->hex};
    QString& text = trace->report->text;
    switch (trace->code) {
    case ReplyVersion:
        text = versionText(payload);
        break;
    case ReplyModel:
    case ReplyBluetoothMac:
    case ReplySerialNumber:
    case ReplyPrintModeEcho:
    case ReplyPrintMode:
        text = QString::fromLatin1(payload.constData(), payload.size()); // with the size, or a NUL would end it
        break;
    case ReplyStatus:
        text = statusText(payload);
        break;
    case ReplyPrintedLength:
        trace->printedCount = printedCountOf(payload);
        text = printedLengthText(*trace->printedCount);
        break;
    default:
        break;
    }
}

/// @param start  index of a start byte with a code behind it
PacketTrace traceAt(const unsigned char* data, int length, int start)
{
    PacketTrace trace;
    trace.start = start;
    trace.code = data[start + 1];
    if (start + 2 < length)
        trace.tag = data[start + 2];
    if (start + kFrameHeaderSize > length)
        return trace;
    const int size = data[start + 3] | data[start + 4] << 8;
    trace.payloadSize = size;
    const int payloadStart = start + kFrameHeaderSize;
    if (payloadStart + size <= length)
        decodePayload(QByteArray::fromRawData(reinterpret_cast<const char*>(data + payloadStart), size), &trace);
    return trace;
}

} // namespace

QVector<PacketTrace> analysePackets(const unsigned char* data, int length)
{
    QVector<PacketTrace> traces;
    int at = 0;
    while (at + 1 < length) {
        if (data[at] != kFrameStart) {
            ++at;
        } else if (data[at + 1] == CommandFeedLines) {
            at += kFeedAnswerSize;
        } else {
            traces.append(traceAt(data, length, at));
            const PacketTrace& trace = traces.constLast();
            const int next = at + trace.payloadSize.value_or(0) + kFrameOverhead;
            // Behind a frame that is cut, if only in its CRC, anything may be the next start byte.
            at = trace.isWhole() && next <= length ? next : at + 1;
        }
    }
    return traces;
}
