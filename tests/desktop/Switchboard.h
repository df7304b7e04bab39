#pragma once

#include <gtest/gtest.h>

#include "tests/desktop/Harness.h"

namespace marl::desktop {

inline constexpr wchar_t kDemonstrationQuestion[] =
    L"Would you like to launch a demonstration which shows you how to translate in Marl?";
inline constexpr wchar_t kWizardQuestion[] =
    L"Would you like to start the translation wizard when you start Marl?";

inline constexpr int kEdit = 5;
inline constexpr int kChangeServer = 6;
inline constexpr int kTrackProjects = 7;
inline constexpr int kAdministrator = 8;
inline constexpr int kUtilities = 9;
inline constexpr int kQaCheck = 10;
inline constexpr int kExit = 17;

/// Private settings; the first run is over unless a test says otherwise.
class SwitchboardTest : public testing::Test {
 protected:
  SwitchboardTest() { settings.Set(L"FirstRun", L"N"); }

  static Started Start(const SuiteFolder& suite, const std::wstring& program,
                       const std::wstring& arguments = {}, int show = SW_SHOWNORMAL) {
    return {program, suite.path() + L"\\" + program, arguments, suite.path(), show};
  }

  /// Closes the main form as its user does, and waits for the end of the process.
  static testing::AssertionResult Close(const RunningMarl& marl) {
    const HWND window = marl.Window();
    if (!window) return testing::AssertionFailure() << "there is no window";
    PostMessageW(window, WM_CLOSE, 0, 0);
    const auto code = marl.WaitForExit();
    if (!code) return testing::AssertionFailure() << "it still runs";
    if (*code != 0) return testing::AssertionFailure() << "exit code " << *code;
    return testing::AssertionSuccess();
  }

  /// The menu that is open, if any.
  static HWND MenuOnScreen() {
    const HWND menu = FindWindowW(L"#32768", nullptr);
    return menu && IsWindowVisible(menu) ? menu : nullptr;
  }
  /// Opens the tray menu by the message that the shell sends, and clicks its last item, Exit.
  /// (Tray_test clicks the real icon.)
  static testing::AssertionResult ChooseExitInTheTray(HWND main) {
    PostMessageW(main, RegisterWindowMessageW(L"msgMarlMenu"), 0, WM_RBUTTONUP);
    HWND menu = nullptr;
    const bool open = WaitUntil([&] {
      menu = MenuOnScreen();
      GUITHREADINFO thread = {};
      thread.cbSize = sizeof thread;
      return menu && GetGUIThreadInfo(GetWindowThreadProcessId(main, nullptr), &thread) &&
             thread.hwndCapture;
    });
    if (!open) return testing::AssertionFailure() << "there is no menu";
    RECT area = {};
    GetWindowRect(menu, &area);
    constexpr int kItems = 18;
    Click((area.left + area.right) / 2, area.bottom - (area.bottom - area.top) / (2 * kItems));
    return testing::AssertionSuccess();
  }

  /// Another program sends Marl the project, by DDE.
  static bool Tell(const std::wstring& project) {
    DdeClient client(DdeClient::Kind::kWide);
    return client.Connect(L"Marl", L"Marl") && client.Execute(L"PRJ " + project);
  }

  Settings settings;
};

}  // namespace marl::desktop
