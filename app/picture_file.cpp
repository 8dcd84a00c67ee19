#include "app/picture_file.h"

#include <QImageReader>

#include <cmath>

namespace {

QSize reduced(const QSize& size)
{
    const double pixels = double(size.width()) * size.height();
    const double factor = std::sqrt(double(kMostPixels) / pixels);
    return QSize(std::max(1, int(size.width() * factor)), std::max(1, int(size.height() * factor)));
}

} // namespace

QImage loadPicture(const QString& file)
{
    QImageReader reader(file);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isValid() && qint64(size.width()) * size.height() > kMostPixels)
        reader.setScaledSize(reduced(size));
    return reader.read();
}
