#include "benchmarks/pages.h"

#include <cmath>
#include <random>

QImage photograph(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    std::mt19937 random(1);
    for (int y = 0; y < height; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            const int shade = static_cast<int>(127.0 + 100.0 * std::sin(x / 90.0) * std::cos(y / 140.0)) +
                              static_cast<int>(random() % 21) - 10;
            line[x] = qRgb(shade, qBound(0, shade + 15, 255), qBound(0, shade - 15, 255));
        }
    }
    return image;
}

QImage pageOfText(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::white);
    std::mt19937 random(2);
    for (int y = 8; y + 24 < height; y += 32) {
        for (int x = 8; x + 16 < width; x += 3 + static_cast<int>(random() % 9)) {
            for (int i = 6 + static_cast<int>(random() % 14); i-- > 0;) {
                image.setPixel(x, y + i, qRgb(0, 0, 0));
                image.setPixel(x + 1, y + i, qRgb(90, 90, 90));
            }
        }
    }
    return image;
}
