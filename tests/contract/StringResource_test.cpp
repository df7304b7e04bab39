// Built once a language, with that language's texts as the program's resource: what the program
// loads by number is what stands in the file.

#include <gtest/gtest.h>

#include "platform/memory/MemoryStrings.h"
#include "platform/win32/StringResourceWin32.h"

namespace marl {
namespace {

TEST(StringResource, HoldsEveryTextOfItsLanguageAndNoOther) {
  const MemoryStrings expected(MARL_TEST_LANGUAGE);
  ASSERT_FALSE(expected.texts.empty());
  const win32::StringResourceWin32 resource;
  for (int id = -1; id <= 0x10000; ++id) {
    Text text = u"untouched";
    const auto found = expected.texts.find(id);
    const bool there = found != expected.texts.end();
    ASSERT_EQ(resource.Load(id, text), there) << id;
    ASSERT_EQ(text, there ? found->second : u"untouched") << id;
  }
}

}  // namespace
}  // namespace marl
