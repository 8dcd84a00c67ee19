#include "imaging/adaptive_binarize.h"
#include "imaging/binarize.h"
#include "imaging/conversion.h"
#include "imaging/floyd_steinberg.h"
#include "imaging/halftone.h"
#include "imaging/isolated_dots.h"
#include "imaging/sharpen.h"
#include "imaging/stucki.h"
#include "imaging/tone_curve.h"
#include "imaging/white_areas.h"

// One of the library's calls. Built twice, under two names: with the loops of this machine and with the plain ones.
extern "C" __attribute__((visibility("default"))) int QUILLBOX_CALL(unsigned number, ImageBuffer* image, int a, int b)
{
    static constexpr std::int32_t (*kCalls[])(ImageBuffer*) = {
        imageToGray,      isMostlyDark,       imaging::floydSteinbergDiffuse,
        markWhiteAreas,   removeIsolatedDots, stuckiDiffuse,
        adaptiveBinarize, sharpenImage};
    return number < 8    ? kCalls[number](image)
           : number == 8 ? binarizeImage(image, a % 14)
           : number == 9 ? halftoneImage(image, a, b, a % 4, b % 5)
                         : adjustBrightnessContrast(image, a, b);
}
