// A minimal program with a window: the least that a start costs on this machine.

#include <windows.h>

namespace {

LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM w, LPARAM l) {
  if (message == WM_DESTROY) PostQuitMessage(0);
  return DefWindowProcW(window, message, w, l);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int show) {
  WNDCLASSW windowClass = {};
  windowClass.lpfnWndProc = OnMessage;
  windowClass.hInstance = instance;
  windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
  windowClass.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
  windowClass.lpszClassName = L"MarlEmptyWindow";
  RegisterClassW(&windowClass);
  const HWND window = CreateWindowW(L"MarlEmptyWindow", L"Empty", WS_OVERLAPPEDWINDOW, 100, 100,
                                    592, 387, nullptr, nullptr, instance, nullptr);
  ShowWindow(window, show);
  UpdateWindow(window);
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return 0;
}
