#include "documents/clsXMLTag.h"

#include <algorithm>

#include "documents/Scan.h"
#include "documents/modUTF8.h"
#include "platform/FoldCase.h"
#include "platform/RuntimeError.h"

namespace marl {

namespace {

// Up to this many attributes a walk is faster than a table.
constexpr std::size_t kFew = 16;

constexpr bool EndsName(char16_t unit) {
  return unit == u'\t' || unit == u'\r' || unit == u'\n' || unit == u' ' || unit == u'>';
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

void clsXMLTag::ParseTag(TextView tag) {
  raw_ = tag;  // first of all: `tag` may be a view into this very object
  Initialise();
  const char16_t* const begin = raw_.data();
  std::size_t at = 0;
  ReadName(at);

  // Only the blank counts as space between attributes, and none is trimmed beside the "=".
  const char16_t* end = begin + raw_.size();
  while (end != begin + at && end[-1] == u' ') --end;
  const char16_t* next = begin + at;
  for (;;) {
    while (next != end && *next == u' ') ++next;
    const char16_t* const equals = FindUnit(next, end, u'=');
    if (end - equals < 2) return;
    // The quote is whatever stands behind the "=".
    const char16_t* const value = equals + 2;
    const char16_t* const closing = FindUnit(value, end, equals[1]);
    if (closing == end) return;
    const auto run = [begin](const char16_t* from, const char16_t* to) {
      return Run{static_cast<std::size_t>(from - begin), static_cast<std::size_t>(to - from)};
    };
    Add(run(next, equals), run(value, closing));
    next = closing + 1;
  }
}

TextView clsXMLTag::name() const { return View(name_); }

TextView clsXMLTag::AttributeValue(TextView key) const {
  const Attribute* const found = Find(key);
  return found ? View(found->value) : TextView();
}

TextView clsXMLTag::AttributeValue(std::int32_t position) const {
  if (position < 1 || static_cast<std::size_t>(position) > attributes_.size()) return {};
  return View(attributes_[static_cast<std::size_t>(position) - 1].value);
}

void clsXMLTag::Initialise() {
  attributes_.clear();
  slots_.clear();
  textContent_.clear();
  made_.clear();
  name_ = {};
}

/// Reads the name from `at` on, and the unit that ends it.
void clsXMLTag::ReadName(std::size_t& at) {
  const auto dropped = [](char16_t unit) { return unit == u'<' || unit == u'/'; };
  while (at != raw_.size() && dropped(raw_[at])) ++at;
  name_.begin = at;
  // In one piece, as nearly always?
  while (at != raw_.size() && !EndsName(raw_[at]) && !dropped(raw_[at])) ++at;
  name_.length = at - name_.begin;
  std::size_t end = at;
  while (end != raw_.size() && !EndsName(raw_[end])) ++end;
  if (end != at) {
    made_.assign(raw_, name_.begin, end - name_.begin);
    std::erase_if(made_, dropped);
    name_ = {0, made_.size(), true};
  }
  at = std::min(end + 1, raw_.size());
}

void clsXMLTag::Add(Run name, Run value) {
  const TextView key = View(name);
  if (attributes_.size() >= kFew && (attributes_.size() + 1) * 2 > slots_.size()) {
    Index(std::max(4 * kFew, slots_.size() * 2));
  }
  if (Find(key) != nullptr) throw RuntimeError::DuplicateKey();

  const TextView raw = View(value);
  if (FindUnit(raw.data(), raw.data() + raw.size(), u'&') != raw.data() + raw.size()) {
    const Text plain = XMLUnescape(raw);
    value = {made_.size(), plain.size(), true};
    made_ += plain;
  }
  attributes_.push_back({name, value});
  if (!slots_.empty()) slots_[SlotOf(View(name))] = attributes_.size();
}

const clsXMLTag::Attribute* clsXMLTag::Find(TextView key) const {
  if (!slots_.empty()) {
    const std::size_t place = slots_[SlotOf(key)];
    return place == 0 ? nullptr : &attributes_[place - 1];
  }
  for (const Attribute& attribute : attributes_) {
    if (attribute.name.length == key.size() && SameText(View(attribute.name), key)) {
      return &attribute;
    }
  }
  return nullptr;
}

/// The slot that holds the place of `key`, or the free one where it belongs.
std::size_t clsXMLTag::SlotOf(TextView key) const {
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = static_cast<std::size_t>(Hash(key, seed_)) & mask;
  while (slots_[at] != 0 && !SameText(View(attributes_[slots_[at] - 1].name), key)) {
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
    slots_[SlotOf(View(attributes_[i].name))] = i + 1;
  }
}

TextView clsXMLTag::View(const Run& run) const {
  return TextView(run.made ? made_ : raw_).substr(run.begin, run.length);
}

}  // namespace marl
