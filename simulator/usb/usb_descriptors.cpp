#include "simulator/usb/usb_descriptors.h"

namespace {

constexpr quint8 kDevice = 1, kConfiguration = 2, kInterface = 4, kEndpoint = 5; // descriptor types
constexpr quint8 kHidClass = 3, kBulk = 2, kInterrupt = 3;
constexpr quint8 kKeysEndpoint = 0x83;

quint8 low(int number)
{
    return static_cast<quint8>(number & 0xFF);
}

quint8 high(int number)
{
    return static_cast<quint8>(number >> 8);
}

/// With the length in front that every descriptor begins with.
QByteArray descriptor(std::initializer_list<quint8> fields)
{
    QByteArray bytes(1, static_cast<char>(fields.size() + 1));
    for (const quint8 field : fields)
        bytes.append(static_cast<char>(field));
    return bytes;
}

QByteArray interface(int number, int setting, int endpoints, quint8 interfaceClass)
{
    return descriptor({kInterface, low(number), low(setting), low(endpoints), interfaceClass, 1, 2, 0});
}

QByteArray endpoint(quint8 address, quint8 type, int packetBytes)
{
    return descriptor({kEndpoint, address, type, low(packetBytes), high(packetBytes), 10});
}

} // namespace

QByteArray usbDescriptors(const UsbShape& shape)
{
    QByteArray interfaces;
    if (shape.composite)
        interfaces += interface(0, 0, 1, kHidClass) + endpoint(kKeysEndpoint, kInterrupt, 8);
    const int number = shape.composite ? 1 : 0;
    for (int setting = 0; setting < shape.alternateSetting; ++setting)
        interfaces += interface(number, setting, 0, shape.interfaceClass);
    const quint8 type = shape.hasBulkEndpoints ? kBulk : kInterrupt;
    interfaces += interface(number, shape.alternateSetting, 2, shape.interfaceClass) +
                  endpoint(kOutEndpoint, type, shape.packetBytes()) +
                  endpoint(shape.inEndpoint, type, shape.packetBytes());

    const int total = 9 + interfaces.size();
    return descriptor({kDevice, 0x00, 0x02, 0, 0, 0, 64, low(shape.vendor), high(shape.vendor), low(shape.product),
                       high(shape.product), 0, 1, 0, 0, 0, 1}) +
           descriptor({kConfiguration, low(total), high(total), low(number + 1), 1, 0, 0x80, 50}) + interfaces;
}
