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
  // The platform writes at most MAX_PATH characters; the rest stays unused.
  std::array<wchar_t, 1024> buffer = {};
  const HINSTANCE code = FindExecutableW(Wide(Text(file)), Wide(Text(directory)), buffer.data());
  const int result = static_cast<int>(reinterpret_cast<INT_PTR>(code));
  if (result > 32) {
    buffer.back() = L'\0';
    program = FromWide(buffer.data(), wcslen(buffer.data()));
  }
  return result;
}

Status ShellWin32::Run(TextView program, TextView commandLine, int show) {
  const auto cut = [](TextView text) { return text.find(u'\0') != TextView::npos; };
  if (commandLine.empty() || cut(commandLine) || cut(program)) return kInvalidParameter;
  // CreateProcess may write into the command line.
  Text line(commandLine);
  const Text path(program);
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = static_cast<WORD>(show);
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(path.empty() ? nullptr : Wide(path), reinterpret_cast<wchar_t*>(line.data()),
                      nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process)) {
    const DWORD error = GetLastError();
    return error == ERROR_SUCCESS ? kGeneralFailure : static_cast<Status>(error);
  }
  const UniqueProcess started(process.hProcess);
  const UniqueThread thread(process.hThread);
  return kOk;
}

void ShellWin32::Help(TextView file, int command, int data) {
  WinHelpW(mainWindow_(), Wide(Text(file)), static_cast<UINT>(command),
           static_cast<ULONG_PTR>(data));
}

}  // namespace marl::win32
