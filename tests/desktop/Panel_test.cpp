#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "appearance/SkinFile.h"
#include "platform/Contrast.h"
#include "platform/memory/MemoryFileSystem.h"
#include "tests/desktop/Switchboard.h"
#include "tests/unit/GradientReference.h"

// The panel on the screen: the gradient behind the buttons, the button under a real mouse, and the
// ring around the one that the keyboard has chosen.

namespace marl::desktop {

namespace {

using Starts = std::vector<Started>;

constexpr int kButtons = 18;
constexpr int kAnalyse = 0;

// Colours that occur nowhere else on the panel.
constexpr COLORREF kLit = RGB(255, 0, 255);
constexpr COLORREF kShade = RGB(0, 255, 255);
constexpr COLORREF kPlainText = RGB(255, 255, 0);
constexpr COLORREF kBrightText = RGB(255, 0, 0);

/// The look of a button at one moment.
struct Look {
  int squares = 0;  ///< of the bevel
  bool plain = false;
  bool bright = false;

  bool operator==(const Look&) const = default;
};
constexpr Look kOff{0, true, false};
constexpr Look kOn{1, false, true};

std::ostream& operator<<(std::ostream& out, const Look& look) {
  return out << look.squares << " squares" << (look.plain ? ", plain" : "")
             << (look.bright ? ", bright" : "");
}

class Panel : public SwitchboardTest {
 protected:
  Panel() {
    SetSkin(L"Border1", kLit);
    SetSkin(L"Border2", kShade);
    SetSkin(L"Text1", kPlainText);
    SetSkin(L"Text2", kBrightText);
    // A balloon would cover the pixels.
    settings.Set(L"Tooltips", L"False");
    Point({0, 0});
  }

  /// Moves the mouse there, again if a window that opens or closes takes it away.
  void Point(POINT at) {
    mouse_ = at;
    MoveMouse(at);
  }
  void KeepMouse() const {
    POINT now = {};
    if (GetCursorPos(&now) && (now.x != mouse_.x || now.y != mouse_.y)) MoveMouse(mouse_);
  }

  /// Waits until the mouse stays where it was moved to.
  bool Rests() const {
    MoveMouse(mouse_);
    POINT now = {};
    return GetCursorPos(&now) && now.x == mouse_.x && now.y == mouse_.y;
  }

  void SetSkin(const wchar_t* value, DWORD number) const {
    settings.SetRegistryNumber(L"GUI", value, number);
  }

  /// The client area, on the screen.
  static RECT InnerOf(HWND main) {
    RECT inner = {};
    GetClientRect(main, &inner);
    MapWindowPoints(main, nullptr, reinterpret_cast<POINT*>(&inner), 2);
    return inner;
  }

  static std::wstring Status(HWND main) {
    return TextOf(FindWindowExW(main, nullptr, L"msctls_statusbar32", nullptr));
  }

  /// The complete squares of the bevel around a button, from the outermost inwards; none if the
  /// first line is broken.
  static int Squares(HWND main, int button) {
    const RECT cell = CellOf(main, button);
    const Pixels pixels = Capture(cell);
    // The frame's first and last pixels, counted from the cell's corner.
    int l = PixelsOf(60), t = PixelsOf(60), r = PixelsOf(60 + 1695) - 1,
        b = PixelsOf(60 + 1215) - 1;
    int squares = 0;
    for (; squares < 3; ++squares, ++l, ++t, --r, --b) {
      // The cell ends before the frame's right edge: what is beyond it is read from the screen.
      const auto at = [&](int x, int y) {
        if (x < pixels.width && y < pixels.height) return pixels.At(x, y);
        return Capture({cell.left + x, cell.top + y, cell.left + x + 1, cell.top + y + 1}).At(0, 0);
      };
      bool whole = true;
      for (int x = l + 2; x <= r - 2 && whole; ++x) whole = at(x, t) == kLit;
      for (int y = t + 2; y <= b - 2 && whole; ++y) whole = at(l, y) == kLit;
      for (int x = l + 2; x <= r - 2 && whole; ++x) whole = at(x, b) == kShade;
      if (whole) {
        const Pixels edge =
            Capture({cell.left + r, cell.top + t + 2, cell.left + r + 1, cell.top + b - 1});
        whole = std::all_of(edge.colors.begin(), edge.colors.end(),
                            [](COLORREF color) { return color == kShade; });
      }
      if (!whole) break;
    }
    return squares;
  }

  static Look LookOf(HWND main, int button) {
    RECT label = CellOf(main, button);
    label.left += PixelsOf(90);
    label.top += PixelsOf(840);
    const Pixels pixels = Capture(label);
    const auto has = [&](COLORREF color) {
      return std::count(pixels.colors.begin(), pixels.colors.end(), color) > 5;
    };
    return {Squares(main, button), has(kPlainText), has(kBrightText)};
  }

  testing::AssertionResult Becomes(HWND main, int button, const Look& look,
                                   const std::wstring& status) const {
    if (WaitUntil([&] {
          KeepMouse();
          return LookOf(main, button) == look && Status(main) == status;
        })) {
      return testing::AssertionSuccess();
    }
    Screenshot("panel-look");
    POINT mouse = {};
    GetCursorPos(&mouse);
    return testing::AssertionFailure()
           << "button " << button << " has " << LookOf(main, button) << "; the status is "
           << ToUtf8(Status(main)) << "; the mouse is at " << mouse.x << "," << mouse.y
           << ", in front is " << ToUtf8(TextOf(GetForegroundWindow()));
  }

  /// The icon of a button on the screen.
  static Pixels Icon(HWND main, int button) {
    const RECT cell = CellOf(main, button);
    const POINT from = {cell.left + PixelsOf(540), cell.top + PixelsOf(120)};
    return Capture({from.x, from.y, from.x + PixelsOf(720), from.y + PixelsOf(720)});
  }
  /// The same, once everything is painted with the panel's stored look.
  Pixels IconWhen(HWND main, int button, const Look& look, const std::wstring& status) const {
    EXPECT_TRUE(Becomes(main, button, look, status));
    return Icon(main, button);
  }

  /// A window of this process in front of the switchboard, in a corner that the panel does not use.
  static HWND InFront() {
    const HWND window =
        CreateWindowExW(0, L"STATIC", L"In front", WS_POPUP | WS_CAPTION | WS_VISIBLE, 0, 0, 120,
                        60, nullptr, nullptr, nullptr, nullptr);
    EXPECT_TRUE(BringForward(window));
    return window;
  }

 private:
  POINT mouse_ = {};
};

/// The ring around a button: thickness in pixels, and its area on the screen.
int RingPixels() { return std::max(2, (PixelsOf(1440) + 24) / 48); }
RECT RingOf(HWND main, int button) {
  POINT corner = {};
  ClientToScreen(main, &corner);
  const int left = button % 5 * 1740 + 60;
  const int top = button / 5 * 1260 + 60;
  const int thick = RingPixels();
  return {corner.x + PixelsOf(left) - thick, corner.y + PixelsOf(top) - thick,
          corner.x + PixelsOf(left + 1695) + thick, corner.y + PixelsOf(top + 1215) + thick};
}

/// Calls `pixel(x, y)` for the pixels of the ring in a picture of its area.
template <typename Pixel>
void WalkRing(const Pixels& pixels, Pixel pixel) {
  const int thick = RingPixels();
  for (int y = 0; y < pixels.height; ++y) {
    for (int x = 0; x < pixels.width; ++x) {
      const bool inside =
          x >= thick && x < pixels.width - thick && y >= thick && y < pixels.height - thick;
      if (!inside) pixel(x, y);
    }
  }
}

/// The smallest contrast of a ring on the screen with what was there before.
double WeakestContrast(const Pixels& with, const Pixels& without) {
  double weakest = 21;
  WalkRing(with, [&](int x, int y) {
    weakest = std::min(weakest, ContrastOf(static_cast<Color>(with.At(x, y)),
                                           static_cast<Color>(without.At(x, y))));
  });
  return weakest;
}

/// Stores a skin file as the program's skin.
class StoredSkin : public SkinTarget {
 public:
  explicit StoredSkin(const Settings& settings) : settings_(settings) {}
  void SetNumber(std::int32_t SkinSettings::*field, std::int32_t number) override {
    settings_.SetRegistryNumber(
        L"GUI", Name([&](const SkinParameter& each) { return each.number == field; }),
        static_cast<DWORD>(number));
  }
  void SetText(marl::Text SkinSettings::*field, TextView text) override {
    settings_.SetRegistry(L"GUI",
                          Name([&](const SkinParameter& each) { return each.text == field; }),
                          std::wstring(text.begin(), text.end()));
  }

 private:
  template <typename Is>
  static std::wstring Name(Is is) {
    const auto found = std::find_if(kSkinParameters.begin(), kSkinParameters.end(), is);
    return {found->value.begin(), found->value.end()};
  }
  const Settings& settings_;
};

const std::wstring kAnalyseStatus = L"Analyse files for leverage statistics";
const std::wstring kEditStatus = L"Interactively translate a file";
const std::wstring kServerStatus = L"Change the current project tracking server";
const std::wstring kAdministratorStatus = L"Administer Marl servers";

}  // namespace

TEST_F(Panel, IsAsLargeAsTheDpiOfTheScreenRequires) {
  const HDC screen = GetDC(nullptr);
  const int dots = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  // A run that asked for a certain resolution must get it.
  if (const std::wstring wanted = Environment(L"MARL_WINE_DPI"); !wanted.empty()) {
    EXPECT_EQ(std::to_wstring(dots), wanted);
  }
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  const RECT inner = InnerOf(main);
  EXPECT_EQ(inner.right - inner.left, 8790 * dots / 1440);
  EXPECT_EQ(inner.bottom - inner.top, 5430 * dots / 1440);
  // Below the last row there is room for the status bar and the ring around a button.
  RECT bar = {};
  GetWindowRect(FindWindowExW(main, nullptr, L"msctls_statusbar32", nullptr), &bar);
  EXPECT_EQ(bar.bottom, inner.bottom);
  EXPECT_GE(bar.top - inner.top, PixelsOf(3 * 1260 + 60 + 1215) + RingPixels());
  EXPECT_TRUE(Close(marl));
}

TEST_F(Panel, GradientMatchesTheReferenceAtAnyAngle) {
  constexpr COLORREF kFrom = RGB(10, 200, 90);
  constexpr COLORREF kTo = RGB(250, 20, 160);
  SetSkin(L"Color1", kFrom);
  SetSkin(L"Color2", kTo);
  const SuiteFolder suite;
  for (const int angle : {0, 30, 90, 217, 345}) {
    SetSkin(L"Angle", static_cast<DWORD>(angle));
    const RunningMarl marl(suite);
    const HWND main = marl.WaitForWindow();
    ASSERT_TRUE(main);
    const RECT inner = InnerOf(main);
    const int width = inner.right - inner.left;
    const int height = inner.bottom - inner.top;
    const Picture expected =
        reference::Draw(reference::Compute(static_cast<float>(angle), static_cast<Color>(kFrom),
                                           static_cast<Color>(kTo), width, height),
                        width, height, 0);
    // In each of the 20 cells a point that neither picture nor label covers.
    const auto wrong = [&] {
      const Pixels shown = Capture(inner);
      std::vector<std::string> places;
      for (int cell = 0; cell < 20; ++cell) {
        const int x = PixelsOf(cell % 5 * 1740 + 300);
        const int y = PixelsOf(cell / 5 * 1260 + 200 + cell % 5 * 100);
        const COLORREF color = shown.At(x, y);
        const std::uint32_t pixel = reference::Pixel(static_cast<Color>(color));
        if (pixel == expected.At(x, y)) continue;
        places.push_back(std::to_string(x) + "," + std::to_string(y) + ": " +
                         std::to_string(pixel) + " for " + std::to_string(expected.At(x, y)));
      }
      return places;
    };
    WaitUntil([&] { return wrong().empty(); });
    EXPECT_EQ(wrong(), std::vector<std::string>{}) << "at " << angle;
    Screenshot("gradient-" + std::to_string(angle), main);
    EXPECT_TRUE(Close(marl));
  }
}

TEST_F(Panel, HighlightFollowsTheMouse) {
  const SuiteFolder suite(L"Suite", {L"Q17Kit.exe"});
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(BringForward(main));
  ASSERT_TRUE(Becomes(main, kEdit, kOff, L""));

  // Onto a button and straight to its neighbour, by picture and by label.
  Point(IconOf(main, kEdit));
  EXPECT_TRUE(Becomes(main, kEdit, kOn, kEditStatus));
  Screenshot("panel-hover", main);
  const auto squares = [main] {
    std::vector<int> all;
    for (int button = 0; button < kButtons; ++button) all.push_back(Squares(main, button));
    return all;
  };
  std::vector<int> only(kButtons);
  only[kEdit] = 1;
  WaitUntil([&] {
    KeepMouse();
    return squares() == only;
  });
  EXPECT_EQ(squares(), only);
  Point(LabelOf(main, kChangeServer));
  EXPECT_TRUE(Becomes(main, kChangeServer, kOn, kServerStatus));
  EXPECT_TRUE(Becomes(main, kEdit, kOff, kServerStatus));

  // The gap between two frames belongs to no button. Its middle: a mouse that is moved a second
  // time comes from the pixel on the left.
  const RECT cell = CellOf(main, kChangeServer);
  Point({cell.left + PixelsOf(45), cell.top + PixelsOf(600)});
  EXPECT_TRUE(Becomes(main, kChangeServer, kOff, L""));
  EXPECT_TRUE(Becomes(main, kEdit, kOff, L""));
  // The frame beside the picture belongs to the button.
  Point({cell.left + PixelsOf(200), cell.top + PixelsOf(300)});
  EXPECT_TRUE(Becomes(main, kChangeServer, kOn, kServerStatus));

  // A disabled button (no server, no tool) shows no highlight; the next one does.
  for (const int dead : {kTrackProjects, kUtilities}) {
    Point(IconOf(main, dead));
    EXPECT_TRUE(WaitUntil([&] {
      KeepMouse();
      return Status(main).empty();
    }));
    EXPECT_EQ(Squares(main, dead), 0);
    EXPECT_FALSE(LookOf(main, dead).bright);
    Point(IconOf(main, kAdministrator));
    EXPECT_TRUE(Becomes(main, kAdministrator, kOn, kAdministratorStatus));
    EXPECT_EQ(Squares(main, dead), 0);
  }

  // With another window in front there is no highlight, although the mouse is on the button or
  // moves there. When the form is in front again, the mouse need not move.
  const HWND other = InFront();
  EXPECT_TRUE(Becomes(main, kAdministrator, kOff, L""));
  Point(IconOf(main, kEdit));
  Point(LabelOf(main, kEdit));
  EXPECT_FALSE(
      WaitUntil([&] { return LookOf(main, kEdit) != kOff; }, std::chrono::milliseconds(200)));
  ASSERT_TRUE(BringForward(main));
  DestroyWindow(other);
  EXPECT_TRUE(Becomes(main, kEdit, kOn, kEditStatus));

  // Outside the window there is no event.
  Point({0, 0});
  EXPECT_TRUE(Becomes(main, kEdit, kOff, L""));
  EXPECT_TRUE(Close(marl));
  EXPECT_TRUE(suite.WaitForTools(0).empty());
}

TEST_F(Panel, LastPixelsOfAButtonAreItsOwnForEventTimerAndPress) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(BringForward(main));
  // Waits twice for two ticks: the timer has had time to change the result of the mouse event.
  const auto stays = [&](const std::wstring& status) {
    return WaitUntil([&] {
      for (int rest = 0; rest < 2; ++rest) {
        if (!Rests() || Status(main) != status) return false;
      }
      return true;
    });
  };
  struct Place {
    int button;
    std::wstring status;
    std::wstring tool;
  };
  std::vector<Started> starts;
  for (const auto& [button, status, tool] :
       {Place{4, L"Apply one or more Translation Memories to multiple files", L"Q17Batch.exe"},
        Place{13, L"Compare Marl documents or folders", L"Q17Diff.exe"},
        Place{16, L"Prepare XLIFF documents for translation with Marl", L"Q17Xlf.exe"}}) {
    const RECT cell = CellOf(main, button);
    const POINT first = {cell.left + PixelsOf(60) + 1, cell.top + PixelsOf(60) + 1};
    const POINT last = {cell.left + PixelsOf(60 + 1695) - 2, cell.top + PixelsOf(60 + 1215) - 2};
    Point(first);
    EXPECT_TRUE(stays(status)) << button << " at " << first.x << "," << first.y;
    Point({last.x + 4, last.y});
    EXPECT_TRUE(stays(L"")) << "beside " << button;
    Point(last);
    EXPECT_TRUE(stays(status)) << button << " at " << last.x << "," << last.y;
    MouseButtons({MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP});
    starts.push_back(Start(suite, tool));
    EXPECT_EQ(suite.WaitForTools(starts.size()), starts);
    ASSERT_TRUE(BringForward(main));
  }
  EXPECT_TRUE(Close(marl));
}

TEST_F(Panel, PressThatIsDraggedOffStartsNothing) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(BringForward(main));
  const RECT empty = CellOf(main, 19);
  const POINT nowhere = {(empty.left + empty.right) / 2, (empty.top + empty.bottom) / 2};
  const auto StatusAt = [&](POINT at) -> std::wstring {
    if (at.y == LabelOf(main, kEdit).y) return kEditStatus;
    return at.y == IconOf(main, kUtilities).y ? L"Various utilities to manipulate Marl documents"
                                              : L"";
  };
  for (const POINT to : {nowhere, POINT{1, 1}, IconOf(main, kUtilities), LabelOf(main, kEdit)}) {
    Point(IconOf(main, kEdit));
    ASSERT_TRUE(Becomes(main, kEdit, kOn, kEditStatus));
    MouseButtons({MOUSEEVENTF_LEFTDOWN});
    Point(to);
    ASSERT_TRUE(Rests());
    const bool over = to.y == LabelOf(main, kEdit).y;
    EXPECT_TRUE(Becomes(main, kEdit, over ? kOn : kOff, StatusAt(to))) << to.x << "," << to.y;
    MouseButtons({MOUSEEVENTF_LEFTUP});
  }
  // Pressed elsewhere and released on the button.
  Point(nowhere);
  ASSERT_TRUE(Rests());
  MouseButtons({MOUSEEVENTF_LEFTDOWN});
  Point(IconOf(main, kEdit));
  ASSERT_TRUE(Rests());
  MouseButtons({MOUSEEVENTF_LEFTUP});
  // Off and back again is a press, and so is a click on the frame beside the picture.
  Point(IconOf(main, kAdministrator));
  ASSERT_TRUE(Rests());
  MouseButtons({MOUSEEVENTF_LEFTDOWN});
  Point(nowhere);
  ASSERT_TRUE(Rests());
  Point(IconOf(main, kAdministrator));
  ASSERT_TRUE(Rests());
  MouseButtons({MOUSEEVENTF_LEFTUP});
  EXPECT_EQ(suite.WaitForTools(1), (Starts{Start(suite, L"Q17Warden.exe")}));
  ASSERT_TRUE(BringForward(main));
  const RECT cell = CellOf(main, kAnalyse);
  Click(cell.left + PixelsOf(200), cell.top + PixelsOf(300));
  EXPECT_EQ(suite.WaitForTools(2),
            (Starts{Start(suite, L"Q17Warden.exe"), Start(suite, L"Q17Gauge.exe")}));
  EXPECT_TRUE(Close(marl));
  EXPECT_EQ(suite.WaitForTools(2).size(), 2u);
}

TEST_F(Panel, TwoStateIconsChangeUnderTheMouseAndOthersDoNot) {
  const SuiteFolder suite;
  Pixels bright;
  for (const DWORD offset : {0u, 18u}) {
    SetSkin(L"TwoState", offset);
    SetSkin(L"BorderWidth", offset ? 2u : 1u);
    const Look on{offset ? 2 : 1, false, true};
    const RunningMarl marl(suite);
    const HWND main = marl.WaitForWindow();
    ASSERT_TRUE(main);
    ASSERT_TRUE(BringForward(main));
    const Pixels before = IconWhen(main, kEdit, kOff, L"");
    Point(LabelOf(main, kEdit));
    const Pixels over = IconWhen(main, kEdit, on, kEditStatus);
    Screenshot(offset ? "panel-one-state-wide" : "panel-two-state", main);
    Point({0, 0});
    EXPECT_EQ(IconWhen(main, kEdit, kOff, L""), before);
    if (offset == 0) {
      EXPECT_NE(over, before);
      bright = over;
    } else {
      EXPECT_EQ(over, before);
      EXPECT_EQ(over, bright) << "the bright one all the time";
    }
    EXPECT_TRUE(Close(marl));
  }
}

TEST_F(Panel, KeyboardMovesARingAndPressesWithoutTheMouse) {
  const SuiteFolder suite(L"Suite", {L"Q17Kit.exe"});
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(BringForward(main));
  Point(IconOf(main, kAdministrator));
  ASSERT_TRUE(Becomes(main, kAdministrator, kOn, kAdministratorStatus));
  const Pixels before = Capture(InnerOf(main));
  const auto ringAt = [&](int button) {
    const RECT area = RingOf(main, button);
    const POINT corner = {InnerOf(main).left, InnerOf(main).top};
    Pixels ground{area.right - area.left, area.bottom - area.top, {}};
    for (LONG y = area.top; y < area.bottom; ++y) {
      for (LONG x = area.left; x < area.right; ++x) {
        ground.colors.push_back(before.At(x - corner.x, y - corner.y));
      }
    }
    return WeakestContrast(Capture(area), ground) >= 3;
  };
  /// Presses a key, and waits until the ring is around the button and the status line has its text.
  const auto leads = [&](WORD key, int button, const std::wstring& status) {
    Chord({}, key);
    if (WaitUntil([&] { return ringAt(button) && Status(main) == status; })) return true;
    Screenshot("panel-ring", main);
    return false;
  };
  EXPECT_TRUE(leads(VK_TAB, kAnalyse, kAnalyseStatus));
  EXPECT_EQ(LookOf(main, kAdministrator), kOn) << "the highlight stays where the mouse is";
  Screenshot("panel-keyboard", main);
  EXPECT_TRUE(leads(VK_DOWN, kEdit, kEditStatus));
  EXPECT_FALSE(ringAt(kAnalyse));
  EXPECT_TRUE(leads(VK_RIGHT, kChangeServer, kServerStatus));
  EXPECT_TRUE(leads(VK_RIGHT, kTrackProjects, L"Track existing projects"));
  EXPECT_TRUE(leads(VK_LEFT, kChangeServer, kServerStatus));
  EXPECT_TRUE(leads(VK_LEFT, kEdit, kEditStatus));
  Chord({}, VK_SPACE);
  std::vector<Started> starts = {Start(suite, L"Q17Bench.exe")};
  EXPECT_EQ(suite.WaitForTools(1), starts);
  ASSERT_TRUE(BringForward(main));
  Chord({}, VK_RETURN);
  starts.push_back(starts.front());
  EXPECT_EQ(suite.WaitForTools(2), starts);
  ASSERT_TRUE(BringForward(main));

  // A dead button has the focus and does nothing.
  EXPECT_TRUE(leads(VK_NEXT, kUtilities, L"Various utilities to manipulate Marl documents"));
  Chord({}, VK_SPACE);
  Chord({}, VK_RETURN);

  // A dialog takes the keyboard, and gives it back to the same button.
  EXPECT_TRUE(leads(VK_PRIOR, kEdit, kEditStatus));
  EXPECT_TRUE(leads(VK_RIGHT, kChangeServer, kServerStatus));
  Chord({}, VK_SPACE);
  HWND dialog = nullptr;
  ASSERT_TRUE(WaitUntil([&] {
    dialog = FindWindowOf(marl.id(), [&](HWND window) {
      return window != main && IsWindowVisible(window) && ClassOf(window) == L"MarlForm";
    });
    return dialog && GetForegroundWindow() == dialog;
  }));
  EXPECT_TRUE(WaitUntil([&] { return !ringAt(kChangeServer); })) << "the form is not active";
  Chord({}, VK_ESCAPE);
  EXPECT_TRUE(WaitUntil([&] { return !IsWindow(dialog); }));
  EXPECT_TRUE(WaitUntil([&] { return ringAt(kChangeServer); }));

  // Without the focus every pixel is as it was.
  Point(IconOf(main, kAdministrator));
  Chord({}, VK_ESCAPE);
  EXPECT_TRUE(Becomes(main, kAdministrator, kOn, kAdministratorStatus));
  EXPECT_TRUE(WaitUntil([&] { return Capture(InnerOf(main)) == before; }));

  Chord({VK_SHIFT}, VK_TAB);
  Chord({}, VK_SPACE);
  EXPECT_EQ(marl.WaitForExit(), 0u) << "the last button exits";
  EXPECT_EQ(suite.WaitForTools(2), starts);
}

TEST_F(Panel, RingStandsOutOnEveryShippedSkin) {
  std::wstring own(MAX_PATH, L'\0');
  own.resize(GetModuleFileNameW(nullptr, own.data(), MAX_PATH));
  const std::filesystem::path skins = own.substr(0, own.rfind(L'\\')) + L"\\Skins";
  const SuiteFolder suite;
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(skins)) {
    std::ifstream stream(entry.path(), std::ios::binary);
    MemoryFileSystem files;
    files.Put(u"C:\\one.qsk", std::string(std::istreambuf_iterator<char>(stream), {}));
    StoredSkin stored(settings);
    ASSERT_TRUE(LoadSkinFile(files, u"C:\\one.qsk", stored));
    const RunningMarl marl(suite);
    const HWND main = marl.WaitForWindow();
    ASSERT_TRUE(main);
    ASSERT_TRUE(BringForward(main));
    const RECT inner = InnerOf(main);
    Pixels before = Capture(inner);
    WaitUntil([&] {
      const Pixels now = Capture(inner);
      return now == std::exchange(before, now);
    });
    Chord({}, VK_TAB);
    const RECT area = RingOf(main, kAnalyse);
    const auto weakest = [&] {
      const Pixels now = Capture(area);
      Pixels ground{now.width, now.height, {}};
      for (LONG y = area.top; y < area.bottom; ++y) {
        for (LONG x = area.left; x < area.right; ++x) {
          ground.colors.push_back(before.At(x - inner.left, y - inner.top));
        }
      }
      return WeakestContrast(now, ground);
    };
    WaitUntil([&] { return weakest() >= 3; }, std::chrono::milliseconds(5000));
    EXPECT_GE(weakest(), 3) << entry.path().stem();
    Screenshot("ring-" + entry.path().stem().string(), main);
    EXPECT_TRUE(Close(marl));
    ++count;
  }
  EXPECT_GE(count, 8);
}

}  // namespace marl::desktop
