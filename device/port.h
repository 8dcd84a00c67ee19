#pragma once

/// The hardware seam: everything that the client knows of a USB connection.
///
/// A port *is* a table of operations; every one takes the port itself as its first argument and returns 0 for done or
/// a negative error code. The client uses three of the thirteen; the others belong to the port library and may be
/// null. The order is the binary contract with the library and never changes.
///
/// Threads: one thread may read while another writes, and several may write. No operation may throw.
struct port
{
    using Operation = int (*)(port* self);

    Operation reserved1;
    Operation reserved2;
    Operation reserved3;
    Operation reserved4;

    /// Readies the opened device for a new session.
    int (*prepare)(port* self);

    Operation reserved6;
    Operation reserved7;
    Operation reserved8;
    Operation reserved9;
    Operation reserved10;

    /// Writes one whole frame of `length` bytes to the device's bulk OUT endpoint.
    /// @param offset   always 0
    /// @param written  receives the bytes that went out
    int (*write)(port* self, const unsigned char* buffer, int offset, int length, int* written);

    Operation reserved12;

    /// Reads what the device has sent, up to `capacity` bytes.
    /// @param offset    always 0
    /// @param received  receives the number of bytes now in `buffer`
    /// @return          0, also with nothing received; kPortTimedOut when the device had nothing to say
    int (*read)(port* self, unsigned char* buffer, int offset, int capacity, int* received);
};

/// What read() returns when no data came in time.
constexpr int kPortTimedOut = -7;

// What else the ports of this project return; kPortTimedOut from write() says that the device takes nothing. Another
// library may have numbers of its own, since the client does not decide by them and only puts them into words.
constexpr int kPortTransferFailed = -1;
constexpr int kPortNoPermission = -3;
constexpr int kPortNoDevice = -4;      ///< none is plugged in, or the one that was opened is gone
constexpr int kPortNotConfigured = -5; ///< the system gives the device no configuration, or takes it away
constexpr int kPortInUse = -6;         ///< by another program
constexpr int kPortRefused = -9;       ///< the device stalls the transfer
constexpr int kPortNotSupported = -12; ///< the device has no bulk endpoint for each direction

/// Makes the port of the given kind; the client asks for "USB". Whichever library the program links defines it.
/// @param out  receives the port, which then lives until the process ends
/// @return     0 for done; negative when there is no device or it cannot be opened
extern "C" int io_port_creator(port** out, const char* kind);
