#include "documents/modUTF8.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

#include "documents/Scan.h"
#include "platform/RuntimeError.h"

namespace marl {

namespace {

/// An entity, including its ampersand, and the unit it stands for.
struct Entity {
  TextView text;
  char16_t unit;
};
constexpr Entity kEntities[] = {
    {u"&quot;", u'"'}, {u"&gt;", u'>'}, {u"&lt;", u'<'}, {u"&amp;", u'&'}};

TextView EntityOf(char16_t unit) {
  for (const Entity& entity : kEntities) {
    if (entity.unit == unit) return entity.text;
  }
  return {};
}

/// The runtime's error for a status of the file system.
RuntimeError FileError(Status status) {
  switch (status) {
    case kFileNotFound: return {53, u"File not found"};
    case kPathNotFound: return {76, u"Path not found"};
    case kAccessDenied:
    case kSharingViolation: return {70, u"Permission denied"};
    default: return {57, u"Device I/O error"};
  }
}

constexpr char16_t Unit(unsigned value) { return static_cast<char16_t>(value); }

/// True if the next four bytes exist and are ASCII: worth the fast path.
bool StartsRun(const unsigned char* in, const unsigned char* end) {
  std::uint32_t four = 0;
  if (end - in < 4) return false;
  std::memcpy(&four, in, sizeof(four));
  return (four & 0x80808080u) == 0;
}
/// Number of bytes that the units take as UTF-8.
std::size_t CountUTF8(TextView text) {
  const char16_t* in = text.data();
  const char16_t* const end = in + text.size();
  std::size_t count = text.size();
#if defined(__SSE2__)
  const __m128i one = _mm_set1_epi16(1);
  const __m128i none = _mm_setzero_si128();
  while (end - in >= 8) {
    // Each 16-bit lane counts the bytes that are not needed, at most two per unit.
    const std::ptrdiff_t blocks = std::min<std::ptrdiff_t>((end - in) / 8, 10000);
    __m128i spared = none;
    for (std::ptrdiff_t i = 0; i < blocks; ++i, in += 8) {
      const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
      const __m128i narrow = _mm_subs_epu16(units, _mm_set1_epi16(0x7F));
      const __m128i middle = _mm_subs_epu16(units, _mm_set1_epi16(0x7FF));
      spared = _mm_sub_epi16(
          spared, _mm_add_epi16(_mm_cmpeq_epi16(narrow, none), _mm_cmpeq_epi16(middle, none)));
    }
    const __m128i pairs = _mm_madd_epi16(spared, one);
    std::int32_t sums[4];
    _mm_storeu_si128(reinterpret_cast<__m128i*>(sums), pairs);
    count += static_cast<std::size_t>(2 * 8 * blocks - sums[0] - sums[1] - sums[2] - sums[3]);
  }
#endif
  for (; in != end; ++in) count += static_cast<std::size_t>((*in > 0x7F) + (*in > 0x7FF));
  return count;
}

/// Narrows the leading ASCII units; returns their number.
std::size_t NarrowASCII(const char16_t* in, std::size_t count, unsigned char* out) {
  std::size_t done = 0;
#if defined(__SSE2__)
  const __m128i high = _mm_set1_epi16(static_cast<short>(0xFF80));
  const __m128i zero = _mm_setzero_si128();
  for (; count - done >= 16; done += 16) {
    const auto* const from = reinterpret_cast<const __m128i*>(in + done);
    const __m128i first = _mm_loadu_si128(from);
    const __m128i second = _mm_loadu_si128(from + 1);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + done), _mm_packus_epi16(first, second));
    const __m128i plain = _mm_packs_epi16(_mm_cmpeq_epi16(_mm_and_si128(first, high), zero),
                                          _mm_cmpeq_epi16(_mm_and_si128(second, high), zero));
    const int others = ~_mm_movemask_epi8(plain) & 0xFFFF;
    if (others != 0) return done + LowestBit(static_cast<unsigned>(others));
  }
#endif
  while (done != count && in[done] < 0x80) {
    out[done] = static_cast<unsigned char>(in[done]);
    ++done;
  }
  return done;
}

/// Writes one unit as one, two or three bytes; returns the next position.
inline unsigned char* PutUnit(unsigned unit, unsigned char* out) {
  if (unit <= 0x7F) {
    out[0] = static_cast<unsigned char>(unit);
    return out + 1;
  }
  if (unit <= 0x7FF) {
    out[0] = static_cast<unsigned char>(0xC0 + (unit >> 6));
    out[1] = static_cast<unsigned char>(0x80 + (unit & 0x3F));
    return out + 2;
  }
  out[0] = static_cast<unsigned char>(0xE0 + (unit >> 12));
  out[1] = static_cast<unsigned char>(0x80 + ((unit >> 6) & 0x3F));
  out[2] = static_cast<unsigned char>(0x80 + (unit & 0x3F));
  return out + 3;
}

/// The same 16 bits four times.
constexpr std::uint64_t Four(std::uint64_t unit) { return unit * 0x0001000100010001u; }

/// Encodes the units at `out`, which must have room for all of them.
void EncodeUTF8(TextView text, unsigned char* out) {
  const char16_t* in = text.data();
  const char16_t* const end = in + text.size();
  // At least one more unit follows, so that writing a byte too many stays in the buffer.
  for (; end - in > 4; in += 4) {
    std::uint64_t units = 0;
    std::memcpy(&units, in, sizeof(units));
    const bool narrow = (units & Four(0xFF80)) == 0;
    const bool twoAtMost = (units & Four(0xF800)) == 0;
    const bool middle = twoAtMost && ((units + Four(0x7F80)) & Four(0x8000)) == Four(0x8000);
    if (std::endian::native == std::endian::little && narrow) {
      units |= units >> 8;
      units = (units & 0xFFFF) | (units >> 16 & 0xFFFF0000);
      std::memcpy(out, &units, 4);
      out += 4;
    } else if (std::endian::native == std::endian::little && middle) {
      // All four take two bytes.
      units = (units >> 6 & Four(0x1F)) | (units & Four(0x3F)) << 8 | Four(0x80C0);
      std::memcpy(out, &units, 8);
      out += 8;
    } else if (twoAtMost) {
      for (int i = 0; i < 4; ++i) {
        const unsigned unit = in[i];
        const bool two = unit > 0x7F;
        out[0] = static_cast<unsigned char>(two ? 0xC0 + (unit >> 6) : unit);
        out[1] = static_cast<unsigned char>(0x80 + (unit & 0x3F));
        out += two ? 2 : 1;
      }
    } else {
      for (int i = 0; i < 4; ++i) out = PutUnit(in[i], out);
    }
  }
  while (in != end) out = PutUnit(*in++, out);
}

}  // namespace

Text XMLEscape(TextView text) {
  // One pass has the same result as four replacements one after the other, ampersand first: no
  // entity contains a character that a later step replaces.
  Text escaped;
  escaped.reserve(text.size());
  for (const char16_t unit : text) {
    const TextView entity = EntityOf(unit);
    if (entity.empty()) {
      escaped += unit;
    } else {
      escaped += entity;
    }
  }
  return escaped;
}

Text XMLUnescape(TextView text) {
  Text plain(text);
  plain.resize(XMLUnescape(plain.data(), plain.size()));
  return plain;
}

std::size_t XMLUnescape(char16_t* text, std::size_t size) {
  // One pass here too: entities cannot overlap, and the ampersand, which could form new ones, would
  // be replaced last.
  const TextView source(text, size);
  std::size_t done = 0;
  std::size_t left = 0;
  while (done != size) {
    const std::size_t ampersand = FindUnit(source, done, u'&');
    if (left != done) std::copy(text + done, text + ampersand, text + left);
    left += ampersand - done;
    done = ampersand;
    if (done == size) break;
    const auto* const entity = std::find_if(
        std::begin(kEntities), std::end(kEntities),
        [&](const Entity& candidate) { return source.substr(done).starts_with(candidate.text); });
    const bool known = entity != std::end(kEntities);
    text[left++] = known ? entity->unit : u'&';
    done += known ? entity->text.size() : 1;
  }
  return left;
}

DecodedUTF8 DecodeUTF8(const unsigned char* bytes, std::size_t size, char16_t* out,
                       std::size_t room) {
  const unsigned char* in = bytes;
  const unsigned char* const end = bytes + size;
  char16_t* to = out;
  char16_t* const full = out + room;
  while (in != end && to != full) {
    if (StartsRun(in, end)) {
      const std::size_t count =
          WidenASCII({reinterpret_cast<const char*>(in),
                      static_cast<std::size_t>(std::min(end - in, full - to))},
                     to);
      in += count;
      to += count;
      continue;
    }
    // As many sequences as certainly fit, then the rest one by one.
    std::ptrdiff_t whole = std::min((end - in) / 3, full - to);
    for (; whole > 0; --whole) {
      const unsigned lead = *in;
      if (lead < 0x80) {
        *to++ = Unit(lead);
        ++in;
        if (StartsRun(in, end)) break;
      } else if (lead < 0xE0) {
        *to++ = Unit((lead & 31) << 6 | (in[1] & 63u));
        in += 2;
      } else {
        *to++ = Unit((lead & 15) << 12 | (in[1] & 63u) << 6 | (in[2] & 63u));
        in += 3;
      }
    }
    if (in == end || to == full || end - in >= 3) continue;
    const unsigned lead = *in;
    const unsigned second = end - in > 1 ? in[1] : lead;
    if (lead < 0x80) {
      *to++ = Unit(lead);
      ++in;
    } else if (lead < 0xE0) {
      *to++ = Unit((lead & 31) << 6 | (second & 63));
      in += std::min<std::ptrdiff_t>(2, end - in);
    } else {
      // At most two bytes are left: the last one is used as the third.
      *to++ = Unit((lead & 15) << 12 | (second & 63) << 6 | (second & 63));
      in = end;
    }
  }
  return {static_cast<std::size_t>(in - bytes), static_cast<std::size_t>(to - out)};
}

Text DecodeUTF8(const Bytes& bytes) {
  Text text(bytes.size(), u'\0');
  text.resize(DecodeUTF8(bytes.data(), bytes.size(), text.data(), text.size()).units);
  return text;
}

void modUTF8::OpenUTF8File(TextView path, bool echo) {
  if (files_.FileExists(path)) {
    const Status removed = files_.Remove(path, true);
    if (removed != kOk) throw FileError(removed);
  }
  Status status = kOk;
  file_ = files_.Create(path, status);
  if (!file_) throw FileError(status);
  indent_ = 0;
  echo_ = echo;
  if (echo_) echoText_.clear();
}

void modUTF8::WriteUTF8Line(std::uint8_t flags, TextView text) {
  if (flags & kIndentBefore) ++indent_;
  if (indent_ < 0) throw RuntimeError::InvalidCall();
  Text line(static_cast<std::size_t>(indent_), u' ');
  line += text;
  line += u"\r\n";
  const std::int32_t count = ToUTF8Bytes(line);
  if (!file_) throw RuntimeError(52, u"Bad file name or number");
  const Status written = file_->Write(outputBytes_.data(), static_cast<std::size_t>(count));
  if (written != kOk) throw FileError(written);
  if (flags & kUnindentAfter) --indent_;
  if (echo_) echoText_ += text;
}

void modUTF8::CloseUTF8File() {
  file_.reset();
  indent_ = 0;
}

std::int32_t modUTF8::ToUTF8Bytes(TextView text) {
  // Pure ASCII is done after narrowing; any other text is measured first.
  outputBytes_.resize(text.size());
  const std::size_t plain = NarrowASCII(text.data(), text.size(), outputBytes_.data());
  if (plain != text.size()) {
    const TextView rest = text.substr(plain);
    const std::size_t count = plain + CountUTF8(rest);
    if (count > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
      outputBytes_.clear();
      throw RuntimeError::Overflow();
    }
    outputBytes_.resize(count);
    EncodeUTF8(rest, outputBytes_.data() + plain);
  } else if (plain > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
    outputBytes_.clear();
    throw RuntimeError::Overflow();
  }
  return static_cast<std::int32_t>(outputBytes_.size());
}

}  // namespace marl
