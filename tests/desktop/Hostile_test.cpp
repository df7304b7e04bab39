#include <dde.h>

#include <atomic>
#include <iostream>
#include <memory>
#include <thread>

#include "tests/desktop/Adverse.h"

// Other programs: they send commands and messages of any kind, and change registry, files and the
// suite while the program runs.

namespace marl::desktop {

namespace {

/// Random numbers of one neighbour.
class Dice {
 public:
  explicit Dice(unsigned seed) : random_(seed) {}
  int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }
  std::vector<BYTE> Bytes(int size) {
    std::vector<BYTE> bytes(static_cast<std::size_t>(size));
    for (BYTE& byte : bytes) byte = static_cast<BYTE>(Below(256));
    return bytes;
  }
  template <typename Values>
  const auto& OneOf(const Values& values) {
    return values[static_cast<std::size_t>(Below(static_cast<int>(std::size(values))))];
  }

 private:
  std::mt19937 random_;
};

/// Bytes that are no command, now and then a megabyte of them.
std::vector<BYTE> NoCommand(Dice& dice, int number) {
  std::vector<BYTE> bytes = dice.Bytes(1 + dice.Below(number % 50 == 49 ? 1 << 20 : 200));
  // Also NULs in front.
  bytes[0] = number % 3 == 0 ? 0 : 'x';
  return bytes;
}

bool RunDyingClient() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  std::wstring line = L"\"" + path + L"\" " + kDyingClient;
  STARTUPINFOW info = {};
  info.cb = sizeof info;
  PROCESS_INFORMATION started = {};
  if (!CreateProcessW(path.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                      &info, &started)) {
    return false;
  }
  // It asks every window for a conversation, those of this process too.
  const bool ended = WaitUntil([&] {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    return WaitForSingleObject(started.hProcess, 0) == 0;
  });
  CloseHandle(started.hThread);
  CloseHandle(started.hProcess);
  return ended;
}

class AdverseNeighbours : public Adverse {
 protected:
  /// After all of it: nothing is started, stored or said, and a command arrives.
  void ExpectUnmoved(const SuiteFolder& suite, const RunningMarl& marl) {
    EXPECT_TRUE(suite.WaitForTools(0).empty());
    EXPECT_EQ(settings.Image(), before);
    EXPECT_FALSE(marl.Box()) << ToUtf8(marl.Box().Text());
    EXPECT_TRUE(Tell(L"C:\\some\\project.qprx"));
    EXPECT_TRUE(Close(marl));
  }
  /// One step back to the main form, past any message and dialog. True if the program waits there,
  /// or has ended.
  static bool StepsBack(const RunningMarl& marl) {
    if (!marl.Running()) return true;
    if (const MessageBoxWindow box = marl.Box()) {
      const std::vector<int> buttons = box.Buttons();
      if (!buttons.empty()) box.Press(buttons.back());
      return false;
    }
    marl.DismissSplash();
    const HWND main = marl.Window();
    if (!main || marl.Splash()) return false;
    if (!IsWindowEnabled(main)) {
      const HWND front = FindWindowOf(marl.id(), [&](HWND window) {
        return window != main && IsWindowVisible(window) && IsWindowEnabled(window) &&
               (ClassOf(window) == L"MarlForm" || ClassOf(window) == kPlatformDialog);
      });
      if (front) PostMessageW(front, WM_CLOSE, 0, 0);
      return false;
    }
    if (IsWindowVisible(main)) return true;
    PostMessageW(main, RegisterWindowMessageW(L"msgMarlMenu"), 0, WM_LBUTTONDBLCLK);
    return false;
  }

  /// Opens one of the forms that keys open, if nothing comes between.
  void Open(const RunningMarl& marl, HWND main) {
    if (!BringForward(main)) return;
    switch (Below(5)) {
      case 0: Keys(L"setgui"); break;
      case 1: Chord({VK_SHIFT}, VK_F6); break;
      case 2: Chord({VK_CONTROL}, VK_F1); break;
      case 3: Click(IconOf(main, kChangeServer)); break;
      default: Chord({VK_CONTROL}, 'P'); break;
    }
    WaitUntil([&] { return !IsWindowEnabled(main) || !marl.Running(); }, std::chrono::seconds(3));
  }

  std::vector<KeyImage> before;
};

}  // namespace

TEST_F(AdverseNeighbours, BurstOfCommandsFromThreeClientsChangesOnlyTheProject) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  ASSERT_TRUE(marl.WaitForWindow());
  before = settings.Image();
  const int each = Times(200, 10'000) / 3 + 1;
  std::atomic<int> sent = 0;
  std::atomic<int> wrong = 0;
  std::atomic<int> busy = 3;
  // The library belongs to the thread that has initialised it.
  std::vector<std::thread> clients;
  for (const DdeClient::Kind kind :
       {DdeClient::Kind::kWide, DdeClient::Kind::kNarrow, DdeClient::Kind::kWide}) {
    clients.emplace_back([&, kind, seed = static_cast<unsigned>(clients.size())] {
      Dice dice(seed);
      DdeClient client(kind);
      if (!client.Connect(L"Marl", L"Marl")) ++wrong;
      for (int i = 0; i < each && wrong == 0; ++i) {
        const bool command = dice.Below(3) == 0;
        const bool taken = command ? client.Execute(L"PRJ C:\\some\\project.qprx")
                                   : client.ExecuteBytes(NoCommand(dice, i));
        if (taken != command) ++wrong;
        ++sent;
      }
      --busy;
    });
  }
  // The library sends messages to every window, those of this thread too.
  while (busy > 0) {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
  }
  for (std::thread& client : clients) client.join();
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(sent, 3 * each);
  std::cout << sent << " commands of three clients\n";
  ExpectUnmoved(suite, marl);
}

TEST_F(AdverseNeighbours, ConversationsThatAreWrongOrUnfinishedChangeNothing) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  ASSERT_TRUE(marl.WaitForWindow());
  before = settings.Image();
  Dice dice(21);
  // Other transactions than execute, in any format.
  {
    DdeClient client(DdeClient::Kind::kWide);
    ASSERT_TRUE(client.Connect(L"Marl", L"Marl"));
    for (const UINT format : {UINT{CF_TEXT}, 0xC123U}) {
      for (const UINT type :
           {UINT{XTYP_POKE}, UINT{XTYP_REQUEST}, UINT{XTYP_ADVSTART}, UINT{XTYP_ADVSTOP}}) {
        client.Transact(type, format, dice.Bytes(100));
      }
    }
    client.Transact(XTYP_POKE, CF_TEXT, dice.Bytes(1 << 20));
  }
  EXPECT_TRUE(Tell(L"C:\\after.qprx")) << "other conversations go on";
  // Unfinished ones.
  for (int i = 0; i < Times(10, 200); ++i) {
    DdeClient client(DdeClient::Kind::kWide);
    ASSERT_TRUE(client.Connect(L"Marl", L"Marl"));
    client.Abandon(L"PRJ C:\\abandoned.qprx");
  }
  // Messages in any order, by clients that vanish.
  int answered = 0;
  for (int i = 0; i < Times(10, 300); ++i) {
    RawDdeClient client;
    if (!client.Connect()) continue;
    ++answered;
    for (int left = dice.Below(12); left > 0; --left) {
      switch (dice.Below(6)) {
        case 0: client.PostExecute(NoCommand(dice, i)); break;
        case 1: client.PostExecute({'x', 0, 'P', 0}); break;
        case 2: client.PostData(WM_DDE_POKE, CF_TEXT, dice.Bytes(dice.Below(300) + 1)); break;
        case 3: client.PostData(WM_DDE_ADVISE, CF_BITMAP, dice.Bytes(dice.Below(20) + 1)); break;
        case 4: client.Post(WM_DDE_REQUEST, MAKELPARAM(CF_TEXT, dice.Below(0x10000))); break;
        default: client.Post(WM_DDE_UNADVISE, MAKELPARAM(dice.Below(20), 0)); break;
      }
      if (dice.Below(8) == 0) client.Post(WM_DDE_TERMINATE, 0);
    }
  }
  EXPECT_GT(answered, 0);
  for (int i = 0; i < Times(2, 30); ++i) EXPECT_TRUE(RunDyingClient());
  ExpectUnmoved(suite, marl);
}

namespace {

class AdverseMessages : public Adverse, public testing::WithParamInterface<OpenForm> {
 protected:
  /// Messages that end the program or are input: what they do, a user can do.
  static bool OfUser(UINT message) {
    switch (message) {
      case WM_DESTROY:
      case WM_NCDESTROY:
      case WM_CLOSE:
      case WM_QUIT:
      case WM_QUERYENDSESSION:
      case WM_ENDSESSION:
      case WM_SYSCOMMAND:
      case WM_ENABLE:
      case WM_SHOWWINDOW:
      case WM_COMMAND:
      case WM_SETREDRAW:  // the platform hides the window
      case 0x0313:        // opens the window's menu
        return true;
      default:
        return (message >= WM_NCMOUSEMOVE && message <= 0x00AD) ||
               (message >= WM_KEYFIRST && message <= 0x010F) ||
               (message >= WM_MOUSEFIRST && message <= 0x020E);
    }
  }

  /// Waits until the window has handled all messages that were posted to it: one that hides it is
  /// sent, and one that shows it is posted.
  static bool AllHandled(HWND form) {
    DWORD_PTR answer = 0;
    return SendMessageTimeoutW(form, WM_SETREDRAW, FALSE, 0, SMTO_NORMAL,
                               static_cast<UINT>(kDeadline.count()), &answer) &&
           PostMessageW(form, WM_SETREDRAW, TRUE, 0) &&
           WaitUntil([&] { return IsWindowVisible(form) || !IsWindow(form); });
  }

  UINT AnyMessage() {
    static const UINT registered[] = {RegisterWindowMessageW(L"TaskbarCreated"),
                                      RegisterWindowMessageW(L"msgMarlMenu")};
    switch (Below(6)) {
      case 0: return registered[Below(2)];
      case 1: return WM_COMMAND;
      case 2:
      case 3: return static_cast<UINT>(WM_USER + Below(0xC000 - WM_USER));
      default: {
        UINT message = 0;
        do {
          message = static_cast<UINT>(Below(WM_USER));
        } while (OfUser(message));
        return message;
      }
    }
  }
  DWORD AnyParameter(const std::vector<HWND>& windows) {
    switch (Below(5)) {
      case 0: return 0;
      case 1: return static_cast<DWORD>(Below(8));
      case 2:
        return HandleToULong(
            windows[static_cast<std::size_t>(Below(static_cast<int>(windows.size())))]);
      case 3: return 0xFFFFFFFF;
      default: return Bits();
    }
  }
};

}  // namespace

TEST_P(AdverseMessages, OfAnyKindStartNothingAndStoreNothing) {
  settings.SetRegistry(L"Settings", L"TrackingServer", L"alpha");
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND form = GetParam().open(suite, marl);
  ASSERT_TRUE(form);
  const auto before = settings.Image();
  std::vector<HWND> windows = {marl.Window(), form};
  for (HWND child = GetWindow(form, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    windows.push_back(child);
  }
  constexpr DWORD kUnknownCommand = 0x8000;
  const bool passing = GetParam().name == std::string("Splash");
  const int messages = Times(1000, 100'000);
  int posted = 0;
  UINT message = 0;
  for (int i = 0; i < messages; ++i) {
    // The splash goes by itself.
    if (passing && !IsWindow(form)) break;
    message = AnyMessage();
    DWORD w = AnyParameter(windows);
    DWORD l = AnyParameter(windows);
    if (message == WM_COMMAND) {
      w |= kUnknownCommand;
      // What a control reports is what its user did.
      if (IsWindow(static_cast<HWND>(ULongToHandle(l)))) l = Bits() | 1;
    }
    // The icon's menu and its double click.
    if (message >= 0xC000 && l >= WM_MOUSEFIRST && l <= WM_MOUSELAST) l = 0;
    // Some messages cannot be posted.
    if (PostMessageW(form, message, w, static_cast<LPARAM>(static_cast<LONG>(l)))) ++posted;
    if (i % 100 != 0) continue;
    std::string bytes(static_cast<std::size_t>(Below(100)), static_cast<char>(Bits()));
    COPYDATASTRUCT data = {Bits(), static_cast<DWORD>(bytes.size()), bytes.data()};
    DWORD_PTR answer = 0;
    SendMessageTimeoutW(form, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data), SMTO_NORMAL,
                        static_cast<UINT>(kDeadline.count()), &answer);
    ASSERT_TRUE(AllHandled(form) || !marl.Running() || !IsWindow(form))
        << "it hangs before message " << i;
    ASSERT_TRUE(marl.Running()) << "ended before message " << i;
    ASSERT_FALSE(marl.Box()) << ToUtf8(marl.Box().Text());
  }
  EXPECT_TRUE(AllHandled(form) || !IsWindow(form));
  ASSERT_TRUE(marl.Running());
  EXPECT_GT(posted, passing ? 0 : messages / 2);
  EXPECT_TRUE(suite.WaitForTools(0).empty());
  EXPECT_EQ(settings.Image(), before);
  std::cout << posted << " messages\n";
  Screenshot("messages-" + std::string(GetParam().name), form);
  ASSERT_TRUE(marl.WaitForWindow());
  EXPECT_TRUE(Close(marl));
}

INSTANTIATE_TEST_SUITE_P(To, AdverseMessages, testing::ValuesIn(OpenForms()),
                         [](const auto& form) { return std::string(form.param.name); });

namespace {

/// Changes what the program reads, from another thread, until it is destroyed.
class Meddler {
 public:
  Meddler(const Settings& settings, const SuiteFolder& suite, const std::wstring& project)
      : settings_(settings), suite_(suite), project_(project), thread_([this] { Run(); }) {}
  ~Meddler() {
    stop_ = true;
    thread_.join();
  }
  Meddler(const Meddler&) = delete;
  Meddler& operator=(const Meddler&) = delete;
  int changes() const { return changes_; }

  static const std::wstring& Tool() {
    static const std::wstring tool = L"Q17Bench.exe";
    return tool;
  }

 private:
  void Run() {
    while (!stop_) {
      Change();
      ++changes_;
      Sleep(2);
    }
  }
  void Change() {
    static constexpr const wchar_t* kKeys[] = {L"GUI", L"Settings", L"ServerMRU", L"HiddenSegments",
                                               L"Proxy"};
    static constexpr const wchar_t* kNames[] = {
        L"Angle", L"IconsPerRow", L"Font1",  L"DisplayIcons", L"Icons",      L"TrackingServer",
        L"MRU1",  L"MRU2",        L"RegEx1", L"Port",         L"XPlacement", L"Color1"};
    static constexpr const wchar_t* kTexts[] = {L"",           L"x", L"7", L"Arial|10|1|0|0",
                                                L"beta & co.", L"-1"};
    static constexpr DWORD kKinds[] = {REG_SZ, REG_BINARY, REG_DWORD, REG_MULTI_SZ};
    const std::wstring key = dice_.OneOf(kKeys);
    const std::wstring skins = suite_.path() + L"\\Skins";
    const std::wstring tool = suite_.path() + L"\\" + dice_.OneOf(Tools());
    switch (dice_.Below(8)) {
      case 0: RegDeleteTreeW(HKEY_CURRENT_USER, (kMarlKey + (L"\\" + key)).c_str()); break;
      case 1: settings_.SetRegistry(key, dice_.OneOf(kNames), dice_.OneOf(kTexts)); break;
      case 2:
        settings_.SetRegistryBytes(key, dice_.OneOf(kNames), dice_.OneOf(kKinds),
                                   dice_.Bytes(dice_.Below(40)));
        break;
      case 3: {
        const std::vector<BYTE> bytes = dice_.Bytes(dice_.Below(300));
        WriteFileAt(project_, dice_.Below(2) ? "<project><language lc=\"fr\"><document path=\"a\"/>"
                                             : std::string(bytes.begin(), bytes.end()));
        break;
      }
      case 4: DeleteFileW(project_.c_str()); break;
      case 5:
        if (!RemoveDirectoryW(skins.c_str()) && !DeleteFileW(skins.c_str())) {
          if (dice_.Below(2)) {
            CreateDirectoryW(skins.c_str(), nullptr);
          } else {
            WriteFileAt(skins, "a file");
          }
        }
        break;
      case 6:
        // Renamed away, as an update does, or gone.
        DeleteFileW((tool + L".old").c_str());
        MoveFileW(tool.c_str(), (tool + L".old").c_str());
        break;
      default: CopyFileW(g_programs.standIn.c_str(), tool.c_str(), FALSE); break;
    }
  }

  const Settings& settings_;
  const SuiteFolder& suite_;
  const std::wstring project_;
  Dice dice_{22};
  std::atomic<bool> stop_ = false;
  std::atomic<int> changes_ = 0;
  std::thread thread_;
};

}  // namespace

TEST_F(AdverseNeighbours, ChangesOfRegistryFilesAndProgramsWhileItRunsAreSurvived) {
  const HtmlBrowser browser(g_programs.standIn);
  ASSERT_TRUE(browser.made());
  const SuiteFolder suite;
  const std::wstring project = suite.temp() + L"\\job.qprx";
  std::optional<RunningMarl> marl;
  int ends = 0;
  int changes = 0;
  {
    const Meddler meddler(settings, suite, project);
    for (int act = 0; act < Times(12, 400) && !HasFatalFailure(); ++act) {
      if (!marl || !marl->Running()) {
        settings.Set(L"FirstRun", L"N");
        settings.Set(L"Wizard", L"N");
        marl.emplace(suite);
      }
      ASSERT_TRUE(WaitUntil([&] { return StepsBack(*marl); })) << "start " << act;
      const HWND main = marl->Running() ? marl->Window() : nullptr;
      if (main) {
        switch (Below(4)) {
          case 0: Open(*marl, main); break;
          case 1:
            Tell(project);
            Open(*marl, main);
            break;
          case 2: PostMessageW(main, WM_SYSCOMMAND, SC_MINIMIZE, 0); break;
          default: Click(IconOf(main, Below(kExit))); break;
        }
      }
      // Whatever it says and shows goes away; a stored value that it cannot use may end it.
      ASSERT_TRUE(WaitUntil([&] { return StepsBack(*marl); }))
          << "act " << act << ": " << ToUtf8(marl->Box().Text());
      if (marl->Running()) continue;
      ++ends;
      EXPECT_EQ(marl->WaitForExit(), 1u) << "act " << act;
    }
    changes = meddler.changes();
  }
  std::cout << changes << " changes, " << ends << " ends with a message\n";
  EXPECT_GT(changes, 10);
  marl.reset();
  RegDeleteTreeW(HKEY_CURRENT_USER, kMarlKey);
  EXPECT_TRUE(Works(suite));
}

TEST_F(AdverseNeighbours, ProgramThatIsReplacedAfterTheStartIsStartedAsItIsThen) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  const std::wstring tool = suite.path() + L"\\" + Meddler::Tool();
  // By another program, by no program, by a folder.
  ASSERT_TRUE(MoveFileW(tool.c_str(), (tool + L".old").c_str()));
  ASSERT_TRUE(CopyFileW(g_programs.standIn.c_str(), tool.c_str(), TRUE));
  Click(IconOf(main, kEdit));
  EXPECT_EQ(suite.WaitForTools(1).size(), 1u);
  ASSERT_TRUE(WaitUntil([&] { return DeleteFileW(tool.c_str()) != FALSE; }));
  ASSERT_TRUE(CreateDirectoryW(tool.c_str(), nullptr));
  // Not a double click.
  Click(LabelOf(main, kEdit));
  const MessageBoxWindow box = marl.WaitForBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box.Text(), L"File not found : " + tool);
  EXPECT_TRUE(box.Press(IDOK));
  ASSERT_TRUE(RemoveDirectoryW(tool.c_str()));
  ASSERT_TRUE(WriteFileAt(tool, "no program"));
  Click(IconOf(main, kEdit));
  // What the platform says about it, if anything, is not the program's.
  EXPECT_TRUE(WaitUntil([&] {
    if (const MessageBoxWindow said = marl.Box()) said.Press(IDOK);
    return IsWindowEnabled(main) != FALSE;
  }));
  EXPECT_EQ(suite.WaitForTools(1).size(), 1u);
  EXPECT_TRUE(Close(marl));
}

}  // namespace marl::desktop
