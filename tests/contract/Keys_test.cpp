// Keys on a form without controls that can have the focus: what reaches it, and its focus cues.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/forms/Controls.h"
#include "platform/memory/MemoryDesktop.h"
#include "tests/contract/DesktopWorld.h"
#ifdef _WIN32
#include "platform/win32/DesktopWin32.h"
#endif

namespace marl {
namespace {

using Heard = std::vector<std::string>;

class KeysForm : public Form {
 public:
  explicit KeysForm(Desktop& desktop) : Form(desktop, "frmKeys") {
    Design = {4500, 3000};
    Border = BorderStyle::kFixedSingle;
    KeyPreview = true;
    menu.SetCaption(u"Menu");
    entry.SetCaption(u"Entry");
    entry.Shortcut = {kKeyF6};
    entry.Click = [this] { heard.emplace_back("entry"); };
  }
  Menu menu{*this, "mnuMenu"};
  Menu entry{*this, "mnuEntry", -1, &menu};
  Heard heard;
  bool takes = true;

 protected:
  bool OnKeyDown(int key, int state) override {
    heard.push_back("key " + std::to_string(key) + ' ' + std::to_string(state));
    return takes;
  }
  void OnKeyPress(char16_t character) override {
    heard.push_back("character " + std::to_string(int{character}));
  }
  void OnDeactivate() override { heard.emplace_back("inactive"); }
  void OnFocusCues() override { heard.push_back(ShowsFocus() ? "cues" : "no cues"); }
};

class KeysContract : public BackendTest {
 protected:
  KeysContract() {
    form.Show();
    desktop->DoEvents();
    form.heard.clear();
  }
  ~KeysContract() override { form.Unload(); }

  /// Presses a key without others. `character` is what the platform makes of it, or 0.
  void Press(int key, char16_t character, bool repeated = false) {
#ifdef _WIN32
    if (real()) {
      const UINT scan = MapVirtualKeyW(static_cast<UINT>(key), MAPVK_VK_TO_VSC);
      PostMessageW(static_cast<HWND>(LongToHandle(form.hWnd())), WM_KEYDOWN,
                   static_cast<WPARAM>(key),
                   static_cast<LPARAM>(1 | scan << 16 | (repeated ? 1u << 30 : 0)));
      desktop->DoEvents();
      return;
    }
#endif
    desktop->Event([&] {
      if (form.UserShortcut({key})) return;
      form.UserKeyDown(key, repeated ? kRepeated : 0);
      if (character) form.UserKey(character);
    });
  }

  /// The platform shows or hides the focus.
  void SetCues(bool shown) {
#ifdef _WIN32
    if (real()) {
      SendMessageW(static_cast<HWND>(LongToHandle(form.hWnd())), WM_UPDATEUISTATE,
                   MAKEWPARAM(shown ? UIS_CLEAR : UIS_SET, UISF_HIDEFOCUS), 0);
      return;
    }
#endif
    form.PeerFocusCues(shown);
  }

  std::unique_ptr<Desktop> desktop = NewDesktop(GetParam());
  KeysForm form{*desktop};
};

TEST_P(KeysContract, KeyArrivesAndThenItsCharacterWhetherTakenOrNot) {
  for (const bool takes : {true, false}) {
    form.takes = takes;
    form.heard.clear();
    Press(kKeyTab, u'\t');
    Press(kKeySpace, u' ');
    Press('S', u's');
    EXPECT_EQ(form.heard, (Heard{"key 9 0", "character 9", "key 32 0", "character 32", "key 83 0",
                                 "character 115"}));
  }
}

TEST_P(KeysContract, ArrowsHaveNoCharacter) {
  for (int key = kKeyPageUp; key <= kKeyDown; ++key) Press(key, 0);
  EXPECT_EQ(form.heard, (Heard{"key 33 0", "key 34 0", "key 35 0", "key 36 0", "key 37 0",
                               "key 38 0", "key 39 0", "key 40 0"}));
}

TEST_P(KeysContract, HeldKeyIsARepetition) {
  Press(kKeyRight, 0, true);
  EXPECT_EQ(form.heard, (Heard{"key 39 4"}));
}

TEST_P(KeysContract, ShortcutsOfItemsComeFirst) {
  Press(kKeyF6, 0);
  EXPECT_EQ(form.heard, (Heard{"entry"}));
}

TEST_P(KeysContract, HiddenFocusIsSeenOnceTheFormShowsIt) {
  SetCues(false);
  EXPECT_FALSE(form.ShowsFocus());
  form.heard.clear();
  form.ShowFocus();
  EXPECT_TRUE(form.ShowsFocus());
  form.ShowFocus();
  EXPECT_EQ(form.heard, (Heard{"cues"})) << "only the change is reported";
}

TEST_P(KeysContract, ChangesOfTheCuesAreReported) {
  SetCues(false);
  form.heard.clear();
  SetCues(true);
  SetCues(true);
  SetCues(false);
#ifdef _WIN32
  if (real()) {
    SendMessageW(static_cast<HWND>(LongToHandle(form.hWnd())), WM_UPDATEUISTATE,
                 MAKEWPARAM(UIS_CLEAR, UISF_HIDEACCEL), 0);
  }
#endif
  EXPECT_EQ(form.heard, (Heard{"cues", "no cues"})) << "access keys are another matter";
}

TEST_P(KeysContract, AnotherActiveWindowIsReported) {
#ifdef _WIN32
  if (real()) {
    SendMessageW(static_cast<HWND>(LongToHandle(form.hWnd())), WM_ACTIVATE, WA_INACTIVE, 0);
  }
#endif
  if (!real()) static_cast<MemoryDesktop&>(*desktop).SwitchAway();
  EXPECT_EQ(form.heard, (Heard{"inactive"}));
}

MARL_OVER_ALL_BACKENDS(KeysContract);

}  // namespace
}  // namespace marl
