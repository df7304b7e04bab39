#include "appearance/modSetIcon.h"

namespace marl {

namespace {

constexpr TextView kLibrary = u"q17icl.oru";

}  // namespace

LibraryHandle modSetIcon::Open() const {
  const Text program = process_.ProgramPath();
  return icons_.OpenLibrary(program.substr(0, program.rfind(u'\\') + 1).append(kLibrary));
}

void modSetIcon::SetFormIcon(WindowHandle window, int id, bool SetOwner) const {
  WindowHandle top = window;
  if (SetOwner) {
    while (const WindowHandle owner = icons_.OwnerOf(top)) top = owner;
  }
  const LibraryHandle library = Open();
  if (library == 0) return;
  const struct {
    int which;
    int width;
    int height;
  } sizes[] = {{kBigIcon, kIconWidth, kIconHeight},
               {kSmallIcon, kSmallIconWidth, kSmallIconHeight}};
  for (const auto& size : sizes) {
    const IconHandle icon =
        icons_.Load(library, id, icons_.Metric(size.width), icons_.Metric(size.height));
    if (icon == 0) continue;
    if (SetOwner) icons_.SetIcon(top, size.which, icon);
    icons_.SetIcon(window, size.which, icon);
  }
  icons_.CloseLibrary(library);
}

IconHandle modSetIcon::LoadIconHandle(int id, bool Large) const {
  const LibraryHandle library = Open();
  if (library == 0) return 0;
  const IconHandle icon =
      icons_.Load(library, id, icons_.Metric(Large ? kIconWidth : kSmallIconWidth),
                  icons_.Metric(Large ? kIconHeight : kSmallIconHeight));
  icons_.CloseLibrary(library);
  return icon;
}

void modSetIcon::ReleaseIcon(IconHandle icon) const { icons_.Destroy(icon); }

}  // namespace marl
