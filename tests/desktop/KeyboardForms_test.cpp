#include <algorithm>

#include "tests/desktop/KeyboardDay.h"

// Every dialog of the program and its buttons, lists and fields by keys alone, and what is stored
// afterwards.

namespace marl::desktop {

namespace {

constexpr wchar_t kSkinKey[] = L"Software\\Oru\\Marl\\GUI";
constexpr wchar_t kBenchKey[] = L"Software\\Oru\\Oru Bench\\Settings";
constexpr wchar_t kMarlKey[] = L"Software\\Oru\\Marl";
constexpr wchar_t kExpressionsKey[] = L"Software\\Oru\\Marl\\HiddenSegments";
constexpr wchar_t kRulesKey[] = L"Software\\Oru\\Marl\\Segmentation";
constexpr wchar_t kProxyKey[] = L"Software\\Oru\\Marl\\Proxy";

/// Types a colour into the platform's dialog, field by field, and closes it with Enter.
bool TypeColor(const RunningMarl& marl, COLORREF color) {
  constexpr int kRed = 706;  // green and blue follow
  const Dialog dialog(marl, L"Color", kPlatformDialog);
  if (!dialog || !dialog.InFront()) return false;
  const int channels[] = {GetRValue(color), GetGValue(color), GetBValue(color)};
  for (int i = 0; i < 3; ++i) {
    const HWND field = GetDlgItem(dialog.window(), kRed + i);
    if (!dialog.TabTo(field)) return false;
    const std::wstring number = std::to_wstring(channels[i]);
    // The number that is there is selected.
    Keys(number);
    if (!WaitUntil([&] { return TextOf(field) == number; })) return false;
  }
  Chord({}, VK_RETURN);
  return dialog.Gone();
}

/// Types a name into the platform's file dialog, in its present folder, and closes it with Enter.
bool TypeFile(const RunningMarl& marl, const std::wstring& title, const std::wstring& name) {
  const Dialog dialog(marl, title, kPlatformDialog);
  if (!dialog || !dialog.InFront()) return false;
  const HWND field = dialog.Focus();
  Keys(name);
  if (!WaitUntil([&] { return TextOf(field) == name; })) return false;
  Chord({}, VK_RETURN);
  return dialog.Gone();
}

bool IsFile(const std::wstring& path) {
  return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

void PutFile(const std::wstring& path, const std::string& content) {
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  DWORD written = 0;
  EXPECT_TRUE(
      WriteFile(file, content.data(), static_cast<DWORD>(content.size()), &written, nullptr));
  CloseHandle(file);
}

}  // namespace

TEST_P(KeyboardDay, LooksAreChosenSavedAndLoaded) {
  const RunningMarl marl(suite);
  const HWND main = PastSplash(marl);
  ASSERT_TRUE(main);
  const Dialog options = OpenOptions(marl, main);
  ASSERT_TRUE(options && options.InFront());
  ASSERT_TRUE(Press(options.window(), {}, VK_F4));
  const Dialog look(marl, words(IDS_UI_TITLE));
  ASSERT_TRUE(look && look.InFront());
  const HWND bar = look.Find(L"ScrollBar");
  const HWND list = look.Find(L"ListBox");
  const std::vector<HWND> combos = look.FindAll(L"ComboBox");
  ASSERT_TRUE(bar && list);
  ASSERT_EQ(combos.size(), 2u);
  const auto angle = [&] { return GetScrollPos(bar, SB_CTL); };

  // In the order of the tabs.
  ASSERT_TRUE(TabAndPress(look, IDS_UI_COLOUR_1));
  ASSERT_TRUE(TypeColor(marl, RGB(10, 20, 30)));
  ASSERT_TRUE(TabAndPress(look, IDS_UI_COLOUR_2));
  ASSERT_TRUE(TypeColor(marl, RGB(40, 50, 60)));
  ASSERT_TRUE(look.TabTo(bar));
  const std::pair<WORD, int> steps[] = {{VK_END, 359}, {VK_LEFT, 358}, {VK_HOME, 0},  {VK_NEXT, 30},
                                        {VK_NEXT, 60}, {VK_PRIOR, 30}, {VK_RIGHT, 31}};
  for (const auto& [key, expected] : steps) {
    Chord({}, key);
    ASSERT_TRUE(WaitUntil([&, value = expected] { return angle() == value; })) << expected;
  }
  for (const int sample : {IDS_UI_TEXT_NORMAL, IDS_UI_TEXT_HIGHLIGHTED}) {
    ASSERT_TRUE(TabAndPress(look, words(sample) + L"..."));
    const Dialog font(marl, words(IDS_FONT_TITLE));
    ASSERT_TRUE(font && font.InFront());
    const HWND names = font.FindAll(L"ComboBox").at(0);
    ASSERT_TRUE(Choose(font, names, 1));
    // Alt and a letter: the size, a style and the colour.
    ASSERT_TRUE(PressAccessKey(font.window(), IDS_FONT_SIZE));
    ASSERT_TRUE(WaitUntil([&] { return ClassOf(font.Focus()) == L"Edit"; }));
    ASSERT_TRUE(Replace(font, L"12"));
    const bool italic = font.Checked(words(IDS_FONT_ITALIC).c_str());
    ASSERT_TRUE(PressAccessKey(font.window(), IDS_FONT_ITALIC));
    EXPECT_TRUE(WaitUntil([&] { return font.Checked(words(IDS_FONT_ITALIC).c_str()) != italic; }));
    EXPECT_TRUE(Toggle(font, IDS_FONT_BOLD));
    EXPECT_TRUE(Toggle(font, IDS_FONT_UNDERLINE));
    ASSERT_TRUE(PressAccessKey(font.window(), IDS_FONT_COLOUR));
    ASSERT_TRUE(TypeColor(marl, RGB(200, 210, sample - IDS_UI_TEXT_NORMAL)));
    ASSERT_TRUE(Close(font, VK_RETURN));
    ASSERT_TRUE(look.InFront());
  }
  ASSERT_TRUE(TabAndPress(look, IDS_UI_BORDER_COLOUR_1));
  ASSERT_TRUE(TypeColor(marl, RGB(70, 80, 90)));
  ASSERT_TRUE(TabAndPress(look, IDS_UI_BORDER_COLOUR_2));
  ASSERT_TRUE(TypeColor(marl, RGB(100, 110, 120)));
  EXPECT_TRUE(Toggle(look, IDS_UI_WIDE_BORDER));
  // The last row up, the first one down and out of sight.
  const auto row = [&](WPARAM index) {
    wchar_t text[256] = {};
    SendMessageW(list, LB_GETTEXT, index, reinterpret_cast<LPARAM>(text));
    return std::wstring(text);
  };
  ASSERT_TRUE(look.TabTo(list));
  // The first key chooses the row that has the focus; the next ones go from there.
  const std::pair<WORD, LRESULT> rows[] = {{VK_HOME, 0}, {VK_NEXT, 17}, {VK_HOME, 0},
                                           {VK_DOWN, 1}, {VK_UP, 0},    {VK_END, 17}};
  for (const auto& [key, expected] : rows) {
    Chord({}, key);
    ASSERT_TRUE(WaitUntil([&, index = expected] {
      return SendMessageW(list, LB_GETCURSEL, 0, 0) == index;
    })) << key;
  }
  ASSERT_TRUE(TabAndPress(look, IDS_UI_UP));
  EXPECT_TRUE(WaitUntil([&] { return row(16) == words(IDS_BUTTON_EXIT); }));
  ASSERT_TRUE(look.TabTo(list));
  Chord({}, VK_HOME);
  Chord({}, VK_SPACE);
  ASSERT_TRUE(TabAndPress(look, IDS_UI_DOWN));
  EXPECT_TRUE(WaitUntil([&] { return row(1) == words(IDS_BUTTON_ANALYSE); }));
  ASSERT_TRUE(Choose(look, combos[0], 2));
  EXPECT_TRUE(Toggle(look, IDS_UI_TWO_STATE));
  ASSERT_TRUE(Choose(look, combos[1], 1));
  Screenshot("keyboard-" + GetParam() + "-look-chosen", look.window());

  ASSERT_TRUE(TabAndPress(look, IDS_UI_SAVE));
  ASSERT_TRUE(TypeFile(marl, L"Save As", L"mine.qsk"));
  EXPECT_TRUE(WaitUntil([&] { return IsFile(suite.path() + L"\\Skins\\mine.qsk"); }));
  ASSERT_TRUE(TabAndPress(look, IDS_UI_DEFAULT));
  EXPECT_TRUE(WaitUntil([&] { return angle() == 90; }));
  ASSERT_TRUE(TabAndPress(look, IDS_UI_LOAD));
  ASSERT_TRUE(TypeFile(marl, L"Open", L"mine.qsk"));
  EXPECT_TRUE(WaitUntil([&] { return angle() == 31; }));
  ASSERT_TRUE(look.InFront());
  EXPECT_TRUE(look.FocusGoesTo(look.Button(words(IDS_UI_LOAD).c_str())));
  ASSERT_TRUE(TabAndPress(look, IDS_UI_OK));
  ASSERT_TRUE(look.Gone());

  StoredKey stored = ReadStored(kSkinKey).value_or(StoredKey());
  const std::string font = stored["Font1"].bytes;
  EXPECT_NE(font.find("|12|"), std::string::npos) << font;
  EXPECT_EQ(font.substr(font.rfind('|')), std::string("|iu") + '\0') << "no longer bold";
  stored.erase("Font1");
  stored.erase("Font2");
  const StoredKey expected = {
      {"Angle", Number(31)},
      {"Color1", Number(RGB(10, 20, 30))},
      {"Color2", Number(RGB(40, 50, 60))},
      {"Border1", Number(RGB(70, 80, 90))},
      {"Border2", Number(RGB(100, 110, 120))},
      {"BorderWidth", Number(2)},
      {"Text1", Number(RGB(200, 210, 0))},
      {"Text2", Number(RGB(200, 210, 1))},
      {"Icons", Number(2)},
      {"TwoState", Number(18)},
      {"IconsPerRow", Number(4)},
      {"DisplayIcons",
       Text("011|000|021|031|041|051|061|071|081|091|101|111|121|131|141|151|171|161")},
  };
  EXPECT_EQ(stored, expected);

  // A second time from the button, and cancelled.
  ASSERT_TRUE(options.InFront());
  ASSERT_TRUE(TabAndPress(options, IDS_OPTIONS_DISPLAY));
  const Dialog again(marl, words(IDS_UI_TITLE));
  ASSERT_TRUE(again && again.InFront());
  ASSERT_TRUE(TabAndPress(again, IDS_UI_DEFAULT));
  ASSERT_TRUE(Close(again, VK_ESCAPE));
  EXPECT_EQ(ReadStored(kSkinKey)->at("Angle"), Number(31));
  ASSERT_TRUE(Close(options, VK_ESCAPE));
  ASSERT_TRUE(Press(main, {VK_MENU}, VK_F4));
  EXPECT_EQ(marl.WaitForExit(), 0u);
}

TEST_P(KeyboardDay, OptionsAreChangedOnEveryPage) {
  const RunningMarl marl(suite);
  const HWND main = PastSplash(marl);
  ASSERT_TRUE(main);
  const Dialog options = OpenOptions(marl, main);
  ASSERT_TRUE(options && options.InFront());
  const auto goTo = [&](const std::vector<WORD>& held, WORD key, int button) {
    return Press(options.window(), held, key) &&
           WaitUntil([&] { return options.Button(words(button).c_str()) != nullptr; });
  };
  for (const int box : {IDS_OPTIONS_TOOLTIPS, IDS_OPTIONS_TOOLS_MENU, IDS_OPTIONS_WIZARD}) {
    EXPECT_TRUE(Toggle(options, box)) << box;
  }
  ASSERT_TRUE(goTo({VK_CONTROL}, VK_NEXT, IDS_OPTIONS_SEGMENTATION));
  for (const int box :
       {IDS_OPTIONS_WORD_COUNTS, IDS_OPTIONS_CONTEXT_MENUS, IDS_OPTIONS_NUMBER_SEGMENTS,
        IDS_OPTIONS_RED_BARS, IDS_OPTIONS_LIST_NUMBERS, IDS_OPTIONS_BULLETS}) {
    EXPECT_TRUE(Toggle(options, box)) << box;
  }

  // The rules: two lists, each with Add and Remove.
  ASSERT_TRUE(TabAndPress(options, IDS_OPTIONS_SEGMENTATION));
  {
    const Dialog rules(marl, words(IDS_SEGMENTATION_TITLE));
    ASSERT_TRUE(rules && rules.InFront());
    const std::vector<HWND> lists = rules.FindAll(L"ListBox");
    const std::vector<HWND> fields = rules.FindAll(L"Edit");
    ASSERT_EQ(lists.size(), 2u);
    ASSERT_EQ(fields.size(), 2u);
    const struct {
      int add, remove;
      std::vector<std::wstring> texts;
    } columns[] = {{IDS_SEGMENTATION_ADD_DONT_SPLIT,
                    IDS_SEGMENTATION_REMOVE_DONT_SPLIT,
                    {L"mr.", L"e.g.", L"i.e."}},
                   {IDS_SEGMENTATION_ADD_FORCE_SPLIT,
                    IDS_SEGMENTATION_REMOVE_FORCE_SPLIT,
                    {L";", L"+", L"-"}}};
    for (std::size_t i = 0; i < 2; ++i) {
      std::vector<std::wstring> rows;
      for (const std::wstring& text : columns[i].texts) {
        ASSERT_TRUE(PressAccessKey(rules.window(), columns[i].add));
        ASSERT_TRUE(rules.FocusGoesTo(fields[i]));
        Keys(text);
        rows.push_back(text);
        ASSERT_TRUE(WaitUntil([&] { return RowsOf(lists[i]) == rows; }));
      }
      // The first row.
      ASSERT_TRUE(rules.TabTo(lists[i]));
      Chord({}, VK_HOME);
      ASSERT_TRUE(WaitUntil([&] { return SelectionOf(lists[i]) == std::vector<int>{0}; }));
      ASSERT_TRUE(PressAccessKey(rules.window(), columns[i].remove));
      rows.erase(rows.begin());
      EXPECT_TRUE(WaitUntil([&] { return RowsOf(lists[i]) == rows; }));
    }
    Screenshot("keyboard-" + GetParam() + "-rules", rules.window());
    ASSERT_TRUE(Close(rules, VK_RETURN));
  }
  EXPECT_EQ(ReadStored(kRulesKey), (StoredKey{{"DontSplit1", Text("e.g.")},
                                              {"DontSplit2", Text("i.e.")},
                                              {"ForceSplit1", Text("+")},
                                              {"ForceSplit2", Text("-")}}));

  // The proxy server: options by arrows, a message, fields by their access keys.
  ASSERT_TRUE(goTo({VK_CONTROL}, VK_TAB, IDS_OPTIONS_LAN));
  ASSERT_TRUE(TabAndPress(options, IDS_OPTIONS_LAN));
  {
    const Dialog lan(marl, words(IDS_LAN_TITLE));
    ASSERT_TRUE(lan && lan.InFront());
    ASSERT_TRUE(lan.TabTo(lan.Button(words(IDS_LAN_DEFAULT).c_str())));
    Chord({}, VK_DOWN);
    ASSERT_TRUE(WaitUntil([&] { return lan.Checked(words(IDS_LAN_OVERRIDE).c_str()); }));
    EXPECT_TRUE(Toggle(lan, IDS_LAN_USE_PROXY));
    ASSERT_TRUE(Press(lan.window(), {}, VK_RETURN));
    EXPECT_TRUE(Answer(marl, IDS_LAN_INCOMPLETE));
    ASSERT_TRUE(lan.InFront());
    const std::vector<HWND> fields = lan.FindAll(L"Edit");
    ASSERT_TRUE(PressAccessKey(lan.window(), IDS_LAN_ADDRESS));
    ASSERT_TRUE(lan.FocusGoesTo(fields.at(0)));
    Keys(L"proxy.example");
    ASSERT_TRUE(PressAccessKey(lan.window(), IDS_LAN_PORT));
    ASSERT_TRUE(lan.FocusGoesTo(fields.at(1)));
    Keys(L"3128");
    ASSERT_TRUE(WaitUntil([&] { return TextOf(fields.at(1)) == L"3128"; }));
    ASSERT_TRUE(Close(lan, VK_RETURN));
  }
  EXPECT_EQ(ReadStored(kProxyKey), (StoredKey{{"UseProxy", Number(1)},
                                              {"Port", Number(3128)},
                                              {"Server", Text("proxy.example")}}));

  // The expressions: added, several chosen by arrows and removed, all cleared.
  ASSERT_TRUE(goTo({VK_CONTROL}, VK_TAB, IDS_OPTIONS_EXPRESSIONS_ADD));
  const HWND list = options.Find(L"ListBox");
  const HWND field = options.Find(L"Edit");
  ASSERT_TRUE(list && field);
  std::vector<std::wstring> rows;
  const auto add = [&](const std::wstring& text) {
    if (!TabAndPress(options, IDS_OPTIONS_EXPRESSIONS_ADD)) return false;
    if (!options.FocusGoesTo(field)) return false;
    Keys(text);
    rows.push_back(text);
    return WaitUntil([&] { return RowsOf(list) == rows; });
  };
  for (const wchar_t* text : {L"one", L"two", L"three"}) ASSERT_TRUE(add(text));
  ASSERT_TRUE(options.TabTo(list));
  Chord({}, VK_HOME);
  // A row that is chosen is edited at once: back to the list for the next one.
  ASSERT_TRUE(options.FocusGoesTo(field));
  Chord({VK_SHIFT}, VK_TAB);
  ASSERT_TRUE(options.FocusGoesTo(list));
  Chord({VK_SHIFT}, VK_DOWN);
  ASSERT_TRUE(WaitUntil([&] { return SelectionOf(list) == std::vector<int>{0, 1}; }));
  ASSERT_TRUE(TabAndPress(options, IDS_OPTIONS_EXPRESSIONS_REMOVE));
  rows = {L"three"};
  EXPECT_TRUE(WaitUntil([&] { return RowsOf(list) == rows; }));
  ASSERT_TRUE(TabAndPress(options, IDS_OPTIONS_EXPRESSIONS_CLEAR));
  rows.clear();
  EXPECT_TRUE(WaitUntil([&] { return RowsOf(list).empty(); }));
  ASSERT_TRUE(add(L"four"));
  // Back to the first page, and round to the last one.
  ASSERT_TRUE(goTo({VK_CONTROL}, VK_TAB, IDS_OPTIONS_DISPLAY));
  ASSERT_TRUE(goTo({VK_CONTROL, VK_SHIFT}, VK_TAB, IDS_OPTIONS_EXPRESSIONS_ADD));
  ASSERT_TRUE(goTo({VK_CONTROL}, VK_PRIOR, IDS_OPTIONS_LAN));
  ASSERT_TRUE(options.TabTo(options.Find(L"SysTabControl32")));
  ASSERT_TRUE(goTo({}, VK_LEFT, IDS_OPTIONS_SEGMENTATION));
  ASSERT_TRUE(Close(options, VK_RETURN));
  // The main form answers when it is done.
  ASSERT_TRUE(WaitUntil([&] { return IsWindowEnabled(main) != FALSE; }));
  SendMessageW(main, WM_NULL, 0, 0);
  EXPECT_EQ(ReadStored(kExpressionsKey), (StoredKey{{"RegEx1", Text("four")}}));
  EXPECT_EQ(ReadStored(kBenchKey),
            (StoredKey{{"UseAltWordCounts", Number(1)}, {"HideNumberSegs", Number(1)}}));
  const StoredKey values = ReadStored(kMarlKey).value_or(StoredKey());
  ASSERT_TRUE(values.contains("XPlacement") && values.contains("ShowBullets"));
  EXPECT_EQ(values.at("XPlacement"), Number(0));
  EXPECT_EQ(values.at("ShowBullets"), Number(3));
  EXPECT_EQ(settings.Get(L"Wizard"), L"N");
  const auto starts = suite.WaitForTools(1);
  ASSERT_EQ(starts.size(), 1u);
  EXPECT_EQ(starts[0].arguments, L"/R") << "for the context menus";
  // By the menu of the title bar.
  ASSERT_TRUE(Press(main, {VK_MENU}, VK_SPACE));
  ASSERT_TRUE(WaitUntil([&] { return MenuOnScreen() != nullptr; }));
  Chord({}, 'C');
  EXPECT_EQ(marl.WaitForExit(), 0u);
  EXPECT_EQ(settings.Get(L"Tooltips"), L"False");
  EXPECT_EQ(settings.Get(L"Tools"), L"True");
}

TEST_P(KeyboardDay, ProjectsAreOpenedTranslatedAndCleaned) {
  const std::wstring folder = suite.path() + L"\\jobs";
  ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
  ASSERT_TRUE(CreateDirectoryW((folder + L"\\German").c_str(), nullptr));
  PutFile(folder + L"\\a.qprx",
          "<project><language lc=\"fr\" description=\"French\"><document path=\"French\\x.doc\"/>"
          "<document path=\"French\\y.doc\"/></language>"
          "<language lc=\"de\" description=\"German\"/></project>");
  PutFile(folder + L"\\German\\y.qtd", "");
  const RunningMarl marl(suite);
  const HWND main = PastSplash(marl);
  ASSERT_TRUE(main);
  ASSERT_TRUE(Press(main, {VK_CONTROL}, 'O'));
  ASSERT_TRUE(TypeFile(marl, words(IDS_OPEN_PROJECT_TITLE), folder + L"\\a.qprx"));
  ASSERT_TRUE(Press(main, {VK_CONTROL}, 'P'));
  {
    const Dialog select(marl, words(IDS_SELECT_TITLE));
    ASSERT_TRUE(select && select.InFront());
    const std::vector<HWND> combos = select.FindAll(L"ComboBox");
    ASSERT_EQ(combos.size(), 2u);
    ASSERT_TRUE(Choose(select, combos[0], 1));
    ASSERT_TRUE(Choose(select, combos[1], 1));
    Screenshot("keyboard-" + GetParam() + "-select", select.window());
    ASSERT_TRUE(Close(select, VK_RETURN));
  }
  const auto starts = suite.WaitForTools(1);
  ASSERT_EQ(starts.size(), 1u);
  EXPECT_EQ(starts[0], Start(suite, L"Q17Bench.exe", L"\"" + folder + L"\\German\\y.qtd\""));

  ASSERT_TRUE(Press(main, {VK_CONTROL}, 'W'));
  EXPECT_TRUE(Answer(marl, IDS_ASK_CLEAN, true));
  EXPECT_TRUE(IsFile(folder + L"\\German\\y.qtd"));
  ASSERT_TRUE(Press(main, {VK_CONTROL}, 'W'));
  EXPECT_TRUE(Answer(marl, IDS_ASK_CLEAN));
  EXPECT_TRUE(WaitUntil([&] { return !IsFile(folder + L"\\German\\y.qtd"); }));
  ASSERT_TRUE(Press(main, {VK_CONTROL}, 'W'));
  EXPECT_TRUE(Answer(marl, IDS_NOTHING_TO_CLEAN));
  EXPECT_TRUE(Close(marl));
}

TEST_P(KeyboardDay, ServersAndLinksAreReached) {
  settings.SetRegistry(L"ServerMRU", L"MRU1",
                       L"<project-tracking server=\"alpha\" ssl=\"no\" port=\"80\"/>");
  settings.SetRegistry(L"ServerMRU", L"MRU2",
                       L"<project-tracking server=\"beta\" ssl=\"yes\" port=\"443\"/>");
  const WebAddresses web(suite.path() + L"\\Q17Bench.exe");
  const RunningMarl marl(suite);
  const HWND main = PastSplash(marl);
  ASSERT_TRUE(main);
  const auto titled = [&](const wchar_t* server) {
    return WaitUntil([&] { return TextOf(main).ends_with(std::wstring(L" : ") + server); });
  };
  // One of the list.
  ASSERT_TRUE(Press(main, {VK_CONTROL}, 'G'));
  {
    const Dialog server(marl, words(IDS_SERVER_TITLE));
    ASSERT_TRUE(server && server.InFront());
    ASSERT_TRUE(Choose(server, server.Find(L"ComboBox"), 1));
    ASSERT_TRUE(Close(server, VK_RETURN));
  }
  EXPECT_TRUE(titled(L"beta"));
  // A new one, with a port of its own.
  ASSERT_TRUE(Press(main, {VK_CONTROL}, 'G'));
  {
    const Dialog server(marl, words(IDS_SERVER_TITLE));
    ASSERT_TRUE(server && server.InFront());
    ASSERT_TRUE(PressAccessKey(server.window(), IDS_SERVER_NAME));
    Keys(L"gamma.example");
    ASSERT_TRUE(WaitUntil([&] { return TextOf(server.Find(L"ComboBox")) == L"gamma.example"; }));
    EXPECT_TRUE(Toggle(server, IDS_SERVER_SSL));
    EXPECT_TRUE(Toggle(server, IDS_SERVER_DEFAULT_PORT));
    ASSERT_TRUE(PressAccessKey(server.window(), IDS_SERVER_PORT));
    const HWND port = FindWindowExW(server.window(), nullptr, L"Edit", nullptr);
    ASSERT_TRUE(server.FocusGoesTo(port));
    Keys(L"8080");
    ASSERT_TRUE(WaitUntil([&] { return TextOf(port) == L"8080"; }));
    Screenshot("keyboard-" + GetParam() + "-server", server.window());
    ASSERT_TRUE(Close(server, VK_RETURN));
  }
  EXPECT_TRUE(titled(L"gamma.example"));
  ASSERT_TRUE(Press(main, {VK_CONTROL}, 'G'));
  {
    const Dialog server(marl, words(IDS_SERVER_TITLE));
    ASSERT_TRUE(server && server.InFront());
    Keys(L"delta");
    ASSERT_TRUE(TabAndPress(server, IDS_CANCEL));
    ASSERT_TRUE(server.Gone());
  }
  EXPECT_TRUE(titled(L"gamma.example"));

  // The links of the about box. On Windows only the user can choose what opens them.
  ASSERT_TRUE(Press(main, {VK_CONTROL}, VK_F1));
  const Dialog about(marl, words(IDS_ABOUT_TITLE));
  ASSERT_TRUE(about && about.InFront());
  if (web.made()) {
    const std::pair<int, const wchar_t*> links[] = {
        {IDS_ABOUT_SITE, L"\"http://www.marl.example\""},
        {IDS_ABOUT_SUPPORT, L"\"http://support.marl.example\""}};
    std::size_t count = 0;
    for (const auto& [text, address] : links) {
      ASSERT_TRUE(PressAccessKey(about.window(), text));
      const auto starts = suite.WaitForTools(++count);
      ASSERT_EQ(starts.size(), count);
      EXPECT_EQ(starts.back().arguments, address);
    }
  }
  ASSERT_TRUE(Close(about, VK_RETURN));
  EXPECT_TRUE(Close(marl));
}

// The keys of the shell's notification area are not the program's. What it sends for the menu key
// is sent here; the menu is operated by real keys, with the window hidden.
TEST_P(KeyboardDay, MenuOfTheNotificationAreaStartsEveryTool) {
  const RunningMarl marl(suite);
  const HWND main = PastSplash(marl);
  ASSERT_TRUE(main);
  const UINT message = RegisterWindowMessageW(L"msgMarlMenu");
  const auto inMenu = [&] {
    GUITHREADINFO thread = {};
    thread.cbSize = sizeof thread;
    return GetGUIThreadInfo(GetWindowThreadProcessId(main, nullptr), &thread) &&
           (thread.flags & (GUI_INMENUMODE | GUI_POPUPMENUMODE)) != 0;
  };
  const auto choose = [&](int item) {
    PostMessageW(main, message, 0, WM_RBUTTONDOWN);
    PostMessageW(main, message, 0, WM_RBUTTONUP);
    if (!WaitUntil([&] { return MenuOnScreen() && inMenu(); })) return false;
    // Up from the first item is the last one.
    for (int i = 0; i <= item && item < 9; ++i) Chord({}, VK_DOWN);
    for (int i = 18; i > item && item >= 9; --i) Chord({}, VK_UP);
    Chord({}, VK_RETURN);
    return WaitUntil([&] { return !MenuOnScreen() && !inMenu(); });
  };
  // Minimised by the menu of the title bar, which knows its items' letters.
  ASSERT_TRUE(Press(main, {VK_MENU}, VK_SPACE));
  ASSERT_TRUE(WaitUntil([&] { return MenuOnScreen() && inMenu(); }));
  Chord({}, 'N');
  ASSERT_TRUE(WaitUntil([&] { return !IsWindowVisible(main); }));
  std::size_t count = 0;
  for (const auto& [button, tool] :
       std::initializer_list<std::pair<int, const wchar_t*>>{{0, L"Q17Gauge.exe"},
                                                             {5, L"Q17Bench.exe"},
                                                             {12, L"Q17Renew.exe"},
                                                             {16, L"Q17Xlf.exe"}}) {
    ASSERT_TRUE(choose(button)) << button;
    const auto starts = suite.WaitForTools(++count);
    ASSERT_EQ(starts.size(), count) << button;
    EXPECT_EQ(starts.back(), Start(suite, tool));
  }
  ASSERT_TRUE(choose(kChangeServer));
  const Dialog server(marl, words(IDS_SERVER_TITLE));
  ASSERT_TRUE(server && server.InFront());
  ASSERT_TRUE(Close(server, VK_ESCAPE));
  ASSERT_TRUE(WaitUntil([&] { return IsWindowEnabled(main) != FALSE; }));
  ASSERT_TRUE(choose(kExit));
  EXPECT_EQ(marl.WaitForExit(), 0u);
}

}  // namespace marl::desktop
