#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

// MARL_PLAIN_SCAN: without the processor's vector instructions, as on processors of other kinds.
#if defined(__SSE2__) && !defined(MARL_PLAIN_SCAN)
#define MARL_SCAN_SSE2
#include <emmintrin.h>
#endif

// Searches bytes and units block by block. Positions within a block are the bits of a number, the
// lowest bit for the first position.

namespace marl {

/// Bytes or units examined in one step.
constexpr std::size_t kBlock = 16;

/// Index of the lowest set bit; `bits` must not be 0.
inline unsigned LowestBit(std::size_t bits) {
  if constexpr (sizeof(bits) > sizeof(unsigned))
    return static_cast<unsigned>(__builtin_ctzll(bits));
  return static_cast<unsigned>(__builtin_ctz(static_cast<unsigned>(bits)));
}

#if defined(MARL_SCAN_SSE2)

/// A block as bytes. A unit above 255 becomes 0 or 255.
using Block = __m128i;

inline Block LoadBlock(const char* at) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
}
inline Block LoadBlock(const char16_t* at) {
  const auto* const halves = reinterpret_cast<const __m128i*>(at);
  return _mm_packus_epi16(_mm_loadu_si128(halves), _mm_loadu_si128(halves + 1));
}

/// Marks the positions of one character: 0xFF there, 0 elsewhere.
inline Block Matches(char wanted, Block block) {
  return _mm_cmpeq_epi8(block, _mm_set1_epi8(wanted));
}
/// Bitwise or.
inline Block Joined(Block a, Block b) { return _mm_or_si128(a, b); }
/// Positions of bytes above 127.
inline unsigned PlacesIn(Block block) { return static_cast<unsigned>(_mm_movemask_epi8(block)); }

/// Positions of units that may end the first part of a tag's name: everything up to the blank, "/",
/// "<" and ">".
inline unsigned PlacesOfNameBreaks(Block block) {
  const __m128i blank = _mm_set1_epi8(' ');
  const __m128i low = _mm_cmpeq_epi8(_mm_max_epu8(block, blank), blank);
  const __m128i slash = _mm_cmpeq_epi8(block, _mm_set1_epi8('/'));
  const __m128i angle =  // they differ in one bit
      _mm_cmpeq_epi8(_mm_or_si128(block, _mm_set1_epi8('<' ^ '>')), _mm_set1_epi8('>'));
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(_mm_or_si128(low, slash), angle)));
}

/// Positions of one unit of any value.
inline unsigned PlacesOf(char16_t wanted, const char16_t* at) {
  const __m128i all = _mm_set1_epi16(static_cast<short>(wanted));
  const auto* const halves = reinterpret_cast<const __m128i*>(at);
  return static_cast<unsigned>(
      _mm_movemask_epi8(_mm_packs_epi16(_mm_cmpeq_epi16(_mm_loadu_si128(halves), all),
                                        _mm_cmpeq_epi16(_mm_loadu_si128(halves + 1), all))));
}

/// Widens a block of bytes below 128 to units.
inline void WidenBlock(Block block, char16_t* to) {
  auto* const halves = reinterpret_cast<__m128i*>(to);
  _mm_storeu_si128(halves, _mm_unpacklo_epi8(block, _mm_setzero_si128()));
  _mm_storeu_si128(halves + 1, _mm_unpackhi_epi8(block, _mm_setzero_si128()));
}

/// Positions of continuation bytes (128 to 191).
inline unsigned PlacesOfContinuations(Block block) {
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmplt_epi8(block, _mm_set1_epi8(-64))));
}
/// Positions of the lead bytes of three (from 224 on).
inline unsigned PlacesOfLeadsOfThree(Block block) {
  return static_cast<unsigned>(_mm_movemask_epi8(
      _mm_cmpeq_epi8(_mm_max_epu8(block, _mm_set1_epi8(static_cast<char>(0xE0))), block)));
}
/// Decodes a block of eight pairs of lead and continuation to eight units.
inline void DecodePairs(Block block, char16_t* to) {
  const __m128i lead = _mm_and_si128(block, _mm_set1_epi16(0x1F));
  const __m128i second = _mm_and_si128(_mm_srli_epi16(block, 8), _mm_set1_epi16(0x3F));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_or_si128(_mm_slli_epi16(lead, 6), second));
}

/// Positions of units that take one byte, and of those that take one or two.
struct PlacesByLength {
  unsigned one;
  unsigned oneOrTwo;
};
inline PlacesByLength PlacesOfLengths(const char16_t* at) {
  const auto* const halves = reinterpret_cast<const __m128i*>(at);
  const __m128i first = _mm_loadu_si128(halves);
  const __m128i second = _mm_loadu_si128(halves + 1);
  const auto upTo = [&](short last) {
    const __m128i most = _mm_set1_epi16(last);
    const __m128i none = _mm_setzero_si128();
    return static_cast<unsigned>(
        _mm_movemask_epi8(_mm_packs_epi16(_mm_cmpeq_epi16(_mm_subs_epu16(first, most), none),
                                          _mm_cmpeq_epi16(_mm_subs_epu16(second, most), none))));
  };
  return {upTo(0x7F), upTo(0x7FF)};
}
/// Narrows 16 units below 128 to 16 bytes.
inline void NarrowBlock(const char16_t* from, unsigned char* to) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), LoadBlock(from));
}
/// Encodes eight units below 2048 to two bytes each.
inline void EncodePairs(const char16_t* from, unsigned char* to) {
  const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
  const __m128i lead = _mm_srli_epi16(units, 6);
  const __m128i second = _mm_slli_epi16(_mm_and_si128(units, _mm_set1_epi16(0x3F)), 8);
  _mm_storeu_si128(
      reinterpret_cast<__m128i*>(to),
      _mm_or_si128(_mm_or_si128(lead, second), _mm_set1_epi16(static_cast<short>(0x80C0))));
}
/// Encodes eight units to three bytes each. Writes two bytes more.
inline void EncodeTriples(const char16_t* from, unsigned char* to) {
  const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
  // Lead and second byte are the halves of one lane, the third byte is a lane of its own.
  const __m128i second = _mm_and_si128(_mm_slli_epi16(units, 2), _mm_set1_epi16(0x3F00));
  const __m128i front = _mm_or_si128(_mm_or_si128(_mm_srli_epi16(units, 12), second),
                                     _mm_set1_epi16(static_cast<short>(0x80E0)));
  const __m128i third =
      _mm_or_si128(_mm_and_si128(units, _mm_set1_epi16(0x3F)), _mm_set1_epi16(0x80));
  const auto store = [](__m128i fours, unsigned char* at) {
    // Of each 32-bit lane three bytes count: the upper lane of a pair moves down by one.
    const __m128i low = _mm_and_si128(fours, _mm_set1_epi64x(0x00FFFFFF));
    const __m128i high = _mm_slli_epi64(_mm_srli_epi64(fours, 32), 24);
    const __m128i sixes = _mm_or_si128(low, high);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(at), sixes);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(at + 6), _mm_unpackhi_epi64(sixes, sixes));
  };
  store(_mm_unpacklo_epi16(front, third), to);
  store(_mm_unpackhi_epi16(front, third), to + 12);
}

#else

struct Block {
  unsigned char bytes[kBlock];
};

template <typename Unit>
Block LoadBlock(const Unit* at) {
  Block block;
  for (std::size_t i = 0; i < kBlock; ++i) {
    const unsigned unit = static_cast<std::make_unsigned_t<Unit> >(at[i]);
    block.bytes[i] = static_cast<unsigned char>(std::min(unit, 255u));
  }
  return block;
}

template <typename Test>
unsigned PlacesWhere(Test&& test) {
  unsigned places = 0;
  for (unsigned i = 0; i < kBlock; ++i) places |= static_cast<unsigned>(test(i)) << i;
  return places;
}

inline Block Matches(char wanted, const Block& block) {
  Block marks;
  for (std::size_t i = 0; i < kBlock; ++i) {
    marks.bytes[i] = block.bytes[i] == static_cast<unsigned char>(wanted) ? 0xFF : 0;
  }
  return marks;
}
inline Block Joined(const Block& a, const Block& b) {
  Block joined;
  for (std::size_t i = 0; i < kBlock; ++i) {
    joined.bytes[i] = static_cast<unsigned char>(a.bytes[i] | b.bytes[i]);
  }
  return joined;
}
inline unsigned PlacesIn(const Block& block) {
  return PlacesWhere([&](unsigned i) { return block.bytes[i] > 127; });
}
inline unsigned PlacesOfNameBreaks(const Block& block) {
  return PlacesWhere([&](unsigned i) {
    const unsigned unit = block.bytes[i];
    return unit <= ' ' || unit == '/' || unit == '<' || unit == '>';
  });
}
inline unsigned PlacesOf(char16_t wanted, const char16_t* at) {
  return PlacesWhere([&](unsigned i) { return at[i] == wanted; });
}
inline void WidenBlock(const Block& block, char16_t* to) {
  std::copy(block.bytes, block.bytes + kBlock, to);
}

inline unsigned PlacesOfContinuations(const Block& block) {
  return PlacesWhere([&](unsigned i) { return block.bytes[i] >= 0x80 && block.bytes[i] < 0xC0; });
}
inline unsigned PlacesOfLeadsOfThree(const Block& block) {
  return PlacesWhere([&](unsigned i) { return block.bytes[i] >= 0xE0; });
}
inline void DecodePairs(const Block& block, char16_t* to) {
  for (std::size_t i = 0; i < kBlock; i += 2) {
    *to++ = static_cast<char16_t>((block.bytes[i] & 0x1Fu) << 6 | (block.bytes[i + 1] & 0x3Fu));
  }
}

struct PlacesByLength {
  unsigned one;
  unsigned oneOrTwo;
};
inline PlacesByLength PlacesOfLengths(const char16_t* at) {
  return {PlacesWhere([&](unsigned i) { return at[i] <= 0x7F; }),
          PlacesWhere([&](unsigned i) { return at[i] <= 0x7FF; })};
}
inline void NarrowBlock(const char16_t* from, unsigned char* to) {
  for (std::size_t i = 0; i < kBlock; ++i) to[i] = static_cast<unsigned char>(from[i]);
}
inline void EncodePairs(const char16_t* from, unsigned char* to) {
  for (std::size_t i = 0; i < kBlock / 2; ++i, to += 2) {
    to[0] = static_cast<unsigned char>(0xC0 + (from[i] >> 6));
    to[1] = static_cast<unsigned char>(0x80 + (from[i] & 0x3F));
  }
}
inline void EncodeTriples(const char16_t* from, unsigned char* to) {
  for (std::size_t i = 0; i < kBlock / 2; ++i, to += 3) {
    to[0] = static_cast<unsigned char>(0xE0 + (from[i] >> 12));
    to[1] = static_cast<unsigned char>(0x80 + (from[i] >> 6 & 0x3F));
    to[2] = static_cast<unsigned char>(0x80 + (from[i] & 0x3F));
  }
}

#endif

/// Positions of one byte of any value.
inline unsigned PlacesOf(char wanted, const char* at) {
  return PlacesIn(Matches(wanted, LoadBlock(at)));
}

/// Positions in several blocks: as many as a number has bits.
using Stretch = std::size_t;
constexpr std::size_t kStretch = 8 * sizeof(Stretch);

/// Number of set bits from the lowest one on, at most kStretch.
inline std::size_t RunLength(Stretch places) {
  return ~places == 0 ? kStretch : LowestBit(~places);
}

/// Positions in the stretch at `at` of what `marksOf` marks in each of its blocks.
template <typename Unit, typename MarksOf>
[[gnu::always_inline]] inline Stretch StretchOf(const Unit* at, MarksOf marksOf) {
  Stretch places = 0;
  for (std::size_t i = 0; i != kStretch; i += kBlock) {
    places |= static_cast<Stretch>(PlacesIn(marksOf(LoadBlock(at + i)))) << i;
  }
  return places;
}

/// First position, from `from` on, that `placesAt` reports for the block at an address; the size of
/// the text if there is none.
template <typename Unit, typename PlacesAt>
[[gnu::always_inline]] inline std::size_t FindPlace(std::basic_string_view<Unit> text,
                                                    std::size_t from, PlacesAt placesAt) {
  const Unit* const data = text.data();
  const std::size_t size = text.size();
  unsigned places = 0;
  if (size >= kBlock) {
    const std::size_t last = size - kBlock;
    for (; from <= last; from += kBlock) {
      places = placesAt(data + from);
      if (places != 0) return from + LowestBit(places);
    }
    // The last block overlaps positions that are already done.
    places = placesAt(data + last) >> (from - last);
  } else {
    Unit block[kBlock] = {};
    std::copy(text.begin(), text.end(), block);
    places = (placesAt(block) & ((1u << size) - 1)) >> from;
  }
  return places != 0 ? from + LowestBit(places) : size;
}

/// First position of a byte or unit, from `from` on; the size of the text if there is none.
template <typename Unit>
[[gnu::always_inline]] inline std::size_t FindUnit(std::basic_string_view<Unit> text,
                                                   std::size_t from, Unit wanted) {
  return FindPlace(text, from, [wanted](const Unit* at) { return PlacesOf(wanted, at); });
}

/// First position of a byte, found fast if it is near; the number of bytes if there is none.
[[gnu::always_inline]] inline std::size_t FindByte(std::string_view bytes, char wanted) {
  const char* const data = bytes.data();
  const std::size_t size = bytes.size();
  std::size_t from = 0;
  if (size >= kBlock) {
    if (const unsigned places = PlacesOf(wanted, data)) return LowestBit(places);
    for (from = kBlock; size - from >= kStretch; from += kStretch) {
      const Stretch places =
          StretchOf(data + from, [wanted](Block block) { return Matches(wanted, block); });
      if (places != 0) return from + LowestBit(places);
    }
  }
  return FindUnit(bytes, from, wanted);
}

/// Number of leading bytes below 128.
inline std::size_t CountASCII(std::string_view bytes) {
  std::size_t count = 0;
  const auto block = [&](std::size_t i) { return LoadBlock(bytes.data() + count + i * kBlock); };
  // Four blocks per step while they are all ASCII.
  for (; bytes.size() - count >= 4 * kBlock; count += 4 * kBlock) {
    if (PlacesIn(Joined(Joined(block(0), block(1)), Joined(block(2), block(3)))) != 0) break;
  }
  return FindPlace(bytes, count, [](const char* at) { return PlacesIn(LoadBlock(at)); });
}

/// Widens the leading bytes below 128 to units at `out`; returns their number.
inline std::size_t WidenASCII(std::string_view bytes, char16_t* out) {
  const char* const data = bytes.data();
  const std::size_t size = bytes.size();
  std::size_t done = 0;
  if (size >= kBlock) {
    while (done != size) {
      // The last block overlaps bytes that are already done.
      const std::size_t place = std::min(done, size - kBlock);
      const Block block = LoadBlock(data + place);
      WidenBlock(block, out + place);
      if (const unsigned others = PlacesIn(block)) return place + LowestBit(others);
      done = place + kBlock;
    }
  }
  for (; done != size && static_cast<unsigned char>(data[done]) < 0x80; ++done) {
    out[done] = static_cast<unsigned char>(data[done]);
  }
  return done;
}

/// What WidenTag found.
struct WidenedTag {
  bool plain;     ///< all bytes are below 128
  bool entities;  ///< there may be an ampersand
};

/// Widens all bytes to units at `out`; the units are valid only if the result is `plain`.
inline WidenedTag WidenTag(std::string_view bytes, char16_t* out) {
  if (bytes.size() < kBlock) return {WidenASCII(bytes, out) == bytes.size(), true};
  const std::size_t last = bytes.size() - kBlock;
  Block all = LoadBlock(bytes.data() + last);
  Block ampersands = Matches('&', all);
  WidenBlock(all, out + last);
  for (std::size_t place = 0; place < last; place += kBlock) {
    const Block block = LoadBlock(bytes.data() + place);
    all = Joined(all, block);
    ampersands = Joined(ampersands, Matches('&', block));
    WidenBlock(block, out + place);
  }
  return {PlacesIn(all) == 0, PlacesIn(ampersands) != 0};
}

}  // namespace marl
