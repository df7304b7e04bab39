#include "tests/contract/AccessibleClient.h"
#include "tests/desktop/Dialog.h"
#include "tests/desktop/Switchboard.h"
#include "tests/desktop/Words.h"

// After <windows.h>.
#include <tlhelp32.h>

#include <algorithm>

// The program as a screen reader meets it: another process reads its windows through accessible
// objects, and presses its buttons with them.

namespace marl::desktop {

namespace {

class ScreenReader : public SwitchboardTest, public testing::WithParamInterface<std::string> {
 protected:
  ScreenReader() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    MoveMouse(0, 0);
  }
  ~ScreenReader() override { CoUninitialize(); }

  void SetUp() override {
    ASSERT_TRUE(CopyFileW(g_programs.In(GetParam()).c_str(), suite.marl().c_str(), FALSE));
  }

  const Words words{GetParam()};
  const SuiteFolder suite{L"Suite", {L"Q17Kit.exe"}};
};

/// True if a process has loaded this library.
bool HasLoaded(DWORD process, const wchar_t* library) {
  const HANDLE modules = CreateToolhelp32Snapshot(TH32CS_SNAPMODULE | TH32CS_SNAPMODULE32, process);
  if (modules == INVALID_HANDLE_VALUE) return false;
  MODULEENTRY32W entry = {};
  entry.dwSize = sizeof entry;
  bool loaded = false;
  for (BOOL more = Module32FirstW(modules, &entry); more; more = Module32NextW(modules, &entry)) {
    loaded = loaded || _wcsicmp(entry.szModule, library) == 0;
  }
  CloseHandle(modules);
  return loaded;
}

struct Heard {
  HWND window;
  DWORD what;
  LONG child;
};
std::vector<Heard> g_heard;

void CALLBACK OnEvent(HWINEVENTHOOK, DWORD what, HWND window, LONG object, LONG child, DWORD,
                      DWORD) {
  if (object == OBJID_CLIENT) g_heard.push_back({window, what, child});
}

/// Listens to a process, as a screen reader does.
class Listener {
 public:
  explicit Listener(DWORD process)
      : hook_(SetWinEventHook(EVENT_MIN, EVENT_MAX, nullptr, OnEvent, process, 0,
                              WINEVENT_OUTOFCONTEXT)) {
    g_heard.clear();
  }
  ~Listener() { UnhookWinEvent(hook_); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  static bool Hears(HWND window, DWORD what, LONG child) {
    return WaitUntil([&] {
      MSG message;
      while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
      return std::any_of(g_heard.begin(), g_heard.end(), [&](const Heard& each) {
        return each.window == window && each.what == what && each.child == child;
      });
    });
  }

 private:
  HWINEVENTHOOK hook_;
};

}  // namespace

TEST_P(ScreenReader, CostsNothingUntilItAsks) {
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(BringForward(main));
  Chord({}, VK_TAB);
  ASSERT_TRUE(WaitUntil([&] {
    return TextOf(FindWindowExW(main, nullptr, L"msctls_statusbar32", nullptr)) ==
           words(IDS_TIP_ANALYSE);
  }));
  ASSERT_TRUE(HasLoaded(marl.id(), L"user32.dll"));
  EXPECT_FALSE(HasLoaded(marl.id(), L"oleacc.dll"));
  EXPECT_FALSE(HasLoaded(marl.id(), L"uiautomationcore.dll"));
  EXPECT_TRUE(AccessibleAnswer(main));
  EXPECT_TRUE(HasLoaded(marl.id(), L"oleacc.dll"));
  EXPECT_TRUE(Close(marl));
}

TEST_P(ScreenReader, HearsWhatTheKeyboardDoes) {
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(BringForward(main));
  const AccessibleAnswer panel(main);
  ASSERT_TRUE(panel);
  const Listener listener(marl.id());
  Chord({}, VK_TAB);
  EXPECT_TRUE(listener.Hears(main, EVENT_OBJECT_FOCUS, 1));
  const HWND status = FindWindowExW(main, nullptr, L"msctls_statusbar32", nullptr);
  EXPECT_TRUE(listener.Hears(status, EVENT_OBJECT_NAMECHANGE, CHILDID_SELF));
  EXPECT_EQ(AccessibleAnswer(status).Name(CHILDID_SELF), words(IDS_TIP_ANALYSE));

  Keys(L"setgui");
  const Dialog dialog(marl, words(IDS_UI_TITLE).c_str());
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(WaitUntil([&] { return dialog.InFront(); }));
  const AccessibleAnswer look(dialog.window());
  ASSERT_TRUE(look);
  ASSERT_TRUE(look.Simple(1));
  EXPECT_EQ(look.Role(1), ROLE_SYSTEM_ALERT) << "the look that is delivered is hard to read";
  EXPECT_TRUE(look.Name(1).starts_with(words(IDS_UI_HARD_TO_READ)));
  const HWND list = dialog.Find(L"ListBox");
  ASSERT_TRUE(list);
  const AccessibleAnswer rows(list);
  ASSERT_TRUE(rows);
  EXPECT_EQ(rows->accSelect(SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION, ChildId(2)), S_OK);
  ASSERT_TRUE(WaitUntil([&] { return dialog.Focus() == list; }));
  EXPECT_TRUE(rows.State(2) & STATE_SYSTEM_CHECKED);
  Chord({}, VK_SPACE);
  EXPECT_TRUE(listener.Hears(list, EVENT_OBJECT_STATECHANGE, 2));
  EXPECT_FALSE(rows.State(2) & STATE_SYSTEM_CHECKED);
  // The samples are found where they are painted.
  const HWND samples =
      FindWindowExW(GetParent(dialog.Button((words(IDS_UI_TEXT_NORMAL) + L"...").c_str())), nullptr,
                    L"Static", nullptr);
  const AccessibleAnswer area(samples);
  ASSERT_TRUE(area);
  EXPECT_EQ(area.Name(CHILDID_SELF), words(IDS_FONT_SAMPLE));
  for (const LONG sample : {1, 2}) {
    const RECT place = area.Place(sample);
    LONG hit = -1;
    const AccessibleAnswer there({(place.left + place.right) / 2, (place.top + place.bottom) / 2},
                                 hit);
    ASSERT_TRUE(there);
    EXPECT_EQ(there.Name(hit), words(IDS_UI_TEXT_NORMAL + sample - 1));
  }
  Chord({}, VK_ESCAPE);
  ASSERT_TRUE(dialog.Gone());
  EXPECT_TRUE(Close(marl));
}

TEST_P(ScreenReader, ReadsThePanelAsItLooks) {
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  const AccessibleAnswer panel(main);
  ASSERT_TRUE(panel);
  EXPECT_NE(panel.Name(CHILDID_SELF).find(L"Marl"), std::wstring::npos);
  for (int button = 0; button < 18; ++button) {
    const LONG id = button + 1;
    EXPECT_EQ(panel.Role(id), ROLE_SYSTEM_PUSHBUTTON);
    EXPECT_EQ(panel.Name(id), words(IDS_BUTTON_ANALYSE + button));
    EXPECT_EQ(panel.Description(id), words(IDS_TIP_ANALYSE + button));
    EXPECT_EQ(panel.Action(id), words(IDS_ACTION_PRESS));
    const bool dead = button == kUtilities || button == kTrackProjects;
    EXPECT_EQ(panel.State(id), STATE_SYSTEM_FOCUSABLE | (dead ? STATE_SYSTEM_UNAVAILABLE : 0));
    const POINT icon = IconOf(main, button);
    const RECT place = panel.Place(id);
    EXPECT_TRUE(PtInRect(&place, icon)) << button;
    EXPECT_EQ(panel.At(icon.x, icon.y), id);
    LONG hit = -1;
    const AccessibleAnswer there(icon, hit);
    ASSERT_TRUE(there) << button;
    EXPECT_EQ(there.Name(hit), panel.Name(id));
  }
  EXPECT_TRUE(Close(marl));
}

TEST_P(ScreenReader, FollowsTheFocusOfTheKeyboard) {
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(BringForward(main));
  const AccessibleAnswer panel(main);
  ASSERT_TRUE(panel);
  EXPECT_EQ(panel.Focus(), CHILDID_SELF);
  Chord({}, VK_TAB);
  EXPECT_TRUE(WaitUntil([&] { return panel.Focus() == 1; }));
  EXPECT_TRUE(panel.State(1) & STATE_SYSTEM_FOCUSED);
  Chord({}, VK_END);
  EXPECT_TRUE(WaitUntil([&] { return panel.Focus() == 18; }));
  EXPECT_FALSE(panel.State(1) & STATE_SYSTEM_FOCUSED);
  // The reader moves it.
  EXPECT_EQ(panel->accSelect(SELFLAG_TAKEFOCUS, ChildId(6)), S_OK);
  EXPECT_TRUE(WaitUntil([&] { return panel.Focus() == 6; }));
  Chord({}, VK_SPACE);
  EXPECT_EQ(suite.WaitForTools(1).size(), 1u);
  EXPECT_TRUE(Close(marl));
}

TEST_P(ScreenReader, PressesEveryButton) {
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  const AccessibleAnswer panel(main);
  ASSERT_TRUE(panel);
  std::vector<Started> starts;
  for (int button = 0; button < kExit; ++button) {
    EXPECT_EQ(panel.Press(button + 1), S_OK) << button;
    const std::wstring tool = button == kUtilities ? L"" : ToolOf(button);  // it is not installed
    if (!tool.empty()) {
      starts.push_back(Start(suite, tool));
      EXPECT_EQ(suite.WaitForTools(starts.size()), starts);
    } else if (button == kChangeServer) {
      const Dialog dialog(marl, words(IDS_SERVER_TITLE).c_str());
      ASSERT_TRUE(dialog) << "the reader does not wait for the dialog";
      // Behind the dialog a press does nothing.
      EXPECT_EQ(panel.Press(1), S_OK);
      const AccessibleAnswer cancel(dialog.Button(words(IDS_CANCEL).c_str()));
      ASSERT_TRUE(cancel);
      EXPECT_EQ(cancel.Press(CHILDID_SELF), S_OK);
      EXPECT_TRUE(dialog.Gone());
    } else if (button == kQaCheck) {
      const MessageBoxWindow box = marl.WaitForBox();
      ASSERT_TRUE(box) << "its component is not installed";
      ASSERT_TRUE(box.Press(IDOK));
    }
  }
  EXPECT_EQ(panel.Press(kExit + 1), S_OK);
  EXPECT_EQ(marl.WaitForExit(), 0u);
  EXPECT_EQ(suite.WaitForTools(starts.size()), starts);
}

INSTANTIATE_TEST_SUITE_P(Languages, ScreenReader, testing::ValuesIn(MemoryStrings::Languages()));

}  // namespace marl::desktop
