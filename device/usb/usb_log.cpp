#include "device/usb/usb_log.h"

#include "device/usb/usb_ids.h"
#include "device/usb/usb_system.h"

#include <libusb.h>

#include <cstdio>
#include <mutex>
#include <string>

namespace {

struct Log
{
    std::mutex mutex;
    void (*sink)(const char* line) = writeToSystemLog;
    std::string lastFailure;
};

Log& usbLog()
{
    static Log& log = *new Log; // for threads that outlive the objects of the program
    return log;
}

std::string supportedIds()
{
    std::string list;
    for (const UsbId& id : supportedUsbIds()) {
        char text[16];
        std::snprintf(text, sizeof text, "%s%04x:%04x", list.empty() ? "" : ", ", unsigned{id.vendor},
                      unsigned{id.product});
        list += text;
    }
    return list;
}

std::string failureText(int failure)
{
    if (const char* advice = systemAdvice(failure))
        return advice;
    switch (failure) {
    case UsbNoPrinter:
        return "no printer found: connect it and switch it on (looked for " + supportedIds() + ")";
    case UsbNoInterface:
        return "the device has no interface with two bulk endpoints: it is not a printer of this kind";
    case UsbUnconfigured:
        return "the system has not configured the device, as where a hub has too little power for it: "
               "plug it into a port of the computer itself";
    case UsbNoDriver:
        return "no driver lets programs use the printer: give it the WinUSB driver in the Device Manager";
    case LIBUSB_ERROR_BUSY:
        return "another program holds the printer: close it, and take the printer out of the print queues";
    case LIBUSB_ERROR_NO_DEVICE:
        return "the printer is unplugged or switched off: connect it again, it is found by itself";
    case LIBUSB_ERROR_NOT_FOUND:
        return "the device is leaving or loses its configuration: it is looked for again by itself; "
               "if this comes back, unplug the printer and plug it in again";
    case LIBUSB_ERROR_PIPE:
        return "the printer refused a transfer (stall): the connection is set up anew; "
               "if this comes back, switch the printer off and on";
    case LIBUSB_ERROR_TIMEOUT:
        return "the printer takes no more data (timed out): look after the paper and the cover";
    default:
        return std::string(libusb_error_name(failure)) + ": unplug the printer and plug it in again";
    }
}

std::string lineOf(const std::string& text, const std::string& place)
{
    return "USB: " + text + (place.empty() ? "" : " [" + place + "]");
}

} // namespace

void setUsbLog(void (*sink)(const char* line))
{
    Log& log = usbLog();
    const std::lock_guard<std::mutex> lock(log.mutex);
    log.sink = sink ? sink : writeToSystemLog;
}

void reportUsbFailure(int failure, const std::string& place)
{
    const std::string line = lineOf(failureText(failure), place);
    Log& log = usbLog();
    const std::lock_guard<std::mutex> lock(log.mutex);
    if (line == log.lastFailure)
        return;
    log.lastFailure = line;
    log.sink(line.c_str());
}

void reportUsbOpened(const std::string& place)
{
    Log& log = usbLog();
    const std::lock_guard<std::mutex> lock(log.mutex);
    log.lastFailure.clear();
    log.sink(lineOf("printer opened", place).c_str());
}

void reportUsbAnswer()
{
    Log& log = usbLog();
    const std::lock_guard<std::mutex> lock(log.mutex);
    log.lastFailure.clear();
}
