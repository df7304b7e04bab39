#include "appearance/SkinFile.h"

#include <algorithm>

#include "documents/clsXMLEngine.h"
#include "documents/clsXMLTag.h"
#include "platform/RuntimeError.h"

namespace marl {
namespace {

void Dispatch(TextView name, TextView value, SkinTarget& target, const NumberFormat& format) {
  const bool numeric = IsNumeric(value, format);
  const std::int32_t number = numeric ? CLng(value, format) : 0;
  for (const SkinParameter& known : kSkinParameters) {
    if (known.name != name) continue;
    if (numeric && known.number) target.SetNumber(known.number, known.normal(number));
    if (!numeric && known.text) target.SetText(known.text, value);
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
    // Parameters count anywhere in the file; the root element is not checked.
    if (kind != xtEmptyTag) continue;
    // Of a tag with a duplicate attribute, the attributes before it count.
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
  for (int line = 0; line < static_cast<int>(kSkinParameterCount); ++line) {
    const auto known = std::find_if(kSkinParameters.begin(), kSkinParameters.end(),
                                    [&](const SkinParameter& one) { return one.line == line; });
    if (known == kSkinParameters.end()) continue;
    write(kParameter, ParameterLine(known->name, known->number ? NumberText(skin.*known->number)
                                                               : XMLEscape(skin.*known->text)));
  }
  write(0, u"</marlskin>");
  Skip([&] { writer.CloseUTF8File(); });
}

}  // namespace marl
