#pragma once

#include <string>
#include <vector>

#include "tests/desktop/Dialog.h"
#include "tests/desktop/Switchboard.h"
#include "tests/desktop/Words.h"

namespace marl::desktop {

/// A day without a mouse, in every language: what the program can do is reached and used by keys.
/// The mouse rests in a corner of the screen. The tests of this suite run at 96 and at 192 dpi.
class KeyboardDay : public SwitchboardTest, public testing::WithParamInterface<std::string> {
 protected:
  KeyboardDay() { MoveMouse(0, 0); }

  void SetUp() override {
    ASSERT_TRUE(CopyFileW(g_programs.In(GetParam()).c_str(), suite.marl().c_str(), FALSE));
  }

  /// Waits for the main form, and closes the splash by a key once start-up is complete.
  static HWND PastSplash(const RunningMarl& marl) {
    HWND main = nullptr;
    WaitUntil([&] {
      if (const HWND splash = marl.Splash()) PostMessageW(splash, WM_CHAR, L' ', 0);
      main = marl.Window();
      return (main && IsWindowVisible(main) && !marl.Splash()) || !marl.Running();
    });
    return main;
  }
  /// Presses a key once the window takes it.
  static bool Press(HWND window, const std::vector<WORD>& held, WORD key) {
    if (!WaitUntil([&] { return IsWindowEnabled(window) != FALSE; })) return false;
    if (!BringForward(window)) return false;
    Chord(held, key);
    return true;
  }
  /// Alt and the underlined letter of a text.
  bool PressAccessKey(HWND window, int text) const {
    const wchar_t letter = words.AccessKey(text);
    return letter && Press(window, {VK_MENU}, LOBYTE(VkKeyScanW(letter)));
  }
  /// Goes with Tab to the button or box with this text, and presses it.
  bool TabAndPress(const Dialog& dialog, const std::wstring& caption) const {
    if (!dialog.TabTo(dialog.Button(caption.c_str()))) return false;
    Chord({}, VK_SPACE);
    return true;
  }
  bool TabAndPress(const Dialog& dialog, int text) const {
    return TabAndPress(dialog, words(text));
  }
  /// Goes to a box, ticks or clears it, and waits until that is seen.
  bool Toggle(const Dialog& dialog, int text) const {
    const HWND box = dialog.Button(words(text).c_str());
    const LRESULT before = SendMessageW(box, BM_GETCHECK, 0, 0);
    return TabAndPress(dialog, text) &&
           WaitUntil([&] { return SendMessageW(box, BM_GETCHECK, 0, 0) != before; });
  }
  /// Types a text into the field that has the focus, in place of what is in it.
  static bool Replace(const Dialog& dialog, const std::wstring& text) {
    const HWND field = dialog.Focus();
    Chord({}, VK_HOME);
    Chord({VK_SHIFT}, VK_END);
    Keys(text);
    return WaitUntil([&] { return TextOf(field) == text; });
  }
  /// Opens the drop-down list, goes to a row, and closes it.
  static bool Choose(const Dialog& dialog, HWND combo, int row) {
    const auto isOpen = [&] { return SendMessageW(combo, CB_GETDROPPEDSTATE, 0, 0) != 0; };
    if (!dialog.TabTo(combo)) return false;
    Chord({}, VK_F4);
    if (!WaitUntil(isOpen)) return false;
    const auto selected = [&] { return SendMessageW(combo, CB_GETCURSEL, 0, 0); };
    while (selected() != row) {
      const LRESULT before = selected();
      Chord({}, before < row ? VK_DOWN : VK_UP);
      if (!WaitUntil([&] { return selected() != before; })) return false;
    }
    Chord({VK_MENU}, VK_UP);
    return WaitUntil([&] { return !isOpen(); });
  }
  /// Presses Enter (or another key) and waits until the dialog is closed. While its window is
  /// there, hidden, the activation may still move, and keys would be lost.
  static bool Close(const Dialog& dialog, WORD key) {
    return Press(dialog.window(), {}, key) && WaitUntil([&] { return !IsWindow(dialog.window()); });
  }
  using SwitchboardTest::Close;

  /// Closes a message with this text by Enter; with No if `no`.
  testing::AssertionResult Answer(const RunningMarl& marl, int text, bool no = false) const {
    const MessageBoxWindow box = marl.WaitForBox();
    if (!box) return testing::AssertionFailure() << "no message box came";
    if (!box.Text().starts_with(words(text))) {
      return testing::AssertionFailure() << ToUtf8(box.Text());
    }
    if (no && !Press(box.window(), {}, VK_RIGHT)) {
      return testing::AssertionFailure() << "it takes no keys";
    }
    if (!Press(box.window(), {}, VK_RETURN)) {
      return testing::AssertionFailure() << "it takes no keys";
    }
    const bool closed =
        WaitUntil([&] { return !IsWindow(box.window()) || !IsWindowVisible(box.window()); });
    return closed ? testing::AssertionSuccess() : testing::AssertionFailure() << "it stays";
  }
  /// Opens the options from the panel, by their shortcut.
  Dialog OpenOptions(const RunningMarl& marl, HWND main) const {
    Press(main, {VK_SHIFT}, VK_F6);
    return {marl, words(IDS_OPTIONS_TITLE)};
  }
  static std::wstring Status(HWND main) {
    return TextOf(FindWindowExW(main, nullptr, L"msctls_statusbar32", nullptr));
  }
  /// Moves the panel's focus on, and waits until the status line has this button's text.
  bool FocusOn(HWND main, WORD key, int button) const {
    if (!Press(main, {}, key)) return false;
    return WaitUntil([&] { return Status(main) == words(IDS_TIP_ANALYSE + button); });
  }

  const Words words{GetParam()};
  const SuiteFolder suite;
};

}  // namespace marl::desktop
