#include "documents/clsXMLEngine.h"

#include <algorithm>
#include <cstring>

#include "documents/Scan.h"
#include "documents/modUTF8.h"
#include "platform/RuntimeError.h"

namespace marl {

namespace {

constexpr char16_t kByteOrderMark = 0xFEFF;

// Units decoded at once, and units kept: small enough for the L1 cache.
constexpr std::size_t kChunk = 4096;
constexpr std::size_t kWindow = 4 * kChunk;

// Length of the longest prefix that decides a token's kind.
constexpr std::size_t kLongestHead = 9;

/// How to cut a token: its kind, judged by its first characters, and what must precede the ">" that
/// ends it.
struct Cut {
  XMLTokenKind kind;
  std::string_view before;
};

/// Tests for a keyword in capitals, ignoring case.
template <typename View>
bool StartsWith(View text, std::string_view keyword) {
  if (text.size() < keyword.size()) return false;
  return std::equal(keyword.begin(), keyword.end(), text.begin(), [](char wanted, auto unit) {
    return unit == static_cast<unsigned char>(wanted) ||
           (wanted >= 'A' && wanted <= 'Z' && unit == wanted + 32);
  });
}

/// How to cut the token at the front of `text`, which begins with "<". For a tag, the kind also
/// depends on its end.
template <typename View>
Cut CutOf(View text) {
  const auto second = text.size() > 1 ? text[1] : 0;
  if (second == '?') return {xtInstruction, "?"};
  if (second != '!') return {second == '/' ? xtCloseTag : xtOpenTag, ""};
  if (StartsWith(text, "<!DOCTYPE")) return {xtDocType, "]"};
  if (StartsWith(text, "<![CDATA[")) return {xtCData, "]]"};
  if (StartsWith(text, "<!--")) return {xtComment, "--"};
  return {xtDeclaration, ""};
}

template <typename View>
bool EndsWith(View text, std::string_view end) {
  return text.size() >= end.size() &&
         std::equal(end.begin(), end.end(), text.end() - static_cast<std::ptrdiff_t>(end.size()));
}

/// The final kind of a tag, which its first characters showed as `kind`.
template <typename View>
XMLTokenKind KindOfTag(XMLTokenKind kind, View token) {
  return kind == xtOpenTag && EndsWith(token, "/>") ? xtEmptyTag : kind;
}

/// Length and kind of the token at the front of `rest`, which begins with "<!" or "<?".
[[gnu::noinline]] std::size_t LengthOfOther(std::string_view rest, XMLTokenKind& kind) {
  const Cut cut = CutOf(rest);
  kind = cut.kind;
  // The search starts at the first byte: "<?>" and "<!-->" are complete tokens.
  for (std::size_t length = 0;;) {
    const std::size_t angle = FindUnit(rest, length, '>');
    if (angle == rest.size()) return angle;
    length = angle + 1;
    if (EndsWith(rest.substr(0, angle), cut.before)) return length;
  }
}

}  // namespace

Text XMLToken::text() const {
  if (!units.empty()) return Text(units);
  Text decoded(bytes.size(), u'\0');
  decoded.resize(DecodeUTF8(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(),
                            decoded.data(), decoded.size())
                     .units);
  return decoded;
}

bool clsXMLEngine::OpenDocument(TextView path) {
  Bytes bytes;
  if (!files_.NormalFileExists(path) || files_.ReadAll(path, bytes) != kOk) return false;
  bytes_ = std::move(bytes);
  next_ = 0;
  Restart(0);
  byUnits_ = false;
  char16_t first = 0;
  const DecodedUTF8 decoded = DecodeUTF8(bytes_.data(), bytes_.size(), &first, 1);
  if (first == kByteOrderMark) next_ = decoded.bytes;
  plain_ = next_;
  return true;
}

bool clsXMLEngine::OpenXMLW(TextView text) {
  const Text copy(text);  // `text` may be a view into this document
  bytes_ = {};
  next_ = 0;
  Restart(copy.size());
  byUnits_ = true;
  if (copy.empty()) throw RuntimeError::InvalidCall();
  copy.copy(window_.get(), copy.size());
  last_ = copy.size();
  if (copy.front() == kByteOrderMark) ++first_;
  return true;
}

/// Cuts the next token as bytes. False if the document has to be cut as units from here on.
[[gnu::always_inline]] inline bool clsXMLEngine::TakeBytes(XMLToken& token) {
  if (byUnits_) return false;
  const std::string_view rest(reinterpret_cast<const char*>(bytes_.data()) + next_,
                              bytes_.size() - next_);
  const auto at = [rest](std::size_t place) { return place < rest.size() ? rest[place] : '\0'; };
  std::size_t length = 0;
  if (at(0) != '<') {
    length = FindByte(rest, '<');
    token.kind = rest.empty() ? xtEndOfDocument : xtText;
  } else if (at(1) == '!' || at(1) == '?') {
    length = LengthOfOther(rest, token.kind);
  } else {
    length = std::min(FindByte(rest, '>') + 1, rest.size());
    token.kind = at(1) == '/'                             ? xtCloseTag
                 : EndsWith(rest.substr(0, length), "/>") ? xtEmptyTag
                                                          : xtOpenTag;
  }
  if (next_ + length > plain_ && !IsPlain(next_ + length)) {
    Restart(std::min(kWindow, rest.size()));
    byUnits_ = true;
    return false;
  }
  token.bytes = {rest.data(), length};
  next_ += length;
  return true;
}

XMLTokenKind clsXMLEngine::GetToken(Text& token) {
  TextView view;
  const XMLTokenKind kind = GetToken(view);
  token = view;
  return kind;
}

XMLTokenKind clsXMLEngine::GetToken(TextView& token) {
  XMLToken found;
  if (!TakeBytes(found)) return TakeUnits(token);
  const std::size_t size = found.bytes.size();
  if (room_ < size) Restart(std::max(size, std::min(kWindow, bytes_.size())));
  const auto* const bytes = reinterpret_cast<const unsigned char*>(found.bytes.data());
  token = TextView(window_.get(), DecodeUTF8(bytes, size, window_.get(), size).units);
  return found.kind;
}

XMLTokenKind clsXMLEngine::GetToken(XMLToken& token) {
  token.units = {};
  if (!TakeBytes(token)) {
    token.bytes = {};
    token.kind = TakeUnits(token.units);
  }
  return token.kind;
}

/// Checks whether the bytes are plain up to `end`, and moves `plain_` forward, usually beyond it.
bool clsXMLEngine::IsPlain(std::size_t end) {
  const unsigned char* const bytes = bytes_.data();
  const std::size_t far = std::min(std::max(end, plain_ + kChunk), bytes_.size());
  while (plain_ < far) {
    plain_ += CountASCII({reinterpret_cast<const char*>(bytes) + plain_, far - plain_});
    // Multi-byte sequences: a lead and one or two more bytes, none of them ASCII.
    for (; plain_ < far && bytes[plain_] >= 0x80;) {
      const std::size_t more = bytes[plain_] < 0xE0 ? 1 : 2;
      char16_t unit = 0;
      if (bytes_.size() - plain_ <= more || bytes[plain_ + 1] < 0x80 ||
          bytes[plain_ + more] < 0x80 ||
          DecodeUTF8(bytes + plain_, more + 1, &unit, 1).units != 1 || unit < 0x80) {
        return plain_ >= end;
      }
      plain_ += more + 1;
    }
  }
  return true;
}

/// Cuts the next token from the units.
XMLTokenKind clsXMLEngine::TakeUnits(TextView& token) {
  Fill(kLongestHead);
  if (first_ == last_) {
    token = {};
    return xtEndOfDocument;
  }
  const auto take = [this](std::size_t length) {
    const TextView taken(First(), length);
    first_ += length;
    return taken;
  };
  std::size_t length = 0;
  if (*First() != u'<') {
    do {
      length = FindUnit(Window(), length, u'<');
    } while (length == last_ - first_ && More());
    token = take(length);
    return xtText;
  }
  const Cut cut = CutOf(Window());
  // The search starts at the first unit: "<?>" and "<!-->" are complete tokens.
  for (;;) {
    length = FindUnit(Window(), length, u'>');
    if (length == last_ - first_) {
      if (More()) continue;
      break;
    }
    ++length;
    if (EndsWith(Window().substr(0, length - 1), cut.before)) break;
  }
  token = take(length);
  return KindOfTag(cut.kind, token);
}

/// Decodes until `count` units are available; false if the document has fewer left.
bool clsXMLEngine::Fill(std::size_t count) {
  while (last_ - first_ < count) {
    if (!More()) return false;
  }
  return true;
}

/// Decodes some more; false if everything is decoded. May move the window, which invalidates
/// pointers into it.
bool clsXMLEngine::More() {
  if (next_ == bytes_.size()) return false;
  const std::size_t wanted = std::min(kChunk, bytes_.size() - next_);
  if (room_ - last_ < wanted) MakeRoom();
  const DecodedUTF8 decoded =
      DecodeUTF8(bytes_.data() + next_, bytes_.size() - next_, window_.get() + last_, wanted);
  next_ += decoded.bytes;
  last_ += decoded.units;
  return true;
}

void clsXMLEngine::MakeRoom() {
  const std::size_t live = last_ - first_;
  const std::size_t rest = bytes_.size() - next_;
  if (live + std::min(kChunk, rest) <= room_) {
    std::memmove(window_.get(), First(), live * sizeof(char16_t));
  } else {
    // The token is larger than the window: make room for the whole rest at once, since growing in
    // steps would hold two copies. A byte never decodes to more than one unit.
    room_ = live + rest;
    auto window = std::make_unique_for_overwrite<char16_t[]>(room_);
    if (live != 0) std::memcpy(window.get(), First(), live * sizeof(char16_t));
    window_ = std::move(window);
  }
  first_ = 0;
  last_ = live;
}

/// Empties the window and sets its capacity.
void clsXMLEngine::Restart(std::size_t room) {
  first_ = last_ = 0;
  if (room != room_) window_ = std::make_unique_for_overwrite<char16_t[]>(room);
  room_ = room;
}

}  // namespace marl
