#pragma once

struct libusb_config_descriptor;

/// The part of a device that a printer port talks to.
struct BulkInterface
{
    int number = 0;
    int alternateSetting = 0;
    unsigned char in = 0; ///< endpoint addresses
    unsigned char out = 0;
    int inPacketBytes = 0; ///< wMaxPacketSize: 64, 512 or 1024
};

/// Finds the first interface with a bulk endpoint in each direction, of whatever class: models call themselves
/// printer or vendor-specific.
/// @return  false: there is none
bool findBulkInterface(const libusb_config_descriptor& configuration, BulkInterface* found);
