#include "platform/win32/IconsWin32.h"

#include "platform/win32/Handle.h"
#include "platform/win32/Window.h"

namespace marl::win32 {

namespace {

// Handles are sign-extended 32-bit values, in 64-bit programs too.
HMODULE Library(LibraryHandle library) { return reinterpret_cast<HMODULE>(library); }

}  // namespace

LibraryHandle IconsWin32::OpenLibrary(TextView path) {
  return reinterpret_cast<LibraryHandle>(LoadLibraryExW(
      Wide(Text(path)), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
}

void IconsWin32::CloseLibrary(LibraryHandle library) { FreeLibrary(Library(library)); }

IconHandle IconsWin32::Load(LibraryHandle library, int id, int width, int height) {
  return HandleToLong(
      LoadImageW(Library(library), MAKEINTRESOURCEW(id), IMAGE_ICON, width, height, LR_SHARED));
}

void IconsWin32::Destroy(IconHandle icon) { DestroyIcon(Icon(icon)); }

int IconsWin32::Metric(int index) const { return GetSystemMetrics(index); }

WindowHandle IconsWin32::OwnerOf(WindowHandle window) const {
  return HandleToLong(GetWindow(Window(window), GW_OWNER));
}

void IconsWin32::SetIcon(WindowHandle window, int which, IconHandle icon) {
  SendMessageW(Window(window), WM_SETICON, static_cast<WPARAM>(which),
               reinterpret_cast<LPARAM>(Icon(icon)));
}

}  // namespace marl::win32
