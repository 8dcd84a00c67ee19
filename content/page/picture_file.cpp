#include "content/page/picture_file.h"

#include <QBuffer>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>

namespace {

constexpr int kSmallestPart = 8; ///< an eighth each way
constexpr int kInterlaceAt = 28; ///< of a PNG file: bytes before the one that says whether it is interlaced

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

/// Whether the format's reader keeps no more in memory than the smaller picture. Several that can scale decode
/// everything first and make a second copy, as the PNG reader does with greys, palettes, 16 bits a colour and
/// interlaced pictures.
bool readsSmaller(const QImageReader& reader, const QByteArray& head)
{
    const QByteArray format = reader.format();
    if (format == "png") {
        const QImage::Format pixels = reader.imageFormat();
        return (pixels == QImage::Format_RGB32 || pixels == QImage::Format_ARGB32) && head.endsWith('\0');
    }
    return format == "jpeg" || format.startsWith("svg");
}

/// The size to read a picture at; an empty one leaves it out.
QSize sizeToRead(const QImageReader& reader, const QByteArray& head, qint64 mostBytes)
{
    const QSize size = reader.size();
    const QImage::Format format = reader.imageFormat();
    int part = 1;
    while (decodedBytes(partOf(size, part), format) > mostBytes) {
        part *= 2; // the steps of the JPEG decoder; at others it makes the next larger picture and a scaled copy
        if (part > kSmallestPart || !readsSmaller(reader, head))
            return {};
    }
    return partOf(size, part);
}

QImage read(QIODevice& device, const QString& name, qint64 mostBytes)
{
    const QByteArray head = device.peek(kInterlaceAt + 1);
    QImageReader reader(&device);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    if (!size.isEmpty()) { // else the reader itself says what is wrong, if anything is
        const QSize readSize = sizeToRead(reader, head, mostBytes);
        if (readSize.isEmpty()) {
            qDebug() << "picture left out:" << name << "is too large:" << size;
            return {};
        }
        if (readSize != size)
            reader.setScaledSize(readSize);
    }
    const QImage picture = reader.read();
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
