#include <gtest/gtest.h>

#include "tests/desktop/Harness.h"

// The other tests rely on the stand-in's log: it must be exact.

namespace marl::desktop {

namespace {

Started StartStandIn(const SuiteFolder& suite, const std::wstring& arguments, WORD show) {
  const std::wstring path = suite.path() + L"\\Q17Gauge.exe";
  std::wstring line = L"\"" + path + L"\"";
  if (!arguments.empty()) line += L" " + arguments;
  SetEnvironmentVariableW(L"MARL_SUITE_LOG", suite.log().c_str());
  SetEnvironmentVariableW(L"MARL_SUITE_LINGER", L"0");
  STARTUPINFOW info = {};
  info.cb = sizeof info;
  info.dwFlags = STARTF_USESHOWWINDOW;
  info.wShowWindow = show;
  PROCESS_INFORMATION started = {};
  if (CreateProcessW(path.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                     suite.path().c_str(), &info, &started)) {
    WaitForSingleObject(started.hProcess, static_cast<DWORD>(kDeadline.count()));
    CloseHandle(started.hThread);
    CloseHandle(started.hProcess);
  }
  SetEnvironmentVariableW(L"MARL_SUITE_LOG", nullptr);
  SetEnvironmentVariableW(L"MARL_SUITE_LINGER", nullptr);
  const auto starts = suite.Starts();
  return starts.size() == 1 ? starts.front() : Started{};
}

}  // namespace

TEST(StandIn, RecordsEveryArgumentExactly) {
  const std::wstring texts[] = {
      L"",
      L"/w",
      L" two blanks around  ",
      L"\"quoted \\\" name\" C:\\back\\slash\\",
      L"tab\there, control\x01\x1f, delete\x7f",
      L"Gr\u00fc\u00dfe \u65e5\u672c \u03a9",
      L"pair \xd83d\xde00, half \xd83d, other half \xde00",
      std::wstring(20000, L'x'),
  };
  for (const std::wstring& text : texts) {
    const SuiteFolder suite(L"A suite with \u00fcml\u00e4uts \u03a9");
    const Started expected{L"Q17Gauge.exe", suite.path() + L"\\Q17Gauge.exe", text, suite.path(),
                           SW_SHOWMINNOACTIVE};
    EXPECT_EQ(StartStandIn(suite, text, SW_SHOWMINNOACTIVE), expected);
  }
}

TEST(StandIn, ShowsWhatItWasStartedWith) {
  const SuiteFolder suite;
  const std::wstring path = suite.path() + L"\\Q17Warden.exe";
  std::wstring line = L"\"" + path + L"\" translate.example.com /ssl /port=8080";
  STARTUPINFOW info = {};
  info.cb = sizeof info;
  PROCESS_INFORMATION started = {};
  ASSERT_TRUE(CreateProcessW(path.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                             suite.path().c_str(), &info, &started));
  HWND window = nullptr;
  EXPECT_TRUE(WaitUntil([&] {
    window = FindWindowW(L"MarlStandIn", L"Q17Warden.exe");
    return window && IsWindowVisible(window);
  }));
  std::vector<std::wstring> texts;
  for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    texts.push_back(TextOf(child));
  }
  EXPECT_EQ(texts, (std::vector<std::wstring>{L"Q17Warden.exe", L"Arguments",
                                              L"translate.example.com /ssl /port=8080",
                                              L"Working directory", suite.path()}));
  Screenshot("stand-in", window);
  PostMessageW(window, WM_CLOSE, 0, 0);
  EXPECT_EQ(WaitForSingleObject(started.hProcess, static_cast<DWORD>(kDeadline.count())),
            WAIT_OBJECT_0);
  CloseHandle(started.hThread);
  CloseHandle(started.hProcess);
}

TEST(StandIn, ReaderRefusesBrokenLines) {
  for (const char* line : {"", "{", "{}", "{\"program\": }", "{\"program\": \"x", "{\"show\": x}",
                           "{\"program\": \"x\\u12\"}", "[\"program\"]"}) {
    EXPECT_FALSE(ParseStarted(line)) << line;
  }
}

}  // namespace marl::desktop
