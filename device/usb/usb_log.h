#pragma once

#include <string>

/// Where the port tells what happens to it. It has no log of its own and knows nothing of the client's.
/// @param sink  called with one line without a line end, from whichever thread uses the port, one call at a time;
///              null for the system's log, where the lines go until this is called
void setUsbLog(void (*sink)(const char* line));

/// What keeps a printer from being opened and has no number of libusb's; those are negative.
enum UsbTrouble : int {
    UsbNoPrinter = 1,    ///< no supported device is on the bus
    UsbNoInterface = 2,  ///< the device has no interface with two bulk endpoints
    UsbUnconfigured = 3, ///< the system has not configured the device, so that it has no interface at all
    UsbNoDriver = 4,     ///< the system's driver of the device lets no program transfer
};

/// Reports a failure and how to mend it. The receiver tries again every 2 s, so a failure that only repeats the last
/// one, at the same place, is not written again until reportUsbOpened() or reportUsbAnswer() has been called.
/// @param failure  a libusb error code or a UsbTrouble
/// @param place    device, interface and endpoint as far as they are known; may be empty
void reportUsbFailure(int failure, const std::string& place);

/// A device has been opened, which is worth a line. Every failure is news again.
void reportUsbOpened(const std::string& place);

/// A session begins or the printer answers, and every failure is news again.
void reportUsbAnswer();
