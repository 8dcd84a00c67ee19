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

/// What read() returns when no data came in time, whoever made the port.
constexpr int kPortTimedOut = -7;

/// What the other numbers of this project's ports are counted down from. On Windows the port may be another maker's;
/// ours then stay clear of those of every system and library, so that nobody takes his numbers for ours.
#ifdef _WIN32
constexpr int kPortNumbers = -12090000;
#else
constexpr int kPortNumbers = 0;
#endif

// What else the ports of this project return. The client does not decide by them and only puts them into words.
constexpr int kPortTransferFailed = kPortNumbers - 1;
constexpr int kPortNoPermission = kPortNumbers - 3;
constexpr int kPortNoDevice = kPortNumbers - 4;      ///< none is plugged in, or the one that was opened is gone
constexpr int kPortNotConfigured = kPortNumbers - 5; ///< the system gives it no configuration, or takes it away
constexpr int kPortInUse = kPortNumbers - 6;         ///< by another program
constexpr int kPortTakesNothing = kPortNumbers - 7;  ///< of write(): the device holds back what is sent
constexpr int kPortRefused = kPortNumbers - 9;       ///< the device stalls the transfer
constexpr int kPortNotSupported = kPortNumbers - 12; ///< the device has no bulk endpoint for each direction
constexpr int kPortNoDriver = kPortNumbers - 50;     ///< the system has bound no driver that lets programs transfer

// What io_port_creator() returns where the port is in a library that is loaded; no port has these numbers.
constexpr int kPortLibraryMissing = -12090101;
constexpr int kPortLibraryNotLoadable = -12090102; ///< made for another system, damaged, or in want of another file
constexpr int kPortLibraryForeign = -12090103;     ///< without the one export that a library of ports has

/// At the border of a port of this project: turns its own negative number into the one that the client is told.
constexpr int portNumber(int result)
{
    return result < 0 ? kPortNumbers + result : result;
}

/// The same for read(), which has a number that is everybody's.
constexpr int readNumber(int result)
{
    return result == kPortTimedOut ? result : portNumber(result);
}

/// Makes the port of the given kind; the client asks for "USB". Whichever library the program links defines it.
/// @param out  receives the port, which then lives until the process ends
/// @return     0 for done; negative when there is no device or it cannot be opened
extern "C" int io_port_creator(port** out, const char* kind);
