#include "platform/win32/ShellWin32.h"

#include <shellapi.h>

#include <array>

#include "platform/win32/Handle.h"

namespace marl::win32 {

int ShellWin32::Execute(ShellOwner owner, TextView verb, TextView file, TextView parameters,
                        TextView directory, int show) {
  const HWND window = owner == ShellOwner::kMainForm ? mainWindow_() : GetDesktopWindow();
  const Text verbText(verb);
  const HINSTANCE code =
      ShellExecuteW(window, verb.empty() ? nullptr : Wide(verbText), Wide(Text(file)),
                    Wide(Text(parameters)), Wide(Text(directory)), show);
  return static_cast<int>(reinterpret_cast<INT_PTR>(code));
}

int ShellWin32::FindProgram(TextView file, TextView directory, Text& program) {
  // The platform writes MAX_PATH characters at most; the rest is room that nobody misses.
  std::array<wchar_t, 1024> buffer = {};
  const HINSTANCE code = FindExecutableW(Wide(Text(file)), Wide(Text(directory)), buffer.data());
  const int result = static_cast<int>(reinterpret_cast<INT_PTR>(code));
  if (result > 32) {
    buffer.back() = L'\0';
    program = FromWide(buffer.data(), wcslen(buffer.data()));
  }
  return result;
}

bool ShellWin32::Run(TextView commandLine, int show) {
  if (commandLine.empty() || commandLine.find(u'\0') != TextView::npos) return false;
  // The platform writes into the command line that it is given.
  Text line(commandLine);
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = static_cast<WORD>(show);
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(nullptr, reinterpret_cast<wchar_t*>(line.data()), nullptr, nullptr, FALSE, 0,
                      nullptr, nullptr, &startup, &process)) {
    return false;
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return true;
}

void ShellWin32::Help(TextView file, int command, int data) {
  WinHelpW(mainWindow_(), Wide(Text(file)), static_cast<UINT>(command),
           static_cast<ULONG_PTR>(data));
}

}  // namespace marl::win32
