#include "demo/landscape.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <cmath>
#include <random>

namespace {

constexpr double kHorizon = 0.62; ///< of the height

void paintSky(QPainter& painter, const QSizeF& size)
{
    QLinearGradient sky(0, 0, 0, size.height() * kHorizon);
    sky.setColorAt(0.0, QColor(70, 96, 150));
    sky.setColorAt(0.6, QColor(196, 176, 190));
    sky.setColorAt(1.0, QColor(255, 226, 170));
    painter.fillRect(QRectF(0, 0, size.width(), size.height() * kHorizon), sky);

    const QPointF sun(size.width() * 0.68, size.height() * 0.38);
    QRadialGradient glow(sun, size.height() * 0.45);
    glow.setColorAt(0.0, QColor(255, 252, 232, 255));
    glow.setColorAt(0.16, QColor(255, 248, 214, 240));
    glow.setColorAt(0.2, QColor(255, 236, 180, 130));
    glow.setColorAt(1.0, QColor(255, 220, 150, 0));
    painter.fillRect(QRectF(0, 0, size.width(), size.height() * kHorizon), glow);
}

/// One chain of hills: a few sines laid over each other, which look like a ridge.
void paintRidge(QPainter& painter, const QSizeF& size, double level, double roughness, double phase,
                const QColor& colour)
{
    QPainterPath ridge(QPointF(0, size.height()));
    for (int x = 0; x <= static_cast<int>(size.width()); ++x) {
        const double u = x / size.width() * 6.283 + phase;
        const double height =
            std::sin(u) + 0.5 * std::sin(2.3 * u + 1) + 0.22 * std::sin(5.7 * u) + 0.1 * std::sin(13.1 * u + phase);
        ridge.lineTo(x, size.height() * (level - roughness * height));
    }
    ridge.lineTo(size.width(), size.height());
    painter.fillPath(ridge, colour);
}

void paintLake(QPainter& painter, const QSizeF& size)
{
    const QRectF water(0, size.height() * kHorizon, size.width(), size.height() * (1 - kHorizon));
    QLinearGradient depth(water.topLeft(), water.bottomLeft());
    depth.setColorAt(0.0, QColor(236, 208, 168));
    depth.setColorAt(0.45, QColor(128, 130, 150));
    depth.setColorAt(1.0, QColor(38, 48, 70));
    painter.fillRect(water, depth);

    std::mt19937 random(11);
    for (int i = 0; i < 260; ++i) { // glitter below the sun, wider towards the beholder
        const double down = static_cast<double>(random() % 1000) / 1000;
        const double side = (static_cast<double>(random() % 1000) / 500 - 1) * (0.05 + 0.16 * down);
        const QPointF at(size.width() * (0.68 + side), water.top() + down * water.height());
        painter.fillRect(QRectF(at, QSizeF(3 + 9 * down, 1 + down)), QColor(255, 244, 206, 190));
    }
}

/// A fir on the near shore: five tiers of branches.
void paintFir(QPainter& painter, const QPointF& foot, double height)
{
    for (int tier = 0; tier < 5; ++tier) {
        const double top = foot.y() - height * (1 - tier * 0.17);
        const double half = height * (0.08 + tier * 0.045);
        QPainterPath branch(QPointF(foot.x(), top));
        branch.lineTo(foot.x() + half, top + height * 0.32);
        branch.lineTo(foot.x() - half, top + height * 0.32);
        painter.fillPath(branch, QColor(20, 30, 30));
    }
}

void addGrain(QImage& image)
{
    std::mt19937 random(5);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int grain = static_cast<int>(random() % 17) - 8;
            line[x] = qRgb(qBound(0, qRed(line[x]) + grain, 255), qBound(0, qGreen(line[x]) + grain, 255),
                           qBound(0, qBlue(line[x]) + grain, 255));
        }
    }
}

} // namespace

QImage landscapePicture(const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    paintSky(painter, size);
    paintRidge(painter, size, 0.52, 0.05, 0.4, QColor(150, 146, 172));
    paintRidge(painter, size, 0.57, 0.045, 2.1, QColor(98, 104, 128));
    paintLake(painter, size);
    paintRidge(painter, size, 0.97, 0.035, 3.6, QColor(30, 36, 38));
    paintFir(painter, QPointF(size.width() * 0.13, size.height() * 0.97), size.height() * 0.55);
    paintFir(painter, QPointF(size.width() * 0.24, size.height() * 0.98), size.height() * 0.38);
    painter.end();
    addGrain(image);
    return image;
}
