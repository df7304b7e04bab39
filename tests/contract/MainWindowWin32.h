#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "platform/memory/MemoryClock.h"
#include "platform/memory/MemoryColorDialog.h"
#include "platform/memory/MemoryComponents.h"
#include "platform/memory/MemoryFileDialogs.h"
#include "platform/memory/MemoryFileSystem.h"
#include "platform/memory/MemoryFontList.h"
#include "platform/memory/MemoryLocale.h"
#include "platform/memory/MemoryPictures.h"
#include "platform/memory/MemoryProfile.h"
#include "platform/memory/MemoryRegistryStore.h"
#include "platform/memory/MemorySettingsStore.h"
#include "platform/memory/MemoryShell.h"
#include "platform/memory/MemoryStrings.h"
#include "platform/win32/DesktopWin32.h"
#include "platform/win32/IconsWin32.h"
#include "platform/win32/TipWindowsWin32.h"
#include "platform/win32/TrayWin32.h"
#include "platform/win32/WindowHooksWin32.h"
#include "shell/frmMain.h"
#include "support/frmSplash.h"

namespace marl {

/// The program on a real desktop; everything but windows is in memory.
class MainWindow : public testing::Test {
 protected:
  explicit MainWindow(std::string_view language = "en") : resource(language) {
    settings.Put(u"Marl", u"Settings", u"FirstRun", u"N");
  }
  ~MainWindow() override {
    if (main) main->Unload();
    desktop.DoEvents();
  }

  void Start() {
    main = std::make_unique<frmMain>(platform);
    starting = main.get();
    // The splash closes at once.
    const UINT_PTR timer = SetTimer(nullptr, 0, 20, ClickSplash);
    main->Show();
    KillTimer(nullptr, timer);
    starting = nullptr;
  }
  static void CALLBACK ClickSplash(HWND, UINT, UINT_PTR, DWORD) {
    if (starting && starting->splash && starting->splash->Visible()) starting->splash->UserClick();
  }
  struct Search {
    HWND owner;
    std::vector<HWND> found;
  };
  static BOOL CALLBACK TakeTip(HWND window, LPARAM argument) {
    auto& search = *reinterpret_cast<Search*>(argument);
    wchar_t name[100] = {};
    GetClassNameW(window, name, 100);
    if (_wcsicmp(name, L"tooltips_class32") == 0 && GetWindow(window, GW_OWNER) == search.owner) {
      search.found.push_back(window);
    }
    return TRUE;
  }
  HWND Window() const { return static_cast<HWND>(LongToHandle(main->hWnd())); }

  static std::wstring Caption(HMENU menu, int position) {
    wchar_t text[200] = {};
    GetMenuStringW(menu, static_cast<UINT>(position), text, 200, MF_BYPOSITION);
    return text;
  }
  static std::vector<std::wstring> Captions(HMENU menu) {
    std::vector<std::wstring> captions;
    for (int i = 0; i < GetMenuItemCount(menu); ++i) captions.push_back(Caption(menu, i));
    return captions;
  }
  /// Moves the mouse over a button.
  void Hover(std::size_t button) const {
    const Shape& place = *main->shpRun[button];
    SendMessageW(Window(), WM_MOUSEMOVE, 0,
                 MAKELPARAM(desktop.resolution().PixelsX(place.Left() + place.Width() / 2),
                            desktop.resolution().PixelsY(place.Top() + place.Height() / 2)));
  }
  /// The tip windows of the main form, after the mouse has been over every button.
  std::vector<HWND> Tips() const {
    for (std::size_t button = 0; button < main->shpRun.size(); ++button) Hover(button);
    return TipsSoFar();
  }
  std::vector<HWND> TipsSoFar() const {
    Search search{Window(), {}};
    EnumThreadWindows(GetCurrentThreadId(), TakeTip, reinterpret_cast<LPARAM>(&search));
    return search.found;
  }
  static std::vector<int> LiveHandles() {
    std::vector<int> live;
    for (const auto& count : win32::g_liveHandles) live.push_back(count);
    return live;
  }

  inline static frmMain* starting = nullptr;

  win32::DesktopWin32 desktop;
  MemoryFileSystem files;
  MemorySettingsStore settings;
  MemoryShell shell;
  MemoryProcess process;
  MemoryComponents components;
  MemoryStrings resource;
  StringTable strings{resource};
  MemoryLocale locales;
  win32::IconsWin32 icons;
  MemoryProfile profile{files};
  MemoryFileDialogs fileDialogs;
  MemoryColorDialog colorDialog;
  MemoryFontList fontList;
  MemoryClock clock;
  MemoryPictures pictures;
  MemoryRegistryStore registry;
  win32::WindowHooksWin32 hooks{desktop};
  win32::TrayWin32 tray;
  win32::TipWindowsWin32 tips;
  Platform platform{desktop, files,       settings,    shell,    process, components, strings,
                    locales, icons,       pictures,    registry, hooks,   tray,       tips,
                    profile, fileDialogs, colorDialog, fontList, clock};
  std::unique_ptr<frmMain> main;
};

}  // namespace marl
