// clang-format off
#include <windows.h>
#include <commctrl.h>
// clang-format on

#include <chrono>

#include "tests/desktop/Component.h"
#include "tests/desktop/Dialog.h"
#include "tests/desktop/Switchboard.h"

// Exiting the real program from any state. It saves and ends at once with code 0, and nothing half
// done in a dialog is applied.

namespace marl::desktop {

namespace {

using Clock = std::chrono::steady_clock;

constexpr wchar_t kGuiKey[] = L"Software\\Oru\\Marl\\GUI";
constexpr wchar_t kBenchKey[] = L"Software\\Oru\\Oru Bench\\Settings";
constexpr wchar_t kProxyKey[] = L"Software\\Oru\\Marl\\Proxy";
constexpr wchar_t kCleanQuestionText[] =
    L"This will remove all Marl files from the folder.  Are you sure you want to continue?";

/// What is open when the user exits.
enum class Place {
  kIdle,
  kHidden,
  kOptions,
  kDisplaySettings,
  kFontDialog,
  kColorDialog,
  kSaveSkin,
  kLanSettings,
  kSegmentation,
  kChangeServer,
  kAbout,
  kSelectFile,
  kMessage,
  kMessageOverDialog,
  kOpenProject,
  kCleanQuestion,
  kComponent,
  kMenu,
  kSplash,
};
constexpr const char* kPlaceNames[] = {"Idle",         "Hidden",
                                       "Options",      "DisplaySettings",
                                       "FontDialog",   "ColorDialog",
                                       "SaveSkin",     "LanSettings",
                                       "Segmentation", "ChangeServer",
                                       "About",        "SelectFile",
                                       "Message",      "MessageOverDialog",
                                       "OpenProject",  "CleanQuestion",
                                       "Component",    "Menu",
                                       "Splash"};

enum class Way { kExitFromTheTray, kCloseMainWindow, kEndOfSession, kInstaller };
constexpr const char* kWayNames[] = {"ExitFromTheTray", "CloseOfTheMainWindow", "EndOfTheSession",
                                     "AnInstaller"};

class Leaving : public SwitchboardTest, public testing::WithParamInterface<std::tuple<Place, Way>> {
 protected:
  Leaving() {
    folder_ = suite.temp() + L"\\project";
    CreateDirectoryW(folder_.c_str(), nullptr);
    Write(folder_ + L"\\job.qprx", "<language lc=\"fr\"/><document path=\"a.doc\"/>");
    Write(WorkingFile(), "x");
  }

  static void Write(const std::wstring& path, const std::string& content) {
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, content.data(), static_cast<DWORD>(content.size()), &written, nullptr);
    CloseHandle(file);
  }
  std::wstring WorkingFile() const { return folder_ + L"\\a.qtd"; }

  void StartMarl() {
    marl = std::make_unique<RunningMarl>(suite);
    main = marl->WaitForWindow();
    ASSERT_TRUE(main);
    ASSERT_TRUE(Tell(folder_ + L"\\job.qprx"));
  }
  /// Chooses an entry of the menu bar by its access keys.
  void Choose(wchar_t top, wchar_t entry) const { EXPECT_TRUE(marl->PressMenu(top, entry)); }
  /// Presses a button without waiting for the result.
  static void Press(const Dialog& dialog, const wchar_t* button) {
    const HWND window = dialog.Button(button);
    ASSERT_TRUE(window) << ToUtf8(button);
    PostMessageW(window, BM_CLICK, 0, 0);
  }
  /// Opens the options at the page with this button.
  Dialog OptionsWith(const wchar_t* button) const {
    const Dialog options = Options();
    for (int tab = 0; tab < 4 && options.InFront() && !options.Button(button); ++tab) {
      const HWND strip = options.Find(WC_TABCONTROLW);
      const LRESULT before = SendMessageW(strip, TCM_GETCURSEL, 0, 0);
      Chord({VK_CONTROL}, VK_TAB);
      WaitUntil([&] { return SendMessageW(strip, TCM_GETCURSEL, 0, 0) != before; });
      WaitUntil([&] { return options.Button(button) != nullptr; }, std::chrono::seconds(1));
    }
    return options;
  }
  bool Shows(const wchar_t* title, const wchar_t* windowClass = L"MarlForm") const {
    return static_cast<bool>(Dialog(*marl, title, windowClass));
  }
  Dialog Options() const {
    Choose(L'O', L'O');
    return Dialog(*marl, L"Options");
  }
  Dialog DisplaySettings() const {
    Press(Options(), L"&Change display settings...");
    Dialog dialog(*marl, L"Display settings");
    Press(dialog, L"Display &wide border");
    return dialog;
  }

  void Go(Place place);
  void Leave(Way way);

  SuiteFolder suite;
  std::unique_ptr<RunningMarl> marl;
  HWND main = nullptr;

 private:
  std::wstring folder_;
};

void Leaving::Go(Place place) {
  switch (place) {
    case Place::kIdle: break;
    case Place::kHidden:
      PostMessageW(main, WM_SYSCOMMAND, SC_MINIMIZE, 0);
      ASSERT_TRUE(WaitUntil([&] { return !IsWindowVisible(main); }));
      break;
    case Place::kOptions: {
      const Dialog options = Options();
      ASSERT_TRUE(options);
      Press(options, L"&Display tooltips for switchboard buttons");
      ASSERT_TRUE(WaitUntil(
          [&] { return !options.Checked(L"&Display tooltips for switchboard buttons"); }));
      break;
    }
    case Place::kDisplaySettings: ASSERT_TRUE(DisplaySettings()); break;
    case Place::kFontDialog:
      Press(DisplaySettings(), L"Normal...");
      ASSERT_TRUE(Shows(L"Set Font"));
      break;
    case Place::kColorDialog: {
      Press(DisplaySettings(), L"Normal...");
      const Dialog font(*marl, L"Set Font");
      ASSERT_TRUE(font);
      Press(font, L"&Color");
      ASSERT_TRUE(WaitUntil([&] { return !IsWindowEnabled(font.window()); }));
      break;
    }
    case Place::kSaveSkin: {
      const Dialog display = DisplaySettings();
      Press(display, L"&Save...");
      ASSERT_TRUE(WaitUntil([&] { return !IsWindowEnabled(display.window()); }));
      break;
    }
    case Place::kLanSettings:
    case Place::kMessageOverDialog: {
      Press(OptionsWith(L"L&AN settings..."), L"L&AN settings...");
      const Dialog lan(*marl, L"Local Area Network (LAN) Settings");
      ASSERT_TRUE(lan);
      if (place == Place::kLanSettings) break;
      const std::vector<HWND> buttons = lan.FindAll(L"Button");
      for (const HWND button : buttons) {
        const LONG kind = GetWindowLongW(button, GWL_STYLE) & BS_TYPEMASK;
        const std::wstring text = TextOf(button);
        if (text != L"OK" && text != L"Cancel" && kind != BS_GROUPBOX) {
          PostMessageW(button, BM_CLICK, 0, 0);
          WaitUntil([&] { return SendMessageW(button, BM_GETCHECK, 0, 0) == BST_CHECKED; });
        }
      }
      Press(lan, L"OK");
      ASSERT_TRUE(marl->WaitForBox());
      break;
    }
    case Place::kSegmentation:
      Press(OptionsWith(L"Segmentation &rules..."), L"Segmentation &rules...");
      ASSERT_TRUE(Shows(L"Segmentation rules"));
      break;
    case Place::kChangeServer:
      Choose(L'P', L'S');
      ASSERT_TRUE(Shows(L"Change server"));
      break;
    case Place::kAbout:
      Choose(L'H', L'A');
      ASSERT_TRUE(Shows(L"About Marl"));
      break;
    case Place::kSelectFile:
      Choose(L'T', L'P');
      ASSERT_TRUE(WaitUntil([&] { return !IsWindowEnabled(main); }));
      break;
    case Place::kMessage:
      Choose(L'H', L'C');
      ASSERT_TRUE(marl->WaitForBox());
      break;
    case Place::kOpenProject:
      Choose(L'P', L'O');
      ASSERT_TRUE(WaitUntil([&] { return !IsWindowEnabled(main); }));
      break;
    case Place::kCleanQuestion: {
      Choose(L'P', L'R');
      const MessageBoxWindow box = marl->WaitForBox();
      ASSERT_TRUE(box);
      EXPECT_EQ(box.Text(), kCleanQuestionText);
      break;
    }
    case Place::kComponent: Choose(L'T', L'G'); break;
    case Place::kMenu:
      PostMessageW(main, WM_SYSCOMMAND, SC_KEYMENU, L'P');
      ASSERT_TRUE(WaitUntil([] { return MenuOnScreen() != nullptr; }));
      break;
    case Place::kSplash: break;
  }
}

void Leaving::Leave(Way way) {
  switch (way) {
    case Way::kCloseMainWindow: PostMessageW(main, WM_CLOSE, 0, 0); break;
    case Way::kEndOfSession: {
      DWORD_PTR answer = 0;
      SendMessageTimeoutW(main, WM_QUERYENDSESSION, 0, 0, SMTO_NORMAL, 10000, &answer);
      EXPECT_EQ(answer, 1u) << "it never asks";
      // Another program may prevent it.
      SendMessageTimeoutW(main, WM_ENDSESSION, FALSE, 0, SMTO_NORMAL, 10000, &answer);
      EXPECT_TRUE(marl->Running());
      SendMessageTimeoutW(main, WM_ENDSESSION, TRUE, 0, SMTO_NORMAL, 10000, &answer);
      break;
    }
    // The restart manager asks every window of the process, and ends all of them.
    case Way::kInstaller: {
      std::vector<HWND> windows;
      FindWindowOf(marl->id(), [&](HWND window) {
        windows.push_back(window);
        return false;
      });
      for (const HWND window : windows) {
        DWORD_PTR answer = 0;
        if (!SendMessageTimeoutW(window, WM_QUERYENDSESSION, 0, ENDSESSION_CLOSEAPP, SMTO_NORMAL,
                                 10000, &answer)) {
          continue;  // such as one of a thread without messages
        }
        EXPECT_EQ(answer, 1u) << ToUtf8(ClassOf(window));
      }
      for (const HWND window : windows) {
        if (marl->Running()) PostMessageW(window, WM_ENDSESSION, TRUE, ENDSESSION_CLOSEAPP);
      }
      break;
    }
    case Way::kExitFromTheTray: ASSERT_TRUE(ChooseExitInTheTray(main)); break;
  }
}

}  // namespace

TEST_P(Leaving, SavesEndsAtOnceAndAppliesNothing) {
  const auto [place, way] = GetParam();
  std::unique_ptr<ComponentCalls> calls;
  std::unique_ptr<RegisteredComponent> component;
  if (place == Place::kComponent) {
    SetEnvironmentVariableW(L"MARL_COMPONENT_STAYS", L"1");
    calls = std::make_unique<ComponentCalls>(suite);
    component = std::make_unique<RegisteredComponent>(L"Marl.ReplaceComponent");
    ASSERT_TRUE(component->made());
  }
  if (place == Place::kSplash) {
    marl = std::make_unique<RunningMarl>(suite);
    ASSERT_TRUE(WaitUntil([&] { return marl->Window() && marl->Splash(); }));
    main = marl->Window();
    ASSERT_TRUE(marl->WaitForIdle());
    ASSERT_TRUE(marl->Splash());
  } else {
    StartMarl();
    if (HasFatalFailure()) return;
  }
  Go(place);
  if (calls) {
    EXPECT_EQ(calls->WaitFor(1).size(), 1u);
  }
  SetEnvironmentVariableW(L"MARL_COMPONENT_STAYS", nullptr);
  ASSERT_FALSE(HasFatalFailure());
  Leave(way);
  const Clock::time_point asked = Clock::now();
  const auto code = marl->WaitForExit();
  const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - asked);
  RecordProperty("milliseconds", static_cast<int>(took.count()));
  ASSERT_TRUE(code) << "it hangs";
  EXPECT_EQ(*code, 0u);
  const bool saves = place != Place::kSplash || way == Way::kCloseMainWindow;
  for (const wchar_t* key :
       {L"Left", L"Top", L"Tooltips", L"Tools", L"WindowState", L"XtraFeatures"}) {
    EXPECT_EQ(settings.Get(key).has_value(), saves) << ToUtf8(key);
  }
  if (saves) {
    EXPECT_EQ(settings.Get(L"Tooltips"), L"True") << "the tick that was taken away in the dialog";
    EXPECT_EQ(settings.Get(L"WindowState"), place == Place::kHidden ? L"1" : L"0");
  }
  EXPECT_FALSE(ReadStored(kGuiKey));
  EXPECT_FALSE(ReadStored(kBenchKey));
  EXPECT_FALSE(ReadStored(kProxyKey));
  EXPECT_NE(GetFileAttributesW(WorkingFile().c_str()), INVALID_FILE_ATTRIBUTES);
  EXPECT_TRUE(suite.WaitForTools(0).empty()) << "nothing was started behind it";
  settings.Set(L"WindowState", L"0");
  // The mutex is released: the next instance can start.
  marl = std::make_unique<RunningMarl>(suite);
  EXPECT_TRUE(marl->WaitForWindow());
  EXPECT_TRUE(Close(*marl));
}

INSTANTIATE_TEST_SUITE_P(
    Everywhere, Leaving,
    testing::Combine(testing::Values(Place::kIdle, Place::kHidden, Place::kOptions,
                                     Place::kDisplaySettings, Place::kFontDialog,
                                     Place::kColorDialog, Place::kSaveSkin, Place::kLanSettings,
                                     Place::kSegmentation, Place::kChangeServer, Place::kAbout,
                                     Place::kSelectFile, Place::kMessage, Place::kMessageOverDialog,
                                     Place::kOpenProject, Place::kCleanQuestion, Place::kComponent),
                     testing::Values(Way::kExitFromTheTray, Way::kCloseMainWindow,
                                     Way::kEndOfSession, Way::kInstaller)),
    [](const auto& test) {
      return std::string(kPlaceNames[static_cast<int>(std::get<0>(test.param))]) + "By" +
             kWayNames[static_cast<int>(std::get<1>(test.param))];
    });

// There is no tray menu yet, or another menu is open.
INSTANTIATE_TEST_SUITE_P(
    WithoutTheTraysMenu, Leaving,
    testing::Combine(testing::Values(Place::kSplash, Place::kMenu),
                     testing::Values(Way::kCloseMainWindow, Way::kEndOfSession, Way::kInstaller)),
    [](const auto& test) {
      return std::string(kPlaceNames[static_cast<int>(std::get<0>(test.param))]) + "By" +
             kWayNames[static_cast<int>(std::get<1>(test.param))];
    });
// ---- Before anything has been read

class LeavingEarly : public SwitchboardTest {
 protected:
  struct Search {
    DWORD process;
    HWND found;
  };
  static BOOL CALLBACK TakeForm(HWND window, LPARAM data) {
    auto& search = *reinterpret_cast<Search*>(data);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != search.process || ClassOf(window) != L"MarlForm") return TRUE;
    search.found = window;
    return FALSE;
  }
  /// The main form, still hidden while start-up asks its questions.
  static HWND HiddenForm(const RunningMarl& marl) {
    Search search = {marl.id(), nullptr};
    EnumWindows(TakeForm, reinterpret_cast<LPARAM>(&search));
    return search.found;
  }
  /// Ends the session while the message is shown.
  void EndSession(const RunningMarl& marl) {
    ASSERT_TRUE(marl.WaitForBox());
    const HWND form = HiddenForm(marl);
    ASSERT_TRUE(form);
    const std::vector<KeyImage> before = settings.Image();
    DWORD_PTR answer = 0;
    SendMessageTimeoutW(form, WM_ENDSESSION, TRUE, 0, SMTO_NORMAL, 10000, &answer);
    EXPECT_EQ(marl.WaitForExit(), 0u);
    EXPECT_TRUE(settings.Image() == before) << "nothing was saved";
  }

  const SuiteFolder suite;
};

TEST_F(LeavingEarly, AtTheFirstQuestionSavesNothing) {
  settings.Set(L"FirstRun", L"Y");
  settings.Set(L"Left", L"123");
  settings.SetRegistry(L"Settings", L"TrackingServer", L"alpha");
  const RunningMarl marl(suite);
  EndSession(marl);
}

TEST_F(LeavingEarly, AtTheMessageThatItIsRunningSavesNothing) {
  const RunningMarl first(suite);
  const HWND main = first.WaitForWindow();
  ASSERT_TRUE(main);
  PostMessageW(main, WM_SYSCOMMAND, SC_MINIMIZE, 0);
  ASSERT_TRUE(WaitUntil([&] { return !IsWindowVisible(main); }));
  const RunningMarl second(suite);
  EndSession(second);
  EXPECT_TRUE(Close(first));
}

TEST_F(LeavingEarly, AtTheMissingWizardSavesNothing) {
  suite.Remove(L"Q17Shell.exe");
  settings.Set(L"Wizard", L"Y");
  settings.Set(L"Left", L"123");
  const RunningMarl marl(suite);
  EndSession(marl);
}

// ---- The last message of a program that has failed

TEST_F(LeavingEarly, LastMessageIsAboveTheWindowAndTheIconIsGoneAfterIt) {
  PutStored(L"Software\\Oru\\Oru Bench\\Settings", "UseAltWordCounts", Text("no number"));
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(marl.PressMenu(L'O', L'O'));
  const MessageBoxWindow box = marl.WaitForBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box.Text(), L"Type mismatch");
  EXPECT_EQ(GetWindow(box.window(), GW_OWNER), main);
  // Neither WM_CLOSE nor a message of the tray icon reaches a window behind it.
  PostMessageW(main, WM_CLOSE, 0, 0);
  PostMessageW(main, RegisterWindowMessageW(L"msgMarlMenu"), 0, WM_RBUTTONUP);
  DWORD_PTR answer = 0;
  EXPECT_TRUE(SendMessageTimeoutW(main, WM_NULL, 0, 0, SMTO_NORMAL, 10000, &answer));
  EXPECT_TRUE(IsWindow(box.window()));
  EXPECT_FALSE(MenuOnScreen());
  EXPECT_TRUE(box.Press(IDOK));
  EXPECT_EQ(marl.WaitForExit(), 1u);
  EXPECT_FALSE(settings.Get(L"Left")) << "no exit sequence";
}

TEST_F(LeavingEarly, SessionEndsBehindTheLastMessage) {
  PutStored(L"Software\\Oru\\Oru Bench\\Settings", "UseAltWordCounts", Text("no number"));
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(marl.PressMenu(L'O', L'O'));
  ASSERT_TRUE(marl.WaitForBox());
  DWORD_PTR answer = 0;
  SendMessageTimeoutW(main, WM_QUERYENDSESSION, 0, 0, SMTO_NORMAL, 10000, &answer);
  EXPECT_EQ(answer, 1u);
  SendMessageTimeoutW(main, WM_ENDSESSION, TRUE, 0, SMTO_NORMAL, 10000, &answer);
  EXPECT_EQ(marl.WaitForExit(), 1u);
  EXPECT_FALSE(settings.Get(L"Left"));
}

}  // namespace marl::desktop
