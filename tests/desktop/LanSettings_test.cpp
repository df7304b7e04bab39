#include <array>

#include "tests/desktop/Dialog.h"
#include "tests/desktop/Switchboard.h"

// The proxy settings in the real program, opened from the options: control states, the message, and
// the registry afterwards, byte for byte.

namespace marl::desktop {

namespace {

constexpr wchar_t kKey[] = L"Software\\Oru\\Marl\\Proxy";
constexpr wchar_t kDefault[] = L"Use the system &default settings for proxy server";
constexpr wchar_t kOverride[] = L"&Override the system default settings with these settings:";
constexpr wchar_t kUseProxy[] = L"Use a pro&xy server for your LAN";

class Lan : public SwitchboardTest {
 protected:
  void SetUp() override {
    main = marl.WaitForWindow();
    ASSERT_TRUE(main);
    ASSERT_TRUE(marl.PressMenu(L'O', L'O'));
    options.emplace(marl, L"Options");
    ASSERT_TRUE(*options);
    ASSERT_TRUE(options->InFront());
    Chord({VK_MENU}, 'L');
    ASSERT_TRUE(WaitUntil([&] { return options->Button(L"L&AN settings...") != nullptr; }));
  }
  Dialog Open() const {
    EXPECT_TRUE(options->InFront());
    options->Press(L"L&AN settings...");
    Dialog dialog(marl, L"Local Area Network (LAN) Settings");
    dialog.InFront();
    return dialog;
  }
  static HWND Address(const Dialog& dialog) { return dialog.FindAll(L"Edit").at(0); }
  static HWND Port(const Dialog& dialog) { return dialog.FindAll(L"Edit").at(1); }
  static std::optional<StoredKey> Stored() { return ReadStored(kKey); }
  static StoredKey Values(std::uint32_t use, std::uint32_t port, const std::string& server) {
    return {{"UseProxy", Number(use)}, {"Port", Number(port)}, {"Server", Text(server)}};
  }
  /// Closes both dialogs, the options with Cancel, and the program.
  testing::AssertionResult Finish() {
    if (!options->Leave(L"Cancel")) return testing::AssertionFailure() << "the options stay";
    return Close(marl);
  }

  const SuiteFolder suite;
  const RunningMarl marl{suite};
  HWND main = nullptr;
  std::optional<Dialog> options;
};

}  // namespace

TEST_F(Lan, ControlsFollowOptionsAndBoxInEveryState) {
  const Dialog dialog = Open();
  ASSERT_TRUE(dialog);
  EXPECT_FALSE(IsWindowEnabled(options->window()));
  EXPECT_TRUE(dialog.Checked(kDefault)) << "there is no key";
  const struct {
    const wchar_t* option;
    bool proxy, box, fields;
  } rows[] = {{kDefault, false, false, false}, {kOverride, false, true, false},
              {kOverride, true, true, true},   {kDefault, true, false, false},
              {kOverride, true, true, true},   {kOverride, false, true, false}};
  for (const auto& row : rows) {
    ASSERT_TRUE(dialog.Press(row.option));
    ASSERT_TRUE(WaitUntil([&] { return dialog.Checked(row.option); }));
    if (dialog.Enabled(kUseProxy)) {
      ASSERT_TRUE(dialog.Check(kUseProxy, row.proxy));
    }
    EXPECT_EQ(dialog.Checked(kUseProxy), row.proxy) << ToUtf8(row.option);
    EXPECT_EQ(dialog.Enabled(kUseProxy), row.box) << ToUtf8(row.option);
    EXPECT_EQ(IsWindowEnabled(Address(dialog)) != FALSE, row.fields) << ToUtf8(row.option);
    EXPECT_EQ(IsWindowEnabled(Port(dialog)) != FALSE, row.fields) << ToUtf8(row.option);
  }
  dialog.Picture("frmLanSettings-override");
  EXPECT_TRUE(dialog.Leave(L"Cancel"));
  EXPECT_EQ(Stored(), std::nullopt);
  EXPECT_TRUE(Finish());
}

TEST_F(Lan, OverrideWithTheProxyOffStoresWhatTheFieldsHold) {
  Dialog dialog = Open();
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(dialog.Press(kOverride));
  ASSERT_TRUE(WaitUntil([&] { return dialog.Checked(kOverride); }));
  EXPECT_TRUE(dialog.Leave(L"OK"));
  EXPECT_EQ(Stored(), Values(0, 0, ""));

  dialog = Open();
  EXPECT_TRUE(dialog.Checked(kOverride)) << "the key exists now";
  ASSERT_TRUE(dialog.Check(kUseProxy, true));
  ASSERT_TRUE(dialog.Type(Address(dialog), L"  proxy.example  "));
  ASSERT_TRUE(dialog.Type(Port(dialog), L"3128"));
  dialog.Picture("frmLanSettings");
  EXPECT_TRUE(dialog.Leave(L"OK"));
  EXPECT_EQ(Stored(), Values(1, 3128, "proxy.example"));

  dialog = Open();
  EXPECT_EQ(TextOf(Address(dialog)), L"proxy.example");
  EXPECT_EQ(TextOf(Port(dialog)), L"3128");
  ASSERT_TRUE(dialog.Check(kUseProxy, false));
  EXPECT_TRUE(dialog.Leave(L"OK"));
  EXPECT_EQ(Stored(), Values(0, 3128, "proxy.example"));

  dialog = Open();
  ASSERT_TRUE(dialog.Press(kDefault));
  ASSERT_TRUE(WaitUntil([&] { return dialog.Checked(kDefault); }));
  EXPECT_TRUE(dialog.Leave(L"OK"));
  EXPECT_EQ(Stored(), std::nullopt) << "the values went with the key";
  EXPECT_TRUE(Finish());
}

TEST_F(Lan, IncompleteProxyShowsAMessageAndNothingIsWritten) {
  const Dialog dialog = Open();
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(dialog.Press(kOverride));
  ASSERT_TRUE(WaitUntil([&] { return dialog.Checked(kOverride); }));
  ASSERT_TRUE(dialog.Check(kUseProxy, true));
  const std::array<std::pair<const wchar_t*, const wchar_t*>, 4> rows = {
      {{L"", L""}, {L"proxy", L""}, {L"", L"80"}, {L"   ", L"80"}}};
  for (const auto& [address, port] : rows) {
    ASSERT_TRUE(dialog.Type(Address(dialog), address));
    ASSERT_TRUE(dialog.Type(Port(dialog), port));
    ASSERT_TRUE(dialog.Press(L"OK"));
    const MessageBoxWindow box = marl.WaitForBox();
    ASSERT_TRUE(box);
    EXPECT_EQ(box.Title(), L"Marl");
    EXPECT_EQ(box.Text(), L"Please provide the proxy server address and port");
    EXPECT_EQ(box.Buttons(), std::vector<int>{IDOK});
    ASSERT_TRUE(box.Press(IDOK));
    ASSERT_TRUE(dialog.InFront());
  }
  EXPECT_EQ(Stored(), std::nullopt);
  ASSERT_TRUE(dialog.Type(Address(dialog), L"proxy"));
  EXPECT_TRUE(dialog.Leave(L"OK"));
  EXPECT_EQ(Stored(), Values(1, 80, "proxy"));
  EXPECT_TRUE(Finish());
}

TEST_F(Lan, PortTakesDigitsInItsRangeOnly) {
  const Dialog dialog = Open();
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(dialog.Press(kOverride));
  ASSERT_TRUE(WaitUntil([&] { return dialog.Checked(kOverride); }));
  ASSERT_TRUE(dialog.Check(kUseProxy, true));
  ASSERT_TRUE(dialog.Type(Address(dialog), L"p"));
  const HWND port = Port(dialog);
  Click(MiddleOf(port));
  ASSERT_TRUE(dialog.FocusGoesTo(port));
  Keys(L"8a");
  EXPECT_TRUE(WaitUntil([&] { return TextOf(port) == L"8"; }));
  // The filter refuses what is typed, except for the last digit.
  Keys(L"-x0");
  EXPECT_TRUE(WaitUntil([&] { return TextOf(port) == L"80"; })) << ToUtf8(TextOf(port));
  SendMessageW(port, EM_SETSEL, 0, -1);
  SendMessageW(port, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"12x"));
  EXPECT_EQ(TextOf(port), L"80") << "a paste that is no number";
  SendMessageW(port, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"65536"));
  EXPECT_EQ(TextOf(port), L"65536");
  SendMessageW(port, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"65537"));
  EXPECT_EQ(TextOf(port), L"65536");
  SendMessageW(port, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"99999999999"));
  EXPECT_EQ(TextOf(port), L"65536");
  EXPECT_TRUE(dialog.Leave(L"OK"));
  EXPECT_EQ(Stored(), Values(1, 65536, "p"));
  EXPECT_TRUE(Finish());
}

TEST_F(Lan, StoredValuesAreShownAsFarAsPossible) {
  PutStored(kKey, "UseProxy", Number(7));
  PutStored(kKey, "Port", Number(65537));
  PutStored(kKey, "Server", Text("stored"));
  const Dialog dialog = Open();
  ASSERT_TRUE(dialog);
  EXPECT_TRUE(dialog.Checked(kOverride));
  EXPECT_TRUE(dialog.Checked(kUseProxy));
  EXPECT_EQ(TextOf(Address(dialog)), L"stored");
  EXPECT_EQ(TextOf(Port(dialog)), L"") << "the filter refuses it";
  ASSERT_TRUE(dialog.Type(Port(dialog), L"1"));
  EXPECT_TRUE(dialog.Leave(L"OK"));
  EXPECT_EQ(Stored(), Values(1, 1, "stored")) << "written back as 1";
  EXPECT_TRUE(Finish());
}

TEST_F(Lan, StoredTextThatIsANumberCountsAndAnyOtherEndsTheProgram) {
  PutStored(kKey, "UseProxy", Text("1"));
  PutStored(kKey, "Port", Text("8081"));
  const Dialog dialog = Open();
  ASSERT_TRUE(dialog);
  EXPECT_TRUE(dialog.Checked(kUseProxy));
  EXPECT_EQ(TextOf(Port(dialog)), L"8081");
  ASSERT_TRUE(dialog.Leave(L"Cancel"));
  PutStored(kKey, "Port", Text("eighty"));
  ASSERT_TRUE(options->InFront());
  ASSERT_TRUE(options->Press(L"L&AN settings..."));
  const MessageBoxWindow box = marl.WaitForBox();
  ASSERT_TRUE(box);
  EXPECT_EQ(box.Text(), L"Type mismatch");
  EXPECT_TRUE(box.Press(IDOK));
  EXPECT_EQ(marl.WaitForExit(), DWORD{1});
}

TEST_F(Lan, KeysReachEverything) {
  const Dialog dialog = Open();
  ASSERT_TRUE(dialog);
  Chord({VK_MENU}, 'O');
  ASSERT_TRUE(WaitUntil([&] { return dialog.Checked(kOverride); }));
  Chord({VK_MENU}, 'X');
  ASSERT_TRUE(WaitUntil([&] { return dialog.Checked(kUseProxy); }));
  Chord({VK_MENU}, 'A');
  ASSERT_TRUE(dialog.FocusGoesTo(Address(dialog)));
  Keys(L"proxy");
  Chord({}, VK_TAB);
  ASSERT_TRUE(dialog.FocusGoesTo(Port(dialog)));
  Keys(L"81");
  Chord({VK_MENU}, 'A');
  ASSERT_TRUE(dialog.FocusGoesTo(Address(dialog)));
  Chord({VK_MENU}, 'P');
  ASSERT_TRUE(dialog.FocusGoesTo(Port(dialog)));
  Chord({}, VK_RETURN);
  ASSERT_TRUE(dialog.Gone());
  EXPECT_EQ(Stored(), Values(1, 81, "proxy"));

  const Dialog again = Open();
  ASSERT_TRUE(again);
  Chord({VK_MENU}, 'D');
  ASSERT_TRUE(WaitUntil([&] { return again.Checked(kDefault); }));
  Chord({}, VK_ESCAPE);
  ASSERT_TRUE(again.Gone());
  EXPECT_EQ(Stored(), Values(1, 81, "proxy")) << "Cancel writes nothing";
  EXPECT_TRUE(Finish());
}

}  // namespace marl::desktop
