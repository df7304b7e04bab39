#include <windows.h>
#include <commctrl.h>
#include <gtest/gtest.h>
#include <objbase.h>

#include <iostream>
#include <iterator>
#include <optional>
#include <string_view>

#include "platform/memory/MemoryStrings.h"
#include "tests/forms/Language.h"

std::string marl::g_language;
bool marl::g_contrast = false;

namespace {

/// The colours of a scheme with high contrast, for all programs of this desktop while it lives. Not
/// every platform can switch to it.
class ContrastScheme {
 public:
  ContrastScheme() {
    for (std::size_t i = 0; i < std::size(kColors); ++i) {
      indexes_[i] = kColors[i].index;
      before_[i] = GetSysColor(kColors[i].index);
      colors_[i] = kColors[i].color;
    }
    Set(colors_);
    // As in such a scheme, controls are painted in these colours.
    using SetProperties = void(WINAPI*)(DWORD);
    const HMODULE themes = LoadLibraryW(L"uxtheme.dll");
    if (const auto set = reinterpret_cast<SetProperties>(
            reinterpret_cast<void (*)()>(GetProcAddress(themes, "SetThemeAppProperties")))) {
      set(0);
    }
  }
  ~ContrastScheme() { Set(before_); }
  ContrastScheme(const ContrastScheme&) = delete;
  ContrastScheme& operator=(const ContrastScheme&) = delete;

 private:
  struct Entry {
    int index;
    COLORREF color;
  };
  static constexpr COLORREF kWhite = RGB(255, 255, 255);
  static constexpr Entry kColors[] = {{COLOR_WINDOW, 0},
                                      {COLOR_WINDOWTEXT, kWhite},
                                      {COLOR_BTNFACE, 0},
                                      {COLOR_BTNTEXT, kWhite},
                                      {COLOR_GRAYTEXT, RGB(63, 242, 63)},
                                      {COLOR_HIGHLIGHT, RGB(26, 235, 255)},
                                      {COLOR_HIGHLIGHTTEXT, 0},
                                      {COLOR_HOTLIGHT, RGB(255, 255, 0)},
                                      {COLOR_MENU, 0},
                                      {COLOR_MENUTEXT, kWhite},
                                      {COLOR_MENUBAR, 0},
                                      {COLOR_MENUHILIGHT, RGB(26, 235, 255)},
                                      {COLOR_BTNSHADOW, kWhite},
                                      {COLOR_BTNHIGHLIGHT, kWhite},
                                      {COLOR_3DLIGHT, 0},
                                      {COLOR_3DDKSHADOW, kWhite},
                                      {COLOR_INFOBK, 0},
                                      {COLOR_INFOTEXT, kWhite},
                                      {COLOR_SCROLLBAR, 0}};

  void Set(const COLORREF* colors) {
    SetSysColors(static_cast<int>(std::size(kColors)), indexes_, colors);
  }

  int indexes_[std::size(kColors)];
  COLORREF colors_[std::size(kColors)];
  COLORREF before_[std::size(kColors)];
};

}  // namespace

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  constexpr std::string_view kLanguage = "--language=";
  for (int i = 1; i < count; ++i) {
    const std::string_view argument = arguments[i];
    if (argument == "--contrast") marl::g_contrast = true;
    if (argument.starts_with(kLanguage)) marl::g_language = argument.substr(kLanguage.size());
  }
  if (marl::MemoryStrings(marl::g_language).texts.empty()) {
    std::cerr << "forms_tests --language=CODE\n";
    return 2;
  }
  SetProcessDPIAware();
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 2;
  const INITCOMMONCONTROLSEX record = {sizeof record, ICC_WIN95_CLASSES | ICC_USEREX_CLASSES};
  InitCommonControlsEx(&record);
  std::optional<ContrastScheme> scheme;
  if (marl::g_contrast) scheme.emplace();
  return RUN_ALL_TESTS();
}
