#include "appearance/SkinSettings.h"

#include <algorithm>

#include "platform/RuntimeError.h"
#include "settings/cRegistry.h"

namespace marl {
namespace {

std::int32_t Any(std::int32_t stored) { return stored; }
// A number that is no set means the second one, not the default.
std::int32_t NormalIcons(std::int32_t stored) { return stored < 0 || stored > 3 ? 1 : stored; }
std::int32_t NormalBorderWidth(std::int32_t stored) { return stored == 1 ? 1 : 2; }
std::int32_t NormalTwoState(std::int32_t stored) { return stored == 0 ? 0 : kTwoStateOff; }

cRegistry OpenSkin(RegistryStore& store) {
  cRegistry registry(store);
  registry.ClassKey = kCurrentUser;
  registry.SectionKey = kSkinKey;
  registry.valueType = kRegDword;
  return registry;
}

}  // namespace

// clang-format off
const std::array<SkinParameter, kSkinParameterCount> kSkinParameters = {{
    {u"Angle",        u"angle",        2, &SkinSettings::Angle,          nullptr, Any},
    {u"Color1",       u"colour1",      0, &SkinSettings::Color1,         nullptr, Any},
    {u"Color2",       u"colour2",      1, &SkinSettings::Color2,         nullptr, Any},
    {u"Border1",      u"border1",      5, &SkinSettings::Border1,        nullptr, Any},
    {u"Border2",      u"border2",      6, &SkinSettings::Border2,        nullptr, Any},
    {u"BorderWidth",  u"borderwidth",  7, &SkinSettings::BorderWidth,    nullptr, NormalBorderWidth},
    {u"Text1",        u"text1",        3, &SkinSettings::Text1,          nullptr, Any},
    {u"Text2",        u"text2",        4, &SkinSettings::Text2,          nullptr, Any},
    {u"Icons",        u"icons",        8, &SkinSettings::Icons,          nullptr, NormalIcons},
    {u"TwoState",     u"twostate",     9, &SkinSettings::TwoStateOffset, nullptr, NormalTwoState},
    {u"IconsPerRow",  u"iconsperrow", 10, &SkinSettings::IconsPerRow,    nullptr, Any},
    {u"Font1",        u"font1",       11, nullptr, &SkinSettings::Font1,          nullptr},
    {u"Font2",        u"font2",       12, nullptr, &SkinSettings::Font2,          nullptr},
    {u"DisplayIcons", u"displayicons",13, nullptr, &SkinSettings::DisplayIcons,   nullptr},
}};
// clang-format on

SkinSettings ReadSkinValues(RegistryStore& store, const SkinSettings& defaults,
                            const NumberFormat& format) {
  SkinSettings skin = defaults;
  cRegistry registry = OpenSkin(store);
  const cRegistry::Reading reading(registry);
  for (const SkinParameter& parameter : kSkinParameters) {
    registry.ValueKey = parameter.value;
    if (parameter.number) {
      registry.Default = skin.*parameter.number;
      skin.*parameter.number = RegistryNumber(registry.Value(), format);
    } else {
      registry.valueType = kRegSz;
      registry.Default = skin.*parameter.text;
      skin.*parameter.text = RegistryText(registry.Value());
    }
  }
  return skin;
}

SkinSettings ReadSkin(RegistryStore& store, std::int32_t iconsPerRow, const NumberFormat& format) {
  SkinSettings defaults;
  defaults.IconsPerRow = iconsPerRow;
  SkinSettings skin = ReadSkinValues(store, defaults, format);
  for (const SkinParameter& parameter : kSkinParameters) {
    if (parameter.number) skin.*parameter.number = parameter.normal(skin.*parameter.number);
  }
  return skin;
}

void WriteSkin(RegistryStore& store, const SkinSettings& skin) {
  cRegistry registry = OpenSkin(store);
  for (const SkinParameter& parameter : kSkinParameters) {
    registry.ValueKey = parameter.value;
    if (parameter.number) {
      registry.Value(skin.*parameter.number);
    } else {
      registry.valueType = kRegSz;
      registry.Value(skin.*parameter.text);
    }
  }
}

std::vector<DisplayPosition> SplitDisplayIcons(TextView displayIcons, std::size_t most,
                                               const NumberFormat& format) {
  std::vector<DisplayPosition> order;
  // An empty text has no entry, not one empty entry.
  bool more = !displayIcons.empty();
  while (more && order.size() < most) {
    const std::size_t bar = displayIcons.find(u'|');
    const TextView entry = displayIcons.substr(0, bar);
    more = bar != TextView::npos;
    if (more) displayIcons.remove_prefix(bar + 1);
    order.push_back({CLng(entry.substr(0, 2), format),
                     CLng(entry.size() > 2 ? entry.substr(2) : TextView(), format)});
  }
  return order;
}

void CompleteOrder(std::vector<DisplayPosition>& order, std::size_t buttons) {
  if (order.size() < kStoredPositions) throw RuntimeError::SubscriptOutOfRange();
  while (order.size() < buttons) order.push_back({static_cast<std::int32_t>(order.size()), 1});
}

DisplayOrder ParseDisplayIcons(TextView displayIcons, const NumberFormat& format) {
  std::vector<DisplayPosition> positions = SplitDisplayIcons(displayIcons, kButtonCount, format);
  CompleteOrder(positions);
  DisplayOrder order;
  std::copy_n(positions.begin(), order.size(), order.begin());
  return order;
}

Text FormatDisplayIcons(std::span<const DisplayPosition> order) {
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
