#include "platform/win32/StringResourceWin32.h"

#include "platform/win32/Handle.h"

namespace marl::win32 {

bool StringResourceWin32::Load(int id, Text& out) const {
  if (id < 0 || id > 0xFFFF) return false;
  // With a buffer size of 0 the platform returns a pointer to the text itself, and its length.
  const wchar_t* text = nullptr;
  const int length = LoadStringW(GetModuleHandleW(nullptr), static_cast<UINT>(id),
                                 reinterpret_cast<wchar_t*>(&text), 0);
  if (length <= 0 || !text) return false;
  out = FromWide(text, static_cast<std::size_t>(length));
  return true;
}

}  // namespace marl::win32
