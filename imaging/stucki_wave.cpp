#include "imaging/stucki_wave.h"

#include "imaging/simd.h"

#include <array>
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
constexpr std::size_t kBlock = 16;       ///< columns that are worked in one go, and by which a row is behind
constexpr std::int32_t kNarrowest = 240; ///< dots; the first lane may not come round before the last one has begun
constexpr std::int32_t kWidest = 4096;   ///< dots; beyond it the slots, 64 bytes a column, leave the near caches

constexpr std::uint8_t kNoShare = 128;

using Register = __m128i;

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

/// What one step leaves for the row below. `before` ends with the last lane's value of a step long ago, when that lane
/// was in the row above the first one's. So who reads from there on finds each lane's value one lane further, which is
/// in the row below.
struct Cells
{
    std::array<std::uint8_t, kLanes> before;
    std::array<std::uint8_t, kLanes> lanes;

    Register ofRowAbove() const { return imaging::loadBlock(before.data() + kLanes - 1); }
};

struct alignas(64) Slot
{
    Cells below;    ///< for the row below
    Cells twoBelow; ///< from this row for the one after it
};

Slot emptySlot()
{
    // A sum of ten shares without error is 0, of five 128.
    Slot slot{};
    slot.twoBelow.before.fill(kNoShare);
    slot.twoBelow.lanes.fill(kNoShare);
    return slot;
}

/// Forty-seconds of the errors of one step, each with 128 added.
struct Shares
{
    Register one;
    Register two;
    Register four;
    Register eight;
};

// 12484 / 2^16 is a little more than 4/21, by too little to reach another whole number for any error. Rounded down, a
// negative share is one too low, which the sign makes up for.
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
        , m_blocksOnWay(static_cast<std::size_t>(image.width) / kBlock + 1)
        , m_ring(m_blocksOnWay - kLanes + 2)
        , m_slots(new (std::nothrow) Slot[m_ring * kBlock])
    {
        m_pixels.fill(m_unused.data());
        for (std::size_t i = 0; m_slots && i < m_ring * kBlock; ++i)
            m_slots[i] = emptySlot();
    }

    explicit operator bool() const { return m_slots != nullptr; }

    void run()
    {
        const auto last = static_cast<std::size_t>(m_image.height) - 1;
        const std::size_t blocks = last / kLanes * m_blocksOnWay + last % kLanes + m_blocksOnWay - 1;
        for (std::size_t block = 0; block < blocks; ++block)
            workBlock(block);
    }

private:
    void workBlock(std::size_t block)
    {
        findPixels(block);
        Square square;
        for (std::size_t lane = 0; lane < kLanes; ++lane)
            square.rows[lane] = imaging::loadBlock(m_pixels[lane]);
        m_levels = transposed(square);
        settle(slotsOf(block), slotsOf(block + m_ring - 1), slotsOf(block + m_ring - 2));
        square = transposed(m_levels);
        for (std::size_t lane = 0; lane < kLanes; ++lane)
            imaging::storeBlock(m_pixels[lane], square.rows[lane]);
    }

    Slot* slotsOf(std::size_t block) const { return &m_slots[block % m_ring * kBlock]; }

    // At most one lane comes to the end of its row in a block, and at most one begins a row.
    void findPixels(std::size_t block)
    {
        for (std::size_t lane = 0; lane < kLanes; ++lane)
            m_pixels[lane] += m_advance[lane];
        const std::size_t ending = (block + 1) % m_blocksOnWay;
        if (ending < kLanes)
            point(ending, m_unused.data(), 0);
        const std::size_t beginning = block % m_blocksOnWay;
        const std::size_t row = block / m_blocksOnWay * kLanes + beginning;
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

    /// @param now, then, next  slots of this block, of the last one, and of the one that the first lane comes to when it
    ///                         is where the last lane is now, a row further down
    void settle(Slot* now, const Slot* then, Slot* next)
    {
        const Register inPicture = imaging::loadBlock(m_inPicture.data());
        Sums sums = m_sums;
        // A lane that has left its row sends nothing along it, finds black pixels, and receives nothing.
        const Register nothing = _mm_andnot_si128(inPicture, all(kNoShare));
        const auto sent = [=](Register share) { return _mm_or_si128(_mm_and_si128(share, inPicture), nothing); };
        Register eight = sent(m_eight);
        Register four = sent(m_four);
        Register fourBefore = sent(m_fourBefore);
        for (std::size_t i = 0; i < kBlock; ++i) {
            // The column two to the right in the row above was settled fourteen steps ago.
            const Slot& above = i + 2 < kBlock ? then[i + 2] : now[i + 2 - kBlock];
            const Register fromAbove = _mm_and_si128(above.below.ofRowAbove(), inPicture);
            const Register received = _mm_add_epi8(_mm_add_epi8(fromAbove, fourBefore), eight);
            const Register level = m_levels.rows[i];
            const Register value = _mm_adds_epi8(_mm_xor_si128(level, all(128)), received);
            const Register black = _mm_cmpgt_epi8(_mm_setzero_si128(), value);
            const Register errorOfWhite = _mm_add_epi8(_mm_sub_epi8(level, all(-1)), received);
            const Shares shares = sharesOf(_mm_add_epi8(errorOfWhite, black));
            m_levels.rows[i] = _mm_xor_si128(black, all(-1));
            const Register twoBelow = sums.addTwoBelow(shares);
            const Register below = _mm_add_epi8(sums.addBelow(shares), then[i].twoBelow.ofRowAbove());
            imaging::storeBlock(now[i].twoBelow.lanes.data(), twoBelow);
            imaging::storeBlock(now[i].below.lanes.data(), below);
            imaging::storeBlock(next[i].twoBelow.before.data(), twoBelow);
            imaging::storeBlock(next[i].below.before.data(), below);
            fourBefore = four;
            four = shares.four;
            eight = shares.eight;
        }
        m_sums = sums;
        m_eight = eight;
        m_four = four;
        m_fourBefore = fourBefore;
    }

    const ImageBuffer& m_image;
    const std::size_t m_blocksOnWay; ///< of a row, and the one beside the picture
    const std::size_t m_ring;        ///< blocks of slots, as many as pass from `next` to `then`
    std::unique_ptr<Slot[]> m_slots;
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
    return image.width >= kNarrowest && image.width <= kWidest && static_cast<std::size_t>(image.width) % kBlock == 0;
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
