#pragma once

#include <QObject>

#include <atomic>
#include <cstdint>
#include <functional>

/// The port has been opened. Process-wide; any thread, no lock.
extern std::atomic<bool> g_portOpen;
/// The printer has the current CRC key. Cleared by every failed write, so that the next connectUsb() starts over.
extern std::atomic<bool> g_printerReady;
// The third flag of the connection, "connected", is g_modelConfirmed.

/// The connection to the printer: the commands of the wire and the way to bring the connection up.
///
/// Results: 0 or more is success (bytes written, where bytes are written), below 0 is failure. Nothing throws.
/// Threads: every method may be called from any thread. Only the bring-up (opening and key exchange) is serialised;
/// writes and reads of different threads go to the port as they come.
class Printer : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Writes one whole frame.
    /// @return bytes written (a short write is no failure), or the port's negative result
    virtual int write(const unsigned char* data, int length) = 0;
    /// Closes the connection.
    virtual void close() = 0;
    /// Makes the port object and sets g_portOpen when that worked.
    virtual void openPort() = 0;
    /// Prepares the printer and runs the key exchange; sets g_printerReady when that worked.
    /// @return bytes of the set-key frame, or the port's non-zero result
    virtual int initPrinter() = 0;
    /// Reads what the device has sent.
    /// @param length  receives the number of bytes
    /// @param result  receives 0 or the port's error code; -1 without a port
    /// @return        the process's one receive buffer, overwritten by the next read; null without a port
    virtual const unsigned char* read(int* length, int* result) = 0;

    /// Brings the connection up where it is not, and asks for the model until the device has told it.
    /// @return whether the printer can be written to
    bool connectUsb();

    /// connectUsb(), then a paper feed of no lines to see whether the printer is really there.
    bool ensureConnected();

    /// Sends a query; `code` is a CommandCode.
    int sendCommand(unsigned char code);

    /// Feeds blank paper.
    /// @param lines  dot lines; 0 only asks whether the printer is there
    int sendFeedLines(std::uint16_t lines);

    /// Picks a new CRC key, makes it the current one and hands it to the device.
    int sendSetCrcKey();

    /// Sends one frame of raster bytes.
    /// @param size  1..kMaxPayload
    /// @return      as write(); -1 for null bytes, a size outside the range, or no memory
    int sendPrintData(const unsigned char* bytes, int size);

    /// Sends a raster in frames of kPrintDataPayload bytes, the last one shorter where need be.
    /// @param size  bytes; an empty raster sends nothing
    /// @return      0; -1 for a null raster or a negative size; -2 when a frame failed, with those before it printed
    ///              and a line in the log that says how far the job came. A frame fails, too, when keys are exchanged
    ///              around it: the device refuses what is sealed with another key than its own, and says nothing.
    int sendRaster(const unsigned char* raster, int size);

    /// Asked before each frame and once after the last, with the bytes of the raster that have left.
    /// @return  whether to go on
    using RasterObserver = std::function<bool(int sent, int total)>;
    /// The same, and stops where the observer says so, which leaves no frame half sent.
    /// @return  also -3: stopped by the observer
    int sendRaster(const unsigned char* raster, int size, const RasterObserver& goOn);

    /// Another number as soon as keys begin to be exchanged: what was read before may be of a printer that has been
    /// unplugged since. Any thread.
    static unsigned session();
    /// The session for which the calling thread exchanged the keys itself, the last of them; an odd number, which is
    /// none, where it never has.
    static unsigned ownSession();

signals:
    /// The port has just been opened and the key exchanged. Emitted in the thread that called connectUsb().
    void signalCheckSetCrcKeyFirstTime(bool success);

protected:
    /// For write(): what went out of the frame that failed. Kept by thread, for the line that a failed job logs; the
    /// receiver's probes may fail at the same time.
    static void noteFailedWrite(int bytesSent);

    /// For initPrinter(): between the two, and from a beginning without an end on, client and device may have
    /// different keys, and no page counts as sent. Any thread, but one exchange at a time.
    static void beginKeyExchange();
    static void endKeyExchange();

private:
    enum class BringUp { Done, Failed, NotNeeded };
    BringUp bringUp();
    bool probe();
};
