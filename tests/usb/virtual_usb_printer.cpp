#include "tests/usb/virtual_usb_printer.h"

#include <QFile>

#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr char kDevicePath[] = "/sys/devices/pci0000:00/0000:00:14.0/usb1/1-1";
constexpr uid_t kNobody = 65534;

QByteArray hexNumber(quint16 number)
{
    return QByteArray::number(number, 16).rightJustified(4, '0');
}

/// In umockdev's format for what sysfs and udev tell of a device.
QByteArray deviceRecord(const UsbShape& shape, int address)
{
    const QByteArray number = QByteArray::number(address).rightJustified(3, '0');
    QByteArray record;
    record += QByteArray("P: ") + (kDevicePath + qstrlen("/sys")) + "\nN: bus/usb/001/" + number + '\n';
    record += "E: DEVTYPE=usb_device\nE: SUBSYSTEM=usb\nE: DEVNAME=/dev/bus/usb/001/" + number + '\n';
    // A line of sysfs ends with a line end of its own.
    record += "A: busnum=1\\n\nA: devnum=" + QByteArray::number(address) + "\\n\n";
    record += "A: bConfigurationValue=1\\n\nA: speed=" + QByteArray(shape.highSpeed ? "480" : "12") + "\\n\n";
    record += "A: idVendor=" + hexNumber(shape.vendor) + "\\n\nA: idProduct=" + hexNumber(shape.product) + "\\n\n";
    record += "H: descriptors=" + usbDescriptors(shape).toHex().toUpper() + "\n\n";
    return record;
}

} // namespace

VirtualUsbPrinter::VirtualUsbPrinter(SimulatedPrinter& printer)
    : m_printer(printer)
    , m_bus(umockdev_testbed_new())
{
    if (!umockdev_in_mock_environment())
        qFatal("start this program by umockdev-wrapper");
    // Whoever may not open a device still sees it.
    gchar* root = umockdev_testbed_get_root_dir(m_bus);
    chmod(root, 0755);
    g_free(root);
    connect(&printer, &SimulatedPrinter::pluggedInChanged, this, &VirtualUsbPrinter::mirror, Qt::DirectConnection);
    if (printer.isPluggedIn())
        mirror(true);
}

VirtualUsbPrinter::~VirtualUsbPrinter()
{
    disconnect(&m_printer, nullptr, this, nullptr);
    g_object_unref(m_bus);
}

void VirtualUsbPrinter::setShape(const UsbShape& shape)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_shape = shape;
}

void VirtualUsbPrinter::setDenied(bool denied)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_denied = denied;
    if (m_onBus)
        applyPermission();
}

const UsbfsDevice& VirtualUsbPrinter::device() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return *m_devices.back();
}

/// A printer that is switched off and on says only that it is there; on the bus it is another device then.
void VirtualUsbPrinter::mirror(bool pluggedIn)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_onBus)
        removeDevice();
    if (pluggedIn)
        addDevice();
}

void VirtualUsbPrinter::addDevice()
{
    ++m_address;
    GError* error = nullptr;
    m_devices.push_back(std::make_unique<UsbfsDevice>(m_printer, m_faults, m_shape.packetBytes()));
    if (!umockdev_testbed_add_from_string(m_bus, deviceRecord(m_shape, m_address), &error) ||
        !umockdev_testbed_attach_ioctl(m_bus, nodePath(), m_devices.back()->handler(), &error))
        qFatal("the device cannot be put on the bus: %s", error->message);
    m_onBus = true;
    applyPermission();
}

void VirtualUsbPrinter::removeDevice()
{
    m_devices.back()->disappear();
    umockdev_testbed_uevent(m_bus, kDevicePath, "remove");
    umockdev_testbed_remove_device(m_bus, kDevicePath);
    m_onBus = false;
}

QByteArray VirtualUsbPrinter::nodePath() const
{
    return "/dev/bus/usb/001/" + QByteArray::number(m_address).rightJustified(3, '0');
}

void VirtualUsbPrinter::applyPermission()
{
    chmod(nodePath(), m_denied ? 0 : 0666);
}

Unprivileged::Unprivileged()
{
    if (geteuid() == 0)
        setfsuid(kNobody);
}

Unprivileged::~Unprivileged()
{
    if (geteuid() == 0)
        setfsuid(0);
}
