#pragma once

#include <QImage>
#include <QRect>

/// Whether dots keep hard edges when a dot is not a whole number of pixels.
enum class DotEdges {
    Hard, ///< every pixel is black or white; dots may differ by a pixel in size
    Soft  ///< every pixel is as grey as the dots that it covers, so that nothing of a small picture gets lost
};

/// A part of the paper as a screen shows it. Pixels are counted from the paper's first line and leftmost dot whatever
/// part is asked for, so parts drawn at different times join without a seam.
/// @param dots       Format_Mono, black in colour 1; what lies beyond its last line is white, and so is a null image
/// @param firstLine  the paper's line that `dots` begins with
/// @param scale      pixels a dot, above 0; where it is whole, both kinds of edges are the same
/// @param pixels     what to draw, in pixels of the scaled paper; within its width
/// @return           Format_RGB32, as large as `pixels`
QImage renderDots(const QImage& dots, qint64 firstLine, qreal scale, DotEdges edges, const QRect& pixels);
