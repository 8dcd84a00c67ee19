#pragma once

#include <QImage>
#include <QSize>

#include <functional>

/// Nearest-neighbour scaling to a width, for pictures of any height.
///
/// Qt paints and scales at most 32767 rows; what lies below stays unpainted, which a thermal head burns as solid
/// black. Up to that limit everything here is QImage::scaledToWidth (fast transformation) itself; beyond it the same
/// samples are taken strip by strip, so that memory stays at the result plus one strip.

/// The most rows that Qt paints; both source and result must stay within it for the plain road.
constexpr int kPaintableRows = 32767;

/// Size of the result, as QImage::scaledToWidth rounds it.
QSize sizeAtWidth(const QSize& source, int width);

/// True when the result would be higher than Qt paints. To be asked before pictures from elsewhere are scaled: a
/// single column of 60000 pixels becomes gigabytes.
bool isTooTall(const QSize& source, int width);

/// True when QImage::scaledToWidth paints every row.
bool isPaintable(const QSize& source, int width);

/// Gives the rows first … first + count - 1 of the source, or a null picture when they cannot be had. The picture
/// may begin earlier and end later; `top` is set to the source row of its row 0. 32 bits a pixel.
using RowSource = std::function<QImage(int first, int count, int& top)>;

/// Scales a source that is handed over in strips.
/// @param source     width and height of the whole source, pixels
/// @param width      of the result, pixels, 1 or more
/// @param stripRows  result rows made from one call of `rows`, 1 or more
/// @return           null when the memory is lacking or `rows` gave nothing
QImage scaleInStrips(const QSize& source, int width, int stripRows, const RowSource& rows);

/// QImage::scaledToWidth(width, Qt::FastTransformation) without its limit of height.
/// @return null for a null picture, for width <= 0 and when nothing is left of the height
QImage scaleToWidth(const QImage& picture, int width);
