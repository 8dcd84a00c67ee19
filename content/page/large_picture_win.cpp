#include "content/page/large_picture.h"

// Large pages are a privilege there that nobody has.
QImage largePicture(const QSize& size, QImage::Format format)
{
    return QImage(size, format);
}
