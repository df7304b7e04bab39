#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "tests/desktop/Dialog.h"
#include "tests/desktop/Switchboard.h"
#include "tests/desktop/Words.h"

// The display settings in the real program: opened by the hidden word, used by mouse and keys, read
// back from the registry byte for byte, saved as a skin and loaded from one.

namespace marl::desktop {

namespace {

constexpr wchar_t kSkinKey[] = L"Software\\Oru\\Marl\\GUI";
constexpr int kFileName = 0x480;       // the field of the platform's file dialogs
constexpr int kFileNameCombo = 0x47C;  // in some versions

/// All values of the skin's key, as 8-bit programs see them.
StoredKey StoredSkin() { return ReadStored(kSkinKey).value_or(StoredKey()); }

/// The display settings, opened by the hidden word.
class SettingsDialog : public Dialog {
 public:
  explicit SettingsDialog(const RunningMarl& marl, const wchar_t* title = L"Display settings")
      : Dialog(SayTheWord(marl), title), marl_(marl) {}

  HWND List() const { return Find(L"ListBox"); }
  HWND Bar() const { return Find(L"ScrollBar"); }
  HWND IconSets() const { return At(L"ComboBox", 0); }
  HWND Columns() const { return At(L"ComboBox", 1); }

  bool SetColor(const wchar_t* button, int red, int green, int blue) const {
    return Press(button) && AnswerColor(marl_, red, green, blue);
  }

  /// Types the path into the system's file dialog and closes it with OK.
  bool ChooseFile(const wchar_t* title, const std::wstring& path) const {
    const Dialog dialog(marl_, title, kPlatformDialog);
    HWND field = nullptr;
    const bool up = WaitUntil([&] {
      for (const int id : {kFileNameCombo, kFileName}) {
        for (const wchar_t* const windowClass : {L"ComboBoxEx32", L"ComboBox", L"Edit"}) {
          for (const HWND child : dialog.FindAll(windowClass)) {
            if (GetDlgCtrlID(child) == id) field = child;
          }
        }
      }
      return field != nullptr;
    });
    if (!up || !BringForward(dialog.window())) return false;
    SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
    PostMessageW(dialog.window(), WM_COMMAND, IDOK, 0);
    return dialog.Gone();
  }

  /// Chooses a row of a drop-down list by keys.
  bool Choose(HWND combo, int row) const {
    if (!ClickOn(combo)) return false;
    if (!WaitUntil([&] { return SendMessageW(combo, CB_GETDROPPEDSTATE, 0, 0) != 0; }))
      return false;
    Chord({}, VK_HOME);
    for (int i = 0; i < row; ++i) Chord({}, VK_DOWN);
    Chord({}, VK_RETURN);
    return WaitUntil([&] { return SendMessageW(combo, CB_GETCURSEL, 0, 0) == row; });
  }

  /// A point on a row of the list, `right` pixels from its left edge.
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
    const RECT area = AreaOf(Find(L"Static"));
    const int width = area.right - area.left;
    return {area.left + width / 4 + index * width / 2, area.top + (area.bottom - area.top) * 3 / 5};
  }

 private:
  static const RunningMarl& SayTheWord(const RunningMarl& marl) {
    const HWND main = marl.WaitForWindow();
    if (main && BringForward(main)) Keys(L"setgui");
    return marl;
  }
  HWND At(const wchar_t* windowClass, std::size_t place) const {
    const std::vector<HWND> all = FindAll(windowClass);
    return place < all.size() ? all[place] : nullptr;
  }

  const RunningMarl& marl_;
};

/// The panel: the area between title and status bar.
Pixels PanelOf(HWND main) {
  // Away from the panel, so that nothing is highlighted.
  MoveMouse(2, 2);
  RedrawWindow(main, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
  RECT area = {};
  GetClientRect(main, &area);
  area.bottom -= 40;
  MapWindowPoints(main, nullptr, reinterpret_cast<POINT*>(&area), 2);
  Pixels last = Capture(area);
  // The highlight is removed by the next tick of a timer: wait until the picture is stable.
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

/// The skins that come with the program, in the test's folder.
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
  EXPECT_TRUE(dialog.Checked(L"Display &wide border"));
  EXPECT_TRUE(dialog.Choose(dialog.Columns(), 3));
  EXPECT_TRUE(dialog.ClickOn(dialog.List(), dialog.Row(2, 60)));
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
  // A click beside the thumb for a large step, on the arrow for a small one: from 90 to 121.
  const RECT bar = AreaOf(dialog.Bar());
  const int middle = (bar.top + bar.bottom) / 2;
  EXPECT_TRUE(dialog.ClickOn(dialog.Bar(), {bar.right - 40, middle}));
  EXPECT_TRUE(dialog.ClickOn(dialog.Bar(), {bar.right - 5, middle}));
  for (const int sample : {0, 1}) {
    const POINT at = dialog.Sample(sample);
    EXPECT_TRUE(BringForward(dialog.window()));
    Click(at);
    const Dialog font(marl, L"Set Font");
    ASSERT_TRUE(font);
    Screenshot("font", font.window());
    EXPECT_TRUE(font.Press(L"&Color"));
    EXPECT_TRUE(AnswerColor(marl, 130 + sample, 140, 150));
    EXPECT_TRUE(font.Press(L"&Italic"));
    EXPECT_TRUE(font.Leave(L"OK"));
  }
  EXPECT_TRUE(dialog.Press(L"Display &wide border"));
  EXPECT_TRUE(dialog.Choose(dialog.IconSets(), 2));
  EXPECT_TRUE(dialog.Press(L"&Use two-state icons"));
  EXPECT_TRUE(dialog.Choose(dialog.Columns(), 1));
  // The first row's box, and the last row moved up by one.
  EXPECT_TRUE(dialog.ClickOn(dialog.List(), dialog.Row(0, 9)));
  EXPECT_TRUE(dialog.ClickOn(dialog.List(), dialog.Row(17, 60)));
  EXPECT_TRUE(dialog.Press(L"&Up"));
  EXPECT_TRUE(WaitUntil([&] { return dialog.RowText(16) == L"Exit"; }));
  RedrawWindow(dialog.window(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  Screenshot("display-settings-changed", dialog.window());
  EXPECT_TRUE(dialog.Leave(L"OK"));

  const StoredKey expected = {
      {"Angle", Number(121)},
      {"Color1", Number(RGB(10, 20, 30))},
      {"Color2", Number(RGB(40, 50, 60))},
      {"Border1", Number(RGB(70, 80, 90))},
      {"Border2", Number(RGB(100, 110, 120))},
      {"BorderWidth", Number(2)},
      {"Text1", Number(RGB(130, 140, 150))},
      {"Text2", Number(RGB(131, 140, 150))},
      {"Icons", Number(2)},
      {"TwoState", Number(18)},
      {"IconsPerRow", Number(4)},
      {"Font1", Text("Arial|10|bi")},
      {"Font2", Text("Arial|10|biu")},
      {"DisplayIcons",
       Text("000|011|021|031|041|051|061|071|081|091|101|111|121|131|141|151|171|161")},
  };
  EXPECT_EQ(StoredSkin(), expected);
  // The panel has applied it: four columns.
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
  ASSERT_TRUE(dialog.InFront());
  const auto focus = [&] { return dialog.Focus(); };
  // One round: nineteen stops.
  ASSERT_TRUE(WaitUntil([&] { return focus() == dialog.Button(kFirstButton); }));
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

  EXPECT_TRUE(dialog.TabTo(dialog.Bar()));
  Chord({}, VK_NEXT);
  Chord({}, VK_RIGHT);
  EXPECT_TRUE(dialog.TabTo(dialog.Button(L"Normal...")));
  Chord({}, VK_SPACE);
  const Dialog font(marl, L"Set Font");
  EXPECT_TRUE(font && font.InFront());
  Chord({}, VK_ESCAPE);
  EXPECT_TRUE(font.Gone());
  EXPECT_TRUE(dialog.InFront());
  EXPECT_TRUE(dialog.TabTo(dialog.List()));
  const auto row = [&] { return SendMessageW(dialog.List(), LB_GETCURSEL, 0, 0); };
  Chord({}, VK_HOME);
  EXPECT_TRUE(WaitUntil([&] { return row() == 0; }));
  Chord({}, VK_SPACE);
  Chord({}, VK_DOWN);
  EXPECT_TRUE(WaitUntil([&] { return row() == 1; }));
  Chord({VK_MENU}, 'D');
  EXPECT_TRUE(WaitUntil([&] { return dialog.RowText(1) == L"TermVault"; }));
  EXPECT_TRUE(dialog.TabTo(dialog.Columns()));
  Chord({}, VK_HOME);
  Chord({}, VK_RETURN);
  EXPECT_TRUE(dialog.Gone());
  const StoredKey stored = StoredSkin();
  EXPECT_EQ(stored.at("Angle"), Number(121));
  EXPECT_EQ(stored.at("IconsPerRow"), Number(3));
  EXPECT_EQ(stored.at("DisplayIcons"),
            Text("000|021|011|031|041|051|061|071|081|091|101|111|121|131|141|151|161|171"));
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
      // The display may still be processing the previous move, as with a real mouse.
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
  EXPECT_EQ(StoredSkin().at("DisplayIcons"),
            Text("031|001|011|021|041|051|061|071|081|091|101|111|121|131|141|151|161|171"));
  EXPECT_TRUE(Close(marl));
}

TEST_F(DisplaySettings, ASavedSkinHasOneLinePerParameterAndGivesTheSamePanelInANewStart) {
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
    EXPECT_TRUE(dialog.ChooseFile(L"Save As", path));
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
    EXPECT_TRUE(dialog.ChooseFile(L"Open", path));
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
    // By its name alone: the dialog is in the folder of the skins.
    EXPECT_TRUE(dialog.ChooseFile(L"Open", std::wstring(name) + L".qsk"));
    RedrawWindow(dialog.window(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    Screenshot("display-settings-" + ToUtf8(name), dialog.window());
    EXPECT_TRUE(dialog.Leave(L"OK"));
    const std::string skin = ContentOf(path);
    const StoredKey stored = StoredSkin();
    ASSERT_EQ(stored.size(), 14u);
    for (const auto& [value, parameter] :
         std::map<std::string, std::string>{{"Color1", "colour1"}, {"Angle", "angle"}}) {
      std::uint32_t number = 0;
      ASSERT_EQ(stored.at(value).bytes.size(), sizeof number);
      std::memcpy(&number, stored.at(value).bytes.data(), sizeof number);
      EXPECT_NE(skin.find("\"" + parameter + "\" value=\"" + std::to_string(number) + "\""),
                std::string::npos)
          << ToUtf8(name) << ": " << parameter;
    }
    PanelOf(marl.Window());
    Screenshot("panel-" + ToUtf8(name), marl.Window());
    EXPECT_TRUE(Close(marl));
  }
}

TEST_F(DisplaySettings, NoButtonAndNoListCutsItsTextOffInAnyLanguage) {
  for (const std::string& language : MemoryStrings::Languages()) {
    const Words words(language);
    const SuiteFolder suite;
    ASSERT_TRUE(CopyFileW(g_programs.In(language).c_str(), suite.marl().c_str(), FALSE));
    const RunningMarl marl(suite);
    const SettingsDialog dialog(marl, words(IDS_UI_TITLE).c_str());
    ASSERT_TRUE(dialog) << language;
    RedrawWindow(dialog.window(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    Screenshot("display-settings-" + language, dialog.window());
    const auto fits = [](const std::wstring& text, HWND control, int besides) {
      RECT room = {};
      GetClientRect(control, &room);
      const SIZE size = SizeOf(text);
      EXPECT_GT(size.cx, 0);
      EXPECT_LE(size.cx + PixelsOf(besides * 15), room.right) << ToUtf8(text);
      EXPECT_LE(size.cy, room.bottom) << ToUtf8(text);
    };
    int buttons = 0;
    for (const HWND button : dialog.FindAll(L"Button")) {
      if (TextOf(button).empty()) continue;  // the group of the icons
      const auto kind = GetWindowLongW(button, GWL_STYLE) & BS_TYPEMASK;
      // A check box and its gap; or the frame and some space at both ends.
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
    // All rows are visible, without a scroll bar.
    RECT last = {};
    RECT list = {};
    SendMessageW(dialog.List(), LB_GETITEMRECT, 17, reinterpret_cast<LPARAM>(&last));
    GetClientRect(dialog.List(), &list);
    EXPECT_LE(last.bottom, list.bottom);
    for (int row = 0; row < 18; ++row) fits(dialog.RowText(row), dialog.List(), 22);
    EXPECT_TRUE(dialog.Leave(words(IDS_UI_CANCEL).c_str()));
    EXPECT_TRUE(Close(marl));
  }
}

}  // namespace marl::desktop
