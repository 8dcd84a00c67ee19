#pragma once

#include <QImage>
#include <QRandomGenerator>

/// A page of black and white dots as random as its number: no two lines of two jobs look alike.
struct JobPattern
{
    JobPattern(int width, int lines, quint32 number)
        : picture(width, lines, QImage::Format_RGB32)
        , dots(width / 8 * lines, '\0')
    {
        QRandomGenerator random(number);
        for (int i = 0; i < dots.size(); ++i) {
            dots[i] = static_cast<char>(random.bounded(256));
            for (int bit = 0; bit < 8; ++bit) {
                const int x = i * 8 % width + bit;
                picture.setPixel(x, i * 8 / width, dots[i] & (0x80 >> bit) ? qRgb(0, 0, 0) : qRgb(255, 255, 255));
            }
        }
    }

    QImage picture;
    QByteArray dots; ///< eight to a byte, as they are to come out on paper
};
