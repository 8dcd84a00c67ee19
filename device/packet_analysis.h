#pragma once

#include <QString>
#include <QVector>

#include <optional>

// What the printer says: a batch of received bytes in, reports for the windows out. Neither the CRC nor the end
// marker of a reply is checked, and a frame that the end of a batch cuts is lost with its rest.

/// Codes of the replies whose payload has a meaning of its own; all others are shown in hexadecimal.
enum ReplyCode : unsigned char {
    ReplyVersion = 0x05,
    ReplyModel = 0x07,
    ReplyBluetoothMac = 0x09,
    ReplySerialNumber = 0x0B,
    ReplyStatus = 0x0D,
    ReplyPrintModeEcho = 0x30, ///< the query's own code, which is answered as well as the next one
    ReplyPrintMode = 0x31,
    ReplyPrintedLength = 0x35,
};

/// What the windows are told of one reply.
struct PacketReport
{
    unsigned char pkgTag = 0; ///< command code of the frame; not the tag in its header
    QString text;             ///< decoded payload, empty for a status without a text
};

/// A start byte and what the batch holds of the frame behind it: what was cut off is missing here.
struct PacketTrace
{
    int start = 0; ///< index of the start byte in the batch
    unsigned char code = 0;
    std::optional<unsigned char> tag;
    std::optional<int> payloadSize; ///< bytes, as the header says, 0..65535

    /// The payload is there to its last byte. The three below are empty otherwise.
    bool isWhole() const { return report.has_value(); }
    QString hex; ///< payload, two lower-case digits a byte
    std::optional<PacketReport> report;
    std::optional<quint32> printedCount; ///< raw count of a printed length; 0 when the payload does not hold one
};

/// Walks a batch from front to back. Answers to a paper feed are passed over and leave no trace.
/// @param data  `length` bytes; may be null when `length` is 0. Nothing beyond them is read.
/// @return      in the order of the batch; texts in the language that the translator has now
/// Any thread, no state.
QVector<PacketTrace> analysePackets(const unsigned char* data, int length);
