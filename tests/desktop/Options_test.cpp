#include <algorithm>
#include <array>
#include <set>

#include "tests/desktop/Dialog.h"
#include "tests/desktop/Switchboard.h"

// The options in the real program: every box and its stored value, byte for byte, the program that
// is started for the context menu, the list of expressions, and what takes effect at once.

namespace marl::desktop {

namespace {

using Starts = std::vector<Started>;

constexpr wchar_t kBenchKey[] = L"Software\\Oru\\Oru Bench\\Settings";
constexpr wchar_t kMarlKey[] = L"Software\\Oru\\Marl";
constexpr wchar_t kListKey[] = L"Software\\Oru\\Marl\\HiddenSegments";
constexpr wchar_t kRulesKey[] = L"Software\\Oru\\Marl\\Segmentation";

struct Box {
  int tab;
  const wchar_t* caption;
};
// By number.
constexpr std::array<Box, 9> kBoxes = {
    {{0, L"&Display tooltips for switchboard buttons"},
     {0, L"Show all applications in &tools menu"},
     {1, L"Use Microsoft &Word style word counting"},
     {1, L"Enable Marl items on &context menus"},
     {0, L"Always start with translation &wizard"},
     {1, L"&Hide \"number only\" segments"},
     {1, L"For &XML/SGML, hide red bars at the beginning and end of a segment"},
     {1, L"Hide &numbers in a numbered list"},
     {1, L"Hide &bullet point characters (\u2022 and \u00B7)"}}};
constexpr std::array<wchar_t, 4> kTabKeys = {'S', 'G', 'L', 'H'};
// The contents of each tab.
constexpr std::array<const wchar_t*, 4> kTabButtons = {
    L"&Change display settings...", L"Segmentation &rules...", L"L&AN settings...", L"&Add"};

using Boxes = std::array<bool, 9>;

class OptionsWindow : public SwitchboardTest {
 protected:
  const RunningMarl& Run() {
    marl.emplace(suite);
    main = marl->WaitForWindow();
    return *marl;
  }
  Dialog Open() {
    if (!marl) Run();
    EXPECT_TRUE(marl->PressMenu(L'O', L'O'));
    Dialog dialog(*marl, L"Options");
    EXPECT_TRUE(dialog && dialog.InFront());
    return dialog;
  }
  /// Closes with a button and waits until the main form is done.
  testing::AssertionResult Leave(const Dialog& dialog, const wchar_t* button) const {
    if (!dialog.Leave(button)) return testing::AssertionFailure() << "it stays";
    return Settled();
  }
  /// The main form responds only when it is done.
  testing::AssertionResult Settled() const {
    if (!WaitUntil([&] { return IsWindowEnabled(main) != FALSE; })) {
      return testing::AssertionFailure() << "the main form is not given back";
    }
    SendMessageW(main, WM_NULL, 0, 0);
    return testing::AssertionSuccess();
  }
  /// Goes to a tab by its access key.
  static bool GoTo(const Dialog& dialog, int tab) {
    const auto there = [&] {
      return dialog.Button(kTabButtons[static_cast<std::size_t>(tab)]) != nullptr;
    };
    // On the general tab a box shares the key of the last tab and may get it first.
    if (tab == 3 && dialog.Button(kTabButtons[1])) GoTo(dialog, 0);
    if (!there()) Chord({VK_MENU}, static_cast<WORD>(kTabKeys[static_cast<std::size_t>(tab)]));
    return WaitUntil(there);
  }
  static Boxes Shown(const Dialog& dialog) {
    Boxes boxes = {};
    for (std::size_t i = 0; i < boxes.size(); ++i) {
      EXPECT_TRUE(GoTo(dialog, kBoxes[i].tab)) << i;
      EXPECT_TRUE(dialog.Button(kBoxes[i].caption)) << i;
      boxes[i] = dialog.Checked(kBoxes[i].caption);
    }
    return boxes;
  }
  static void Choose(const Dialog& dialog, const Boxes& boxes) {
    for (std::size_t i = 0; i < boxes.size(); ++i) {
      EXPECT_TRUE(GoTo(dialog, kBoxes[i].tab)) << i;
      EXPECT_TRUE(dialog.Check(kBoxes[i].caption, boxes[i])) << i;
    }
  }
  static std::optional<StoredBytes> Value(const wchar_t* key, const char* name) {
    const auto values = ReadStored(key);
    if (!values || !values->contains(name)) return {};
    return values->at(name);
  }
  struct Search {
    DWORD process = 0;
    bool any = false;
    bool shown = false;
  };
  static BOOL CALLBACK TakeTip(HWND window, LPARAM argument) {
    auto& search = *reinterpret_cast<Search*>(argument);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == search.process && _wcsicmp(ClassOf(window).c_str(), L"tooltips_class32") == 0) {
      search.any = true;
      search.shown = search.shown || IsWindowVisible(window);
    }
    return TRUE;
  }
  Search Tips() const {
    Search search{marl->id()};
    EnumWindows(TakeTip, reinterpret_cast<LPARAM>(&search));
    return search;
  }
  /// Moves the mouse over a button of the panel.
  void Hover(int button) const {
    const POINT at = LabelOf(main, button);
    MoveMouse(at.x - 3, at.y);
    MoveMouse(at.x, at.y);
  }

  const SuiteFolder suite{L"My  suite, \u00fcber & co"};
  std::optional<RunningMarl> marl;
  HWND main = nullptr;
};

}  // namespace

TEST_F(OptionsWindow, EveryTabAsItOpens) {
  PutStored(kListKey, "RegEx1", Text("^\\d+$"));
  PutStored(kListKey, "RegEx2", Text("^[A-Z]{2}\\d{4}$"));
  Run();
  ASSERT_TRUE(main);
  const Dialog dialog = Open();
  ASSERT_TRUE(dialog);
  EXPECT_FALSE(IsWindowEnabled(main));
  const RECT over = AreaOf(dialog.window());
  const RECT under = AreaOf(main);
  EXPECT_NEAR(over.left + over.right, under.left + under.right, 2) << "over its centre";
  EXPECT_NEAR(over.top + over.bottom, under.top + under.bottom, 2);
  for (int tab = 0; tab < 4; ++tab) {
    ASSERT_TRUE(GoTo(dialog, tab));
    dialog.Picture("frmOptions-" + std::to_string(tab + 1));
    for (int other = 0; other < 4; ++other) {
      EXPECT_EQ(dialog.Button(kTabButtons[static_cast<std::size_t>(other)]) != nullptr,
                other == tab);
    }
  }
  EXPECT_EQ(RowsOf(dialog.Find(L"ListBox")),
            (std::vector<std::wstring>{L"^\\d+$", L"^[A-Z]{2}\\d{4}$"}));
  EXPECT_TRUE(Leave(dialog, L"Cancel"));
  EXPECT_TRUE(Close(*marl));
}

TEST_F(OptionsWindow, GermanDialogsAsTheyOpen) {
  ASSERT_TRUE(CopyFileW(g_programs.In("de").c_str(), suite.marl().c_str(), FALSE));
  PutStored(kListKey, "RegEx1", Text("^\\d+$"));
  Run();
  ASSERT_TRUE(main);
  ASSERT_TRUE(marl->PressMenu(L'X', L'O'));
  const Dialog dialog(*marl, L"Optionen");
  ASSERT_TRUE(dialog && dialog.InFront());
  const std::array<const wchar_t*, 4> buttons = {L"Anzeige&einstellungen \u00e4ndern...",
                                                 L"Segmentierungs&regeln...",
                                                 L"LAN-E&instellungen...", L"&Hinzuf\u00fcgen"};
  for (std::size_t tab = 0; tab < 4; ++tab) {
    ASSERT_TRUE(WaitUntil([&] { return dialog.Button(buttons[tab]) != nullptr; })) << tab;
    dialog.Picture("frmOptions-de-" + std::to_string(tab + 1));
    Chord({VK_CONTROL}, VK_TAB);
  }
  // Wraps around to the first tab.
  ASSERT_TRUE(WaitUntil([&] { return dialog.Button(buttons[0]) != nullptr; }));
  Chord({VK_CONTROL}, VK_TAB);
  ASSERT_TRUE(WaitUntil([&] { return dialog.Button(buttons[1]) != nullptr; }));
  Chord({VK_MENU}, 'R');
  const Dialog rules(*marl, L"Segmentierungsregeln");
  ASSERT_TRUE(rules && rules.InFront());
  rules.Picture("frmSegmentation-de");
  Chord({}, VK_ESCAPE);
  ASSERT_TRUE(rules.Gone());
  Chord({VK_CONTROL}, VK_TAB);
  ASSERT_TRUE(WaitUntil([&] { return dialog.Button(buttons[2]) != nullptr; }));
  Chord({VK_MENU}, 'I');
  const Dialog lan(*marl, L"Einstellungen f\u00fcr lokales Netzwerk (LAN)");
  ASSERT_TRUE(lan && lan.InFront());
  lan.Picture("frmLanSettings-de");
  Chord({}, VK_ESCAPE);
  ASSERT_TRUE(lan.Gone());
  Chord({}, VK_ESCAPE);
  EXPECT_TRUE(dialog.Gone());
  EXPECT_TRUE(Close(*marl));
}

TEST_F(OptionsWindow, FreshUserCancelsAndNothingIsStored) {
  const Dialog dialog = Open();
  ASSERT_TRUE(dialog);
  EXPECT_EQ(Shown(dialog), (Boxes{true, false, false, false, true, false, false, true, true}));
  Choose(dialog, {false, true, true, true, false, true, true, false, false});
  EXPECT_TRUE(Leave(dialog, L"Cancel"));
  EXPECT_EQ(ReadStored(kBenchKey), std::nullopt);
  EXPECT_EQ(ReadStored(kListKey), std::nullopt);
  EXPECT_EQ(Value(kMarlKey, "XPlacement"), std::nullopt);
  EXPECT_EQ(settings.Get(L"Wizard"), std::nullopt);
  EXPECT_TRUE(Close(*marl));
  EXPECT_EQ(settings.Get(L"Tooltips"), L"True");
  EXPECT_EQ(settings.Get(L"Tools"), L"False");
  EXPECT_TRUE(suite.WaitForTools(0).empty());
}

TEST_F(OptionsWindow, EveryBoxIsStoredBothWays) {
  const Boxes on = {true, true, true, false, true, true, true, true, true};
  const Boxes off = {};
  {
    const Dialog dialog = Open();
    ASSERT_TRUE(dialog);
    Choose(dialog, on);
    EXPECT_TRUE(Leave(dialog, L"OK"));
  }
  EXPECT_EQ(ReadStored(kBenchKey),
            (StoredKey{{"UseAltWordCounts", Number(1)}, {"HideNumberSegs", Number(1)}}));
  EXPECT_EQ(Value(kMarlKey, "XPlacement"), Number(0));
  EXPECT_EQ(Value(kMarlKey, "ShowBullets"), Number(0));
  EXPECT_EQ(settings.Get(L"Wizard"), L"Y");
  EXPECT_EQ(ReadStored(kListKey), std::nullopt) << "an empty list leaves no key";
  {
    const Dialog dialog = Open();
    ASSERT_TRUE(dialog);
    EXPECT_EQ(Shown(dialog), on);
    Choose(dialog, off);
    EXPECT_TRUE(Leave(dialog, L"OK"));
  }
  EXPECT_EQ(ReadStored(kBenchKey),
            (StoredKey{{"UseAltWordCounts", Number(0)}, {"HideNumberSegs", Number(0)}}));
  EXPECT_EQ(Value(kMarlKey, "XPlacement"), Number(1));
  EXPECT_EQ(Value(kMarlKey, "ShowBullets"), Number(3));
  EXPECT_EQ(settings.Get(L"Wizard"), L"N");
  {
    const Dialog dialog = Open();
    ASSERT_TRUE(dialog);
    EXPECT_EQ(Shown(dialog), off);
    EXPECT_TRUE(dialog.Check(kBoxes[8].caption, true));
    EXPECT_TRUE(Leave(dialog, L"OK"));
  }
  EXPECT_EQ(Value(kMarlKey, "ShowBullets"), Number(1));
  EXPECT_TRUE(Close(*marl));
  EXPECT_EQ(settings.Get(L"Tooltips"), L"False");
  EXPECT_EQ(settings.Get(L"Tools"), L"False");
}

TEST_F(OptionsWindow, KindOfTheLastValueReadGovernsTheWrites) {
  PutStored(kMarlKey, "ShowBullets", Text("2"));
  const Dialog dialog = Open();
  ASSERT_TRUE(dialog);
  const Boxes boxes = Shown(dialog);
  EXPECT_TRUE(boxes[7]);
  EXPECT_FALSE(boxes[8]);
  EXPECT_TRUE(Leave(dialog, L"OK"));
  EXPECT_EQ(ReadStored(kBenchKey),
            (StoredKey{{"UseAltWordCounts", Text("0")}, {"HideNumberSegs", Text("0")}}));
  EXPECT_EQ(Value(kMarlKey, "XPlacement"), Text("1"));
  EXPECT_EQ(Value(kMarlKey, "ShowBullets"), Text("2"));
  EXPECT_TRUE(Close(*marl));
}

TEST_F(OptionsWindow, ContextMenuProgramIsStartedMinimisedOnAChangeOnly) {
  const auto shell = [&](const wchar_t* arguments) {
    return Started{L"Q17Shell.exe", suite.path() + L"\\Q17Shell.exe", arguments, suite.temp(),
                   SW_SHOWMINIMIZED};
  };
  const ClassKey extension(L".rtf", L"MarlTestText");
  {
    const Dialog dialog = Open();
    ASSERT_TRUE(dialog);
    ASSERT_TRUE(GoTo(dialog, 1));
    EXPECT_FALSE(dialog.Checked(kBoxes[3].caption));
    EXPECT_TRUE(Leave(dialog, L"OK"));
  }
  {
    const Dialog dialog = Open();
    ASSERT_TRUE(dialog);
    ASSERT_TRUE(GoTo(dialog, 1));
    ASSERT_TRUE(dialog.Check(kBoxes[3].caption, true));
    EXPECT_TRUE(Leave(dialog, L"OK"));
  }
  EXPECT_EQ(suite.WaitForTools(1), (Starts{shell(L"/R")})) << "none without a change";

  // The effect of that program.
  const ClassKey type(L"MarlTestText", L"Text");
  const ClassKey verbs(L"MarlTestText\\shell", L"");
  const ClassKey entry(L"MarlTestText\\shell\\Translate with Marl", L"");
  const ClassKey command(L"MarlTestText\\shell\\Translate with Marl\\command", L"x \"%1\"");
  ASSERT_TRUE(command.made());
  {
    const Dialog dialog = Open();
    ASSERT_TRUE(dialog);
    ASSERT_TRUE(GoTo(dialog, 1));
    EXPECT_TRUE(dialog.Checked(kBoxes[3].caption));
    ASSERT_TRUE(dialog.Check(kBoxes[3].caption, false));
    EXPECT_TRUE(Leave(dialog, L"OK"));
  }
  EXPECT_EQ(suite.WaitForTools(2), (Starts{shell(L"/R"), shell(L"/U")}));
  EXPECT_TRUE(Close(*marl));
}

TEST_F(OptionsWindow, MissingContextMenuProgramEndsTheProgramWithTheRuntimesText) {
  suite.Remove(L"Q17Shell.exe");
  const Dialog dialog = Open();
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(GoTo(dialog, 1));
  ASSERT_TRUE(dialog.Check(kBoxes[3].caption, true));
  ASSERT_TRUE(dialog.Press(L"OK"));
  const MessageBoxWindow box = marl->WaitForBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box.Text(), L"File not found");
  EXPECT_TRUE(box.Press(IDOK));
  EXPECT_EQ(marl->WaitForExit(), 1u);
}

TEST_F(OptionsWindow, ToolsAndTooltipsWorkAtOnce) {
  Run();
  ASSERT_TRUE(main);
  Hover(kEdit);
  EXPECT_TRUE(WaitUntil([&] { return Tips().shown; }));
  MoveMouse(0, 0);
  {
    const Dialog dialog = Open();
    ASSERT_TRUE(dialog);
    ASSERT_TRUE(dialog.Check(kBoxes[0].caption, false));
    ASSERT_TRUE(dialog.Check(kBoxes[1].caption, true));
    EXPECT_TRUE(Leave(dialog, L"OK"));
  }
  Hover(kEdit);
  // The main form has seen the mouse: at this moment it would create a tip.
  const HWND status = FindWindowExW(main, nullptr, L"msctls_statusbar32", nullptr);
  ASSERT_TRUE(WaitUntil([&] { return TextOf(status) == L"Interactively translate a file"; }));
  SettleInput();
  EXPECT_FALSE(Tips().any) << "they have gone";
  ASSERT_TRUE(WaitUntil([&] { return IsWindowEnabled(main) != FALSE; }));
  ASSERT_TRUE(BringForward(main));
  Chord({VK_SHIFT}, VK_F1);
  EXPECT_EQ(suite.WaitForTools(1), (Starts{Start(suite, L"FaceMap.exe")}));
  {
    const Dialog dialog = Open();
    ASSERT_TRUE(dialog);
    ASSERT_TRUE(dialog.Check(kBoxes[0].caption, true));
    ASSERT_TRUE(dialog.Check(kBoxes[1].caption, false));
    EXPECT_TRUE(Leave(dialog, L"OK"));
  }
  Hover(kEdit);
  EXPECT_TRUE(WaitUntil([&] { return Tips().shown; }));
  MoveMouse(0, 0);
  ASSERT_TRUE(WaitUntil([&] { return IsWindowEnabled(main) != FALSE; }));
  ASSERT_TRUE(BringForward(main));
  Chord({VK_SHIFT}, VK_F1);
  EXPECT_TRUE(Close(*marl));
  EXPECT_EQ(suite.WaitForTools(1).size(), 1u) << "a hidden entry does not fire";
  EXPECT_EQ(settings.Get(L"Tooltips"), L"True");
  EXPECT_EQ(settings.Get(L"Tools"), L"False");
}

// The list of expressions.

TEST_F(OptionsWindow, ExpressionsAreAddedEditedRemovedAndReadAgain) {
  Dialog dialog = Open();
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(GoTo(dialog, 3));
  HWND list = dialog.Find(L"ListBox");
  HWND field = dialog.Find(L"Edit");
  ASSERT_TRUE(list && field);
  EXPECT_TRUE(RowsOf(list).empty());
  std::vector<std::wstring> rows;
  for (const wchar_t* text : {L"^one$", L"two", L"three", L"four", L"five"}) {
    ASSERT_TRUE(dialog.Press(L"&Add"));
    rows.push_back(L"[New Expression]");
    ASSERT_TRUE(WaitUntil([&] { return RowsOf(list) == rows; }));
    ASSERT_TRUE(dialog.FocusGoesTo(field));
    EXPECT_EQ(TextOf(field), L"[New Expression]");
    // The new row's text is selected: typing replaces it, in the row too.
    Keys(text);
    rows.back() = text;
    ASSERT_TRUE(WaitUntil([&] { return RowsOf(list) == rows; }));
  }
  dialog.Picture("frmOptions-list");
  EXPECT_TRUE(Leave(dialog, L"OK"));
  EXPECT_EQ(ReadStored(kListKey), (StoredKey{{"RegEx1", Text("^one$")},
                                             {"RegEx2", Text("two")},
                                             {"RegEx3", Text("three")},
                                             {"RegEx4", Text("four")},
                                             {"RegEx5", Text("five")}}));

  dialog = Open();
  ASSERT_TRUE(GoTo(dialog, 3));
  list = dialog.Find(L"ListBox");
  field = dialog.Find(L"Edit");
  EXPECT_EQ(RowsOf(list), rows);
  EXPECT_TRUE(SelectionOf(list).empty());
  // A click copies the row into the field; a click with Ctrl adds a row to the selection.
  Click(RowOf(list, 1));
  ASSERT_TRUE(WaitUntil([&] { return TextOf(field) == L"two"; }));
  ASSERT_TRUE(dialog.FocusGoesTo(field));
  const std::vector<int> both = {1, 3};
  Click(RowOf(list, 3), {VK_CONTROL});
  EXPECT_TRUE(WaitUntil([&] { return SelectionOf(list) == both; }));
  ASSERT_TRUE(dialog.Press(L"&Remove"));
  rows = {L"^one$", L"three", L"five"};
  EXPECT_TRUE(WaitUntil([&] { return RowsOf(list) == rows; }));
  EXPECT_TRUE(SelectionOf(list).empty());
  // Edited in place.
  Click(RowOf(list, 2));
  ASSERT_TRUE(WaitUntil([&] { return TextOf(field) == L"five"; }));
  Keys(L"%a%");
  rows[2] = L"%a%";
  EXPECT_TRUE(WaitUntil([&] { return RowsOf(list) == rows; }));
  EXPECT_TRUE(Leave(dialog, L"OK"));
  EXPECT_EQ(ReadStored(kListKey),
            (StoredKey{{"RegEx1", Text("^one$")},
                       {"RegEx2", Text("three")},
                       {"RegEx3", {REG_EXPAND_SZ, std::string("%a%\0", 4)}}}));

  dialog = Open();
  ASSERT_TRUE(GoTo(dialog, 3));
  list = dialog.Find(L"ListBox");
  ASSERT_TRUE(dialog.Press(L"&Clear"));
  EXPECT_TRUE(WaitUntil([&] { return RowsOf(list).empty(); }));
  EXPECT_TRUE(Leave(dialog, L"Cancel"));
  EXPECT_EQ(ReadStored(kListKey)->size(), 3u) << "Cancel stores nothing";
  dialog = Open();
  ASSERT_TRUE(GoTo(dialog, 3));
  list = dialog.Find(L"ListBox");
  EXPECT_EQ(RowsOf(list).size(), 3u);
  ASSERT_TRUE(dialog.Press(L"&Clear"));
  EXPECT_TRUE(WaitUntil([&] { return RowsOf(list).empty(); }));
  EXPECT_TRUE(Leave(dialog, L"OK"));
  EXPECT_EQ(ReadStored(kListKey), std::nullopt);
  EXPECT_TRUE(Close(*marl));
}

TEST_F(OptionsWindow, EmptyRowIsStoredAndStopsTheListTheNextTime) {
  for (const char* name : {"RegEx1", "RegEx2", "RegEx3"}) PutStored(kListKey, name, Text("x"));
  Dialog dialog = Open();
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(GoTo(dialog, 3));
  HWND list = dialog.Find(L"ListBox");
  const HWND field = dialog.Find(L"Edit");
  Click(RowOf(list, 1));
  ASSERT_TRUE(WaitUntil([&] { return TextOf(field) == L"x" && dialog.Focus() == field; }));
  Chord({}, VK_DELETE);
  ASSERT_TRUE(WaitUntil([&] { return RowsOf(list)[1].empty(); }));
  EXPECT_TRUE(Leave(dialog, L"OK"));
  EXPECT_EQ(ReadStored(kListKey),
            (StoredKey{{"RegEx1", Text("x")}, {"RegEx2", Text("")}, {"RegEx3", Text("x")}}));
  dialog = Open();
  ASSERT_TRUE(GoTo(dialog, 3));
  EXPECT_EQ(RowsOf(dialog.Find(L"ListBox")), std::vector<std::wstring>{L"x"});
  EXPECT_TRUE(Leave(dialog, L"Cancel"));
  EXPECT_TRUE(Close(*marl));
}

TEST_F(OptionsWindow, ThousandsOfExpressionsAreShownEditedAndKept) {
  constexpr int kMany = 2000;
  for (int n = 1; n <= kMany; ++n) {
    PutStored(kListKey, "RegEx" + std::to_string(n), Text("row " + std::to_string(n)));
  }
  Run();
  ASSERT_TRUE(main);
  const Dialog dialog = Open();
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(GoTo(dialog, 3));
  const HWND list = dialog.Find(L"ListBox");
  const HWND field = dialog.Find(L"Edit");
  ASSERT_EQ(SendMessageW(list, LB_GETCOUNT, 0, 0), kMany);
  Click(RowOf(list, 2));
  ASSERT_TRUE(WaitUntil([&] { return TextOf(field) == L"row 3"; }));
  Keys(L"edited");
  ASSERT_TRUE(WaitUntil([&] { return TextOf(field) == L"edited"; }));
  EXPECT_TRUE(Leave(dialog, L"OK"));
  EXPECT_EQ(ReadStored(kListKey)->size(), static_cast<std::size_t>(kMany));
  EXPECT_EQ(Value(kListKey, "RegEx3"), Text("edited"));
  EXPECT_TRUE(Close(*marl));
}

// The segmentation rules, without the suite's component.

TEST_F(OptionsWindow, SegmentationRulesAreEditedAndKeptWhenTheOptionsAreCancelled) {
  PutStored(kRulesKey, "DontSplit1", Text("Mr."));
  const Dialog options = Open();
  ASSERT_TRUE(options);
  ASSERT_TRUE(GoTo(options, 1));
  ASSERT_TRUE(options.Press(L"Segmentation &rules..."));
  const Dialog dialog(*marl, L"Segmentation rules");
  ASSERT_TRUE(dialog && dialog.InFront());
  EXPECT_FALSE(IsWindowEnabled(options.window()));
  const std::vector<HWND> lists = dialog.FindAll(L"ListBox");
  ASSERT_EQ(lists.size(), 2u);
  EXPECT_EQ(RowsOf(lists[0]), std::vector<std::wstring>{L"Mr."});
  const struct {
    WORD key;
    const wchar_t* text;
    std::size_t list;
  } rows[] = {{'A', L"e.g.", 0}, {'D', L";", 1}, {'D', L"+", 1}};
  for (const auto& row : rows) {
    const HWND field = dialog.FindAll(L"Edit").at(row.list);
    Chord({VK_MENU}, row.key);
    ASSERT_TRUE(dialog.FocusGoesTo(field));
    ASSERT_TRUE(WaitUntil([&] { return TextOf(field) == L"[New string]"; }));
    Keys(row.text);
    ASSERT_TRUE(WaitUntil([&] { return RowsOf(lists[row.list]).back() == row.text; }));
  }
  // A row that keeps its initial text.
  Chord({VK_MENU}, 'A');
  ASSERT_TRUE(WaitUntil([&] { return RowsOf(lists[0]).size() == 3; }));
  dialog.Picture("frmSegmentation");
  EXPECT_TRUE(dialog.Leave(L"OK"));
  EXPECT_TRUE(Leave(options, L"Cancel"));
  EXPECT_EQ(ReadStored(kRulesKey), (StoredKey{{"DontSplit1", Text("Mr.")},
                                              {"DontSplit2", Text("e.g.")},
                                              {"ForceSplit1", Text(";")},
                                              {"ForceSplit2", Text("+")}}));
  EXPECT_TRUE(Close(*marl));
}

// The display settings.

TEST_F(OptionsWindow, F4OpensTheDisplaySettingsOnEveryTab) {
  const Dialog dialog = Open();
  ASSERT_TRUE(dialog);
  for (int tab = 0; tab < 4; ++tab) {
    ASSERT_TRUE(GoTo(dialog, tab));
    Chord({}, VK_F4);
    const Dialog display(*marl, L"Display settings");
    ASSERT_TRUE(display && display.InFront()) << tab;
    EXPECT_FALSE(IsWindowEnabled(dialog.window()));
    Chord({}, VK_ESCAPE);
    ASSERT_TRUE(display.Gone());
    ASSERT_TRUE(dialog.InFront());
  }
  EXPECT_FALSE(ReadStored(L"Software\\Oru\\Marl\\GUI").has_value());
  ASSERT_TRUE(GoTo(dialog, 0));
  ASSERT_TRUE(dialog.Press(kTabButtons[0]));
  {
    const Dialog display(*marl, L"Display settings");
    ASSERT_TRUE(display && display.InFront());
    ASSERT_TRUE(display.Leave(L"OK"));
  }
  ASSERT_TRUE(dialog.InFront());
  EXPECT_TRUE(Leave(dialog, L"Cancel"));
  EXPECT_TRUE(ReadStored(L"Software\\Oru\\Marl\\GUI").has_value()) << "stored all the same";
  EXPECT_TRUE(Close(*marl));
}

// Keys alone.

TEST_F(OptionsWindow, TabKeyReachesEverythingOnEachTab) {
  const Dialog dialog = Open();
  ASSERT_TRUE(dialog);
  constexpr std::array<std::size_t, 4> kStops = {4, 7, 1, 5};  // controls on each tab
  for (int tab = 0; tab < 4; ++tab) {
    ASSERT_TRUE(GoTo(dialog, tab));
    std::set<HWND> reached;
    HWND last = dialog.Focus();
    const HWND first = last;
    for (int step = 0; step < 20; ++step) {
      Chord({}, VK_TAB);
      if (!WaitUntil([&] { return dialog.Focus() != last; })) break;
      last = dialog.Focus();
      EXPECT_TRUE(IsWindowVisible(last));
      reached.insert(last);
      if (last == first) break;
    }
    // Plus the tabs, OK and Cancel.
    EXPECT_EQ(reached.size(), kStops[static_cast<std::size_t>(tab)] + 3) << tab;
  }
  Chord({}, VK_ESCAPE);
  EXPECT_TRUE(dialog.Gone());
  EXPECT_TRUE(Close(*marl));
}

TEST_F(OptionsWindow, FocusComesBackWhereItWas) {
  const Dialog dialog = Open();
  ASSERT_TRUE(dialog);
  const wchar_t* const caption = kBoxes[4].caption;
  const HWND box = dialog.Button(caption);
  const bool checked = dialog.Checked(caption);
  ASSERT_TRUE(dialog.Check(caption, !checked));
  ASSERT_TRUE(dialog.FocusGoesTo(box));
  // Back from another program's window.
  const HWND other = CreateWindowExW(0, L"STATIC", L"Other", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0,
                                     200, 100, nullptr, nullptr, nullptr, nullptr);
  ASSERT_TRUE(BringForward(other));
  DestroyWindow(other);
  ASSERT_TRUE(BringForward(dialog.window()));
  EXPECT_TRUE(dialog.FocusGoesTo(box));
  Chord({}, VK_SPACE);
  EXPECT_TRUE(WaitUntil([&] { return dialog.Checked(caption) == checked; }));
  // Back from its own dialog.
  ASSERT_TRUE(dialog.Press(kTabButtons[0]));
  const Dialog display(*marl, L"Display settings");
  ASSERT_TRUE(display && display.InFront());
  Chord({}, VK_ESCAPE);
  ASSERT_TRUE(display.Gone());
  EXPECT_TRUE(dialog.FocusGoesTo(dialog.Button(kTabButtons[0])));
  EXPECT_TRUE(dialog.Leave(L"Cancel"));
}

// The English texts give Alt+H to a box of the general page and to the last tab.
TEST_F(OptionsWindow, TheSharedAccessKeyGoesToTheBoxAndThenToTheTab) {
  const Dialog dialog = Open();
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(GoTo(dialog, 1));
  const wchar_t* const caption = kBoxes[5].caption;
  const HWND box = dialog.Button(caption);
  ASSERT_TRUE(box);
  ASSERT_TRUE(dialog.ClickOn(dialog.Button(kBoxes[2].caption)));
  ASSERT_TRUE(dialog.FocusGoesTo(dialog.Button(kBoxes[2].caption)));
  Chord({VK_MENU}, 'H');
  EXPECT_TRUE(WaitUntil([&] { return dialog.Checked(caption); }));
  EXPECT_TRUE(dialog.FocusGoesTo(box));
  Chord({VK_MENU}, 'H');
  EXPECT_TRUE(WaitUntil([&] { return dialog.Button(kTabButtons[3]) != nullptr; }));
  ASSERT_TRUE(GoTo(dialog, 1));
  EXPECT_TRUE(dialog.Checked(caption)) << "once";
  EXPECT_TRUE(Leave(dialog, L"Cancel"));
  EXPECT_TRUE(Close(*marl));
}

TEST_F(OptionsWindow, AddKeepsTheOtherRowsSelectedAndRemoveTakesThemAll) {
  PutStored(kListKey, "RegEx1", Text("one"));
  PutStored(kListKey, "RegEx2", Text("two"));
  const Dialog dialog = Open();
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(GoTo(dialog, 3));
  const HWND list = dialog.Find(L"ListBox");
  const HWND field = dialog.Find(L"Edit");
  ASSERT_TRUE(list && field);
  Click(RowOf(list, 1));
  ASSERT_TRUE(WaitUntil([&] { return TextOf(field) == L"two"; }));
  ASSERT_TRUE(dialog.FocusGoesTo(field));
  ASSERT_TRUE(dialog.Press(L"&Add"));
  ASSERT_TRUE(WaitUntil([&] { return TextOf(field) == L"[New Expression]"; }));
  EXPECT_EQ(SelectionOf(list), (std::vector<int>{1, 2}));
  dialog.Picture("frmOptions-added");
  ASSERT_TRUE(dialog.Press(L"&Remove"));
  EXPECT_TRUE(WaitUntil([&] { return RowsOf(list) == std::vector<std::wstring>{L"one"}; }));
  EXPECT_TRUE(Leave(dialog, L"Cancel"));
  EXPECT_TRUE(Close(*marl));
}

TEST_F(OptionsWindow, AccessKeysToggleBoxesAndEnterIsOk) {
  const Dialog dialog = Open();
  ASSERT_TRUE(dialog);
  Chord({VK_MENU}, 'W');
  EXPECT_TRUE(WaitUntil([&] { return !dialog.Checked(kBoxes[4].caption); }));
  ASSERT_TRUE(GoTo(dialog, 1));
  Chord({VK_MENU}, 'X');
  EXPECT_TRUE(WaitUntil([&] { return dialog.Checked(kBoxes[6].caption); }));
  Chord({}, VK_RETURN);
  EXPECT_TRUE(dialog.Gone() && Settled());
  EXPECT_EQ(settings.Get(L"Wizard"), L"N");
  EXPECT_EQ(Value(kMarlKey, "XPlacement"), Number(0));
  EXPECT_TRUE(Close(*marl));
}

}  // namespace marl::desktop
