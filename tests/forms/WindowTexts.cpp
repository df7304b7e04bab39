#include "tests/forms/WindowTexts.h"

#include "tests/desktop/Desktop.h"
#include "tests/forms/FormTexts.h"

namespace marl {

namespace {

Text TextFrom(const std::wstring& text) { return {text.begin(), text.end()}; }

void AddUnmarkedMenu(std::vector<std::string>& unmarked, HMENU menu) {
  for (int i = 0; i < GetMenuItemCount(menu); ++i) {
    wchar_t text[512] = {};
    GetMenuStringW(menu, static_cast<UINT>(i), text, 512, MF_BYPOSITION);
    // The shortcut after the tab is not translated.
    const std::wstring caption = std::wstring(text).substr(0, std::wstring(text).find(L'\t'));
    if (!IsMarked(TextFrom(caption))) unmarked.push_back("menu: " + desktop::ToUtf8(caption));
    if (const HMENU below = GetSubMenu(menu, i)) AddUnmarkedMenu(unmarked, below);
  }
}

BOOL CALLBACK AddUnmarkedWindow(HWND window, LPARAM unmarked) {
  const std::wstring name = desktop::ClassOf(window);
  const std::wstring text = desktop::TextOf(window);
  const bool data = name == L"Edit" || name == L"ComboBox" || name == L"ListBox";
  if (!data && !IsMarked(TextFrom(text))) {
    reinterpret_cast<std::vector<std::string>*>(unmarked)->push_back(desktop::ToUtf8(name) + ": " +
                                                                     desktop::ToUtf8(text));
  }
  return TRUE;
}

}  // namespace

std::vector<std::string> UnmarkedWindows(HWND window) {
  std::vector<std::string> unmarked;
  AddUnmarkedWindow(window, reinterpret_cast<LPARAM>(&unmarked));
  EnumChildWindows(window, AddUnmarkedWindow, reinterpret_cast<LPARAM>(&unmarked));
  if (const HMENU menu = GetMenu(window)) AddUnmarkedMenu(unmarked, menu);
  return unmarked;
}

}  // namespace marl
