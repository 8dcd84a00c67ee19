#include "simulator/usb/virtual_usb_printer.h"

#include <QDir>
#include <QFile>

#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr char kDevicePath[] = "/sys/devices/usb1/1-1";
constexpr char kBusFolder[] = "/sys/bus/usb/devices";
constexpr uid_t kNobody = 65534;
constexpr int kFirstAddress = 2; ///< the bus itself is 1
constexpr int kLastAddress = 127;

QByteArray hexNumber(quint16 number)
{
    return QByteArray::number(number, 16).rightJustified(4, '0');
}

void writeFile(const QByteArray& path, const QByteArray& text)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("cannot write %s", path.constData());
}

} // namespace

VirtualUsbPrinter::VirtualUsbPrinter(SimulatedPrinter& printer)
    : m_printer(printer)
    , m_bus(umockdev_testbed_new())
{
    if (!umockdev_in_mock_environment())
        qFatal("start this program by umockdev-wrapper");
    // Whoever may not open a device still sees it, and listens for udev's news by a socket in here.
    gchar* root = umockdev_testbed_get_root_dir(m_bus);
    m_root = root;
    g_free(root);
    chmod(m_root, 0777);
    QDir().mkpath(m_root + kBusFolder);
    QDir().mkpath(m_root + "/dev/bus/usb/001");
    connect(&printer, &SimulatedPrinter::pluggedInChanged, this, &VirtualUsbPrinter::mirror, Qt::DirectConnection);
    if (printer.report().pluggedIn)
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

int VirtualUsbPrinter::address() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_address;
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
    m_address = m_address == kLastAddress ? kFirstAddress : m_address + 1;
    if (m_devices.size() > kLastAddress)
        m_devices.erase(m_devices.begin());
    m_devices.push_back(std::make_unique<UsbfsDevice>(m_printer, m_faults, m_shape));
    GError* error = nullptr;
    if (!umockdev_testbed_attach_ioctl(m_bus, nodePath(), m_devices.back()->handler(), &error))
        qFatal("the device cannot be put on the bus: %s", error->message);
    writeFile(m_root + nodePath(), QByteArray());
    m_onBus = true;
    applyPermission();
    describeDevice();
    announce("add");
}

/// What sysfs says of the device. Written here and not by umockdev, which would announce it at once.
void VirtualUsbPrinter::describeDevice()
{
    const QByteArray folder = m_root + kDevicePath + '/', address = QByteArray::number(m_address);
    QDir().mkpath(folder);
    writeFile(folder + "uevent", "DEVTYPE=usb_device\nDEVNAME=" + nodePath() + '\n');
    writeFile(folder + "busnum", "1\n");
    writeFile(folder + "devnum", address + '\n');
    writeFile(folder + "speed", m_shape.highSpeed ? "480\n" : "12\n");
    writeFile(folder + "bConfigurationValue", m_shape.configured ? "1\n" : "");
    writeFile(folder + "idVendor", hexNumber(m_shape.vendor) + '\n');
    writeFile(folder + "idProduct", hexNumber(m_shape.product) + '\n');
    writeFile(folder + "descriptors", usbDescriptors(m_shape));
    QFile::link("../../../bus/usb", folder + "subsystem");
    QFile::link("../../../devices/usb1/1-1", m_root + kBusFolder + "/1-1"); // last, for it is what is looked for
}

void VirtualUsbPrinter::removeDevice()
{
    m_devices.back()->disappear();
    QFile::remove(m_root + kBusFolder + "/1-1");
    announce("remove");
    QDir(m_root + kDevicePath).removeRecursively();
    QFile::remove(m_root + nodePath());
    // One removal later: whoever has it open is still answered, and who is just opening it would be thrown out of his
    // program by the bus.
    if (!m_leftNode.isEmpty())
        umockdev_testbed_detach_ioctl(m_bus, m_leftNode, nullptr);
    m_leftNode = nodePath();
    m_onBus = false;
}

void VirtualUsbPrinter::announce(const char* action)
{
    if (m_faults.udev)
        umockdev_testbed_uevent(m_bus, kDevicePath, action);
}

QByteArray VirtualUsbPrinter::nodePath() const
{
    return "/dev/bus/usb/001/" + QByteArray::number(m_address).rightJustified(3, '0');
}

void VirtualUsbPrinter::applyPermission()
{
    chmod(m_root + nodePath(), m_denied ? 0 : 0666);
    chmod(m_root + "/ioctl" + nodePath(), 0777); // umockdev calls it even when the node cannot be opened
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
