#pragma once

#include <QImage>
#include <QString>

/// Reads a picture upright, as its camera held it. One with more than kMostPixels pixels is read smaller: the page
/// shows it a few hundred pixels wide, and decoded whole it could take gigabytes. GUI thread.
/// @return  null when the file cannot be read or is no picture
QImage loadPicture(const QString& file);

constexpr qint64 kMostPixels = qint64{64} * 1000 * 1000;
