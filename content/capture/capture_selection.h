#pragma once

#include <QPixmap>
#include <QPoint>
#include <QRect>
#include <QSize>

// The geometry of the capture overlay. All lengths are logical pixels, as the mouse reports them; rectangles hold
// their left column and their right column, so a rectangle from 0 that is 10 wide ends before column 10.

/// A hand that moves no more than this between press and release, both directions added, meant a click.
constexpr int kClickTremor = 3;

/// The rectangle between the two ends of a drag, in whichever direction it went. It lies inside the bounds: ends
/// beyond them are drawn in. The pointer cannot pass the last column or row of a screen, so there it means the
/// edge behind it, and the whole screen can be selected.
/// @return an empty rectangle, at 0,0, for a click and for a drag that encloses nothing (a straight line)
QRect draggedRectangle(const QPoint& from, const QPoint& to, const QRect& bounds);

/// The grabbed screen as it is kept: one pixel to a logical pixel of the screen, whatever device pixel ratio it was
/// grabbed at, and itself of device pixel ratio 1. What is dragged and what is copied are then the same numbers.
/// @return a null pixmap for a null one
QPixmap scaledToScreen(const QPixmap& grab, const QSize& screen);

/// Where the tool bar goes: its right edge in line with the selection's, its top 10 pixels below the selection. Where
/// that leaves the bounds it goes above the selection, failing that into its lower end, and to the right just as far
/// as it must to stand whole inside the left edge.
QPoint toolBarPosition(const QRect& selection, const QSize& toolBar, const QRect& bounds);
