// A window with all that the platform keeps of Marl's: menus of the same size, the icons of its
// library, an icon in the notification area and a service for commands of other programs. No
// program that offers these starts faster.

#include <windows.h>
// After <windows.h>.
#include <ddeml.h>
#include <shellapi.h>

#include <string>

namespace {

constexpr UINT kTrayMessage = WM_APP;
constexpr UINT kTrayIcon = 1;
constexpr int kIcon = 117;

LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM w, LPARAM l) {
  if (message == WM_DESTROY) PostQuitMessage(0);
  return DefWindowProcW(window, message, w, l);
}

HDDEDATA CALLBACK OnConversation(UINT, UINT, HCONV, HSZ, HSZ, HDDEDATA, ULONG_PTR, ULONG_PTR) {
  return nullptr;
}

HMENU MenuBar() {
  constexpr int kEntries[] = {13, 2, 5, 2, 2, 9, 3};
  const HMENU bar = CreateMenu();
  UINT_PTR id = 100;
  for (const int entries : kEntries) {
    const HMENU menu = CreatePopupMenu();
    for (int i = 0; i < entries; ++i) AppendMenuW(menu, MF_STRING, ++id, L"&Entry...\tCtrl+E");
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(menu), L"&Project");
  }
  return bar;
}

/// Marl's library of icons, in its folder beside that of the benchmarks.
HMODULE IconLibrary() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  path.resize(path.rfind(L'\\'));
  path.resize(path.rfind(L'\\'));
  return LoadLibraryExW((path + L"\\shell\\q17icl.oru").c_str(), nullptr,
                        LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
}

HICON LoadIconOf(HMODULE library, int width, int height) {
  return static_cast<HICON>(LoadImageW(library, MAKEINTRESOURCEW(kIcon), IMAGE_ICON,
                                       GetSystemMetrics(width), GetSystemMetrics(height),
                                       LR_SHARED));
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int show) {
  WNDCLASSW windowClass = {};
  windowClass.lpfnWndProc = OnMessage;
  windowClass.hInstance = instance;
  windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
  windowClass.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
  windowClass.lpszClassName = L"MarlFloorWindow";
  RegisterClassW(&windowClass);
  const HWND window = CreateWindowW(L"MarlFloorWindow", L"Floor", WS_OVERLAPPEDWINDOW, 100, 100,
                                    592, 387, nullptr, MenuBar(), instance, nullptr);
  const HMODULE library = IconLibrary();
  const HICON big = LoadIconOf(library, SM_CXICON, SM_CYICON);
  const HICON small = LoadIconOf(library, SM_CXSMICON, SM_CYSMICON);
  FreeLibrary(library);
  SendMessageW(window, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(big));
  SendMessageW(window, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(small));

  DWORD conversations = 0;
  DdeInitializeW(&conversations, OnConversation, APPCLASS_STANDARD, 0);
  const HSZ service = DdeCreateStringHandleW(conversations, L"MarlFloor", CP_WINUNICODE);
  DdeNameService(conversations, service, nullptr, DNS_REGISTER);

  NOTIFYICONDATAW icon = {};
  icon.cbSize = sizeof icon;
  icon.hWnd = window;
  icon.uID = kTrayIcon;
  icon.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
  icon.uCallbackMessage = kTrayMessage;
  icon.hIcon = small;
  Shell_NotifyIconW(NIM_ADD, &icon);

  ShowWindow(window, show);
  UpdateWindow(window);
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  Shell_NotifyIconW(NIM_DELETE, &icon);
  DdeUninitialize(conversations);
  return 0;
}
