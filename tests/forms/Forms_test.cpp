// Shows every form of the program in a real window, one after the other, and checks that no text is
// cut off. Saves a screenshot of each in the folder given by MARL_SHOTS. Everything but windows,
// pictures and texts is in memory.

#include <windows.h>
#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <map>
#include <string>

#include "appearance/frmUI.h"
#include "documents/frmSelectFile.h"
#include "network/frmLanSettings.h"
#include "platform/memory/MemoryClock.h"
#include "platform/memory/MemoryColorDialog.h"
#include "platform/memory/MemoryComponents.h"
#include "platform/memory/MemoryFileDialogs.h"
#include "platform/memory/MemoryFileSystem.h"
#include "platform/memory/MemoryProfile.h"
#include "platform/memory/MemoryRegistryStore.h"
#include "platform/memory/MemorySettingsStore.h"
#include "platform/memory/MemoryShell.h"
#include "platform/memory/MemoryStrings.h"
#include "platform/memory/MemoryTipWindows.h"
#include "platform/memory/MemoryTray.h"
#include "platform/memory/MemoryWindowHooks.h"
#include "platform/win32/DesktopWin32.h"
#include "platform/win32/FontListWin32.h"
#include "platform/win32/FormWin32.h"
#include "platform/win32/IconsWin32.h"
#include "platform/win32/LocaleWin32.h"
#include "platform/win32/PictureLoader.h"
#include "platform/win32/StringResourceWin32.h"
#include "platform/win32/TrayWin32.h"
#include "settings/frmOptions.h"
#include "settings/frmSegmentation.h"
#include "shell/Application.h"
#include "shell/frmPrjWiz.h"
#include "shell/frmRunningApps.h"
#include "support/Version.h"
#include "support/frmSplash.h"
#include "tests/contract/AccessibleClient.h"
#include "tests/desktop/Desktop.h"
#include "tests/desktop/Pictures.h"
#include "tests/forms/FormTexts.h"
#include "tests/forms/Language.h"
#include "tests/forms/Measure.h"
#include "tests/forms/WindowTexts.h"

namespace marl {
namespace {

constexpr const char16_t* kTools[] = {
    u"Q17Gauge.exe", u"Q17Pair.exe",   u"Q17Lexis.exe",  u"Q17Cadence.exe", u"Q17Batch.exe",
    u"Q17Bench.exe", u"Q17Warden.exe", u"Q17Kit.exe",    u"Q17Vault.exe",   u"Q17Renew.exe",
    u"Q17Diff.exe",  u"Q17Bridge.exe", u"Q17Cleave.exe", u"Q17Xlf.exe"};

/// Messages with their flags: the longest ones, and one of each icon.
struct Message {
  int string;
  int flags;
};
constexpr Message kMessages[] = {{IDS_ASK_DEMONSTRATION, kYesNo | kQuestion},
                                 {IDS_ASK_WIZARD, kYesNo | kQuestion},
                                 {IDS_ALREADY_RUNNING, kInformation},
                                 {IDS_COMPONENT_MISSING, kExclamation},
                                 {IDS_NO_HELP_FILE, kCritical}};

HWND WindowOf(const Form& form) { return static_cast<HWND>(LongToHandle(form.hWnd())); }

int g_taken = 0;

void TakeWindow(const std::string& name, HWND window) {
  SetForegroundWindow(window);
  SetWindowPos(window, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
  RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
  desktop::Screenshot(name, window);
  ++g_taken;
}

/// What a screen reader reads of each form.
std::string g_trees;

/// The text with a word in place of the program's version.
std::string WithoutVersion(std::wstring text) {
  const Text shown = frmSplash::ShownVersion(kVersion);
  const std::wstring version(shown.begin(), shown.end());
  for (std::size_t at = 0; (at = text.find(version)) != std::wstring::npos;) {
    text.replace(at, version.size(), L"VERSION");
  }
  return desktop::ToUtf8(text);
}

/// Takes a screenshot of a form and checks its texts.
void Take(const std::string& name, Form& form) {
  TakeWindow(name, WindowOf(form));
  g_trees += name + "\n" + WithoutVersion(AccessibleTree(WindowOf(form), L"  ")) + "\n";
  // Finer screens have relatively wider letters: what is cut off there is reported and no failure.
  const std::vector<std::string> cut = CutOff(form);
  if (form.desktop().Dpi().width == 96) {
    EXPECT_EQ(cut, std::vector<std::string>{}) << name;
  } else {
    for (const std::string& text : cut) std::cout << "cut off: " << text << "\n";
  }
  if (g_language == MemoryStrings::kMarked) {
    EXPECT_EQ(Unmarked(form), std::vector<std::string>{}) << name;
    EXPECT_EQ(UnmarkedWindows(WindowOf(form)), std::vector<std::string>{}) << name;
  }
}

/// A real desktop whose user is `walk`: a screenshot is taken of each modal form, its script runs,
/// and it is closed.
class PictureDesktop : public win32::DesktopWin32 {
 public:
  std::map<std::string, std::function<void(Form&)>> walk;

  bool HighContrast() const override { return g_contrast; }

  void RunModal(Form& form, Form*) override {
    const auto found = walk.find(form.name());
    if (found == walk.end()) {
      Take(form.name(), form);
    } else {
      found->second(form);
    }
    if (form.Visible()) form.UserClose();
  }
};

std::string g_messageName;

BOOL CALLBACK TakeMessage(HWND window, LPARAM) {
  if (desktop::ClassOf(window) != L"#32770" || !IsWindowVisible(window)) return TRUE;
  TakeWindow(g_messageName, window);
  PostMessageW(window, WM_COMMAND, GetDlgItem(window, IDNO) ? IDNO : IDOK, 0);
  return FALSE;
}

void CALLBACK OnMessageTimer(HWND, UINT, UINT_PTR timer, DWORD) {
  KillTimer(nullptr, timer);
  EnumThreadWindows(GetCurrentThreadId(), TakeMessage, 0);
}

BOOL CALLBACK TakeMenu(HWND window, LPARAM) {
  if (desktop::ClassOf(window) != L"#32768" || !IsWindowVisible(window)) return TRUE;
  desktop::Screenshot("tray-menu", window);
  ++g_taken;
  EndMenu();
  return FALSE;
}

void CALLBACK OnMenuTimer(HWND, UINT, UINT_PTR timer, DWORD) {
  KillTimer(nullptr, timer);
  EnumThreadWindows(GetCurrentThreadId(), TakeMenu, 0);
}

/// A notification area in memory with real menus.
class MenuTray : public MemoryTray {
 public:
  std::unique_ptr<PopupMenu> CreatePopup() override { return win32::TrayWin32().CreatePopup(); }
};

frmMain* g_starting = nullptr;

void CALLBACK ClickSplash(HWND, UINT, UINT_PTR, DWORD) {
  if (g_starting && g_starting->splash && g_starting->splash->Visible()) {
    g_starting->splash->UserClick();
  }
}

struct Gallery {
  PictureDesktop desktop;
  MemoryFileSystem files;
  MemorySettingsStore settings;
  MemoryShell shell;
  MemoryProcess process;
  MemoryComponents components;
  win32::StringResourceWin32 resource;
  StringTable strings{resource};
  win32::LocaleWin32 locales;
  win32::IconsWin32 icons;
  win32::PicturesWin32 pictures;
  MemoryRegistryStore registry;
  MemoryWindowHooks hooks;
  MenuTray tray;
  MemoryTipWindows tips;
  MemoryProfile profile{files};
  MemoryFileDialogs fileDialogs;
  MemoryColorDialog colorDialog;
  win32::FontListWin32 fontList;
  MemoryClock clock;
  // clang-format off
  Platform platform{desktop, files,    settings,   shell,
                    process, components, strings,  locales,
                    icons,   pictures, registry,   hooks,
                    tray,    tips,     profile,    fileDialogs,
                    colorDialog, fontList, clock};
  // clang-format on
  std::unique_ptr<frmMain> main;

  Gallery() {
    settings.Put(u"Marl", u"Settings", u"FirstRun", u"N");
    Text folder;
    for (const char c : std::string(MARL_ICON_LIBRARY)) {
      folder += c == '/' ? u'\\' : static_cast<char16_t>(c);
    }
    folder.resize(folder.rfind(u'\\') + 1);
    process.programPath = folder + u"Marl.exe";
    files.Put(process.programPath, "program");
    for (const TextView tool : kTools) files.Put(folder + Text(tool), "tool");
  }

  void Click(std::string_view menu) {
    for (Control* control : main->controls()) {
      if (control->name() == menu) return desktop.Event([&] { control->UserClick(); });
    }
    ADD_FAILURE() << "there is no " << menu;
  }

  void TakeSplash() {
    frmSplash splash(desktop, pictures, locales);
    splash.Show();
    splash.Refresh();
    Take("frmSplash", splash);
    splash.Unload();
  }

  void Start() {
    main = std::make_unique<frmMain>(platform);
    g_starting = main.get();
    const UINT_PTR timer = SetTimer(nullptr, 0, 20, ClickSplash);
    desktop.Event([&] { main->Show(); });
    KillTimer(nullptr, timer);
    g_starting = nullptr;
  }

  void TakeMain() {
    Take("frmMain", *main);
    const Box& frame = main->shpRun[5]->bounds();
    const Point origin = main->ClientOrigin();
    tray.cursor = {origin.x + desktop.resolution().PixelsX(frame.left + frame.width / 2),
                   origin.y + desktop.resolution().PixelsY(frame.top + frame.height / 2)};
    desktop.Event([this] { main->tmrOver.Tick(); });
    Take("frmMain-hover", *main);
    tray.cursor = {origin.x - 100, origin.y - 100};
  }

  void TakeTrayMenu() {
    const Point outside = tray.cursor;
    tray.cursor = {0, 0};
    SetTimer(nullptr, 0, 50, OnMenuTimer);
    desktop.Event([this] { main->SystrayMenu(); });
    tray.cursor = outside;
  }

  void TakeOptions(Form& form) {
    auto& options = static_cast<frmOptions&>(form);
    options.lstRegEx.AddItem(u"^[0-9]+$");
    options.lstRegEx.AddItem(u"^[A-Z]{2}-[0-9]{4,}( rev\\. [a-z])?$");
    for (int tab = 1; tab <= options.tabOptions.PartCount(); ++tab) {
      options.tabOptions.UserSelectTab(tab);
      Take("frmOptions-" + std::to_string(tab), form);
    }
    options.cmdDisplay.UserClick();
    options.cmdLanSettings.UserClick();
    options.cmdSegmentation.UserClick();
  }

  void TakeDisplaySettings(Form& form) {
    Take("frmUI", form);
    auto& settingsForm = static_cast<frmUI&>(form);
    settingsForm.cmdSample[1].UserClick();
  }

  void TakeFont(Form& form) {
    Take("frmFont-foreign", form);
    auto& font = static_cast<frmFont&>(form);
    if (font.cmbFont.ListCount() > 0) font.cmbFont.UserSelectRow(font.cmbFont.ListCount() / 2);
    Take("frmFont", form);
  }

  void TakeLan(Form& form) {
    Take("frmLanSettings", form);
    auto& lan = static_cast<frmLanSettings&>(form);
    lan.optOverride.UserClick();
    Take("frmLanSettings-override", form);
  }

  void TakeSelectFile() {
    frmSelectFile form({desktop, locales, strings, [](WindowHandle) {}});
    form.Load();
    for (const TextView language : {u"French (Switzerland)", u"German", u"Greek"}) {
      form.cmbLanguage.AddItem(language);
    }
    form.cmbFile.AddItem(u"Manuals\\Installation\\Chapter 12 - Maintenance and repair.doc");
    form.cmbLanguage.SetListIndex(0);
    form.cmbFile.SetListIndex(0);
    form.ShowModal(main.get());
  }

  void TakeOthers() {
    frmPrjWiz wizard(desktop, locales, strings);
    wizard.ShowModal(main.get());
    frmRunningApps running(desktop, locales, strings);
    running.Load();
    running.lstRunningApplications.AddItem(u"Bench - report.qtd");
    running.lstRunningApplications.AddItem(u"TermVault");
    running.ShowModal(main.get());
    running.Unload();
    wizard.Unload();
  }

  void TakeMessages() {
    for (const Message& message : kMessages) {
      g_messageName = "message-" + std::to_string(message.string);
      SetTimer(nullptr, 0, 50, OnMessageTimer);
      desktop.MsgBox(strings.Get(message.string), message.flags, kApplicationTitle);
    }
  }

  void Walk() {
    desktop.walk["frmOptions"] = [this](Form& form) { TakeOptions(form); };
    desktop.walk["frmUI"] = [this](Form& form) { TakeDisplaySettings(form); };
    desktop.walk["frmFont"] = [this](Form& form) { TakeFont(form); };
    desktop.walk["frmLanSettings"] = [this](Form& form) { TakeLan(form); };
    TakeSplash();
    Start();
    TakeMain();
    TakeTrayMenu();
    Click("mnuHelpAbout");
    Click("mnuToolsOptions");
    Click("mnuProjectChangeServer");
    desktop.Event([this] { TakeSelectFile(); });
    desktop.Event([this] { TakeOthers(); });
    TakeMessages();
    main->Unload();
    desktop.DoEvents();
    EXPECT_EQ(g_taken, 24) << "pictures";
  }
};

/// The stored trees of a language; they are written by hand, or taken from the file that a failed
/// test leaves.
std::string StoredTrees() {
  std::ifstream file(std::string(MARL_ACCESSIBLE_TREES "/") + g_language + ".txt");
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Forms, ShowEveryTextToItsEndAndNoneOfTheirOwn) {
  g_trees.clear();
  Gallery gallery;
  gallery.Walk();
  if (g_language == MemoryStrings::kMarked || g_contrast) return;
  if (g_trees != StoredTrees()) {
    std::ofstream("accessible-" + g_language + ".txt", std::ios::binary) << g_trees;
  }
  EXPECT_EQ(g_trees, StoredTrees()) << "what a screen reader reads";
}

}  // namespace
}  // namespace marl
