#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "tests/desktop/Switchboard.h"

// The display settings on the real program: opened by the hidden word, worked by mouse and keys,
// read back from the registry byte for byte, saved as a skin and loaded from one.

namespace marl::desktop {

namespace {

constexpr wchar_t kSkinKey[] = L"Software\\Oru\\Marl\\GUI";
constexpr int kFileName = 0x480;       // the field of the platform's file dialogs
constexpr int kFileNameCombo = 0x47C;  // and in some of them
constexpr int kRed = 706;              // fields of the platform's colour dialog
constexpr int kGreen = 707;
constexpr int kBlue = 708;

using Values = std::map<std::wstring, KeyImage::Value>;

KeyImage::Value Number(DWORD number) {
  KeyImage::Value value{REG_DWORD, std::vector<BYTE>(4)};
  std::memcpy(value.data.data(), &number, 4);
  return value;
}

/// A text as it lies in the registry when it is asked for by 8-bit programs.
KeyImage::Value Sz(const std::string& text) {
  return {REG_SZ, std::vector<BYTE>(text.c_str(), text.c_str() + text.size() + 1)};
}

/// All values of the skin's key, as 8-bit programs see them.
Values StoredSkin() {
  Values values;
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, kSkinKey, 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS) {
    return values;
  }
  for (DWORD i = 0;; ++i) {
    char name[256];
    BYTE data[1024];
    DWORD nameLength = sizeof name;
    DWORD size = sizeof data;
    DWORD kind = 0;
    if (RegEnumValueA(key, i, name, &nameLength, nullptr, &kind, data, &size) != ERROR_SUCCESS) {
      break;
    }
    values[FromUtf8(name)] = {kind, std::vector<BYTE>(data, data + size)};
  }
  RegCloseKey(key);
  return values;
}

std::string Describe(const Values& values) {
  std::string text;
  for (const auto& [name, value] : values) {
    text += ToUtf8(name) + " (" + std::to_string(value.kind) + ")";
    for (const BYTE byte : value.data) text += " " + std::to_string(byte);
    text += "\n";
  }
  return text;
}

/// The process's window of this title that can be seen.
HWND WindowTitled(const RunningMarl& marl, const std::wstring& title) {
  for (HWND window = nullptr;
       (window = FindWindowExW(nullptr, window, nullptr, title.c_str())) != nullptr;) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == marl.id() && IsWindowVisible(window)) return window;
  }
  return nullptr;
}

HWND WaitForWindowTitled(const RunningMarl& marl, const std::wstring& title) {
  HWND window = nullptr;
  WaitUntil([&] { return (window = WindowTitled(marl, title)) != nullptr; });
  return window;
}

bool WaitUntilGone(HWND window) {
  return WaitUntil([&] { return !IsWindow(window) || !IsWindowVisible(window); });
}

struct ClassSearch {
  const wchar_t* windowClass;
  std::vector<HWND> found;
};

BOOL CALLBACK KeepClass(HWND child, LPARAM data) {
  auto& search = *reinterpret_cast<ClassSearch*>(data);
  if (_wcsicmp(ClassOf(child).c_str(), search.windowClass) == 0) search.found.push_back(child);
  return TRUE;
}

/// All windows within one, of this class, in the order of the keys.
std::vector<HWND> Within(HWND window, const wchar_t* windowClass) {
  ClassSearch search{windowClass, {}};
  EnumChildWindows(window, KeepClass, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

HWND Button(HWND window, const std::wstring& text) {
  for (const HWND button : Within(window, L"Button")) {
    if (TextOf(button) == text) return button;
  }
  return nullptr;
}

RECT AreaOf(HWND window) {
  RECT area = {};
  GetWindowRect(window, &area);
  return area;
}

POINT MiddleOf(HWND window) {
  const RECT area = AreaOf(window);
  return {(area.left + area.right) / 2, (area.top + area.bottom) / 2};
}

/// Clicks it once nothing lies above it any more.
bool ClickOn(HWND window, POINT at) {
  if (!window) return false;
  const bool open = WaitUntil([&] {
    BringForward(GetAncestor(window, GA_ROOT));
    return WindowFromPoint(at) == window;
  });
  if (open) Click(at);
  return open;
}
bool ClickOn(HWND window) { return window && ClickOn(window, MiddleOf(window)); }

bool IsChecked(HWND button) { return SendMessageW(button, BM_GETCHECK, 0, 0) != 0; }

/// The display settings, opened by the hidden word.
class SettingsDialog {
 public:
  explicit SettingsDialog(const RunningMarl& marl, const wchar_t* title = L"Display settings")
      : marl_(marl) {
    const HWND main = marl.WaitForWindow();
    if (!main || !BringForward(main)) return;
    Keys(L"setgui");
    window_ = WaitForWindowTitled(marl, title);
  }
  explicit operator bool() const { return window_ != nullptr; }
  HWND window() const { return window_; }

  bool Press(const wchar_t* button) const { return ClickOn(Button(window_, button)); }
  bool Leave(const wchar_t* button) const { return Press(button) && WaitUntilGone(window_); }

  HWND List() const { return First(L"ListBox"); }
  HWND Bar() const { return First(L"ScrollBar"); }
  HWND IconSets() const { return At(L"ComboBox", 0); }
  HWND Columns() const { return At(L"ComboBox", 1); }

  /// Chooses a colour in the dialog that comes up.
  bool ChooseColor(int red, int green, int blue) const {
    const HWND dialog = WaitForWindowTitled(marl_, L"Color");
    if (!dialog) return false;
    const int fields[] = {kRed, kGreen, kBlue};
    const int numbers[] = {red, green, blue};
    for (int i = 0; i < 3; ++i) {
      const std::wstring text = std::to_wstring(numbers[i]);
      const HWND field = GetDlgItem(dialog, fields[i]);
      SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
    }
    PostMessageW(dialog, WM_COMMAND, IDOK, 0);
    return WaitUntilGone(dialog);
  }
  bool SetColor(const wchar_t* button, int red, int green, int blue) const {
    return Press(button) && ChooseColor(red, green, blue);
  }

  /// Writes the path into the platform's file dialog and leaves it with OK.
  bool ChooseFile(const std::wstring& path) const {
    HWND dialog = nullptr;
    HWND field = nullptr;
    const bool up = WaitUntil([&] {
      for (const wchar_t* const title : {L"Open", L"Save As", L"Save as"}) {
        if ((dialog = WindowTitled(marl_, title)) == nullptr) continue;
        for (const int id : {kFileNameCombo, kFileName}) {
          for (const wchar_t* const windowClass : {L"ComboBoxEx32", L"ComboBox", L"Edit"}) {
            for (const HWND child : Within(dialog, windowClass)) {
              if (GetDlgCtrlID(child) == id && IsWindowVisible(child)) field = child;
            }
          }
        }
        return field != nullptr;
      }
      return false;
    });
    if (!up || !BringForward(dialog)) return false;
    SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
    PostMessageW(dialog, WM_COMMAND, IDOK, 0);
    return WaitUntilGone(dialog);
  }

  /// Chooses a row of a drop-down list with the keys.
  static bool Choose(HWND combo, int row) {
    if (!ClickOn(combo)) return false;
    if (!WaitUntil([&] { return SendMessageW(combo, CB_GETDROPPEDSTATE, 0, 0) != 0; }))
      return false;
    Chord({}, VK_HOME);
    for (int i = 0; i < row; ++i) Chord({}, VK_DOWN);
    Chord({}, VK_RETURN);
    return WaitUntil([&] { return SendMessageW(combo, CB_GETCURSEL, 0, 0) == row; });
  }

  /// A place on a row of the list; `right` pixels from its left edge.
  POINT Row(int row, int right) const {
    RECT area = {};
    SendMessageW(List(), LB_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&area));
    POINT at = {area.left + right, (area.top + area.bottom) / 2};
    ClientToScreen(List(), &at);
    return at;
  }
  std::wstring RowText(int row) const {
    wchar_t text[256] = {};
    SendMessageW(List(), LB_GETTEXT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(text));
    return text;
  }

  /// The middle of a sample; 0 is the normal one.
  POINT Sample(int index) const {
    const RECT area = AreaOf(First(L"Static"));
    const int width = area.right - area.left;
    return {area.left + width / 4 + index * width / 2, area.top + (area.bottom - area.top) * 3 / 5};
  }

 private:
  HWND First(const wchar_t* windowClass) const { return At(windowClass, 0); }
  HWND At(const wchar_t* windowClass, std::size_t place) const {
    const std::vector<HWND> all = Within(window_, windowClass);
    return place < all.size() ? all[place] : nullptr;
  }

  const RunningMarl& marl_;
  HWND window_ = nullptr;
};

/// The panel alone: what lies between title and status bar.
Pixels PanelOf(HWND main) {
  // Away from the panel, so that nothing is highlighted.
  MoveMouse(2, 2);
  RedrawWindow(main, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
  RECT area = {};
  GetClientRect(main, &area);
  area.bottom -= 40;
  MapWindowPoints(main, nullptr, reinterpret_cast<POINT*>(&area), 2);
  Pixels last = Capture(area);
  // The highlight goes with the next tick of a timer: wait until the picture stands.
  int same = 0;
  WaitUntil([&] {
    Pixels now = Capture(area);
    same = now == last ? same + 1 : 0;
    last = std::move(now);
    return same >= 10;
  });
  return last;
}

std::string ContentOf(const std::wstring& path) {
  std::ifstream file(std::filesystem::path(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool Exists(const std::wstring& path) {
  return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

/// Width and height of a text in the font of the dialogs, in pixels.
SIZE SizeOf(const std::wstring& text) {
  const HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
  const HFONT font = CreateFontW(-MulDiv(33, dpi, 4 * 72), 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE,
                                 DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                                 DEFAULT_QUALITY, DEFAULT_PITCH, L"Tahoma");
  const HGDIOBJ before = SelectObject(screen, font);
  RECT area = {};
  DrawTextW(screen, text.c_str(), -1, &area, DT_CALCRECT | DT_SINGLELINE);
  SelectObject(screen, before);
  DeleteObject(font);
  ReleaseDC(nullptr, screen);
  return {area.right, area.bottom};
}

/// The skins that the program ships with, beside the tests.
std::wstring ShippedSkins() {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring own = path;
  return own.substr(0, own.rfind(L'\\')) + L"\\Skins";
}

constexpr wchar_t kFirstButton[] = L"&Set gradient colour 1";
constexpr char kShippedOrder[] =
    "001|011|021|031|041|051|061|071|081|091|101|111|121|131|141|151|161|171";

class DisplaySettings : public SwitchboardTest {};

}  // namespace

TEST_F(DisplaySettings, TheHiddenWordOpensThemAndCancelLeavesTheRegistryUntouched) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const SettingsDialog dialog(marl);
  ASSERT_TRUE(dialog);
  RedrawWindow(dialog.window(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  Screenshot("display-settings", dialog.window());
  EXPECT_FALSE(IsWindowEnabled(marl.Window())) << "it is modal";
  const std::vector<KeyImage> before = settings.Image();

  EXPECT_TRUE(dialog.SetColor(kFirstButton, 1, 2, 3));
  EXPECT_TRUE(dialog.Press(L"Display &wide border"));
  EXPECT_TRUE(IsChecked(Button(dialog.window(), L"Display &wide border")));
  EXPECT_TRUE(dialog.Choose(dialog.Columns(), 3));
  EXPECT_TRUE(ClickOn(dialog.List(), dialog.Row(2, 60)));
  EXPECT_TRUE(dialog.Press(L"&Up"));
  EXPECT_TRUE(WaitUntil([&] { return dialog.RowText(1) == L"TermVault"; }));
  EXPECT_TRUE(dialog.Leave(L"Cancel"));
  EXPECT_TRUE(WaitUntil([&] { return IsWindowEnabled(marl.Window()) != FALSE; }));
  EXPECT_EQ(settings.Image(), before);
  EXPECT_FALSE(marl.Box());
  EXPECT_TRUE(Close(marl));
}

TEST_F(DisplaySettings, EachOfTheFourteenParametersReachesTheRegistry) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const SettingsDialog dialog(marl);
  ASSERT_TRUE(dialog);

  EXPECT_TRUE(dialog.SetColor(kFirstButton, 10, 20, 30));
  EXPECT_TRUE(dialog.SetColor(L"Set g&radient colour 2", 40, 50, 60));
  EXPECT_TRUE(dialog.SetColor(L"Set &border colour 1", 70, 80, 90));
  EXPECT_TRUE(dialog.SetColor(L"Set b&order colour 2", 100, 110, 120));
  // Beside the thumb for a large step, on the arrow for a small one: from 90 to 121.
  const RECT bar = AreaOf(dialog.Bar());
  const int middle = (bar.top + bar.bottom) / 2;
  EXPECT_TRUE(ClickOn(dialog.Bar(), {bar.right - 40, middle}));
  EXPECT_TRUE(ClickOn(dialog.Bar(), {bar.right - 5, middle}));
  for (const int sample : {0, 1}) {
    const POINT at = dialog.Sample(sample);
    EXPECT_TRUE(BringForward(dialog.window()));
    Click(at);
    const HWND font = WaitForWindowTitled(marl, L"Set Font");
    ASSERT_TRUE(font);
    Screenshot("font", font);
    EXPECT_TRUE(ClickOn(Button(font, L"&Color")));
    EXPECT_TRUE(dialog.ChooseColor(130 + sample, 140, 150));
    EXPECT_TRUE(ClickOn(Button(font, L"&Italic")));
    EXPECT_TRUE(ClickOn(Button(font, L"OK")));
    EXPECT_TRUE(WaitUntilGone(font));
  }
  EXPECT_TRUE(dialog.Press(L"Display &wide border"));
  EXPECT_TRUE(dialog.Choose(dialog.IconSets(), 2));
  EXPECT_TRUE(dialog.Press(L"&Use two-state icons"));
  EXPECT_TRUE(dialog.Choose(dialog.Columns(), 1));
  // The first row's box, and the last row to the place before.
  EXPECT_TRUE(ClickOn(dialog.List(), dialog.Row(0, 9)));
  EXPECT_TRUE(ClickOn(dialog.List(), dialog.Row(17, 60)));
  EXPECT_TRUE(dialog.Press(L"&Up"));
  EXPECT_TRUE(WaitUntil([&] { return dialog.RowText(16) == L"Exit"; }));
  RedrawWindow(dialog.window(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  Screenshot("display-settings-changed", dialog.window());
  EXPECT_TRUE(dialog.Leave(L"OK"));

  const Values expected = {
      {L"Angle", Number(121)},
      {L"Color1", Number(RGB(10, 20, 30))},
      {L"Color2", Number(RGB(40, 50, 60))},
      {L"Border1", Number(RGB(70, 80, 90))},
      {L"Border2", Number(RGB(100, 110, 120))},
      {L"BorderWidth", Number(2)},
      {L"Text1", Number(RGB(130, 140, 150))},
      {L"Text2", Number(RGB(131, 140, 150))},
      {L"Icons", Number(2)},
      {L"TwoState", Number(18)},
      {L"IconsPerRow", Number(4)},
      {L"Font1", Sz("Arial|10|bi")},
      {L"Font2", Sz("Arial|10|biu")},
      {L"DisplayIcons",
       Sz("000|011|021|031|041|051|061|071|081|091|101|111|121|131|141|151|171|161")},
  };
  const Values stored = StoredSkin();
  EXPECT_TRUE(stored == expected) << Describe(stored) << "instead of\n" << Describe(expected);
  // The panel has taken it up: four columns.
  const HWND main = marl.Window();
  EXPECT_TRUE(WaitUntil([&] {
    RECT inner;
    GetClientRect(main, &inner);
    return Twips(inner.right) == 8790 - 1740;
  }));
  PanelOf(main);
  Screenshot("panel-changed", main);
  EXPECT_TRUE(Close(marl));
}

TEST_F(DisplaySettings, TheKeyboardAloneChangesAndConfirms) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const SettingsDialog dialog(marl);
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(WaitUntil([&] { return GetForegroundWindow() == dialog.window(); }));
  const auto focus = [&] {
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(dialog.window(), nullptr), &info);
    return info.hwndFocus;
  };
  const auto tab = [&](HWND to) {
    for (int i = 0; i < 25 && focus() != to; ++i) {
      const HWND before = focus();
      Chord({}, VK_TAB);
      WaitUntil([&] { return focus() != before; });
    }
    return focus() == to;
  };
  // Around once: nineteen stops.
  ASSERT_TRUE(WaitUntil([&] { return focus() == Button(dialog.window(), kFirstButton); }));
  std::vector<HWND> stops;
  std::string visited;
  for (int i = 0; i < 19; ++i) {
    stops.push_back(focus());
    visited += ToUtf8(ClassOf(focus()) + L" " + TextOf(focus()) + L"\n");
    Chord({}, VK_TAB);
    EXPECT_TRUE(WaitUntil([&] { return focus() != stops.back(); }));
  }
  EXPECT_EQ(focus(), stops.front()) << visited;
  EXPECT_EQ(std::set<HWND>(stops.begin(), stops.end()).size(), 19u) << visited;

  EXPECT_TRUE(tab(dialog.Bar()));
  Chord({}, VK_NEXT);
  Chord({}, VK_RIGHT);
  EXPECT_TRUE(tab(Button(dialog.window(), L"Normal...")));
  Chord({}, VK_SPACE);
  const HWND font = WaitForWindowTitled(marl, L"Set Font");
  EXPECT_TRUE(font);
  Chord({}, VK_ESCAPE);
  EXPECT_TRUE(WaitUntilGone(font));
  EXPECT_TRUE(WaitUntil([&] { return GetForegroundWindow() == dialog.window(); }));
  EXPECT_TRUE(tab(dialog.List()));
  const auto row = [&] { return SendMessageW(dialog.List(), LB_GETCURSEL, 0, 0); };
  Chord({}, VK_HOME);
  EXPECT_TRUE(WaitUntil([&] { return row() == 0; }));
  Chord({}, VK_SPACE);
  Chord({}, VK_DOWN);
  EXPECT_TRUE(WaitUntil([&] { return row() == 1; }));
  // A busy desktop may lose a key that is held together with another.
  const auto moved = [&] { return dialog.RowText(1) == L"TermVault"; };
  for (int attempt = 0; attempt < 3 && !moved(); ++attempt) {
    Chord({VK_MENU}, 'D');
    WaitUntil(moved, std::chrono::seconds(3));
  }
  EXPECT_TRUE(moved());
  EXPECT_TRUE(tab(dialog.Columns()));
  Chord({}, VK_HOME);
  Chord({}, VK_RETURN);
  EXPECT_TRUE(WaitUntilGone(dialog.window()));
  const Values stored = StoredSkin();
  EXPECT_EQ(stored.at(L"Angle"), Number(121));
  EXPECT_EQ(stored.at(L"IconsPerRow"), Number(3));
  EXPECT_EQ(stored.at(L"DisplayIcons"),
            Sz("000|021|011|031|041|051|061|071|081|091|101|111|121|131|141|151|161|171"));
  EXPECT_TRUE(Close(marl));
}

TEST_F(DisplaySettings, ADragWithTheMouseMovesARowDownAndUp) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const SettingsDialog dialog(marl);
  ASSERT_TRUE(dialog);
  const auto selected = [&] {
    return static_cast<int>(SendMessageW(dialog.List(), LB_GETCURSEL, 0, 0));
  };
  const auto drag = [&](int from, int to) {
    const POINT start = dialog.Row(from, 60);
    EXPECT_TRUE(WaitUntil([&] {
      BringForward(dialog.window());
      return WindowFromPoint(start) == dialog.List();
    }));
    PressMouse(start);
    EXPECT_TRUE(WaitUntil([&] { return selected() == from; }));
    const int step = from < to ? 1 : -1;
    for (int row = from + step; row != to + step; row += step) {
      const POINT at = dialog.Row(row, 60);
      // The display may still be on its way to the place before: a hand shakes, too.
      int shake = 0;
      EXPECT_TRUE(WaitUntil([&] {
        MoveMouse(at.x + shake++ % 2, at.y);
        return selected() == row;
      })) << row
          << ": " << selected();
    }
    ReleaseMouse(dialog.Row(to, 60));
  };
  ASSERT_TRUE(BringForward(dialog.window()));
  drag(3, 7);
  EXPECT_TRUE(WaitUntil([&] { return dialog.RowText(7) == L"Project Wizard"; }));
  drag(7, 0);
  EXPECT_TRUE(WaitUntil([&] { return dialog.RowText(0) == L"Project Wizard"; }));
  EXPECT_TRUE(dialog.Leave(L"OK"));
  EXPECT_EQ(StoredSkin().at(L"DisplayIcons"),
            Sz("031|001|011|021|041|051|061|071|081|091|101|111|121|131|141|151|161|171"));
  EXPECT_TRUE(Close(marl));
}

TEST_F(DisplaySettings, ASavedSkinHoldsTheToldLinesAndGivesTheSamePanelInANewStart) {
  const SuiteFolder suite;
  const std::wstring path = suite.path() + L"\\Skins\\Mine.qsk";
  Pixels panel;
  {
    const RunningMarl marl(suite);
    const SettingsDialog dialog(marl);
    ASSERT_TRUE(dialog);
    EXPECT_TRUE(dialog.SetColor(kFirstButton, 200, 120, 40));
    EXPECT_TRUE(dialog.Choose(dialog.IconSets(), 1));
    EXPECT_TRUE(dialog.Choose(dialog.Columns(), 3));
    EXPECT_FALSE(Exists(suite.path() + L"\\Skins"));
    EXPECT_TRUE(dialog.Press(L"&Save..."));
    EXPECT_TRUE(dialog.ChooseFile(path));
    EXPECT_TRUE(WaitUntil([&] { return Exists(path); }));
    EXPECT_TRUE(StoredSkin().empty()) << "a skin is no setting";
    EXPECT_TRUE(dialog.Leave(L"OK"));
    panel = PanelOf(marl.Window());
    Screenshot("panel-own-skin", marl.Window());
    EXPECT_TRUE(Close(marl));
  }
  const auto line = [](const std::string& name, const std::string& value) {
    return " <parameter name=\"" + name + "\" value=\"" + value + "\"/>\r\n";
  };
  EXPECT_EQ(ContentOf(path),
            "<?xml version=\"1.0\"?>\r\n<marlskin>\r\n" +
                line("colour1", std::to_string(RGB(200, 120, 40))) + line("colour2", "3755264") +
                line("angle", "90") + line("text1", "16777215") + line("text2", "2733534") +
                line("border1", "16777215") + line("border2", "0") + line("borderwidth", "1") +
                line("icons", "1") + line("twostate", "0") + line("iconsperrow", "6") +
                line("font1", "Arial|10|b") + line("font2", "Arial|10|bu") +
                line("displayicons", kShippedOrder) + "</marlskin>\r\n");
  RegDeleteTreeW(HKEY_CURRENT_USER, kSkinKey);
  ASSERT_TRUE(StoredSkin().empty());
  {
    const RunningMarl marl(suite);
    const HWND main = marl.WaitForWindow();
    ASSERT_TRUE(main);
    EXPECT_FALSE(PanelOf(main) == panel);
    const SettingsDialog dialog(marl);
    ASSERT_TRUE(dialog);
    EXPECT_TRUE(dialog.Press(L"&Load..."));
    EXPECT_TRUE(dialog.ChooseFile(path));
    EXPECT_TRUE(dialog.Leave(L"OK"));
    EXPECT_TRUE(PanelOf(main) == panel);
    EXPECT_TRUE(Close(marl));
  }
}

TEST_F(DisplaySettings, AShippedSkinIsAppliedFromTheSkinsFolder) {
  const SuiteFolder suite;
  const std::wstring folder = suite.path() + L"\\Skins";
  ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
  for (const wchar_t* const name : {L"Midnight", L"Harvest", L"Porcelain", L"Lagoon"}) {
    const std::wstring path = folder + L"\\" + name + L".qsk";
    const std::wstring shipped = ShippedSkins() + L"\\" + name + L".qsk";
    ASSERT_TRUE(CopyFileW(shipped.c_str(), path.c_str(), FALSE)) << ToUtf8(shipped);
    const RunningMarl marl(suite);
    const SettingsDialog dialog(marl);
    ASSERT_TRUE(dialog);
    EXPECT_TRUE(dialog.Press(L"&Load..."));
    // By its bare name: the dialog stands in the folder of the skins.
    EXPECT_TRUE(dialog.ChooseFile(std::wstring(name) + L".qsk"));
    RedrawWindow(dialog.window(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    Screenshot("display-settings-" + ToUtf8(name), dialog.window());
    EXPECT_TRUE(dialog.Leave(L"OK"));
    const std::string skin = ContentOf(path);
    const Values stored = StoredSkin();
    ASSERT_EQ(stored.size(), 14u);
    for (const auto& [value, parameter] :
         std::map<std::wstring, std::string>{{L"Color1", "colour1"}, {L"Angle", "angle"}}) {
      DWORD number = 0;
      std::memcpy(&number, stored.at(value).data.data(), 4);
      EXPECT_NE(skin.find("\"" + parameter + "\" value=\"" + std::to_string(number) + "\""),
                std::string::npos)
          << ToUtf8(name) << ": " << parameter;
    }
    PanelOf(marl.Window());
    Screenshot("panel-" + ToUtf8(name), marl.Window());
    EXPECT_TRUE(Close(marl));
  }
}

TEST_F(DisplaySettings, NoButtonAndNoListCutsItsTextOffInEitherLanguage) {
  const struct {
    std::wstring program;
    const wchar_t* title;
    const char* picture;
  } languages[] = {{g_programs.marl, L"Display settings", "display-settings"},
                   {g_programs.german, L"Anzeigeeinstellungen", "display-settings-german"}};
  for (const auto& language : languages) {
    const SuiteFolder suite;
    ASSERT_TRUE(CopyFileW(language.program.c_str(), suite.marl().c_str(), FALSE));
    const RunningMarl marl(suite);
    const SettingsDialog dialog(marl, language.title);
    ASSERT_TRUE(dialog) << language.picture;
    RedrawWindow(dialog.window(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    Screenshot(language.picture, dialog.window());
    const auto fits = [](const std::wstring& text, HWND control, int besides) {
      RECT room = {};
      GetClientRect(control, &room);
      const SIZE size = SizeOf(text);
      EXPECT_GT(size.cx, 0);
      EXPECT_LE(size.cx + PixelsOf(besides * 15), room.right) << ToUtf8(text);
      EXPECT_LE(size.cy, room.bottom) << ToUtf8(text);
    };
    int buttons = 0;
    for (const HWND button : Within(dialog.window(), L"Button")) {
      if (TextOf(button).empty()) continue;  // the group of the icons
      const auto kind = GetWindowLongW(button, GWL_STYLE) & BS_TYPEMASK;
      // A box and its gap; or the frame and a little air at both ends.
      fits(TextOf(button), button, kind == BS_CHECKBOX || kind == BS_AUTOCHECKBOX ? 17 : 10);
      ++buttons;
    }
    EXPECT_EQ(buttons, 18);
    for (const HWND combo : {dialog.IconSets(), dialog.Columns()}) {
      const auto rows = static_cast<WPARAM>(SendMessageW(combo, CB_GETCOUNT, 0, 0));
      EXPECT_EQ(rows, 4u);
      for (WPARAM row = 0; row < rows; ++row) {
        wchar_t text[256] = {};
        SendMessageW(combo, CB_GETLBTEXT, row, reinterpret_cast<LPARAM>(text));
        fits(text, combo, 26);
      }
    }
    // All rows can be seen at once, without a bar.
    RECT last = {};
    RECT list = {};
    SendMessageW(dialog.List(), LB_GETITEMRECT, 17, reinterpret_cast<LPARAM>(&last));
    GetClientRect(dialog.List(), &list);
    EXPECT_LE(last.bottom, list.bottom);
    for (int row = 0; row < 18; ++row) fits(dialog.RowText(row), dialog.List(), 22);
    EXPECT_TRUE(
        ClickOn(Button(dialog.window(), language.title[0] == L'D' ? L"Cancel" : L"Abbrechen")));
    EXPECT_TRUE(WaitUntilGone(dialog.window()));
    EXPECT_TRUE(Close(marl));
  }
}

}  // namespace marl::desktop
