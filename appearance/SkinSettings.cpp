#include "appearance/SkinSettings.h"

#include "platform/RuntimeError.h"
#include "settings/cRegistry.h"

namespace marl {
namespace {

struct NumberValue {
  TextView name;
  std::int32_t SkinSettings::*field;
};
struct TextValue {
  TextView name;
  Text SkinSettings::*field;
};

// In the order in which the values are read and written.
constexpr NumberValue kNumbers[] = {
    {u"Angle", &SkinSettings::Angle},
    {u"Color1", &SkinSettings::Color1},
    {u"Color2", &SkinSettings::Color2},
    {u"Border1", &SkinSettings::Border1},
    {u"Border2", &SkinSettings::Border2},
    {u"BorderWidth", &SkinSettings::BorderWidth},
    {u"Text1", &SkinSettings::Text1},
    {u"Text2", &SkinSettings::Text2},
    {u"Icons", &SkinSettings::Icons},
    {u"TwoState", &SkinSettings::TwoStateOffset},
    {u"IconsPerRow", &SkinSettings::IconsPerRow},
};
constexpr TextValue kTexts[] = {
    {u"Font1", &SkinSettings::Font1},
    {u"Font2", &SkinSettings::Font2},
    {u"DisplayIcons", &SkinSettings::DisplayIcons},
};

/// What a value of any kind gives where a 32-bit integer is wanted.
std::int32_t ToNumber(const RegistryValue& value, const NumberFormat& format) {
  std::int32_t number = 0;
  if (RegistryInteger(value, number)) return number;
  if (const Text* const text = std::get_if<Text>(&value)) return CLng(*text, format);
  if (std::holds_alternative<Bytes>(value)) throw RuntimeError::TypeMismatch();
  return 0;
}

cRegistry OpenSkin(RegistryStore& store) {
  cRegistry registry(store);
  registry.ClassKey = kCurrentUser;
  registry.SectionKey = kSkinKey;
  registry.valueType = kRegDword;
  return registry;
}

}  // namespace

std::int32_t NormalIcons(std::int32_t stored) { return stored < 0 || stored > 3 ? 1 : stored; }

std::int32_t NormalBorderWidth(std::int32_t stored) { return stored == 1 ? 1 : 2; }

std::int32_t NormalTwoState(std::int32_t stored) { return stored == 0 ? 0 : 18; }

SkinSettings ReadSkinValues(RegistryStore& store, const SkinSettings& defaults,
                            const NumberFormat& format) {
  SkinSettings skin = defaults;
  cRegistry registry = OpenSkin(store);
  for (const NumberValue& value : kNumbers) {
    registry.Default = skin.*value.field;
    registry.ValueKey = value.name;
    skin.*value.field = ToNumber(registry.Value(), format);
  }
  registry.valueType = kRegSz;
  for (const TextValue& value : kTexts) {
    registry.Default = skin.*value.field;
    registry.ValueKey = value.name;
    skin.*value.field = RegistryText(registry.Value());
  }
  return skin;
}

SkinSettings ReadSkin(RegistryStore& store, std::int32_t iconsPerRow, const NumberFormat& format) {
  SkinSettings defaults;
  defaults.IconsPerRow = iconsPerRow;
  SkinSettings skin = ReadSkinValues(store, defaults, format);
  skin.BorderWidth = NormalBorderWidth(skin.BorderWidth);
  skin.Icons = NormalIcons(skin.Icons);
  skin.TwoStateOffset = NormalTwoState(skin.TwoStateOffset);
  return skin;
}

void WriteSkin(RegistryStore& store, const SkinSettings& skin) {
  cRegistry registry = OpenSkin(store);
  for (const NumberValue& value : kNumbers) {
    registry.ValueKey = value.name;
    registry.Value(skin.*value.field);
  }
  registry.valueType = kRegSz;
  for (const TextValue& value : kTexts) {
    registry.ValueKey = value.name;
    registry.Value(skin.*value.field);
  }
}

DisplayOrder ParseDisplayIcons(TextView displayIcons, const NumberFormat& format) {
  DisplayOrder order;
  // An empty text has no entry at all, not an empty one.
  bool more = !displayIcons.empty();
  for (DisplayPosition& position : order) {
    if (!more) throw RuntimeError::SubscriptOutOfRange();
    const std::size_t bar = displayIcons.find(u'|');
    const TextView entry = displayIcons.substr(0, bar);
    more = bar != TextView::npos;
    if (more) displayIcons.remove_prefix(bar + 1);
    position.button = CLng(entry.substr(0, 2), format);
    position.shown = CLng(entry.size() > 2 ? entry.substr(2) : TextView(), format);
  }
  return order;
}

Text FormatDisplayIcons(const DisplayOrder& order) {
  Text text;
  for (const DisplayPosition& position : order) {
    if (!text.empty()) text += u'|';
    if (position.button >= 0 && position.button < 10) text += u'0';
    text += NumberText(position.button);
    text += position.shown != 0 ? u'1' : u'0';
  }
  return text;
}

}  // namespace marl
