// Thousands of layouts and highlights: handles and bytes before and after.

#include "tests/contract/LiveBytes.h"
#include "tests/contract/MainWindowWin32.h"
#include "tests/unit/VariedSkin.h"

// After <windows.h>.
#include <psapi.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace marl {

namespace {

constexpr int kLayouts = 2000;
constexpr int kHighlights = 10000;
constexpr int kBatches = 10;

/// Drawing objects, windows, menus and icons of the process.
struct PlatformObjects {
  DWORD drawing = 0;
  DWORD user = 0;
};

/// The highest handle among enough new objects to fill all gaps: it rises with each object that is
/// never released.
template <typename Handle, typename Make, typename Drop>
DWORD HighestNumber(Make make, Drop drop) {
  std::vector<Handle> made(512);
  DWORD highest = 0;
  for (Handle& handle : made) {
    handle = make();
    highest = std::max<DWORD>(highest, LOWORD(HandleToULong(handle)));
  }
  for (const Handle handle : made) drop(handle);
  return highest;
}

PlatformObjects CountObjects() {
  PlatformObjects objects;
  objects.drawing = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  objects.user = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
  if (objects.drawing > 0) return objects;
  // Not every platform reports it.
  objects.drawing = HighestNumber<HPEN>([] { return CreatePen(PS_SOLID, 1, 0); }, DeleteObject);
  // Every other handle, of those that all programs of the desktop share.
  objects.user = HighestNumber<HMENU>(CreateMenu, DestroyMenu) / 2;
  return objects;
}

std::int64_t PrivateBytes() {
  PROCESS_MEMORY_COUNTERS counters = {};
  counters.cb = sizeof counters;
  K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return static_cast<std::int64_t>(counters.PagefileUsage);
}

using Handles = std::array<int, std::size(win32::g_liveHandles)>;
Handles CountHandles() {
  Handles handles;
  std::copy(std::begin(win32::g_liveHandles), std::end(win32::g_liveHandles), handles.begin());
  return handles;
}

class PanelLeaks : public MainWindow {
 protected:
  void Layouts(int times) {
    for (int i = 0; i < times; ++i) {
      WriteSkin(registry, VariedSkin(i));
      main->SetUI();
    }
    // At the end of each batch.
    WriteSkin(registry, SkinSettings());
    main->SetUI();
    pictures.loaded = {};  // the log of the test's pictures
  }
  /// Moves the mouse from button to button. Returns how often the button under it was highlighted.
  int Highlights(int times) {
    int right = 0;
    for (int i = 0; i < times; ++i) {
      const int button = i % 17;
      Hover(static_cast<std::size_t>(button));
      right += main->HoverButton == button;
      if (i % 20 == 0) UpdateWindow(Window());
    }
    SendMessageW(Window(), WM_MOUSEMOVE, 0, MAKELPARAM(0, 0));
    // The real mouse may be on a button, whose tip is then recreated.
    desktop.DoEvents();
    main->BindTooltips();
    return right;
  }
};

}  // namespace

TEST_F(PanelLeaks, ThousandsOfLayoutsAndHighlightsLoseNothing) {
  Start();
  SetForegroundWindow(Window());
  struct State {
    std::int64_t bytes = 0;
    std::int64_t memory = 0;
    Handles handles;
  };
  const auto batch = [this] {
    Layouts(kLayouts / kBatches);
    EXPECT_EQ(Highlights(kHighlights / kBatches), kHighlights / kBatches);
    return State{LiveBytes(), PrivateBytes(), CountHandles()};
  };
  // The first ones leave caches: fonts, and capacity of longer texts.
  std::vector<State> states(kBatches + 1);
  states[0] = batch();
  const PlatformObjects objects = CountObjects();
  for (std::size_t i = 1; i < states.size(); ++i) states[i] = batch();

  for (const State& state : states) {
    EXPECT_EQ(state.bytes, states[0].bytes);
    EXPECT_EQ(state.handles, states[0].handles);
  }
  EXPECT_EQ(registry.OpenKeys(), 0u);
  EXPECT_TRUE(TipsSoFar().empty());
  // One leaked object in two hundred calls would show; a few come and go with other windows.
  const PlatformObjects now = CountObjects();
  EXPECT_LE(now.drawing, objects.drawing + 50);
  EXPECT_LE(now.user, objects.user + 50);
  // The platform allocates for itself at first, and then large blocks now and then. A leak that the
  // program's own bytes do not show, even of one small block per call, continues.
  EXPECT_GT(states[0].memory, 0);
  constexpr int kSmallBlock = 64;  // bytes, including overhead
  constexpr std::size_t kHalf = kBatches / 2;
  // The platform allocates and frees several hundred thousand bytes between two batches; the
  // medians of the two halves stay, or change by one step of the heap (65,536 bytes).
  const auto median = [&](std::size_t first) {
    std::array<std::int64_t, kHalf> memory;
    for (std::size_t i = 0; i < kHalf; ++i) memory[i] = states[first + i].memory;
    std::sort(memory.begin(), memory.end());
    return memory[kHalf / 2];
  };
  const std::int64_t leaked = (kLayouts + kHighlights) / 2 * kSmallBlock;
  std::int64_t growth = median(1 + kHalf) - median(1);
  if (growth > leaked / 4) {
    // The platform may have taken one large block; a leak goes on.
    for (std::size_t i = 0; i < kHalf; ++i) states.push_back(batch());
    growth = std::min(growth, median(1 + 2 * kHalf) - median(1 + kHalf));
  }
  EXPECT_LE(growth, leaked / 4);
  RecordProperty("PrivateBytes", std::to_string(states[kBatches].memory - states[0].memory));
}

}  // namespace marl
