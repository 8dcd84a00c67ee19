#include "device/usb/usb_connection.h"

#include "device/port.h"
#include "device/usb/usb_ids.h"
#include "device/usb/usb_log.h"
#include "device/usb/usb_system.h"

#include <libusb.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kStaleInputPauseMs = 10; ///< a device that has something waiting says so at once
constexpr auto kStaleInputLimit = std::chrono::milliseconds(200); ///< for one that never stops talking

bool isSupported(libusb_device* device)
{
    libusb_device_descriptor descriptor;
    if (libusb_get_device_descriptor(device, &descriptor) != 0)
        return false;
    const auto& ids = supportedUsbIds();
    return std::any_of(ids.begin(), ids.end(), [&](const UsbId& id) {
        return id.vendor == descriptor.idVendor && id.product == descriptor.idProduct;
    });
}

/// @return  a libusb error code or a UsbTrouble
int bulkInterfaceOf(libusb_device* device, BulkInterface* found)
{
    libusb_config_descriptor* configuration = nullptr;
    const int result = libusb_get_active_config_descriptor(device, &configuration);
    if (result == LIBUSB_ERROR_NOT_FOUND)
        return UsbUnconfigured;
    if (result != 0)
        return result;
    const bool isThere = findBulkInterface(*configuration, found);
    libusb_free_config_descriptor(configuration);
    return isThere ? 0 : UsbNoInterface;
}

/// libusb's number for a failure, as far as it has one.
int portResult(int failure)
{
    switch (failure) {
    case UsbNoPrinter:
        return LIBUSB_ERROR_NO_DEVICE;
    case UsbNoInterface:
        return LIBUSB_ERROR_NOT_SUPPORTED;
    case UsbUnconfigured:
        return LIBUSB_ERROR_NOT_FOUND;
    case UsbNoDriver:
        return kPortNoDriver - kPortNumbers;
    default:
        return failure;
    }
}

/// Where the system's driver is none that libusb can speak through, the device is listed and cannot be opened.
int openingFailure(int result)
{
    return result == LIBUSB_ERROR_NOT_SUPPORTED ? int{UsbNoDriver} : result;
}

/// As lsusb counts: bus and address on it.
std::string placeOf(libusb_device* device)
{
    return "device " + std::to_string(libusb_get_bus_number(device)) + ':' +
           std::to_string(libusb_get_device_address(device));
}

std::string endpointText(unsigned char address)
{
    char text[8];
    std::snprintf(text, sizeof text, "0x%02x", unsigned{address});
    return text;
}

} // namespace

void UsbConnection::ContextCloser::operator()(libusb_context* context) const
{
    libusb_exit(context);
}

void UsbConnection::HandleCloser::operator()(libusb_device_handle* handle) const
{
    libusb_close(handle);
}

/// Each connection has a context of its own: without a udev daemon, an old one never lists a device plugged in again.
std::unique_ptr<UsbConnection> UsbConnection::open(int* result)
{
    if (!mayHavePrinter()) {
        reportUsbFailure(UsbNoPrinter, {});
        *result = portResult(UsbNoPrinter);
        return nullptr;
    }
    libusb_context* context = nullptr;
    *result = libusb_init(&context);
    if (*result != 0) {
        reportUsbFailure(*result, {});
        return nullptr;
    }
    std::unique_ptr<UsbConnection> connection(new UsbConnection);
    connection->m_context.reset(context);
    libusb_device** devices = nullptr;
    const auto count = libusb_get_device_list(context, &devices);
    if (count < 0) {
        *result = static_cast<int>(count);
        reportUsbFailure(*result, {});
        return nullptr;
    }
    *result = connection->openFirstOf(devices);
    libusb_free_device_list(devices, 1);
    return *result == 0 ? std::move(connection) : nullptr;
}

/// @param devices  ends with null
int UsbConnection::openFirstOf(libusb_device** devices)
{
    int failure = UsbNoPrinter;
    std::string place;
    for (; *devices; ++devices) {
        if (!isSupported(*devices))
            continue;
        m_place = placeOf(*devices);
        const int result = claim(*devices);
        if (result == 0)
            return 0;
        // A device that has just been unplugged may still be listed; what another one says is worth more.
        if (result == LIBUSB_ERROR_NO_DEVICE)
            continue;
        failure = result;
        place = m_place;
    }
    reportUsbFailure(failure, place);
    return portResult(failure);
}

/// @return  a libusb error code or a UsbTrouble
int UsbConnection::claim(libusb_device* device)
{
    BulkInterface found;
    if (const int result = bulkInterfaceOf(device, &found); result != 0)
        return result;
    m_place += ", interface " + std::to_string(found.number);
    libusb_device_handle* opened = nullptr;
    if (const int result = libusb_open(device, &opened); result != 0)
        return openingFailure(result);
    Handle handle(opened);
    // Where the system binds a printer driver of its own it steps aside until the interface is released. Elsewhere
    // there is none, and the call says so.
    libusb_set_auto_detach_kernel_driver(opened, 1);
    if (const int result = libusb_claim_interface(opened, found.number); result != 0)
        return openingFailure(result);
    if (found.alternateSetting != 0) {
        if (const int result = libusb_set_interface_alt_setting(opened, found.number, found.alternateSetting);
            result != 0) {
            libusb_release_interface(opened, found.number);
            return result;
        }
    }
    m_handle = std::move(handle);
    m_interface = found;
    return 0;
}

std::string UsbConnection::place() const
{
    return m_place + ", endpoints " + endpointText(m_interface.out) + " and " + endpointText(m_interface.in);
}

std::string UsbConnection::outPlace() const
{
    return m_place + ", endpoint " + endpointText(m_interface.out);
}

std::string UsbConnection::inPlace() const
{
    return m_place + ", endpoint " + endpointText(m_interface.in);
}

UsbConnection::~UsbConnection()
{
    if (m_handle)
        libusb_release_interface(m_handle.get(), m_interface.number);
}

int UsbConnection::startSession()
{
    if (const int result = clearOutHalt(); result != 0)
        return result;
    if (const int result = clearInHalt(); result != 0)
        return result;
    dropStaleInput();
    return 0;
}

void UsbConnection::dropStaleInput()
{
    unsigned char waste[4096];
    const auto end = Clock::now() + kStaleInputLimit;
    int moved = 0;
    do {
        const int result = receive(waste, sizeof waste, kStaleInputPauseMs, &moved);
        if (result != 0 && moved == 0)
            return;
    } while (Clock::now() < end);
}

int UsbConnection::send(const unsigned char* data, int length, int timeoutMs, int* moved)
{
    // libusb has one function for both directions and only reads here.
    auto* bytes = const_cast<unsigned char*>(data);
    *moved = 0;
    return libusb_bulk_transfer(m_handle.get(), m_interface.out, bytes, length, moved,
                                static_cast<unsigned>(timeoutMs));
}

int UsbConnection::receive(unsigned char* buffer, int capacity, int timeoutMs, int* moved)
{
    *moved = 0;
    return libusb_bulk_transfer(m_handle.get(), m_interface.in, buffer, capacity, moved,
                                static_cast<unsigned>(timeoutMs));
}

int UsbConnection::clearOutHalt()
{
    return libusb_clear_halt(m_handle.get(), m_interface.out);
}

int UsbConnection::clearInHalt()
{
    return libusb_clear_halt(m_handle.get(), m_interface.in);
}
