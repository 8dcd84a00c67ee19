#ifdef ON_USB_BUS
#include "simulator/usb/virtual_usb_printer.h"
#endif

#include "device/port.h"
#include "simulator/simulated_port.h"
#include "simulator/wire_frame.h"

#include <QLibrary>
#include <QtTest>

#include <array>

namespace {

// What is known of a library is the name of its export, and which place of the table does what.
using Creator = int (*)(void** out, const char* kind);
using Prepare = int (*)(void* self);
using Write = int (*)(void* self, const void* buffer, int offset, int length, int* written);
using Read = int (*)(void* self, void* buffer, int offset, int capacity, int* received);
constexpr int kPrepare = 4, kWrite = 10, kRead = 12, kSlots = 13;

constexpr int kBadArgument = portNumber(-2);
constexpr int kManyCalls = 200 * 1000; ///< more than the stack bears where caller and callee disagree who clears it

QLibrary& library(const char* file)
{
    static std::map<std::string, QLibrary> loaded;
    QLibrary& found = loaded[file];
    found.setFileName(file);
    return found;
}

class Table
{
public:
    explicit Table(void* port)
        : m_port(port)
    {
        std::copy_n(static_cast<void**>(port), kSlots, m_slots.begin());
    }

    bool hasOnlyWhatIsUsed() const
    {
        for (int i = 0; i < kSlots; ++i) {
            if ((m_slots[i] != nullptr) != (i == kPrepare || i == kWrite || i == kRead))
                return false;
        }
        return true;
    }
    int prepare() const { return reinterpret_cast<Prepare>(m_slots[kPrepare])(m_port); }
    int write(const QByteArray& bytes) const
    {
        int written = 0;
        const int result =
            reinterpret_cast<Write>(m_slots[kWrite])(m_port, bytes.constData(), 0, bytes.size(), &written);
        return result == 0 ? written : result;
    }
    QByteArray read() const
    {
        QByteArray bytes(4096, '\0');
        int received = 0;
        const int result = reinterpret_cast<Read>(m_slots[kRead])(m_port, bytes.data(), 0, bytes.size(), &received);
        return result == 0 ? bytes.left(received) : QByteArray::number(result);
    }

private:
    void* m_port;
    std::array<void*, kSlots> m_slots;
};

} // namespace

/// The libraries that a client may load, each by its export alone, as a client would that knows nothing of them.
class PortioTest : public QObject
{
    Q_OBJECT

    Creator creatorOf(const char* file)
    {
        return reinterpret_cast<Creator>(library(file).resolve("io_port_creator"));
    }

    /// @return  the port; null where the library refuses it or takes what it may not
    void* portOf(const char* file)
    {
        const Creator create = creatorOf(file);
        void* port = nullptr;
        for (int call = 0; create && call < kManyCalls; ++call) {
            if (create(&port, "COM") != kBadArgument || create(nullptr, "USB") != kBadArgument ||
                create(&port, nullptr) != kBadArgument || port)
                return nullptr;
        }
        return create && create(&port, "USB") == 0 ? port : nullptr;
    }

private slots:
    void initTestCase()
    {
#ifdef ON_USB_BUS
        static VirtualUsbPrinter bus(simulatedPrinter()); // until the port has let go of it
#endif
    }

    void printerInSoftware()
    {
        QTemporaryDir folder;
        const QString paper = folder.filePath("paper.png");
        qputenv("QUILLBOX_SIMULATED_MODEL", "k2");
        qputenv("QUILLBOX_SIMULATED_PAPER", paper.toLocal8Bit());
        void* port = portOf(SIMULATOR_LIBRARY);
        QVERIFY(port);
        const Table table(port);
        QVERIFY(table.hasOnlyWhatIsUsed());
        QCOMPARE(table.prepare(), 0);
        const QByteArray feed = sealedFrame(0x1A, 0, QByteArray(2, '\0'), kPowerOnKey);
        for (int call = 0; call < kManyCalls / 10; ++call) {
            QCOMPARE(table.write(feed), feed.size());
            QCOMPARE(table.read(), feed);
            QCOMPARE(table.read(), QByteArray::number(kPortTimedOut));
        }
        QVERIFY(!QFile::exists(paper));
        const QByteArray line = QByteArray::fromHex("01").leftJustified(71, '\0') + '\xfe'; // of the wide head
        QVERIFY(table.write(sealedFrame(0, 1, line + line, kPowerOnKey)) > 0);
        table.read();
        QVERIFY(!QFile::exists(paper)); // the rest of a page may come
        QTRY_VERIFY((table.read(), QFile::exists(paper)));
        const QImage picture(paper);
        QCOMPARE(picture.size(), QSize(576, 2));
        QCOMPARE(picture.pixel(7, 0), qRgb(0, 0, 0));
        QCOMPARE(picture.pixel(575, 1), qRgb(255, 255, 255));
        QVERIFY(QFile::remove(paper));
        table.read();
        QVERIFY(!QFile::exists(paper)); // written when it changes
    }

    void printerOverUsb()
    {
        simulatedPrinter().unplug(); // where there is a bus
        const Creator create = creatorOf(USB_LIBRARY);
        QVERIFY(create && !portOf(USB_LIBRARY));
        void* port = this;
        QCOMPARE(create(&port, "USB"), kPortNoDevice);
        QCOMPARE(port, static_cast<void*>(this));
#ifdef ON_USB_BUS
        simulatedPrinter().plugIn();
        QCOMPARE(create(&port, "USB"), 0);
        const Table table(port);
        QVERIFY(table.hasOnlyWhatIsUsed());
        const QByteArray feed = sealedFrame(0x1A, 0, QByteArray(2, '\0'), kPowerOnKey);
        QCOMPARE(table.prepare(), 0);
        QCOMPARE(table.write(feed), feed.size());
        QCOMPARE(table.read(), feed);
#endif
    }
};

QTEST_GUILESS_MAIN(PortioTest)
#include "tst_portio.moc"
