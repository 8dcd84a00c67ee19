#include "cloud/base64.h"

#include <cstdlib>

// Any bytes decode, and what was encoded comes back.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(bytes), static_cast<int>(size));
    if (base64Decode(input).size() > input.size() || base64Decode(base64Encode(bytes, input.size())) != input)
        std::abort();
    return 0;
}
