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

// Units marked at once, and in one word.
constexpr std::size_t kStep = 16;
constexpr std::size_t kWord = 64;

/// One bit for each unit that ends the head of a name: what ends a name, and what is dropped in it.
constexpr std::uint64_t BitOf(char16_t unit) { return std::uint64_t{1} << unit; }
constexpr std::uint64_t kNameEnds =
    BitOf(u'\t') | BitOf(u'\r') | BitOf(u'\n') | BitOf(u' ') | BitOf(u'>');
constexpr std::uint64_t kDropped = BitOf(u'<') | BitOf(u'/');

constexpr bool IsOneOf(std::uint64_t units, char16_t unit) {
  return unit < 64 && (units >> unit & 1) != 0;
}

/// The first bit from `from` on. The last word is all ones, so there is always one.
inline std::size_t NextBit(const std::uint64_t* words, std::size_t from) {
  std::size_t word = from / kWord;
  const std::uint64_t bits = words[word] >> from % kWord;
  if (bits != 0) return from + LowestBit(bits);
  while (words[++word] == 0) {
  }
  return word * kWord + LowestBit(words[word]);
}

/// A kind of names as a bit: by length and first letter, the same whatever their case.
inline std::uint64_t KindOf(TextView name) {
  const unsigned first = name.empty() || name.front() >= 0x80 ? 0u : name.front();
  return std::uint64_t{1} << ((first + 4 * name.size()) % 32 + (name.size() & 32));
}

std::uint64_t Hash(TextView key, std::uint64_t seed) {
  std::uint64_t hash = seed;
  for (const char16_t unit : key) {
    hash = (hash + FoldCase(unit) + 1) * 0x9E3779B97F4A7C15u;
    hash ^= hash >> 29;
  }
  return hash;
}

}  // namespace

inline void clsXMLTag::Add(std::size_t name, std::size_t nameLength, std::size_t value,
                           std::size_t valueLength) {
  const TextView key(raw_.data() + name, nameLength);
  if (count_ >= kFew) {
    Enter(key);
  } else {
    const std::uint64_t kind = KindOf(key);
    if ((kinds_ & kind) != 0 && Find(key) != nullptr) throw RuntimeError::DuplicateKey();
    kinds_ |= kind;
  }
  if (count_ == attributes_.size()) attributes_.resize(2 * count_ + 8);
  // Field by field: a record made elsewhere and copied costs more than all the rest.
  Attribute& added = attributes_[count_++];
  added.name = name;
  added.nameLength = nameLength;
  added.value = value;
  added.valueLength = valueLength;
  added.made = false;
  if (entities_) Unescape(added);
}

void clsXMLTag::ParseTag(TextView tag) {
  StoreUnits(tag);  // first of all: `tag` may be a view into this very object
  ReadTag();
}

void clsXMLTag::ParseTag(const XMLToken& token) {
  if (!token.units.empty()) {
    StoreUnits(token.units);
  } else if (!StoreASCII(token.bytes)) {
    StoreUnits(token.text());
  }
  ReadTag();
}

void clsXMLTag::ReadTag() {
  Initialise();
  const char16_t* const raw = raw_.data();
  std::size_t next = ReadName();

  // Only the blank counts as space between attributes, and none is trimmed beside the "=".
  std::size_t end = length_;
  while (end != next && raw[end - 1] == u' ') --end;
  for (;;) {
    while (next != end && raw[next] == u' ') ++next;
    const std::size_t equals = NextBit(equals_.data(), next);
    if (equals + 1 >= end) return;
    // The quote is whatever stands behind the "=".
    const char16_t quote = raw[equals + 1];
    const std::size_t value = equals + 2;
    const std::size_t closing =
        quote == u'"' ? NextBit(quotes_.data(), value)
                      : static_cast<std::size_t>(FindUnit(raw + value, raw + end, quote) - raw);
    if (closing >= end) return;
    Add(next, equals - next, value, closing - value);
    next = closing + 1;
  }
}

TextView clsXMLTag::AttributeValue(TextView key) const {
  const Attribute* const found = Find(key);
  return found ? ValueOf(*found) : TextView();
}

void clsXMLTag::Initialise() {
  count_ = 0;
  kinds_ = 0;
  slots_.clear();
  textContent_.clear();
  made_.clear();
}

/// Marks the units that matter in the tag, step by step: `markAt` gives the marks of the 16 units
/// at a place. A tag shorter than that is marked as if zeros stood behind it.
template <typename MarkAt>
inline void clsXMLTag::Mark(MarkAt&& markAt) {
  const std::size_t words = length_ / kWord + 1;
  if (equals_.size() <= words) {
    equals_.resize(2 * words + 1);
    quotes_.resize(2 * words + 1);
  }
  unsigned ampersands = 0;
  const std::size_t whole = length_ / kStep;
  std::size_t step = 0;
  for (std::size_t word = 0; word < words; ++word) {
    std::uint64_t equals = 0;
    std::uint64_t quotes = 0;
    const auto enter = [&](TagMarks found, unsigned shift) {
      equals |= static_cast<std::uint64_t>(found.equals) << shift;
      quotes |= static_cast<std::uint64_t>(found.quotes) << shift;
      ampersands |= found.ampersands;
    };
    unsigned shift = 0;
    for (; step < whole && shift < kWord; ++step, shift += kStep)
      enter(markAt(step * kStep), shift);
    if (shift < kWord) {
      // The units left: those of a short tag, or the last ones without those marked already.
      const bool brief = length_ < kStep;
      TagMarks found = markAt(brief ? 0 : length_ - kStep);
      const std::size_t known = brief ? 0 : kStep - length_ % kStep;
      found.equals >>= known;
      found.quotes >>= known;
      enter(found, shift);
    }
    equals_[word] = equals;
    quotes_[word] = quotes;
  }
  // The last word stops every search beyond the end.
  equals_[words] = quotes_[words] = ~std::uint64_t{0};
  entities_ = ampersands != 0;
}

/// Keeps the tag.
void clsXMLTag::StoreUnits(TextView tag) {
  length_ = tag.size();
  // Marked where they stand: reading units right after they were written would have to wait.
  char16_t few[kStep] = {};
  if (length_ < kStep) tag.copy(few, length_);
  const char16_t* const units = length_ < kStep ? few : tag.data();
  Mark([units](std::size_t place) { return MarkTag(units + place); });

  if (raw_.size() < length_) {
    // The old units stay until the new ones are read: the tag may be among them.
    std::vector<char16_t> grown(2 * length_);
    std::copy(tag.begin(), tag.end(), grown.begin());
    raw_ = std::move(grown);
  } else if (length_ != 0) {
    std::memmove(raw_.data(), tag.data(), length_ * sizeof(char16_t));
  }
}

/// Keeps a tag that is all ASCII; false when it is not.
bool clsXMLTag::StoreASCII(std::string_view tag) {
  length_ = tag.size();
  const std::size_t needed = std::max(length_, kStep);
  if (raw_.size() < needed) raw_.resize(2 * needed);
  char few[kStep] = {};
  if (length_ < kStep) tag.copy(few, length_);
  const char* const bytes = length_ < kStep ? few : tag.data();
  char16_t* const raw = raw_.data();
  unsigned others = 0;
  Mark([&others, bytes, raw](std::size_t place) {
    const TagMarks marks = WidenTag(bytes + place, raw + place);
    others |= marks.others;
    return marks;
  });
  return others == 0;
}

/// Reads the name and the unit that ends it; returns where the attributes begin.
std::size_t clsXMLTag::ReadName() {
  const char16_t* const raw = raw_.data();
  std::size_t at = 0;
  while (at != length_ && IsOneOf(kDropped, raw[at])) ++at;
  name_ = at;
  // In one piece, as nearly always?
  while (at != length_ && !IsOneOf(kNameEnds | kDropped, raw[at])) ++at;
  nameLength_ = at - name_;
  nameMade_ = false;
  std::size_t end = at;
  while (end != length_ && !IsOneOf(kNameEnds, raw[end])) ++end;
  const auto dropped = [](char16_t unit) { return IsOneOf(kDropped, unit); };
  if (!std::all_of(raw + at, raw + end, dropped)) {
    made_.assign(raw + name_, end - name_);
    std::erase_if(made_, dropped);
    name_ = 0;
    nameLength_ = made_.size();
    nameMade_ = true;
  }
  return std::min(end + 1, length_);
}

/// Enters the name of the next attribute, one of many, into the table.
void clsXMLTag::Enter(TextView key) {
  if ((count_ + 1) * 2 > slots_.size()) Index(std::max(4 * kFew, slots_.size() * 2));
  std::size_t& slot = slots_[SlotOf(key)];
  if (slot != 0) throw RuntimeError::DuplicateKey();
  slot = count_ + 1;
}

void clsXMLTag::Unescape(Attribute& attribute) {
  const TextView raw = ValueOf(attribute);
  if (raw.find(u'&') == TextView::npos) return;
  const Text plain = XMLUnescape(raw);
  attribute.value = made_.size();
  attribute.valueLength = plain.size();
  attribute.made = true;
  made_ += plain;
}

const clsXMLTag::Attribute* clsXMLTag::Find(TextView key) const {
  if (!slots_.empty()) {
    const std::size_t place = slots_[SlotOf(key)];
    return place == 0 ? nullptr : &attributes_[place - 1];
  }
  for (std::size_t i = 0; i < count_; ++i) {
    if (SameText(NameOf(attributes_[i]), key)) return &attributes_[i];
  }
  return nullptr;
}

/// The slot that holds the place of `key`, or the free one where it belongs.
std::size_t clsXMLTag::SlotOf(TextView key) const {
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = static_cast<std::size_t>(Hash(key, seed_)) & mask;
  while (slots_[at] != 0 && !SameText(NameOf(attributes_[slots_[at] - 1]), key)) {
    at = (at + 1) & mask;
  }
  return at;
}

/// Makes the table anew with this many slots.
void clsXMLTag::Index(std::size_t slots) {
  slots_.assign(slots, 0);
  // Where the table lies is not known outside, so names cannot be chosen to collide.
  seed_ = reinterpret_cast<std::uintptr_t>(slots_.data());
  for (std::size_t i = 0; i < count_; ++i) {
    slots_[SlotOf(NameOf(attributes_[i]))] = i + 1;
  }
}

}  // namespace marl
