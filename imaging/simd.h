#pragma once

// SSE2 is part of every x86-64 and of the 32-bit target; other machines take the plain loops, which also finish what
// does not fill a block of sixteen. QUILLBOX_PLAIN makes this machine do as they do.
#if defined(QUILLBOX_PLAIN)
#elif defined(__SSE2__) || defined(_M_X64) || (defined(_M_IX86_FP) && _M_IX86_FP >= 2)
#define QUILLBOX_SSE2 1
#include <emmintrin.h>

namespace imaging {

/// The sixteen bytes from any address on.
inline __m128i loadBlock(const void* bytes)
{
    return _mm_loadu_si128(static_cast<const __m128i*>(bytes));
}

inline void storeBlock(void* bytes, __m128i block)
{
    _mm_storeu_si128(static_cast<__m128i*>(bytes), block);
}

} // namespace imaging
#endif
