#include "app/picture_file.h"

#include <QImageReader>

#include <algorithm>
#include <cmath>

namespace {

qint64 pixelsOf(const QSize& size)
{
    return static_cast<qint64>(size.width()) * size.height();
}

QSize reduced(const QSize& size)
{
    const double factor = std::sqrt(static_cast<double>(kMostPixels) / static_cast<double>(pixelsOf(size)));
    return {std::max(1, static_cast<int>(size.width() * factor)),
            std::max(1, static_cast<int>(size.height() * factor))};
}

} // namespace

QImage loadPicture(const QString& file)
{
    QImageReader reader(file);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isValid() && pixelsOf(size) > kMostPixels)
        reader.setScaledSize(reduced(size));
    return reader.read();
}
