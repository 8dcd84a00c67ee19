#pragma once

#include <cstdint>
#include <vector>

/// What a device calls itself on the bus.
struct UsbId
{
    std::uint16_t vendor;
    std::uint16_t product;
};

/// The printers that this client drives. The one place for it is the CMake variable QUILLBOX_USB_IDS, which also
/// makes the udev rule; its default, 1209:0001, is a number that is free for private tests.
const std::vector<UsbId>& supportedUsbIds();
