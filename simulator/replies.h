#pragma once

#include <QByteArray>

/// What the device can be asked for.
struct DeviceFacts
{
    QByteArray model;        ///< ASCII
    quint8 statusByte = 0;   ///< 0 ready, 1 out of paper, 16 cover open
    qint64 printedLines = 0; ///< dot lines that have passed the head, fed ones too
};

struct Reply
{
    bool known = false; ///< false: the device has no answer to this code
    quint8 code = 0;
    QByteArray payload;
};

/// The device's answer to a query. Which of these payloads are an assumption stands in docs/protocol.md.
Reply replyTo(quint8 query, const DeviceFacts& facts);

/// The count that the printed length is reported in; clients multiply it by 0.25 × 0.084 mm. 8 dot lines are 1 mm,
/// so a count is 21/125 of a line; it is rounded up so that a whole millimetre of paper is never shown as one less.
quint32 printedLengthCount(qint64 dotLines);
