#pragma once

#include "device/port.h"

#include <QByteArray>

/// @param written  receives the bytes that went out; may be null
inline int writeTo(port* usb, const QByteArray& bytes, int* written = nullptr)
{
    int count = -1;
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.constData());
    return usb->write(usb, data, 0, bytes.size(), written ? written : &count);
}

/// @return  the bytes, or the error as text
inline QByteArray readFrom(port* usb, int capacity = 4096)
{
    QByteArray bytes(capacity, '\0');
    int received = -1;
    const int result = usb->read(usb, reinterpret_cast<unsigned char*>(bytes.data()), 0, capacity, &received);
    return result == 0 ? bytes.left(received) : QByteArray::number(result);
}
