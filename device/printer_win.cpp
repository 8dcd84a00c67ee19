#include "device/printer_win.h"

#include "device/port.h"
#include "device/printer_state.h"

#include <QMutex>
#include <QMutexLocker>
#include <QtDebug>

#include <cstring>
#include <memory>

namespace {
constexpr int kNoPort = -1;
constexpr int kReceiveCapacity = 4096;
unsigned char receiveBuffer[kReceiveCapacity];
} // namespace

void PrinterWin::openPort()
{
    g_portOpen = false;
    // Log readers split on the closing banner, so it comes first as well (docs/architecture.md, "Kept behaviour").
    qDebug() << "================end init printer===========";
    qDebug() << "==============start init printer===========";
    port* opened = nullptr;
    const int result = io_port_creator(&opened, "USB");
    if (result == 0 && opened) {
        m_port = opened;
        g_portOpen = true;
        qDebug() << "PrinterInit Success";
    } else {
        notePortResult(result);
        qDebug() << "PrinterInit Failed";
    }
    qDebug() << "================end init printer===========";
}

int PrinterWin::initPrinter()
{
    g_printerReady = false;
    port* const device = m_port;
    if (!device)
        return kNoPort;
    beginKeyExchange(); // a device that was plugged in again has its first key from here on
    if (const int prepared = device->prepare(device); prepared != 0) {
        notePortResult(prepared);
        return prepared;
    }
    const int result = sendSetCrcKey();
    if (result < 0) {
        qDebug() << result << "initPrinter -> set CrcKey Failed";
        return result;
    }
    endKeyExchange();
    g_printerReady = true;
    qDebug() << "set CrcKey Success";
    sendFeedLines(0);
    return result;
}

int PrinterWin::write(const unsigned char* data, int length)
{
    port* const device = m_port;
    if (!device) {
        qDebug() << "PrinterInit failed";
        return kNoPort;
    }
    int written = -1;
    const int result = device->write(device, data, 0, length, &written);
    notePortResult(result);
    if (result != 0) {
        g_printerReady = false;
        noteFailedWrite(qMax(written, 0)); // still -1 where the port left it alone
        return result;
    }
    return written;
}

const unsigned char* PrinterWin::read(int* length, int* result)
{
    *length = 0;
    *result = kNoPort;
    port* const device = m_port;
    if (!device)
        return nullptr;
    std::memset(receiveBuffer, 0, sizeof receiveBuffer);
    *result = device->read(device, receiveBuffer, 0, kReceiveCapacity, length);
    if (*result != 0 && *result != kPortTimedOut)
        notePortResult(*result);
    return receiveBuffer;
}

void PrinterWin::close() {}

PrinterWin* printerConnection()
{
    static QMutex mutex;
    static std::unique_ptr<PrinterWin> owner;
    static std::atomic<PrinterWin*> connection{nullptr};

    if (PrinterWin* known = connection.load(std::memory_order_acquire))
        return known;
    const QMutexLocker lock(&mutex);
    if (!connection.load(std::memory_order_relaxed)) {
        owner = std::make_unique<PrinterWin>();
        connection.store(owner.get(), std::memory_order_release);
    }
    return connection.load(std::memory_order_acquire);
}
