#pragma once

/// Where the port tells what happens to it. It has no log of its own and knows nothing of the client's.
/// @param sink  called with one line without a line end, from whichever thread uses the port, one call at a time;
/// null
///              for standard error, where the lines go until this is called
void setUsbLog(void (*sink)(const char* line));

/// Reports a failure and how to mend it. The receiver tries again every 2 s, so a failure that only repeats the last
/// one is not written again until reportUsbReady() has been called.
/// @param error  a libusb error code
void reportUsbFailure(int error);

/// No supported device is on the bus.
void reportUsbNoPrinter();

/// The device has no interface with two bulk endpoints.
void reportUsbNoInterface();

/// A session begins or the printer answers, and every failure is news again.
/// @param newlyOpened  whether the device has just been opened, which is worth a line
void reportUsbReady(bool newlyOpened);
