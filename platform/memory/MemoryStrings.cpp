#include "platform/memory/MemoryStrings.h"

#include <span>

#include "resources/strings/ids.h"

#define MARL_WIDE(text) u##text
#define MARL_STRING(id, text) {id, MARL_WIDE(text)},

namespace marl {

namespace {

struct Entry {
  int id;
  const char16_t* text;
};

struct Language {
  std::string_view code;
  std::span<const Entry> entries;
};

#include "resources/strings/languages.inc"  // written by the build: kLanguages

}  // namespace

MemoryStrings::MemoryStrings(std::string_view language) {
  for (const Language& known : kLanguages) {
    if (known.code != language) continue;
    for (const Entry& entry : known.entries) texts.emplace(entry.id, entry.text);
  }
}

std::vector<std::string> MemoryStrings::Languages() {
  std::vector<std::string> codes;
  for (const Language& known : kLanguages) {
    if (known.code != kMarked) codes.emplace_back(known.code);
  }
  return codes;
}

bool MemoryStrings::Load(int id, Text& out) const {
  const auto found = texts.find(id);
  if (found == texts.end()) return false;
  out = found->second;
  return true;
}

}  // namespace marl
