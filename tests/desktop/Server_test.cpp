#include <algorithm>
#include <array>

#include "tests/desktop/Component.h"
#include "tests/desktop/Dialog.h"
#include "tests/desktop/Switchboard.h"

// The tracking server in the real program: registry, title, dialog, addresses that are passed on,
// and a real component of the suite.

namespace marl::desktop {

namespace {

using Starts = std::vector<Started>;

constexpr wchar_t kSettingsKey[] = L"Software\\Oru\\Marl\\Settings";
constexpr wchar_t kListKey[] = L"Software\\Oru\\Marl\\ServerMRU";

const std::string kAlpha = "<project-tracking server=\"alpha\" ssl=\"no\" port=\"80\"/>";
const std::string kBeta = "<project-tracking server=\"beta\" ssl=\"yes\" port=\"443\"/>";

/// The bytes of a text value without its terminator; nothing if there is none.
std::optional<std::string> Stored(const wchar_t* key, const wchar_t* name) {
  HKEY opened = nullptr;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, key, 0, KEY_QUERY_VALUE, &opened) != ERROR_SUCCESS) {
    return {};
  }
  std::string bytes(40000, '\0');
  DWORD kind = 0;
  auto size = static_cast<DWORD>(bytes.size());
  const LSTATUS status = RegQueryValueExA(opened, ToUtf8(name).c_str(), nullptr, &kind,
                                          reinterpret_cast<BYTE*>(bytes.data()), &size);
  RegCloseKey(opened);
  if (status != ERROR_SUCCESS || kind != REG_SZ) return {};
  bytes.resize(size);
  if (bytes.ends_with('\0')) bytes.pop_back();
  return bytes;
}

std::optional<std::string> StoredServer() { return Stored(kSettingsKey, L"TrackingServer"); }

/// The eight stored entries of the list, up to the first that is empty.
std::vector<std::string> StoredList() {
  std::vector<std::string> list;
  for (int n = 1; n <= 8; ++n) {
    const auto entry = Stored(kListKey, (L"MRU" + std::to_wstring(n)).c_str());
    EXPECT_TRUE(entry.has_value()) << "MRU" << n;
    if (!entry || entry->empty()) break;
    list.push_back(*entry);
  }
  return list;
}

/// The dialog that changes the server, once it is visible.
constexpr wchar_t kSsl[] = L"The server &requires a secure connection (SSL)";
constexpr wchar_t kDefault[] = L"Use &default port number";

class ServerDialog : public Dialog {
 public:
  explicit ServerDialog(const RunningMarl& marl) : Dialog(marl, L"Change server") {}

  HWND Combo() const { return Find(L"ComboBox"); }
  HWND Port() const { return FindWindowExW(window(), nullptr, L"Edit", nullptr); }
  HWND Ssl() const { return Button(kSsl); }
  HWND Default() const { return Button(kDefault); }
};

class Server : public SwitchboardTest {
 protected:
  void StoreServer(const std::wstring& text) {
    settings.SetRegistry(L"Settings", L"TrackingServer", text);
  }
  static bool TitleBecomes(HWND main, const std::wstring& title) {
    return WaitUntil([&] { return TextOf(main) == title; });
  }
  /// Opens the dialog, replaces the name, and closes with OK.
  static testing::AssertionResult ChangeTo(const RunningMarl& marl, const std::wstring& name) {
    Click(IconOf(marl.Window(), kChangeServer));
    const ServerDialog dialog(marl);
    const testing::AssertionResult entered = Enter(dialog, name);
    if (!entered) return entered;
    if (!dialog.Leave(L"OK")) return testing::AssertionFailure() << "the dialog stays";
    return testing::AssertionSuccess();
  }
  /// The same, with a name that the server refuses; the caller waits for the message.
  static testing::AssertionResult TryToChangeTo(const RunningMarl& marl, const std::wstring& name) {
    Click(IconOf(marl.Window(), kChangeServer));
    const ServerDialog dialog(marl);
    const testing::AssertionResult entered = Enter(dialog, name);
    if (entered) Click(MiddleOf(dialog.Button(L"OK")));
    return entered;
  }

 private:
  static testing::AssertionResult Enter(const ServerDialog& dialog, const std::wstring& name) {
    if (!dialog) return testing::AssertionFailure() << "no dialog came up";
    if (!WaitUntil([&] { return GetForegroundWindow() == dialog.window(); })) {
      return testing::AssertionFailure() << "the dialog is not in front";
    }
    if (!BringForward(dialog.window())) {
      return testing::AssertionFailure() << "the dialog takes no keys";
    }
    // The whole name is selected when the dialog opens.
    if (name.empty()) {
      Chord({}, VK_DELETE);
    } else {
      Keys(name);
    }
    if (!WaitUntil([&] { return TextOf(dialog.Combo()) == name; })) {
      return testing::AssertionFailure() << "the name is " << ToUtf8(TextOf(dialog.Combo()));
    }
    return testing::AssertionSuccess();
  }
};

}  // namespace

TEST_F(Server, TitleSaysThatThereIsNoServerAndTrackProjectsIsDisabled) {
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  EXPECT_EQ(TextOf(main), L"Marl : [no server]");
  Click(IconOf(main, kTrackProjects));
  Click(LabelOf(main, kAdministrator));
  EXPECT_EQ(suite.WaitForTools(1), (Starts{Start(suite, L"Q17Warden.exe")}));
  EXPECT_EQ(StoredServer(), "");
  EXPECT_EQ(StoredList(), std::vector<std::string>{});
  EXPECT_TRUE(Close(marl));
}

TEST_F(Server, StoredBareNameBecomesATagThatIsSavedAtExit) {
  StoreServer(L"alpha");
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  EXPECT_EQ(TextOf(main), L"Marl : alpha");
  EXPECT_EQ(StoredServer(), "alpha") << "start-up writes nothing";
  EXPECT_TRUE(Close(marl));
  EXPECT_EQ(StoredServer(), kAlpha);
  EXPECT_EQ(StoredList(), std::vector<std::string>{kAlpha});
}

struct HostileValue {
  const wchar_t* stored;
  const wchar_t* title;
  const wchar_t* arguments;
};

class ServerHostile : public Server, public testing::WithParamInterface<HostileValue> {};

TEST_P(ServerHostile, StoredValueIsUsedOrDropped) {
  StoreServer(GetParam().stored);
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  EXPECT_EQ(TextOf(main), std::wstring(L"Marl : ") + GetParam().title);
  Click(IconOf(main, kAdministrator));
  EXPECT_EQ(suite.WaitForTools(1), (Starts{Start(suite, L"Q17Warden.exe", GetParam().arguments)}));
  EXPECT_TRUE(Close(marl));
}

INSTANTIATE_TEST_SUITE_P(
    Values, ServerHostile,
    testing::Values(
        HostileValue{L"<project-tracking server=\"alpha\" ssl=\"YES\" port=\"8080\"/>", L"alpha",
                     L"alpha /ssl /port=8080"},
        HostileValue{L"R&D <x> \"q\" %20", L"R&D <x> \"q\" %20", L"R&D <x> \"q\" %20 /port=80"},
        HostileValue{L"/R /s", L"/R /s", L"/R /s /port=80"},
        HostileValue{L"<project-tracking server=\"", L"[no server]", L""},
        HostileValue{L"<", L"[no server]", L""},
        HostileValue{L"<project-tracking server=\"a\" server=\"b\"/>", L"[no server]", L""}));

TEST_F(Server, StoredBytesOfAnyKindAreUsedOrDropped) {
  const auto wide = [](const std::wstring& text) {
    const auto* const from = reinterpret_cast<const BYTE*>(text.data());
    return std::vector<BYTE>(from, from + text.size() * sizeof(wchar_t));
  };
  const std::wstring nul(1, L'\0');
  const std::wstring longName(10000, L'n');
  const struct {
    DWORD kind;
    std::vector<BYTE> bytes;
    std::wstring title;
    std::wstring arguments;
  } rows[] = {
      {REG_DWORD, {42, 0, 0, 0}, L"42", L"42 /port=80"},
      {REG_NONE, wide(L"alpha" + nul), L"[no server]", L""},
      {REG_SZ, {}, L"[no server]", L""},
      {REG_SZ, wide(longName + nul), longName, longName + L" /port=80"},
  };
  const SuiteFolder suite;
  std::size_t count = 0;
  for (const auto& row : rows) {
    settings.SetRegistryBytes(L"Settings", L"TrackingServer", row.kind, row.bytes);
    const RunningMarl marl(suite);
    const HWND main = marl.WaitForWindow();
    ASSERT_TRUE(main);
    EXPECT_EQ(TextOf(main), L"Marl : " + row.title);
    Click(IconOf(main, kAdministrator));
    const Starts starts = suite.WaitForTools(++count);
    ASSERT_EQ(starts.size(), count);
    EXPECT_EQ(starts.back(), Start(suite, L"Q17Warden.exe", row.arguments));
    EXPECT_TRUE(Close(marl));
  }
}

TEST_F(Server, ListOfHostileEntriesIsShownAndSavedInOrder) {
  const std::string longName(10000, 'n');
  settings.SetRegistryNumber(L"ServerMRU", L"MRU1", 7);
  settings.SetRegistry(L"ServerMRU", L"MRU2", L"<");
  settings.SetRegistry(L"ServerMRU", L"MRU3", L"<project-tracking server=\"a\" server=\"b\"/>");
  settings.SetRegistry(L"ServerMRU", L"MRU4", FromUtf8(longName));
  settings.SetRegistry(L"ServerMRU", L"MRU8", L"x\" /ssl <&> %20");
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  Click(IconOf(main, kChangeServer));
  {
    const ServerDialog dialog(marl);
    ASSERT_TRUE(dialog);
    EXPECT_EQ(SendMessageW(dialog.Combo(), CB_GETCOUNT, 0, 0), 5);
    EXPECT_TRUE(dialog.Leave(L"Cancel"));
  }
  EXPECT_EQ(TextOf(main), L"Marl : [no server]");
  EXPECT_TRUE(Close(marl));
  EXPECT_EQ(StoredServer(), "");
  EXPECT_EQ(StoredList(),
            (std::vector<std::string>{
                "<project-tracking server=\"7\" ssl=\"no\" port=\"80\"/>", "<",
                "<project-tracking server=\"a\" server=\"b\"/>",
                "<project-tracking server=\"" + longName + "\" ssl=\"no\" port=\"80\"/>",
                "<project-tracking server=\"x&quot; /ssl &lt;&amp;&gt; %20\" ssl=\"no\" "
                "port=\"80\"/>"}));
}

TEST_F(Server, TypedNameIsNotEscapedAndTheOldestOfNineLeavesTheList) {
  std::vector<std::string> list;
  for (int n = 1; n <= 8; ++n) {
    const std::string number = std::to_string(n);
    list.push_back("<project-tracking server=\"s" + number + "\" ssl=\"yes\" port=\"1\"/>");
    settings.SetRegistry(L"ServerMRU", FromUtf8("MRU" + number), FromUtf8(list.back()));
  }
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  const auto became = [&](const std::string& tag) {
    list.insert(list.begin(), tag);
    list.pop_back();
  };
  // A quote ends the name early; the rest is not passed as an argument.
  ASSERT_TRUE(ChangeTo(marl, L"a\"b"));
  EXPECT_TRUE(TitleBecomes(main, L"Marl : a"));
  became("<project-tracking server=\"a\"b\" ssl=\"no\" port=\"80\"/>");
  Click(IconOf(main, kAdministrator));
  EXPECT_EQ(suite.WaitForTools(1), (Starts{Start(suite, L"Q17Warden.exe", L"a /port=80")}));
  EXPECT_EQ(StoredServer(), list.front()) << "saved by the press";
  EXPECT_EQ(StoredList(), list);
  // The dialog shows what the tag has: the name up to the quote.
  ASSERT_TRUE(ChangeTo(marl, L"/ssl /port=1"));
  EXPECT_TRUE(TitleBecomes(main, L"Marl : /ssl /port=1"));
  became("<project-tracking server=\"/ssl /port=1\" ssl=\"no\" port=\"80\"/>");
  EXPECT_TRUE(Close(marl));
  EXPECT_EQ(StoredServer(), list.front());
  EXPECT_EQ(StoredList(), list);
}

TEST_F(Server, ChangedReAddedAndRemoved) {
  StoreServer(L"<project-tracking server=\"beta\" ssl=\"yes\" port=\"443\"/>");
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_EQ(TextOf(main), L"Marl : beta");

  // The dialog keeps SSL and port of the previous server.
  ASSERT_TRUE(ChangeTo(marl, L"gamma"));
  EXPECT_TRUE(TitleBecomes(main, L"Marl : gamma"));
  EXPECT_EQ(StoredServer(), kBeta) << "saved is what there was at the press";
  const std::string gamma = "<project-tracking server=\"gamma\" ssl=\"yes\" port=\"443\"/>";
  ASSERT_TRUE(ChangeTo(marl, L"BETA"));
  EXPECT_TRUE(TitleBecomes(main, L"Marl : BETA"));
  EXPECT_EQ(StoredServer(), gamma);
  EXPECT_EQ(StoredList(), (std::vector<std::string>{gamma, kBeta}));

  ASSERT_TRUE(ChangeTo(marl, L""));
  EXPECT_TRUE(TitleBecomes(main, L"Marl : [no server]"));
  const std::string upper = "<project-tracking server=\"BETA\" ssl=\"yes\" port=\"443\"/>";
  EXPECT_EQ(StoredServer(), upper);
  EXPECT_EQ(StoredList(), (std::vector<std::string>{upper, gamma})) << "in the new spelling";

  EXPECT_FALSE(marl.Box());
  EXPECT_TRUE(Close(marl));
  EXPECT_EQ(StoredServer(), "");
  EXPECT_EQ(StoredList(), (std::vector<std::string>{upper, gamma}));
  EXPECT_EQ(Stored(kListKey, L"MRU3"), "");
  EXPECT_EQ(Stored(kListKey, L"MRU8"), "");
}

TEST_F(Server, DropDownShowsTheListAndAChosenEntrySetsAllFields) {
  settings.SetRegistry(L"ServerMRU", L"MRU1", FromUtf8(kAlpha));
  settings.SetRegistry(L"ServerMRU", L"MRU3",
                       L"<project-tracking server=\"delta\" ssl=\"yes\" port=\"8443\"/>");
  settings.SetRegistry(L"ServerMRU", L"MRU7", L"bare & name");
  StoreServer(L"alpha");
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  ASSERT_TRUE(marl.WaitForWindow());
  Click(IconOf(marl.Window(), kChangeServer));
  const ServerDialog dialog(marl);
  ASSERT_TRUE(dialog);
  Screenshot("change-server", dialog.window());
  const HWND combo = dialog.Combo();
  ASSERT_EQ(SendMessageW(combo, CB_GETCOUNT, 0, 0), 3);
  EXPECT_EQ(TextOf(combo), L"alpha");
  EXPECT_TRUE(dialog.Checked(kDefault));
  EXPECT_FALSE(IsWindowEnabled(dialog.Port()));

  // Down the list by keys: the first is alpha itself, the second is delta.
  ASSERT_TRUE(WaitUntil([&] { return GetForegroundWindow() == dialog.window(); }));
  ASSERT_TRUE(BringForward(dialog.window()));
  Chord({}, VK_DOWN);
  Chord({}, VK_DOWN);
  EXPECT_TRUE(WaitUntil([&] { return TextOf(combo) == L"delta"; })) << ToUtf8(TextOf(combo));
  EXPECT_TRUE(WaitUntil([&] { return TextOf(dialog.Port()) == L"8443"; }));
  EXPECT_TRUE(dialog.Checked(kSsl));
  EXPECT_FALSE(dialog.Checked(kDefault));
  EXPECT_TRUE(IsWindowEnabled(dialog.Port()));
  Screenshot("change-server-chosen", dialog.window());
  EXPECT_TRUE(dialog.Leave(L"OK"));
  EXPECT_TRUE(TitleBecomes(marl.Window(), L"Marl : delta"));
  EXPECT_TRUE(Close(marl));
  EXPECT_EQ(StoredServer(), "<project-tracking server=\"delta\" ssl=\"yes\" port=\"8443\"/>");
  // The bare name has become a tag, and the gaps are closed.
  EXPECT_EQ(StoredList(),
            (std::vector<std::string>{
                "<project-tracking server=\"delta\" ssl=\"yes\" port=\"8443\"/>", kAlpha,
                "<project-tracking server=\"bare &amp; name\" ssl=\"no\" port=\"80\"/>"}));
}

TEST_F(Server, EscapeAndAccessKeysWork) {
  StoreServer(L"<project-tracking server=\"alpha\" ssl=\"no\" port=\"8080\"/>");
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  // Away from where the dialog opens: a window that comes up under the mouse makes Wine compare the
  // keys with those of the display, which knows none of these, and release what is held.
  MoveMouse(0, 0);
  Chord({VK_CONTROL}, 'G');
  const ServerDialog dialog(marl);
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(WaitUntil([&] { return GetForegroundWindow() == dialog.window(); }));
  ASSERT_TRUE(BringForward(dialog.window()));
  const auto focus = [&] { return dialog.Focus(); };
  const auto fields = [&] {
    return "the focus is in " + ToUtf8(ClassOf(focus())) + ", the server is " +
           ToUtf8(TextOf(dialog.Combo())) + ", the port " + ToUtf8(TextOf(dialog.Port()));
  };
  EXPECT_TRUE(WaitUntil([&] { return IsChild(dialog.Combo(), focus()); }));
  Chord({VK_MENU}, 'O');
  EXPECT_TRUE(WaitUntil([&] { return focus() == dialog.Port(); }))
      << "the port, by its label; " << fields();
  Chord({VK_MENU}, 'S');
  EXPECT_TRUE(WaitUntil([&] { return IsChild(dialog.Combo(), focus()); }))
      << "the server; " << fields();
  Chord({VK_MENU}, 'R');
  EXPECT_TRUE(WaitUntil([&] { return dialog.Checked(kSsl); })) << "SSL";
  // Tab goes from here to the other box, the port, both buttons, and wraps around.
  for (const HWND next :
       {dialog.Default(), dialog.Port(), dialog.Button(L"OK"), dialog.Button(L"Cancel")}) {
    Chord({}, VK_TAB);
    EXPECT_TRUE(WaitUntil([&] { return focus() == next; })) << ToUtf8(TextOf(next));
  }
  Chord({}, VK_TAB);
  EXPECT_TRUE(WaitUntil([&] { return IsChild(dialog.Combo(), focus()); }));
  Chord({}, VK_ESCAPE);
  EXPECT_TRUE(WaitUntil([&] { return !IsWindow(dialog.window()); }));
  EXPECT_EQ(TextOf(main), L"Marl : alpha");
  EXPECT_TRUE(Close(marl));
  EXPECT_EQ(StoredServer(), "<project-tracking server=\"alpha\" ssl=\"no\" port=\"8080\"/>");
}

// The filter on a real edit control: text and caret are restored.
TEST_F(Server, PortFieldRefusesEveryKindOfEditThatIsNoPort) {
  StoreServer(L"<project-tracking server=\"alpha\" ssl=\"no\" port=\"8080\"/>");
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  ASSERT_TRUE(marl.WaitForWindow());
  Click(IconOf(marl.Window(), kChangeServer));
  const ServerDialog dialog(marl);
  ASSERT_TRUE(dialog);
  const HWND port = dialog.Port();
  ASSERT_EQ(TextOf(port), L"8080");

  struct State {
    std::wstring text;
    DWORD start = 0;
    DWORD end = 0;
    bool operator==(const State&) const = default;
  };
  const auto now = [&] {
    State state{TextOf(port)};
    SendMessageW(port, EM_GETSEL, reinterpret_cast<WPARAM>(&state.start),
                 reinterpret_cast<LPARAM>(&state.end));
    return state;
  };
  const auto select = [&](int start, int end) { SendMessageW(port, EM_SETSEL, start, end); };
  // Replaces the selection in one step, as a paste and a drop do, with undo.
  const auto put = [&](const wchar_t* text) {
    SendMessageW(port, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text));
  };
  const auto type = [&](wchar_t character) { SendMessageW(port, WM_CHAR, character, 1); };

  select(0, 4);
  type(L'8');
  EXPECT_EQ(now(), (State{L"8", 1, 1}));
  type(L'a');
  EXPECT_EQ(now(), (State{L"8", 1, 1})) << "a letter does not happen";
  type(L'1');
  EXPECT_EQ(now(), (State{L"81", 2, 2}));
  select(1, 1);
  put(L"00");
  EXPECT_EQ(now(), (State{L"8001", 3, 3}));
  select(0, 4);
  put(L"12x");
  EXPECT_EQ(now(), (State{L"8001", 3, 3})) << "paste over a selection";
  select(0, 0);
  put(L"9");
  EXPECT_EQ(now(), (State{L"8001", 3, 3})) << "98001 is above the maximum";
  select(0, 4);
  SendMessageW(port, WM_CLEAR, 0, 0);
  EXPECT_EQ(now(), (State{L"8001", 3, 3})) << "it may not be emptied";
  select(1, 4);
  SendMessageW(port, WM_CLEAR, 0, 0);
  EXPECT_EQ(now(), (State{L"8", 1, 1}));
  SendMessageW(port, EM_UNDO, 0, 0);
  EXPECT_EQ(now().text, L"8001") << "undo of a good edit";
  SendMessageW(port, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"20001"));
  EXPECT_EQ(now().text, L"8001");
  SendMessageW(port, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"20000"));
  EXPECT_EQ(now().text, L"20000");
  EXPECT_TRUE(dialog.Leave(L"OK"));
  EXPECT_TRUE(Close(marl));
  EXPECT_EQ(StoredServer(), "<project-tracking server=\"alpha\" ssl=\"no\" port=\"20000\"/>");
}

namespace {

constexpr wchar_t kClient[] = L"Marl.TrackingServerClient";

/// A server document as the client gets it.
std::wstring SetServer(const std::wstring& tag) {
  return std::wstring(kClient) + L".SetServer(\uFEFF<?xml version=\"1.0\" standalone=\"no\"?>" +
         tag + L")";
}

}  // namespace

TEST_F(Server, RealComponentIsCalledWithTheDocumentAndItsFailureIsShown) {
  StoreServer(L"R&D");
  const SuiteFolder suite;
  const ComponentCalls calls(suite);
  const RegisteredComponent client(kClient);
  ASSERT_TRUE(client.made());
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  EXPECT_EQ(TextOf(main), L"Marl : R&D");
  const std::wstring tag = L"<project-tracking server=\"R&amp;D\" ssl=\"no\" port=\"80\"/>";
  EXPECT_EQ(calls.All(), std::vector<std::wstring>{SetServer(tag)});

  ASSERT_TRUE(TryToChangeTo(marl, L"refused"));
  const MessageBoxWindow box = marl.WaitForBox();
  ASSERT_TRUE(box);
  Screenshot("server-refused");
  EXPECT_EQ(box.Title(), L"Marl");
  EXPECT_EQ(box.Text(), L"The server refused \u2013 \"no\" means no.");
  EXPECT_TRUE(box.Press(IDOK));
  EXPECT_EQ(TextOf(main), L"Marl : R&D");
  EXPECT_EQ(calls.All(),
            (std::vector<std::wstring>{
                SetServer(tag),
                SetServer(L"<project-tracking server=\"refused\" ssl=\"no\" port=\"80\"/>")}));
  EXPECT_TRUE(Close(marl));
  EXPECT_EQ(StoredServer(), ToUtf8(tag));
  EXPECT_EQ(StoredList(), std::vector<std::string>{ToUtf8(tag)});
}

TEST_F(Server, FailureWithoutATextShowsTheSystems) {
  StoreServer(L"alpha");
  const SuiteFolder suite;
  const RegisteredComponent client(kClient);
  ASSERT_TRUE(client.made());
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  ASSERT_TRUE(TryToChangeTo(marl, L"wordless"));
  const MessageBoxWindow box = marl.WaitForBox();
  ASSERT_TRUE(box);
  Screenshot("server-wordless");
  std::array<wchar_t, 200> text = {};
  FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                 ERROR_ACCESS_DENIED, 0, text.data(), 200, nullptr);
  const std::wstring system = text.data();
  EXPECT_EQ(box.Text(), system.substr(0, system.find_first_of(L"\r\n")));
  EXPECT_NE(box.Text(), L"");
  EXPECT_TRUE(box.Press(IDOK));
  EXPECT_EQ(TextOf(main), L"Marl : alpha");
  EXPECT_TRUE(Close(marl));
}

TEST_F(Server, ReturnToTheProgramLeavesTheSelectionOfTheNameAlone) {
  StoreServer(L"alpha");
  const SuiteFolder suite;
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  Click(IconOf(main, kChangeServer));
  const ServerDialog dialog(marl);
  ASSERT_TRUE(dialog && dialog.InFront());
  const auto selection = [&] { return SendMessageW(dialog.Combo(), CB_GETEDITSEL, 0, 0); };
  EXPECT_TRUE(WaitUntil([&] { return selection() == MAKELRESULT(0, 5); }));
  Chord({}, VK_END);
  Chord({VK_SHIFT}, VK_LEFT);
  ASSERT_TRUE(WaitUntil([&] { return selection() == MAKELRESULT(4, 5); }));
  const HWND other = CreateWindowExW(0, L"STATIC", L"Other", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0,
                                     200, 100, nullptr, nullptr, nullptr, nullptr);
  ASSERT_TRUE(BringForward(other));
  DestroyWindow(other);
  ASSERT_TRUE(BringForward(dialog.window()));
  // Typing replaces the earlier selection.
  Keys(L"x");
  EXPECT_TRUE(WaitUntil([&] { return TextOf(dialog.Combo()) == L"alphx"; }))
      << ToUtf8(TextOf(dialog.Combo()));
  EXPECT_TRUE(dialog.Leave(L"Cancel"));
  EXPECT_TRUE(Close(marl));
}

TEST_F(Server, RefusedStoredServerEndsQuietlyInNone) {
  StoreServer(L"refused");
  const SuiteFolder suite;
  const ComponentCalls calls(suite);
  const RegisteredComponent client(kClient);
  ASSERT_TRUE(client.made());
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  EXPECT_EQ(TextOf(main), L"Marl : [no server]");
  EXPECT_FALSE(marl.Box());
  EXPECT_EQ(calls.All().size(), 1u);
  EXPECT_TRUE(Close(marl));
}

TEST_F(Server, RegisteredComponentThatIsNotThereIsAFailure) {
  StoreServer(L"alpha");
  const SuiteFolder suite;
  const RegisteredComponent client(kClient, suite.path() + L"\\nowhere.dll");
  ASSERT_TRUE(client.made());
  const RunningMarl marl(suite);
  const HWND main = marl.WaitForWindow();
  ASSERT_TRUE(main);
  EXPECT_EQ(TextOf(main), L"Marl : [no server]") << "the built-in one does not step in";
  EXPECT_FALSE(marl.Box());
  EXPECT_TRUE(Close(marl));
}

TEST_F(Server, BrowserGetsTheSitesAddressAsItsOneArgument) {
  const SuiteFolder suite;
  const std::wstring browser = suite.path() + L"\\Browser.exe";
  ASSERT_TRUE(CopyFileW(g_programs.standIn.c_str(), browser.c_str(), TRUE));
  const HtmlBrowser html(browser);
  ASSERT_TRUE(html.made());
  const struct {
    const wchar_t* tag;
    const wchar_t* address;
  } rows[] = {
      {L"<project-tracking server=\"alpha\" ssl=\"no\" port=\"80\"/>", L"http://alpha"},
      {L"<project-tracking server=\"alpha\" ssl=\"YES\" port=\"443\"/>", L"https://alpha"},
      {L"<project-tracking server=\"alpha\" ssl=\"no\" port=\"443\"/>", L"http://alpha:443"},
      {L"<project-tracking server=\"alpha\" ssl=\"yes\" port=\"80\"/>", L"https://alpha:80"},
      {L"<project-tracking server=\"alpha\" ssl=\"yes\" port=\"\"/>", L"https://alpha:"},
      {L"R&D \"x\" /y %20", L"http://R&D \"x\" /y %20"},
  };
  std::size_t count = 0;
  for (const auto& row : rows) {
    StoreServer(row.tag);
    const RunningMarl marl(suite);
    const HWND main = marl.WaitForWindow();
    ASSERT_TRUE(main);
    Click(IconOf(main, kTrackProjects));
    const Starts starts = suite.WaitForTools(++count);
    ASSERT_EQ(starts.size(), count);
    EXPECT_EQ(starts.back().program, L"Browser.exe");
    EXPECT_EQ(starts.back().arguments,
              std::wstring(row.address) + L"/OruCadenceProjectTracking/logon.aspx");
    ASSERT_TRUE(Close(marl));
  }
}

}  // namespace marl::desktop
