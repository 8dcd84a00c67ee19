#include "simulator/usb/usbfs_device.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>

#include <linux/usbdevice_fs.h>
#include <sys/ioctl.h>

namespace {

using Endpoint = SimulatedPrinter::Endpoint;

constexpr std::uint32_t kCapabilities = USBDEVFS_CAP_ZERO_PACKET | USBDEVFS_CAP_BULK_CONTINUATION |
                                        USBDEVFS_CAP_NO_PACKET_SIZE_LIM | USBDEVFS_CAP_REAP_AFTER_DISCONNECT;
constexpr unsigned kEmptyReapMs = 2; ///< libusb polls by reaping, for the node always looks ready

UMockdevIoctlData* resolved(UMockdevIoctlData* data, std::size_t offset, std::size_t size)
{
    return umockdev_ioctl_data_resolve(data, offset, size, nullptr);
}

template <typename T>
T valueOf(UMockdevIoctlClient* client)
{
    T value{};
    if (UMockdevIoctlData* data = resolved(umockdev_ioctl_client_get_arg(client), 0, sizeof value)) {
        std::memcpy(&value, data->data, sizeof value);
        g_object_unref(data);
    }
    return value;
}

/// The argument itself, where it is an address that names something.
gulong addressIn(UMockdevIoctlClient* client)
{
    gulong address = 0;
    std::memcpy(&address, umockdev_ioctl_client_get_arg(client)->data, sizeof address);
    return address;
}

void complete(UMockdevIoctlClient* client, int error)
{
    umockdev_ioctl_client_complete(client, error ? -1 : 0, error);
}

template <typename T>
void update(UMockdevIoctlData* data, std::size_t offset, T value)
{
    umockdev_ioctl_data_update(data, offset, reinterpret_cast<guint8*>(&value), sizeof value);
}

} // namespace

UsbfsDevice::UsbfsDevice(SimulatedPrinter& printer, const UsbFaults& faults, const UsbShape& shape)
    : m_printer(printer)
    , m_faults(faults)
    , m_packetBytes(shape.packetBytes())
    , m_settingWithEndpoints(static_cast<unsigned>(shape.alternateSetting))
    , m_plugging(printer.report().plugging)
    , m_handler(umockdev_ioctl_base_new())
    , m_usblpBound(faults.usblp.load())
{
    g_signal_connect(m_handler, "handle-ioctl", G_CALLBACK(onIoctl), this);
    g_signal_connect(m_handler, "client-vanished", G_CALLBACK(onVanished), this);
}

UsbfsDevice::~UsbfsDevice()
{
    setOwner(nullptr);
    g_signal_handlers_disconnect_by_data(m_handler, this);
    g_object_unref(m_handler);
}

gboolean UsbfsDevice::onIoctl(UMockdevIoctlBase*, Client* client, gpointer self)
{
    static_cast<UsbfsDevice*>(self)->answer(client);
    return TRUE;
}

void UsbfsDevice::onVanished(UMockdevIoctlBase*, Client* client, gpointer self)
{
    auto* device = static_cast<UsbfsDevice*>(self);
    const std::lock_guard<std::mutex> lock(device->m_mutex);
    device->forget(client);
}

void UsbfsDevice::answer(Client* client)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const gulong request = umockdev_ioctl_client_get_request(client);
    if (request == USBDEVFS_REAPURBNDELAY)
        reap(client);
    else if (request == USBDEVFS_DISCARDURB)
        complete(client, discard(client)); // also of one that is gone
    else
        complete(client, m_gone ? ENODEV : answerPlain(client, request));
    moveBytes();
}

/// @return  the error number, 0 for none
int UsbfsDevice::answerPlain(Client* client, gulong request)
{
    switch (request) {
    case USBDEVFS_GET_CAPABILITIES: {
        const DataPointer data(resolved(umockdev_ioctl_client_get_arg(client), 0, sizeof kCapabilities));
        update(data.get(), 0, kCapabilities);
        return 0;
    }
    case USBDEVFS_CLAIMINTERFACE:
        return claim(client, false);
    case USBDEVFS_DISCONNECT_CLAIM:
        return claim(client, true);
    case USBDEVFS_RELEASEINTERFACE:
        setOwner(nullptr);
        return 0;
    case USBDEVFS_IOCTL: // libusb gives the interface back to the driver that it had taken it from
        m_usblpBound = m_faults.usblp.load();
        return 0;
    case USBDEVFS_SETINTERFACE:
        if (m_faults.leaving)
            return EINVAL;
        m_setting = valueOf<usbdevfs_setinterface>(client).altsetting;
        return 0;
    case USBDEVFS_CLEAR_HALT:
        if (m_faults.leaving)
            return ENOENT;
        return clearHalt(valueOf<unsigned>(client));
    case USBDEVFS_SUBMITURB:
        return submit(client);
    default: // a reset among them, which no healthy device is to see
        return ENOTTY;
    }
}

int UsbfsDevice::claim(Client* client, bool detaching)
{
    if ((m_owner && m_owner != client) || m_faults.heldElsewhere || (m_usblpBound && !detaching))
        return EBUSY;
    m_usblpBound = false;
    setOwner(client);
    m_emptyHanded = nullptr;
    m_setting = 0;
    ++m_claims;
    return 0;
}

int UsbfsDevice::clearHalt(unsigned endpoint)
{
    m_printer.clearHalt(endpoint == kInEndpoint ? Endpoint::In : Endpoint::Out);
    return 0;
}

int UsbfsDevice::submit(Client* client)
{
    if (m_owner != client)
        return EINVAL;
    if (m_setting != m_settingWithEndpoints)
        return ENOENT;
    DataPointer urb(resolved(umockdev_ioctl_client_get_arg(client), 0, sizeof(usbdevfs_urb)));
    usbdevfs_urb fields;
    std::memcpy(&fields, urb->data, sizeof fields);
    DataPointer buffer(resolved(urb.get(), offsetof(usbdevfs_urb, buffer), static_cast<gsize>(fields.buffer_length)));
    const gulong address = urb->client_addr;
    m_transfers.push_back(
        {client, address, std::move(urb), std::move(buffer), fields.endpoint, fields.buffer_length});
    return 0;
}

int UsbfsDevice::discard(Client* client)
{
    for (Transfer& transfer : m_transfers) {
        if (transfer.client == client && transfer.address == addressIn(client) && !transfer.ended) {
            end(&transfer, -ENOENT);
            return 0;
        }
    }
    return EINVAL;
}

void UsbfsDevice::reap(Client* client)
{
    DataPointer result(resolved(umockdev_ioctl_client_get_arg(client), 0, sizeof(void*)));
    moveBytes();
    if (finishReap(client, result))
        return;
    if (m_gone) {
        complete(client, ENODEV);
    } else if (m_emptyHanded != client) {
        m_emptyHanded = client;
        complete(client, EAGAIN);
    } else {
        m_waitingReaps.push_back({ClientPointer(static_cast<Client*>(g_object_ref(client))), std::move(result)});
        GSource* timer = g_timeout_source_new(kEmptyReapMs);
        g_source_set_callback(timer, onReapExpired, this, nullptr);
        g_source_attach(timer, g_main_context_get_thread_default());
        g_source_unref(timer);
    }
}

gboolean UsbfsDevice::onReapExpired(gpointer self)
{
    auto* device = static_cast<UsbfsDevice*>(self);
    const std::lock_guard<std::mutex> lock(device->m_mutex);
    device->moveBytes();
    if (!device->m_waitingReaps.empty()) { // the oldest, for all wait equally long
        complete(device->m_waitingReaps.front().client.get(), EAGAIN);
        device->m_waitingReaps.erase(device->m_waitingReaps.begin());
    }
    return G_SOURCE_REMOVE;
}

bool UsbfsDevice::finishReap(Client* client, const DataPointer& result)
{
    const auto transfer = std::find_if(m_transfers.begin(), m_transfers.end(),
                                       [&](const Transfer& t) { return t.client == client && t.ended; });
    if (transfer == m_transfers.end())
        return false;
    umockdev_ioctl_data_set_ptr(result.get(), 0, transfer->urb.get());
    m_transfers.erase(transfer);
    m_emptyHanded = nullptr;
    complete(client, 0);
    return true;
}

void UsbfsDevice::forget(Client* client)
{
    m_transfers.erase(std::remove_if(m_transfers.begin(), m_transfers.end(),
                                     [&](const Transfer& transfer) { return transfer.client == client; }),
                      m_transfers.end());
    if (m_owner == client)
        setOwner(nullptr);
    if (m_emptyHanded == client)
        m_emptyHanded = nullptr;
}

/// A program that is killed while it waits for a reap is not reported to have vanished.
void UsbfsDevice::setOwner(Client* client)
{
    auto* const weak = reinterpret_cast<gpointer*>(&m_owner);
    if (m_owner)
        g_object_remove_weak_pointer(G_OBJECT(m_owner), weak);
    m_owner = client;
    if (m_owner)
        g_object_add_weak_pointer(G_OBJECT(m_owner), weak);
}

/// Lets every transfer go as far as the printer lets it, and answers whoever waits for one.
void UsbfsDevice::moveBytes()
{
    if (!m_owner) // what a program leaves behind goes with it
        m_transfers.clear();
    for (Transfer& transfer : m_transfers) {
        if (!transfer.ended && m_gone)
            end(&transfer, -ESHUTDOWN);
        else if (!transfer.ended)
            transfer.endpoint == kInEndpoint ? moveIn(&transfer) : moveOut(&transfer);
    }
    for (auto reap = m_waitingReaps.begin(); reap != m_waitingReaps.end();)
        reap = finishReap(reap->client.get(), reap->result) ? m_waitingReaps.erase(reap) : reap + 1;
}

void UsbfsDevice::moveOut(Transfer* transfer)
{
    while (transfer->done < transfer->length) {
        const int packet = std::min(m_packetBytes, transfer->length - transfer->done);
        const int taken = m_printer.receive(transfer->buffer->data + transfer->done, packet, m_plugging);
        if (taken < 0)
            return end(transfer, taken == SimulatedPrinter::kUnplugged ? -ESHUTDOWN : -EPIPE);
        if (taken == 0)
            return; // not now
        transfer->done += taken;
    }
    end(transfer, 0);
}

/// A transfer into the host ends with its last byte or with a packet that is not full.
void UsbfsDevice::moveIn(Transfer* transfer)
{
    if (m_printer.report().faults.inHalted)
        return end(transfer, -EPIPE);
    while (transfer->done < transfer->length && hasNextPacket()) {
        const QByteArray packet = m_reply.left(m_packetBytes);
        m_reply.remove(0, packet.size());
        if (packet.size() > transfer->length - transfer->done)
            return end(transfer, -EOVERFLOW);
        std::memcpy(transfer->buffer->data + transfer->done, packet.constData(),
                    static_cast<std::size_t>(packet.size()));
        transfer->done += packet.size();
        if (packet.size() < m_packetBytes) {
            m_owesEmptyPacket = false;
            return end(transfer, 0);
        }
    }
    if (transfer->done == transfer->length)
        end(transfer, 0);
}

bool UsbfsDevice::hasNextPacket()
{
    if (m_reply.isEmpty() && !m_owesEmptyPacket) {
        m_reply = m_printer.takeTransfer(SimulatedPrinter::kReplyBufferBytes);
        m_owesEmptyPacket = !m_reply.isEmpty() && m_reply.size() % m_packetBytes == 0 && !m_faults.noZeroLengthPacket;
    }
    return !m_reply.isEmpty() || m_owesEmptyPacket;
}

void UsbfsDevice::end(Transfer* transfer, int status)
{
    transfer->ended = true;
    if (transfer->endpoint == kInEndpoint && transfer->done > 0) {
        const QByteArray bytes(reinterpret_cast<const char*>(transfer->buffer->data), transfer->done);
        umockdev_ioctl_data_update(transfer->buffer.get(), 0,
                                   reinterpret_cast<guint8*>(const_cast<char*>(bytes.constData())), bytes.size());
    }
    update(transfer->urb.get(), offsetof(usbdevfs_urb, status), status);
    update(transfer->urb.get(), offsetof(usbdevfs_urb, actual_length), transfer->done);
}
