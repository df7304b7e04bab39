#pragma once

#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace marl {

/// First unit in [begin, end) that equals `unit`; `end` if there is none.
inline const char16_t* FindUnit(const char16_t* begin, const char16_t* end, char16_t unit) {
#if defined(__SSE2__)
  const __m128i wanted = _mm_set1_epi16(static_cast<short>(unit));
  const auto matches = [&wanted](const char16_t* at) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    return _mm_cmpeq_epi16(block, wanted);
  };
  for (; end - begin >= 16; begin += 16) {
    const __m128i both = _mm_packs_epi16(matches(begin), matches(begin + 8));
    const int hits = _mm_movemask_epi8(both);
    if (hits != 0) return begin + __builtin_ctz(static_cast<unsigned>(hits));
  }
  if (end - begin >= 8) {
    const int hits = _mm_movemask_epi8(matches(begin));
    if (hits != 0) return begin + __builtin_ctz(static_cast<unsigned>(hits)) / 2;
    begin += 8;
  }
#endif
  while (begin != end && *begin != unit) ++begin;
  return begin;
}

/// How many bytes at the front are below 128.
inline std::size_t CountASCII(const unsigned char* bytes, std::size_t size) {
  std::size_t count = 0;
#if defined(__SSE2__)
  for (; size - count >= 16; count += 16) {
    const int others =
        _mm_movemask_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + count)));
    if (others != 0)
      return count + static_cast<unsigned>(__builtin_ctz(static_cast<unsigned>(others)));
  }
#endif
  while (count != size && bytes[count] < 0x80) ++count;
  return count;
}

/// Where the units of a tag that matter stand among 16 units: bit 0 for the first.
struct TagMarks {
  unsigned equals = 0;
  unsigned quotes = 0;  ///< double ones
  unsigned ampersands = 0;
  unsigned others = 0;  ///< above 127, where they are looked for
};

inline TagMarks MarkTag(const char16_t* units) {
  TagMarks marks;
#if defined(__SSE2__)
  const auto* const blocks = reinterpret_cast<const __m128i*>(units);
  // Units above 255 become 255 or 0, which is none of those that are looked for.
  const __m128i bytes = _mm_packus_epi16(_mm_loadu_si128(blocks), _mm_loadu_si128(blocks + 1));
  const auto bits = [&bytes](char wanted) {
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(wanted))));
  };
  marks.equals = bits('=');
  marks.quotes = bits('"');
  marks.ampersands = bits('&');
#else
  for (unsigned i = 0; i < 16; ++i) {
    marks.equals |= static_cast<unsigned>(units[i] == u'=') << i;
    marks.quotes |= static_cast<unsigned>(units[i] == u'"') << i;
    marks.ampersands |= static_cast<unsigned>(units[i] == u'&') << i;
  }
#endif
  return marks;
}

/// The same for 16 bytes, which are widened to 16 units at `units` and should be ASCII.
inline TagMarks WidenTag(const char* bytes, char16_t* units) {
#if defined(__SSE2__)
  const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  const __m128i zero = _mm_setzero_si128();
  _mm_storeu_si128(reinterpret_cast<__m128i*>(units), _mm_unpacklo_epi8(block, zero));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(units + 8), _mm_unpackhi_epi8(block, zero));
  const auto bits = [&block](char wanted) {
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(block, _mm_set1_epi8(wanted))));
  };
  return {bits('='), bits('"'), bits('&'), static_cast<unsigned>(_mm_movemask_epi8(block))};
#else
  for (unsigned i = 0; i < 16; ++i) units[i] = static_cast<unsigned char>(bytes[i]);
  TagMarks marks = MarkTag(units);
  for (unsigned i = 0; i < 16; ++i) marks.others |= static_cast<unsigned>(units[i] > 0x7F) << i;
  return marks;
#endif
}

/// Number of the lowest bit that is set; `bits` is not 0.
inline unsigned LowestBit(std::uint64_t bits) {
  return static_cast<unsigned>(__builtin_ctzll(bits));
}

}  // namespace marl
