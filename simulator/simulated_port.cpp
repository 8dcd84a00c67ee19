#include "simulator/simulated_port.h"

#include "device/port.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;
using Endpoint = SimulatedPrinter::Endpoint;

constexpr int kPacketBytes = 64; ///< as on a bus at full speed
constexpr std::chrono::seconds kNoProgressLimit(10);

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

/// The frame goes in packets, as a bus brings it. A printer that holds back is waited for.
int sendFrame(const unsigned char* frame, int length, int* written)
{
    auto end = Clock::now() + kNoProgressLimit;
    while (*written < length) {
        const int packet = std::min(kPacketBytes, length - *written);
        const int taken = simulatedPrinter().receive(frame + *written, packet, s_connection);
        if (taken < 0)
            return taken;
        if (taken > 0)
            end = Clock::now() + kNoProgressLimit;
        else if (Clock::now() >= end)
            return kPortTimedOut;
        else
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        *written += taken;
    }
    return 0;
}

int writePort(port* self, const unsigned char* buffer, int offset, int length, int* written)
{
    if (!self || !buffer || offset != 0 || length < 0 || !written)
        return SimulatedPrinter::kBadArgument;
    static std::mutex frame;
    const std::lock_guard<std::mutex> lock(frame);
    *written = 0;
    const int result = sendFrame(buffer, length, written);
    if (result == SimulatedPrinter::kRefused)
        simulatedPrinter().clearHalt(Endpoint::Out);
    return result;
}

int readPort(port* self, unsigned char* buffer, int offset, int capacity, int* received)
{
    if (!self || !buffer || offset != 0 || !received)
        return SimulatedPrinter::kBadArgument;
    *received = 0;
    const int result = simulatedPrinter().readReplies(buffer, capacity, s_connection);
    if (result == SimulatedPrinter::kRefused)
        simulatedPrinter().clearHalt(Endpoint::In);
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
    if (!printer.report().pluggedIn)
        return SimulatedPrinter::kUnplugged;
    s_connection = printer.report().plugging;
    return 0;
}
