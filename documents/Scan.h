#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#if defined(__SSE2__)
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

#if defined(__SSE2__)

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

#endif

/// Positions of one byte of any value.
inline unsigned PlacesOf(char wanted, const char* at) {
  return PlacesIn(Matches(wanted, LoadBlock(at)));
}

/// Positions in several blocks: as many as a number has bits.
using Stretch = std::size_t;
constexpr std::size_t kStretch = 8 * sizeof(Stretch);

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
