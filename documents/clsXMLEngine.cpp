#include "documents/clsXMLEngine.h"

#include <algorithm>
#include <cstring>

#include "documents/Scan.h"
#include "documents/modUTF8.h"
#include "platform/RuntimeError.h"

namespace marl {

namespace {

constexpr char16_t kByteOrderMark = 0xFEFF;

// Units decoded at once and units kept for that: both fit into the fastest caches.
constexpr std::size_t kChunk = 4096;
constexpr std::size_t kWindow = 4 * kChunk;

constexpr TextView kDocType = u"<!DOCTYPE";
constexpr TextView kCData = u"<![CDATA[";
constexpr TextView kComment = u"<!--";

constexpr char16_t Upper(char16_t unit) {
  return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 32) : unit;
}

}  // namespace

bool clsXMLEngine::OpenDocument(TextView path) {
  Bytes bytes;
  if (!files_.NormalFileExists(path) || files_.ReadAll(path, bytes) != kOk) return false;
  bytes_ = std::move(bytes);
  Restart(std::min(kWindow, bytes_.size()));
  SkipByteOrderMark();
  return true;
}

bool clsXMLEngine::OpenXMLW(TextView text) {
  const Text copy(text);  // `text` may be a view into this document
  bytes_ = {};
  Restart(copy.size());
  if (copy.empty()) throw RuntimeError::InvalidCall();
  copy.copy(window_.get(), copy.size());
  last_ = copy.size();
  SkipByteOrderMark();
  return true;
}

XMLTokenKind clsXMLEngine::GetToken(Text& token) {
  TextView view;
  const XMLTokenKind kind = GetToken(view);
  token = view;
  return kind;
}

XMLTokenKind clsXMLEngine::GetToken(TextView& token) {
  Fill(kDocType.size());
  if (first_ == last_) {
    token = {};
    return xtEndOfDocument;
  }
  if (*First() != u'<') {
    std::size_t length = 0;
    do {
      length = static_cast<std::size_t>(FindUnit(First() + length, Last(), u'<') - First());
    } while (length == last_ - first_ && More());
    token = Take(length);
    return xtText;
  }
  const char16_t second = last_ - first_ > 1 ? First()[1] : u'\0';
  if (second == u'?') {
    token = TakeThrough(u"?");
    return xtInstruction;
  }
  if (second == u'!') {
    if (StartsWith(kDocType)) {
      token = TakeThrough(u"]");
      return xtDocType;
    }
    if (StartsWith(kCData)) {
      token = TakeThrough(u"]]");
      return xtCData;
    }
    if (TextView(First(), last_ - first_).starts_with(kComment)) {
      token = TakeThrough(u"--");
      return xtComment;
    }
    token = TakeThrough(u"");
    return xtDeclaration;
  }
  token = TakeThrough(u"");
  if (second == u'/') return xtCloseTag;
  return token.ends_with(u"/>") ? xtEmptyTag : xtOpenTag;
}

/// Decodes until `count` units are there; false when the document has fewer left.
bool clsXMLEngine::Fill(std::size_t count) {
  while (last_ - first_ < count) {
    if (!More()) return false;
  }
  return true;
}

/// Decodes some more; false when all is decoded. Moves the window: pointers into it go stale.
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
    // A token that outgrows the window: room for all the rest at once, since growing by steps
    // would hold two copies. Bytes never give more units than they are.
    room_ = live + rest;
    auto window = std::make_unique_for_overwrite<char16_t[]>(room_);
    std::memcpy(window.get(), First(), live * sizeof(char16_t));
    window_ = std::move(window);
  }
  first_ = 0;
  last_ = live;
}

void clsXMLEngine::Restart(std::size_t room) {
  next_ = first_ = last_ = 0;
  if (room != room_) window_ = std::make_unique_for_overwrite<char16_t[]>(room);
  room_ = room;
}

void clsXMLEngine::SkipByteOrderMark() {
  if (Fill(1) && *First() == kByteOrderMark) ++first_;
}

/// Tests for a keyword in capitals, ignoring case.
bool clsXMLEngine::StartsWith(TextView keyword) const {
  if (last_ - first_ < keyword.size()) return false;
  return std::equal(keyword.begin(), keyword.end(), First(),
                    [](char16_t wanted, char16_t unit) { return wanted == Upper(unit); });
}

TextView clsXMLEngine::Take(std::size_t count) {
  const TextView token(First(), count);
  first_ += count;
  return token;
}

/// Takes all through the first ">" that stands behind `before`, or all the rest. The search
/// starts at the first unit: "<?>" and "<!-->" are whole.
TextView clsXMLEngine::TakeThrough(TextView before) {
  std::size_t length = 0;
  for (;;) {
    const char16_t* const found = FindUnit(First() + length, Last(), u'>');
    length = static_cast<std::size_t>(found - First());
    if (found == Last()) {
      if (More()) continue;
      return Take(length);
    }
    const TextView head(First(), length);
    ++length;
    if (head.ends_with(before)) return Take(length);
  }
}

}  // namespace marl
