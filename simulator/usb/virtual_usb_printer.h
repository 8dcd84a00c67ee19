#pragma once

#include "simulator/usb/usb_descriptors.h"
#include "simulator/usb/usbfs_device.h"

#include <memory>
#include <mutex>
#include <vector>

/// A USB bus with the simulated printer on it, for this process and for those that it starts: all of them run under
/// umockdev-wrapper and see no real device. What is done to the printer (plug, unplug, halt, hold back…) is seen on
/// the bus; what only a bus knows is said here. Any thread.
class VirtualUsbPrinter : public QObject
{
    Q_OBJECT

public:
    /// The printer is on the bus from now on, if it is plugged in. One bus a process, until the process ends.
    /// @param printer  outlives this object
    explicit VirtualUsbPrinter(SimulatedPrinter& printer);
    ~VirtualUsbPrinter() override;

    UsbFaults& faults() { return m_faults; }

    /// For the next plugging in.
    void setShape(const UsbShape& shape);
    /// Whether only root may open the device; for root itself see Unprivileged.
    void setDenied(bool denied);
    /// The device as it is plugged in now, or the last one that was.
    const UsbfsDevice& device() const;
    /// Its address on bus 1.
    int address() const;

private:
    void mirror(bool pluggedIn);
    void addDevice();
    void describeDevice();
    void removeDevice();
    void announce(const char* action);
    QByteArray nodePath() const;
    void applyPermission();

    SimulatedPrinter& m_printer;
    UsbFaults m_faults;
    UMockdevTestbed* m_bus;
    QByteArray m_root;          ///< the folder that stands for this machine's /dev and /sys
    mutable std::mutex m_mutex; // guards what follows
    UsbShape m_shape;
    bool m_denied = false;
    bool m_onBus = false;
    QByteArray m_leftNode; ///< of the device before, while it is attached
    int m_address = 1;     ///< grows with every device and wraps, as a real bus counts them
    std::vector<std::unique_ptr<UsbfsDevice>> m_devices; ///< a round of addresses: some may still be open
};

/// The calling thread without root's right to open everything, for as long as this lives. Without effect for others.
class Unprivileged
{
public:
    Unprivileged();
    ~Unprivileged();
};
