// Prints the numbers of the printers that the client drives, one vvvv:pppp a line as the kernel writes them.
#include "device/usb/usb_ids.h"

#include <cstdio>

int main()
{
    for (const UsbId& id : supportedUsbIds())
        std::printf("%04x:%04x\n", unsigned{id.vendor}, unsigned{id.product});
}
