#include "documents/clsXMLTag.h"

#include <algorithm>
#include <cstring>

#include "documents/Scan.h"
#include "documents/modUTF8.h"
#include "platform/FoldCase.h"
#include "platform/RuntimeError.h"

namespace marl {

namespace {

// Up to this many attributes a walk is faster than a table.
constexpr std::size_t kFew = 16;

/// Room to keep a tag of this size: some more for the next one, but not twice a huge one.
constexpr std::size_t RoomFor(std::size_t size) {
  return std::max<std::size_t>(size + std::min<std::size_t>(size, 4096), 256);
}

/// A bit for each unit that ends a name, and for each that is dropped in it.
constexpr std::uint64_t BitOf(char16_t unit) { return std::uint64_t{1} << unit; }
constexpr std::uint64_t kNameEnds =
    BitOf(u'\t') | BitOf(u'\r') | BitOf(u'\n') | BitOf(u' ') | BitOf(u'>');
constexpr std::uint64_t kDropped = BitOf(u'<') | BitOf(u'/');

constexpr bool IsOneOf(std::uint64_t units, char16_t unit) {
  return unit < 64 && (units >> unit & 1) != 0;
}

/// Finds the "=" and the double quotes of a tag: marks as many of its units at once as a number has
/// bits, so that most attributes are found without another look at the tag.
template <typename Unit>
class Marks {
 public:
  explicit Marks(std::basic_string_view<Unit> tag) : tag_(tag) {}

  /// The first "=" from a place on, which is not before any that was asked for; the tag's size if
  /// there is none.
  std::size_t Equals(std::size_t from) { return Next(&Marks::equals_, from); }
  /// The same for a double quote.
  std::size_t Quote(std::size_t from) { return Next(&Marks::quotes_, from); }

 private:
  using Bits = std::size_t;
  static constexpr std::size_t kBits = 8 * sizeof(Bits);

  [[gnu::always_inline]] std::size_t Next(Bits Marks::*marks, std::size_t from) {
    for (;;) {
      if (from < end_) {
        const Bits left = this->*marks >> (from - begin_);
        if (left != 0) return from + LowestBit(left);
        from = end_;
      }
      if (from == tag_.size()) return from;
      Mark(from);
    }
  }

  /// Marks the units from a place on, or at the end of the tag the last ones.
  void Mark(std::size_t from) {
    equals_ = quotes_ = 0;
    const std::size_t size = tag_.size();
    if (size >= kBits) {
      begin_ = std::min(from, size - kBits);
      end_ = begin_ + kBits;
      for (std::size_t i = 0; i != kBits; i += kBlock) Enter(tag_.data() + begin_ + i, i);
    } else if (size >= kBlock) {
      end_ = size;
      for (std::size_t i = 0; i < size - kBlock; i += kBlock) Enter(tag_.data() + i, i);
      Enter(tag_.data() + size - kBlock, size - kBlock);
    } else {
      end_ = size;
      Unit block[kBlock] = {};
      std::copy(tag_.begin(), tag_.end(), block);
      Enter(block, 0);
    }
  }
  void Enter(const Unit* at, std::size_t place) {
    const Block block = LoadBlock(at);
    equals_ |= static_cast<Bits>(PlacesOf('=', block)) << place;
    quotes_ |= static_cast<Bits>(PlacesOf('"', block)) << place;
  }

  const std::basic_string_view<Unit> tag_;
  // Marked are the units [begin_, end_).
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  Bits equals_ = 0;
  Bits quotes_ = 0;
};

/// A kind of names as a bit: by first unit and length, the same whatever their case.
inline std::uint32_t KindOf(TextView name) {
  const char16_t first = name.empty() || name.front() >= 0x80 ? u'\0' : name.front();
  return std::uint32_t{1} << (first + 4 * name.size()) % 32;
}

std::uint64_t Hash(TextView name, std::uint64_t seed) {
  std::uint64_t hash = seed;
  for (const char16_t unit : name) {
    hash = (hash + FoldCase(unit) + 1) * 0x9E3779B97F4A7C15u;
    hash ^= hash >> 29;
  }
  return hash;
}

}  // namespace

/// Reads the name and the unit that ends it; returns where the attributes begin.
template <typename Unit>
inline std::size_t clsXMLTag::ReadName(std::basic_string_view<Unit> tag) {
  const std::size_t size = tag.size();
  const auto is = [tag](std::uint64_t units, std::size_t at) {
    return IsOneOf(units, static_cast<char16_t>(tag[at]));
  };
  std::size_t at = 0;
  while (at != size && is(kDropped, at)) ++at;
  name_ = at;
  // In one piece, as nearly always?
  const auto breaks = [](const Unit* block) { return PlacesOfNameBreaks(LoadBlock(block)); };
  for (at = FindPlace(tag, at, breaks); at != size && !is(kNameEnds | kDropped, at);) {
    at = FindPlace(tag, at + 1, breaks);
  }
  nameLength_ = at - name_;
  for (; at != size && !is(kNameEnds, at); ++at) {
    if (!is(kDropped, at)) raw_[name_ + nameLength_++] = static_cast<char16_t>(tag[at]);
  }
  return std::min(at + 1, size);
}

/// Fails when there is an attribute of this name; else its kind joins theirs.
inline void clsXMLTag::MindDuplicate(TextView name, std::uint32_t& kinds) {
  if (attributes_.size() >= kFew) return Enter(name);
  const std::uint32_t kind = KindOf(name);
  if ((kinds & kind) != 0 && Find(name) != nullptr) throw RuntimeError::DuplicateKey();
  kinds |= kind;
}

/// Reads the tag, which stands in raw_ too.
template <typename Unit>
inline void clsXMLTag::Read(std::basic_string_view<Unit> tag, bool entities) {
  attributes_.clear();
  slots_.clear();
  textContent_.clear();
  std::size_t next = ReadName(tag);

  // Only the blank counts as space between attributes, and none is trimmed beside the "=".
  std::size_t end = tag.size();
  while (end != next && tag[end - 1] == ' ') --end;
  char16_t* const raw = raw_.data();
  Marks<Unit> marks(tag);
  std::uint32_t kinds = 0;
  for (;;) {
    while (next != end && tag[next] == ' ') ++next;
    const std::size_t equals = marks.Equals(next);
    if (equals + 1 >= end) return;
    // The quote is whatever stands behind the "=".
    const std::size_t value = equals + 2;
    const Unit quote = tag[equals + 1];
    const std::size_t closing = quote == '"' ? marks.Quote(value) : FindUnit(tag, value, quote);
    if (closing >= end) return;
    MindDuplicate(TextView(raw + next, equals - next), kinds);
    std::size_t length = closing - value;
    if (entities) length = XMLUnescape(raw + value, length);
    attributes_.emplace_back(next, equals - next, value, length);
    next = closing + 1;
  }
}

clsXMLTag::clsXMLTag() { attributes_.reserve(kFew); }

void clsXMLTag::ParseTag(TextView tag) {
  // `tag` may be a view into this very object.
  if (raw_.size() < tag.size()) {
    std::vector<char16_t> grown(RoomFor(tag.size()));
    std::copy(tag.begin(), tag.end(), grown.begin());
    raw_ = std::move(grown);
  } else if (!tag.empty()) {
    std::memmove(raw_.data(), tag.data(), tag.size() * sizeof(char16_t));
  }
  ReadKept(tag.size());
}

void clsXMLTag::ParseTag(const XMLToken& token) {
  if (!token.units.empty()) return ParseTag(token.units);
  const std::size_t size = token.bytes.size();
  if (raw_.size() < size) raw_.resize(RoomFor(size));
  const WidenedTag tag = WidenTag(token.bytes, raw_.data());
  if (tag.plain) {
    // Read where it stands: units that were just written would have to be waited for.
    Read(token.bytes, tag.entities);
  } else {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(token.bytes.data());
    ReadKept(DecodeUTF8(bytes, size, raw_.data(), size).units);
  }
}

/// Reads the tag from raw_, where it has this many units.
void clsXMLTag::ReadKept(std::size_t size) {
  const TextView tag(raw_.data(), size);
  Read(tag, FindUnit(tag, 0, u'&') != size);
}

TextView clsXMLTag::AttributeValue(TextView key) const {
  const Attribute* const found = Find(key);
  return found ? ValueOf(*found) : TextView();
}

/// Enters the name of the next attribute, one of many, into the table.
void clsXMLTag::Enter(TextView name) {
  const std::size_t count = attributes_.size();
  if ((count + 1) * 2 > slots_.size()) Index(std::max(4 * kFew, slots_.size() * 2));
  std::size_t& slot = slots_[SlotOf(name)];
  if (slot != 0) throw RuntimeError::DuplicateKey();
  slot = count + 1;
}

const clsXMLTag::Attribute* clsXMLTag::Find(TextView name) const {
  if (!slots_.empty()) {
    const std::size_t place = slots_[SlotOf(name)];
    return place == 0 ? nullptr : &attributes_[place - 1];
  }
  for (const Attribute& attribute : attributes_) {
    if (SameText(NameOf(attribute), name)) return &attribute;
  }
  return nullptr;
}

/// The slot that holds the place of `name`, or the free one where it belongs.
std::size_t clsXMLTag::SlotOf(TextView name) const {
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = static_cast<std::size_t>(Hash(name, seed_)) & mask;
  while (slots_[at] != 0 && !SameText(NameOf(attributes_[slots_[at] - 1]), name)) {
    at = (at + 1) & mask;
  }
  return at;
}

/// Makes the table anew with this many slots.
void clsXMLTag::Index(std::size_t slots) {
  slots_.assign(slots, 0);
  // Where the table lies is not known outside, so names cannot be chosen to collide.
  seed_ = reinterpret_cast<std::uintptr_t>(slots_.data());
  for (std::size_t i = 0; i < attributes_.size(); ++i) {
    slots_[SlotOf(NameOf(attributes_[i]))] = i + 1;
  }
}

}  // namespace marl
