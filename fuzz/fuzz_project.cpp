#include "documents/clsQPRX.h"
#include "fuzz/Mutators.h"
#include "platform/RuntimeError.h"
#include "platform/memory/OneFile.h"
#include "tests/unit/FuzzTarget.h"

MARL_FUZZ_WORDS("<language lc=\"de\"/>", "<language", "</language>", "<document path=\"a.doc\"/>",
                "<document", " path=\"", " lc=\"", " description=\"French\"",
                "<target-files shortlang=\"yes\"/>", "<!DOCTYPE x>", "<!-- -->", "<![CDATA[", "]]>",
                "<?xml?>", "fr\\", "French\\", "\"", "/>", ">", "&amp;", "\xEF\xBB\xBF")

// Any bytes as a project file: a result or the one known failure, and lists as long as their
// counts.
MARL_FUZZ_TARGET(project) {
  using namespace marl;
  const OneFile file(data, size);
  clsQPRX project(file);
  try {
    project.ParseProjectFile(u"a.qprx");
  } catch (const RuntimeError& error) {
    fuzz::Expect(error.number() == 457, "only a duplicate attribute fails");
  }
  fuzz::Expect(project.LangCount >= 0 && project.DocCount >= 0, "counts are not negative");
  Text lc, description, path;
  for (std::int32_t i = 0; i < project.LangCount; ++i) {
    fuzz::Expect(project.GetLanguage(i, lc, description), "each language is there");
  }
  for (std::int32_t i = 0; i < project.DocCount; ++i) {
    fuzz::Expect(project.GetDocument(i, path), "each document is there");
  }
  lc = path = u"old";
  fuzz::Expect(!project.GetLanguage(project.LangCount, lc, description), "and no language more");
  fuzz::Expect(!project.GetDocument(project.DocCount, path), "and no document more");
  fuzz::Expect(lc == u"old" && path == u"old", "outputs stay unchanged");
}
