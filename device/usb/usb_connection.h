#pragma once

#include "device/usb/bulk_interface.h"

#include <memory>
#include <string>

struct libusb_context;
struct libusb_device;
struct libusb_device_handle;

/// A printer that is opened and whose interface is claimed, until this object ends.
///
/// Results are 0 or libusb's negative error codes. One thread may send while another receives; everything else needs
/// the connection for itself.
class UsbConnection
{
public:
    /// Finds, opens and claims a supported printer; of several the first that lets itself be claimed. Reports what
    /// keeps it from that.
    /// @return  null with `result` below 0, LIBUSB_ERROR_NO_DEVICE when there is none
    static std::unique_ptr<UsbConnection> open(int* result);
    ~UsbConnection();

    /// Clears both halts and throws away what the device still wanted to say to somebody before. For a device, a
    /// cleared halt is also the sign to forget half a frame. Does not reset it.
    int startSession();

    /// @param moved      receives the bytes that went out, also when the result is an error
    /// @param timeoutMs  1 or more
    int send(const unsigned char* data, int length, int timeoutMs, int* moved);
    /// @param capacity  a multiple of packetBytes(), or what comes may not fit
    /// @param moved     receives the bytes now in `buffer`, also when the result is an error
    int receive(unsigned char* buffer, int capacity, int timeoutMs, int* moved);
    int clearOutHalt();
    int clearInHalt();

    int packetBytes() const { return m_interface.inPacketBytes; }

    // For the log: the device on its bus, the interface, and both endpoints or the one of a direction.
    std::string place() const;
    std::string outPlace() const;
    std::string inPlace() const;

private:
    struct ContextCloser
    {
        void operator()(libusb_context* context) const;
    };
    struct HandleCloser
    {
        void operator()(libusb_device_handle* handle) const;
    };
    using Context = std::unique_ptr<libusb_context, ContextCloser>;
    using Handle = std::unique_ptr<libusb_device_handle, HandleCloser>;

    UsbConnection() = default;
    int openFirstOf(libusb_device** devices);
    int claim(libusb_device* device);
    void dropStaleInput();

    Context m_context; // ends after the handle, which belongs to it
    Handle m_handle;
    BulkInterface m_interface;
    std::string m_place; ///< without the endpoints
};
