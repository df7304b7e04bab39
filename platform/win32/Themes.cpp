#include "platform/win32/Themes.h"

#include "platform/win32/SystemLibrary.h"

namespace marl::win32 {

namespace {

struct Functions {
  SystemLibrary library{L"uxtheme.dll"};
  Themes::OpenFunction* open = library.Find<Themes::OpenFunction>("OpenThemeData");
  Themes::OpenForDpiFunction* openForDpi =
      library.Find<Themes::OpenForDpiFunction>("OpenThemeDataForDpi");
  Themes::CloseFunction* close = library.Find<Themes::CloseFunction>("CloseThemeData");
  Themes::DrawFunction* draw = library.Find<Themes::DrawFunction>("DrawThemeBackground");
  Themes::SizeFunction* size = library.Find<Themes::SizeFunction>("GetThemePartSize");
};

const Functions& Bound() {
  static const Functions functions;
  return functions;
}

}  // namespace

HTHEME Themes::Open(const wchar_t* classes, int dpi) {
  if (Bound().openForDpi) return Bound().openForDpi(nullptr, classes, static_cast<UINT>(dpi));
  return Bound().open ? Bound().open(nullptr, classes) : nullptr;
}

void Themes::Close(HTHEME theme) {
  if (Bound().close) Bound().close(theme);
}

bool Themes::DrawBackground(HTHEME theme, HDC context, int part, int state, const RECT& area) {
  return Bound().draw && SUCCEEDED(Bound().draw(theme, context, part, state, &area, nullptr));
}

bool Themes::PartSize(HTHEME theme, int part, int state, SIZE& size) {
  SIZE found = {};
  if (!Bound().size ||
      FAILED(Bound().size(theme, nullptr, part, state, nullptr, TS_DRAW, &found))) {
    return false;
  }
  size = found;
  return true;
}

}  // namespace marl::win32
