#include "imaging/image_buffer.h"

#include <QtGlobal>
#include <fuzzer/FuzzedDataProvider.h>

#include <tuple>

extern "C" int fastCall(unsigned number, ImageBuffer* image, int a, int b);
extern "C" int plainCall(unsigned number, ImageBuffer* image, int a, int b);

// Every call does to any picture what the plain loops do.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    static constexpr int kBytesPerPixel[] = {3, 2, 1, 1, 4, 4, 1}; // by format; 6 is an unknown one
    static unsigned sharpened = 0;
    FuzzedDataProvider input(data, size);
    const auto number = input.ConsumeIntegralInRange(0u, 10u);
    const auto a = input.ConsumeIntegral<int>(), b = input.ConsumeIntegral<int>();
    if ((number == 7 || (number == 8 && a % 14 > 5)) && sharpened++ % 64 != 0)
        return 0; // sharpening loses a copy on purpose, and the memory has to last
    const int format = input.ConsumeIntegralInRange(0, 6);
    const int channels = input.ConsumeIntegralInRange(0, kBytesPerPixel[format]);
    const int width = input.ConsumeIntegralInRange(-1, 600) & (input.ConsumeBool() ? ~15 : ~0); // as heads have it
    const int height = input.ConsumeIntegralInRange(-1, 40);
    const auto seen = input.ConsumeRemainingBytes<std::uint8_t>();
    const auto run = [&](decltype(fastCall)* call) {
        std::vector<std::uint8_t> bytes( // to the byte, so that a look beyond them is seen
            std::max(1, width * height * kBytesPerPixel[format]));
        for (std::size_t i = 0; i < bytes.size() && !seen.empty(); ++i)
            bytes[i] = static_cast<std::uint8_t>(seen[i % seen.size()] + i / seen.size());
        ImageBuffer image{bytes.data(), width, height, channels, format};
        return std::tuple{call(number, &image, a, b), image.width, image.height, image.channels, image.format, bytes};
    };
    Q_ASSERT(run(fastCall) == run(plainCall));
    return 0;
}
