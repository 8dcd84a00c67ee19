#include "app/globals/model.h"
#include "device/packet.h"
#include "device/printer_thread.h"
#include "device/printer_win.h"
#include "imaging/binarize.h"
#include "imaging/conversion.h"
#include "imaging/halftone.h"
#include "simulator/simulated_port.h"
#include "simulator/simulated_printer.h"

#include <QtTest>

#include <random>

/// Whole jobs, from a picture to the paper of the simulated printer.
class PrinterThreadTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void paperShowsWhatImagingMade_data();
    void paperShowsWhatImagingMade();
    void refusedJobs_data();
    void refusedJobs();
    void cutOffAtEveryFrame();
    void jobAfterReplug();
    void handedOverWhileAJobRuns();
    void handedInPictureIsLeftAlone();
    void destructionWaitsForTheJob();

private:
    void connectAs(SimulatedPrinter::Model model);
};

namespace {

/// A picture with every grey, colour and a hard edge, so that each conversion has something to do.
QImage testPicture(int width, int height, QImage::Format format = QImage::Format_RGB32)
{
    std::mt19937 random(42);
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int noise = static_cast<int>(random() % 40);
            const int grey = qBound(0, x * 255 / width + noise - 20, 255);
            image.setPixel(x, y, y % 16 < 3 ? qRgb(0, 0, 0) : qRgb(grey, qMax(0, grey - noise), 255 - grey));
        }
    }
    return image.convertToFormat(format);
}

/// The dots that the image library makes of the picture, as one row of '#' and '.' a line.
QStringList dotsOf(QImage image, int printType)
{
    image = image.convertToFormat(QImage::Format_RGB32);
    ImageBuffer buffer{image.bits(), image.width(), image.height(), 0, FormatBgrx32};
    if (printType == 1)
        binarizeImage(&buffer, 3);
    else if (printType == 0 || printType == 2)
        halftoneImage(&buffer, 0, 255, 0, printType == 0 ? 2 : 0);
    else
        imageToGray(&buffer);
    QStringList lines;
    for (int y = 0; y < image.height(); ++y) {
        QString line;
        for (int x = 0; x < image.width(); ++x)
            line += QLatin1Char(buffer.data[y * image.width() + x] == 0 ? '#' : '.');
        lines.append(line);
    }
    return lines;
}

QStringList dotsOn(const QImage& paper, int lines)
{
    QStringList result;
    for (int y = 0; y < lines; ++y) {
        QString line;
        for (int x = 0; x < paper.width(); ++x)
            line += QLatin1Char(qGray(paper.pixel(x, y)) == 0 ? '#' : '.');
        result.append(line);
    }
    return result;
}

using Results = QList<QPair<int, QString>>;
const Results kSent = {{0, "send success"}};
const Results kNotSent = {
    {1, QString::fromUtf8("连接失败,请尝试\n1.检查设备是否开启\n2.检查设备是否连接\n3.重新插拔USB")}};

/// Starts the thread's stored job and waits for its end.
/// @return what was reported, as a window of this thread gets it
Results runStoredJob(PrinterThread& thread)
{
    QObject window;
    Results results;
    QObject::connect(&thread, &PrinterThread::resultReady, &window, [&](int code, const QString& message) {
        results.append({code, message});
    });
    thread.start();
    if (!thread.wait(60000))
        qFatal("the job does not end");
    QCoreApplication::processEvents();
    return results;
}

Results runJob(PrinterThread& thread, const QImage& image, int printType)
{
    thread.setImage(image, printType);
    return runStoredJob(thread);
}

} // namespace

void PrinterThreadTest::init()
{
    simulatedPrinter().reset();
    g_portOpen = false;
    g_printerReady = false;
    g_modelIndex = 0;
    g_modelConfirmed = false;
    setCurrentCrcKey(kDefaultCrcKey);
}

/// As the window does once the model reply is there: a bring-up always starts at the first model.
void PrinterThreadTest::connectAs(SimulatedPrinter::Model model)
{
    simulatedPrinter().reset(model);
    QVERIFY(printerConnection()->connectUsb());
    g_modelIndex = model == SimulatedPrinter::Model::K2 ? 1 : 0;
    g_modelConfirmed = true;
}

void PrinterThreadTest::paperShowsWhatImagingMade_data()
{
    QTest::addColumn<int>("model");
    QTest::addColumn<int>("printType");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("format");
    const int rgb = QImage::Format_RGB32;
    QTest::newRow("K1 photo") << 0 << 0 << 70 << rgb;
    QTest::newRow("K1 text") << 0 << 1 << 70 << rgb;
    QTest::newRow("K1 diffusion") << 0 << 2 << 70 << rgb;
    QTest::newRow("K1 black only") << 0 << 3 << 70 << rgb;
    QTest::newRow("K2 photo") << 1 << 0 << 70 << rgb;
    QTest::newRow("K2 text, whole frames") << 1 << 1 << 28 << rgb;
    QTest::newRow("one row") << 0 << 1 << 1 << rgb;
    QTest::newRow("with alpha") << 0 << 2 << 20 << int(QImage::Format_ARGB32);
    QTest::newRow("24 bits") << 0 << 0 << 20 << int(QImage::Format_RGB888);
    QTest::newRow("grey") << 0 << 2 << 20 << int(QImage::Format_Grayscale8);
    QTest::newRow("indexed") << 1 << 1 << 20 << int(QImage::Format_Indexed8);
}

void PrinterThreadTest::paperShowsWhatImagingMade()
{
    QFETCH(int, model);
    QFETCH(int, printType);
    QFETCH(int, height);
    QFETCH(int, format);
    connectAs(model == 1 ? SimulatedPrinter::Model::K2 : SimulatedPrinter::Model::K1);
    const QImage picture = testPicture(printHeadWidth(), height, static_cast<QImage::Format>(format));
    PrinterThread thread;
    QCOMPARE(runJob(thread, picture, printType), kSent);

    const QImage paper = simulatedPrinter().paper();
    QCOMPARE(paper.width(), printHeadWidth());
    QCOMPARE(paper.height(), height + 300);
    QCOMPARE(dotsOn(paper, height), dotsOf(picture, printType));
    QCOMPARE(simulatedPrinter().crcErrorCount(), 0);
    QCOMPARE(simulatedPrinter().feeds().last(), 300);
    QCOMPARE(simulatedPrinter().fedLines(), 300);
}

void PrinterThreadTest::refusedJobs_data()
{
    QTest::addColumn<int>("width"); // 0 is no picture
    QTest::addColumn<bool>("present");
    QTest::newRow("no picture") << 0 << true;
    QTest::newRow("no picture, no printer") << 0 << false;
    QTest::newRow("no printer") << 384 << false;
    QTest::newRow("not the head's width") << 383 << true;
    QTest::newRow("K2 page after a bring-up") << 576 << true;
}

void PrinterThreadTest::refusedJobs()
{
    QFETCH(int, width);
    QFETCH(bool, present);
    if (!present)
        simulatedPrinter().unplug();
    PrinterThread thread;
    const QImage picture = width == 0 ? QImage() : testPicture(width, 8);
    QCOMPARE(runJob(thread, picture, 1), width == 0 ? Results({{1, "image is null"}}) : kNotSent);
    QVERIFY(simulatedPrinter().jobLines().isEmpty());
    QCOMPARE(simulatedPrinter().fedLines(), 0);
    QVERIFY(width != 0 || simulatedPrinter().frames().isEmpty());
}

void PrinterThreadTest::cutOffAtEveryFrame()
{
    constexpr int kHeight = 21 * 4 + 5; // four whole print-data frames and a short one
    const QImage picture = testPicture(384, kHeight);
    const int dataFrame = kPrintDataPayload + kFrameOverhead;
    const int jobBytes = 4 * dataFrame + 5 * 48 + kFrameOverhead;
    for (int frame = 0; frame <= 5; ++frame) {
        for (const int within : {0, 1, 700}) {
            const int goneAfter = frame * dataFrame + within;
            if (goneAfter >= jobBytes)
                continue;
            init();
            connectAs(SimulatedPrinter::Model::K1);
            simulatedPrinter().goAwayAfter(goneAfter);
            PrinterThread thread;
            QCOMPARE(runJob(thread, picture, 1), kNotSent);
            QCOMPARE(simulatedPrinter().jobLines().size(), frame * kPrintDataPayload);
            QCOMPARE(simulatedPrinter().fedLines(), 0);
            QVERIFY(!g_printerReady);
        }
    }
    // Gone after the raster: the page is printed, and whether the closing feed came through is not asked.
    init();
    connectAs(SimulatedPrinter::Model::K1);
    simulatedPrinter().goAwayAfter(jobBytes);
    PrinterThread thread;
    QCOMPARE(runJob(thread, picture, 1), kSent);
}

void PrinterThreadTest::jobAfterReplug()
{
    const QImage picture = testPicture(384, 30);
    PrinterThread thread;
    QCOMPARE(runJob(thread, picture, 1), kSent);
    simulatedPrinter().unplug();
    QCOMPARE(runJob(thread, picture, 1), kNotSent);
    simulatedPrinter().plugIn();
    QCOMPARE(runJob(thread, picture, 1), kSent);
    QCOMPARE(simulatedPrinter().crcErrorCount(), 0);
    QCOMPARE(simulatedPrinter().jobLines().size(), 2 * 30 * 48);
}

void PrinterThreadTest::handedOverWhileAJobRuns()
{
    const QImage first = testPicture(384, 400);
    QImage second(384, 7, QImage::Format_RGB32);
    second.fill(Qt::black);
    PrinterThread thread;
    // From the job's own thread, in its middle: the first print-data frame has just arrived.
    bool handedOver = false;
    const auto connection = connect(
        &simulatedPrinter(), &SimulatedPrinter::frameReceived, &simulatedPrinter(),
        [&](const FrameRecord& frame) {
            if (frame.code == 0 && !handedOver) {
                handedOver = true;
                thread.setImage(second, 1);
                thread.start(); // has no effect
            }
        },
        Qt::DirectConnection);
    QCOMPARE(runJob(thread, first, 1), kSent);
    disconnect(connection);
    QVERIFY(handedOver);
    QCOMPARE(simulatedPrinter().jobLines().size(), 400 * 48);
    QCOMPARE(dotsOn(simulatedPrinter().paper(), 400), dotsOf(first, 1));

    // The stored job has waited for the next start.
    QCOMPARE(runStoredJob(thread), kSent);
    QCOMPARE(simulatedPrinter().jobLines().size(), 407 * 48);
}

void PrinterThreadTest::handedInPictureIsLeftAlone()
{
    // A picture over somebody's own memory, with padding between the rows, that nobody else holds.
    QByteArray memory(400 * 4 * 10, '\x40');
    const QByteArray before = memory;
    PrinterThread thread;
    {
        QImage wrapped(reinterpret_cast<uchar*>(memory.data()), 384, 10, 400 * 4, QImage::Format_RGB32);
        thread.setImage(wrapped, 3);
    }
    QCOMPARE(runStoredJob(thread), kSent);
    QCOMPARE(memory, before);
    QCOMPARE(simulatedPrinter().jobLines(), QByteArray(48 * 10, '\0')); // grey 0x40 is not black
}

void PrinterThreadTest::destructionWaitsForTheJob()
{
    {
        PrinterThread thread;
        thread.setImage(testPicture(384, 600), 0);
        thread.start();
    }
    QCOMPARE(simulatedPrinter().jobLines().size(), 600 * 48);
    QCOMPARE(simulatedPrinter().feeds().last(), 300);
}

QTEST_GUILESS_MAIN(PrinterThreadTest)
#include "tst_printer_thread.moc"
