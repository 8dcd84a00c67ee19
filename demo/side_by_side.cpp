#include "demo/side_by_side.h"

#include <algorithm>

namespace {
constexpr int kGap = 20; ///< between the windows and to the left of them, where there is room
constexpr int kTopGap = 40;
} // namespace

SideBySide placeSideBySide(const QRect& room, const QSize& client, const QSize& preferred, const QSize& smallest,
                           const QMargins& frame)
{
    const QSize around(frame.left() + frame.right(), frame.top() + frame.bottom());
    const QSize spare = room.size() - client - preferred - 2 * around;
    const int gap = std::clamp(spare.width() / 3, 0, kGap);
    const int topGap = std::clamp(room.height() - preferred.height() - around.height(), 0, kTopGap);

    SideBySide places;
    places.client = room.topLeft() + QPoint(gap, topGap);
    const int left = places.client.x() + client.width() + around.width() + gap;
    const int right = room.right() + 1 - gap - around.width();
    places.paperSize =
        QSize(right - left, room.height() - topGap - around.height()).boundedTo(preferred).expandedTo(smallest);
    // On a screen that is too narrow for both it stands at the right edge, and the client in front of it.
    places.paper = {std::max(room.left(), std::min(left, right - places.paperSize.width())), places.client.y()};
    return places;
}
