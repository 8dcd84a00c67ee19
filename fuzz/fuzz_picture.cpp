#include "content/page/picture_file.h"

#include <QByteArray>

#include <cstdlib>

// Any bytes are a picture that keeps to the limit, or none.

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size)
{
    constexpr qint64 kMostBytes = 1 << 20;
    const QByteArray content(reinterpret_cast<const char*>(bytes), static_cast<int>(size));
    if (pictureFromData(content, kMostBytes).sizeInBytes() > kMostBytes)
        std::abort();
    return 0;
}
