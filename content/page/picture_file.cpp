#include "content/page/picture_file.h"

#include <QBuffer>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QtEndian>

namespace {

constexpr int kSmallestPart = 8;     ///< an eighth each way
constexpr int kCoefficientBytes = 6; ///< a pixel; kept of a progressive JPEG at whatever size it is decoded
constexpr int kMostFold = 3;         ///< so many times the bytes allowed may be kept besides

QSize partOf(const QSize& size, int part)
{
    return {(size.width() + part - 1) / part, (size.height() + part - 1) / part};
}

qint64 decodedBytes(const QSize& size, QImage::Format format)
{
    // Formats whose reader does not tell beforehand have 32 bits a pixel.
    const auto bits = format == QImage::Format_Invalid ? 32 : QImage::toPixelFormat(format).bitsPerPixel();
    return (static_cast<qint64>(size.width()) * bits + 7) / 8 * size.height();
}

/// Walks from marker to marker up to the frame.
bool isProgressiveJpeg(QIODevice& device, qint64 start)
{
    constexpr char kMarker = '\xff';
    constexpr char kProgressiveFrame = '\xc2';
    constexpr char kScan = '\xda';
    for (qint64 at = start + 2; device.seek(at);) {
        const QByteArray marker = device.read(4);
        if (marker.size() < 4 || marker[0] != kMarker || marker[1] == kScan)
            return false;
        if (marker[1] == kProgressiveFrame)
            return true;
        at += 2 + qFromBigEndian<quint16>(marker.constData() + 2);
    }
    return false;
}

/// Whether a picture is stored in several passes over all of it, which Qt does not tell: an interlaced PNG or a
/// progressive JPEG.
bool isInPasses(QIODevice& device)
{
    constexpr int kInterlaceAt = 28; // of a PNG
    const QByteArray head = device.peek(kInterlaceAt + 1);
    if (!head.startsWith("\xff\xd8"))
        return head.size() > kInterlaceAt && head[kInterlaceAt] != 0;
    const qint64 start = device.pos();
    const bool progressive = isProgressiveJpeg(device, start);
    device.seek(start);
    return progressive;
}

/// Whether the format's reader keeps no more in memory than the smaller picture. Several that can scale decode
/// everything first and make a second copy, as the PNG reader does with greys, palettes, 16 bits a colour and
/// interlaced pictures.
bool readsSmaller(const QImageReader& reader, bool inPasses, qint64 mostBytes)
{
    const QByteArray format = reader.format();
    if (format == "png") {
        const QImage::Format pixels = reader.imageFormat();
        return (pixels == QImage::Format_RGB32 || pixels == QImage::Format_ARGB32) && !inPasses;
    }
    const QSize size = reader.size();
    if (format == "jpeg" && inPasses)
        return static_cast<qint64>(size.width()) * size.height() * kCoefficientBytes <= kMostFold * mostBytes;
    return format == "jpeg" || format.startsWith("svg");
}

/// The size to read a picture at; an empty one leaves it out.
QSize sizeToRead(const QImageReader& reader, const QSize& size, bool inPasses, qint64 mostBytes)
{
    const QImage::Format format = reader.imageFormat();
    int part = 1;
    while (decodedBytes(partOf(size, part), format) > mostBytes) {
        part *= 2; // the steps of the JPEG decoder; at others it makes the next larger picture and a scaled copy
        if (part > kSmallestPart || !readsSmaller(reader, inPasses, mostBytes))
            return {};
    }
    return partOf(size, part);
}

/// The size of the screen that the frames of a GIF are drawn on; an empty one for other formats. Qt does not believe one
/// that is many times as large as the frame, and tells the frame's; but reads into the screen.
QSize screenOfGif(QIODevice& device)
{
    const QByteArray head = device.peek(10);
    if (head.size() < 10 || !head.startsWith("GIF8"))
        return {};
    return {qFromLittleEndian<quint16>(head.constData() + 6), qFromLittleEndian<quint16>(head.constData() + 8)};
}

QImage read(QIODevice& device, const QString& name, qint64 mostBytes)
{
    const bool inPasses = isInPasses(device); // before the reader moves on
    const QSize screen = screenOfGif(device);
    QImageReader reader(&device);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size().expandedTo(screen);
    if (!size.isEmpty()) { // else the reader itself says what is wrong, if anything is
        const QSize readSize = sizeToRead(reader, size, inPasses, mostBytes);
        if (readSize.isEmpty()) {
            qDebug() << "picture left out:" << name << "is too large:" << size;
            return {};
        }
        if (readSize != size)
            reader.setScaledSize(readSize);
    }
    QImage picture = reader.read();
    if (picture.isNull())
        qDebug() << "picture left out:" << name << reader.errorString();
    else
        qDebug() << "picture read:" << name << size << "as" << picture.size();
    return picture;
}

} // namespace

QImage readPicture(const QString& path, qint64 mostBytes)
{
    QFile file(path);
    // A pipe would keep whoever opens it waiting.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        qDebug() << "picture left out:" << path << "cannot be opened:" << file.errorString();
        return {};
    }
    return read(file, path, mostBytes);
}

QImage pictureFromData(const QByteArray& content, qint64 mostBytes)
{
    QBuffer buffer;
    buffer.setData(content);
    buffer.open(QIODevice::ReadOnly);
    return read(buffer, QStringLiteral("of %1 bytes").arg(content.size()), mostBytes);
}
