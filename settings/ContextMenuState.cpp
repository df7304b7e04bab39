#include "settings/ContextMenuState.h"

#include "settings/cRegistry.h"

namespace marl {

bool ContextMenuEnabled(RegistryStore& store, TextView label) {
  cRegistry registry(store);
  registry.ClassKey = kClassesRoot;
  registry.SectionKey = u".rtf";
  registry.ValueKey = u"";
  registry.valueType = kRegSz;
  // Without a class, the entry is under the extension itself.
  registry.Default = Text(u".rtf");
  const Text ofClass = RegistryText(registry.Value());
  registry.SectionKey = ofClass + u"\\shell\\" + Text(label) + u"\\command";
  registry.Default = Text();
  return !RegistryText(registry.Value()).empty();
}

}  // namespace marl
