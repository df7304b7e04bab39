#include "platform/memory/MemoryStrings.h"

#include "resources/strings/ids.h"

#define MARL_WIDE(text) u##text
#define MARL_STRING(id, text) {id, MARL_WIDE(text)},

namespace marl {

namespace {

struct Entry {
  int id;
  const char16_t* text;
};

constexpr Entry kEnglish[] = {
#include "resources/strings/en.inc"
};

constexpr Entry kGerman[] = {
#include "resources/strings/de.inc"
};

template <std::size_t size>
std::map<int, Text> TextsOf(const Entry (&entries)[size]) {
  std::map<int, Text> texts;
  for (const Entry& entry : entries) texts.emplace(entry.id, entry.text);
  return texts;
}

}  // namespace

MemoryStrings::MemoryStrings(std::string_view language) {
  if (language == "en") texts = TextsOf(kEnglish);
  if (language == "de") texts = TextsOf(kGerman);
}

bool MemoryStrings::Load(int id, Text& out) const {
  const auto found = texts.find(id);
  if (found == texts.end()) return false;
  out = found->second;
  return true;
}

}  // namespace marl
