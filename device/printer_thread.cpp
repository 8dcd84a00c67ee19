#include "device/printer_thread.h"

#include "device/packet.h"
#include "device/printer_state.h"
#include "device/printer_win.h"
#include "device/raster.h"
#include "imaging/binarize.h"
#include "imaging/conversion.h"
#include "imaging/halftone.h"

#include <QDateTime>
#include <QDeadlineTimer>
#include <QtDebug>

#include <limits>
#include <memory>
#include <new>
#include <utility>

namespace {

constexpr int kOtherSession = -1;
constexpr std::uint16_t kFeedAfterJob = 300; ///< dot lines from the head to the tear bar and a margin
constexpr int kOtsu = 3;
constexpr int kPolarityNormal = 0;
constexpr int kNoPreparation = 0;
constexpr int kAutoBrightnessContrast = 2;
constexpr qint64 kMakingDots = std::numeric_limits<qint64>::max();

qint64 steadyMs()
{
    return QDeadlineTimer::current().deadline();
}

/// A conversion that is refused leaves the grey picture; the job goes on all the same.
void convertToDots(ImageBuffer* gray, int printType)
{
    switch (printType) {
    case PrinterThread::PrintPhoto:
        halftoneImage(gray, 0, 255, kPolarityNormal, kAutoBrightnessContrast);
        break;
    case PrinterThread::PrintText:
        binarizeImage(gray, kOtsu);
        break;
    case PrinterThread::PrintDiffusion:
        halftoneImage(gray, 0, 255, kPolarityNormal, kNoPreparation);
        break;
    default:
        break;
    }
}

using Bytes = std::unique_ptr<unsigned char[]>;

/// Grey, one byte a pixel, in memory of its own: the picture that was handed in may be on show elsewhere, and a page of
/// four bytes a pixel is not worth copying for one of them.
Bytes grayOf(const QImage& image)
{
    const auto width = static_cast<std::size_t>(image.width());
    Bytes gray(new (std::nothrow) unsigned char[width * static_cast<std::size_t>(image.height())]);
    for (int y = 0; gray && y < image.height(); ++y)
        imaging::grayFromBgrx32(image.constScanLine(y), width, gray.get() + static_cast<std::size_t>(y) * width);
    return gray;
}

/// Lets go of the picture as soon as it is grey.
Raster rasterOf(QImage image, int printType)
{
    if (image.depth() != 32)
        image = image.convertToFormat(QImage::Format_RGB32);
    const QSize size = image.size();
    const Bytes gray = grayOf(image);
    image = QImage();
    ImageBuffer buffer{gray.get(), size.width(), size.height(), 1, FormatGray8};
    convertToDots(&buffer, printType);
    return packRaster(buffer.data, buffer.width, buffer.height);
}

} // namespace

PrinterThread::PrinterThread(QObject* parent)
    : QThread(parent)
    , m_printer(printerConnection())
{
    connect(this, &QThread::finished, this, &PrinterThread::forgetCancel, Qt::DirectConnection);
}

PrinterThread::~PrinterThread()
{
    qDebug() << "~QxPrintThread";
    requestInterruption();
    quit();
    wait();
    const std::lock_guard<std::mutex> lock(
        m_jobMutex); // the last of forgetCancel(), in the job's thread, comes first
}

void PrinterThread::setImage(const QImage& image, int printType)
{
    setImage(image, printType, Printer::session());
}

void PrinterThread::setImage(const QImage& image, int printType, unsigned session)
{
    const std::lock_guard<std::mutex> lock(m_jobMutex);
    m_image = image;
    m_printType = printType;
    m_session = session;
    noteMove(); // a thread that has been started runs before it is in run()
}

/// A thread runs from within start() on, before it is in run(), and no longer when it has announced its end. So a
/// cancel that comes right behind start() counts, and one that comes too late is not kept for the next job.
void PrinterThread::cancel()
{
    const std::lock_guard<std::mutex> lock(m_jobMutex);
    if (isRunning())
        m_canceled = true;
}

void PrinterThread::forgetCancel()
{
    const std::lock_guard<std::mutex> lock(m_jobMutex);
    m_canceled = false;
}

bool PrinterThread::isMoving() const
{
    return isRunning() && steadyMs() - m_lastMove < kStillMs;
}

void PrinterThread::noteMove()
{
    m_lastMove = steadyMs();
}

void PrinterThread::run()
{
    const Result result = printStoredImage();
    m_portFailure = result.code == 0 ? 0 : lastPortFailureOfThisThread();
    emit resultReady(result.code, result.message);
}

PrinterThread::Result PrinterThread::printStoredImage()
{
    QImage image;
    int printType = PrintPhoto;
    unsigned session = 0;
    {
        const std::lock_guard<std::mutex> lock(m_jobMutex);
        image = std::exchange(m_image, QImage());
        printType = m_printType;
        session = m_session;
    }
    if (image.isNull())
        return {1, QStringLiteral("image is null")};

    Result canceled{0, QStringLiteral("canceled")};
    if (m_canceled)
        return canceled;
    const QString connectionFailed = tr("连接失败,请尝试\n1.检查设备是否开启\n2.检查设备是否连接\n3.重新插拔USB");
    const bool isUp = m_printer->connectUsb();
    const unsigned begun = Printer::session();
    const bool isAnother = begun != session && begun != Printer::ownSession(); // the job brought none up
    if (!isUp || isAnother)
        return m_canceled ? canceled : Result{1, connectionFailed};
    if (!isPrintPathAvailable())
        return {1, tr("连接失败,重新启动APP")};

    qDebug() << "QxPrintThread::run" << QDateTime::currentSecsSinceEpoch();
    m_lastMove = kMakingDots;
    const Raster raster = rasterOf(std::move(image), printType);
    const int result = begun == Printer::session() ? sendObserved(raster.bytes.get(), raster.size) : kOtherSession;
    if (m_canceled)
        return canceled; // also when the last frame failed: nobody waits for this page
    if (result != 0)
        return {1, connectionFailed};
    m_printer->sendFeedLines(kFeedAfterJob);
    qDebug() << "QxPrintThread::run sent" << raster.size << "bytes";
    return {0, QStringLiteral("send success")};
}

int PrinterThread::sendObserved(const unsigned char* raster, int size)
{
    qint64 told = -1; // percent
    return m_printer->sendRaster(raster, size, [&](int sent, int total) {
        noteMove();
        const qint64 percent = total > 0 ? qint64{sent} * 100 / total : 100;
        if (percent != told)
            emit progressed(sent, total);
        told = percent;
        return !m_canceled;
    });
}
