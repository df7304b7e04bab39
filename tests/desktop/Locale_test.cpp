#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/desktop/Dialog.h"
#include "tests/desktop/Switchboard.h"

// A short day with the program in the locale that MARL_LOCALE names: folders, projects, skins and
// servers have names in its script. `./marl locales` starts this program once for each locale.

namespace marl::desktop {

namespace {

struct LocalNames {
  const char* locale;
  UINT codePage;
  /// Of folders, files and languages. The Asian ones have letters whose second byte is a backslash.
  const wchar_t* name;
  /// A server; each letter is in the code page.
  const wchar_t* server;
};

constexpr LocalNames kLocales[] = {
    {"ja_JP", 932, L"表示ソフト 能力", L"翻訳ソ表能"},
    {"zh_CN", 936, L"乗法 誠 翻译", L"翻译乗誠"},
    {"zh_TW", 950, L"許功蓋 翻譯", L"翻譯許功蓋"},
    {"ko_KR", 949, L"번역 똠방각하", L"번역똠"},
    {"ru_RU", 1251, L"Перевод Ёлка", L"переводЁ"},
    {"el_GR", 1253, L"Μετάφραση ΰς", L"μετάφρασης"},
    {"tr_TR", 1254, L"Işık İĞDIR iI", L"ışıkİI"},
    {"he_IL", 1255, L"תרגום (אבג) 1", L"תרגום"},
    {"ar_SA", 1256, L"ترجمة ١٢ (نص)", L"ترجمة"},
    {"th_TH", 874, L"การแปล ๑๒", L"การแปล"},
    {"vi_VN", 1258, L"Bản dịch Đường", L"Đương"},
    {"de_DE", 1252, L"Übersetzung größer €", L"übersetzungß"},
};

const std::wstring kForeign = L"\U0001D4B3\u16A0 \u0101";
const std::wstring kFitted = L"\U0001D4B3\u16A0 a";

const std::wstring kForeignServer = L"\u16A0\u0F40.example";

/// The locale that this process is started in; none in the usual runs.
std::vector<LocalNames> Chosen() {
  std::vector<LocalNames> chosen;
  const std::string name = ToUtf8(Environment(L"MARL_LOCALE"));
  std::copy_if(std::begin(kLocales), std::end(kLocales), std::back_inserter(chosen),
               [&](const LocalNames& each) { return name == each.locale; });
  return chosen;
}

/// A text in the code page of the system; nothing if that has no letter for a part of it.
std::optional<std::string> Narrow(const std::wstring& text) {
  std::string narrow(text.size() * 4, '\0');
  BOOL lost = FALSE;
  const int size =
      WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.data(), static_cast<int>(text.size()),
                          narrow.data(), static_cast<int>(narrow.size()), nullptr, &lost);
  if (lost) return {};
  narrow.resize(static_cast<std::size_t>(size));
  return narrow;
}

/// Enters a text as an input method does.
bool Enter(HWND field, const std::wstring& text) {
  SendMessageW(field, EM_SETSEL, 0, -1);
  for (const wchar_t c : text) PostMessageW(field, WM_CHAR, c, 1);
  return WaitUntil([&] { return TextOf(field) == text; });
}

class Locale : public SwitchboardTest, public testing::WithParamInterface<LocalNames> {
 protected:
  void SetUp() override {
    ASSERT_EQ(GetACP(), GetParam().codePage) << "the locale does not take effect";
    // Each locale has a desktop of its own, which takes its time on a busy machine.
    ASSERT_TRUE(WaitUntil(
        [] { return GetDesktopWindow() && FindWindowW(L"Shell_TrayWnd", nullptr) != nullptr; }));
  }

  std::wstring At(const std::wstring& path) const { return folder + L"\\" + path; }
  void Put(const std::wstring& path, const std::string& content = "text") const {
    const std::filesystem::path place = At(path);
    std::filesystem::create_directories(place.parent_path());
    std::ofstream(place, std::ios::binary) << content;
  }
  bool There(const std::wstring& path) const { return std::filesystem::exists(At(path)); }
  /// A project with one document, in a folder of its own.
  void PutProject(const std::wstring& project) const {
    Put(project + L"\\" + name + L".qprx", "<project><language lc=\"fr\" description=\"" +
                                               ToUtf8(name) + "\"><document path=\"" +
                                               ToUtf8(name) + ".doc\"/></language></project>");
    Put(project + L"\\" + Working());
    // Names that a comparison by letters of another locale takes for those of working files.
    for (const wchar_t* const other : {L"\\a.qtd\u0131", L"\\b.q\u0167d", L"\\c.\uff51td"}) {
      Put(project + other);
    }
  }
  std::wstring Working() const { return L"French\\" + name + L".qtd"; }
  /// Types the path into the program's file dialog, whatever its language, and presses OK.
  static bool ChooseFile(const RunningMarl& marl, const std::wstring& path) {
    HWND dialog = nullptr;
    HWND field = nullptr;
    const bool up = WaitUntil([&] {
      dialog = FindWindowOf(marl.id(), [&](HWND window) {
        if (ClassOf(window) != L"#32770" || !IsWindowVisible(window)) return false;
        for (const int id : {0x47C, 0x480}) {
          field = GetDlgItem(window, id);
          if (field && IsWindowVisible(field)) return true;
        }
        return false;
      });
      return dialog != nullptr;
    });
    if (!up || !BringForward(dialog)) return false;
    SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
    PostMessageW(dialog, WM_COMMAND, IDOK, 0);
    return WaitUntil([&] { return !IsWindow(dialog) || !IsWindowVisible(dialog); });
  }
  void Picture(const std::string& station) const {
    Screenshot("locale-" + std::string(GetParam().locale) + '-' + station);
  }

  const std::wstring name = GetParam().name;
  const std::wstring server = GetParam().server;
  const SuiteFolder suite{name};
  const std::wstring folder = suite.temp() + L"\\" + name;
};

}  // namespace

TEST_P(Locale, NamesInItsScriptStayWhole) {
  settings.Set(L"Tools", L"False");
  PutProject(L"1");
  PutProject(L"2");
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);

  // A project from another program, in its code page; by the file dialog if that lacks a letter.
  // Wine passes no wide command with letters beyond Latin.
  const std::wstring first = At(L"1\\" + name + L".qprx");
  if (Narrow(first)) {
    DdeClient client(DdeClient::Kind::kNarrow);
    ASSERT_TRUE(client.Connect(L"Marl", L"Marl"));
    ASSERT_TRUE(client.Execute(L"PRJ " + first));
  } else {
    ASSERT_TRUE(BringForward(main));
    Chord({VK_CONTROL}, 'O');
    ASSERT_TRUE(ChooseFile(marl, first));
  }
  ASSERT_TRUE(BringForward(main));
  Chord({VK_CONTROL}, 'P');
  {
    const Dialog dialog(marl, L"Select language and file name");
    ASSERT_TRUE(dialog);
    const std::vector<HWND> lists = dialog.FindAll(L"ComboBox");
    ASSERT_EQ(lists.size(), 2u);
    EXPECT_EQ(TextOf(lists[0]), L"French");
    EXPECT_EQ(TextOf(lists[1]), name + L".qtd");
    Picture("document");
    ASSERT_TRUE(dialog.Leave(L"OK"));
  }
  EXPECT_EQ(suite.WaitForTools(1),
            (std::vector<Started>{
                Start(suite, L"Q17Bench.exe", L"\"" + At(L"1\\" + Working()) + L"\"")}));

  // A folder with letters that no code page has, one of them a surrogate pair; beside it, what some
  // code pages make of its name.
  PutProject(kForeign);
  PutProject(kFitted);
  ASSERT_TRUE(BringForward(main));
  Chord({VK_CONTROL}, 'O');
  ASSERT_TRUE(ChooseFile(marl, At(kForeign + (L"\\" + name) + L".qprx")));
  ASSERT_TRUE(BringForward(main));
  Chord({VK_CONTROL}, 'P');
  {
    const Dialog dialog(marl, L"Select language and file name");
    ASSERT_TRUE(dialog);
    ASSERT_TRUE(dialog.Leave(L"OK"));
  }
  const std::vector<Started> started = suite.WaitForTools(2);
  ASSERT_EQ(started.size(), 2u);
  EXPECT_EQ(started[1],
            Start(suite, L"Q17Bench.exe", L"\"" + At(kForeign + (L"\\" + Working())) + L"\""));

  // Another one by the file dialog; its working files are removed, and no others.
  ASSERT_TRUE(BringForward(main));
  Chord({VK_CONTROL}, 'O');
  ASSERT_TRUE(ChooseFile(marl, At(L"2\\" + name + L".qprx")));
  ASSERT_TRUE(BringForward(main));
  Chord({VK_CONTROL}, 'W');
  const MessageBoxWindow question = marl.WaitForBox();
  ASSERT_TRUE(question);
  EXPECT_TRUE(question.Press(IDYES));
  EXPECT_TRUE(WaitUntil([&] { return !There(L"2\\" + Working()); }));
  for (const std::wstring& other : {std::wstring(L"1"), kForeign, kFitted}) {
    EXPECT_TRUE(There(other + L"\\" + Working())) << ToUtf8(other);
  }
  for (const wchar_t* const other : {L"a.qtd\u0131", L"b.q\u0167d", L"c.\uff51td"}) {
    EXPECT_TRUE(There(std::wstring(L"2\\") + other)) << ToUtf8(other);
  }

  ASSERT_TRUE(BringForward(main));
  Keys(L"setgui");
  {
    const Dialog dialog(marl, L"Display settings");
    ASSERT_TRUE(dialog);
    ASSERT_TRUE(dialog.Press(L"&Save..."));
    ASSERT_TRUE(ChooseFile(marl, At(name + L".qsk")));
    EXPECT_TRUE(WaitUntil([&] { return There(name + L".qsk"); }));
    ASSERT_TRUE(WaitUntil([&] { return dialog.InFront(); }));
    ASSERT_TRUE(dialog.Press(L"&Load..."));
    ASSERT_TRUE(ChooseFile(marl, At(name + L".qsk")));
    ASSERT_TRUE(WaitUntil([&] { return dialog.InFront(); }));
    EXPECT_FALSE(marl.Box());
    ASSERT_TRUE(dialog.Leave(L"OK"));
  }

  Click(IconOf(main, kChangeServer));
  {
    const Dialog dialog(marl, L"Change server");
    ASSERT_TRUE(dialog);
    ASSERT_TRUE(WaitUntil([&] { return dialog.InFront(); }));
    const HWND combo = dialog.Find(L"ComboBox");
    ASSERT_TRUE(combo);
    ASSERT_TRUE(Enter(GetWindow(combo, GW_CHILD), server));
    Picture("server");
    ASSERT_TRUE(dialog.Leave(L"OK"));
  }
  EXPECT_TRUE(WaitUntil([&] { return TextOf(main) == L"Marl : " + server; }))
      << ToUtf8(TextOf(main));

  // A name that cannot be stored is refused by name, and the server stays.
  Click(IconOf(main, kChangeServer));
  {
    const Dialog dialog(marl, L"Change server");
    ASSERT_TRUE(dialog);
    ASSERT_TRUE(WaitUntil([&] { return dialog.InFront(); }));
    ASSERT_TRUE(Enter(GetWindow(dialog.Find(L"ComboBox"), GW_CHILD), kForeignServer));
    ASSERT_TRUE(dialog.Leave(L"OK"));
  }
  const MessageBoxWindow refused = marl.WaitForBox();
  ASSERT_TRUE(refused);
  Picture("refused");
  EXPECT_TRUE(refused.Text().ends_with(L"\n\n" + kForeignServer)) << ToUtf8(refused.Text());
  EXPECT_TRUE(refused.Press(IDOK));
  EXPECT_TRUE(WaitUntil([&] { return TextOf(main) == L"Marl : " + server; }))
      << ToUtf8(TextOf(main));

  ASSERT_TRUE(BringForward(main));
  Chord({VK_SHIFT}, VK_F6);
  {
    const Dialog dialog(marl, L"Options");
    ASSERT_TRUE(dialog);
    const wchar_t kTools[] = L"Show all applications in &tools menu";
    ASSERT_TRUE(dialog.Check(kTools, true));
    ASSERT_TRUE(dialog.Leave(L"OK"));
  }
  ASSERT_TRUE(BringForward(main));
  Picture("panel");
  ASSERT_TRUE(Close(marl));

  const auto stored = ReadStored(L"Software\\Oru\\Marl\\Settings");
  ASSERT_TRUE(stored && stored->contains("TrackingServer"));
  const auto narrow = Narrow(server);
  ASSERT_TRUE(narrow);
  EXPECT_EQ(stored->at("TrackingServer"),
            Text("<project-tracking server=\"" + *narrow + "\" ssl=\"no\" port=\"80\"/>"));
  EXPECT_EQ(settings.Get(L"Tools"), L"True");
  const std::wstring left = settings.Get(L"Left").value_or(L"");
  EXPECT_FALSE(left.empty());
  EXPECT_TRUE(std::all_of(left.begin(), left.end(), [](wchar_t c) { return c >= '0' && c <= '9'; }))
      << ToUtf8(left);
  const auto look = ReadStored(L"Software\\Oru\\Marl\\GUI");
  ASSERT_TRUE(look && look->contains("Angle"));
  EXPECT_EQ(look->at("Angle"), Number(90));
  std::ifstream file{std::filesystem::path(At(name + L".qsk")), std::ios::binary};
  const std::string skin{std::istreambuf_iterator<char>(file), {}};
  EXPECT_NE(skin.find("<parameter name=\"angle\" value=\"90\"/>"), std::string::npos) << skin;
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Locale);
INSTANTIATE_TEST_SUITE_P(Of, Locale, testing::ValuesIn(Chosen()),
                         [](const auto& tested) { return std::string(tested.param.locale); });

}  // namespace marl::desktop
