#include "content/page/large_picture.h"

#include <cstdlib>
#include <limits>

#include <sys/mman.h>

namespace {
constexpr std::size_t kLargePage = std::size_t{2} << 20U;
} // namespace

QImage largePicture(const QSize& size, QImage::Format format)
{
#ifdef MADV_HUGEPAGE
    const int rowBytes = 4 * size.width();
    const std::size_t bytes = static_cast<std::size_t>(rowBytes) * static_cast<std::size_t>(qMax(0, size.height()));
    const std::size_t pages = (bytes + kLargePage - 1) / kLargePage;
    if (pages > 1 && bytes <= std::numeric_limits<int>::max()) { // QImage has no more
        auto* memory = static_cast<uchar*>(std::aligned_alloc(kLargePage, pages * kLargePage));
        if (!memory)
            return {};
        madvise(memory, pages * kLargePage, MADV_HUGEPAGE);
        return {memory, size.width(), size.height(), rowBytes, format, std::free, memory};
    }
#endif
    return {size, format};
}
