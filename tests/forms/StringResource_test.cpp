// A program has the texts of its language as a resource: what it loads by id is what the file says.

#include <gtest/gtest.h>

#include "platform/memory/MemoryStrings.h"
#include "platform/win32/StringResourceWin32.h"
#include "tests/forms/Language.h"

namespace marl {
namespace {

TEST(StringResource, HoldsEveryTextOfItsLanguageAndNoOther) {
  const MemoryStrings expected(g_language);
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
