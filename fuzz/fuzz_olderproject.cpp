#include "documents/OlderProject.h"
#include "fuzz/Mutators.h"
#include "platform/RuntimeError.h"
#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryProfile.h"
#include "platform/memory/MemoryRegistryStore.h"
#include "platform/memory/MemoryShell.h"
#include "platform/memory/MemoryStrings.h"
#include "platform/memory/OneFile.h"
#include "support/Numbers.h"
#include "tests/unit/FuzzTarget.h"

MARL_FUZZ_WORDS("[Target Files]", "[Languages]", "[Source Files]", "ShortLang", "Count", "Target",
                "File", "0", "1", "2", "10", "-1", "2147483647", "99999999999", "&HFF", "1.5", "=",
                "\r\n", "\"", "de", "fr", "a\\b.doc", " ")

namespace {

/// The values of the numbered keys below `count`, each asked for.
std::vector<marl::Text> Asked(const marl::clsCommon& common, marl::TextView section,
                              marl::TextView prefix, std::int32_t count, marl::TextView path) {
  std::vector<marl::Text> values;
  for (std::int32_t i = 0; i < count; ++i) {
    marl::Text value =
        common.GetINISetting(section, marl::Text(prefix) + marl::NumberText(i), u"", path);
    if (!value.empty()) values.push_back(std::move(value));
  }
  return values;
}

}  // namespace

// Any bytes as a project file of the older kind: numbers or the two known failures, and the lists
// that asking for each key would give.
MARL_FUZZ_TARGET(olderproject) {
  using namespace marl;
  OneFile file(data, size);
  MemoryDesktop desktop;
  MemoryProfile profile(file);
  MemoryRegistryStore registry;
  MemoryProcess process;
  MemoryShell shell;
  MemoryStrings resource;
  StringTable strings(resource);
  const clsCommon common({desktop, file, profile, registry, process, shell, strings});
  constexpr TextView kPath = u"C:\\P\\a.prj";
  const OlderProject project(file, common, kPath);

  const auto number = [](auto read) {
    try {
      return static_cast<std::int32_t>(read());
    } catch (const RuntimeError& error) {
      fuzz::Expect(error.number() == 13 || error.number() == 6, "no number, or too large a one");
      return std::int32_t{-1};
    }
  };
  number([&] { return project.ShortLang(); });
  const std::int32_t languages = number([&] { return project.LangCount(); });
  const std::int32_t documents = number([&] { return project.DocCount(); });
  for (const std::int32_t count : {languages, documents, std::int32_t{3}}) {
    const auto targets = project.Languages(count);
    const auto files = project.Documents(count);
    constexpr std::int32_t kSmall = 40;  // asking for each key takes long
    if (count > kSmall) continue;
    fuzz::Expect(targets == Asked(common, u"Languages", u"Target", count, kPath),
                 "the languages are those of the keys");
    fuzz::Expect(files == Asked(common, u"Source Files", u"File", count, kPath),
                 "the documents are those of the keys");
  }
}
