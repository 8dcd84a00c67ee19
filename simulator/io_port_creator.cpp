#include "device/port.h"
#include "simulator/simulated_port.h"

#include <cstring>

// In a file of its own, so that a program may use the simulated printer and still bring another port.
extern "C" int io_port_creator(port** out, const char* kind)
{
    if (!out || !kind || std::strcmp(kind, "USB") != 0)
        return portNumber(SimulatedPrinter::kBadArgument);
    const int result = openSimulatedPort();
    if (result == 0)
        *out = simulatedPort();
    return result;
}
