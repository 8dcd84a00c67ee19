#pragma once

#include <QByteArray>

/// What a virtual printer looks like on the bus.
struct UsbShape
{
    quint16 vendor = 0x1209;
    quint16 product = 0x0001;
    bool highSpeed = false;       ///< 480 Mbit/s with packets of 512 bytes, else 12 Mbit/s with 64
    quint8 interfaceClass = 7;    ///< printer; 255 is vendor-specific
    bool composite = false;       ///< another interface without bulk endpoints comes first, as on a printer with keys
    int alternateSetting = 0;     ///< 1: the endpoints are there only once that setting is chosen
    bool hasBulkEndpoints = true; ///< false: some other device with the same numbers
    quint8 inEndpoint = 0x81;     ///< as its descriptor says; the printer itself answers at kInEndpoint
    bool configured = true;       ///< false: the system has given it no configuration, as for want of power

    int packetBytes() const { return highSpeed ? 512 : 64; }
};

constexpr quint8 kInEndpoint = 0x81;
constexpr quint8 kOutEndpoint = 0x02;

/// The device descriptor and its one configuration with everything in it, as the kernel hands them out
/// (USB 2.0, 9.6).
QByteArray usbDescriptors(const UsbShape& shape);
