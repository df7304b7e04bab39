#pragma once

#include "platform/Icons.h"

namespace marl::win32 {

/// Icons in libraries of any bitness: they are opened for their resources only.
class IconsWin32 : public Icons {
 public:
  LibraryHandle OpenLibrary(TextView path) override;
  void CloseLibrary(LibraryHandle library) override;
  IconHandle Load(LibraryHandle library, int id, int width, int height) override;
  void Destroy(IconHandle icon) override;
  int Metric(int index) const override;
  WindowHandle OwnerOf(WindowHandle window) const override;
  void SetIcon(WindowHandle window, int which, IconHandle icon) override;
};

}  // namespace marl::win32
