#include "documents/UTF8Blocks.h"

#include "documents/Scan.h"

#if defined(MARL_SCAN_SSE2) && !defined(MARL_BASELINE_SCAN)
#include <cpuid.h>
#include <tmmintrin.h>
#endif

namespace marl {

#if defined(MARL_SCAN_SSE2) && !defined(MARL_BASELINE_SCAN)

namespace {

/// True if the processor has the instructions of these functions.
bool HasShuffle() {
  constexpr unsigned kWanted = bit_SSSE3 | bit_POPCNT;
  unsigned a = 0;
  unsigned b = 0;
  unsigned c = 0;
  unsigned d = 0;
  return __get_cpuid(1, &a, &b, &c, &d) != 0 && (c & kWanted) == kWanted;
}

/// Where each byte of a shuffled block comes from, for each set of marks in eight positions.
/// 0x80 gives a zero.
using Shuffle = unsigned char[kBlock];
struct Shuffles {
  Shuffle decode[256];  ///< marked: continuations
  Shuffle encode[256];  ///< marked: units of one byte
  bool usable = HasShuffle();

  Shuffles() noexcept {
    for (unsigned marks = 0; marks != 256; ++marks) {
      unsigned char* to = decode[marks];
      unsigned char* bytes = encode[marks];
      for (unsigned i = 0; i != 8; ++i) {
        const bool marked = (marks >> i & 1) != 0;
        // The block begins with the byte before the first position. A lead has no unit of its own;
        // whether the last position is one is not known, so it may get a unit too many.
        if ((marks >> i & 2) == 0) {
          *to++ = static_cast<unsigned char>(i + 1);
          *to++ = marked ? static_cast<unsigned char>(i) : 0x80;
        }
        *bytes++ = static_cast<unsigned char>(2 * i);
        if (!marked) *bytes++ = static_cast<unsigned char>(2 * i + 1);
      }
    }
  }
};

/// Made at the first use, so that they take no room in the program's file.
const Shuffles& TheShuffles() {
  static const Shuffles shuffles;
  return shuffles;
}

#define MARL_SHUFFLE __attribute__((target("ssse3,popcnt")))

MARL_SHUFFLE inline __m128i Shuffled(__m128i block, const Shuffle& shuffle) {
  return _mm_shuffle_epi8(block, _mm_loadu_si128(reinterpret_cast<const __m128i*>(shuffle)));
}
MARL_SHUFFLE inline std::size_t CountBits(unsigned bits) {
  return static_cast<std::size_t>(__builtin_popcount(bits));
}

/// Writes eight units from lanes of their last byte and their lead.
inline void StoreUnits(__m128i lanes, char16_t* to) {
  const __m128i last = _mm_and_si128(lanes, _mm_set1_epi16(0x7F));
  const __m128i lead = _mm_srli_epi16(_mm_and_si128(lanes, _mm_set1_epi16(0x1F00)), 2);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_or_si128(last, lead));
}

MARL_SHUFFLE DecodedUTF8 Decode(const Shuffles& shuffles, const unsigned char* bytes,
                                std::size_t size, char16_t* out, std::size_t room) {
  const unsigned char* in = bytes;
  const unsigned char* const end = bytes + size;
  char16_t* to = out;
  const char16_t* const full = out + room;
  __m128i before = _mm_setzero_si128();
  unsigned open = 0;  // 1 if the byte before the block is a lead
  for (; end - in >= 16 && full - to >= 16; in += kBlock) {
    const Block block = LoadBlock(reinterpret_cast<const char*>(in));
    const unsigned high = PlacesIn(block);
    const unsigned continuations = PlacesOfContinuations(block);
    const unsigned leads = high & ~continuations;
    if (((leads << 1 | open) & 0xFFFF) != continuations || PlacesOfLeadsOfThree(block) != 0) break;
    const unsigned ends = ~leads & 0xFFFF;
    // Each character belongs to the half in which it ends.
    const __m128i first = _mm_alignr_epi8(block, before, 15);
    StoreUnits(Shuffled(first, shuffles.decode[continuations & 0xFF]), to);
    to += CountBits(ends & 0xFF);
    StoreUnits(Shuffled(_mm_srli_si128(block, 7), shuffles.decode[continuations >> 8]), to);
    to += CountBits(ends >> 8);
    before = block;
    open = leads >> 15;
  }
  in -= open;
  return {static_cast<std::size_t>(in - bytes), static_cast<std::size_t>(to - out)};
}

// Bits of units that take more than one byte, and more than two.
constexpr int kAboveOne = 0xFF80;
constexpr int kAboveTwo = 0xF800;

/// Marks the units that have none of these bits.
inline __m128i Without(__m128i units, int bits) {
  const __m128i left = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(bits)));
  return _mm_cmpeq_epi16(left, _mm_setzero_si128());
}
/// The two bytes of each unit, or, where `one` marks it, the unit itself.
inline __m128i Forms(__m128i units, __m128i one) {
  const __m128i lead = _mm_srli_epi16(units, 6);
  const __m128i second = _mm_slli_epi16(_mm_and_si128(units, _mm_set1_epi16(0x3F)), 8);
  const __m128i pairs =
      _mm_or_si128(_mm_or_si128(lead, second), _mm_set1_epi16(static_cast<short>(0x80C0)));
  return _mm_or_si128(_mm_and_si128(one, units), _mm_andnot_si128(one, pairs));
}
inline void StoreBlock(__m128i block, unsigned char* to) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), block);
}

MARL_SHUFFLE EncodedUTF8 Encode(const Shuffles& shuffles, TextView text, unsigned char* out,
                                std::size_t room) {
  const char16_t* in = text.data();
  const char16_t* const end = in + text.size();
  unsigned char* to = out;
  const unsigned char* const full = out + room;
  for (; end - in >= 16 && static_cast<std::size_t>(full - to) >= kEncodedBlock; in += kBlock) {
    const auto* const halves = reinterpret_cast<const __m128i*>(in);
    const __m128i first = _mm_loadu_si128(halves);
    const __m128i second = _mm_loadu_si128(halves + 1);
    const __m128i firstOnes = Without(first, kAboveOne);
    const __m128i secondOnes = Without(second, kAboveOne);
    const unsigned ones =
        static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(firstOnes, secondOnes)));
    if (ones == 0xFFFF) {
      StoreBlock(_mm_packus_epi16(first, second), to);
      to += kBlock;
      continue;
    }
    if (_mm_movemask_epi8(Without(_mm_or_si128(first, second), kAboveTwo)) != 0xFFFF) break;
    StoreBlock(Shuffled(Forms(first, firstOnes), shuffles.encode[ones & 0xFF]), to);
    to += 16 - CountBits(ones & 0xFF);
    StoreBlock(Shuffled(Forms(second, secondOnes), shuffles.encode[ones >> 8]), to);
    to += 16 - CountBits(ones >> 8);
  }
  return {static_cast<std::size_t>(in - text.data()), static_cast<std::size_t>(to - out)};
}

}  // namespace

DecodedUTF8 DecodeBlocks(const unsigned char* bytes, std::size_t size, char16_t* out,
                         std::size_t room) {
  const Shuffles& shuffles = TheShuffles();
  return shuffles.usable ? Decode(shuffles, bytes, size, out, room) : DecodedUTF8();
}

EncodedUTF8 EncodeBlocks(TextView text, unsigned char* out, std::size_t room) {
  const Shuffles& shuffles = TheShuffles();
  return shuffles.usable ? Encode(shuffles, text, out, room) : EncodedUTF8();
}

#else

DecodedUTF8 DecodeBlocks(const unsigned char*, std::size_t, char16_t*, std::size_t) { return {}; }
EncodedUTF8 EncodeBlocks(TextView, unsigned char*, std::size_t) { return {}; }

#endif

}  // namespace marl
