#include "tests/desktop/Adverse.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iostream>
#include <memory>

// What can be arranged around the program from outside: stored values and files of the wrong kind,
// keys without rights, no temporary folder, a full disk, no handles, kills, and starts at the same
// moment.

namespace marl::desktop {

namespace {

/// Takes rights to a key of the user, and to all keys below it, away while this lives.
class DeniedKey {
 public:
  DeniedKey(const std::wstring& path, DWORD rights) {
    // The handle keeps its rights.
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_ALL_ACCESS, &key_)) return;
    std::array<wchar_t, 256> name = {};
    for (DWORD index = 0;; ++index) {
      auto length = static_cast<DWORD>(name.size());
      if (RegEnumKeyExW(key_, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr)) {
        break;
      }
      below_.push_back(std::make_unique<DeniedKey>(path + L"\\" + name.data(), rights));
      if (!below_.back()->made()) return;
    }
    HKEY again = nullptr;
    made_ = Allow(KEY_ALL_ACCESS & ~rights) && RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0,
                                                             rights, &again) == ERROR_ACCESS_DENIED;
  }
  ~DeniedKey() {
    if (!key_) return;
    Allow(KEY_ALL_ACCESS);
    RegCloseKey(key_);
  }
  DeniedKey(const DeniedKey&) = delete;
  DeniedKey& operator=(const DeniedKey&) = delete;
  bool made() const { return made_; }

 private:
  /// Everyone has these rights to the key, and no others.
  bool Allow(DWORD rights) const {
    std::array<BYTE, SECURITY_MAX_SID_SIZE> everyone = {};
    auto size = static_cast<DWORD>(everyone.size());
    std::array<BYTE, 256> list = {};
    auto* const acl = reinterpret_cast<ACL*>(list.data());
    SECURITY_DESCRIPTOR descriptor;
    return CreateWellKnownSid(WinWorldSid, nullptr, everyone.data(), &size) &&
           InitializeAcl(acl, static_cast<DWORD>(list.size()), ACL_REVISION) &&
           AddAccessAllowedAce(acl, ACL_REVISION, rights, everyone.data()) &&
           InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION) &&
           SetSecurityDescriptorDacl(&descriptor, TRUE, acl, FALSE) &&
           RegSetKeySecurity(key_, DACL_SECURITY_INFORMATION, &descriptor) == ERROR_SUCCESS;
  }

  HKEY key_ = nullptr;
  std::vector<std::unique_ptr<DeniedKey>> below_;
  bool made_ = false;
};

// ---- Folders and files

TEST_F(Adverse, MissingTemporaryFolderEndsTheStartWithItsMessage) {
  const SuiteFolder suite;
  const std::wstring wrong[] = {suite.temp() + L"\\nowhere", suite.marl(), L"Q:\\",
                                suite.temp() + L"\\" + std::wstring(300, L'x')};
  for (const std::wstring& folder : wrong) {
    SCOPED_TRACE(ToUtf8(folder));
    const RunningMarl marl(suite, {}, {}, folder);
    EXPECT_TRUE(Ends(marl, L"Permission denied"));
    EXPECT_EQ(settings.Get(L"Left"), std::nullopt);
  }
}

TEST_F(Adverse, WithoutTheVariablesTheTemporaryFolderIsThePlatforms) {
  const SuiteFolder suite;
  const RunningMarl marl(suite, {}, {}, L"");
  ASSERT_TRUE(marl.WaitForWindow());
  EXPECT_TRUE(Close(marl));
}

TEST_F(Adverse, IconLibraryThatIsMissingOrBrokenIsSilent) {
  const SuiteFolder suite;
  const std::wstring library = suite.path() + L"\\q17icl.oru";
  for (const std::string& bytes :
       {std::string(), "MZ" + std::string(5000, '\x90'), std::string(100, '\0')}) {
    ASSERT_TRUE(WriteFileAt(library, bytes));
    EXPECT_TRUE(Works(suite));
  }
  ASSERT_TRUE(DeleteFileW(library.c_str()));
  EXPECT_TRUE(Works(suite));
}

TEST_F(Adverse, ReadOnlyProgramFolderStaysAsItIs) {
  const SuiteFolder suite;
  const auto before = suite.Files();
  const auto mark = [&](DWORD attributes) {
    for (const auto& [path, state] : before) {
      EXPECT_TRUE(SetFileAttributesW(path.c_str(), attributes)) << ToUtf8(path);
    }
    EXPECT_TRUE(SetFileAttributesW(suite.path().c_str(), attributes));
  };
  mark(FILE_ATTRIBUTE_READONLY);
  EXPECT_TRUE(Works(suite));
  EXPECT_EQ(suite.Files(), before);
  mark(FILE_ATTRIBUTE_NORMAL);
}

TEST_F(Adverse, SkinsFolderThatIsAFileLeavesTheFileDialogWithoutItsFolder) {
  const SuiteFolder suite;
  ASSERT_TRUE(WriteFileAt(suite.path() + L"\\Skins", "a file"));
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main && BringForward(main));
  Keys(L"setgui");
  const Dialog dialog(marl, L"Display settings");
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(dialog.Press(L"&Save..."));
  const HWND files = marl.WaitForWindow(kPlatformDialog, L"Save As");
  ASSERT_TRUE(files);
  PostMessageW(files, WM_COMMAND, IDCANCEL, 0);
  EXPECT_TRUE(WaitUntil([&] { return !IsWindow(files); }));
  EXPECT_TRUE(dialog.Leave(L"Cancel"));
  EXPECT_TRUE(Close(marl));
}

TEST_F(Adverse, WithoutAProgramForPagesTheShellChoosesOne) {
  const ClassKey extension(L".html", L"MarlTestNothing");
  ASSERT_TRUE(extension.made());
  const ClassKey address(L"http\\shell\\open\\command", L"\"" + g_programs.standIn + L"\" \"%1\"");
  ASSERT_TRUE(address.made());
  settings.SetRegistry(L"Settings", L"TrackingServer", L"alpha");
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  Click(IconOf(main, kTrackProjects));
  Click(IconOf(main, kAdministrator));
  const std::vector<Started> started = suite.WaitForTools(2);
  ASSERT_EQ(started.size(), 2u);
  EXPECT_TRUE(std::any_of(started.begin(), started.end(), [](const Started& one) {
    return one.arguments.find(L"http://alpha/OruCadence") != std::wstring::npos;
  }));
  EXPECT_EQ(
      std::count(started.begin(), started.end(), Start(suite, L"Q17Warden.exe", L"alpha /port=80")),
      1);
  EXPECT_TRUE(Close(marl));
}

/// A folder on a small file system of its own, which `./marl` makes; empty if it cannot.
std::wstring SmallDisk() {
  std::wstring folder = Environment(L"MARL_SMALL_DISK");
  std::replace(folder.begin(), folder.end(), L'/', L'\\');
  return folder.empty() ? folder : L"Z:" + folder;
}

/// Fills the small disk to the last byte while this lives.
class FullDisk {
 public:
  FullDisk() {
    // What a page has left is filled byte by byte.
    const std::string much(4096, 'x');
    for (int n = 0; n < 100'000 && Append(much); ++n) {
    }
    while (Append("x")) {
    }
    full_ = !Append("x");
  }
  ~FullDisk() { DeleteFileW(path_.c_str()); }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;
  bool full() const { return full_; }

 private:
  bool Append(const std::string& bytes) const {
    const HANDLE file =
        CreateFileW(path_.c_str(), FILE_APPEND_DATA, 0, nullptr, OPEN_ALWAYS, 0, nullptr);
    DWORD written = 0;
    const bool done =
        file != INVALID_HANDLE_VALUE &&
        WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
        written == bytes.size();
    CloseHandle(file);
    return done;
  }

  const std::wstring path_ = SmallDisk() + L"\\filler";
  bool full_ = false;
};

class AdverseDisk : public Adverse {
 protected:
  void SetUp() override {
    if (disk.empty()) GTEST_SKIP() << "There is no small file system.";
    ASSERT_TRUE(CreateDirectoryW(temp.c_str(), nullptr));
  }
  void TearDown() override {
    if (disk.empty()) return;
    for (const wchar_t* const name : {L"\\new.qsk", L"\\old.qsk"}) {
      DeleteFileW((disk + name).c_str());
    }
    RemoveDirectoryW(temp.c_str());
  }
  const std::wstring disk = SmallDisk();
  const std::wstring temp = disk + L"\\temp";
};

TEST_F(AdverseDisk, FullTemporaryFolderEndsTheStartAndTheNextOneCleansUp) {
  const SuiteFolder suite;
  {
    const FullDisk full;
    ASSERT_TRUE(full.full());
    const RunningMarl marl(suite, {}, {}, temp);
    EXPECT_TRUE(Ends(marl, L"Permission denied"));
  }
  const RunningMarl marl(suite, {}, {}, temp);
  ASSERT_TRUE(marl.WaitForWindow());
  EXPECT_TRUE(RemoveDirectoryW(temp.c_str())) << "a file is left";
  EXPECT_TRUE(CreateDirectoryW(temp.c_str(), nullptr));
  EXPECT_TRUE(Close(marl));
}

TEST_F(AdverseDisk, SkinThatDoesNotFitLeavesTheProgramRunning) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main && BringForward(main));
  Keys(L"setgui");
  const Dialog dialog(marl, L"Display settings");
  ASSERT_TRUE(dialog);
  const auto save = [&](const wchar_t* name) {
    ASSERT_TRUE(WaitUntil([&] { return dialog.InFront(); }));
    ASSERT_TRUE(dialog.Press(L"&Save..."));
    const HWND files = marl.WaitForWindow(kPlatformDialog, L"Save As");
    ASSERT_TRUE(files && BringForward(files));
    HWND field = nullptr;
    ASSERT_TRUE(WaitUntil([&] {
      for (const int id : {0x47C, 0x480}) {
        field = GetDlgItem(files, id);
        if (field && IsWindowVisible(field)) return true;
      }
      return false;
    }));
    SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>((disk + name).c_str()));
    PostMessageW(files, WM_COMMAND, IDOK, 0);
    ASSERT_TRUE(WaitUntil([&] { return !IsWindow(files) || !IsWindowVisible(files); }));
  };
  {
    const FullDisk full;
    ASSERT_TRUE(full.full());
    save(L"\\new.qsk");
    // Nothing is said, as for any line that cannot be written; nothing of it is on the disk.
    ASSERT_TRUE(WaitUntil([&] { return dialog.InFront() || marl.Box(); }));
    EXPECT_FALSE(marl.Box()) << ToUtf8(marl.Box().Text());
    EXPECT_EQ(ReadFileAt(disk + L"\\new.qsk").value_or(""), "");
  }
  save(L"\\old.qsk");
  EXPECT_TRUE(WaitUntil(
      [&] { return ReadFileAt(disk + L"\\old.qsk").value_or("").ends_with("</marlskin>\r\n"); }));
  EXPECT_TRUE(dialog.Leave(L"Cancel"));
  EXPECT_TRUE(Close(marl));
}

TEST_F(Adverse, WithoutCommonControlsOfVersionSixItLooksOlderAndWorks) {
  const SuiteFolder suite;
  const std::wstring plain = suite.path() + L"\\Plain.exe";
  ASSERT_TRUE(CopyFileW(suite.marl().c_str(), plain.c_str(), TRUE));
  // Without the dependency in its manifest a program gets the controls of version 5.
  std::string bytes = ReadFileAt(plain).value_or("");
  const std::size_t from = bytes.find("<dependency>");
  const std::size_t to = bytes.find("</dependency>", from);
  ASSERT_NE(from, std::string::npos);
  ASSERT_NE(to, std::string::npos);
  ASSERT_NE(bytes.substr(from, to - from).find("Common-Controls"), std::string::npos);
  bytes.replace(from, to + 13 - from, to + 13 - from, ' ');
  ASSERT_TRUE(WriteFileAt(plain, bytes));
  {
    const RunningMarl marl(suite, {}, plain);
    ASSERT_TRUE(marl.WaitForWindow());
    ASSERT_TRUE(marl.PressMenu(L'O', L'O'));
    const Dialog options(marl, L"Options");
    ASSERT_TRUE(options);
    options.Picture("without-common-controls-6");
    EXPECT_TRUE(options.Leave(L"Cancel"));
    EXPECT_TRUE(Close(marl));
  }
  EXPECT_TRUE(Works(suite, L"OK", plain));
}

/// Takes handles of graphics objects in another process until it gets no more. Those stay taken.
bool TakeAllGraphicsHandles(const RunningMarl& marl) {
  // CreateSolidBrush, whose address is the thread's parameter, is called until it returns 0.
#if defined(_WIN64)
  static constexpr BYTE kCode[] = {0x53, 0x48, 0x83, 0xEC, 0x20, 0x48, 0x89, 0xCB, 0xB9,
                                   0x56, 0x34, 0x12, 0x00, 0xFF, 0xD3, 0x48, 0x85, 0xC0,
                                   0x75, 0xF4, 0x48, 0x83, 0xC4, 0x20, 0x5B, 0xC3};
#else
  static constexpr BYTE kCode[] = {0x53, 0x8B, 0x5C, 0x24, 0x08, 0x68, 0x56, 0x34, 0x12, 0x00,
                                   0xFF, 0xD3, 0x85, 0xC0, 0x75, 0xF5, 0x5B, 0xC2, 0x04, 0x00};
#endif
  const HANDLE process = OpenProcess(PROCESS_ALL_ACCESS, FALSE, marl.id());
  if (!process) return false;
  void* const code =
      VirtualAllocEx(process, nullptr, sizeof kCode, MEM_COMMIT, PAGE_EXECUTE_READWRITE);
  bool taken = false;
  if (code && WriteProcessMemory(process, code, kCode, sizeof kCode, nullptr)) {
    LPTHREAD_START_ROUTINE entry = nullptr;
    std::memcpy(&entry, &code, sizeof entry);
    void* const function =
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"gdi32.dll"), "CreateSolidBrush"));
    const HANDLE thread = CreateRemoteThread(process, nullptr, 0, entry, function, 0, nullptr);
    taken = thread &&
            WaitForSingleObject(thread, static_cast<DWORD>(kDeadline.count())) == WAIT_OBJECT_0;
    CloseHandle(thread);
  }
  CloseHandle(process);
  return taken;
}

TEST_F(Adverse, WithoutHandlesOfGraphicsItStaysUsableAndExits) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(TakeAllGraphicsHandles(marl));
  RedrawWindow(main, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
  SendMessageW(main, WM_NULL, 0, 0);
  MoveMouse(IconOf(main, kEdit));
  Click(IconOf(main, kEdit));
  EXPECT_EQ(suite.WaitForTools(1), (std::vector<Started>{Start(suite, L"Q17Bench.exe")}));
  Screenshot("no-graphics-handles", main);
  PostMessageW(main, WM_SYSCOMMAND, SC_MINIMIZE, 0);
  EXPECT_TRUE(WaitUntil([&] { return IsIconic(main) || !IsWindowVisible(main); }));
  PostMessageW(main, RegisterWindowMessageW(L"msgMarlMenu"), 0, WM_LBUTTONDBLCLK);
  EXPECT_TRUE(WaitUntil([&] { return IsWindowVisible(main) && !IsIconic(main); }));
  ASSERT_TRUE(marl.Running());
  EXPECT_TRUE(Close(marl));
}

// ---- Registry

TEST_F(Adverse, FontThatIsNotThereIsReplaced) {
  settings.SetRegistry(L"GUI", L"Font1", L"No Such Font|10|b");
  settings.SetRegistry(L"GUI", L"Font2", std::wstring(200, L'f') + L"|99999|bui");
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main && BringForward(main));
  MoveMouse(IconOf(main, kEdit));
  Screenshot("missing-font", main);
  EXPECT_TRUE(Close(marl));
}

struct Right {
  const char* name;
  DWORD rights;
};

class AdverseRights : public Adverse, public testing::WithParamInterface<Right> {};

TEST_P(AdverseRights, ToTheKeysAreMissedSilently) {
  settings.SetRegistryNumber(L"GUI", L"Angle", 30);
  settings.SetRegistry(L"Settings", L"TrackingServer", L"alpha");
  settings.SetRegistry(L"ServerMRU", L"MRU1", L"alpha");
  settings.SetRegistry(L"HiddenSegments", L"RegEx1", L"[0-9]+");
  settings.SetRegistry(L"Segmentation", L"DontSplit1", L"Mr.");
  settings.SetRegistryNumber(L"Proxy", L"UseProxy", 1);
  const SuiteFolder suite;
  const auto before = ReadStored(L"Software\\Oru\\Marl\\HiddenSegments");
  {
    const DeniedKey denied(kMarlKey, GetParam().rights);
    ASSERT_TRUE(denied.made());
    EXPECT_TRUE(Works(suite));
  }
  EXPECT_EQ(ReadStored(L"Software\\Oru\\Marl\\HiddenSegments"), before);
  EXPECT_TRUE(Works(suite));
}

INSTANTIATE_TEST_SUITE_P(Missing, AdverseRights,
                         testing::Values(Right{"Read", KEY_QUERY_VALUE},
                                         Right{"Write", KEY_SET_VALUE},
                                         Right{"List", KEY_ENUMERATE_SUB_KEYS},
                                         Right{"All", KEY_ALL_ACCESS}),
                         [](const auto& right) { return std::string(right.param.name); });

TEST_F(Adverse, KeyThatCannotBeDeletedKeepsOldExpressionsBeyondTheNewOnes) {
  constexpr wchar_t kListKey[] = L"Software\\Oru\\Marl\\HiddenSegments";
  constexpr wchar_t kKeyBelow[] = L"Software\\Oru\\Marl\\HiddenSegments\\Below";
  const std::string before[] = {"one", "two", "three", "four"};
  for (int n = 0; n < 4; ++n) {
    PutStored(kListKey, "RegEx" + std::to_string(n + 1), Text(before[n]));
  }
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  const auto removeFirst = [&] {
    ASSERT_TRUE(marl.PressMenu(L'O', L'O'));
    const Dialog options(marl, L"Options");
    ASSERT_TRUE(options && WaitUntil([&] { return options.InFront(); }));
    Chord({VK_MENU}, 'H');
    ASSERT_TRUE(WaitUntil([&] { return options.Button(L"&Remove") != nullptr; }));
    const HWND list = options.Find(L"ListBox");
    const std::size_t rows = RowsOf(list).size();
    Click(RowOf(list, 0));
    ASSERT_TRUE(WaitUntil([&] { return SelectionOf(list) == std::vector<int>{0}; }));
    ASSERT_TRUE(options.Press(L"&Remove"));
    ASSERT_TRUE(WaitUntil([&] { return RowsOf(list).size() == rows - 1; }));
    ASSERT_TRUE(options.Leave(L"OK"));
    ASSERT_TRUE(WaitUntil([&] { return IsWindowEnabled(main) || marl.Box(); }));
    EXPECT_FALSE(marl.Box()) << ToUtf8(marl.Box().Text());
    // Answered once everything is stored.
    SendMessageW(main, WM_NULL, 0, 0);
  };
  // A key with another one below it.
  PutStored(kKeyBelow, "kept", Text("x"));
  ASSERT_NO_FATAL_FAILURE(removeFirst());
  StoredKey left = {{"RegEx1", Text("two")},
                    {"RegEx2", Text("three")},
                    {"RegEx3", Text("four")},
                    {"RegEx4", Text("four")}};
  EXPECT_EQ(ReadStored(kListKey), left);
  EXPECT_EQ(ReadStored(kKeyBelow), (StoredKey{{"kept", Text("x")}}));
  EXPECT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, kKeyBelow), ERROR_SUCCESS);
  // A key that may not be deleted. Wine asks nobody for that right.
  const DeniedKey denied(kListKey, DELETE);
  if (denied.made()) {
    ASSERT_NO_FATAL_FAILURE(removeFirst());
    left["RegEx1"] = Text("three");
    left["RegEx2"] = Text("four");
    EXPECT_EQ(ReadStored(kListKey), left);
  }
  EXPECT_TRUE(Close(marl));
}

TEST_F(Adverse, SettingsThatCannotBeWrittenKeepTheirValues) {
  settings.Set(L"Left", L"321");
  settings.Set(L"Tools", L"False");
  const SuiteFolder suite;
  const DeniedKey denied(L"Software\\VB and VBA Program Settings\\Marl", KEY_SET_VALUE);
  ASSERT_TRUE(denied.made());
  EXPECT_TRUE(Works(suite));
  EXPECT_EQ(settings.Get(L"Left"), L"321");
  EXPECT_EQ(settings.Get(L"Tools"), L"False");
}

const std::pair<const wchar_t*, const wchar_t*> kValues[] = {
    {L"GUI", L"Angle"},        {L"GUI", L"IconsPerRow"},
    {L"GUI", L"Font1"},        {L"GUI", L"DisplayIcons"},
    {L"GUI", L"Color1"},       {L"Settings", L"TrackingServer"},
    {L"ServerMRU", L"MRU1"},   {L"HiddenSegments", L"RegEx1"},
    {L"Proxy", L"UseProxy"},   {L"Proxy", L"Port"},
    {L"Proxy", L"Server"},     {L"Segmentation", L"DontSplit1"},
    {L"Settings", L"Unknown"}, {L"GUI", L""},
};

constexpr int kValueCount = static_cast<int>(std::size(kValues));

/// What a start with the options shows, for each of the values alone.
void PrintOutcomes(const wchar_t* key, const wchar_t* value, DWORD kind,
                   const std::wstring& outcome) {
  std::cout << ToUtf8(key) << '\\' << ToUtf8(value) << ", kind " << kind << ": "
            << (outcome.empty() ? "works" : ToUtf8(outcome)) << '\n';
}

bool IsEndOfTheRuntime(const std::wstring& outcome) {
  return outcome.empty() || outcome == L"Type mismatch" || outcome == L"Overflow" ||
         outcome == L"Subscript out of range";
}

TEST_F(Adverse, ValuesOfTheWrongKindAreReplacedOrUsedOrEndItWithTheRuntimesText) {
  const SuiteFolder suite;
  const std::vector<BYTE> odd = {0xFF, 0xD8, 0x00};
  const std::vector<std::pair<DWORD, std::vector<BYTE>>> contents = {
      {REG_BINARY, odd}, {REG_MULTI_SZ, odd}, {REG_DWORD, odd}, {REG_QWORD, {}}, {99, odd}};
  // In a sample, each kind has another value.
  const int step = Times(kValueCount, 1);
  int number = 0;
  for (const auto& [kind, bytes] : contents) {
    for (const auto& [key, value] : kValues) {
      const int at = number++;
      if (at % step != at / kValueCount % step) continue;
      RegDeleteTreeW(HKEY_CURRENT_USER, kMarlKey);
      settings.SetRegistryBytes(key, value, kind, bytes);
      const std::wstring outcome = Outcome(suite);
      EXPECT_TRUE(IsEndOfTheRuntime(outcome)) << ToUtf8(outcome);
      PrintOutcomes(key, value, kind, outcome);
    }
  }
}

TEST_F(Adverse, ValuesOfAMegabyteAreHeldOrEndItWithTheRuntimesText) {
  const SuiteFolder suite;
  std::vector<BYTE> bytes(1 << 20, 'x');
  bytes.back() = bytes[bytes.size() - 2] = 0;
  // In a sample, each kind has another value.
  const int step = Times(kValueCount, 1);
  int number = 0;
  for (const DWORD kind : {REG_SZ, REG_EXPAND_SZ, REG_BINARY}) {
    for (const auto& [key, value] : kValues) {
      const int at = number++;
      if (at % step != at / kValueCount % step) continue;
      RegDeleteTreeW(HKEY_CURRENT_USER, kMarlKey);
      settings.SetRegistryBytes(key, value, kind, bytes);
      const std::wstring outcome = Outcome(suite, L"Cancel");
      EXPECT_TRUE(IsEndOfTheRuntime(outcome)) << ToUtf8(outcome.substr(0, 200));
      PrintOutcomes(key, value, kind, outcome);
    }
  }
}

TEST_F(Adverse, ListsOfTenThousandValuesAreHeld) {
  for (const auto& [key, value] :
       {std::pair{L"HiddenSegments", L"RegEx"}, std::pair{L"ServerMRU", L"MRU"},
        std::pair{L"Segmentation", L"DontSplit"}}) {
    HKEY opened = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, (std::wstring(kMarlKey) + L"\\" + key).c_str(), 0,
                              nullptr, 0, KEY_SET_VALUE, nullptr, &opened, nullptr),
              ERROR_SUCCESS);
    for (int n = 1; n <= 10'000; ++n) {
      RegSetValueExW(opened, (value + std::to_wstring(n)).c_str(), 0, REG_SZ,
                     reinterpret_cast<const BYTE*>(L"[0-9]"), 6 * sizeof(wchar_t));
    }
    RegCloseKey(opened);
  }
  const SuiteFolder suite;
  EXPECT_TRUE(Works(suite));
  const auto list = ReadStored(L"Software\\Oru\\Marl\\HiddenSegments");
  ASSERT_TRUE(list);
  EXPECT_EQ(list->size(), 10'000u);
}

// ---- Ends and starts

/// Every stored value, by its place.
std::map<std::wstring, KeyImage::Value> ValuesIn(const std::vector<KeyImage>& images) {
  std::map<std::wstring, KeyImage::Value> values;
  const std::function<void(const std::wstring&, const KeyImage&)> add =
      [&](const std::wstring& place, const KeyImage& image) {
        for (const auto& [name, value] : image.values) values[place + L'|' + name] = value;
        for (const auto& [name, key] : image.keys) add(place + L'\\' + name, key);
      };
  for (std::size_t i = 0; i < images.size(); ++i) add(std::to_wstring(i), images[i]);
  return values;
}

/// Changes a setting in the options and takes them over. False if that fails.
bool ChangeOptions(const RunningMarl& marl) {
  if (!marl.PressMenu(L'O', L'O')) return false;
  const Dialog options(marl, L"Options");
  if (!options) return false;
  PostMessageW(options.Button(L"&Display tooltips for switchboard buttons"), BM_CLICK, 0, 0);
  PostMessageW(options.Button(L"OK"), BM_CLICK, 0, 0);
  return true;
}

TEST_F(Adverse, KilledAtAnyMomentItStartsAgainWithItsSettings) {
  settings.Set(L"Left", L"321");
  settings.Set(L"Top", L"654");
  settings.SetRegistry(L"HiddenSegments", L"RegEx1", L"[0-9]+");
  settings.SetRegistry(L"HiddenSegments", L"RegEx2", L"[A-Z]+");
  const SuiteFolder suite;
  // Old or new: as it was, and as two changes leave it.
  std::vector<std::map<std::wstring, KeyImage::Value>> known = {ValuesIn(settings.Image())};
  for (int change = 0; change < 2; ++change) {
    const RunningMarl marl(suite);
    const HWND main = marl.WaitForWindow();
    ASSERT_TRUE(main && ChangeOptions(marl));
    ASSERT_TRUE(WaitUntil([&] { return IsWindowEnabled(main) != FALSE; }));
    // Answered once everything is stored.
    SendMessageW(main, WM_NULL, 0, 0);
    known.push_back(ValuesIn(settings.Image()));
  }
  const int rounds = Times(4, 100);
  std::size_t most = 0;
  for (int round = 0; round < rounds; ++round) {
    {
      // Ended at its destruction, wherever it is by then: in its start, or in a change.
      const RunningMarl marl(suite);
      const bool changes = round % 2 == 1;
      if (changes) {
        ASSERT_TRUE(marl.WaitForWindow() && ChangeOptions(marl));
      }
      WaitUntil([] { return false; }, std::chrono::milliseconds(Below(changes ? 60 : 1200)));
    }
    for (const auto& [place, value] : ValuesIn(settings.Image())) {
      EXPECT_TRUE(std::any_of(known.begin(), known.end(),
                              [&](const auto& state) {
                                const auto old = state.find(place);
                                return old != state.end() && old->second == value;
                              }))
          << "round " << round << ": " << ToUtf8(place);
    }
    EXPECT_EQ(settings.Get(L"Left"), L"321");
    EXPECT_EQ(settings.Get(L"Top"), L"654");
    most = std::max(most, Temporary(suite).size());
  }
  EXPECT_LE(most, 1u) << "probes pile up";
  const RunningMarl marl(suite);
  ASSERT_TRUE(marl.WaitForWindow());
  EXPECT_TRUE(Temporary(suite).empty());
  Screenshot("after-kills");
  EXPECT_TRUE(Close(marl));
  std::cout << rounds << " kills, at most " << most << " temporary files\n";
}

TEST_F(Adverse, OfStartsAtTheSameMomentExactlyOneStays) {
  settings.Set(L"Left", L"321");
  settings.Set(L"Top", L"234");
  const SuiteFolder suite;
  const int rounds = Times(1, 200);
  int all = 0;
  for (int round = 0; round < rounds && !HasFailure(); ++round) {
    std::vector<std::unique_ptr<RunningMarl>> starts;
    const int count = rounds == 1 ? 6 : 2 + Below(9);
    for (int i = 0; i < count; ++i) starts.push_back(std::make_unique<RunningMarl>(suite));
    all += count;
    const auto running = [&] {
      int left = 0;
      for (const auto& start : starts) {
        if (!start->Running()) continue;
        ++left;
        const MessageBoxWindow box = start->Box();
        if (!box) continue;
        EXPECT_EQ(box.Text(), L"Marl is already running");
        // The boxes lie upon each other.
        PostMessageW(box.window(), WM_COMMAND, IDOK, 0);
      }
      return left;
    };
    ASSERT_TRUE(WaitUntil([&] { return running() == 1; })) << running() << " of " << count;
    for (const auto& start : starts) {
      if (start->Running()) {
        EXPECT_TRUE(start->WaitForWindow());
        EXPECT_TRUE(Close(*start));
      } else {
        EXPECT_EQ(start->WaitForExit(), 0u);
      }
    }
    EXPECT_TRUE(Temporary(suite).empty());
    EXPECT_EQ(settings.Get(L"Left"), L"321");
  }
  std::cout << rounds << " rounds, " << all << " starts\n";
}

/// A day of the program: MARL_SOAK is its length in minutes, MARL_SOAK_ACT the only act of its
/// rounds.
TEST_F(Adverse, DayOfUseKeepsNothing) {
  const int minutes = _wtoi(Environment(L"MARL_SOAK").c_str());
  const std::string only = ToUtf8(Environment(L"MARL_SOAK_ACT"));
  settings.SetRegistry(L"Settings", L"TrackingServer", L"alpha");
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  DdeClient client(DdeClient::Kind::kWide);
  ASSERT_TRUE(client.Connect(L"Marl", L"Marl"));
  std::vector<std::pair<std::string, std::function<void()>>> acts;
  // The splash comes with a start alone.
  for (std::size_t i = 2; i < OpenForms().size(); ++i) {
    acts.emplace_back(OpenForms()[i].name, [&, i] {
      ASSERT_TRUE(OpenForms()[i].open(suite, marl)) << OpenForms()[i].name;
      ASSERT_TRUE(BackToMain(marl)) << OpenForms()[i].name;
    });
  }
  acts.emplace_back("Command", [&] { ASSERT_TRUE(client.Execute(L"PRJ C:\\some\\project.qprx")); });
  acts.emplace_back("Tray", [&] {
    PostMessageW(main, WM_SYSCOMMAND, SC_MINIMIZE, 0);
    ASSERT_TRUE(WaitUntil([&] { return !IsWindowVisible(main); }));
    PostMessageW(main, RegisterWindowMessageW(L"msgMarlMenu"), 0, WM_LBUTTONDBLCLK);
    ASSERT_TRUE(WaitUntil([&] { return IsWindowVisible(main) && !IsIconic(main); }));
  });
  acts.emplace_back("TaskbarCreated",
                    [&] { PostMessageW(main, RegisterWindowMessageW(L"TaskbarCreated"), 0, 0); });
  acts.emplace_back("Button", [&] { Click(IconOf(main, kEdit)); });
  if (!only.empty()) std::erase_if(acts, [&](const auto& act) { return act.first != only; });
  ASSERT_FALSE(acts.empty());
  const auto round = [&] {
    for (const auto& [name, act] : acts) {
      act();
      if (HasFatalFailure()) return;
    }
    SendMessageW(main, WM_NULL, 0, 0);
  };
  // What opens for the first time keeps what it loads.
  for (int i = 0; i < (minutes ? 5 : 1) && !HasFatalFailure(); ++i) round();
  if (HasFatalFailure()) return;
  const std::size_t handles = marl.Handles();
  const std::size_t bytes = marl.PrivateBytes();
  const DWORD graphics = marl.GraphicsObjects();
  const DWORD objects = marl.UserObjects();
  ASSERT_GT(graphics, 0u);
  ASSERT_GT(objects, 0u);
  const ULONGLONG tenth = static_cast<ULONGLONG>(minutes) * 6'000;
  ULONGLONG next = GetTickCount64() + tenth;
  const ULONGLONG end = next + 9 * tenth;
  int rounds = 0;
  do {
    round();
    ++rounds;
    if (minutes && GetTickCount64() >= next) {
      std::cout << rounds << " rounds: " << marl.PrivateBytes() << " private bytes" << std::endl;
      next += tenth;
    }
  } while (GetTickCount64() < end && !HasFatalFailure());
  if (HasFatalFailure()) return;
  std::cout << rounds << " rounds: handles " << handles << " to " << marl.Handles()
            << ", private bytes " << bytes << " to " << marl.PrivateBytes() << ", graphics objects "
            << graphics << " to " << marl.GraphicsObjects() << ", windows and menus " << objects
            << " to " << marl.UserObjects() << '\n';
  EXPECT_LE(marl.Handles(), handles + 16);
  EXPECT_LT(marl.PrivateBytes(), bytes + 8 * 1024 * 1024);
  // After a single round some fonts and pictures are still to come.
  EXPECT_LE(marl.GraphicsObjects(), graphics + (minutes ? 16u : 64u));
  // Those of all programs: Wine's taskbar keeps one for each icon that is added.
  EXPECT_LE(marl.UserObjects(), objects + 16 + static_cast<DWORD>(rounds));
  EXPECT_TRUE(Close(marl));
}

}  // namespace
}  // namespace marl::desktop
