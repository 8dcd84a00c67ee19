#pragma once

#include <QMargins>
#include <QRect>

/// Where the client and the paper stand when the demo starts: beside each other, with the client in full view as far
/// as the screen allows. All in device-independent pixels.
struct SideBySide
{
    QPoint client; ///< upper left corner of its frame
    QPoint paper;  ///< of its frame
    QSize paperSize;
};

/// @param room       of the screen, without panels
/// @param client     size of the client's window, which it keeps
/// @param preferred  size of the paper's window where there is room
/// @param smallest   size that the paper's window keeps at least
/// @param frame      that the window manager puts around each
SideBySide placeSideBySide(const QRect& room, const QSize& client, const QSize& preferred, const QSize& smallest,
                           const QMargins& frame);
