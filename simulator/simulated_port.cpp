#include "simulator/simulated_port.h"

#include "device/port.h"

#include <algorithm>
#include <chrono>
#include <mutex>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;
using Endpoint = SimulatedPrinter::Endpoint;

constexpr int kPacketBytes = 64; ///< as on a bus at full speed
constexpr std::chrono::seconds kNoProgressLimit(10);

constexpr int kNoConnection = -2;

/// A mutex that lets a second caller in before the first one locks again, as a job does right after its frame.
class FrameMutex
{
public:
    void lock()
    {
        const std::lock_guard<std::mutex> next(m_next);
        m_frame.lock();
    }
    void unlock() { m_frame.unlock(); }

private:
    std::mutex m_next;
    std::mutex m_frame;
};

// As in the port over USB: one is held for the length of a frame, one for a read, and both, in this order, while the
// connection changes.
FrameMutex s_writing;
std::mutex s_reading;

// The plugging in that the connection belongs to; handles of an earlier one stay dead, as they do on a real bus.
int s_connection = kNoConnection; // changed under both locks
int s_failure = 0;                // of a write, under its lock; nothing is written until the port is prepared

/// @param bringUp  gives the plugging in, or an error
template <class BringUp>
int connectAnew(BringUp bringUp)
{
    const std::lock_guard<FrameMutex> writing(s_writing);
    const std::lock_guard<std::mutex> reading(s_reading);
    s_connection = kNoConnection;
    s_failure = 0;
    return bringUp(&s_connection);
}

int preparePort(port* self)
{
    if (!self)
        return portNumber(SimulatedPrinter::kBadArgument);
    return portNumber(connectAnew([](int* plugging) { return simulatedPrinter().prepare(plugging); }));
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
        return portNumber(SimulatedPrinter::kBadArgument);
    const std::lock_guard<FrameMutex> writing(s_writing);
    *written = 0;
    if (s_failure != 0)
        return portNumber(s_failure);
    s_failure = sendFrame(buffer, length, written);
    if (s_failure == SimulatedPrinter::kRefused)
        simulatedPrinter().clearHalt(Endpoint::Out);
    return portNumber(s_failure);
}

int readPort(port* self, unsigned char* buffer, int offset, int capacity, int* received)
{
    if (!self || !buffer || offset != 0 || !received)
        return portNumber(SimulatedPrinter::kBadArgument);
    const std::lock_guard<std::mutex> reading(s_reading);
    *received = 0;
    const int result = simulatedPrinter().readReplies(buffer, capacity, s_connection);
    if (result == SimulatedPrinter::kRefused)
        simulatedPrinter().clearHalt(Endpoint::In);
    if (result < 0)
        return readNumber(result);
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
    // Never destroyed: a library that is loaded is left when the other threads have been killed with their locks held.
    static SimulatedPrinter& printer = *new SimulatedPrinter;
    return printer;
}

port* simulatedPort()
{
    static port table = makePort();
    return &table;
}

int openSimulatedPort()
{
    return portNumber(connectAnew([](int* plugging) {
        const PrinterReport report = simulatedPrinter().report();
        if (!report.pluggedIn)
            return SimulatedPrinter::kUnplugged;
        *plugging = report.plugging;
        return 0;
    }));
}
