#include <cstdlib>
#include <iostream>
#include <random>

#include "tests/desktop/Switchboard.h"

// A random user on the real program: clicks, keys, shortcuts, in whatever window is in front. The
// program neither crashes nor hangs nor stays in a dialog, and ends wherever the user exits.

namespace marl::desktop {

namespace {

constexpr int kUsualActs = 400;
constexpr int kActsToALeave = 40;
constexpr int kWarmUp = 40;    ///< actions until everything that opens only once has opened
constexpr int kStretch = 150;  ///< actions in one process in which a leak would show
constexpr int kMostStretches = 10;

/// A number from the environment, for longer runs.
int NumberFrom(const wchar_t* name, int otherwise) {
  const std::wstring text = Environment(name);
  return text.empty() ? otherwise : _wtoi(text.c_str());
}

class RandomUser : public SwitchboardTest {
 protected:
  int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }

  /// The program's window that takes input: its topmost dialog, or the main form.
  static HWND InUse(const RunningMarl& marl) {
    Search search = {marl.id(), nullptr};
    EnumWindows(Take, reinterpret_cast<LPARAM>(&search));
    return search.found;
  }

  /// Performs one action on the window. The title bar is left out: moving windows around tests
  /// nothing.
  std::string Act(HWND window) {
    RECT area;
    GetClientRect(window, &area);
    POINT at = {Below(std::max<LONG>(area.right, 1)), Below(std::max<LONG>(area.bottom, 1))};
    ClientToScreen(window, &at);
    switch (Below(8)) {
      case 0:
      case 1:
      case 2:
        if (WindowFromPoint(at) && GetAncestor(WindowFromPoint(at), GA_ROOT) == window) Click(at);
        return "click " + std::to_string(at.x) + "," + std::to_string(at.y);
      case 3: MoveMouse(at.x, at.y); return "move";
      case 4: {
        static constexpr WORD kKeys[] = {VK_TAB,  VK_ESCAPE, VK_RETURN, VK_SPACE, VK_UP,
                                         VK_DOWN, VK_LEFT,   VK_RIGHT,  VK_HOME,  VK_END};
        const WORD key = kKeys[Below(std::size(kKeys))];
        Chord({}, key);
        return "key " + std::to_string(key);
      }
      case 5: {
        const auto letter = static_cast<wchar_t>(L'a' + Below(26));
        Keys(std::wstring(1, letter));
        return std::string("type ") + static_cast<char>(letter);
      }
      case 6: {
        // Shortcuts of the main form; in dialogs they are ordinary keys.
        const WORD key = Below(2) == 0 ? static_cast<WORD>('A' + Below(26))
                                       : static_cast<WORD>(VK_F1 + Below(9));
        const std::vector<WORD> held =
            key >= VK_F1 ? std::vector<WORD>{VK_SHIFT} : std::vector<WORD>{VK_CONTROL};
        Chord(held, key);
        return "shortcut " + std::to_string(key);
      }
      default: Keys(L"setgui"); return "word";
    }
  }

  /// Exits the program in any state: by the tray menu, by closing the main window, or by the end of
  /// the session. It must end, and must have saved.
  void LeaveNow() {
    const HWND main = marl->Window();
    if (!main) return;
    // While a menu is open there is no tray menu.
    const int way = MenuOnScreen() ? Below(2) : Below(3);
    static constexpr const char* kWays[] = {"close", "end of session", "exit in the tray"};
    last_.push_back(std::string("leave by ") + kWays[way]);
    settings.Set(L"Left", L"not saved");
    if (way == 0) {
      PostMessageW(main, WM_CLOSE, 0, 0);
    } else if (way == 1) {
      DWORD_PTR answer = 0;
      SendMessageTimeoutW(main, WM_ENDSESSION, TRUE, 0, SMTO_NORMAL, 10000, &answer);
    } else {
      ASSERT_TRUE(ChooseExitInTheTray(main)) << History();
    }
    ASSERT_EQ(marl->WaitForExit(), 0u) << History();
    ASSERT_NE(settings.Get(L"Left"), L"not saved") << History();
    ++leaves;
  }

  /// Starts the program, and exits while its splash is shown.
  void LeaveTheSplash();
  /// Performs that many actions, and restarts the program whenever it has ended.
  void Use(int acts);
  /// Closes all dialogs and menus, with Esc.
  bool LeaveDialogs() const;

  std::string History() const {
    std::string text = "after:";
    for (const std::string& act : last_) text += "\n  " + act;
    return text;
  }

  const SuiteFolder suite;
  std::unique_ptr<RunningMarl> marl;
  int ends = 0;  ///< how often the program had ended
  bool leavesAnywhere = true;
  int leaves = 0;  ///< how often the user has exited on purpose

 private:
  struct Search {
    DWORD process;
    HWND found;
  };
  static BOOL CALLBACK Take(HWND window, LPARAM data) {
    auto& search = *reinterpret_cast<Search*>(data);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    RECT area = {};
    GetWindowRect(window, &area);
    const bool takesInput = IsWindowVisible(window) && IsWindowEnabled(window) &&
                            (GetWindowLongW(window, GWL_STYLE) & WS_CAPTION) == WS_CAPTION;
    if (process != search.process || !takesInput || area.right - area.left < 100) return TRUE;
    search.found = window;
    return FALSE;
  }

  std::mt19937 random_{static_cast<std::uint32_t>(NumberFrom(L"MARL_SEED", 20070304))};
  std::vector<std::string> last_;
};

void RandomUser::LeaveTheSplash() {
  // The user may have chosen to start with the wizard.
  marl = std::make_unique<RunningMarl>(suite, L"nw");
  ASSERT_TRUE(WaitUntil([&] { return marl->Window() && marl->Splash(); })) << History();
  ASSERT_TRUE(marl->WaitForIdle());
  last_.push_back("leave the splash");
  if (Below(2) == 0) {
    PostMessageW(marl->Window(), WM_CLOSE, 0, 0);
  } else {
    DWORD_PTR answer = 0;
    SendMessageTimeoutW(marl->Window(), WM_ENDSESSION, TRUE, 0, SMTO_NORMAL, 10000, &answer);
  }
  ASSERT_EQ(marl->WaitForExit(), 0u) << History();
  ++leaves;
}

void RandomUser::Use(int acts) {
  for (; acts > 0; --acts) {
    if (!marl->Running()) {
      ASSERT_EQ(marl->WaitForExit(), 0u) << History();
      ++ends;
      if (leavesAnywhere && Below(3) == 0) {
        LeaveTheSplash();
        if (HasFatalFailure()) return;
      }
      // The user may have chosen to start with the wizard.
      marl = std::make_unique<RunningMarl>(suite, L"nw");
      ASSERT_TRUE(marl->WaitForWindow()) << History();
    }
    const HWND main = marl->Window();
    if (main && !IsWindowVisible(main) && !InUse(*marl)) {
      PostMessageW(main, RegisterWindowMessageW(L"msgMarlMenu"), 0, WM_LBUTTONDBLCLK);
    }
    HWND window = nullptr;
    WaitUntil([&] { return !marl->Running() || (window = InUse(*marl)) != nullptr; });
    if (!window) {
      ASSERT_FALSE(marl->Running()) << "no window takes input " << History();
      continue;
    }
    if (leavesAnywhere && Below(kActsToALeave) == 0) {
      LeaveNow();
      if (HasFatalFailure()) return;
      continue;
    }
    BringForward(window);
    last_.push_back(ToUtf8(TextOf(window)) + ": " + Act(window));
    if (last_.size() > 15) last_.erase(last_.begin());
    DWORD_PTR answer = 0;
    const bool answers =
        SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, 10000, &answer) != 0;
    ASSERT_TRUE(answers || !IsWindow(window) || !marl->Running()) << History();
  }
}

bool RandomUser::LeaveDialogs() const {
  const bool out = WaitUntil([&] {
    const HWND window = InUse(*marl);
    if (!marl->Running() || (window && window == marl->Window())) return true;
    if (window && BringForward(window)) Chord({}, VK_ESCAPE);
    if (!window) {
      PostMessageW(marl->Window(), RegisterWindowMessageW(L"msgMarlMenu"), 0, WM_LBUTTONDBLCLK);
    }
    return false;
  });
  if (!out) Screenshot("stuck");
  return out;
}

}  // namespace

TEST_F(RandomUser, LeavesAProgramThatWorksAndEnds) {
  marl = std::make_unique<RunningMarl>(suite);
  ASSERT_TRUE(marl->WaitForWindow());
  const int acts = kUsualActs * NumberFrom(L"MARL_ROUNDS", 1);
  Use(acts - kStretch);
  if (HasFatalFailure()) return;
  EXPECT_GT(leaves, 0);
  // Leaks show in one process: a stretch counts if the user did not end it by a command.
  leavesAnywhere = false;
  for (int stretches = 1;; ++stretches) {
    ASSERT_LE(stretches, kMostStretches) << "every stretch ended the program";
    Use(kWarmUp);
    if (HasFatalFailure()) return;
    ASSERT_TRUE(LeaveDialogs()) << History();
    if (!marl->Running()) continue;
    const int endsBefore = ends;
    const std::size_t handles = marl->Handles();
    const std::size_t bytes = marl->PrivateBytes();
    Use(kStretch);
    if (HasFatalFailure()) return;
    ASSERT_TRUE(LeaveDialogs()) << History();
    if (!marl->Running() || ends != endsBefore) continue;
    // A system dialog that opens for the first time keeps what it loads.
    EXPECT_LE(marl->Handles(), handles + 16);
    EXPECT_LT(marl->PrivateBytes(), bytes + 8 * 1024 * 1024);
    std::cout << acts << " acts; left " << leaves << " times, started again " << ends << " times; "
              << stretches << " stretches for the leaks\n";
    break;
  }
  EXPECT_TRUE(Close(*marl));
}

}  // namespace marl::desktop
