#include "device/usb/bulk_interface.h"

#include <libusb.h>

namespace {

/// Number 0 is every device's control pipe, whatever a descriptor calls it.
bool isBulk(const libusb_endpoint_descriptor& endpoint)
{
    return (endpoint.bmAttributes & LIBUSB_TRANSFER_TYPE_MASK) == LIBUSB_TRANSFER_TYPE_BULK &&
           (endpoint.bEndpointAddress & LIBUSB_ENDPOINT_ADDRESS_MASK) != 0;
}

bool isIn(const libusb_endpoint_descriptor& endpoint)
{
    return (endpoint.bEndpointAddress & LIBUSB_ENDPOINT_DIR_MASK) == LIBUSB_ENDPOINT_IN;
}

/// The first endpoint of each direction counts.
bool hasBothEndpoints(const libusb_interface_descriptor& setting, BulkInterface* found)
{
    BulkInterface candidate;
    candidate.number = setting.bInterfaceNumber;
    candidate.alternateSetting = setting.bAlternateSetting;
    for (int i = 0; i < setting.bNumEndpoints; ++i) {
        const libusb_endpoint_descriptor& endpoint = setting.endpoint[i];
        if (!isBulk(endpoint))
            continue;
        unsigned char& address = isIn(endpoint) ? candidate.in : candidate.out;
        if (address != 0)
            continue;
        address = endpoint.bEndpointAddress;
        if (isIn(endpoint))
            candidate.inPacketBytes = endpoint.wMaxPacketSize & 0x7FF;
    }
    if (candidate.in == 0 || candidate.out == 0 || candidate.inPacketBytes == 0)
        return false;
    *found = candidate;
    return true;
}

} // namespace

bool findBulkInterface(const libusb_config_descriptor& configuration, BulkInterface* found)
{
    for (int i = 0; i < configuration.bNumInterfaces; ++i) {
        const libusb_interface& settings = configuration.interface[i];
        for (int j = 0; j < settings.num_altsetting; ++j) {
            if (hasBothEndpoints(settings.altsetting[j], found))
                return true;
        }
    }
    return false;
}
