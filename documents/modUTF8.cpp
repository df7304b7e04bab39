#include "documents/modUTF8.h"

#include <algorithm>
#include <limits>

#include "documents/Scan.h"
#include "platform/RuntimeError.h"

namespace marl {

namespace {

/// One entity, from the ampersand on, and the unit it stands for.
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
    case kFileNotFound:
      return {53, u"File not found"};
    case kPathNotFound:
      return {76, u"Path not found"};
    case kAccessDenied:
    case kSharingViolation:
      return {70, u"Permission denied"};
    default:
      return {57, u"Device I/O error"};
  }
}

constexpr char16_t Unit(unsigned value) { return static_cast<char16_t>(value); }

/// Widens the ASCII bytes at the front, as long as bytes and room last; returns how many.
std::size_t WidenASCII(const unsigned char* in, std::size_t count, char16_t* out) {
  std::size_t done = 0;
#if defined(__SSE2__)
  const __m128i zero = _mm_setzero_si128();
  for (; count - done >= 16; done += 16) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + done));
    if (_mm_movemask_epi8(block) != 0) break;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + done), _mm_unpacklo_epi8(block, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + done + 8), _mm_unpackhi_epi8(block, zero));
  }
#endif
  while (done != count && in[done] < 0x80) {
    out[done] = in[done];
    ++done;
  }
  return done;
}

}  // namespace

Text XMLEscape(TextView text) {
  // One pass gives what four whole replacements in turn give, the ampersand first: no entity
  // holds a character that a later step replaces.
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
  // One pass again: entities cannot overlap, and the ampersand, which could make new ones, is
  // the last to be replaced.
  Text plain;
  plain.reserve(text.size());
  while (!text.empty()) {
    const char16_t* const end = text.data() + text.size();
    const char16_t* const found = FindUnit(text.data(), end, u'&');
    plain.append(text.data(), found);
    text.remove_prefix(static_cast<std::size_t>(found - text.data()));
    if (text.empty()) break;
    const auto* const entity =
        std::find_if(std::begin(kEntities), std::end(kEntities),
                     [&](const Entity& candidate) { return text.starts_with(candidate.text); });
    if (entity == std::end(kEntities)) {
      plain += u'&';
      text.remove_prefix(1);
    } else {
      plain += entity->unit;
      text.remove_prefix(entity->text.size());
    }
  }
  return plain;
}

DecodedUTF8 DecodeUTF8(const unsigned char* bytes, std::size_t size, char16_t* out,
                       std::size_t room) {
  const unsigned char* in = bytes;
  const unsigned char* const end = bytes + size;
  char16_t* to = out;
  char16_t* const full = out + room;
  while (in != end && to != full) {
    const unsigned lead = *in;
    if (lead < 0x80) {
      const std::size_t count =
          WidenASCII(in, static_cast<std::size_t>(std::min(end - in, full - to)), to);
      in += count;
      to += count;
    } else if (lead < 0xE0) {
      const unsigned second = end - in > 1 ? in[1] : lead;
      *to++ = Unit((lead & 31) << 6 | (second & 63));
      in += std::min<std::ptrdiff_t>(2, end - in);
    } else {
      const unsigned second = end - in > 1 ? in[1] : lead;
      const unsigned third = end - in > 2 ? in[2] : second;
      *to++ = Unit((lead & 15) << 12 | (second & 63) << 6 | (third & 63));
      in += std::min<std::ptrdiff_t>(3, end - in);
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
  outputBytes_.clear();
  std::size_t count = text.size();
  for (const char16_t unit : text) count += (unit > 0x7F) + (unit > 0x7FF);
  if (count > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
    throw RuntimeError::Overflow();
  }
  outputBytes_.resize(count);
  unsigned char* out = outputBytes_.data();
  const auto put = [&out](unsigned byte) { *out++ = static_cast<unsigned char>(byte); };
  for (const char16_t unit : text) {
    if (unit <= 0x7F) {
      put(unit);
    } else if (unit <= 0x7FF) {
      put(0xC0u + (unit >> 6));
      put(0x80u + (unit & 0x3Fu));
    } else {
      put(0xE0u + (unit >> 12));
      put(0x80u + ((unit >> 6) & 0x3Fu));
      put(0x80u + (unit & 0x3Fu));
    }
  }
  return static_cast<std::int32_t>(count);
}

}  // namespace marl
