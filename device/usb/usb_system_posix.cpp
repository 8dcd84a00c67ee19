#include "device/usb/usb_system.h"

#include <cstdio>
#include <libusb.h>

void writeToSystemLog(const char* line)
{
    std::fprintf(stderr, "%s\n", line);
}

bool mayHavePrinter()
{
    return true; // the list of devices costs nothing
}

const char* systemAdvice(int failure)
{
    if (failure != LIBUSB_ERROR_ACCESS)
        return nullptr;
    return "no permission to open the printer: install the udev rule 70-quillbox.rules, "
           "then unplug the printer and plug it in again";
}

bool cutTransfersAreCounted()
{
    return true;
}

bool threadsOutliveObjects()
{
    return true;
}
