#pragma once

#include "imaging/binarize.h"
#include "imaging/conversion.h"
#include "imaging/halftone.h"

#include <QImage>

/// The dots that the image library makes of a page, eight to a byte, as they are to come out on paper.
/// @param printType  a PrinterThread::PrintType, or 3: what is black
inline QByteArray dotsOf(QImage page, int printType)
{
    page = page.convertToFormat(QImage::Format_RGB32);
    ImageBuffer buffer{page.bits(), page.width(), page.height(), 0, FormatBgrx32};
    printType == 1   ? binarizeImage(&buffer, 3)
    : printType == 3 ? imageToGray(&buffer)
                     : halftoneImage(&buffer, 0, 255, 0, printType == 0 ? 2 : 0);
    QByteArray dots(page.width() * page.height() / 8, '\0');
    for (int i = 0; i < 8 * dots.size(); ++i)
        dots[i / 8] = static_cast<char>(dots[i / 8] | (buffer.data[i] == 0) << (7 - i % 8));
    return dots;
}
