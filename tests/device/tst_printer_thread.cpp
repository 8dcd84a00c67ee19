#include "device/port.h"
#include "device/printer_state.h"
#include "tests/device/imaged_dots.h"
#include "tests/device/printer_fixture.h"

#include <thread>

namespace {

/// A picture of many colours, with black dots all over it, so that each conversion has something to do.
QImage testPicture(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int i = 0; i < width * height; ++i)
        image.setPixel(i % width, i / width, i % 5 == 0 ? 0 : qRgb(i * 7 % 256, i * 31 % 251, i / 300 % 256));
    return image;
}

} // namespace

/// Whole jobs, from a picture to the paper of the simulated printer.
class PrinterThreadTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { startOver(); }

    void paperShowsWhatImagingMade()
    {
        for (const auto format : {QImage::Format_RGB32, QImage::Format_ARGB32, QImage::Format_RGB888,
                                  QImage::Format_Grayscale8, QImage::Format_Indexed8}) {
            for (int printType = 0; printType < 4; ++printType) {
                const int model = format % 2;
                startOver(model == 1 ? SimulatedPrinter::Model::K2 : SimulatedPrinter::Model::K1);
                QVERIFY(printerConnection()->connectUsb()); // a bring-up always starts at the first model
                setModel(model, true);
                const QImage picture = testPicture(printHeadWidth(), 28).convertToFormat(format);
                const QImage before = picture.copy();
                QCOMPARE(runJob(picture, printType), QStringList{kSent});
                QCOMPARE(picture, before);
                QVERIFY2(simulatedPrinter().jobLines() == dotsOf(picture, printType), QByteArray::number(printType));
                QCOMPARE(simulatedPrinter().report().paperLines, qint64{28 + 300});
            }
        }
    }

    void jobsFail()
    {
        QCOMPARE(runJob(QImage(), 1), QStringList{"1 image is null"});
        QVERIFY(simulatedPrinter().frames().isEmpty());
        QCOMPARE(runJob(testPicture(576, 8), 1), QStringList{kNotSent}); // for K2, but the model is not known yet
        QCOMPARE(simulatedPrinter().report().paperLines, qint64{0});
    }

    /// Of a printer that is there in its place nothing is known; one that the job itself brings up is as it always was.
    void pageOfAnEarlierSession()
    {
        PrinterThread thread;
        for (const bool isUp : {true, false}) {
            QVERIFY(printerConnection()->connectUsb());
            g_printerReady = isUp;
            thread.setImage(testPicture(384, 8), 1, Printer::session() - 2);
            QCOMPARE(runStoredJob(thread), QStringList{isUp ? kNotSent : kSent});
            QCOMPARE(simulatedPrinter().report().paperLines > 0, !isUp);
        }
        startOver(SimulatedPrinter::Model::K2);
        thread.setImage(testPicture(384, 8), 1);
        const auto beginJob = [&](const FrameRecord&) { // which waits for the exchange
            thread.start();
            QThread::msleep(100);
        };
        const auto connection = connect(&simulatedPrinter(), &SimulatedPrinter::frameReceived, beginJob);
        QVERIFY(printerConnection()->connectUsb());
        disconnect(connection);
        QVERIFY(thread.wait());
        QCOMPARE(simulatedPrinter().report().paperLines, qint64{0});
    }

    /// However soon the receiver, another thread, has mended it.
    void keepsWhatMadeItFail()
    {
        PrinterThread thread;
        thread.setImage(testPicture(384, 8), 1);
        const auto before = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& line) {
            if (line.contains("set CrcKey Failed"))
                std::thread([] { notePortResult(0); }).join();
        });
        simulatedPrinter().fault([&](auto& faults) { faults.refusingWrites = true; });
        QCOMPARE(runStoredJob(thread), QStringList{kNotSent});
        qInstallMessageHandler(before);
        QCOMPARE(thread.portFailure(), kPortRefused);
    }

    void handedOverWhileAJobRuns()
    {
        const QImage first = testPicture(384, 400), second = testPicture(384, 1200);
        {
            PrinterThread thread;
            const auto handOver = [&](const FrameRecord& frame) { // in the job's thread, in its middle
                if (frame.code == 0)
                    thread.setImage(second, 0);
                thread.start(); // has no effect
            };
            const auto connection = connect(&simulatedPrinter(), &SimulatedPrinter::frameReceived, handOver);
            thread.setImage(first, 1);
            QCOMPARE(runStoredJob(thread), QStringList{kSent});
            disconnect(connection);
            QCOMPARE(simulatedPrinter().jobLines(), dotsOf(first, 1));
            thread.start(); // the stored job, which destruction waits for
        }
        QCOMPARE(simulatedPrinter().jobLines(), dotsOf(first, 1) + dotsOf(second, 0));
        QCOMPARE(simulatedPrinter().report().fedLines, 2 * 300);
    }

    /// What has left is whole frames, and nothing of a cancel reaches the next job.
    void isCanceled()
    {
        const QImage page = testPicture(384, 2400); // more frames than percents
        const QByteArray dots = dotsOf(page, 1);
        PrinterThread thread;
        const auto run = [&] {
            thread.setImage(page, 1);
            return runStoredJob(thread);
        };
        QVector<int> told;
        const auto keep = [&](int sent, int total) { // in the job's thread
            told += total == dots.size() ? sent : -1;
            if (told.size() == 106)
                thread.cancel(); // the second job
        };
        connect(&thread, &PrinterThread::progressed, &thread, keep, Qt::DirectConnection);
        thread.cancel(); // there is no job yet
        QCOMPARE(run(), QStringList{kSent});
        QVERIFY(told.size() == 101 && told.first() == 0 && told.last() == dots.size());
        thread.cancel(); // too late
        QCOMPARE(run(), QStringList{"0 canceled"});
        const QByteArray paper = dots + dots.left(told.last());
        QVERIFY(told.size() == 106 && simulatedPrinter().jobLines() == paper);
        const auto early = connect(&thread, &QThread::started, &thread, &PrinterThread::cancel, Qt::DirectConnection);
        QCOMPARE(run(), QStringList{"0 canceled"});
        disconnect(early);
        QCOMPARE(run(), QStringList{kSent});
        QCOMPARE(simulatedPrinter().jobLines(), paper + dots);
        QVERIFY(simulatedPrinter().report().feeds.count(300) == 2 && simulatedPrinter().report().skippedBytes == 0);
    }
};

QTEST_GUILESS_MAIN(PrinterThreadTest)
#include "tst_printer_thread.moc"
