#include "demo/wrapping_layout.h"

#include <QWidget>

#include <algorithm>
#include <limits>

namespace {
constexpr int kRowSpacing = 5;
} // namespace

WrappingLayout::WrappingLayout(QWidget* parent, int spacing)
    : QLayout(parent)
    , m_spacing(spacing)
{
    setContentsMargins(0, 0, 0, 0);
}

WrappingLayout::~WrappingLayout() = default;

void WrappingLayout::startRightGroup()
{
    m_rightFrom = count();
}

void WrappingLayout::addItem(QLayoutItem* item)
{
    m_items.emplace_back(item);
}

QLayoutItem* WrappingLayout::itemAt(int index) const
{
    return index >= 0 && index < count() ? m_items[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* WrappingLayout::takeAt(int index)
{
    if (index < 0 || index >= count())
        return nullptr;
    QLayoutItem* item = m_items[static_cast<std::size_t>(index)].release();
    m_items.erase(m_items.begin() + index);
    return item;
}

int WrappingLayout::count() const
{
    return static_cast<int>(m_items.size());
}

QSize WrappingLayout::sizeHint() const
{
    int width = 0;
    int height = 0;
    rowEnd(0, std::numeric_limits<int>::max(), width, height);
    return {width, height};
}

QSize WrappingLayout::minimumSize() const
{
    QSize size;
    for (const auto& item : m_items)
        size = size.expandedTo(item->sizeHint());
    return size;
}

int WrappingLayout::heightForWidth(int width) const
{
    int height = -kRowSpacing;
    for (int begin = 0; begin < count();) {
        int rowWidth = 0;
        int rowHeight = 0;
        begin = rowEnd(begin, width, rowWidth, rowHeight);
        height += kRowSpacing + rowHeight;
    }
    return std::max(0, height);
}

void WrappingLayout::setGeometry(const QRect& rect)
{
    QLayout::setGeometry(rect);
    int top = rect.top();
    for (int begin = 0; begin < count();) {
        int rowWidth = 0;
        int rowHeight = 0;
        const int end = rowEnd(begin, rect.width(), rowWidth, rowHeight);
        placeRow(begin, end, {rect.left(), top, rect.width(), rowHeight}, rowWidth);
        top += rowHeight + kRowSpacing;
        begin = end;
    }
    // A splitter knows nothing of heights that depend on widths.
    parentWidget()->setMinimumHeight(totalHeightForWidth(parentWidget()->width()));
}

/// @return  index behind the last item of the row that begins with `begin`, which has one item at least
int WrappingLayout::rowEnd(int begin, int width, int& rowWidth, int& rowHeight) const
{
    int end = begin;
    for (; end < count(); ++end) {
        const QSize size = itemAt(end)->sizeHint();
        const int needed = rowWidth + (end > begin ? m_spacing : 0) + size.width();
        if (end > begin && needed > width)
            break;
        rowWidth = needed;
        rowHeight = std::max(rowHeight, size.height());
    }
    return end;
}

void WrappingLayout::placeRow(int begin, int end, const QRect& row, int rowWidth) const
{
    int left = row.left();
    for (int index = begin; index < end; ++index) {
        QLayoutItem* item = itemAt(index);
        if (index == m_rightFrom && index > begin)
            left += std::max(0, row.width() - rowWidth);
        const QSize size = item->sizeHint();
        item->setGeometry({left, row.top() + (row.height() - size.height()) / 2, size.width(), size.height()});
        left += size.width() + m_spacing;
    }
}
