#include "documents/clsXMLTag.h"

#include <algorithm>
#include <cstring>

#include "documents/Scan.h"
#include "documents/modUTF8.h"
#include "platform/FoldCase.h"
#include "platform/RuntimeError.h"

namespace marl {

namespace {

// Up to this many attributes a linear search is faster than a table.
constexpr std::size_t kFew = 16;

/// Capacity for a tag of this size: some more for the next tag, but not twice a huge one.
constexpr std::size_t RoomFor(std::size_t size) {
  return std::max<std::size_t>(size + std::min<std::size_t>(size, 4096), 256);
}

/// Bits for the units that end a name and for those that are dropped from it.
constexpr std::uint64_t BitOf(char16_t unit) { return std::uint64_t{1} << unit; }
constexpr std::uint64_t kNameEnds =
    BitOf(u'\t') | BitOf(u'\r') | BitOf(u'\n') | BitOf(u' ') | BitOf(u'>');
constexpr std::uint64_t kDropped = BitOf(u'<') | BitOf(u'/');

constexpr bool IsOneOf(std::uint64_t units, char16_t unit) {
  return unit < 64 && (units >> unit & 1) != 0;
}

// Tags of up to this many units (most are) are marked in one go.
constexpr std::size_t kMarked = 256;

/// The positions of "=" and double quotes in a tag, found in one pass, so that most attributes need
/// no search of their own.
struct Marks {
  Stretch stretches[kMarked / kStretch];

  /// Marks a tag of 1 to kMarked units.
  template <typename Unit>
  [[gnu::always_inline]] explicit Marks(std::basic_string_view<Unit> tag) {
    const auto marksOf = [](Block block) {
      return Joined(Matches('=', block), Matches('"', block));
    };
    const Unit* const data = tag.data();
    const std::size_t size = tag.size();
    std::size_t done = 0;
    Stretch* stretch = stretches;
    for (; size - done >= kStretch; done += kStretch) *stretch++ = StretchOf(data + done, marksOf);
    if (done == size) return;
    if (done != 0) {
      // The last stretch overlaps positions that are already done.
      const std::size_t back = done + kStretch - size;
      *stretch = StretchOf(data + done - back, marksOf) >> back;
      return;
    }
    const auto enter = [&](const Unit* at, std::size_t place) {
      *stretch |= static_cast<Stretch>(PlacesIn(marksOf(LoadBlock(at)))) << place;
    };
    *stretch = 0;
    if (size < kBlock) {
      Unit block[kBlock] = {};
      std::copy(data, data + size, block);
      enter(block, 0);
      return;
    }
    for (; done < size - kBlock; done += kBlock) enter(data + done, done);
    enter(data + size - kBlock, size - kBlock);
  }
};

/// One bit for a group of names: by first unit and length, ignoring case.
template <typename Unit>
std::uint32_t KindOf(const Unit* name, std::size_t length) {
  // For an empty name this is the unit after it, always the same.
  std::size_t first = static_cast<std::make_unsigned_t<Unit>>(*name);
  if (sizeof(Unit) > 1 && first >= 0x80) first = 0;
  return std::uint32_t{1} << (first + 4 * length) % 32;
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

/// Reads the name and the unit that ends it; returns the start of the attributes.
template <typename Unit>
inline std::size_t clsXMLTag::ReadName(std::basic_string_view<Unit> tag) {
  const std::size_t size = tag.size();
  const auto is = [tag](std::uint64_t units, std::size_t at) {
    return IsOneOf(units, static_cast<char16_t>(tag[at]));
  };
  std::size_t at = 0;
  while (at != size && is(kDropped, at)) ++at;
  name_ = at;
  // Nearly always the name is in one piece.
  for (;; ++at) {
    at = FindPlace(tag, at, [](const Unit* block) { return PlacesOfNameBreaks(LoadBlock(block)); });
    nameLength_ = at - name_;
    if (at == size) return size;
    if (is(kNameEnds, at)) return at + 1;
    if (is(kDropped, at)) break;
  }
  for (; at != size && !is(kNameEnds, at); ++at) {
    if (!is(kDropped, at)) raw_[name_ + nameLength_++] = static_cast<char16_t>(tag[at]);
  }
  return std::min(at + 1, size);
}

/// Reads attributes from a position on while they are few and in double quotes; returns where it
/// stopped. Also stops at a name that may be a duplicate.
template <typename Unit>
[[gnu::always_inline]] inline std::size_t clsXMLTag::ReadPlain(std::basic_string_view<Unit> tag,
                                                               std::size_t next) {
  const auto keep = [this](const Attribute* end, std::size_t stop) {
    count_ = static_cast<std::size_t>(end - attributes_.data());
    return stop;
  };
  const Marks marks(tag);
  const std::size_t size = tag.size();
  const Stretch* stretch = marks.stretches + (next - 1) / kStretch;
  std::size_t begin = (next - 1) & ~(kStretch - 1);
  // What is left of the current stretch.
  Stretch left = *stretch & ~Stretch{1} << (next - 1 - begin);
  std::uint32_t kinds = 0;
  Attribute* attribute = attributes_.data();
  Attribute* const full = attribute + kFew;
  for (; attribute != full; ++attribute) {
    while (left == 0) {
      begin += kStretch;
      if (begin >= size) return keep(attribute, size);
      left = *++stretch;
    }
    // A "=" followed by a double quote?
    const Stretch lowest = left & -left;
    const std::size_t nameEnd = begin + LowestBit(left);
    if ((left & lowest << 1) == 0 || tag[nameEnd] != '=' || tag[nameEnd + 1] != '"') break;
    left -= lowest + (lowest << 1);

    std::size_t valueEnd = 0;
    do {
      while (left == 0) {
        begin += kStretch;
        if (begin >= size) return keep(attribute, size);
        left = *++stretch;
      }
      valueEnd = begin + LowestBit(left);
      left &= left - 1;
    } while (tag[valueEnd] != '"');
    while (tag[next] == ' ') ++next;
    const std::uint32_t kind = KindOf(&tag[next], nameEnd - next);
    if ((kinds & kind) != 0) break;
    kinds |= kind;
    *attribute = {next, nameEnd, valueEnd};
    next = valueEnd + 1;
  }
  return keep(attribute, next);
}

/// Reads attributes of any form from a position on; false at a duplicate name.
template <typename Unit>
[[gnu::noinline]] bool clsXMLTag::ReadOdd(std::basic_string_view<Unit> tag, std::size_t next) {
  // Only blanks separate attributes, and none is trimmed around the "=".
  std::size_t end = tag.size();
  while (end != next && tag[end - 1] == ' ') --end;
  for (;; ++count_) {
    while (next != end && tag[next] == ' ') ++next;
    const std::size_t nameEnd = FindUnit(tag, next, static_cast<Unit>('='));
    if (nameEnd + 1 >= end) return true;
    // Whatever follows the "=" is the quote.
    const std::size_t valueEnd = FindUnit(tag, nameEnd + 2, tag[nameEnd + 1]);
    if (valueEnd >= end) return true;
    const TextView name(raw_.data() + next, nameEnd - next);
    if (count_ < kFew ? Find(name) != nullptr : !Enter(name)) return false;
    if (count_ == attributes_.size()) attributes_.resize(2 * count_);
    attributes_[count_] = {next, nameEnd, valueEnd};
    next = valueEnd + 1;
  }
}

/// Reads the tag, which is also in raw_.
template <typename Unit>
[[gnu::always_inline]] inline void clsXMLTag::Read(std::basic_string_view<Unit> tag,
                                                   bool entities) {
  count_ = 0;
  slots_.clear();
  textContent_.clear();
  std::size_t next = ReadName(tag);
  if (next != tag.size() && tag.size() <= kMarked) next = ReadPlain(tag, next);
  const bool whole = next == tag.size() || ReadOdd(tag, next);
  if (entities) {
    for (std::size_t i = 0; i != count_; ++i) {
      Attribute& attribute = attributes_[i];
      const std::size_t value = attribute.value();
      attribute.valueEnd = value + XMLUnescape(raw_.data() + value, attribute.valueEnd - value);
    }
  }
  if (!whole) throw RuntimeError::DuplicateKey();
}

clsXMLTag::clsXMLTag() : attributes_(kFew) {}

void clsXMLTag::ParseTag(TextView tag) {
  // `tag` may be a view into this object.
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
    // Read from the bytes: reading units that were just written would stall.
    Read(token.bytes, tag.entities);
  } else {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(token.bytes.data());
    ReadKept(DecodeUTF8(bytes, size, raw_.data(), size).units);
  }
}

/// Reads the tag in the first `size` units of raw_.
void clsXMLTag::ReadKept(std::size_t size) {
  const TextView tag(raw_.data(), size);
  Read(tag, FindUnit(tag, 0, u'&') != size);
}

TextView clsXMLTag::AttributeValue(TextView key) const {
  const Attribute* const found = Find(key);
  return found ? ValueOf(*found) : TextView();
}

/// Enters the name of the next attribute into the table; false if it is already there.
bool clsXMLTag::Enter(TextView name) {
  if ((count_ + 1) * 2 > slots_.size()) Index(std::max(4 * kFew, slots_.size() * 2));
  std::size_t& slot = slots_[SlotOf(name)];
  if (slot != 0) return false;
  slot = count_ + 1;
  return true;
}

const clsXMLTag::Attribute* clsXMLTag::Find(TextView name) const {
  if (!slots_.empty()) {
    const std::size_t place = slots_[SlotOf(name)];
    return place == 0 ? nullptr : &attributes_[place - 1];
  }
  for (std::size_t i = 0; i != count_; ++i) {
    if (SameText(NameOf(attributes_[i]), name)) return &attributes_[i];
  }
  return nullptr;
}

/// The slot of `name`, or the free slot where it belongs.
std::size_t clsXMLTag::SlotOf(TextView name) const {
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = static_cast<std::size_t>(Hash(name, seed_)) & mask;
  while (slots_[at] != 0 && !SameText(NameOf(attributes_[slots_[at] - 1]), name)) {
    at = (at + 1) & mask;
  }
  return at;
}

/// Rebuilds the table with this many slots.
void clsXMLTag::Index(std::size_t slots) {
  slots_.assign(slots, 0);
  // The table's address is not known outside, so names cannot be chosen to collide.
  seed_ = reinterpret_cast<std::uintptr_t>(slots_.data());
  for (std::size_t i = 0; i != count_; ++i) {
    slots_[SlotOf(NameOf(attributes_[i]))] = i + 1;
  }
}

}  // namespace marl
