#include "content/page/page_scaling.h"

#include "content/page/large_picture.h"

#include <QTransform>

#include <cmath>
#include <cstring>
#include <vector>

namespace {

// Qt samples at 16.16 fixed-point steps from the middle of the first pixel. The step is truncated, so over a long
// page it lags behind; from one anchor to the next it cannot lag by more than half a pixel, and up to the first
// anchor, which is all that Qt paints itself, the samples are Qt's own.
constexpr int kAnchorDistance = kPaintableRows + 1;

/// Of the result. One of all that Qt paints may be the whole of a wide picture once more, and again as converted.
constexpr int kRowsAtOnce = 512;

int sourceOf(int position, double step, int sourceLength)
{
    const int anchor = position - position % kAnchorDistance;
    const auto start = static_cast<qint64>(std::ceil((anchor + 0.5) * step * 65536.0)) - 1;
    const auto fixedStep = static_cast<qint64>(step * 65536.0);
    const qint64 at = (start + fixedStep * (position - anchor)) >> 16;
    return static_cast<int>(qBound<qint64>(0, at, sourceLength - 1));
}

std::vector<int> sourceColumns(const QSize& source, int width)
{
    const double factor = static_cast<double>(width) / source.width();
    const double step = source.width() / (source.width() * factor);
    std::vector<int> columns(static_cast<std::size_t>(width));
    for (int x = 0; x < width; ++x)
        columns[static_cast<std::size_t>(x)] = sourceOf(x, step, source.width());
    return columns;
}

void sampleRow(QImage& result, int y, const QImage& strip, int row, const std::vector<int>& columns)
{
    const auto* from = reinterpret_cast<const QRgb*>(strip.constScanLine(row));
    auto* to = reinterpret_cast<QRgb*>(result.scanLine(y));
    for (const int column : columns)
        *to++ = from[column];
}

} // namespace

QSize sizeAtWidth(const QSize& source, int width)
{
    const double factor = static_cast<double>(width) / source.width();
    return {width, QTransform::fromScale(factor, factor).mapRect(QRect(QPoint(), source)).height()};
}

bool isTooTall(const QSize& source, int width)
{
    // Not by sizeAtWidth(), whose int it may exceed.
    return !source.isEmpty() &&
           static_cast<double>(source.height()) * width >= (kPaintableRows + 0.5) * source.width();
}

bool isPaintable(const QSize& source, int width)
{
    return source.height() <= kPaintableRows && sizeAtWidth(source, width).height() <= kPaintableRows;
}

QImage scaleInStrips(const QSize& source, int width, int stripRows, const RowSource& rows)
{
    const QSize size = sizeAtWidth(source, width);
    const double factor = static_cast<double>(width) / source.width();
    const double step = source.height() / (source.height() * factor);
    const std::vector<int> columns = sourceColumns(source, width);
    QImage result;
    for (int first = 0; first < size.height(); first += stripRows) {
        const int last = qMin(first + stripRows, size.height()) - 1;
        const int firstRow = sourceOf(first, step, source.height());
        const int lastRow = sourceOf(last, step, source.height());
        int top = firstRow;
        const QImage strip = rows(firstRow, lastRow - firstRow + 1, top);
        if (strip.depth() != 32 || strip.width() < source.width() || top > firstRow ||
            top + strip.height() <= lastRow)
            return {};
        if (result.isNull())
            result = largePicture(size, strip.format());
        if (result.isNull())
            return {};
        for (int y = first; y <= last; ++y)
            sampleRow(result, y, strip, sourceOf(y, step, source.height()) - top, columns);
    }
    return result;
}

QImage scaleToWidth(const QImage& picture, int width)
{
    if (picture.isNull() || width <= 0)
        return {};
    if (isPaintable(picture.size(), width))
        return picture.scaledToWidth(width, Qt::FastTransformation);
    const auto rows = [&picture](int first, int count, int& top) {
        top = first;
        QImage strip(picture.constScanLine(first), picture.width(), count, picture.bytesPerLine(), picture.format());
        if (picture.colorCount() > 0)
            strip.setColorTable(picture.colorTable());
        return strip.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    };
    return scaleInStrips(picture.size(), width, kRowsAtOnce, rows);
}
