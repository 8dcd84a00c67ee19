#pragma once

// Before Qt, whose "signals" is a word of GLib's as well.
#include <umockdev.h>

#include "simulator/simulated_printer.h"
#include "simulator/usb/usb_descriptors.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

/// What goes wrong between the kernel and a printer, for every device that is plugged in after it. Any thread.
struct UsbFaults
{
    std::atomic<bool> usblp{false};              ///< the kernel's printer driver binds itself to the interface
    std::atomic<bool> heldElsewhere{false};      ///< another program has claimed the interface
    std::atomic<bool> leaving{false};            ///< still there, but its configuration has just been taken down
    std::atomic<bool> noZeroLengthPacket{false}; ///< a reply that fills its last packet is not ended
    /// udev is there and announces what is unplugged. Only where nobody opens or closes the port meanwhile: umockdev
    /// 0.17 ends the program when a listener goes away just then.
    std::atomic<bool> udev{false};
};

/// One plugging in of the simulated printer, as the kernel's usbfs shows it to libusb: interfaces, halts, and bulk
/// transfers cut into packets. umockdev brings the calls, each from its own thread.
class UsbfsDevice
{
public:
    UsbfsDevice(SimulatedPrinter& printer, const UsbFaults& faults, const UsbShape& shape);
    ~UsbfsDevice();

    UMockdevIoctlBase* handler() const { return m_handler; }
    /// Unplugs it: what is under way ends, and whoever has it open hears of no device from now on.
    void disappear() { m_gone = true; }
    bool isUsblpBound() const { return m_usblpBound; }
    int claims() const { return m_claims; } ///< so far

private:
    using Client = UMockdevIoctlClient;
    using Data = UMockdevIoctlData;
    struct Releaser
    {
        void operator()(gpointer object) const { g_object_unref(object); }
    };
    using DataPointer = std::unique_ptr<Data, Releaser>;
    using ClientPointer = std::unique_ptr<Client, Releaser>;

    struct Transfer
    {
        Client* client;
        gulong address; ///< of the client's URB, which names the transfer
        DataPointer urb;
        DataPointer buffer;
        quint8 endpoint;
        int length;
        int done = 0;
        bool ended = false;
    };
    struct Reap
    {
        ClientPointer client; ///< a call that is not answered at once belongs to nobody else
        DataPointer result;
    };

    static gboolean onIoctl(UMockdevIoctlBase*, Client* client, gpointer self);
    static void onVanished(UMockdevIoctlBase*, Client* client, gpointer self);
    static gboolean onReapExpired(gpointer self);

    void answer(Client* client);
    int answerPlain(Client* client, gulong request);
    int claim(Client* client, bool detaching);
    int clearHalt(unsigned endpoint);
    int submit(Client* client);
    int discard(Client* client);
    void reap(Client* client);
    bool finishReap(Client* client, const DataPointer& result);
    void forget(Client* client);
    void setOwner(Client* client);

    void moveBytes();
    void moveOut(Transfer* transfer);
    void moveIn(Transfer* transfer);
    bool hasNextPacket();
    static void end(Transfer* transfer, int status);

    SimulatedPrinter& m_printer;
    const UsbFaults& m_faults;
    const int m_packetBytes;
    const unsigned m_settingWithEndpoints;
    const int m_plugging;
    UMockdevIoctlBase* m_handler;
    std::atomic<bool> m_gone{false};
    std::atomic<bool> m_usblpBound;
    std::atomic<int> m_claims{0};

    std::mutex m_mutex;        // guards what follows
    Client* m_owner = nullptr; ///< has claimed the interface; a weak pointer
    unsigned m_setting = 0;
    Client* m_emptyHanded = nullptr; ///< reaped nothing last time
    std::vector<Transfer> m_transfers;
    std::vector<Reap> m_waitingReaps;
    QByteArray m_reply; ///< what is left of the reply that is being sent
    bool m_owesEmptyPacket = false;
};
