#include "simulator/simulated_port.h"

#include "device/port.h"

#include <atomic>

namespace {

// The plugging in that the connection belongs to; handles of an earlier one stay dead, as they do on a real bus.
std::atomic<int> s_connection{0};

int preparePort(port* self)
{
    int plugging = 0;
    const int result = self ? simulatedPrinter().prepare(&plugging) : SimulatedPrinter::kBadArgument;
    if (result == 0)
        s_connection = plugging;
    return result;
}

int writePort(port* self, const unsigned char* buffer, int offset, int length, int* written)
{
    if (!self || !buffer || offset != 0 || !written)
        return SimulatedPrinter::kBadArgument;
    *written = 0;
    const int result = simulatedPrinter().receive(buffer, length, s_connection);
    if (result < 0)
        return result;
    *written = result;
    return 0;
}

int readPort(port* self, unsigned char* buffer, int offset, int capacity, int* received)
{
    if (!self || !buffer || offset != 0 || !received)
        return SimulatedPrinter::kBadArgument;
    *received = 0;
    const int result = simulatedPrinter().readReplies(buffer, capacity, s_connection);
    if (result < 0)
        return result;
    *received = result;
    return result == 0 ? kPortTimedOut : 0;
}

port makePort()
{
    port made = {};
    made.prepare = preparePort;
    made.write = writePort;
    made.read = readPort;
    return made;
}

} // namespace

SimulatedPrinter& simulatedPrinter()
{
    static SimulatedPrinter printer;
    return printer;
}

port* simulatedPort()
{
    static port table = makePort();
    return &table;
}

int openSimulatedPort()
{
    SimulatedPrinter& printer = simulatedPrinter();
    if (!printer.isPluggedIn())
        return SimulatedPrinter::kUnplugged;
    s_connection = printer.plugging();
    return 0;
}
