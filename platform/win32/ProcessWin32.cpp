#include "platform/win32/ProcessWin32.h"

#include <algorithm>
#include <array>
#include <string>

namespace marl::win32 {

Text ProcessWin32::CommandLine() const {
  const wchar_t* const whole = GetCommandLineW();
  return Text(BehindProgram(FromWide(whole, wcslen(whole))));
}

Text ProcessWin32::ProgramPath() const {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      return FromWide(path.data(), length);
    }
    path.resize(path.size() * 2);
  }
}

bool ProcessWin32::PreviousInstance() {
  // One switchboard per user: the name of the object contains the user.
  std::array<wchar_t, 257> user = {};
  DWORD size = static_cast<DWORD>(user.size());
  GetUserNameW(user.data(), &size);
  std::wstring name = L"Local\\Marl.Switchboard.";
  name += user.data();
  std::replace(name.begin() + 6, name.end(), L'\\', L'/');
  SetLastError(ERROR_SUCCESS);
  claim_ = UniqueMutex(CreateMutexW(nullptr, FALSE, name.c_str()));
  return GetLastError() == ERROR_ALREADY_EXISTS || GetLastError() == ERROR_ACCESS_DENIED;
}

void ProcessWin32::RegisterRestart(TextView commandLine) {
  RegisterApplicationRestart(Wide(Text(commandLine)), RESTART_NO_CRASH | RESTART_NO_HANG);
}

}  // namespace marl::win32
