#include "platform/memory/MemoryStrings.h"

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

}  // namespace

MemoryStrings::MemoryStrings(std::string_view language) {
  if (language == "en") {
    for (const Entry& entry : kEnglish) texts.emplace(entry.id, entry.text);
  }
}

bool MemoryStrings::Load(int id, Text& out) const {
  const auto found = texts.find(id);
  if (found == texts.end()) return false;
  out = found->second;
  return true;
}

}  // namespace marl
