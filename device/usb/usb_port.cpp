#include "device/port.h"
#include "device/usb/fair_mutex.h"
#include "device/usb/usb_connection.h"
#include "device/usb/usb_log.h"
#include "device/usb/usb_system.h"

#include <libusb.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <exception>
#include <memory>
#include <mutex>
#include <new>

static_assert(kPortTransferFailed == portNumber(LIBUSB_ERROR_IO) &&
                  kPortNoPermission == portNumber(LIBUSB_ERROR_ACCESS) &&
                  kPortNoDevice == portNumber(LIBUSB_ERROR_NO_DEVICE) &&
                  kPortNotConfigured == portNumber(LIBUSB_ERROR_NOT_FOUND) &&
                  kPortInUse == portNumber(LIBUSB_ERROR_BUSY) &&
                  kPortTakesNothing == portNumber(LIBUSB_ERROR_TIMEOUT) && kPortTimedOut == LIBUSB_ERROR_TIMEOUT &&
                  kPortRefused == portNumber(LIBUSB_ERROR_PIPE) &&
                  kPortNotSupported == portNumber(LIBUSB_ERROR_NOT_SUPPORTED),
              "the port reports libusb's numbers");

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kNoProgressLimit(10000); ///< a printer out of paper takes nothing
constexpr milliseconds kSendSlice(1000);        ///< how often a write looks whether anything moves
constexpr milliseconds kReadLimit(200);         ///< for all that the device has sent
constexpr milliseconds kReadGap(50);            ///< a device that is silent for so long has nothing more

/// What a transfer may still take; libusb understands 0 as for ever.
int timeoutMs(Clock::time_point end, milliseconds longest)
{
    const auto left = std::chrono::ceil<milliseconds>(end - Clock::now());
    return static_cast<int>(std::clamp(left, milliseconds(1), longest).count());
}

/// The port of the process. It outlives the devices that come and go: prepare() brings up the next one.
///
/// Two locks: m_writing is held for the length of a frame, m_reading for a read, and both of them, in this order,
/// while the connection changes. So no handle is closed under a transfer, and no frame is cut by another writer's.
class UsbPort : public port
{
public:
    UsbPort();

    /// Opens the printer as it is plugged in now.
    int open();

private:
    int prepareSession();
    int writeFrame(const unsigned char* frame, int length, int* written);
    int sendAll(const unsigned char* frame, int length, int* written);
    int readReplies(unsigned char* buffer, int capacity, int* received);
    int reopen();

    FairMutex m_writing;
    std::mutex m_reading;
    std::unique_ptr<UsbConnection> m_connection;
    int m_failure = 0; ///< of a write; the device may hold half a frame, and takes no other until it is prepared
};

/// The table's operations may not throw, and locks and allocation may.
template <class Operation>
int guarded(Operation operation)
{
    try {
        return operation();
    } catch (const std::bad_alloc&) {
        return LIBUSB_ERROR_NO_MEM;
    } catch (const std::exception&) {
        return LIBUSB_ERROR_OTHER;
    }
}

UsbPort::UsbPort()
    : port()
{
    prepare = [](port* self) {
        return portNumber(guarded([&] { return static_cast<UsbPort*>(self)->prepareSession(); }));
    };
    write = [](port* self, const unsigned char* buffer, int offset, int length, int* written) {
        if (!buffer || offset != 0 || length < 1 || !written)
            return portNumber(LIBUSB_ERROR_INVALID_PARAM);
        return portNumber(guarded([&] { return static_cast<UsbPort*>(self)->writeFrame(buffer, length, written); }));
    };
    read = [](port* self, unsigned char* buffer, int offset, int capacity, int* received) {
        if (!buffer || offset != 0 || !received)
            return portNumber(LIBUSB_ERROR_INVALID_PARAM);
        return readNumber(
            guarded([&] { return static_cast<UsbPort*>(self)->readReplies(buffer, capacity, received); }));
    };
}

int UsbPort::open()
{
    const std::lock_guard<FairMutex> writing(m_writing);
    const std::lock_guard<std::mutex> reading(m_reading);
    return reopen();
}

/// Both locks are held.
int UsbPort::reopen()
{
    m_connection.reset(); // before the next one is claimed
    int result = 0;
    m_connection = UsbConnection::open(&result);
    m_failure = 0;
    if (m_connection)
        reportUsbOpened(m_connection->place());
    return result;
}

/// A device that was unplugged, and one that may hold half a frame, are opened anew.
int UsbPort::prepareSession()
{
    const std::lock_guard<FairMutex> writing(m_writing);
    const std::lock_guard<std::mutex> reading(m_reading);
    if (m_connection && m_failure == 0 && m_connection->startSession() == 0) {
        reportUsbAnswer();
        return 0;
    }
    if (const int result = reopen(); result != 0)
        return result;
    const int result = m_connection->startSession();
    if (result != 0) {
        reportUsbFailure(result, m_connection->place());
        m_connection.reset();
    }
    return result;
}

int UsbPort::writeFrame(const unsigned char* frame, int length, int* written)
{
    const std::lock_guard<FairMutex> writing(m_writing);
    *written = 0;
    if (!m_connection)
        return LIBUSB_ERROR_NO_DEVICE;
    if (m_failure != 0) // of the frame that this one waited behind; its bytes would end the half one
        return m_failure;
    const int result = sendAll(frame, length, written);
    if (result == 0)
        return 0;
    m_failure = result;
    reportUsbFailure(result, m_connection->outPlace());
    if (result == LIBUSB_ERROR_PIPE)
        m_connection->clearOutHalt();
    return result;
}

/// The device takes the frame as a stream, so sending goes on behind what has moved, and nothing is sent twice. Where
/// what has moved is not known, the frame is one transfer, and lost with it.
int UsbPort::sendAll(const unsigned char* frame, int length, int* written)
{
    const bool goesOn = cutTransfersAreCounted();
    const auto slice = goesOn ? kSendSlice : kNoProgressLimit;
    auto end = Clock::now() + kNoProgressLimit;
    while (*written < length) {
        int moved = 0;
        const int result = m_connection->send(frame + *written, length - *written, timeoutMs(end, slice), &moved);
        *written += moved;
        if (moved > 0)
            end = Clock::now() + kNoProgressLimit;
        if (result != 0 && (result != LIBUSB_ERROR_TIMEOUT || !goesOn))
            return result;
        if (moved == 0 && Clock::now() >= end)
            return LIBUSB_ERROR_TIMEOUT;
    }
    return 0;
}

int UsbPort::readReplies(unsigned char* buffer, int capacity, int* received)
{
    const std::lock_guard<std::mutex> reading(m_reading);
    *received = 0;
    if (!m_connection)
        return LIBUSB_ERROR_NO_DEVICE;
    const int packet = m_connection->packetBytes();
    if (capacity < packet)
        return LIBUSB_ERROR_INVALID_PARAM;
    const auto end = Clock::now() + kReadLimit;
    // Whole packets only: one that does not fit would be lost.
    while (capacity - *received >= packet && Clock::now() < end) {
        int moved = 0;
        const int room = (capacity - *received) / packet * packet;
        const int result = m_connection->receive(buffer + *received, room,
                                                 timeoutMs(end, *received ? kReadGap : kReadLimit), &moved);
        *received += moved;
        if (result == LIBUSB_ERROR_TIMEOUT && moved == 0)
            break;
        if (result == 0 || result == LIBUSB_ERROR_TIMEOUT)
            continue;
        if (*received > 0)
            break; // what has come first; the failure is there again at the next read
        reportUsbFailure(result, m_connection->inPlace());
        if (result == LIBUSB_ERROR_PIPE)
            m_connection->clearInHalt();
        return result;
    }
    if (*received == 0)
        return LIBUSB_ERROR_TIMEOUT;
    reportUsbAnswer();
    return 0;
}

struct AtExit
{
    void operator()(UsbPort* thePort) const
    {
        if (threadsOutliveObjects())
            delete thePort;
    }
};

UsbPort& usbPort()
{
    static const std::unique_ptr<UsbPort, AtExit> thePort(new UsbPort);
    return *thePort;
}

} // namespace

extern "C" int io_port_creator(port** out, const char* kind)
{
    if (!out || !kind || std::strcmp(kind, "USB") != 0)
        return portNumber(LIBUSB_ERROR_INVALID_PARAM);
    return portNumber(guarded([&] {
        const int result = usbPort().open();
        if (result == 0)
            *out = &usbPort();
        return result;
    }));
}
