// A library that nobody should load: it leaves an empty file beside itself, named after the library
// and the program that has loaded it, such as "version.dll.Marl.exe.ran". Without a C runtime
// library, so that it can be loaded early and from anywhere.

#include <windows.h>

namespace {

constexpr DWORD kRoom = 4096;
wchar_t g_mark[2 * kRoom];
wchar_t g_program[kRoom];

void Append(const wchar_t* text) {
  wchar_t* end = g_mark;
  while (*end) ++end;
  while ((*end++ = *text++) != L'\0') {
  }
}

}  // namespace

extern "C" BOOL WINAPI DllMainCRTStartup(HINSTANCE self, DWORD reason, void*) {
  if (reason != DLL_PROCESS_ATTACH) return TRUE;
  GetModuleFileNameW(self, g_mark, kRoom);
  GetModuleFileNameW(nullptr, g_program, kRoom);
  const wchar_t* name = g_program;
  for (const wchar_t* at = g_program; *at; ++at) {
    if (*at == L'\\') name = at + 1;
  }
  Append(L".");
  Append(name);
  Append(L".ran");
  CloseHandle(CreateFileW(g_mark, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
  return TRUE;
}
