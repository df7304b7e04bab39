#include "settings/clsMRU.h"

#include <algorithm>

#include "support/Numbers.h"

namespace marl {
namespace {

Text ValueName(std::int32_t number) { return u"MRU" + NumberText(number); }

}  // namespace

void clsMRU::LoadList() {
  for (std::int32_t number = 1; number <= MaxLength; ++number) {
    Text text = RegistryText(registry_.GetRegistryValue(ValueName(number), Text()));
    if (!text.empty()) entries_.push_back(std::move(text));
  }
}

void clsMRU::SaveList() {
  registry_.CreateKey();
  for (std::int32_t number = 1; number <= MaxLength; ++number) {
    registry_.SetRegistryValue(ValueName(number), Item(number), kRegSz);
  }
}

void clsMRU::AddMRU(TextView text) {
  auto place = std::find_if(entries_.begin(), entries_.end(),
                            [&](const Text& entry) { return locale_.SameText(entry, text); });
  if (place == entries_.end()) {
    if (Count() < MaxLength) entries_.emplace_back();
    // A list of length 0 cannot take it.
    if (entries_.empty()) return;
    place = entries_.end() - 1;
  }
  std::rotate(entries_.begin(), place, place + 1);
  entries_.front() = text;
}

Text clsMRU::Item(std::int32_t index) const {
  return Holds(index) ? entries_[static_cast<std::size_t>(index) - 1] : Text();
}

void clsMRU::Item(std::int32_t index, TextView text) {
  if (Holds(index)) entries_[static_cast<std::size_t>(index) - 1] = text;
}

}  // namespace marl
