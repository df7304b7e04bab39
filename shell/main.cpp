// The entry point on Windows: creates the ports and runs the program on them.

#include <cstdlib>

#include "platform/win32/ClockWin32.h"
#include "platform/win32/ColorDialogWin32.h"
#include "platform/win32/ComponentsWin32.h"
#include "platform/win32/DesktopWin32.h"
#include "platform/win32/FileDialogsWin32.h"
#include "platform/win32/FileSystemWin32.h"
#include "platform/win32/FontListWin32.h"
#include "platform/win32/FormWin32.h"
#include "platform/win32/Hardening.h"
#include "platform/win32/IconsWin32.h"
#include "platform/win32/LocaleWin32.h"
#include "platform/win32/PictureLoader.h"
#include "platform/win32/ProcessWin32.h"
#include "platform/win32/ProfileWin32.h"
#include "platform/win32/RegistryStoreWin32.h"
#include "platform/win32/SettingsStoreWin32.h"
#include "platform/win32/ShellWin32.h"
#include "platform/win32/StringResourceWin32.h"
#include "platform/win32/TipWindowsWin32.h"
#include "platform/win32/TrayWin32.h"
#include "platform/win32/WindowHooksWin32.h"
#include "shell/Application.h"

namespace __gnu_cxx {

// Takes the place of the C++ library's own handler, which also prints the type of the exception:
// nobody would read it, and what turns the type into words is 48 KB of the program.
void __verbose_terminate_handler() { std::abort(); }

}  // namespace __gnu_cxx

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  using namespace marl;
  win32::HardenProcess();
  win32::DesktopWin32 desktop;
  win32::FileSystemWin32 files;
  win32::SettingsStoreWin32 settings;
  win32::ProcessWin32 process;
  win32::ComponentsWin32 components;
  win32::StringResourceWin32 resource;
  const StringTable strings(resource);
  const win32::LocaleWin32 locales;
  win32::IconsWin32 icons;
  win32::PicturesWin32 pictures;
  win32::RegistryStoreWin32 registry;
  win32::WindowHooksWin32 hooks(desktop);
  win32::TrayWin32 tray;
  win32::TipWindowsWin32 tips;
  win32::ProfileWin32 profile;
  win32::FileDialogsWin32 fileDialogs;
  win32::ColorDialogWin32 colorDialog;
  win32::FontListWin32 fontList;
  const win32::ClockWin32 clock;
  win32::ShellWin32 shell([&]() -> HWND {
    if (desktop.forms().empty() || !desktop.forms().front()->peer()) return nullptr;
    return static_cast<win32::FormWin32*>(desktop.forms().front()->peer())->window();
  });
  Application application({desktop, files, settings, shell, process, components, strings, locales,
                           icons, pictures, registry, hooks, tray, tips, profile, fileDialogs,
                           colorDialog, fontList, clock});
  return application.Run();
}
