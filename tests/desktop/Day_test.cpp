#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/desktop/Dialog.h"
#include "tests/desktop/Switchboard.h"
#include "tests/desktop/Words.h"
#include "tests/forms/WindowTexts.h"

// A day with the program, from its first start to the second, in every language: every step by
// mouse and keys, with a screenshot of each. In the marked language every text in its windows is
// marked.

namespace marl::desktop {

namespace {

constexpr UINT kFileName = 0x480;  // the field of the platform's file dialogs

constexpr char kProject[] =
    "<project><language lc=\"fr\" description=\"French\">"
    "<document path=\"French\\report.doc\"/></language></project>";

/// Types the path into the program's file dialog and presses OK.
bool ChooseFile(const RunningMarl& marl, const std::wstring& path) {
  HWND dialog = nullptr;
  HWND field = nullptr;
  const auto isUp = [&] {
    dialog = nullptr;
    while ((dialog = FindWindowExW(nullptr, dialog, L"#32770", nullptr)) != nullptr) {
      DWORD process = 0;
      GetWindowThreadProcessId(dialog, &process);
      if (process != marl.id() || !IsWindowVisible(dialog)) continue;
      for (const int id : {0x47C, static_cast<int>(kFileName)}) {
        field = GetDlgItem(dialog, id);
        if (field && IsWindowVisible(field)) return true;
      }
    }
    return false;
  };
  if (!WaitUntil(isUp) || !BringForward(dialog)) return false;
  SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
  PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  return WaitUntil([&] { return !IsWindow(dialog) || !IsWindowVisible(dialog); });
}

class Day : public SwitchboardTest, public testing::WithParamInterface<std::string> {
 protected:
  Day() { settings.Set(L"FirstRun", L"Y"); }

  void SetUp() override {
    const std::wstring& program = g_programs.In(GetParam());
    ASSERT_TRUE(CopyFileW(program.c_str(), suite.marl().c_str(), FALSE));
    const std::wstring& first = g_programs.marl;
    const std::wstring library = first.substr(0, first.rfind(L'\\') + 1) + L"q17icl.oru";
    CopyFileW(library.c_str(), (suite.path() + L"\\q17icl.oru").c_str(), FALSE);
    Put(L"job.qprx", kProject);
    Put(L"French\\report.qtd");
    Put(L"French\\old.qtt");
  }

  std::wstring At(const std::wstring& name) const { return folder + L"\\" + name; }
  void Put(const std::wstring& name, const std::string& content = "text") const {
    const std::filesystem::path path = At(name);
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
  }
  bool There(const std::wstring& name) const { return std::filesystem::exists(At(name)); }
  void Picture(const RunningMarl& marl, const std::string& station) const {
    Screenshot("day-" + GetParam() + '-' + station);
    if (GetParam() != MemoryStrings::kMarked) return;
    for (HWND form = nullptr; (form = FindWindowExW(nullptr, form, L"MarlForm", nullptr));) {
      DWORD process = 0;
      GetWindowThreadProcessId(form, &process);
      if (process != marl.id() || !IsWindowVisible(form)) continue;
      std::vector<std::string> unmarked = UnmarkedWindows(form);
      std::erase(unmarked, "MarlForm: Marl : tracking.example.com");  // the server's name is data
      EXPECT_EQ(unmarked, std::vector<std::string>{}) << station;
    }
  }
  testing::AssertionResult Answer(const RunningMarl& marl, int question, int button) const {
    const MessageBoxWindow box = marl.WaitForBox();
    if (!box) return testing::AssertionFailure() << "no message box came";
    if (box.Text() != words(question)) return testing::AssertionFailure() << ToUtf8(box.Text());
    Picture(marl, button == IDNO ? "question" : "clean");
    if (!box.Press(button)) return testing::AssertionFailure() << "the button does not answer";
    return testing::AssertionSuccess();
  }

  const Words words{GetParam()};
  const SuiteFolder suite;
  const std::wstring folder = suite.temp() + L"\\Jobs";
};

}  // namespace

TEST_P(Day, FromTheFirstStartToTheSecond) {
  const std::wstring skin = At(L"mine.qsk");
  RECT place = {};
  {
    const RunningMarl marl(suite);
    ASSERT_TRUE(Answer(marl, IDS_ASK_DEMONSTRATION, IDNO));
    ASSERT_TRUE(Answer(marl, IDS_ASK_WIZARD, IDNO));
    const HWND main = marl.WaitForWindow();
    ASSERT_TRUE(main);
    std::size_t tools = 1;  // Q17Shell.exe, for the context menu
    ASSERT_EQ(suite.WaitForTools(tools).size(), tools);
    Picture(marl, "switchboard");

    ASSERT_TRUE(BringForward(main));
    Keys(L"setgui");
    {
      const Dialog dialog(marl, words(IDS_UI_TITLE).c_str());
      ASSERT_TRUE(dialog);
      const HWND bar = dialog.Find(L"ScrollBar");
      ASSERT_TRUE(bar);
      // Three large steps, by clicks beside the thumb.
      const RECT area = AreaOf(bar);
      for (const int angle : {120, 150, 180}) {
        Click(area.left + (area.right - area.left) * 8 / 10, (area.top + area.bottom) / 2);
        ASSERT_TRUE(WaitUntil([&] { return GetScrollPos(bar, SB_CTL) == angle; })) << angle;
      }
      Picture(marl, "look");
      ASSERT_TRUE(dialog.Press(words(IDS_UI_SAVE).c_str()));
      ASSERT_TRUE(ChooseFile(marl, skin));
      ASSERT_TRUE(WaitUntil([&] { return std::filesystem::exists(skin); }));
      ASSERT_TRUE(WaitUntil([&] { return dialog.InFront(); }));
      ASSERT_TRUE(dialog.Leave(words(IDS_UI_OK).c_str()));
    }
    const auto look = ReadStored(L"Software\\Oru\\Marl\\GUI");
    ASSERT_TRUE(look);
    Picture(marl, "new-look");

    Click(IconOf(main, kChangeServer));
    {
      const Dialog dialog(marl, words(IDS_SERVER_TITLE).c_str());
      ASSERT_TRUE(dialog);
      ASSERT_TRUE(WaitUntil([&] { return dialog.InFront(); }));
      Keys(L"tracking.example.com");
      Picture(marl, "server");
      ASSERT_TRUE(dialog.Leave(words(IDS_OK).c_str()));
    }
    EXPECT_TRUE(
        WaitUntil([&] { return TextOf(main).find(L"tracking.example.com") != TextOf(main).npos; }));

    DdeClient client(DdeClient::Kind::kWide);
    ASSERT_TRUE(client.Connect(L"Marl", L"Marl"));
    ASSERT_TRUE(client.Execute(L"PRJ " + At(L"job.qprx")));
    ASSERT_TRUE(BringForward(main));
    Chord({VK_CONTROL}, 'P');
    {
      const Dialog dialog(marl, words(IDS_SELECT_TITLE).c_str());
      ASSERT_TRUE(dialog);
      Picture(marl, "document");
      ASSERT_TRUE(dialog.Leave(words(IDS_OK).c_str()));
    }
    const auto starts = suite.WaitForTools(++tools);
    ASSERT_EQ(starts.size(), tools);
    EXPECT_EQ(starts.back(),
              Start(suite, L"Q17Bench.exe", L"\"" + At(L"French\\report.qtd") + L"\""));

    ASSERT_TRUE(BringForward(main));
    Chord({VK_CONTROL}, 'W');
    ASSERT_TRUE(Answer(marl, IDS_ASK_CLEAN, IDYES));
    EXPECT_TRUE(WaitUntil([&] { return !There(L"French\\report.qtd"); }));
    EXPECT_TRUE(There(L"job.qprx"));

    ASSERT_TRUE(BringForward(main));
    Chord({VK_SHIFT}, VK_F6);
    {
      const Dialog dialog(marl, words(IDS_OPTIONS_TITLE).c_str());
      ASSERT_TRUE(dialog);
      EXPECT_FALSE(dialog.Checked(words(IDS_OPTIONS_TOOLS_MENU).c_str()));
      ASSERT_TRUE(dialog.Check(words(IDS_OPTIONS_TOOLS_MENU).c_str(), true));
      Picture(marl, "options");
      ASSERT_TRUE(dialog.Leave(words(IDS_DIALOG_OK).c_str()));
    }
    // The first program in the Tools menu, which is now shown.
    ASSERT_TRUE(BringForward(main));
    Chord({VK_SHIFT}, VK_F1);
    ASSERT_EQ(suite.WaitForTools(++tools).size(), tools);

    // Minimised, and restored by the message that a double click on the tray icon sends.
    PostMessageW(main, WM_SYSCOMMAND, SC_MINIMIZE, 0);
    ASSERT_TRUE(WaitUntil([&] { return !IsWindowVisible(main); }));
    Picture(marl, "tray");
    PostMessageW(main, RegisterWindowMessageW(L"msgMarlMenu"), 0, WM_LBUTTONDBLCLK);
    ASSERT_TRUE(WaitUntil([&] { return IsWindowVisible(main) && !IsIconic(main); }));
    ASSERT_TRUE(BringForward(main));
    place = AreaOf(main);
    Click(IconOf(main, kExit));
    EXPECT_EQ(marl.WaitForExit(), 0u);
  }

  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main) << "no question, no wizard";
  EXPECT_NE(TextOf(main).find(L"tracking.example.com"), std::wstring::npos);
  const RECT again = AreaOf(main);
  EXPECT_EQ(again.left, place.left);
  EXPECT_EQ(again.top, place.top);
  EXPECT_EQ(again.right - again.left, place.right - place.left);
  EXPECT_EQ(settings.Get(L"Tools"), L"True");
  const auto look = ReadStored(L"Software\\Oru\\Marl\\GUI");
  ASSERT_TRUE(look && look->contains("Angle"));
  EXPECT_EQ(look->at("Angle"), Number(180));
  std::ifstream file{std::filesystem::path(skin), std::ios::binary};
  const std::string saved{std::istreambuf_iterator<char>(file), {}};
  EXPECT_NE(saved.find("<parameter name=\"angle\" value=\"180\"/>"), std::string::npos) << saved;
  Picture(marl, "second-start");
  EXPECT_TRUE(Close(marl));
}

std::vector<std::string> AllLanguages() {
  std::vector<std::string> all = MemoryStrings::Languages();
  all.emplace_back(MemoryStrings::kMarked);
  return all;
}

INSTANTIATE_TEST_SUITE_P(Languages, Day, testing::ValuesIn(AllLanguages()), [](const auto& tested) {
  std::string name = tested.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
});

}  // namespace marl::desktop
