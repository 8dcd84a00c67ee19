#include "simulator/wire_frame.h"

#include <QtEndian>

#include <zlib.h>

quint32 sealOf(const QByteArray& payload, quint32 key)
{
    // constData() is never null; zlib would take a null pointer as a request for its own start value.
    const auto* bytes = reinterpret_cast<const Bytef*>(payload.constData());
    return static_cast<quint32>(crc32(key, bytes, static_cast<uInt>(payload.size())));
}

quint16 wireNumber16(const char* bytes)
{
    return qFromLittleEndian<quint16>(bytes);
}

quint32 wireNumber32(const char* bytes)
{
    return qFromLittleEndian<quint32>(bytes);
}

QByteArray wireBytes16(quint16 number)
{
    QByteArray bytes(2, '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

QByteArray wireBytes32(quint32 number)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

QByteArray sealedFrame(quint8 code, quint8 tag, const QByteArray& payload, quint32 key)
{
    QByteArray frame;
    frame.reserve(payload.size() + kOverheadBytes);
    frame.append(static_cast<char>(kStartMarker));
    frame.append(static_cast<char>(code));
    frame.append(static_cast<char>(tag));
    frame.append(wireBytes16(static_cast<quint16>(payload.size())));
    frame.append(payload);
    frame.append(wireBytes32(sealOf(payload, key)));
    frame.append(static_cast<char>(kEndMarker));
    return frame;
}
