// The panel's background, computed, compared with drawing it line by line, with a pen for each step
// of the sweep. Both leave 32-bit pixels in memory; showing them takes the same time.
//
// Then the whole of SetUI in a real window (reading the skin from the real registry, layout,
// picture, repainting), and the time from a mouse message to the painted highlight.

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "appearance/GradientRect.h"
#include "bench/Race.h"
#include "platform/memory/MemoryClock.h"
#include "platform/memory/MemoryColorDialog.h"
#include "platform/memory/MemoryComponents.h"
#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryFileDialogs.h"
#include "platform/memory/MemoryFileSystem.h"
#include "platform/memory/MemoryFontList.h"
#include "platform/memory/MemoryLocale.h"
#include "platform/memory/MemoryPictures.h"
#include "platform/memory/MemoryProfile.h"
#include "platform/memory/MemorySettingsStore.h"
#include "platform/memory/MemoryShell.h"
#include "platform/memory/MemoryStrings.h"
#include "platform/win32/CanvasWin32.h"
#include "platform/win32/DesktopWin32.h"
#include "platform/win32/IconsWin32.h"
#include "platform/win32/PixelSurface.h"
#include "platform/win32/RegistryStoreWin32.h"
#include "platform/win32/TipWindowsWin32.h"
#include "platform/win32/TrayWin32.h"
#include "platform/win32/WindowHooksWin32.h"
#include "shell/frmMain.h"
#include "support/frmSplash.h"

namespace marl {
namespace {

/// The context of the surface, once it has this size.
HDC ContextOf(win32::PixelSurface& surface, Size size) {
  if (!surface.Fit(size.width, size.height)) throw std::bad_alloc();
  return surface.context();
}

/// A device context with its own pixels.
class Surface : public GradientTarget {
 public:
  explicit Surface(Size size) : size_(size) {}

  bool GetClientRect(Size& size) override {
    size = size_;
    return true;
  }
  void Line(Point from, Point to, Color color) override { canvas_.Line(from, to, color); }

 private:
  Size size_;
  win32::PixelSurface surface_;
  win32::FontCache fonts_;
  win32::CanvasWin32 canvas_{ContextOf(surface_, size_), fonts_, 96};
};

/// The real registry, read-only, with an angle that the benchmark sets.
class ReadOnlyRegistry : public win32::RegistryStoreWin32 {
 public:
  std::int32_t angle = 0;

  Status QueryValue(KeyHandle key, const NarrowText& name, std::uint32_t& kind,
                    std::span<char> buffer, std::uint32_t& size) override {
    const Status status = RegistryStoreWin32::QueryValue(key, name, kind, buffer, size);
    if (name != "Angle") return status;
    kind = kRegDword;
    size = sizeof angle;
    if (buffer.size() < sizeof angle) return buffer.empty() ? kOk : kMoreData;
    std::memcpy(buffer.data(), &angle, sizeof angle);
    return kOk;
  }
  Status CreateKey(KeyHandle, const NarrowText&, std::uint32_t, OpenKeyHandle&) override {
    return kAccessDenied;
  }
  Status DeleteKey(KeyHandle, const NarrowText&) override { return kAccessDenied; }
  Status SetValue(KeyHandle, const NarrowText&, std::uint32_t, const NarrowText&) override {
    return kAccessDenied;
  }
  Status DeleteValue(KeyHandle, const NarrowText&) override { return kAccessDenied; }
};

/// Strips with soft edges in place of the program's, so that blending takes part.
class SoftPictures : public MemoryPictures {
 public:
  PicturePtr Load(int id) override {
    const PicturePtr plain = MemoryPictures::Load(id);
    if (!plain) return nullptr;
    auto soft = std::make_shared<Picture>(*plain);
    for (std::size_t i = 0; i < soft->pixels.size(); i += 2) soft->pixels[i] = 0x40202020;
    return soft;
  }
};

/// The program in a real window; everything that SetUI does not need is in memory.
class Switchboard {
 public:
  Switchboard() {
    settings_.Put(u"Marl", u"Settings", u"FirstRun", u"N");
    starting_ = &main;
    // The splash closes at once.
    const UINT_PTR timer = SetTimer(nullptr, 0, 20, ClickSplash);
    main.Show();
    KillTimer(nullptr, timer);
    starting_ = nullptr;
    desktop.DoEvents();
  }
  ~Switchboard() {
    main.Unload();
    desktop.DoEvents();
  }
  Switchboard(const Switchboard&) = delete;
  Switchboard& operator=(const Switchboard&) = delete;

  win32::DesktopWin32 desktop;
  ReadOnlyRegistry registry;

 private:
  static void CALLBACK ClickSplash(HWND, UINT, UINT_PTR, DWORD) {
    if (starting_->splash && starting_->splash->Visible()) starting_->splash->UserClick();
  }
  inline static frmMain* starting_ = nullptr;

  MemoryFileSystem files_;
  MemorySettingsStore settings_;
  MemoryShell shell_;
  MemoryProcess process_;
  MemoryComponents components_;
  MemoryStrings resource_;
  StringTable strings_{resource_};
  MemoryLocale locales_;
  win32::IconsWin32 icons_;
  MemoryProfile profile_{files_};
  MemoryFileDialogs fileDialogs_;
  MemoryColorDialog colorDialog_;
  MemoryFontList fontList_;
  MemoryClock clock_;
  SoftPictures pictures_;
  win32::WindowHooksWin32 hooks_{desktop};
  win32::TrayWin32 tray_;
  win32::TipWindowsWin32 tips_;
  Platform platform_{desktop,      files_,       settings_, shell_, process_,
                     components_,  strings_,     locales_,  icons_, pictures_,
                     registry,     hooks_,       tray_,     tips_,  profile_,
                     fileDialogs_, colorDialog_, fontList_, clock_};

 public:
  frmMain main{platform_};
};

/// Times SetUI and its picture alone at several angles. Returns the seconds of a SetUI, in the
/// worst case.
double WholeSetUI() {
  Switchboard switchboard;
  frmMain& main = switchboard.main;
  const win32::DesktopWin32& desktop = switchboard.desktop;
  const Size size = {desktop.resolution().PixelsX(main.inner().width),
                     desktop.resolution().PixelsY(main.inner().height)};
  GradientPicture picture;
  double worst = 0;
  for (const int angle : {0, 30, 45, 90, 217}) {
    switchboard.registry.angle = angle;
    main.SetUI();
    if (main.Skin.Angle != angle) std::exit(2);
    MemoryDesktop quiet;
    clsGradient gradient(quiet);
    gradient.SetAngle(static_cast<float>(angle));
    gradient.SetColor1(main.Skin.Color1);
    gradient.SetColor2(main.Skin.Color2);

    bench::Race race("SetUI/" + std::to_string(size.width) + '/' + std::to_string(angle));
    race.Add("marl", [&] { main.SetUI(); });
    race.Add("its skin", [&] { bench::Keep(ReadSkin(switchboard.registry, 5).Angle); });
    race.Add("its picture", [&] {
      picture.Begin(size);
      gradient.Draw(picture);
      bench::Keep(picture.Take()->pixels.data());
    });
    race.Add("its painting", [&] { main.Refresh(); });
    race.Run(20, 4, 4.0 * size.width * size.height);
    worst = std::max(worst, race.Seconds("marl"));
  }
  return worst;
}

/// Median of the seconds from a mouse message over the next button until its highlight is painted.
double Highlight() {
  constexpr int kTimes = 1000;
  Switchboard switchboard;
  frmMain& main = switchboard.main;
  main.BringToFront();
  switchboard.desktop.DoEvents();
  main.tmrOver.SetEnabled(false);  // it would look for the real mouse
  const HWND window = reinterpret_cast<HWND>(static_cast<LONG_PTR>(main.hWnd()));
  // Buttons whose tools are missing show no highlight.
  std::vector<int> alive;
  for (int i = 0; i < kButtonCount; ++i) {
    if (main.lblRun[static_cast<std::size_t>(i)]->Enabled()) alive.push_back(i);
  }
  if (alive.size() < 2) std::exit(2);
  std::vector<double> seconds;
  for (int i = 0; i < kTimes; ++i) {
    const int button = alive[static_cast<std::size_t>(i) % 2];
    const Box& frame = main.shpRun[static_cast<std::size_t>(button)]->bounds();
    const Resolution resolution = main.resolution();
    const LPARAM at = MAKELPARAM(resolution.PixelsX(frame.left + frame.width / 2),
                                 resolution.PixelsY(frame.top + frame.height / 2));
    const double start = bench::Now();
    SendMessageW(window, WM_MOUSEMOVE, 0, at);
    UpdateWindow(window);
    GdiFlush();
    seconds.push_back(bench::Now() - start);
    if (main.HoverButton != button) {
      std::puts("the window is not in front: nothing is highlighted");
      std::exit(2);
    }
  }
  std::sort(seconds.begin(), seconds.end());
  const double median = seconds[seconds.size() / 2];
  std::printf("%-16s %-24s %12.3f us (median of %d; worst %.3f)\n", "highlight", "marl",
              median * 1e6, kTimes, seconds.back() * 1e6);
  return median;
}

int Main() {
  double worst = std::numeric_limits<double>::infinity();
  // The panel with five columns at 96 and at 144 dpi.
  for (const Size size : {Size{586, 362}, Size{879, 543}}) {
    for (const int angle : {0, 30, 45, 90, 217}) {
      MemoryDesktop desktop;
      clsGradient gradient(desktop);
      gradient.SetColor1(Rgb(182, 203, 197));
      gradient.SetColor2(Rgb(0, 77, 57));
      gradient.SetAngle(static_cast<float>(angle));
      Surface surface(size);

      GradientPicture target;
      PicturePtr kept;  // as the form keeps it

      bench::Race race("panel/" + std::to_string(size.width) + '/' + std::to_string(angle));
      race.Add("marl", [&] {
        target.Begin(size);
        gradient.Draw(target);
        kept = target.Take();
        bench::Keep(kept->pixels.data());
      });
      race.Add("pen and line", [&] {
        gradient.Draw(surface);
        GdiFlush();
      });
      race.Run(40, 4, 4.0 * size.width * size.height);
      worst = std::min(worst, race.Against("pen and line"));
    }
  }
  bench::Goals goals;
  goals.AtLeast("panel_background_lines", worst, 5);
  goals.AtMost("panel_setui_ms", WholeSetUI() * 1e3, 1.5);
  goals.AtMost("panel_highlight_ms", Highlight() * 1e3, 2);
  goals.Tell();
  return 0;
}

}  // namespace
}  // namespace marl

int main() { return marl::Main(); }
