#include "settings/cRegistry.h"

#include "support/Numbers.h"
#include "support/Trim.h"

namespace marl {
namespace {

/// Adds double quotes, unless they are already there.
Text Quoted(Text path) {
  if (!path.starts_with(u'"')) path.insert(path.begin(), u'"');
  if (!path.ends_with(u'"')) path += u'"';
  return path;
}

Text OrUsual(TextView text, TextView usual) { return Text(text.empty() ? usual : text); }

}  // namespace

void cRegistry::CreateEXEAssociation(TextView exePath, TextView className,
                                     TextView classDescription, TextView extension,
                                     TextView openMenuText, bool supportPrint,
                                     TextView printMenuText, bool supportNew, TextView newMenuText,
                                     bool supportInstall, TextView installMenuText,
                                     std::int32_t defaultIconIndex) {
  const Text exe = Quoted(Text(Trim(exePath)));
  const Text ofClass(className);
  const auto verb = [&](const char16_t* key, const Text& menuText, const char16_t* arguments) {
    const Text section = ofClass + u"\\shell\\" + key;
    SetDualClassValue(section, menuText);
    SetDualClassValue(section + u"\\command", exe + arguments);
  };

  SetDualClassValue(u'.' + Text(extension), className);
  SetDualClassValue(className, classDescription);
  verb(u"open", OrUsual(openMenuText, u"&Open"), u" \"%1\"");
  if (supportPrint) verb(u"print", OrUsual(printMenuText, u"&Print"), u" /p \"%1\"");
  // The verb for installing is "add".
  if (supportInstall) {
    verb(u"add", OrUsual(installMenuText, u"&Install " + Text(extension)), u" /a \"%1\"");
  }
  if (supportNew) verb(u"new", OrUsual(newMenuText, u"&New"), u" /n \"%1\"");
  if (defaultIconIndex > -1) {
    SetDualClassValue(ofClass + u"\\DefaultIcon", exe + u',' + NumberText(defaultIconIndex));
  }
}

void cRegistry::CreateAdditionalEXEAssociations(TextView className,
                                                const std::vector<RegistryValue>& items) {
  if (items.empty() || items.size() % 3 != 0) return;
  SectionKey = className;
  if (!KeyExists()) return;
  for (std::size_t i = 0; i < items.size(); i += 3) {
    const Text section = Text(className) + u"\\shell\\" + RegistryText(items[i]);
    SetDualClassValue(section, RegistryText(items[i + 1]));
    SetDualClassValue(section + u"\\command", RegistryText(items[i + 2]));
  }
}

void cRegistry::SetDualClassValue(TextView section, TextView text) {
  valueType = kRegSz;
  SectionKey = section;
  ValueKey.clear();
  SetDualClassValue(text);
}

void cRegistry::SetDualClassValue(TextView text) {
  ClassKey = kClassesRoot;
  Value(Text(text));
  const Text section = SectionKey;
  ClassKey = kLocalMachine;
  SectionKey = u"SOFTWARE\\Classes\\" + section;
  Value(Text(text));
  SectionKey = section;
}

}  // namespace marl
