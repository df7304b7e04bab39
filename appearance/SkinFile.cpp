#include "appearance/SkinFile.h"

#include "documents/clsXMLEngine.h"
#include "documents/clsXMLTag.h"
#include "platform/RuntimeError.h"

namespace marl {
namespace {

struct NumberParameter {
  TextView name;
  SkinParameter parameter;
  std::int32_t SkinSettings::*field;
};
struct TextParameter {
  TextView name;
  SkinParameter parameter;
  Text SkinSettings::*field;
};

// In the order of the file.
constexpr NumberParameter kNumbers[] = {
    {u"colour1", SkinParameter::colour1, &SkinSettings::Color1},
    {u"colour2", SkinParameter::colour2, &SkinSettings::Color2},
    {u"angle", SkinParameter::angle, &SkinSettings::Angle},
    {u"text1", SkinParameter::text1, &SkinSettings::Text1},
    {u"text2", SkinParameter::text2, &SkinSettings::Text2},
    {u"border1", SkinParameter::border1, &SkinSettings::Border1},
    {u"border2", SkinParameter::border2, &SkinSettings::Border2},
    {u"borderwidth", SkinParameter::borderwidth, &SkinSettings::BorderWidth},
    {u"icons", SkinParameter::icons, &SkinSettings::Icons},
    {u"twostate", SkinParameter::twostate, &SkinSettings::TwoStateOffset},
    {u"iconsperrow", SkinParameter::iconsperrow, &SkinSettings::IconsPerRow},
};
constexpr TextParameter kTexts[] = {
    {u"font1", SkinParameter::font1, &SkinSettings::Font1},
    {u"font2", SkinParameter::font2, &SkinSettings::Font2},
    {u"displayicons", SkinParameter::displayicons, &SkinSettings::DisplayIcons},
};

std::int32_t Normal(SkinParameter parameter, std::int32_t number) {
  switch (parameter) {
    case SkinParameter::borderwidth: return NormalBorderWidth(number);
    case SkinParameter::icons: return NormalIcons(number);
    case SkinParameter::twostate: return NormalTwoState(number);
    default: return number;
  }
}

void Dispatch(TextView name, TextView value, SkinTarget& target, const NumberFormat& format) {
  if (IsNumeric(value, format)) {
    const std::int32_t number = CLng(value, format);
    for (const NumberParameter& known : kNumbers) {
      if (known.name == name) target.SetNumber(known.parameter, Normal(known.parameter, number));
    }
  } else {
    for (const TextParameter& known : kTexts) {
      if (known.name == name) target.SetText(known.parameter, value);
    }
  }
}

Text ParameterLine(TextView name, TextView value) {
  Text line = u"<parameter name=\"";
  line += name;
  line += u"\" value=\"";
  line += value;
  line += u"\"/>";
  return line;
}

}  // namespace

Text PrepareSkinFolder(FileSystem& files, TextView applicationFolder) {
  Text folder(applicationFolder);
  folder += u"\\Skins";
  if (!files.FolderExists(folder)) files.MakeFolder(folder);
  return folder;
}

bool LoadSkinFile(const FileSystem& files, TextView path, SkinTarget& target,
                  const NumberFormat& format) {
  clsXMLEngine document(files);
  if (!document.OpenDocument(path)) return false;
  clsXMLTag tag;
  TextView token;
  for (;;) {
    const XMLTokenKind kind = document.GetToken(token);
    if (kind == xtEndOfDocument) return true;
    // Parameters count wherever they stand: nothing asks for the root element.
    if (kind != xtEmptyTag) continue;
    // A tag with an attribute twice counts as far as it was read.
    Skip([&] { tag.ParseTag(token); });
    if (tag.name() != u"parameter") continue;
    Skip([&] {
      Dispatch(tag.AttributeValue(u"name"), tag.AttributeValue(u"value"), target, format);
    });
  }
}

void SaveSkinFile(modUTF8& writer, TextView path, const SkinSettings& skin) {
  constexpr std::uint8_t kParameter = modUTF8::kIndentBefore | modUTF8::kUnindentAfter;
  const auto write = [&](std::uint8_t flags, TextView line) {
    Skip([&] { writer.WriteUTF8Line(flags, line); });
  };

  Skip([&] { writer.OpenUTF8File(path, false); });
  write(0, u"<?xml version=\"1.0\"?>");
  write(0, u"<marlskin>");
  for (const NumberParameter& known : kNumbers) {
    const std::int32_t number = skin.*known.field;
    write(kParameter, ParameterLine(known.name, NumberText(number)));
  }
  for (const TextParameter& known : kTexts) {
    write(kParameter, ParameterLine(known.name, XMLEscape(skin.*known.field)));
  }
  write(0, u"</marlskin>");
  Skip([&] { writer.CloseUTF8File(); });
}

}  // namespace marl
