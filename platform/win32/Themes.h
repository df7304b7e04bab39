#pragma once

#include <windows.h>
#include <uxtheme.h>

namespace marl::win32 {

/// The functions of visual styles (uxtheme.dll) that the program uses, bound at run time: the
/// library is none of those that Windows always takes from the system folder, so importing it would
/// let a file beside the program take its place. Without the library there are no themes.
struct Themes {
  using OpenFunction = HTHEME WINAPI(HWND, LPCWSTR);
  using CloseFunction = HRESULT WINAPI(HTHEME);
  using DrawFunction = HRESULT WINAPI(HTHEME, HDC, int, int, LPCRECT, LPCRECT);
  using SizeFunction = HRESULT WINAPI(HTHEME, HDC, int, int, LPCRECT, THEMESIZE, SIZE*);

  using OpenForDpiFunction = HTHEME WINAPI(HWND, LPCWSTR, UINT);

  /// The theme of a class, drawn for this resolution (OpenThemeDataForDpi; before version 1703 for
  /// that of the system, OpenThemeData); null if visual styles are off.
  static HTHEME Open(const wchar_t* classes, int dpi);
  static void Close(HTHEME theme);
  /// False if nothing was drawn.
  static bool DrawBackground(HTHEME theme, HDC context, int part, int state, const RECT& area);
  /// The size at which a part is drawn; false, with `size` unchanged, if it is unknown.
  static bool PartSize(HTHEME theme, int part, int state, SIZE& size);
};

}  // namespace marl::win32
