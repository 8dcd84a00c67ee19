#include "simulator/usb/virtual_usb_printer.h"

#include "simulator/simulated_port.h"
#include "tests/usb/bench.h"

void startBench()
{
    static VirtualUsbPrinter bus(simulatedPrinter());
}

const bool kOverUsb = true;
