#include "tests/desktop/Switchboard.h"

// Commands from other programs, through the platform's own DDE library.

namespace marl::desktop {

namespace {

class Dde : public SwitchboardTest, public testing::WithParamInterface<DdeClient::Kind> {
 protected:
  Dde() : marl(suite) {}

  void SetUp() override { ASSERT_TRUE(marl.WaitForWindow()); }

  SuiteFolder suite;
  RunningMarl marl;
};

std::string KindName(const testing::TestParamInfo<DdeClient::Kind>& kind) {
  return kind.param == DdeClient::Kind::kWide ? "Wide" : "Narrow";
}

}  // namespace

TEST_P(Dde, CommandsAreAnsweredByTheirFirstFourCharacters) {
  const struct {
    std::wstring command;
    bool taken;
  } commands[] = {
      {L"PRJ C:\\x.qprx", true},
      {L"PRJ ", true},
      {L"PRJ C:\\\u00dcbung mit Blank\\x.qprx", true},
      {L"PRJ  ", true},
      {L"PRJ", false},
      {L"PRJ\tC:\\x.qprx", false},
      {L"prj x", false},
      {L" PRJ x", false},
      {L"[PRJ x]", false},
      {L"P", false},
      {L"", false},
      {L"PRJ " + std::wstring(60000, L'x'), true},
      {std::wstring(60000, L'x'), false},
      {std::wstring(60000, L' '), false},
  };
  DdeClient client(GetParam());
  ASSERT_TRUE(client.Connect(L"Marl", L"Marl"));
  for (const auto& [command, taken] : commands) {
    const std::string name =
        ToUtf8(command.substr(0, 20)) + " of " + std::to_string(command.size());
    EXPECT_EQ(client.Execute(command), taken) << name;
    if (!taken) {
      EXPECT_EQ(client.lastError(), static_cast<UINT>(DMLERR_NOTPROCESSED)) << name;
    }
  }
  EXPECT_TRUE(client.Execute(L"PRJ still there"));
  EXPECT_TRUE(marl.Running());
  EXPECT_TRUE(Close(marl));
}

TEST_P(Dde, BytesOfAnyKindAreSafe) {
  DdeClient client(GetParam());
  ASSERT_TRUE(client.Connect(L"Marl", L"Marl"));
  const std::vector<std::vector<BYTE>> hostile = {
      {'P'},
      {'P', 0},
      {'P', 0, 'R'},
      {'P', 0, 'R', 0, 'J'},
      {'P', 'R', 'J', ' '},
      {'P', 0, 'R', 0, 'J', 0, ' ', 0},
      {0},
      {0, 0, 0},
      {0xFF, 0xFE, 'P', 0},
      {0x00, 0xD8, 0x00, 0xD8},
      std::vector<BYTE>(60001, 0xFF),
      std::vector<BYTE>(60001, 0),
  };
  for (const auto& bytes : hostile) client.ExecuteBytes(bytes);
  EXPECT_TRUE(client.Execute(L"PRJ still there"));
  EXPECT_TRUE(marl.Running());
  EXPECT_FALSE(marl.Box());
}

TEST_P(Dde, OnlyItsOwnServiceAndTopicAnswer) {
  DdeClient client(GetParam());
  EXPECT_FALSE(client.Connect(L"Marl", L"Other"));
  EXPECT_FALSE(client.Connect(L"Other", L"Marl"));
  EXPECT_TRUE(client.Connect(L"marl", L"MARL")) << "names have no case";
}

TEST_P(Dde, CommandBringsNothingForwardAndOpensNothing) {
  const HWND window = marl.Window();
  ShowWindow(window, SW_MINIMIZE);
  DdeClient client(GetParam());
  ASSERT_TRUE(client.Connect(L"Marl", L"Marl"));
  EXPECT_TRUE(client.Execute(L"PRJ C:\\no such file.qprx"));
  EXPECT_TRUE(IsIconic(window) || !IsWindowVisible(window));
  EXPECT_FALSE(marl.Box());
  EXPECT_EQ(suite.Starts().size(), 1u) << "the registrar alone";
}

TEST_P(Dde, ConversationOutlivesTheProgramSafely) {
  DdeClient client(GetParam());
  ASSERT_TRUE(client.Connect(L"Marl", L"Marl"));
  EXPECT_TRUE(Close(marl));
  EXPECT_FALSE(client.Execute(L"PRJ x"));
}

INSTANTIATE_TEST_SUITE_P(Clients, Dde,
                         testing::Values(DdeClient::Kind::kWide, DdeClient::Kind::kNarrow),
                         KindName);

}  // namespace marl::desktop
