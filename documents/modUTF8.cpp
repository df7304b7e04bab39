#include "documents/modUTF8.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "documents/Scan.h"
#include "documents/UTF8Blocks.h"
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
  std::size_t count = text.size();
  for (const char16_t unit : text) {
    count += static_cast<std::size_t>((unit > 0x7F) + (unit > 0x7FF));
  }
  return count;
}

/// Narrows the leading ASCII units; returns their number.
std::size_t NarrowASCII(const char16_t* in, std::size_t count, unsigned char* out) {
  std::size_t done = 0;
#if defined(MARL_SCAN_SSE2)
  const __m128i high = _mm_set1_epi16(static_cast<short>(0xFF80));
  for (; count - done >= 32; done += 32) {
    const auto* const from = reinterpret_cast<const __m128i*>(in + done);
    auto* const to = reinterpret_cast<__m128i*>(out + done);
    const __m128i first = _mm_loadu_si128(from);
    const __m128i second = _mm_loadu_si128(from + 1);
    const __m128i third = _mm_loadu_si128(from + 2);
    const __m128i fourth = _mm_loadu_si128(from + 3);
    const __m128i all = _mm_or_si128(_mm_or_si128(first, second), _mm_or_si128(third, fourth));
    const __m128i plain = _mm_cmpeq_epi16(_mm_and_si128(all, high), _mm_setzero_si128());
    if (_mm_movemask_epi8(plain) != 0xFFFF) break;
    _mm_storeu_si128(to, _mm_packus_epi16(first, second));
    _mm_storeu_si128(to + 1, _mm_packus_epi16(third, fourth));
  }
#endif
  while (done != count && in[done] < 0x80) {
    out[done] = static_cast<unsigned char>(in[done]);
    ++done;
  }
  return done;
}

// Units that are encoded in one step: one fewer than a number has bits, so that every run of set
// bits ends within it.
constexpr std::size_t kStep = kStretch - 1;
// Units that EncodeStep reads, and bytes that it may write.
constexpr std::size_t kStepUnits = kStretch + kBlock;
constexpr std::size_t kStepBytes = 3 * (kStretch + kBlock);

/// Encodes `count` units, at most kStep; more must follow, of any value. Returns the next position.
unsigned char* EncodeStep(const char16_t* in, std::size_t count, unsigned char* out) {
  Stretch one = 0;
  Stretch upToTwo = 0;
  for (std::size_t i = 0; i != kStretch; i += kBlock) {
    const PlacesByLength places = PlacesOfLengths(in + i);
    one |= static_cast<Stretch>(places.one) << i;
    upToTwo |= static_cast<Stretch>(places.oneOrTwo) << i;
  }
  const Stretch all = (Stretch{1} << count) - 1;
  Stretch two = upToTwo & ~one & all;
  Stretch three = ~upToTwo & all;
  one &= all;
  // Runs of one length each. A block that is longer than its run leaves bytes behind it that the
  // next run replaces.
  const char16_t* const end = in + count;
  const auto take = [&](std::size_t run) {
    in += run;
    one >>= run;
    two >>= run;
    three >>= run;
  };
  for (;;) {
    std::size_t run = LowestBit(~one);
    for (std::size_t i = 0; i < run; i += kBlock) NarrowBlock(in + i, out + i);
    out += run;
    take(run);
    if (in == end) return out;
    if (run = LowestBit(~two); run != 0) {
      for (std::size_t i = 0; i < run; i += kBlock / 2) EncodePairs(in + i, out + 2 * i);
      out += 2 * run;
      take(run);
      if (in == end) return out;
    }
    if (run = LowestBit(~three); run != 0) {
      for (std::size_t i = 0; i < run; i += kBlock / 2) EncodeTriples(in + i, out + 3 * i);
      out += 3 * run;
      take(run);
      if (in == end) return out;
    }
  }
}

/// Appends the units as UTF-8.
void EncodeUTF8(TextView text, Bytes& bytes) {
  unsigned char buffer[16 * kStepBytes];
  unsigned char* out = buffer;
  const auto free = [&] { return static_cast<std::size_t>(buffer + sizeof(buffer) - out); };
  const auto flush = [&] {
    if (free() >= kStepBytes) return;
    bytes.insert(bytes.end(), buffer, out);
    out = buffer;
  };
  for (; text.size() >= kStepUnits; flush()) {
    const EncodedUTF8 blocks = EncodeBlocks(text, out, free());
    out += blocks.bytes;
    text.remove_prefix(blocks.units);
    if (blocks.units != 0) continue;
    out = EncodeStep(text.data(), kStep, out);
    text.remove_prefix(kStep);
  }
  char16_t last[kStepUnits + kStepUnits] = {};
  std::copy(text.begin(), text.end(), last);
  for (std::size_t at = 0; at < text.size(); at += kStep) {
    out = EncodeStep(last + at, std::min(text.size() - at, kStep), out);
    flush();
  }
  bytes.insert(bytes.end(), buffer, out);
}

}  // namespace

[[gnu::cold]] Text XMLEscape(TextView text) {
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

[[gnu::cold]] Text XMLUnescape(TextView text) {
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

namespace {

/// Decodes the leading forms of one and two bytes, if they are well formed, of kStretch bytes; at
/// least a block more must follow them, and there must be room for as many units.
DecodedUTF8 DecodeStretch(const unsigned char* bytes, char16_t* out) {
  const char* const in = reinterpret_cast<const char*>(bytes);
  Stretch high = 0;
  for (std::size_t i = 0; i != kStretch; i += kBlock) {
    high |= static_cast<Stretch>(PlacesIn(LoadBlock(in + i))) << i;
  }
  if (high == 0) {
    for (std::size_t i = 0; i != kStretch; i += kBlock) WidenBlock(LoadBlock(in + i), out + i);
    return {kStretch, kStretch};
  }
  Stretch continuations = 0;
  Stretch threes = 0;
  for (std::size_t i = 0; i != kStretch; i += kBlock) {
    const Block block = LoadBlock(in + i);
    continuations |= static_cast<Stretch>(PlacesOfContinuations(block)) << i;
    threes |= static_cast<Stretch>(PlacesOfLeadsOfThree(block)) << i;
  }
  const Stretch twos = high & ~continuations & ~threes;
  const Stretch others = threes | (continuations ^ (twos << 1));
  std::size_t size = others != 0 ? LowestBit(others) : kStretch;
  // A lead goes together with what follows it.
  if (size != 0 && (twos >> (size - 1) & 1)) --size;
  if (size != kStretch) high &= (Stretch{1} << size) - 1;

  char16_t* to = out;
  for (std::size_t at = 0; at != size;) {
    const Stretch left = high >> at;
    std::size_t run = left != 0 ? LowestBit(left) : size - at;
    for (std::size_t i = 0; i < run; i += kBlock) WidenBlock(LoadBlock(in + at + i), to + i);
    to += run;
    if ((at += run) == size) break;
    run = RunLength(high >> at);
    for (std::size_t i = 0; i < run; i += kBlock) DecodePairs(LoadBlock(in + at + i), to + i / 2);
    to += run / 2;
    at += run;
  }
  return {size, static_cast<std::size_t>(to - out)};
}

}  // namespace

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
    // Forms of one and two bytes, as long as they are well formed and there is room to spare.
    constexpr auto kSpare = static_cast<std::ptrdiff_t>(kStretch + kBlock);
    while (end - in >= kSpare && full - to >= kSpare && *in < 0xE0) {
      DecodedUTF8 done = DecodeBlocks(in, static_cast<std::size_t>(end - in), to,
                                      static_cast<std::size_t>(full - to));
      if (done.bytes == 0) done = DecodeStretch(in, to);
      if (done.bytes == 0) break;
      in += done.bytes;
      to += done.units;
    }
    // As many sequences as certainly fit, then the rest one by one.
    std::ptrdiff_t whole = std::min((end - in) / 3, full - to);
    for (int others = 0; whole > 0; --whole) {
      const unsigned lead = *in;
      if (lead >= 0xE0) {
        *to++ = Unit((lead & 15) << 12 | (in[1] & 63u) << 6 | (in[2] & 63u));
        in += 3;
        continue;
      }
      if (lead < 0x80) {
        *to++ = Unit(lead);
        ++in;
      } else {
        *to++ = Unit((lead & 31) << 6 | (in[1] & 63u));
        in += 2;
      }
      if (++others == 4) break;
    }
    if (whole > 0 || in == end || to == full || end - in >= 3) continue;
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

[[gnu::cold]] void modUTF8::OpenUTF8File(TextView path, bool echo) {
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

[[gnu::cold]] void modUTF8::WriteUTF8Line(std::uint8_t flags, TextView text) {
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
  constexpr auto kMost = static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max());
  if (text.size() > kMost / 3 && CountUTF8(text) > kMost) {
    outputBytes_.clear();
    throw RuntimeError::Overflow();
  }
  // Most texts are pure ASCII.
  outputBytes_.resize(text.size());
  const std::size_t plain = NarrowASCII(text.data(), text.size(), outputBytes_.data());
  outputBytes_.resize(plain);
  if (plain != text.size()) EncodeUTF8(text.substr(plain), outputBytes_);
  return static_cast<std::int32_t>(outputBytes_.size());
}

}  // namespace marl
