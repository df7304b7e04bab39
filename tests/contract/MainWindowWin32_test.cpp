// The main form's real window: its menu, tips and handles, as reported by the platform.

#include "tests/contract/MainWindowWin32.h"

#include <commctrl.h>

#include <algorithm>

namespace marl {

namespace {

class GermanMainWindow : public MainWindow {
 protected:
  GermanMainWindow() : MainWindow("de") {}
};

using Names = std::vector<std::wstring>;

std::wstring Wide(const Text& text) { return {text.begin(), text.end()}; }

}  // namespace

TEST_F(MainWindow, MenuReadsBackAsInTheTable) {
  Start();
  const HMENU bar = GetMenu(Window());
  ASSERT_EQ(Captions(bar), (Names{L"&Project", L"T&M", L"&Translate", L"&Align", L"Term&Vault",
                                  L"T&ools", L"&Help"}));
  EXPECT_EQ(
      Captions(GetSubMenu(bar, 0)),
      (Names{L"&Import files in to a new project...\tCtrl+N",
             L"&Open an existing project...\tCtrl+O", L"&Export files from a project...\tCtrl+S",
             L"&Remove temporary files...\tCtrl+W", L"", L"&Analyse leverage statistics...\tCtrl+A",
             L"", L"&Project TM...\tCtrl+M", L"", L"Change &server...\tCtrl+G",
             L"&Track projects\tCtrl+H", L"", L"E&xit"}));
  EXPECT_EQ(Captions(GetSubMenu(bar, 1)), (Names{L"&Import a Translation Memory...\tCtrl+I",
                                                 L"&Export a Translation Memory...\tCtrl+E"}));
  EXPECT_EQ(Captions(GetSubMenu(bar, 2)), (Names{L"Apply TMs in &batch mode...\tCtrl+B",
                                                 L"Translate a specific &project file...\tCtrl+P",
                                                 L"Translate a single &file...\tCtrl+F",
                                                 L"Translate &clipboard contents...\tCtrl+C",
                                                 L"&Global search and replace...\tCtrl+R"}));
  EXPECT_EQ(Captions(GetSubMenu(bar, 3)),
            (Names{L"&Create a new alignment from existing files...\tF6",
                   L"&Open an existing alignment...\tF7"}));
  EXPECT_EQ(Captions(GetSubMenu(bar, 4)), (Names{L"&Maintain a terminology database...\tCtrl+T",
                                                 L"Terminology &QA Check...\tCtrl+Q"}));
  EXPECT_EQ(Captions(GetSubMenu(bar, 5)),
            (Names{L"&QA Check...\tCtrl+K", L"&Comment Report...\tCtrl+J", L"",
                   L"&Options...\tShift+F6"}));
  EXPECT_EQ(Captions(GetSubMenu(bar, 6)),
            (Names{L"&Contents\tF1", L"&Translating in Marl...", L"&About...\tCtrl+F1"}));
  for (const int separator : {4, 6, 8, 11}) {
    EXPECT_TRUE(GetMenuState(GetSubMenu(bar, 0), static_cast<UINT>(separator), MF_BYPOSITION) &
                MF_SEPARATOR);
  }
}

TEST_F(MainWindow, MessagesOfOtherProgramsAreNotTrusted) {
  Start();
  std::vector<LPARAM> numbers = {0, 1, -1, 0x7FFFFFFF, reinterpret_cast<LPARAM>(Window())};
  for (HWND child = GetWindow(Window(), GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    numbers.push_back(reinterpret_cast<LPARAM>(child));
  }
  ASSERT_GT(numbers.size(), 5u) << "the status bar";
  const auto started = shell.started.size();
  for (UINT message = WM_USER; message < 0xC000; message += message < WM_APP + 64 ? 1 : 97) {
    for (const LPARAM number : numbers) {
      SendMessageW(Window(), message, static_cast<WPARAM>(number), number);
    }
  }
  EXPECT_TRUE(IsWindow(Window()));
  EXPECT_TRUE(main->loaded());
  EXPECT_EQ(shell.started.size(), started);
}

TEST_F(MainWindow, ShownToolsStandFirstInTheirMenu) {
  settings.Put(u"Marl", u"Settings", u"Tools", u"True");
  Start();
  const HMENU tools = GetSubMenu(GetMenu(Window()), 5);
  EXPECT_EQ(Captions(tools), (Names{L"&1 Font Mapper\tShift+F1", L"&2 Convert Files\tShift+F2",
                                    L"&3 DOC to RTF\tShift+F3", L"&4 HTML Utilities\tShift+F4",
                                    L"&5 MIF Utilities\tShift+F5", L"&QA Check...\tCtrl+K",
                                    L"&Comment Report...\tCtrl+J", L"", L"&Options...\tShift+F6"}));
  main->ToolsMenuVisible = false;
  main->ApplyToolsMenu();
  EXPECT_EQ(GetMenuItemCount(tools), 4);
}

TEST_F(GermanMainWindow, MenuReadsBackInGermanWithTheSameShortcuts) {
  settings.Put(u"Marl", u"Settings", u"Tools", u"True");
  Start();
  struct Item {
    int string;  // 0 for a separator
    const wchar_t* prefix;
    const wchar_t* shortcut;
  };
  const std::pair<int, std::vector<Item>> tops[] = {
      {1000,
       {{1001, L"", L"\tCtrl+N"},
        {1002, L"", L"\tCtrl+O"},
        {1003, L"", L"\tCtrl+S"},
        {1004, L"", L"\tCtrl+W"},
        {0, L"", L""},
        {1005, L"", L"\tCtrl+A"},
        {0, L"", L""},
        {1007, L"", L"\tCtrl+M"},
        {0, L"", L""},
        {1008, L"", L"\tCtrl+G"},
        {1009, L"", L"\tCtrl+H"},
        {0, L"", L""},
        {1006, L"", L""}}},
      {1100, {{1101, L"", L"\tCtrl+I"}, {1102, L"", L"\tCtrl+E"}}},
      {1200,
       {{1201, L"", L"\tCtrl+B"},
        {1202, L"", L"\tCtrl+P"},
        {1203, L"", L"\tCtrl+F"},
        {1204, L"", L"\tCtrl+C"},
        {1205, L"", L"\tCtrl+R"}}},
      {1300, {{1301, L"", L"\tF6"}, {1302, L"", L"\tF7"}}},
      {1400, {{1401, L"", L"\tCtrl+T"}, {1402, L"", L"\tCtrl+Q"}}},
      {1500,
       {{1501, L"&1 ", L"\tShift+F1"},
        {1502, L"&2 ", L"\tShift+F2"},
        {1503, L"&3 ", L"\tShift+F3"},
        {1504, L"&4 ", L"\tShift+F4"},
        {1505, L"&5 ", L"\tShift+F5"},
        {1508, L"", L"\tCtrl+K"},
        {1509, L"", L"\tCtrl+J"},
        {0, L"", L""},
        {1506, L"", L"\tShift+F6"}}},
      {1600, {{1601, L"", L"\tF1"}, {1603, L"", L""}, {1602, L"", L"\tCtrl+F1"}}},
  };
  const HMENU bar = GetMenu(Window());
  Names shown;
  int position = 0;
  for (const auto& [top, items] : tops) {
    shown.push_back(Wide(strings.Get(top)));
    Names names;
    for (const Item& item : items) {
      names.push_back(item.string ? item.prefix + Wide(strings.Get(item.string)) + item.shortcut
                                  : std::wstring());
    }
    EXPECT_EQ(Captions(GetSubMenu(bar, position++)), names) << top;
  }
  EXPECT_EQ(Captions(bar), shown);
  EXPECT_EQ(shown[0], L"&Projekt");
}

TEST_F(MainWindow, EntryIsChosenByItsCommand) {
  for (const TextView tool : {u"Q17Cadence.exe", u"Q17Pair.exe"}) {
    files.Put(u"C:\\Suite\\" + Text(tool), "MZ");
  }
  Start();
  shell.started.clear();
  const HMENU bar = GetMenu(Window());
  SendMessageW(Window(), WM_COMMAND, GetMenuItemID(GetSubMenu(bar, 0), 0), 0);
  SendMessageW(Window(), WM_COMMAND, GetMenuItemID(GetSubMenu(bar, 3), 1), 0);
  ASSERT_EQ(shell.started.size(), 2u);
  EXPECT_EQ(shell.started[0].file, u"C:\\Suite\\Q17Cadence.exe");
  EXPECT_EQ(shell.started[0].parameters, u"/I");
  EXPECT_EQ(shell.started[1].file, u"C:\\Suite\\Q17Pair.exe");
  EXPECT_EQ(shell.started[1].parameters, u"/o");
}

TEST_F(MainWindow, MenuBarTakesNothingFromTheInnerSize) {
  main = std::make_unique<frmMain>(platform);
  const Size design = main->Design;
  main.reset();
  Start();
  RECT inner;
  GetClientRect(Window(), &inner);
  EXPECT_EQ(inner.right, desktop.resolution().PixelsX(design.width));
  EXPECT_EQ(inner.bottom, desktop.resolution().PixelsY(design.height));
}

TEST_F(MainWindow, TipsReadBackFromTheirWindows) {
  Start();
  const std::vector<HWND> windows = Tips();
  ASSERT_EQ(windows.size(), 18u);
  std::vector<bool> seen(18);
  for (const HWND tip : windows) {
    EXPECT_EQ(GetWindowLongW(tip, GWL_STYLE) & (TTS_ALWAYSTIP | TTS_NOPREFIX | TTS_BALLOON),
              TTS_ALWAYSTIP | TTS_NOPREFIX | TTS_BALLOON);
    EXPECT_TRUE(GetWindowLongW(tip, GWL_EXSTYLE) & WS_EX_TOPMOST);
    ASSERT_EQ(SendMessageW(tip, TTM_GETTOOLCOUNT, 0, 0), 1);
    wchar_t text[200] = {};
    TTTOOLINFOW tool = {};
    tool.cbSize = sizeof tool;
    tool.lpszText = text;
    ASSERT_TRUE(SendMessageW(tip, TTM_ENUMTOOLSW, 0, reinterpret_cast<LPARAM>(&tool)));
    SendMessageW(tip, TTM_GETTEXTW, 200, reinterpret_cast<LPARAM>(&tool));
    EXPECT_EQ(tool.hwnd, Window());
    const auto button = std::find_if(main->TooltipTexts.begin(), main->TooltipTexts.end(),
                                     [&](const Text& wanted) { return Wide(wanted) == text; });
    ASSERT_NE(button, main->TooltipTexts.end());
    const auto index = static_cast<std::size_t>(button - main->TooltipTexts.begin());
    seen[index] = true;
    const Shape& shape = *main->shpRun[index];
    EXPECT_NEAR(tool.rect.left, desktop.resolution().PixelsX(shape.Left()), 1);
    EXPECT_NEAR(tool.rect.top, desktop.resolution().PixelsY(shape.Top()), 1);
    EXPECT_NEAR(tool.rect.right, desktop.resolution().PixelsX(shape.Left() + shape.Width()) - 1, 1);
    EXPECT_NEAR(tool.rect.bottom, desktop.resolution().PixelsY(shape.Top() + shape.Height()) - 1,
                1);

    wchar_t title[100] = {};
    TTGETTITLE asked = {};
    asked.dwSize = sizeof asked;
    asked.pszTitle = title;
    asked.cch = 100;
    SendMessageW(tip, TTM_GETTITLE, 0, reinterpret_cast<LPARAM>(&asked));
    if (title[0]) {  // not every version of the controls reports it
      EXPECT_EQ(title, Wide(strings.Get(IDS_BUTTON_ANALYSE + static_cast<int>(index))));
      EXPECT_EQ(asked.uTitleBitmap, static_cast<UINT>(TTI_INFO));
    }
    EXPECT_EQ(SendMessageW(tip, TTM_GETTIPTEXTCOLOR, 0, 0),
              static_cast<LRESULT>(GetSysColor(COLOR_BTNTEXT)));
    EXPECT_EQ(SendMessageW(tip, TTM_GETTIPBKCOLOR, 0, 0),
              static_cast<LRESULT>(GetSysColor(COLOR_INFOBK)));
    const auto unit = static_cast<LRESULT>(GetDoubleClickTime());
    EXPECT_EQ(SendMessageW(tip, TTM_GETDELAYTIME, TTDT_INITIAL, 0), unit);
    EXPECT_EQ(SendMessageW(tip, TTM_GETDELAYTIME, TTDT_AUTOPOP, 0), unit * 10);
  }
  EXPECT_EQ(std::count(seen.begin(), seen.end(), true), 18);
}

/// The pixels of a window's client area, row by row.
std::vector<std::uint32_t> PixelsOf(HWND window, const RECT& area) {
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = area.right;
  info.bmiHeader.biHeight = -area.bottom;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  void* bits = nullptr;
  const win32::ClientContext screen(window);
  const win32::UniqueContext memory(CreateCompatibleDC(screen.get()));
  const win32::UniqueBitmap bitmap(
      CreateDIBSection(screen.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  const HGDIOBJ old = SelectObject(memory.get(), bitmap.get());
  BitBlt(memory.get(), 0, 0, area.right, area.bottom, screen.get(), 0, 0, SRCCOPY);
  GdiFlush();
  const auto* const first = static_cast<const std::uint32_t*>(bits);
  std::vector<std::uint32_t> pixels(first, first + area.right * area.bottom);
  SelectObject(memory.get(), old);
  return pixels;
}

TEST_F(MainWindow, HighlightIsPaintedOnTheTwoButtonsConcernedAndNowhereElse) {
  Start();
  main->BringToFront();
  desktop.DoEvents();
  main->tmrOver.SetEnabled(false);  // it would look for the real mouse
  const HWND window = Window();
  // Buttons whose tools are missing show no highlight.
  std::vector<std::size_t> alive;
  for (std::size_t i = 0; i < main->lblRun.size(); ++i) {
    if (main->lblRun[i]->Enabled()) alive.push_back(i);
  }
  ASSERT_GE(alive.size(), 2u);
  const std::size_t from = alive.front();
  const std::size_t to = alive.back();
  Hover(from);
  ASSERT_EQ(main->HoverButton, static_cast<int>(from)) << "the window is in front";
  desktop.DoEvents();
  UpdateWindow(window);

  const auto frameOf = [&](std::size_t button) {
    const Box& frame = main->shpRun[button]->bounds();
    const Resolution resolution = desktop.resolution();
    // The lines of the bevel lie on the frame's edges, and a line covers one pixel more.
    return RECT{resolution.PixelsX(frame.left) - 1, resolution.PixelsY(frame.top) - 1,
                resolution.PixelsX(frame.left + frame.width) + 3,
                resolution.PixelsY(frame.top + frame.height) + 3};
  };
  const RECT frames[] = {frameOf(from), frameOf(to)};
  const auto concerned = [&](LONG x, LONG y) {
    return PtInRect(&frames[0], {x, y}) || PtInRect(&frames[1], {x, y});
  };
  // The line that describes the button is a window of its own, at the bottom.
  RECT area;
  GetClientRect(window, &area);
  area.bottom = frameOf(17).bottom;
  const std::vector<std::uint32_t> before = PixelsOf(window, area);

  Hover(to);
  ASSERT_EQ(main->HoverButton, static_cast<int>(to));
  const win32::UniqueRegion dirty(CreateRectRgn(0, 0, 0, 0));
  ASSERT_NE(GetUpdateRgn(window, dirty.get(), FALSE), NULLREGION);
  for (LONG y = 0; y < area.bottom; ++y) {
    for (LONG x = 0; x < area.right; ++x) {
      ASSERT_TRUE(concerned(x, y) || !PtInRegion(dirty.get(), x, y)) << x << ' ' << y;
    }
  }
  UpdateWindow(window);
  const std::vector<std::uint32_t> after = PixelsOf(window, area);
  int changed[2] = {};
  for (LONG y = 0; y < area.bottom; ++y) {
    for (LONG x = 0; x < area.right; ++x) {
      const auto place = static_cast<std::size_t>(y * area.right + x);
      if (before[place] == after[place]) continue;
      ASSERT_TRUE(concerned(x, y)) << x << ' ' << y;
      ++changed[PtInRect(&frames[0], {x, y}) ? 0 : 1];
    }
  }
  EXPECT_GT(changed[0], 100) << "its highlight is gone";
  EXPECT_GT(changed[1], 100);
}

TEST_F(MainWindow, TipIsMadeWhenTheMouseComesToItsButton) {
  Start();
  EXPECT_TRUE(TipsSoFar().empty());
  Hover(3);
  Hover(3);
  EXPECT_EQ(TipsSoFar().size(), 1u);
  Hover(4);
  EXPECT_EQ(TipsSoFar().size(), 2u);
  main->BindTooltips();
  EXPECT_TRUE(TipsSoFar().empty());
}

TEST_F(MainWindow, NoTipsWithTooltipsSwitchedOff) {
  settings.Put(u"Marl", u"Settings", u"Tooltips", u"False");
  Start();
  EXPECT_TRUE(Tips().empty());
}

TEST_F(MainWindow, HiddenButtonHasNoTip) {
  Start();
  main->imgRun[4]->SetVisible(false);
  main->BindTooltips();
  EXPECT_EQ(Tips().size(), 17u);
}

TEST_F(MainWindow, IconOfTheWindowNamesTheTrayIcon) {
  Start();
  const HICON icon = LoadIconW(nullptr, IDI_APPLICATION);
  SendMessageW(Window(), WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
  EXPECT_EQ(tray.IconOf(main->hWnd()), HandleToLong(icon));
}

TEST_F(MainWindow, BindingTipsAgainAndAgainLeaksNothing) {
  Start();
  const std::vector<int> before = LiveHandles();
  for (int i = 0; i < 10; ++i) {
    main->BindTooltips();
    EXPECT_EQ(Tips().size(), 18u);
    main->ToolsMenuVisible = i % 2 == 0;
    main->ApplyToolsMenu();
  }
  EXPECT_EQ(LiveHandles(), before);
  EXPECT_EQ(Tips().size(), 18u);
}

TEST_F(MainWindow, UnloadLeavesNoWindowMenuOrHook) {
  const std::vector<int> before = LiveHandles();
  Start();
  const HWND window = Window();
  main->Unload();
  EXPECT_FALSE(IsWindow(window));
  main.reset();
  desktop.DoEvents();
  const std::vector<int> after = LiveHandles();
  const auto menus = static_cast<std::size_t>(win32::HandleKind::kMenu);
  const auto bitmaps = static_cast<std::size_t>(win32::HandleKind::kBitmap);
  EXPECT_EQ(after[menus], before[menus]);
  EXPECT_EQ(after[bitmaps], before[bitmaps]);
}

}  // namespace marl
