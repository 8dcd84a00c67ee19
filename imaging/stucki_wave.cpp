#include "imaging/stucki_wave.h"

#include "imaging/picture_checks.h"
#include "imaging/simd.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

// A pixel waits for the two before it and for the rows above, as far as two columns to its right. So a wave of sixteen
// rows, each sixteen columns behind the one above, can be settled in one step: lane k of a register is a pixel of row
// y + k. A lane that has come to the end of its row goes on with the row sixteen further down, after sixteen columns
// beside the picture in which it holds no error; so no lane ever stands idle, and the wave runs from the first row to
// the last one.
//
// All of it fits in bytes. Every error lies in -127..127 (see stucki.cpp), so no share exceeds 24; the shares that
// reach a pixel weigh one together and sum to -126..126. With the grey level as a signed number, g - 128, "at least
// 128" is the sign of a sum that saturates, and the error is the plain sum, which cannot leave a byte.
//
// Shares travel with 128 added. That makes each the rounded mean of the one twice as large and a constant, one
// instruction; and whoever sums an even number of them, as every pixel does, finds the 128s gone, modulo 256.

#ifdef QUILLBOX_SSE2

namespace {

constexpr std::size_t kLanes = 16;
constexpr std::size_t kBlock = 16;      ///< columns that are worked in one go, and by which a row is behind
constexpr std::int32_t kMinWidth = 256; ///< the first row's lane may not come round before the last one's has begun

constexpr std::uint8_t kNoShare = 128;

using Register = __m128i;

Register load(const void* bytes)
{
    return _mm_loadu_si128(static_cast<const __m128i*>(bytes));
}

void store(void* bytes, Register value)
{
    _mm_storeu_si128(static_cast<__m128i*>(bytes), value);
}

Register all(int byte)
{
    return _mm_set1_epi8(static_cast<char>(byte));
}

// Not std::array, whose parameter would lose the alignment.
struct Square
{
    Register rows[kBlock];
};

template <std::size_t... I>
Square interleave(const Square& in, std::index_sequence<I...>)
{
    return {{(I % 2 == 0 ? _mm_unpacklo_epi8(in.rows[I / 2], in.rows[I / 2 + 8])
                         : _mm_unpackhi_epi8(in.rows[I / 2], in.rows[I / 2 + 8]))...}};
}

// Four shuffles of the rows' bytes, as of a pack of cards, turn rows into columns.
Square transposed(const Square& square)
{
    constexpr auto kRows = std::make_index_sequence<kBlock>();
    return interleave(interleave(interleave(interleave(square, kRows), kRows), kRows), kRows);
}

/// What one step leaves for a later one. The byte before the lanes stands for the lane before the first one: what
/// reads from there finds every lane's value one lane further, which is the row below.
struct Slot
{
    alignas(16) std::array<std::uint8_t, 16> before;
    std::array<std::uint8_t, kLanes> lanes;

    const std::uint8_t* ofRowAbove() const { return before.data() + 15; }
};

/// The steps of the last block and of this one.
using Slots = std::array<Slot, 2 * kBlock>;

void clear(Slots& slots, std::uint8_t value)
{
    std::memset(static_cast<void*>(slots.data()), value, sizeof slots);
}

/// Forty-seconds of the errors of one step, each with 128 added.
struct Shares
{
    Register one = all(kNoShare);
    Register two = all(kNoShare);
    Register four = all(kNoShare);
    Register eight = all(kNoShare);
};

// 12484 / 2^16 is a little more than 4/21, by too little to reach another whole number for any error. Rounded down, a
// negative share is one too low, which `signs` makes up for.
inline Shares sharesOf(Register error)
{
    const Register factor = _mm_set1_epi16(12484);
    const Register odd = _mm_set1_epi16(static_cast<short>(0xFF00));
    const Register negative = _mm_cmpgt_epi8(_mm_setzero_si128(), error);
    const Register ofOdd = _mm_and_si128(_mm_mulhi_epi16(_mm_and_si128(error, odd), factor), odd);
    const Register ofEven = _mm_srli_epi16(_mm_mulhi_epi16(_mm_slli_epi16(error, 8), factor), 8);
    const Register half = _mm_sub_epi8(all(127), negative); // 128 for a negative one: both round toward zero
    Shares shares;
    shares.eight = _mm_sub_epi8(_mm_or_si128(ofOdd, ofEven), _mm_xor_si128(negative, all(kNoShare)));
    shares.four = _mm_avg_epu8(shares.eight, half);
    shares.two = _mm_avg_epu8(shares.four, half);
    shares.one = _mm_avg_epu8(shares.two, half);
    return shares;
}

/// What the next columns of a row will receive, summed as far as its errors are known.
struct Sums
{
    // The sum of an even number of shares without error is 0, of an odd one 128.
    Register below[4] = {all(0), all(kNoShare), all(0), all(kNoShare)};
    Register twoBelow[4] = {all(0), all(kNoShare), all(0), all(kNoShare)};

    /// @return what the column two to the left sends to the row two further down, complete
    Register addTwoBelow(const Shares& shares) { return add(twoBelow, shares.one, shares.two, shares.four); }
    /// The same for the next row.
    Register addBelow(const Shares& shares) { return add(below, shares.two, shares.four, shares.eight); }

private:
    static Register add(Register (&sums)[4], Register outer, Register inner, Register middle)
    {
        const Register complete = _mm_add_epi8(sums[0], outer);
        sums[0] = _mm_add_epi8(sums[1], inner);
        sums[1] = _mm_add_epi8(sums[2], middle);
        sums[2] = _mm_add_epi8(sums[3], inner);
        sums[3] = outer;
        return complete;
    }
};

/// One picture's wave. A lane's block b is the block b - lane of its way, which leads through blocks of its row and one
/// beside the picture, then on to its next row.
class Wave
{
public:
    explicit Wave(const ImageBuffer& image)
        : m_image(image)
        , m_blocksInRow(static_cast<std::size_t>(image.width) / kBlock)
        , m_carried(new (std::nothrow) std::uint8_t[2 * columns()])
    {
        if (!m_carried)
            return;
        std::memset(carriedBelow(), 0, columns());
        std::memset(carriedTwoBelow(), kNoShare, columns());
        m_pixels.fill(m_unused.data());
        clear(m_below, 0);
        clear(m_twoBelow, kNoShare);
    }

    explicit operator bool() const { return m_carried != nullptr; }

    void run()
    {
        const auto last = static_cast<std::size_t>(m_image.height) - 1;
        const std::size_t blocks = last / kLanes * blocksOnWay() + last % kLanes + m_blocksInRow;
        for (std::size_t block = 0; block < blocks; ++block)
            workBlock(block);
    }

private:
    std::size_t blocksOnWay() const { return m_blocksInRow + 1; }
    std::size_t columns() const { return blocksOnWay() * kBlock; }
    std::uint8_t* carriedBelow() { return m_carried.get(); }
    std::uint8_t* carriedTwoBelow() { return m_carried.get() + columns(); }

    void workBlock(std::size_t block)
    {
        findPixels(block);
        const std::size_t now = block % 2 * kBlock;
        receive((block + 1) % blocksOnWay() * kBlock, now);
        Square square;
        for (std::size_t lane = 0; lane < kLanes; ++lane)
            square.rows[lane] = load(m_pixels[lane]);
        m_levels = transposed(square);
        settle(now);
        square = transposed(m_levels);
        for (std::size_t lane = 0; lane < kLanes; ++lane)
            store(m_pixels[lane], square.rows[lane]);
        if (block + 1 >= kLanes)
            send((block + 1 - kLanes) % blocksOnWay() * kBlock, now);
    }

    // At most one lane comes to the end of its row in a block, and at most one begins a row.
    void findPixels(std::size_t block)
    {
        for (std::size_t lane = 0; lane < kLanes; ++lane)
            m_pixels[lane] += m_advance[lane];
        const std::size_t ending = (block + 1) % blocksOnWay();
        if (ending < kLanes)
            point(ending, m_unused.data(), 0);
        const std::size_t beginning = block % blocksOnWay();
        const std::size_t row = block / blocksOnWay() * kLanes + beginning;
        if (beginning < kLanes && row < static_cast<std::size_t>(m_image.height))
            point(beginning, m_image.data + row * static_cast<std::size_t>(m_image.width), kBlock);
    }

    // Lanes beside the picture work on a block of no use.
    void point(std::size_t lane, std::uint8_t* pixels, std::size_t advance)
    {
        m_pixels[lane] = pixels;
        m_advance[lane] = advance;
        m_inPicture[lane] = advance > 0 ? 0xFF : 0;
    }

    void settle(std::size_t now)
    {
        const std::size_t then = kBlock - now;
        const Register inPicture = load(m_inPicture.data());
        Sums sums = m_sums;
        // A lane that has left its row sends nothing along it, finds black pixels, and receives nothing.
        const Register nothing = _mm_andnot_si128(inPicture, all(kNoShare));
        const auto sent = [=](Register share) { return _mm_or_si128(_mm_and_si128(share, inPicture), nothing); };
        Register eight = sent(m_eight);
        Register four = sent(m_four);
        Register fourBefore = sent(m_fourBefore);
        for (std::size_t i = 0; i < kBlock; ++i) {
            // The column two to the right in the row above was settled fourteen steps ago.
            const Slot& above = m_below[(now + i + kBlock + 2) % (2 * kBlock)];
            const Register fromAbove = _mm_and_si128(load(above.ofRowAbove()), inPicture);
            const Register received = _mm_add_epi8(_mm_add_epi8(fromAbove, fourBefore), eight);
            const Register level = m_levels.rows[i];
            const Register value = _mm_adds_epi8(_mm_xor_si128(level, all(128)), received);
            const Register black = _mm_cmpgt_epi8(_mm_setzero_si128(), value);
            const Register errorOfWhite = _mm_add_epi8(_mm_sub_epi8(level, all(-1)), received);
            const Shares shares = sharesOf(_mm_add_epi8(errorOfWhite, black));
            m_levels.rows[i] = _mm_xor_si128(black, all(-1));
            const Register twoAbove = load(m_twoBelow[then + i].ofRowAbove());
            store(m_twoBelow[now + i].lanes.data(), sums.addTwoBelow(shares));
            store(m_below[now + i].lanes.data(), _mm_add_epi8(sums.addBelow(shares), twoAbove));
            fourBefore = four;
            four = shares.four;
            eight = shares.eight;
        }
        m_sums = sums;
        m_eight = eight;
        m_four = four;
        m_fourBefore = fourBefore;
    }

    // The row above the first lane's is the last lane's, some blocks ago.
    void receive(std::size_t column, std::size_t now)
    {
        const std::uint8_t* below = carriedBelow() + column;
        const std::uint8_t* twoBelow = carriedTwoBelow() + column;
        for (std::size_t i = 0; i < kBlock; ++i) {
            m_below[now + i].before[15] = below[i];
            m_twoBelow[now + i].before[15] = twoBelow[i];
        }
    }

    void send(std::size_t column, std::size_t now)
    {
        std::uint8_t* below = carriedBelow() + column;
        std::uint8_t* twoBelow = carriedTwoBelow() + column;
        for (std::size_t i = 0; i < kBlock; ++i) {
            below[i] = m_below[now + i].lanes[kLanes - 1];
            twoBelow[i] = m_twoBelow[now + i].lanes[kLanes - 1];
        }
    }

    const ImageBuffer& m_image;
    const std::size_t m_blocksInRow;
    std::unique_ptr<std::uint8_t[]> m_carried;
    Slots m_below;    ///< what the row below receives
    Slots m_twoBelow; ///< what the row after it receives from this one
    Sums m_sums;
    Register m_eight = all(kNoShare); ///< of the last column
    Register m_four = all(kNoShare);
    Register m_fourBefore = all(kNoShare);
    Square m_levels; ///< grey levels of the block's steps, then their dots
    std::array<std::uint8_t*, kLanes> m_pixels;
    std::array<std::size_t, kLanes> m_advance{};
    alignas(16) std::array<std::uint8_t, kLanes> m_inPicture{};
    alignas(16) std::array<std::uint8_t, kLanes> m_unused{};
};

} // namespace

bool imaging::stuckiWaveFits(const ImageBuffer& image)
{
    return image.width >= kMinWidth && static_cast<std::size_t>(image.width) % kBlock == 0;
}

bool imaging::stuckiWave(const ImageBuffer& image)
{
    Wave wave(image);
    if (!wave)
        return false;
    wave.run();
    return true;
}

#else

bool imaging::stuckiWaveFits(const ImageBuffer&)
{
    return false;
}

bool imaging::stuckiWave(const ImageBuffer&)
{
    return false;
}

#endif
