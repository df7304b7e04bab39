#include "settings/SegmentationRules.h"

#include <set>

#include "settings/clsRegistry.h"
#include "support/Numbers.h"

namespace marl {

namespace {

constexpr TextView kDontSplit = u"DontSplit";
constexpr TextView kForceSplit = u"ForceSplit";

clsRegistry RulesKey(RegistryStore& store) {
  clsRegistry registry(store);
  registry.hkey = kCurrentUser;
  registry.KeyRoot = u"Software\\Oru\\Marl";
  registry.Subkey = u"Segmentation";
  return registry;
}

Text ValueName(TextView prefix, std::size_t number) {
  return Text(prefix) + NumberText(static_cast<std::int64_t>(number));
}

Bytes UnitBytes(TextView text) {
  Bytes bytes;
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<std::uint8_t>(unit & 0xFF));
    bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
  }
  return bytes;
}

std::vector<Text> LoadList(clsRegistry& registry, TextView prefix) {
  std::vector<Text> list;
  for (;;) {
    Text rule = RegistryText(registry.GetRegistryValue(ValueName(prefix, list.size() + 1), Text()));
    if (rule.empty()) return list;
    list.push_back(std::move(rule));
  }
}

}  // namespace

SegmentationRules SegmentationRules::Load(RegistryStore& store) {
  clsRegistry registry = RulesKey(store);
  SegmentationRules rules;
  rules.dontSplit = LoadList(registry, kDontSplit);
  rules.forceSplit = LoadList(registry, kForceSplit);
  return rules;
}

void SegmentationRules::Store(RegistryStore& store) const {
  clsRegistry registry = RulesKey(store);
  registry.DeleteKey(registry.Subkey);
  std::set<Text> stored;
  const auto write = [&](TextView prefix, const std::vector<Text>& list) {
    std::size_t number = 0;
    for (const Text& rule : list) {
      if (rule.empty() || !stored.insert(rule).second) continue;
      if (stored.size() == 1) registry.CreateKey();
      const Text name = ValueName(prefix, ++number);
      if (store.FromNarrow(store.ToNarrow(rule)) == rule) {
        registry.SetRegistryValue(name, rule, kRegSz);
      } else {
        registry.SetRegistryValue(name, UnitBytes(rule), kRegBinary);
      }
    }
  };
  write(kDontSplit, dontSplit);
  write(kForceSplit, forceSplit);
}

}  // namespace marl
