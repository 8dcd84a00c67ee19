#include "imaging/stucki.h"

#include "imaging/picture_checks.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <new>

// The bits are those of the plain method, which keeps one accumulating cell a pixel for the whole picture; only a few
// rows of cells live at a time here. Of the twelve shares only two, to the right in the same row, make a pixel wait
// for the one before it. So a stretch of a row is worked in three passes: loadValues() gathers what the two rows
// above send, settle() runs along the chain of waiting pixels and does nothing else, finish() writes the dots and the
// shares for the rows below. The first and the last are loops without dependencies that compilers vectorise. The
// chain takes one addition and one look-up a pixel, one after the other, and would leave most of the processor idle;
// so two rows are settled at once, the lower one far enough behind for all that the upper one sends it.
//
// Every error e lies in -127..127. A pixel's value is v = grey + the shares of earlier errors; the shares it can
// receive weigh (8+4 + 2+4+8+4+2 + 1+2+4+2+1)/42 = 1 together and are truncated toward zero, so while all earlier
// errors keep the bound, v lies in -127..382. Below 128, e = v is in -127..127; from 128 on, e = v - 255 is in
// -127..127. The first pixel has no earlier errors, and so on along the scan. It follows that tables over v are
// short, that shares fit 8 bits, and that the sum of what comes from the two rows above, at most (20 + 10)/42 of 127,
// fits 8 bits as well.

namespace {

constexpr int kMaxError = 127;
constexpr int kLowestValue = -kMaxError;
constexpr int kHighestValue = 255 + kMaxError;
constexpr int kWhiteFrom = 128;
constexpr std::size_t kPad = 2; ///< the kernel's reach: cells beside the row that hold no error

constexpr int errorOf(int value)
{
    return value >= kWhiteFrom ? value - 255 : value;
}

/// What a settled pixel hands to the next two of its row, by value; read along the chain, hence full words.
struct ChainShares
{
    std::array<std::int32_t, kHighestValue - kLowestValue + 1> eight{};
    std::array<std::int32_t, kHighestValue - kLowestValue + 1> four{};
};

constexpr ChainShares makeChainShares()
{
    ChainShares shares;
    for (int value = kLowestValue; value <= kHighestValue; ++value) {
        const auto index = static_cast<std::size_t>(value - kLowestValue);
        shares.eight[index] = 8 * errorOf(value) / 42;
        shares.four[index] = 4 * errorOf(value) / 42;
    }
    return shares;
}

constexpr ChainShares kChainShares = makeChainShares();

// Eight forty-seconds of an error's magnitude with a product that fits 16 bits: 390 / 2^11 is a little too small, and
// the 64 lifts it over the exact quotients but not to the next. Halving it, truncated, gives the smaller shares.
constexpr std::uint16_t eightFortySeconds(std::uint16_t magnitude)
{
    return static_cast<std::uint16_t>(static_cast<std::uint16_t>(magnitude * 390u + 64u) >> 11);
}

constexpr bool sharesAreExact()
{
    for (std::uint16_t e = 0; e <= kMaxError; ++e) {
        const int eight = eightFortySeconds(e);
        if (eight != 8 * e / 42 || eight / 2 != 4 * e / 42 || eight / 4 != e / 21 || eight / 8 != e / 42)
            return false;
    }
    return true;
}
static_assert(sharesAreExact());

using Share = std::int8_t;

/// Forty-seconds of the errors of one row, with kPad cells of 0 on either side of the row.
struct ShareRow
{
    Share* one = nullptr;
    Share* two = nullptr;
    Share* four = nullptr;
    Share* eight = nullptr;
};

constexpr std::size_t kRowsAtOnce = 2;
constexpr std::size_t kStretch = 64;                ///< columns that are worked in one go
constexpr std::size_t kLag = kStretch + kPad;       ///< columns that the lower row stays behind
constexpr std::size_t kShareRows = kRowsAtOnce + 2; ///< those in work and the two above them

// Neither allocation of Rows wraps where std::size_t has 32 bits.
static_assert(4 * kShareRows * sizeof(Share) == imaging::kWorkBytesPerColumn);
static_assert(std::uint64_t{imaging::kWorkBytesPerColumn} * (imaging::kMaxWidth + 2 * kPad) <=
              std::numeric_limits<std::int32_t>::max());

/// The working rows of one call.
class Rows
{
public:
    bool allocate(std::size_t width)
    {
        const std::size_t padded = width + 2 * kPad;
        m_values.reset(new (std::nothrow) std::int16_t[kRowsAtOnce * width]());
        m_shares.reset(new (std::nothrow) Share[kShareRows * 4 * padded]());
        if (!m_values || !m_shares)
            return false;
        for (std::size_t i = 0; i < kRowsAtOnce; ++i)
            values[i] = m_values.get() + i * width;
        for (std::size_t i = 0; i < kShareRows; ++i) {
            Share* first = m_shares.get() + i * 4 * padded;
            m_ring[i] = {first, first + padded, first + 2 * padded, first + 3 * padded};
        }
        return true;
    }

    /// Shares of row y, valid for y in -2..height - 1; those above the picture are 0.
    const ShareRow& sharesOf(std::ptrdiff_t y) const { return m_ring[static_cast<std::size_t>(y + 2) % kShareRows]; }

    std::array<std::int16_t*, kRowsAtOnce> values{}; ///< grey plus errors of the rows in work

private:
    std::unique_ptr<std::int16_t[]> m_values;
    std::unique_ptr<Share[]> m_shares;
    std::array<ShareRow, kShareRows> m_ring;
};

/// Columns begin..end - 1.
struct Stretch
{
    std::size_t begin = 0;
    std::size_t end = 0;

    std::size_t size() const { return end - begin; }
};

// The kernel is symmetric, and the shares' cell x + kPad lies above pixel x.
void loadValues(const std::uint8_t* gray, const ShareRow& above, const ShareRow& twoAbove, Stretch stretch,
                std::int16_t* __restrict values)
{
    for (std::size_t x = stretch.begin; x < stretch.end; ++x) {
        const int fromTwoAbove =
            twoAbove.one[x] + twoAbove.two[x + 1] + twoAbove.four[x + 2] + twoAbove.two[x + 3] + twoAbove.one[x + 4];
        const int fromAbove =
            above.two[x] + above.four[x + 1] + above.eight[x + 2] + above.four[x + 3] + above.two[x + 4];
        values[x] = static_cast<std::int16_t>(gray[x] + static_cast<Share>(fromTwoAbove + fromAbove));
    }
}

/// What the last two pixels of a row send along it. As wide as an address, so that the look-up needs no conversion.
struct Chain
{
    std::ptrdiff_t eightOfLast = 0;
    std::ptrdiff_t fourOfLast = 0;
    std::ptrdiff_t fourOfSecondLast = 0;
};

inline void settlePixel(std::int16_t& cell, Chain& chain)
{
    const std::int32_t* eightParts = kChainShares.eight.data() - kLowestValue;
    const std::int32_t* fourParts = kChainShares.four.data() - kLowestValue;
    const std::ptrdiff_t value = (cell + chain.fourOfSecondLast) + chain.eightOfLast;
    cell = static_cast<std::int16_t>(value);
    chain.fourOfSecondLast = chain.fourOfLast;
    chain.fourOfLast = fourParts[value];
    chain.eightOfLast = eightParts[value];
}

void settle(std::int16_t* values, std::size_t count, Chain& chain)
{
    Chain local = chain;
    for (std::size_t x = 0; x < count; ++x)
        settlePixel(values[x], local);
    chain = local;
}

void settleTwo(std::int16_t* upper, Chain& upperChain, std::int16_t* lower, Chain& lowerChain, std::size_t count)
{
    Chain localUpper = upperChain;
    Chain localLower = lowerChain;
    for (std::size_t x = 0; x < count; ++x) {
        settlePixel(upper[x], localUpper);
        settlePixel(lower[x], localLower);
    }
    upperChain = localUpper;
    lowerChain = localLower;
}

Share withSign(std::uint16_t magnitude, std::int16_t sign)
{
    return static_cast<Share>((magnitude ^ sign) - sign);
}

// Writes the dots and the error shares of settled pixels. `sign` is 0 or -1, and so is `white`.
void finish(const std::int16_t* values, Stretch stretch, std::uint8_t* __restrict dots, const ShareRow& shares)
{
    Share* __restrict one = shares.one + kPad;
    Share* __restrict two = shares.two + kPad;
    Share* __restrict four = shares.four + kPad;
    Share* __restrict eight = shares.eight + kPad;
    for (std::size_t x = stretch.begin; x < stretch.end; ++x) {
        const auto white = static_cast<std::int16_t>(-(values[x] >= kWhiteFrom));
        const auto error = static_cast<std::int16_t>(values[x] - (white & 255));
        const auto sign = static_cast<std::int16_t>(-(error < 0));
        const auto parts = eightFortySeconds(static_cast<std::uint16_t>((error ^ sign) - sign));
        dots[x] = static_cast<std::uint8_t>(white);
        one[x] = withSign(static_cast<std::uint16_t>(parts >> 3), sign);
        two[x] = withSign(static_cast<std::uint16_t>(parts >> 2), sign);
        four[x] = withSign(static_cast<std::uint16_t>(parts >> 1), sign);
        eight[x] = withSign(parts, sign);
    }
}

/// Works one row, or two of them together, from left to right.
class RowGroup
{
public:
    RowGroup(const ImageBuffer& image, std::int32_t y, Rows& rows)
        : m_image(image)
        , m_y(y)
        , m_rows(rows)
        , m_count(std::min(kRowsAtOnce, static_cast<std::size_t>(image.height - y)))
    {
    }

    void diffuse()
    {
        const auto width = static_cast<std::size_t>(m_image.width);
        for (std::size_t front = 0; front < width + (m_count - 1) * kLag; front += kStretch) {
            for (std::size_t i = 0; i < m_count; ++i)
                load(i, front, width);
            settleStretches();
            for (std::size_t i = 0; i < m_count; ++i)
                finish(m_rows.values[i], m_stretches[i], pixels(i), m_rows.sharesOf(row(i)));
        }
    }

private:
    std::int32_t row(std::size_t i) const { return m_y + static_cast<std::int32_t>(i); }
    std::uint8_t* pixels(std::size_t i) const { return imaging::rowOf(m_image, row(i)); }

    void load(std::size_t i, std::size_t front, std::size_t width)
    {
        const std::size_t lag = i * kLag;
        const auto inRow = [=](std::size_t column) { return std::min(column > lag ? column - lag : 0, width); };
        m_stretches[i] = {inRow(front), inRow(front + kStretch)};
        loadValues(pixels(i), m_rows.sharesOf(row(i) - 1), m_rows.sharesOf(row(i) - 2), m_stretches[i],
                   m_rows.values[i]);
    }

    // At the ends of the rows the stretches differ in length, and the longer one goes on alone.
    void settleStretches()
    {
        const std::size_t both = std::min(m_stretches[0].size(), m_stretches[1].size());
        std::int16_t* upper = m_rows.values[0] + m_stretches[0].begin;
        std::int16_t* lower = m_rows.values[1] + m_stretches[1].begin;
        settleTwo(upper, m_chains[0], lower, m_chains[1], both);
        settle(upper + both, m_stretches[0].size() - both, m_chains[0]);
        settle(lower + both, m_stretches[1].size() - both, m_chains[1]);
    }

    const ImageBuffer& m_image;
    const std::int32_t m_y;
    Rows& m_rows;
    const std::size_t m_count;
    std::array<Stretch, kRowsAtOnce> m_stretches;
    std::array<Chain, kRowsAtOnce> m_chains;
};

bool diffuse(const ImageBuffer& image)
{
    Rows rows;
    if (!rows.allocate(static_cast<std::size_t>(image.width)))
        return false;
    // The last group's end is compared in 64 bits: a picture may be as high as the numbers go.
    for (std::int64_t y = 0; y < image.height; y += kRowsAtOnce)
        RowGroup(image, static_cast<std::int32_t>(y), rows).diffuse();
    return true;
}

} // namespace

std::int32_t stuckiDiffuse(ImageBuffer* image)
{
    if (const auto answer = imaging::answerUnlessGray(image))
        return *answer;
    if (imaging::pixelCount(*image) > 0 && !diffuse(*image))
        return imaging::kRefused;
    image->format = FormatBinary;
    return imaging::kDone;
}
