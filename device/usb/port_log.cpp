#include "device/port_log.h"

#include "device/usb/usb_log.h"

void setPortLog(void (*sink)(const char* line))
{
    setUsbLog(sink);
}
