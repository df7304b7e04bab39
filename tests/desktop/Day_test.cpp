#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/desktop/Dialog.h"
#include "tests/desktop/Switchboard.h"

// A day with the program, from its first start to the second, in both languages: every step by
// mouse and keys, with a screenshot of each.

namespace marl::desktop {

namespace {

constexpr UINT kFileName = 0x480;  // the field of the platform's file dialogs

/// The program's texts that the day needs, and its name for screenshots.
struct Language {
  const char* name;
  const std::wstring Programs::*program;
  const wchar_t* demonstration;
  const wchar_t* wizard;
  const wchar_t* displaySettings;
  const wchar_t* saveSkin;
  const wchar_t* changeServer;
  const wchar_t* selection;
  const wchar_t* cleanQuestion;
  const wchar_t* options;
  const wchar_t* allApplications;
};

const Language kEnglish = {
    "en",
    &Programs::marl,
    kDemonstrationQuestion,
    kWizardQuestion,
    L"Display settings",
    L"&Save...",
    L"Change server",
    L"Select language and file name",
    L"This will remove all Marl files from the folder.  Are you sure you want to continue?",
    L"Options",
    L"Show all applications in &tools menu"};
const Language kGerman = {
    "de",
    &Programs::german,
    L"M\u00f6chten Sie eine Vorf\u00fchrung starten, die Ihnen zeigt, wie Sie in Marl "
    L"\u00fcbersetzen?",
    L"M\u00f6chten Sie beim Start von Marl den \u00dcbersetzungsassistenten starten?",
    L"Anzeigeeinstellungen",
    L"S&peichern...",
    L"Server wechseln",
    L"Sprache und Dateinamen ausw\u00e4hlen",
    L"Dadurch werden alle Marl-Dateien aus dem Ordner entfernt. M\u00f6chten Sie den Vorgang "
    L"wirklich fortsetzen?",
    L"Optionen",
    L"Alle Anwendungen im Men\u00fc \u201eE&xtras\u201c anzeigen"};

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

class Day : public SwitchboardTest, public testing::WithParamInterface<const Language*> {
 protected:
  Day() { settings.Set(L"FirstRun", L"Y"); }

  void SetUp() override {
    const std::wstring& program = g_programs.*GetParam()->program;
    ASSERT_TRUE(CopyFileW(program.c_str(), suite.marl().c_str(), FALSE));
    const std::wstring library = program.substr(0, program.rfind(L'\\') + 1) + L"q17icl.oru";
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
  void Picture(const char* station) const {
    Screenshot(std::string("day-") + GetParam()->name + '-' + station);
  }
  testing::AssertionResult Answer(const RunningMarl& marl, const wchar_t* question,
                                  int button) const {
    const MessageBoxWindow box = marl.WaitForBox();
    if (!box) return testing::AssertionFailure() << "no message box came";
    if (box.Text() != question) return testing::AssertionFailure() << ToUtf8(box.Text());
    Picture(button == IDNO ? "question" : "clean");
    if (!box.Press(button)) return testing::AssertionFailure() << "the button does not answer";
    return testing::AssertionSuccess();
  }

  const SuiteFolder suite;
  const std::wstring folder = suite.temp() + L"\\Jobs";
};

}  // namespace

TEST_P(Day, FromTheFirstStartToTheSecond) {
  const Language& texts = *GetParam();
  const std::wstring skin = At(L"mine.qsk");
  RECT place = {};
  {
    const RunningMarl marl(suite);
    ASSERT_TRUE(Answer(marl, texts.demonstration, IDNO));
    ASSERT_TRUE(Answer(marl, texts.wizard, IDNO));
    const HWND main = marl.WaitForWindow();
    ASSERT_TRUE(main);
    std::size_t tools = 1;  // Q17Shell.exe, for the context menu
    ASSERT_EQ(suite.WaitForTools(tools).size(), tools);
    Picture("switchboard");

    ASSERT_TRUE(BringForward(main));
    Keys(L"setgui");
    {
      const Dialog dialog(marl, texts.displaySettings);
      ASSERT_TRUE(dialog);
      const HWND bar = dialog.Find(L"ScrollBar");
      ASSERT_TRUE(bar);
      // Three large steps, by clicks beside the thumb.
      const RECT area = AreaOf(bar);
      for (const int angle : {120, 150, 180}) {
        Click(area.left + (area.right - area.left) * 8 / 10, (area.top + area.bottom) / 2);
        ASSERT_TRUE(WaitUntil([&] { return GetScrollPos(bar, SB_CTL) == angle; })) << angle;
      }
      Picture("look");
      ASSERT_TRUE(dialog.Press(texts.saveSkin));
      ASSERT_TRUE(ChooseFile(marl, skin));
      ASSERT_TRUE(WaitUntil([&] { return std::filesystem::exists(skin); }));
      ASSERT_TRUE(WaitUntil([&] { return dialog.InFront(); }));
      ASSERT_TRUE(dialog.Leave(L"OK"));
    }
    const auto look = ReadStored(L"Software\\Oru\\Marl\\GUI");
    ASSERT_TRUE(look);
    Picture("new-look");

    Click(IconOf(main, kChangeServer));
    {
      const Dialog dialog(marl, texts.changeServer);
      ASSERT_TRUE(dialog);
      ASSERT_TRUE(WaitUntil([&] { return dialog.InFront(); }));
      Keys(L"tracking.example.com");
      Picture("server");
      ASSERT_TRUE(dialog.Leave(L"OK"));
    }
    EXPECT_TRUE(
        WaitUntil([&] { return TextOf(main).find(L"tracking.example.com") != TextOf(main).npos; }));

    DdeClient client(DdeClient::Kind::kWide);
    ASSERT_TRUE(client.Connect(L"Marl", L"Marl"));
    ASSERT_TRUE(client.Execute(L"PRJ " + At(L"job.qprx")));
    ASSERT_TRUE(BringForward(main));
    Chord({VK_CONTROL}, 'P');
    {
      const Dialog dialog(marl, texts.selection);
      ASSERT_TRUE(dialog);
      Picture("document");
      ASSERT_TRUE(dialog.Leave(L"OK"));
    }
    const auto starts = suite.WaitForTools(++tools);
    ASSERT_EQ(starts.size(), tools);
    EXPECT_EQ(starts.back(),
              Start(suite, L"Q17Bench.exe", L"\"" + At(L"French\\report.qtd") + L"\""));

    ASSERT_TRUE(BringForward(main));
    Chord({VK_CONTROL}, 'W');
    ASSERT_TRUE(Answer(marl, texts.cleanQuestion, IDYES));
    EXPECT_TRUE(WaitUntil([&] { return !There(L"French\\report.qtd"); }));
    EXPECT_TRUE(There(L"job.qprx"));

    ASSERT_TRUE(BringForward(main));
    Chord({VK_SHIFT}, VK_F6);
    {
      const Dialog dialog(marl, texts.options);
      ASSERT_TRUE(dialog);
      EXPECT_FALSE(dialog.Checked(texts.allApplications));
      ASSERT_TRUE(dialog.Check(texts.allApplications, true));
      Picture("options");
      ASSERT_TRUE(dialog.Leave(L"OK"));
    }
    // The first program in the Tools menu, which is now shown.
    ASSERT_TRUE(BringForward(main));
    Chord({VK_SHIFT}, VK_F1);
    ASSERT_EQ(suite.WaitForTools(++tools).size(), tools);

    // Minimised, and restored by the message that a double click on the tray icon sends.
    PostMessageW(main, WM_SYSCOMMAND, SC_MINIMIZE, 0);
    ASSERT_TRUE(WaitUntil([&] { return !IsWindowVisible(main); }));
    Picture("tray");
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
  Picture("second-start");
  EXPECT_TRUE(Close(marl));
}

INSTANTIATE_TEST_SUITE_P(Languages, Day, testing::Values(&kEnglish, &kGerman),
                         [](const auto& tested) { return std::string(tested.param->name); });

}  // namespace marl::desktop
