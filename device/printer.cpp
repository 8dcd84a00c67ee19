#include "device/printer.h"

#include "app/globals/model.h"
#include "device/crc32.h"
#include "device/packet.h"

#include <QtDebug>

#include <cstdlib>
#include <memory>
#include <mutex>
#include <new>

std::atomic<bool> g_portOpen{false};
std::atomic<bool> g_printerReady{false};

namespace {

constexpr int kRefused = -1;
constexpr int kFrameFailed = -2;
constexpr int kStopped = -3;

thread_local int t_bytesOfFailedWrite = 0;
thread_local unsigned t_ownSession = 1;

/// Odd while client and device may have different keys; each even number is another exchange.
std::atomic<unsigned> s_keyExchange{0};

/// What a page is sealed with from its first frame to its last.
class PageKey
{
public:
    bool holds() const { return m_exchange % 2 == 0 && s_keyExchange == m_exchange && currentCrcKey() == m_key; }

private:
    const unsigned m_exchange = s_keyExchange;
    const std::uint32_t m_key = currentCrcKey();
};

bool isUp()
{
    return g_portOpen && g_printerReady;
}

} // namespace

bool Printer::connectUsb()
{
    switch (isUp() ? BringUp::NotNeeded : bringUp()) {
    case BringUp::NotNeeded:
        return g_modelConfirmed || probe();
    case BringUp::Failed:
        return false;
    case BringUp::Done:
        break;
    }
    emit signalCheckSetCrcKeyFirstTime(true);
    sendCommand(CommandGetModel);
    return true;
}

/// Two key exchanges at once would leave the client with one key and the device with the other, and nothing would
/// ever put that right; so whoever comes second waits and finds the work done.
Printer::BringUp Printer::bringUp()
{
    static std::mutex mutex;
    const std::lock_guard<std::mutex> lock(mutex);
    if (isUp())
        return BringUp::NotNeeded;
    if (!g_portOpen)
        openPort();
    if (g_portOpen)
        initPrinter();
    forgetReportedModel();
    return isUp() ? BringUp::Done : BringUp::Failed;
}

bool Printer::probe()
{
    const int result = sendCommand(CommandGetModel);
    if (result < 0) {
        qDebug() << result << "connect usb Failed";
        return false;
    }
    qDebug() << "connect usb Success";
    return true;
}

bool Printer::ensureConnected()
{
    if (!connectUsb())
        return false;
    if (sendFeedLines(0) >= 0)
        return true;
    g_modelConfirmed = false;
    return false;
}

int Printer::sendCommand(unsigned char code)
{
    unsigned char frame[kCommandFrameSize];
    buildCommandFrame(frame, code, 0, currentCrcKey());
    return write(frame, sizeof frame);
}

int Printer::sendFeedLines(std::uint16_t lines)
{
    unsigned char frame[kCommandFrameSize];
    buildCommandFrame(frame, CommandFeedLines, lines, currentCrcKey());
    return write(frame, sizeof frame);
}

int Printer::sendSetCrcKey()
{
    const std::uint32_t key = crc32TableWord(static_cast<unsigned char>(std::rand() % 256));
    // Current before it is sent: the device switches as soon as it has read the frame.
    setCurrentCrcKey(key);
    unsigned char frame[kSetKeyFrameSize];
    buildSetKeyFrame(frame, key);
    return write(frame, sizeof frame);
}

int Printer::sendPrintData(const unsigned char* bytes, int size)
{
    if (!bytes || size < 1 || size > kMaxPayload)
        return kRefused;
    const int frameSize = size + kFrameOverhead;
    const std::unique_ptr<unsigned char[]> frame(
        new (std::nothrow) unsigned char[static_cast<std::size_t>(frameSize)]());
    if (!frame)
        return kRefused;
    buildFrame(frame.get(), CommandPrintData, 1, bytes, size, currentCrcKey());
    return write(frame.get(), frameSize);
}

int Printer::sendRaster(const unsigned char* raster, int size)
{
    return sendRaster(raster, size, [](int, int) { return true; });
}

int Printer::sendRaster(const unsigned char* raster, int size, const RasterObserver& goOn)
{
    if (!raster || size < 0)
        return kRefused;
    const PageKey key;
    int number = 1;
    for (int sent = 0; sent < size; sent += kPrintDataPayload, ++number) {
        if (!goOn(sent, size))
            return kStopped;
        const int piece = qMin(kPrintDataPayload, size - sent);
        t_bytesOfFailedWrite = 0;
        const int result = sendPrintData(raster + sent, piece);
        if (result >= 0 && key.holds())
            continue;
        if (result >= 0)
            qDebug() << "print data frame" << number << "failed: keys were exchanged around it";
        else
            qDebug() << "print data frame" << number << "failed:" << t_bytesOfFailedWrite << "of"
                     << piece + kFrameOverhead << "bytes sent, result" << result;
        return kFrameFailed;
    }
    return goOn(size, size) ? 0 : kStopped;
}

unsigned Printer::session()
{
    return s_keyExchange;
}

unsigned Printer::ownSession()
{
    return t_ownSession;
}

void Printer::beginKeyExchange()
{
    s_keyExchange |= 1U;
}

void Printer::endKeyExchange()
{
    t_ownSession = ++s_keyExchange;
}

void Printer::noteFailedWrite(int bytesSent)
{
    t_bytesOfFailedWrite = bytesSent;
}
