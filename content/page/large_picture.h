#pragma once

#include <QImage>

/// A picture whose pixels are not set, 32 bits a pixel, for one that is high. A fresh page of memory costs more than the
/// dots on it, so the system is asked for large ones, of 2 MB, where it gives them to who asks.
/// @return null when memory is lacking
QImage largePicture(const QSize& size, QImage::Format format);
