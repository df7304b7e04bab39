#include <algorithm>

#include "tests/desktop/Component.h"
#include "tests/desktop/Dialog.h"
#include "tests/desktop/Switchboard.h"

// The commands on projects, with real files, the platform's file dialog and the selection dialog.

namespace marl::desktop {

namespace {

using Starts = std::vector<Started>;

constexpr wchar_t kCleanQuestion[] =
    L"This will remove all Marl files from the folder.  Are you sure you want to continue?";
constexpr int kNameField = 0x480;  // the field of the platform's file dialogs
constexpr int kNameCombo = 0x47C;  // in some versions

HWND WaitForFileDialog(const RunningMarl& marl) {
  return marl.WaitForWindow(L"#32770", L"Open Marl project file");
}

HWND WaitForSelection(const RunningMarl& marl) {
  return marl.WaitForWindow(L"MarlForm", L"Select language and file name");
}

bool WaitUntilGone(HWND window) {
  return WaitUntil([&] { return !IsWindow(window) || !IsWindowVisible(window); });
}

BOOL CALLBACK KeepFileField(HWND window, LPARAM found) {
  const int id = GetDlgCtrlID(window);
  if ((id != kNameField && id != kNameCombo) || !IsWindowVisible(window)) return TRUE;
  *reinterpret_cast<HWND*>(found) = window;
  return FALSE;
}

/// Types the path into a file dialog and presses Enter. True if the dialog closes.
bool ChooseFile(HWND dialog, const std::wstring& path) {
  HWND field = nullptr;
  WaitUntil([&] {
    EnumChildWindows(dialog, KeepFileField, reinterpret_cast<LPARAM>(&field));
    return field != nullptr;
  });
  if (!field || !BringForward(dialog)) return false;
  SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
  RedrawWindow(dialog, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  Screenshot("OpenProject", dialog);
  PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  return WaitUntilGone(dialog);
}

/// The windows of this class in a form, in the order of creation.
std::vector<HWND> Children(HWND form, const wchar_t* windowClass) {
  std::vector<HWND> children;
  for (HWND child = nullptr;
       (child = FindWindowExW(form, child, windowClass, nullptr)) != nullptr;) {
    children.push_back(child);
  }
  return children;
}

std::vector<std::wstring> Rows(HWND combo) {
  std::vector<std::wstring> rows;
  const auto count = SendMessageW(combo, CB_GETCOUNT, 0, 0);
  for (LRESULT i = 0; i < count; ++i) {
    const auto row = static_cast<WPARAM>(i);
    const LRESULT length = SendMessageW(combo, CB_GETLBTEXTLEN, row, 0);
    if (length < 0) break;
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    SendMessageW(combo, CB_GETLBTEXT, row, reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(length));
    rows.push_back(text);
  }
  return rows;
}

bool PressButton(HWND form, const wchar_t* caption) {
  const HWND button = FindWindowExW(form, nullptr, L"Button", caption);
  if (!button || !BringForward(form)) return false;
  const POINT middle = MiddleOf(button);
  if (!WaitUntil([&] { return WindowFromPoint(middle) == button; })) return false;
  Click(middle);
  return WaitUntilGone(form);
}

using Tree = std::map<std::wstring, std::pair<DWORD, std::uint64_t>>;

/// Calls `visit` with path and data of each file below the folder, in the order of the listings;
/// the files of a sub-folder come where it is listed.
template <typename Visit>
void ForEachFile(const std::wstring& folder, const Visit& visit) {
  WIN32_FIND_DATAW found;
  const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    const std::wstring name = found.cFileName;
    if (name == L"." || name == L"..") continue;
    const std::wstring path = folder + L"\\" + name;
    if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
      ForEachFile(path, visit);
    } else {
      visit(path, found);
    }
  } while (FindNextFileW(search, &found));
  FindClose(search);
}

/// All files below the folder, with their sizes and times of writing.
void AddFiles(const std::wstring& folder, Tree& files) {
  ForEachFile(folder, [&](const std::wstring& path, const WIN32_FIND_DATAW& found) {
    files[path] = {found.nFileSizeLow, std::uint64_t{found.ftLastWriteTime.dwHighDateTime} << 32 |
                                           found.ftLastWriteTime.dwLowDateTime};
  });
}

/// All files below the folder, in the order of the listings.
void ListFiles(const std::wstring& folder, std::vector<std::wstring>& files) {
  ForEachFile(folder,
              [&](const std::wstring& path, const WIN32_FIND_DATAW&) { files.push_back(path); });
}

/// Activates the form and waits until its field has the focus.
bool WaitForFocus(HWND form, HWND field) {
  if (!BringForward(form)) return false;
  const DWORD thread = GetWindowThreadProcessId(form, nullptr);
  return WaitUntil([&] {
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    return GetGUIThreadInfo(thread, &info) && info.hwndFocus == field;
  });
}

/// Chooses the second row of the form's first list by keys.
bool ChooseSecondRow(HWND form) {
  const HWND list = Children(form, L"ComboBox").at(0);
  if (!WaitForFocus(form, list)) return false;
  Chord({}, VK_DOWN);
  return WaitUntil([&] { return SendMessageW(list, CB_GETCURSEL, 0, 0) == 1; });
}

/// A long path with the prefix \\?\, which has no length limit. With it, names such as ".." are
/// taken literally, so short paths stay unchanged.
std::wstring Unlimited(const std::wstring& path) {
  return path.size() < 240 ? path : L"\\\\?\\" + path;
}

/// A project's folder, created below the suite's temporary one.
class Project : public SwitchboardTest {
 protected:
  void SetUp() override {
    CreateDirectoryW(folder.c_str(), nullptr);
    main = marl.WaitForWindow();
    ASSERT_TRUE(main);
  }

  /// Writes a file below the project's folder, and creates its folders.
  void Put(const std::wstring& name, const std::string& content = "",
           DWORD attributes = FILE_ATTRIBUTE_NORMAL) const {
    const std::wstring path = At(name);
    for (std::size_t at = folder.size(); (at = path.find(L'\\', at + 1)) != std::wstring::npos;) {
      CreateDirectoryW(Unlimited(path.substr(0, at)).c_str(), nullptr);
    }
    const HANDLE file = CreateFileW(Unlimited(path).c_str(), GENERIC_WRITE, 0, nullptr,
                                    CREATE_ALWAYS, attributes, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE) << ToUtf8(path);
    DWORD written = 0;
    EXPECT_TRUE(
        WriteFile(file, content.data(), static_cast<DWORD>(content.size()), &written, nullptr));
    CloseHandle(file);
  }
  std::wstring At(const std::wstring& name) const { return folder + L"\\" + name; }
  bool There(const std::wstring& name) const {
    return GetFileAttributesW(Unlimited(At(name)).c_str()) != INVALID_FILE_ATTRIBUTES;
  }
  /// True when the platform finds the file by its plain path, whatever its length.
  bool InReach(const std::wstring& name) const {
    return GetFileAttributesW(At(name).c_str()) != INVALID_FILE_ATTRIBUTES;
  }
  /// A name below the project's folder that ends in `end` and makes a path of `length` characters.
  std::wstring NameOfLength(std::size_t length, const std::wstring& end) const {
    constexpr std::size_t kPart = 60;
    std::wstring name;
    const auto left = [&] { return length - At(name).size() - end.size(); };
    while (left() > 2 * kPart) name += std::wstring(kPart - 1, L'n') + L"\\";
    if (left() > kPart) name += std::wstring(left() - kPart, L'm') + L"\\";
    return name + std::wstring(left(), L'f') + end;
  }
  /// Sends the project by DDE, presses OK in the dialog that opens, and waits until it is closed.
  testing::AssertionResult TranslateFirst(const std::wstring& project) const {
    if (!Tell(project)) return testing::AssertionFailure() << "the command is not accepted";
    if (!Translate()) return testing::AssertionFailure() << "no menu";
    const HWND form = WaitForSelection(marl);
    if (!form) return testing::AssertionFailure() << "no dialog";
    if (!PressButton(form, L"OK")) return testing::AssertionFailure() << "the dialog stays";
    return testing::AssertionSuccess();
  }

  bool Translate() const { return marl.PressMenu(L'T', L'P'); }
  bool Open() const { return marl.PressMenu(L'P', L'O'); }
  bool Clean() const { return marl.PressMenu(L'P', L'R'); }

  /// Expects a message box with this text and only an OK button, and closes it.
  testing::AssertionResult Says(const std::wstring& text) const {
    const MessageBoxWindow box = marl.WaitForBox();
    if (!box) return testing::AssertionFailure() << "there is no message";
    if (box.Title() != L"Marl" || box.Text() != text) {
      return testing::AssertionFailure() << ToUtf8(box.Title() + L": " + box.Text());
    }
    if (box.Buttons() != std::vector<int>{IDOK}) return testing::AssertionFailure() << "buttons";
    if (!box.Press(IDOK)) return testing::AssertionFailure() << "it stays";
    return testing::AssertionSuccess();
  }
  /// Contents of the suite's folder, and of the project's folder with its neighbours.
  Tree AllFiles() const {
    Tree files;
    AddFiles(suite.path(), files);
    AddFiles(suite.temp(), files);
    return files;
  }
  Started Editor(const std::wstring& document) const {
    return Start(suite, L"Q17Bench.exe", L"\"" + At(document) + L"\"");
  }

  const SuiteFolder suite{L"My  suite, \u00dcbung & co (1)"};
  const std::wstring folder = suite.temp() + L"\\Jobs,  \u00fcber & co";
  const RunningMarl marl{suite};
  HWND main = nullptr;
};

constexpr char kXml[] =
    "<project><language lc=\"fr\" description=\"French\">"
    "<document path=\"French\\sub\\\xC3\xA9t\xC3\xA9 \xE4\xB8\xAD.doc\"/>"
    "<document path=\"French\\plain\"/></language>"
    "<language lc=\"xx\"/><language lc=\"de\" description=\"German\"/></project>";
const std::wstring kDocument = L"sub\\\u00e9t\u00e9 \u4e2d.qtd";

constexpr char kOlder[] =
    "[Target Files]\r\nShortLang=1\r\n[Languages]\r\nCount=2\r\nTarget0=fr\r\nTarget1=de\r\n"
    "[Source Files]\r\nCount=1\r\nFile0=report.doc\r\n";

}  // namespace

TEST_F(Project, DocumentOfAnXmlProjectOpensInTheEditor) {
  const std::wstring job = L"\u0416\u0438\u0437\u043d\u044c \u4e2d\u6587\\";
  Put(job + L"a b.QPRX", kXml);
  Put(job + L"French\\" + kDocument);
  Put(job + L"German\\" + kDocument);
  ASSERT_TRUE(Open());
  const HWND dialog = WaitForFileDialog(marl);
  ASSERT_TRUE(dialog);
  EXPECT_FALSE(IsWindowEnabled(main));
  ASSERT_TRUE(ChooseFile(dialog, At(job + L"a b.QPRX")));
  ASSERT_TRUE(Translate());
  HWND form = WaitForSelection(marl);
  ASSERT_TRUE(form);
  const std::vector<HWND> lists = Children(form, L"ComboBox");
  ASSERT_EQ(lists.size(), 2u);
  EXPECT_EQ(Rows(lists[0]), (std::vector<std::wstring>{L"French", L"German"}));
  EXPECT_EQ(Rows(lists[1]), (std::vector<std::wstring>{kDocument, L"plain.qtd"}));
  ASSERT_TRUE(BringForward(form));
  RedrawWindow(form, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  Screenshot("frmSelectFile", form);
  ASSERT_TRUE(PressButton(form, L"OK"));
  EXPECT_EQ(suite.WaitForTools(1), (Starts{Editor(job + L"French\\" + kDocument)}));

  // The second run asks for no project; the keys choose the second language.
  ASSERT_TRUE(Translate());
  form = WaitForSelection(marl);
  ASSERT_TRUE(form);
  EXPECT_TRUE(ChooseSecondRow(form));
  Chord({}, VK_RETURN);
  ASSERT_TRUE(WaitUntilGone(form));
  const Starts starts = suite.WaitForTools(2);
  ASSERT_EQ(starts.size(), 2u);
  EXPECT_EQ(starts[1], Editor(job + L"German\\" + kDocument));
  EXPECT_TRUE(Close(marl));
}

TEST_F(Project, LanguagesOfARegisteredComponentAreOffered) {
  const ComponentLanguages languages;
  const ComponentCalls calls(suite);
  const RegisteredComponent qa(L"Marl.QaComponent");
  ASSERT_TRUE(qa.made());
  ASSERT_TRUE(Close(marl));
  const RunningMarl second(suite);
  ASSERT_TRUE(second.WaitForWindow());
  Put(L"empty.qprx", "<document path=\"a.doc\"/>");
  ASSERT_TRUE(Tell(At(L"empty.qprx")));
  ASSERT_TRUE(second.PressMenu(L'T', L'P'));
  ASSERT_TRUE(second.WaitForBox());
  EXPECT_EQ(second.Box().Text(), L"No target languages found");
  ASSERT_TRUE(second.Box().Press(IDOK));
  EXPECT_TRUE(calls.All().empty()) << "not asked for before they are needed";

  Put(L"job.qprx",
      "<language lc=\"de\"/><document path=\"a b.doc\"/>"
      "<language lc=\"fr\"/><language lc=\"x-own\"/>");
  Put(L"Own \u00fc \u4e2d\\a b.qtd");
  ASSERT_TRUE(Tell(At(L"job.qprx")));
  Starts expected;
  for (int time = 0; time < 2; ++time) {
    ASSERT_TRUE(second.PressMenu(L'T', L'P'));
    const HWND form = WaitForSelection(second);
    ASSERT_TRUE(form) << ToUtf8(second.Box().Text());
    EXPECT_EQ(Rows(Children(form, L"ComboBox").at(0)),
              (std::vector<std::wstring>{L"Other", L"Own \u00fc \u4e2d"}));
    Screenshot("select-component-languages", form);
    EXPECT_TRUE(ChooseSecondRow(form));
    Chord({}, VK_RETURN);
    ASSERT_TRUE(WaitUntilGone(form));
    // A program that starts may take the activation while the keys are on their way.
    expected.push_back(Editor(L"Own \u00fc \u4e2d\\a b.qtd"));
    EXPECT_EQ(suite.WaitForTools(expected.size()), expected);
  }
  const auto get = [](int index) {
    return L"Marl.QaComponent.GetLanguage(" + std::to_wstring(index) + L",1,,,0,0)";
  };
  EXPECT_EQ(calls.All(),
            (std::vector<std::wstring>{L"Marl.QaComponent.LanguageCount()", get(0), get(1), get(2),
                                       L"Marl.QaComponent.CodePageCount()",
                                       L"Marl.QaComponent.GetCodePage(0,1,,,0)"}))
      << "read once";
  EXPECT_TRUE(Close(second));
}

TEST_F(Project, WithAComponentThatCannotBeMadeNoLanguageIsOffered) {
  const RegisteredComponent qa(L"Marl.QaComponent", suite.path() + L"\\nowhere.dll");
  ASSERT_TRUE(qa.made());
  Put(L"job.qprx", "<language lc=\"fr\"/><document path=\"a.doc\"/>");
  ASSERT_TRUE(Tell(At(L"job.qprx")));
  ASSERT_TRUE(Translate());
  EXPECT_TRUE(Says(L"No target languages found"));
  EXPECT_TRUE(Close(marl));
}

TEST_F(Project, OlderProjectIsChosenInTheFileDialog) {
  // Older projects are 8-bit files under 8-bit names.
  const std::wstring jobs = suite.temp() + L"\\Old jobs \u00fc";
  CreateDirectoryW(jobs.c_str(), nullptr);
  CreateDirectoryW((jobs + L"\\de").c_str(), nullptr);
  Put(L"x.qpj", kOlder);
  Put(L"report.qtd");
  ASSERT_TRUE(CopyFileW(At(L"x.qpj").c_str(), (jobs + L"\\x.qpj").c_str(), TRUE));
  ASSERT_TRUE(CopyFileW(At(L"report.qtd").c_str(), (jobs + L"\\de\\report.qtd").c_str(), TRUE));

  ASSERT_TRUE(Translate());
  const HWND dialog = WaitForFileDialog(marl);
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(ChooseFile(dialog, jobs + L"\\x.qpj"));
  const HWND form = WaitForSelection(marl);
  ASSERT_TRUE(form);
  const HWND list = Children(form, L"ComboBox").at(0);
  EXPECT_EQ(Rows(list), (std::vector<std::wstring>{L"French", L"German"}));
  EXPECT_TRUE(ChooseSecondRow(form));
  ASSERT_TRUE(PressButton(form, L"OK"));
  EXPECT_EQ(suite.WaitForTools(1),
            (Starts{Start(suite, L"Q17Bench.exe", L"\"" + jobs + L"\\de\\report.qtd\"")}));
  EXPECT_TRUE(Close(marl));
}

TEST_F(Project, CancelAtEachDialogEndsSilentlyAndKeepsTheProject) {
  Put(L"a.qprx", kXml);
  ASSERT_TRUE(Translate());
  HWND dialog = WaitForFileDialog(marl);
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(BringForward(dialog));
  Chord({}, VK_ESCAPE);
  ASSERT_TRUE(WaitUntilGone(dialog));

  // There was none: the next command asks again. Cancelling while there is a project keeps it.
  ASSERT_TRUE(Clean());
  dialog = WaitForFileDialog(marl);
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(BringForward(dialog));
  Chord({}, VK_ESCAPE);
  ASSERT_TRUE(WaitUntilGone(dialog));
  ASSERT_TRUE(Tell(At(L"a.qprx")));
  ASSERT_TRUE(Open());
  dialog = WaitForFileDialog(marl);
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(BringForward(dialog));
  Chord({}, VK_ESCAPE);
  ASSERT_TRUE(WaitUntilGone(dialog));

  ASSERT_TRUE(Translate());
  const HWND form = WaitForSelection(marl);
  ASSERT_TRUE(form) << "no question: the project is still there";
  ASSERT_TRUE(PressButton(form, L"Cancel"));
  EXPECT_TRUE(Close(marl));
  EXPECT_TRUE(suite.WaitForTools(0).empty());
}

TEST_F(Project, MissingThingsShowAMessage) {
  Put(L"a.qprx", kXml);
  ASSERT_TRUE(Tell(At(L"a.qprx")));
  ASSERT_TRUE(Translate());
  HWND form = WaitForSelection(marl);
  ASSERT_TRUE(form);
  ASSERT_TRUE(PressButton(form, L"OK"));
  EXPECT_TRUE(Says(L"File not found : " + At(L"French\\" + kDocument)));

  Put(L"French\\" + kDocument);
  suite.Remove(L"Q17Bench.exe");
  ASSERT_TRUE(Translate());
  form = WaitForSelection(marl);
  ASSERT_TRUE(form);
  ASSERT_TRUE(PressButton(form, L"OK"));
  EXPECT_TRUE(Says(L"File not found : " + suite.path() + L"\\Q17Bench.exe"));

  const std::pair<std::wstring, std::wstring> projects[] = {
      {At(L"missing.qprx"), L"No target languages found"},
      {At(L"missing.qpj"), L"No target languages found"},
      {L"job.qpj", L"This does not appear to be a valid Marl project file"},
      {At(L"none.qprx"), L"No translation files found"},
      {At(L"unknown.qprx"), L"No target languages found"},
      {At(L"UNKNOWN.QPRX"), L"No target languages found"},
      {At(L"blank.qprx"), L"No translation files found"},
      {At(L"ini.qprx"), L"No target languages found"},
      {At(L"declared.qprx"), L"No target languages found"},
      {At(L"folder.qprx"), L"No target languages found"},
      {At(L"locked.qprx"), L"No target languages found"},
      {At(L"negative.qpj"), L"No translation files found"}};
  Put(L"none.qprx", "<language lc=\"fr\"/>");
  Put(L"unknown.qprx", "<language lc=\"xx\"/><document path=\"a\"/>");
  Put(L"blank.qprx", "<language lc=\"fr\"/><document path=\"\"/>");
  Put(L"ini.qprx", kOlder);
  Put(L"declared.qprx", std::string("<!ELEMENT>") + kXml);
  Put(L"folder.qprx\\inside", "");
  Put(L"locked.qprx", kXml);
  Put(L"negative.qpj", "[Languages]\r\nCount=-1\r\nTarget0=fr\r\n");
  const HANDLE locked = CreateFileW(At(L"locked.qprx").c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(locked, INVALID_HANDLE_VALUE);
  for (const auto& [path, message] : projects) {
    ASSERT_TRUE(Tell(path));
    ASSERT_TRUE(Translate());
    EXPECT_TRUE(Says(message)) << ToUtf8(path);
  }
  CloseHandle(locked);
  EXPECT_TRUE(Close(marl));
  EXPECT_TRUE(suite.WaitForTools(0).empty());
}

TEST_F(Project, FoldersOfBothStylesAndPathsOfAnyLengthReachTheEditor) {
  const std::string xml = "<language lc=\"fr\" description=\"Any\"/><document path=\"a b.doc\"/>";
  Starts expected;
  // By the language's code, and by the table's description, in projects of both kinds.
  Put(L"code.qprx", "<target-files shortlang=\"YES\"/>" + xml);
  Put(L"fr\\a b.qtd");
  ASSERT_TRUE(TranslateFirst(At(L"code.qprx")));
  expected.push_back(Editor(L"fr\\a b.qtd"));
  EXPECT_EQ(suite.WaitForTools(expected.size()), expected);
  Put(L"described.qpj",
      "[Target Files]\r\nShortLang=0\r\n[Languages]\r\nCount=2147483647\r\nTarget7=fr\r\n"
      "[Source Files]\r\nCount=2147483647\r\nFile9=a b.doc\r\n");
  Put(L"French\\a b.qtd");
  ASSERT_TRUE(TranslateFirst(At(L"described.qpj")));
  expected.push_back(Editor(L"French\\a b.qtd"));
  EXPECT_EQ(suite.WaitForTools(expected.size()), expected);

  // As long as MAX_PATH allows, and longer: then the platform decides whether the file exists.
  for (const std::size_t length : {std::size_t{259}, std::size_t{260}, std::size_t{300}}) {
    const std::wstring end = L"\\French\\a b.qtd";
    const std::wstring document = NameOfLength(length, end);
    ASSERT_EQ(At(document).size(), length);
    Put(document);
    const std::wstring job = document.substr(0, document.size() - end.size()) + L"\\j.qprx";
    Put(job, xml);
    ASSERT_TRUE(TranslateFirst(At(job))) << length;
    if (InReach(document)) {
      expected.push_back(Editor(document));
    } else {
      ASSERT_GE(length, std::size_t{260});
      EXPECT_TRUE(Says(L"File not found : " + At(document)));
    }
    EXPECT_EQ(suite.WaitForTools(expected.size()), expected) << length;
  }
  EXPECT_TRUE(Close(marl));
}

TEST_F(Project, FoldersOfAnyNameAndPathsOfAnyKindReachTheEditor) {
  const std::string xml = "<language lc=\"fr\" description=\"Any\"/><document path=\"a b.doc\"/>";
  const std::wstring end = L"\\French\\a b.qtd";
  Starts expected;
  const std::wstring odd = L"a & b% %TEMP% !c 'd' ^e; ,f (g) #h  i";
  // No code page has all of these; the second is what is left of the first in many.
  const std::wstring any = L"\U0001D4B3\u16A0 \u0101\u0416";
  const std::wstring fitted = L"\U0001D4B3\u16A0 a\u0416";
  for (const std::wstring& job : {odd, any, fitted}) {
    Put(job + L"\\j.qprx", xml);
    Put(job + end);
    ASSERT_TRUE(Open());
    ASSERT_TRUE(ChooseFile(WaitForFileDialog(marl), At(job + L"\\j.qprx"))) << ToUtf8(job);
    ASSERT_TRUE(Translate());
    ASSERT_TRUE(PressButton(WaitForSelection(marl), L"OK"));
    expected.push_back(Editor(job + end));
    EXPECT_EQ(suite.WaitForTools(expected.size()), expected);
  }

  // By its short name, and over the network.
  std::wstring brief(MAX_PATH, L'\0');
  brief.resize(GetShortPathNameW(At(odd).c_str(), brief.data(), MAX_PATH));
  const NetworkShare share(At(odd));
  ASSERT_TRUE(share.made());
  for (const std::wstring& job : {brief, share.name()}) {
    SCOPED_TRACE(ToUtf8(job));
    ASSERT_FALSE(job.empty());
    ASSERT_TRUE(TranslateFirst(job + L"\\j.qprx"));
    expected.push_back(Start(suite, L"Q17Bench.exe", L"\"" + job + end + L"\""));
    EXPECT_EQ(suite.WaitForTools(expected.size()), expected);
  }

  // Working files go from that folder alone.
  ASSERT_TRUE(Open());
  ASSERT_TRUE(ChooseFile(WaitForFileDialog(marl), At(any + L"\\j.qprx")));
  ASSERT_TRUE(Clean());
  const MessageBoxWindow question = marl.WaitForBox();
  ASSERT_TRUE(question);
  ASSERT_TRUE(question.Press(IDYES));
  EXPECT_TRUE(WaitUntil([&] { return !There(any + end); }));
  EXPECT_TRUE(There(fitted + end));
  EXPECT_TRUE(There(odd + end));
  EXPECT_TRUE(Close(marl));
}

TEST_F(Project, PathOfThirtyTwoThousandCharactersIsOnlyMissing) {
  for (const std::size_t length : {std::size_t{4000}, std::size_t{32'000}, std::size_t{40'000}}) {
    SCOPED_TRACE(length);
    const std::wstring project = At(NameOfLength(length, L".qprx"));
    ASSERT_EQ(project.size(), length);
    ASSERT_TRUE(Tell(project));
    ASSERT_TRUE(Translate());
    // A project that cannot be read has no languages.
    EXPECT_TRUE(Says(L"No target languages found"));
    ASSERT_TRUE(WaitUntil([&] { return IsWindowEnabled(main) != FALSE; }));
  }
  EXPECT_TRUE(Close(marl));
  EXPECT_TRUE(suite.WaitForTools(0).empty());
}

TEST_F(Project, CountThatIsNoNumberEndsTheProgramWithTheRuntimesText) {
  const std::wstring path = suite.temp() + L"\\bad.qpj";
  Put(L"bad.qpj", "[Languages]\r\nCount=abc\r\n");
  ASSERT_TRUE(CopyFileW(At(L"bad.qpj").c_str(), path.c_str(), TRUE));
  ASSERT_TRUE(Tell(path));
  ASSERT_TRUE(Translate());
  EXPECT_TRUE(Says(L"Type mismatch"));
  EXPECT_EQ(marl.WaitForExit(), 1u);
}

TEST_F(Project, CleanDeletesTheWorkingFilesOfATreeAndNothingElse) {
  const std::vector<std::wstring> working = {L"a.qtd",
                                             L"B.QTD",
                                             L"c.obj",
                                             L"D.OBJ",
                                             L"e.fmp",
                                             L"F.FMP",
                                             L"MARL_IX.MIF",
                                             L"marl_xr.mif",
                                             L"sub\\Marl_Va.Mif",
                                             L"sub\\deep\\g \u4e2d.qtd",
                                             L"x.qtd\\y.qtd"};
  const std::vector<std::wstring> own = {L"job.qprx",       L"chapter1.mif", L"marl_ix2.mif",
                                         L"a.qtd.bak",      L"b.qtdx",       L"sub\\text.doc",
                                         L"sub\\deep\\obj", L"x.qtd\\z.doc"};
  for (const auto& name : working) Put(name);
  for (const auto& name : own) Put(name);
  Put(L"readonly.qtd", "", FILE_ATTRIBUTE_READONLY);
  Put(L"hidden.qtd", "", FILE_ATTRIBUTE_HIDDEN);
  Put(L"locked.qtd");
  CreateDirectoryW(At(L"empty.qtd").c_str(), nullptr);
  Put(L"..\\outside.qtd");
  // The search ends where the platform's plain paths end.
  const std::wstring distant = NameOfLength(300, L".qtd");
  Put(distant);
  const bool reached = InReach(distant);
  const HANDLE locked = CreateFileW(At(L"locked.qtd").c_str(), GENERIC_READ, FILE_SHARE_READ,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(locked, INVALID_HANDLE_VALUE);

  ASSERT_TRUE(Tell(At(L"job.qprx")));
  const auto before = AllFiles();
  ASSERT_TRUE(Clean());
  MessageBoxWindow box = marl.WaitForBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box.Text(), kCleanQuestion);
  EXPECT_EQ(box.Buttons(), (std::vector<int>{IDYES, IDNO}));
  EXPECT_EQ(AllFiles(), before) << "nothing is deleted before the answer";
  ASSERT_TRUE(box.Press(IDNO));
  ASSERT_TRUE(Clean());
  box = marl.WaitForBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(AllFiles(), before) << "with No nothing changes";
  ASSERT_TRUE(box.Press(IDYES));
  EXPECT_TRUE(WaitUntil([&] { return !There(L"x.qtd\\y.qtd"); }));
  // The second run finds what it could not delete, and the MIF files that are not the suite's.
  ASSERT_TRUE(Clean());
  box = marl.WaitForBox();
  ASSERT_TRUE(box) << "the locked file is still found";
  ASSERT_TRUE(box.Press(IDNO));
  CloseHandle(locked);

  for (const auto& name : working) EXPECT_FALSE(There(name)) << ToUtf8(name);
  EXPECT_FALSE(There(L"readonly.qtd"));
  EXPECT_FALSE(There(L"hidden.qtd"));
  for (const auto& name : own) EXPECT_TRUE(There(name)) << ToUtf8(name);
  EXPECT_TRUE(There(L"locked.qtd"));
  EXPECT_TRUE(There(L"empty.qtd"));
  EXPECT_TRUE(There(L"..\\outside.qtd"));
  EXPECT_EQ(There(distant), !reached);
  const std::size_t gone = working.size() + 2 + (reached ? 1 : 0);
  const auto after = AllFiles();
  EXPECT_EQ(before.size() - after.size(), gone);
  EXPECT_TRUE(std::all_of(after.begin(), after.end(), [&](const auto& file) {
    const auto was = before.find(file.first);
    return was != before.end() && was->second == file.second;
  }));
  EXPECT_TRUE(Close(marl));
}

TEST_F(Project, FortyThousandWorkingFilesAreMoreThanItCounts) {
  constexpr int kFolders = 400;
  constexpr int kEach = 100;
  constexpr std::size_t kCounted = 32767;
  constexpr std::chrono::minutes kPatience{3};
  const wchar_t* const extensions[] = {L".qtd", L".OBJ", L".fmp", L".Qtd"};
  for (int i = 0; i < kFolders; ++i) {
    const std::wstring below = At(L"chapter " + std::to_wstring(i));
    ASSERT_TRUE(CreateDirectoryW(below.c_str(), nullptr));
    for (int j = 0; j < kEach; ++j) {
      const std::wstring path = below + L"\\" + std::to_wstring(j) + extensions[j % 4];
      const HANDLE file =
          CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
      ASSERT_NE(file, INVALID_HANDLE_VALUE) << ToUtf8(path);
      CloseHandle(file);
    }
  }
  std::vector<std::wstring> files;
  ListFiles(folder, files);
  ASSERT_EQ(files.size(), static_cast<std::size_t>(kFolders * kEach));
  Put(L"job.qprx");
  Put(L"..\\outside.qtd");

  ASSERT_TRUE(Tell(At(L"job.qprx")));
  // The pointer over the panel shows the search while it runs.
  const auto pointer = [] {
    CURSORINFO info = {};
    info.cbSize = sizeof info;
    return GetCursorInfo(&info) ? info.hCursor : nullptr;
  };
  const RECT cell = CellOf(main, 0);
  MoveMouse(cell.left + 3, cell.top + 3);
  ASSERT_TRUE(BringForward(main));
  const HCURSOR arrow = pointer();
  ASSERT_TRUE(Clean());
  EXPECT_TRUE(WaitUntil([&] { return pointer() != arrow || marl.Box(); }, kPatience));
  EXPECT_FALSE(marl.Box()) << "the question came before the pointer changed";
  ASSERT_TRUE(WaitUntil([&] { return static_cast<bool>(marl.Box()); }, kPatience));
  EXPECT_TRUE(WaitUntil([&] { return pointer() == arrow; }));
  EXPECT_EQ(marl.Box().Text(), kCleanQuestion);
  ASSERT_TRUE(marl.Box().Press(IDYES));
  // The counter of deleted files overflows, and the program ends.
  ASSERT_TRUE(WaitUntil([&] { return static_cast<bool>(marl.Box()); }, kPatience));
  EXPECT_TRUE(Says(L"Overflow"));
  EXPECT_EQ(marl.WaitForExit(), 1u);

  files.erase(files.begin(), files.begin() + kCounted);
  std::vector<std::wstring> left;
  ListFiles(folder, left);
  EXPECT_EQ(std::erase(left, At(L"job.qprx")), 1u);
  EXPECT_EQ(left.size(), files.size());
  EXPECT_TRUE(left == files) << "the first ones went, in the order of the folders";
  EXPECT_TRUE(There(L"..\\outside.qtd"));
}

TEST_F(Project, FolderWithoutWorkingFilesSaysSo) {
  Put(L"job.qprx", kXml);
  ASSERT_TRUE(Tell(At(L"job.qprx")));
  ASSERT_TRUE(Clean());
  EXPECT_TRUE(Says(L"No temporary files found"));
  ASSERT_TRUE(Tell(L"job.qprx"));
  ASSERT_TRUE(Clean());
  EXPECT_TRUE(Says(L"This does not appear to be a valid Marl project file"));
  // A folder that has been deleted meanwhile, with the project in it.
  Put(L"gone\\job.qprx", kXml);
  Put(L"gone\\a.qtd");
  ASSERT_TRUE(Tell(At(L"gone\\job.qprx")));
  ASSERT_TRUE(DeleteFileW(At(L"gone\\job.qprx").c_str()));
  ASSERT_TRUE(DeleteFileW(At(L"gone\\a.qtd").c_str()));
  ASSERT_TRUE(RemoveDirectoryW(At(L"gone").c_str()));
  ASSERT_TRUE(Clean());
  EXPECT_TRUE(Says(L"No temporary files found"));
  EXPECT_TRUE(Close(marl));
}

}  // namespace marl::desktop
