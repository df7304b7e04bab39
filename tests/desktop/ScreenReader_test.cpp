#include "tests/contract/AccessibleClient.h"
#include "tests/desktop/Dialog.h"
#include "tests/desktop/Switchboard.h"
#include "tests/desktop/Words.h"

// After <windows.h>.
#include <tlhelp32.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

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

/// What a client is to read of a form in a language, line by line: the list that the tests of the
/// forms keep.
std::vector<std::wstring> Written(const std::string& language, const std::string& form) {
  std::ifstream file(std::string(MARL_ACCESSIBLE_TREES "/") + language + ".txt", std::ios::binary);
  std::vector<std::wstring> lines;
  bool inside = false;
  for (std::string line; std::getline(file, line);) {
    if (inside && line.empty()) break;
    if (inside) lines.push_back(FromUtf8(line));
    inside = inside || line == form;
  }
  return lines;
}

/// Compares what a client reads of a window, in another process, with what is written.
testing::AssertionResult Reads(HWND window, const std::string& language, const std::string& form) {
  std::wistringstream tree(AccessibleTree(window, L"  "));
  const std::vector<std::wstring> written = Written(language, form);
  if (written.empty()) return testing::AssertionFailure() << "nothing is written of " << form;
  std::size_t read = 0;
  for (std::wstring line; std::getline(tree, line); ++read) {
    const std::wstring expected = read < written.size() ? written[read] : L"(nothing)";
    // The word stands for the program's version.
    constexpr std::wstring_view kVersion = L"VERSION";
    const std::size_t word = expected.find(kVersion);
    const bool same = word == std::wstring::npos
                          ? line == expected
                          : line.starts_with(expected.substr(0, word)) &&
                                line.ends_with(expected.substr(word + kVersion.size()));
    if (!same) {
      return testing::AssertionFailure()
             << form << ": " << ToUtf8(line) << ", written is " << ToUtf8(expected);
    }
  }
  if (read != written.size()) {
    return testing::AssertionFailure() << form << " ends before " << ToUtf8(written[read]);
  }
  return testing::AssertionSuccess();
}

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

TEST_P(ScreenReader, ReadsEveryFormAsItIsWritten) {
  // With all tools.
  const SuiteFolder full;
  ASSERT_TRUE(CopyFileW(g_programs.In(GetParam()).c_str(), full.marl().c_str(), FALSE));
  const RunningMarl marl(full);
  HWND splash = nullptr;
  ASSERT_TRUE(WaitUntil([&] { return (splash = marl.Splash()) != nullptr || marl.Window(); }));
  if (splash) {
    EXPECT_TRUE(Reads(splash, GetParam(), "frmSplash"));
  }
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  const auto open = [&](HWND over, const std::vector<WORD>& held, WORD key, int title) {
    EXPECT_TRUE(WaitUntil([&] { return IsWindowEnabled(over) != FALSE; }));
    EXPECT_TRUE(BringForward(over));
    Chord(held, key);
    Dialog dialog(marl, words(title));
    EXPECT_TRUE(dialog && dialog.InFront()) << title;
    return dialog;
  };
  const auto leave = [](const Dialog& dialog) {
    Chord({}, VK_ESCAPE);
    EXPECT_TRUE(dialog.Gone());
  };
  EXPECT_TRUE(Reads(main, GetParam(), "frmMain"));
  {
    const Dialog about = open(main, {VK_CONTROL}, VK_F1, IDS_ABOUT_TITLE);
    EXPECT_TRUE(Reads(about.window(), GetParam(), "frmAbout2006"));
    leave(about);
  }
  {
    const Dialog server = open(main, {VK_CONTROL}, 'G', IDS_SERVER_TITLE);
    EXPECT_TRUE(Reads(server.window(), GetParam(), "frmChangeServer"));
    leave(server);
  }
  const Dialog options = open(main, {VK_SHIFT}, VK_F6, IDS_OPTIONS_TITLE);
  {
    const Dialog look = open(options.window(), {}, VK_F4, IDS_UI_TITLE);
    EXPECT_TRUE(Reads(look.window(), GetParam(), "frmUI"));
    // The reader presses the buttons.
    const auto press = [&](const Dialog& dialog, const std::wstring& caption) {
      const AccessibleAnswer button(dialog.Button(caption.c_str()));
      EXPECT_TRUE(button && button.Press(CHILDID_SELF) == S_OK) << ToUtf8(caption);
    };
    press(look, words(IDS_UI_TEXT_HIGHLIGHTED) + L"...");
    const Dialog font(marl, words(IDS_FONT_TITLE));
    ASSERT_TRUE(font && font.InFront());
    EXPECT_TRUE(Reads(font.window(), GetParam(), "frmFont"));
    press(font, words(IDS_FONT_CANCEL));
    EXPECT_TRUE(font.Gone());
    ASSERT_TRUE(look.InFront());
    press(look, words(IDS_UI_CANCEL));
    EXPECT_TRUE(look.Gone());
    ASSERT_TRUE(options.InFront());
  }
  const AccessibleAnswer tabs(options.Find(L"SysTabControl32"));
  ASSERT_TRUE(tabs);
  const int buttons[] = {IDS_OPTIONS_DISPLAY, IDS_OPTIONS_SEGMENTATION, IDS_OPTIONS_LAN,
                         IDS_OPTIONS_EXPRESSIONS_ADD};
  for (int page = 1; page <= 4; ++page) {
    EXPECT_EQ(tabs.Press(page), S_OK);
    const auto button = [&] { return options.Button(words(buttons[page - 1]).c_str()); };
    ASSERT_TRUE(WaitUntil([&] { return button() != nullptr; })) << page;
    EXPECT_TRUE(Reads(options.window(), GetParam(), "frmOptions-" + std::to_string(page)));
    if (page != 2 && page != 3) continue;
    EXPECT_EQ(AccessibleAnswer(button()).Press(CHILDID_SELF), S_OK);
    const Dialog dialog(marl, words(page == 2 ? IDS_SEGMENTATION_TITLE : IDS_LAN_TITLE));
    ASSERT_TRUE(dialog && dialog.InFront());
    EXPECT_TRUE(
        Reads(dialog.window(), GetParam(), page == 2 ? "frmSegmentation" : "frmLanSettings"));
    leave(dialog);
    ASSERT_TRUE(options.InFront());
  }
  leave(options);
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
