#include "content/capture/capture_selection.h"

#include <algorithm>

namespace {

constexpr int kToolBarGap = 10;

int drawnIn(int position, int first, int length)
{
    const int last = first + length - 1;
    return position >= last ? last + 1 : std::max(position, first);
}

QPoint drawnIn(const QPoint& point, const QRect& bounds)
{
    return {drawnIn(point.x(), bounds.x(), bounds.width()), drawnIn(point.y(), bounds.y(), bounds.height())};
}

} // namespace

QRect draggedRectangle(const QPoint& from, const QPoint& to, const QRect& bounds)
{
    if ((to - from).manhattanLength() <= kClickTremor)
        return {};
    const QPoint a = drawnIn(from, bounds);
    const QPoint b = drawnIn(to, bounds);
    const QRect rectangle(std::min(a.x(), b.x()), std::min(a.y(), b.y()), std::abs(a.x() - b.x()),
                          std::abs(a.y() - b.y()));
    return rectangle.isEmpty() ? QRect() : rectangle;
}

QPixmap scaledToScreen(const QPixmap& grab, const QSize& screen)
{
    if (grab.isNull())
        return {};
    // Both sides are given: with a ratio such as 1.25 the height that follows from the width may be one pixel off.
    QPixmap kept = grab.scaled(screen, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    kept.setDevicePixelRatio(1);
    return kept;
}

QPoint toolBarPosition(const QRect& selection, const QSize& toolBar, const QRect& bounds)
{
    const int right = selection.x() + selection.width();
    const int bottom = selection.y() + selection.height();
    const int x = std::max(right - toolBar.width(), bounds.x());

    int y = bottom + kToolBarGap;
    if (y + toolBar.height() > bounds.y() + bounds.height()) {
        const int above = selection.y() - kToolBarGap - toolBar.height();
        const int within = bottom - kToolBarGap - toolBar.height();
        y = above >= bounds.y() ? above : within;
    }
    return {x, y};
}
