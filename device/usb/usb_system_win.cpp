#include "device/usb/usb_system.h"

#include "device/usb/device_id_list.h"
#include "device/usb/usb_ids.h"
#include "device/usb/usb_log.h"

#include <windows.h>

#include <cfgmgr32.h>
#include <libusb.h>

#include <vector>

/// Read by the debugger's output window and its like.
void writeToSystemLog(const char* line)
{
    OutputDebugStringA(line);
}

/// Asks the system what is plugged in, which it knows by heart. A computer without any USB device is none that can be
/// trusted to have answered.
bool mayHavePrinter()
{
    constexpr ULONG kPresentUsbDevices = CM_GETIDLIST_FILTER_ENUMERATOR | CM_GETIDLIST_FILTER_PRESENT;
    ULONG length = 0;
    if (CM_Get_Device_ID_List_SizeW(&length, L"USB", kPresentUsbDevices) != CR_SUCCESS || length == 0)
        return true;
    std::vector<wchar_t> list(length + 2);
    if (CM_Get_Device_ID_ListW(L"USB", list.data(), length, kPresentUsbDevices) != CR_SUCCESS || list[0] == 0)
        return true;
    return namesOneOf(list.data(), supportedUsbIds());
}

const char* systemAdvice(int failure)
{
    switch (failure) {
    case LIBUSB_ERROR_ACCESS:
        return "another program holds the printer: close it";
    case UsbUnconfigured:
        return "Windows has not configured the device: give it the WinUSB driver in the Device Manager, "
               "or plug it into a port of the computer itself";
    default:
        return nullptr;
    }
}

/// WinUSB's own count of a transfer that was cancelled is not to be relied on.
bool cutTransfersAreCounted()
{
    return false;
}

bool threadsOutliveObjects()
{
    return false;
}
