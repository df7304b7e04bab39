#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// Looking through bytes and units a block at a time. Places within a block are the bits of
// a number, the lowest one for the first place.

namespace marl {

/// Bytes or units looked at in one step.
constexpr std::size_t kBlock = 16;

/// Number of the lowest bit that is set; `bits` is not 0.
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

/// Places of one character.
inline unsigned PlacesOf(char wanted, Block block) {
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(block, _mm_set1_epi8(wanted))));
}

/// Places of what may end the head of a tag's name: all up to the blank, "/", "<" and ">".
inline unsigned PlacesOfNameBreaks(Block block) {
  const __m128i blank = _mm_set1_epi8(' ');
  const __m128i low = _mm_cmpeq_epi8(_mm_max_epu8(block, blank), blank);
  const __m128i slash = _mm_cmpeq_epi8(block, _mm_set1_epi8('/'));
  const __m128i angle =  // they differ in one bit
      _mm_cmpeq_epi8(_mm_or_si128(block, _mm_set1_epi8('<' ^ '>')), _mm_set1_epi8('>'));
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(_mm_or_si128(low, slash), angle)));
}

/// Places of one byte or unit, whatever it is.
inline unsigned PlacesOf(char wanted, const char* at) { return PlacesOf(wanted, LoadBlock(at)); }
inline unsigned PlacesOf(char16_t wanted, const char16_t* at) {
  const __m128i all = _mm_set1_epi16(static_cast<short>(wanted));
  const auto* const halves = reinterpret_cast<const __m128i*>(at);
  return static_cast<unsigned>(
      _mm_movemask_epi8(_mm_packs_epi16(_mm_cmpeq_epi16(_mm_loadu_si128(halves), all),
                                        _mm_cmpeq_epi16(_mm_loadu_si128(halves + 1), all))));
}

/// Places of bytes above 127.
inline unsigned PlacesOfOthers(const char* at) {
  return static_cast<unsigned>(_mm_movemask_epi8(LoadBlock(at)));
}

/// Makes units of a block of bytes below 128.
inline void WidenBlock(const char* from, char16_t* to) {
  const Block block = LoadBlock(from);
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
    const unsigned unit = static_cast<std::make_unsigned_t<Unit>>(at[i]);
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

inline unsigned PlacesOf(char wanted, const Block& block) {
  return PlacesWhere(
      [&](unsigned i) { return block.bytes[i] == static_cast<unsigned char>(wanted); });
}
inline unsigned PlacesOfNameBreaks(const Block& block) {
  return PlacesWhere([&](unsigned i) {
    const unsigned unit = block.bytes[i];
    return unit <= ' ' || unit == '/' || unit == '<' || unit == '>';
  });
}
template <typename Unit>
unsigned PlacesOf(Unit wanted, const Unit* at) {
  return PlacesWhere([&](unsigned i) { return at[i] == wanted; });
}
inline unsigned PlacesOfOthers(const char* at) {
  return PlacesWhere([&](unsigned i) { return static_cast<unsigned char>(at[i]) > 127; });
}
inline void WidenBlock(const char* from, char16_t* to) {
  for (std::size_t i = 0; i < kBlock; ++i) to[i] = static_cast<unsigned char>(from[i]);
}

#endif

/// First place from `from` on that `placesAt` tells of the block at an address; the size of the
/// text if there is none.
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
    // The last block reaches back over places that are done with.
    places = placesAt(data + last) >> (from - last);
  } else {
    Unit block[kBlock] = {};
    std::copy(text.begin(), text.end(), block);
    places = (placesAt(block) & ((1u << size) - 1)) >> from;
  }
  return places != 0 ? from + LowestBit(places) : size;
}

/// First place from `from` on of one byte or unit; the size of the text if there is none.
template <typename Unit>
[[gnu::always_inline]] inline std::size_t FindUnit(std::basic_string_view<Unit> text,
                                                   std::size_t from, Unit wanted) {
  return FindPlace(text, from, [wanted](const Unit* at) { return PlacesOf(wanted, at); });
}

/// How many bytes at the front are below 128.
inline std::size_t CountASCII(std::string_view bytes) {
  std::size_t count = 0;
  const auto others = [](const char* at) { return PlacesOfOthers(at); };
  // Four blocks a step, as far as they are all ASCII.
  for (; bytes.size() - count >= 4 * kBlock; count += 4 * kBlock) {
    const char* const at = bytes.data() + count;
    if ((others(at) | others(at + kBlock) | others(at + 2 * kBlock) | others(at + 3 * kBlock)) != 0)
      break;
  }
  return FindPlace(bytes, count, others);
}

/// Widens the bytes below 128 at the front to units at `out`; returns how many.
inline std::size_t WidenASCII(std::string_view bytes, char16_t* out) {
  const char* const data = bytes.data();
  const std::size_t size = bytes.size();
  std::size_t done = 0;
  if (size >= kBlock) {
    while (done != size) {
      // The last block reaches back over bytes that are done.
      const std::size_t place = std::min(done, size - kBlock);
      WidenBlock(data + place, out + place);
      if (const unsigned others = PlacesOfOthers(data + place)) return place + LowestBit(others);
      done = place + kBlock;
    }
  }
  for (; done != size && static_cast<unsigned char>(data[done]) < 0x80; ++done) {
    out[done] = static_cast<unsigned char>(data[done]);
  }
  return done;
}

/// What WidenTag saw.
struct WidenedTag {
  bool plain;     ///< all bytes are below 128
  bool entities;  ///< one may be an ampersand
};

/// Widens all bytes to units at `out`, which are right if they are plain.
inline WidenedTag WidenTag(std::string_view bytes, char16_t* out) {
  if (bytes.size() < kBlock) return {WidenASCII(bytes, out) == bytes.size(), true};
  unsigned others = 0;
  unsigned ampersands = 0;
  const auto widen = [&](std::size_t place) {
    const char* const at = bytes.data() + place;
    WidenBlock(at, out + place);
    others |= PlacesOfOthers(at);
    ampersands |= PlacesOf('&', at);
  };
  const std::size_t last = bytes.size() - kBlock;
  for (std::size_t place = 0; place < last; place += kBlock) widen(place);
  widen(last);
  return {others == 0, ampersands != 0};
}

}  // namespace marl
