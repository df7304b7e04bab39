// Wall time from the creation of a process to its idle main window: Marl.exe, an empty window
// program built with the same flags, one with the same menus, icons and service for other programs
// (the floor), and the platform's notepad, taking turns in one run. Then the size of Marl.exe, and
// its processor time while idle.
//
// The splash delays the start on purpose; here it is clicked away as soon as it shows.

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "bench/Race.h"

namespace {

constexpr int kRounds = 15;
constexpr double kPatience = 20;  // seconds until a start counts as failed
constexpr int kIdleSeconds = 10;

std::wstring FolderOf(const std::wstring& path) { return path.substr(0, path.rfind(L'\\')); }

std::wstring OwnFolder() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return FolderOf(path);
}

struct Search {
  DWORD process = 0;
  HWND main = nullptr;
  HWND splash = nullptr;
};

BOOL CALLBACK Visit(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != search.process || !IsWindowVisible(window)) return TRUE;
  RECT place = {};
  GetWindowRect(window, &place);
  if (place.right - place.left < 200) return TRUE;
  (GetWindowTextLengthW(window) > 0 ? search.main : search.splash) = window;
  return TRUE;
}

/// Starts the program, waits until its window has a title, is visible and responds, and ends it.
/// Returns the seconds, or a negative number on failure. `whileIdle` is called before the end.
template <typename WhileIdle>
double Start(const std::wstring& path, WhileIdle whileIdle) {
  std::wstring commandLine = L"\"" + path + L"\"";
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process = {};
  const double start = marl::bench::Now();
  if (!CreateProcessW(path.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                      FolderOf(path).c_str(), &startup, &process)) {
    return -1;
  }
  double seconds = -1;
  Search search;
  search.process = process.dwProcessId;
  while (marl::bench::Now() - start < kPatience) {
    search.main = search.splash = nullptr;
    EnumWindows(Visit, reinterpret_cast<LPARAM>(&search));
    if (search.splash) {
      PostMessageW(search.splash, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(20, 20));
      PostMessageW(search.splash, WM_LBUTTONUP, 0, MAKELPARAM(20, 20));
    }
    DWORD_PTR answer = 0;
    if (search.main &&
        SendMessageTimeoutW(search.main, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 5000, &answer)) {
      seconds = marl::bench::Now() - start;
      break;
    }
    Sleep(1);
  }
  if (seconds >= 0) whileIdle(process.hProcess);
  if (search.main) PostMessageW(search.main, WM_CLOSE, 0, 0);
  if (WaitForSingleObject(process.hProcess, 5000) != WAIT_OBJECT_0) {
    TerminateProcess(process.hProcess, 1);
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return seconds;
}

double ProcessorSeconds(HANDLE process) {
  FILETIME created, ended, kernel, user;
  if (!GetProcessTimes(process, &created, &ended, &kernel, &user)) return -1;
  const auto seconds = [](const FILETIME& time) {
    return (static_cast<double>(time.dwHighDateTime) * 4294967296.0 + time.dwLowDateTime) * 1e-7;
  };
  return seconds(kernel) + seconds(user);
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// A user who has answered the first questions.
void AnswerQuestions() {
  HKEY key = nullptr;
  if (RegCreateKeyW(HKEY_CURRENT_USER, L"Software\\VB and VBA Program Settings\\Marl\\Settings",
                    &key)) {
    return;
  }
  RegSetValueExW(key, L"FirstRun", 0, REG_SZ, reinterpret_cast<const BYTE*>(L"N"), 4);
  RegCloseKey(key);
}

}  // namespace

int main() {
  const std::wstring own = OwnFolder();
  const std::wstring marl = FolderOf(own) + L"\\shell\\Marl.exe";
  struct Runner {
    const char* name;
    std::wstring path;
    std::vector<double> seconds;
  };
  std::vector<Runner> runners = {{"Marl.exe", marl, {}},
                                 {"empty window", own + L"\\empty_window.exe", {}},
                                 {"floor", own + L"\\floor_window.exe", {}},
                                 {"notepad", L"C:\\windows\\system32\\notepad.exe", {}}};
  AnswerQuestions();
  for (int round = 0; round <= kRounds; ++round) {
    for (Runner& runner : runners) {
      const double seconds = Start(runner.path, [](HANDLE) {});
      if (seconds < 0) {
        std::printf("%s did not come up\n", runner.name);
        return 2;
      }
      if (round > 0) runner.seconds.push_back(seconds);  // the first round only warms up
    }
  }
  for (const Runner& runner : runners) {
    std::printf("%-16s %8.1f ms (median of %d; best %.1f)\n", runner.name,
                Median(runner.seconds) * 1e3, kRounds,
                *std::min_element(runner.seconds.begin(), runner.seconds.end()) * 1e3);
  }

  WIN32_FILE_ATTRIBUTE_DATA file = {};
  GetFileAttributesExW(marl.c_str(), GetFileExInfoStandard, &file);
  std::printf("Marl.exe has %lu bytes with its pictures\n", file.nFileSizeLow);

  double idle = -1;
  Start(marl, [&](HANDLE process) {
    Sleep(1000);
    const double before = ProcessorSeconds(process);
    Sleep(kIdleSeconds * 1000);
    idle = ProcessorSeconds(process) - before;
  });
  std::printf("idle for %d s: %.3f s of processor time\n", kIdleSeconds, idle);

  marl::bench::Goals goals;
  const double ours = Median(runners[0].seconds);
  goals.AtMost("startup", ours / Median(runners[1].seconds), 1.25);
  goals.AtMost("startup_floor", ours / Median(runners[2].seconds), 1.1);
  goals.AtMost("startup_notepad", ours / Median(runners[3].seconds), 1);
  goals.AtMost("idle_processor_seconds", idle, 0.016);
  goals.Tell();
  return 0;
}
