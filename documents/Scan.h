#pragma once

#include <cstddef>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace marl {

/// First unit in [begin, end) that equals `unit`; `end` if there is none.
inline const char16_t* FindUnit(const char16_t* begin, const char16_t* end, char16_t unit) {
#if defined(__SSE2__)
  const __m128i wanted = _mm_set1_epi16(static_cast<short>(unit));
  for (; end - begin >= 8; begin += 8) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(begin));
    const int hits = _mm_movemask_epi8(_mm_cmpeq_epi16(block, wanted));
    if (hits != 0) return begin + __builtin_ctz(static_cast<unsigned>(hits)) / 2;
  }
#endif
  while (begin != end && *begin != unit) ++begin;
  return begin;
}

}  // namespace marl
