#ifdef ON_USB_BUS
#include "simulator/usb/virtual_usb_printer.h"
#endif

#include "device/port_library/port_library.h"
#include "device/printer_state.h"
#include "device/usb/device_id_list.h"
#include "simulator/wire_frame.h"
#include "tests/device/port_calls.h"
#include "tests/device/printer_fixture.h"

namespace {

constexpr int kBadArgument = portNumber(-2);
constexpr int kManyCalls = 20000; ///< more than the stack bears where caller and callee disagree who clears it

/// Calls the library as a client may not, and often; what it would then leave out or wrongly give is not null.
port* refused(PortLibrary& library)
{
    port* out = nullptr;
    for (int call = 0; call < kManyCalls; ++call) {
        if (library.create(&out, "COM") != kBadArgument || library.create(&out, nullptr) != kBadArgument ||
            library.create(nullptr, "USB") != kBadArgument)
            qFatal("takes everything");
    }
    return out;
}

/// The place in the table is what both sides agree on, whatever they call it.
void checkTable(port* made)
{
    const auto* places = reinterpret_cast<void* const*>(made);
    for (int i = 0; i < 13; ++i)
        QCOMPARE(places[i] != nullptr, i == 4 || i == 10 || i == 12);
    QCOMPARE(made->prepare(made), 0);
    const QByteArray feed = sealedFrame(0x1A, 0, QByteArray(2, '\0'), kPowerOnKey);
    for (int call = 0; call < kManyCalls / 40; ++call)
        QCOMPARE(writeTo(made, feed), 0);
    QVERIFY(readFrom(made).startsWith(feed));
    QTRY_COMPARE(readFrom(made), QByteArray::number(kPortTimedOut));
}

} // namespace

/// The port of a client that finds its library beside itself, and the libraries that there are.
class PortLibraryTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
#ifdef ON_USB_BUS
        static VirtualUsbPrinter bus(simulatedPrinter()); // until the port has let go of it
#endif
    }

    void looksAgainUntilItCanBeLoaded()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("portio.dll");
        PortLibrary library(path);
        port* made = nullptr;
        const auto create = [&] { return library.create(&made, "USB"); };
        const auto put = [&](const QString& file) { return QFile::remove(path), QFile::copy(file, path); };
        QCOMPARE(create(), kPortLibraryMissing);
        QVERIFY(put(QFINDTESTDATA("foreign.cpp"))); // no library at all
        QCOMPARE(create(), kPortLibraryNotLoadable);
        QVERIFY(put(FOREIGN_LIBRARY));
        QVERIFY(create() == kPortLibraryForeign && create() == kPortLibraryForeign);
        QVERIFY(put(FAKE_LIBRARY) && !made);             // so the foreign one is not held open
        QVERIFY(create() == 1 && create() == 2 && made); // the same, still loaded
    }

    void aClientWithoutItSaysSo()
    {
        simulatedPrinter().unplug();
        const bool isThere = QFile::exists(QCoreApplication::applicationDirPath() + "/portio.dll"); // of this build
        PrinterWin().openPort();
        QCOMPARE(lastPortFailure(), isThere ? kPortNoDevice : kPortLibraryMissing);
    }

    void printerInSoftware()
    {
        const QTemporaryDir folder;
        const QString paper = folder.filePath("paper.png");
        qputenv("QUILLBOX_SIMULATED_MODEL", "k2");
        qputenv("QUILLBOX_SIMULATED_PAPER", paper.toLocal8Bit());
        PortLibrary library(SIMULATOR_LIBRARY);
        port* made = refused(library);
        QVERIFY(!made);
        QCOMPARE(library.create(&made, "USB"), 0);
        checkTable(made);
        QCOMPARE(writeTo(made, sealedFrame(0, 1, QByteArray(71, '\0') + '\x01', kPowerOnKey)), 0); // of the wide head
        readFrom(made);
        QVERIFY(!QFile::exists(paper)); // the rest of a page may come
        QTRY_VERIFY((readFrom(made), QFile::exists(paper)));
        const QImage picture(paper);
        QCOMPARE(picture.size(), QSize(576, 1));
        QVERIFY(picture.pixel(574, 0) == qRgb(255, 255, 255) && picture.pixel(575, 0) == qRgb(0, 0, 0));
        QVERIFY(QFile::remove(paper));
        readFrom(made);
        QVERIFY(!QFile::exists(paper)); // the paper has not moved
    }

    void printerOverUsb()
    {
        PortLibrary library(USB_LIBRARY);
        port* made = refused(library);
        QCOMPARE(library.create(&made, "USB"), kPortNoDevice);
        QVERIFY(!made);
#ifdef ON_USB_BUS
        simulatedPrinter().plugIn();
        QCOMPARE(library.create(&made, "USB"), 0);
        checkTable(made);
#endif
    }

    /// Whether a list of what is plugged in, as Windows keeps it, names a printer.
    void pluggedIn()
    {
        const auto names = [](const char* list) { // '|' ends an identifier
            const std::wstring wide = QString(list).replace('|', QChar(0)).toStdWString();
            return namesOneOf(wide.c_str(), {{0x1209, 1}, {0x0483, 0xabcd}});
        };
        QVERIFY(names(R"(USB\ROOT_HUB30\4&2|USB\VID_1209&PID_0001\5&1|)") &&
                names(R"(USB\Vid_0483&Pid_abcd&MI_01\6|)"));
        QVERIFY(!names(R"(USB\VID_1209&PID_0002\1|USB\VID_0001&PID_1209\VID_1209&PID_0001|)") && !names(""));
    }
};

QTEST_GUILESS_MAIN(PortLibraryTest)
#include "tst_port_library.moc"
