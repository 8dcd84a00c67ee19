#pragma once

#include "imaging/histogram.h"

/// Global thresholds: each finds, from the counts of a grey picture, the level T below which a pixel is printed
/// black. All wrap like signed 32-bit numbers where a tall page leaves that range. No allocation, any thread.
namespace imaging {

/// Otsu's between-class variance (N. Otsu, 1979). Ties go to the larger level, so a picture of one level gives 254.
/// @return 0 for an empty histogram, else 1..254
std::int32_t otsuThreshold(const Histogram& histogram);

/// Yen's maximum correlation criterion (J.-C. Yen, F.-J. Chang, S. Chang, 1995) in single precision; the first
/// maximum wins.
/// @return 0..255, or −1 when no level has a usable score
std::int32_t yenThreshold(const Histogram& histogram);

/// Iterative minimum cross-entropy (C. H. Li, P. K. S. Tam, 1998). The first round starts at the truncated mean, each
/// further one at the level that the round before it found. A round that finds no new level is the last one, and the
/// level that it started at is the result: the search has settled, or runs in a circle (single precision can make two
/// levels alternate for ever), or has left 0..255. There are 256 levels, so there are at most 256 rounds.
/// @return 0..255, 0 for an empty histogram
std::int32_t minimumCrossEntropyThreshold(const Histogram& histogram);

/// Mean grey level, truncated; 0 for an empty histogram. Negative when the sum has wrapped.
std::int32_t meanThreshold(const Histogram& histogram);

} // namespace imaging
