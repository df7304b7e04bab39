#include "tests/desktop/Program.h"

#include <psapi.h>
#include <tlhelp32.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>

#include "tests/desktop/Input.h"

namespace marl::desktop {

namespace {

// The design of the panel, in twips: columns, the pitch of the grid, and in a cell the middle of
// icon and label.
constexpr int kColumns = 5;
constexpr int kCellWidth = 1740;
constexpr int kCellHeight = 1260;
constexpr int kMiddle = 900;
constexpr int kIconMiddle = 480;
constexpr int kLabelMiddle = 1050;

/// Counts a process's graphics objects in its own table of them; Wine keeps no count. 0 if there is
/// no such table.
DWORD GraphicsObjectsInTable(HANDLE process) {
  struct Entry {
    std::uint64_t object;
    std::uint32_t owner;
    std::uint16_t unique;
    std::uint8_t type;  // 0 if it is free
    std::uint8_t flags;
    std::uint64_t user;
  };
  struct BasicInformation {
    LONG_PTR status;
    ULONG_PTR environment;
    ULONG_PTR others[4];
  } basic = {};
  constexpr std::size_t kEntries = 0x4000;
  // Under Wine, a 32-bit process has the table in its 64-bit block, a page below the other one.
  constexpr LONG_PTR kTable = sizeof(void*) == 8 ? 0xF8 : 0xF8 - 0x1000;
  using Query = LONG(NTAPI*)(HANDLE, int, void*, ULONG, ULONG*);
  const auto query = reinterpret_cast<Query>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQueryInformationProcess")));
  if (!query || query(process, 0, &basic, sizeof basic, nullptr) < 0) return 0;
  const auto read = [&](ULONG_PTR from, void* to, std::size_t size) {
    SIZE_T done = 0;
    return ReadProcessMemory(process, reinterpret_cast<const void*>(from), to, size, &done) &&
           done == size;
  };
  ULONG_PTR table = 0;
  std::vector<Entry> entries(kEntries);
  if (!read(basic.environment + kTable, &table, sizeof table) || !table ||
      !read(table, entries.data(), kEntries * sizeof(Entry))) {
    return 0;
  }
  return static_cast<DWORD>(std::count_if(entries.begin(), entries.end(),
                                          [](const Entry& entry) { return entry.type != 0; }));
}

/// Windows, menus, icons and cursors of all programs of the desktop, which share their handles:
/// enough new ones fill all gaps.
DWORD UserObjectsOfAll() {
  std::array<HMENU, 512> made = {};
  DWORD highest = 0;
  for (HMENU& menu : made) {
    menu = CreateMenu();
    highest = std::max<DWORD>(highest, LOWORD(HandleToULong(menu)));
  }
  for (const HMENU menu : made) DestroyMenu(menu);
  // Every other number is a handle.
  return highest / 2 - static_cast<DWORD>(made.size());
}

/// Counts a process's handles in the table of all handles; Wine keeps no count for each process.
std::size_t HandlesInSystemTable(DWORD process) {
  struct Entry {
    void* object;
    ULONG_PTR process;
    ULONG_PTR handle;
    ULONG access;
    USHORT trace;
    USHORT type;
    ULONG attributes;
    ULONG reserved;
  };
  struct Table {
    ULONG_PTR count;
    ULONG_PTR reserved;
    Entry entries[1];
  };
  constexpr int kExtendedHandleTable = 64;
  constexpr LONG kTooSmall = static_cast<LONG>(0xC0000004);
  using Query = LONG(NTAPI*)(int, void*, ULONG, ULONG*);
  const auto query = reinterpret_cast<Query>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
  if (!query) return 0;
  std::vector<ULONG_PTR> room(16384);
  LONG status;
  while ((status = query(kExtendedHandleTable, room.data(),
                         static_cast<ULONG>(room.size() * sizeof(ULONG_PTR)), nullptr)) ==
         kTooSmall) {
    room.resize(room.size() * 2);
  }
  if (status < 0) return 0;
  const auto* const table = reinterpret_cast<const Table*>(room.data());
  return static_cast<std::size_t>(
      std::count_if(table->entries, table->entries + table->count,
                    [&](const Entry& entry) { return entry.process == process; }));
}

/// The environment of this process with some variables replaced, in the form for CreateProcess. One
/// without a value is removed.
std::wstring EnvironmentBlock(const std::map<std::wstring, std::wstring>& changes) {
  std::wstring block;
  wchar_t* const all = GetEnvironmentStringsW();
  for (const wchar_t* at = all; *at; at += wcslen(at) + 1) {
    const std::wstring entry = at;
    const std::wstring name = entry.substr(0, entry.find(L'=', 1));
    const bool changed = std::any_of(changes.begin(), changes.end(), [&](const auto& change) {
      return _wcsicmp(change.first.c_str(), name.c_str()) == 0;
    });
    if (!changed) block += entry + L'\0';
  }
  FreeEnvironmentStringsW(all);
  for (const auto& [name, value] : changes) {
    if (!value.empty()) block += name + L"=" + value + L'\0';
  }
  block += L'\0';
  return block;
}

POINT OnScreen(HWND window, int xTwips, int yTwips) {
  POINT at = {PixelsOf(xTwips), PixelsOf(yTwips)};
  ClientToScreen(window, &at);
  return at;
}

POINT InCell(HWND main, int button, int x, int y) {
  return OnScreen(main, button % kColumns * kCellWidth + x, button / kColumns * kCellHeight + y);
}

}  // namespace

std::wstring MessageBoxWindow::Text() const {
  // The icon is another static control; this is the id of the text.
  return TextOf(GetDlgItem(window_, 0xFFFF));
}

std::vector<int> MessageBoxWindow::Buttons() const {
  std::vector<int> buttons;
  for (int id = IDOK; id <= IDCONTINUE; ++id) {
    const HWND button = GetDlgItem(window_, id);
    if (button && IsWindowVisible(button)) buttons.push_back(id);
  }
  return buttons;
}

bool MessageBoxWindow::Press(int button) const {
  const HWND child = GetDlgItem(window_, button);
  // If the box is still being activated, a click would be taken away from its button.
  if (!child || !BringForward(window_)) return false;
  RECT area;
  if (!GetWindowRect(child, &area)) return false;
  const POINT middle = {(area.left + area.right) / 2, (area.top + area.bottom) / 2};
  if (!WaitUntil([&] { return WindowFromPoint(middle) == child; })) return false;
  Click(middle);
  return WaitUntil([&] { return !IsWindow(window_) || !IsWindowVisible(window_); });
}

RunningMarl::RunningMarl(const SuiteFolder& suite, const std::wstring& commandLine,
                         const std::wstring& program, const std::optional<std::wstring>& temp) {
  const std::wstring path = program.empty() ? suite.marl() : program;
  std::wstring line = L"\"" + path + L"\"";
  if (!commandLine.empty()) line += L" " + commandLine;
  std::wstring environment = EnvironmentBlock({{L"MARL_SUITE_LOG", suite.log()},
                                               {L"MARL_SUITE_LINGER", L"0"},
                                               {L"TEMP", temp.value_or(suite.temp())},
                                               {L"TMP", temp.value_or(suite.temp())}});
  STARTUPINFOW info = {};
  info.cb = sizeof info;
  PROCESS_INFORMATION started = {};
  // Not its own folder: Marl itself must set the tools' working directory.
  if (CreateProcessW(path.c_str(), line.data(), nullptr, nullptr, FALSE, CREATE_UNICODE_ENVIRONMENT,
                     environment.data(), suite.temp().c_str(), &info, &started)) {
    CloseHandle(started.hThread);
    process_ = started.hProcess;
    id_ = started.dwProcessId;
  }
}

RunningMarl::~RunningMarl() {
  if (!process_) return;
  if (Running()) {
    TerminateProcess(process_, 99);
    WaitForSingleObject(process_, static_cast<DWORD>(kDeadline.count()));
  }
  CloseHandle(process_);
}

bool RunningMarl::Running() const {
  return process_ && WaitForSingleObject(process_, 0) == WAIT_TIMEOUT;
}

std::optional<DWORD> RunningMarl::WaitForExit() const {
  if (!process_ || !WaitUntil([&] { return !Running(); })) return {};
  DWORD code = 0;
  GetExitCodeProcess(process_, &code);
  return code;
}

HWND RunningMarl::Window() const {
  return FindWindowOf(id_, [](HWND window) {
    return ClassOf(window) == L"MarlForm" &&
           (GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_APPWINDOW) != 0 &&
           TextOf(window).starts_with(L"Marl");
  });
}

HWND RunningMarl::Splash() const {
  return FindWindowOf(id_, [](HWND window) {
    return ClassOf(window) == L"MarlForm" && IsWindowVisible(window) &&
           (GetWindowLongW(window, GWL_STYLE) & WS_CAPTION) == 0;
  });
}

void RunningMarl::DismissSplash() const {
  const HWND splash = Splash();
  if (!splash) return;
  PostMessageW(splash, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(9, 9));
  PostMessageW(splash, WM_LBUTTONUP, 0, MAKELPARAM(9, 9));
}

HWND RunningMarl::WaitForWindow() const {
  HWND window = nullptr;
  WaitUntil([&] {
    DismissSplash();
    window = Window();
    if (window && !IsWindowVisible(window)) window = nullptr;
    return window || !Running();
  });
  // Another window's activation may still be on its way to the front.
  constexpr std::chrono::seconds kPatience{2};
  if (window)
    WaitUntil([&] { return GetForegroundWindow() == window || IsIconic(window) || !Running(); },
              kPatience);
  return window;
}

MessageBoxWindow RunningMarl::Box() const {
  return MessageBoxWindow(FindWindowOf(id_, [](HWND window) {
    return ClassOf(window) == L"#32770" && IsWindowVisible(window) && GetDlgItem(window, 0xFFFF);
  }));
}

MessageBoxWindow RunningMarl::WaitForBox() const {
  MessageBoxWindow box;
  WaitUntil([&] {
    box = Box();
    return box || !Running();
  });
  return box;
}

HWND RunningMarl::Window(const wchar_t* windowClass, const wchar_t* title) const {
  for (HWND window = nullptr;
       (window = FindWindowExW(nullptr, window, windowClass, title)) != nullptr;) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == id_ && IsWindowVisible(window)) return window;
  }
  return nullptr;
}

HWND RunningMarl::WaitForWindow(const wchar_t* windowClass, const wchar_t* title) const {
  HWND window = nullptr;
  WaitUntil([&] { return (window = Window(windowClass, title)) != nullptr || !Running(); });
  return window;
}

bool RunningMarl::WaitForIdle() const {
  return process_ && WaitForInputIdle(process_, static_cast<DWORD>(kDeadline.count())) == 0;
}

DWORD RunningMarl::GraphicsObjects() const {
  const DWORD count = GetGuiResources(process_, GR_GDIOBJECTS);
  return count ? count : GraphicsObjectsInTable(process_);
}

DWORD RunningMarl::UserObjects() const {
  const DWORD count = GetGuiResources(process_, GR_USEROBJECTS);
  return count ? count : UserObjectsOfAll();
}

bool RunningMarl::PressMenu(wchar_t top, wchar_t entry) const {
  const HWND main = Window();
  const auto inMenu = [&] {
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    return GetGUIThreadInfo(GetWindowThreadProcessId(main, nullptr), &info) &&
           (info.flags & GUI_INMENUMODE) != 0;
  };
  const auto isOpen = [&] {
    return FindWindowOf(id_, [](HWND window) {
             return ClassOf(window) == L"#32768" && IsWindowVisible(window);
           }) != nullptr;
  };
  // A message box that has just closed may not have given the activation back yet.
  if (!WaitUntil([&] { return IsWindowEnabled(main) != FALSE; })) return false;
  // Keys are lost if another window takes the activation while they are on their way.
  constexpr std::chrono::seconds kPatience{20};
  const auto open = [&] {
    if (!BringForward(main)) return false;
    Chord({VK_MENU}, LOBYTE(VkKeyScanW(top)));
    return WaitUntil([&] { return isOpen() && inMenu(); }, kPatience);
  };
  if (!open() && !open()) return false;
  Keys(std::wstring(1, entry));
  return WaitUntil([&] { return !isOpen(); });
}

std::size_t RunningMarl::PrivateBytes() const {
  // Windows reports the same number as private usage; Wine has only this one.
  PROCESS_MEMORY_COUNTERS counters = {};
  counters.cb = sizeof counters;
  GetProcessMemoryInfo(process_, &counters, sizeof counters);
  return counters.PagefileUsage;
}

std::size_t RunningMarl::Handles() const {
  DWORD count = 0;
  GetProcessHandleCount(process_, &count);
  return count ? count : HandlesInSystemTable(id_);
}

FrozenProcess::FrozenProcess(DWORD process) {
  const HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 entry = {};
  entry.dwSize = sizeof entry;
  for (BOOL more = Thread32First(all, &entry); more; more = Thread32Next(all, &entry)) {
    if (entry.th32OwnerProcessID != process) continue;
    const HANDLE thread = OpenThread(THREAD_SUSPEND_RESUME, FALSE, entry.th32ThreadID);
    if (!thread) continue;
    SuspendThread(thread);
    threads_.push_back(thread);
  }
  CloseHandle(all);
}

FrozenProcess::~FrozenProcess() {
  for (const HANDLE thread : threads_) {
    ResumeThread(thread);
    CloseHandle(thread);
  }
}

POINT IconOf(HWND main, int button) { return InCell(main, button, kMiddle, kIconMiddle); }
POINT LabelOf(HWND main, int button) { return InCell(main, button, kMiddle, kLabelMiddle); }

RECT CellOf(HWND main, int button) {
  const POINT from = InCell(main, button, 0, 0);
  const POINT to = InCell(main, button, kCellWidth, kCellHeight);
  return {from.x, from.y, to.x, to.y};
}

}  // namespace marl::desktop
