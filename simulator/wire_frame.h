#pragma once

#include <QByteArray>

// A frame as the device sees it. Written from docs/protocol.md and sharing nothing with the client's own framing, so
// that a fault in one of the two is seen by the other.

/// Both ends start with this key; a key exchange replaces it until the device loses power.
constexpr quint32 kPowerOnKey = 0x2C5E9B17U;
/// Seals the set-key frame and hides the key in it.
constexpr quint32 kKeyMask = 0x6A1F3D82U;

constexpr quint8 kStartMarker = 0x02;
constexpr quint8 kEndMarker = 0x03;
constexpr int kHeaderBytes = 5;    ///< start marker, code, tag, length
constexpr int kOverheadBytes = 10; ///< bytes of a frame beside its payload

/// Longest payload that the device takes, in bytes: the piece of a print job. A longer length is taken for noise,
/// so that one flipped bit cannot make the device wait for 64 KiB.
constexpr int kLongestPayload = 1008;

struct WireFrame
{
    quint8 code = 0;
    quint8 tag = 0;
    QByteArray payload;
    quint32 seal = 0; ///< the CRC that came with it
};

/// CRC-32 of the payload with `key` as the running value to start from; of no bytes it is the key itself.
quint32 sealOf(const QByteArray& payload, quint32 key);

/// Little-endian numbers of the wire. The bytes have to be there.
quint16 wireNumber16(const char* bytes);
quint32 wireNumber32(const char* bytes);
QByteArray wireBytes16(quint16 number);
QByteArray wireBytes32(quint32 number);

/// A whole frame of payload + kOverheadBytes bytes.
/// @param payload  at most 65535 bytes
QByteArray sealedFrame(quint8 code, quint8 tag, const QByteArray& payload, quint32 key);
