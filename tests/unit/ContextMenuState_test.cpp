#include "settings/ContextMenuState.h"

#include <gtest/gtest.h>

#include "platform/memory/MemoryRegistryStore.h"

namespace marl {
namespace {

class ContextMenuState : public testing::Test {
 protected:
  void Put(const NarrowText& path, const NarrowText& text, std::uint32_t kind = kRegSz) {
    store.Plant(kClassesRoot, path, "", kind, text + '\0');
  }
  bool Enabled() { return ContextMenuEnabled(store, u"Translate with Marl"); }

  MemoryRegistryStore store;
};

constexpr const char* kEntry = "\\shell\\Translate with Marl\\command";

TEST_F(ContextMenuState, NothingStoredIsDisabled) { EXPECT_FALSE(Enabled()); }

TEST_F(ContextMenuState, ACommandInTheClassOfRtfIsEnabled) {
  Put(".rtf", "Word.RTF.8");
  EXPECT_FALSE(Enabled());
  Put(NarrowText("Word.RTF.8") + kEntry, "\"C:\\Suite\\Q17Shell.exe\" \"%1\"");
  EXPECT_TRUE(Enabled());
}

TEST_F(ContextMenuState, TheCommandsTextDoesNotMatter) {
  Put(".rtf", "Word.RTF.8");
  Put(NarrowText("Word.RTF.8") + kEntry, "x");
  EXPECT_TRUE(Enabled());
  Put(NarrowText("Word.RTF.8") + kEntry, "%SystemRoot%\\x.exe", kRegExpandSz);
  EXPECT_TRUE(Enabled());
  Put(NarrowText("Word.RTF.8") + kEntry, "");
  EXPECT_FALSE(Enabled()) << "but it is not empty";
}

TEST_F(ContextMenuState, WithoutAClassTheExtensionItselfIsUsed) {
  Put(NarrowText(".rtf") + kEntry, "x");
  EXPECT_TRUE(Enabled());
  Put(".rtf", "Word.RTF.8");
  EXPECT_FALSE(Enabled()) << "the class counts where there is one";
}

TEST_F(ContextMenuState, AnEmptyClassHasNoEntry) {
  Put(".rtf", "");
  Put(NarrowText(".rtf") + kEntry, "x");
  EXPECT_FALSE(Enabled()) << "the class is there and is the empty text";
  Put(kEntry, "x");
  EXPECT_FALSE(Enabled());
}

TEST_F(ContextMenuState, ForeignKindsCountAsTheTextThatTheyMake) {
  Put(".rtf", "Word.RTF.8");
  store.Plant(kClassesRoot, NarrowText("Word.RTF.8") + kEntry, "", kRegDword, NarrowText(4, '\0'));
  EXPECT_TRUE(Enabled()) << "a number's text is not empty";
  store.Plant(kClassesRoot, NarrowText("Word.RTF.8") + kEntry, "", kRegBinary, "");
  EXPECT_FALSE(Enabled());
  store.Plant(kClassesRoot, ".rtf", "", kRegDword, NarrowText("\5\0\0\0", 4));
  EXPECT_FALSE(Enabled());
  Put(NarrowText("5") + kEntry, "x");
  EXPECT_TRUE(Enabled());
}

TEST_F(ContextMenuState, TheEntryIsLookedForBelowTheClassesOfTheMachineToo) {
  store.Plant(kLocalMachine, "Software\\Classes\\.rtf", "", kRegSz, NarrowText("C\0", 2));
  store.Plant(kLocalMachine, NarrowText("Software\\Classes\\C") + kEntry, "", kRegSz,
              NarrowText("x\0", 2));
  EXPECT_TRUE(Enabled());
}

TEST_F(ContextMenuState, AnEntryAddedInAnotherLanguageReadsAsAbsent) {
  Put(".rtf", "Word.RTF.8");
  Put(NarrowText("Word.RTF.8") + kEntry, "x");
  EXPECT_FALSE(ContextMenuEnabled(store, u"Mit Marl \u00FCbersetzen"));
}

}  // namespace
}  // namespace marl
