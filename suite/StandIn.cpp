// A stand-in for any tool of the suite: shows and logs what it was started with.
//
// One program under many names. It shows its own file name, the arguments and the working directory
// in a small window, and appends the same to a log as one line of JSON:
//   MARL_SUITE_LOG     path of the log; without it nothing is written
//   MARL_SUITE_LINGER  milliseconds until the window closes by itself; 0 shows no window at all;
//                      without it the window stays until the user closes it
// A stand-in that is started hidden, or silently by "/s", shows no window and ends at once.
//
// It is copied some twenty times, so it stays small: no heap, no C runtime library. The libraries
// for windows are loaded only when there is a window to show: tests start thousands of silent ones,
// and without those libraries a start takes a fraction of the time.

#include <windows.h>

#include <cstddef>

namespace {

// The limit of command lines and paths.
constexpr std::size_t kLongest = 32768;
// Four texts, each unit at most six characters, and the text between them.
constexpr std::size_t kLineSize = 4 * 6 * kLongest + 256;

constexpr COLORREF kGreen = RGB(0, 77, 57);
constexpr COLORREF kGrey = RGB(96, 96, 96);
constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr int kHeadingId = 1;
constexpr int kCaptionId = 2;
constexpr int kValueId = 3;

struct Start {
  wchar_t path[kLongest];
  wchar_t directory[kLongest];
  const wchar_t* program;
  const wchar_t* arguments;
  int show;
};

/// Builds a line of text; what does not fit is dropped.
class Line {
 public:
  void Raw(const char* text) {
    while (*text) Put(*text++);
  }

  /// A JSON string. Half a surrogate pair cannot be encoded in UTF-8 and is written as an escape.
  void Quoted(const wchar_t* text) {
    Put('"');
    for (; *text; ++text) {
      const unsigned unit = *text;
      const unsigned next = text[1];
      if (unit == '"' || unit == '\\') {
        Put('\\');
        Put(static_cast<char>(unit));
      } else if (unit < 0x20) {
        Escape(unit);
      } else if (unit >= 0xD800 && unit < 0xDC00 && next >= 0xDC00 && next < 0xE000) {
        Utf8(0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
        ++text;
      } else if (unit >= 0xD800 && unit < 0xE000) {
        Escape(unit);
      } else {
        Utf8(unit);
      }
    }
    Put('"');
  }

  void Number(int value) {
    if (value < 0) {
      Put('-');
      value = -value;
    }
    if (value >= 10) Number(value / 10);
    Put(static_cast<char>('0' + value % 10));
  }

  const char* data() const { return text_; }
  DWORD size() const { return static_cast<DWORD>(size_); }

 private:
  void Put(char c) {
    if (size_ < kLineSize) text_[size_++] = c;
  }
  void Escape(unsigned unit) {
    Raw("\\u");
    for (int shift = 12; shift >= 0; shift -= 4) Put("0123456789abcdef"[unit >> shift & 0xF]);
  }
  void Utf8(unsigned point) {
    if (point < 0x80) return Put(static_cast<char>(point));
    if (point < 0x800) {
      Put(static_cast<char>(0xC0 | point >> 6));
    } else {
      if (point < 0x10000) {
        Put(static_cast<char>(0xE0 | point >> 12));
      } else {
        Put(static_cast<char>(0xF0 | point >> 18));
        Put(static_cast<char>(0x80 | (point >> 12 & 0x3F)));
      }
      Put(static_cast<char>(0x80 | (point >> 6 & 0x3F)));
    }
    Put(static_cast<char>(0x80 | (point & 0x3F)));
  }

  char text_[kLineSize];
  std::size_t size_ = 0;
};

// Too large for the stack.
Start g_start;
Line g_line;

const wchar_t* BehindProgramName(const wchar_t* at) {
  if (*at == L'"') {
    ++at;
    while (*at && *at != L'"') ++at;
    if (*at) ++at;
  } else {
    while (*at && *at != L' ' && *at != L'\t') ++at;
  }
  // The first blank separates; further ones belong to the arguments.
  if (*at == L' ' || *at == L'\t') ++at;
  return at;
}

void ReadStart(Start& start) {
  GetModuleFileNameW(nullptr, start.path, kLongest);
  GetCurrentDirectoryW(kLongest, start.directory);
  start.program = start.path;
  for (const wchar_t* at = start.path; *at; ++at) {
    if (*at == L'\\') start.program = at + 1;
  }
  start.arguments = BehindProgramName(GetCommandLineW());
  STARTUPINFOW info = {};
  info.cb = sizeof info;
  GetStartupInfoW(&info);
  start.show = info.dwFlags & STARTF_USESHOWWINDOW ? info.wShowWindow : -1;
}

void Record(const Start& start, const wchar_t* log) {
  g_line.Raw("{\"program\": ");
  g_line.Quoted(start.program);
  g_line.Raw(", \"path\": ");
  g_line.Quoted(start.path);
  g_line.Raw(", \"arguments\": ");
  g_line.Quoted(start.arguments);
  g_line.Raw(", \"directory\": ");
  g_line.Quoted(start.directory);
  g_line.Raw(", \"show\": ");
  g_line.Number(start.show);
  g_line.Raw("}\n");
  // Append mode and a single write, so that stand-ins that start together do not mix their lines.
  const HANDLE file = CreateFileW(log, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                  nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  DWORD written = 0;
  WriteFile(file, g_line.data(), g_line.size(), &written, nullptr);
  CloseHandle(file);
}

int Number(const wchar_t* text) {
  int value = 0;
  for (; *text >= L'0' && *text <= L'9' && value < 100000000; ++text) {
    value = value * 10 + (*text - L'0');
  }
  return value;
}

/// What a window needs of user32.dll and gdi32.dll.
struct Windowing {
  HMODULE user = LoadLibraryW(L"user32.dll");
  HMODULE gdi = LoadLibraryW(L"gdi32.dll");

#define MARL_FUNCTION(library, name) \
  decltype(&::name) name =           \
      reinterpret_cast<decltype(&::name)>(reinterpret_cast<void*>(GetProcAddress(library, #name)))
  MARL_FUNCTION(user, AdjustWindowRect);
  MARL_FUNCTION(user, CreateWindowExW);
  MARL_FUNCTION(user, DefWindowProcW);
  MARL_FUNCTION(user, DestroyWindow);
  MARL_FUNCTION(user, DispatchMessageW);
  MARL_FUNCTION(user, DrawTextW);
  MARL_FUNCTION(user, GetDC);
  MARL_FUNCTION(user, GetDlgCtrlID);
  MARL_FUNCTION(user, GetMessageW);
  MARL_FUNCTION(user, LoadCursorW);
  MARL_FUNCTION(user, LoadIconW);
  MARL_FUNCTION(user, PostQuitMessage);
  MARL_FUNCTION(user, RegisterClassW);
  MARL_FUNCTION(user, ReleaseDC);
  MARL_FUNCTION(user, SendMessageW);
  MARL_FUNCTION(user, SetTimer);
  MARL_FUNCTION(user, SetWindowPos);
  MARL_FUNCTION(user, ShowWindow);
  MARL_FUNCTION(user, SystemParametersInfoW);
  MARL_FUNCTION(user, TranslateMessage);
  MARL_FUNCTION(gdi, CreateFontIndirectW);
  MARL_FUNCTION(gdi, CreateSolidBrush);
  MARL_FUNCTION(gdi, GetDeviceCaps);
  MARL_FUNCTION(gdi, GetStockObject);
  MARL_FUNCTION(gdi, SelectObject);
  MARL_FUNCTION(gdi, SetBkColor);
  MARL_FUNCTION(gdi, SetTextColor);
#undef MARL_FUNCTION

  HBRUSH green = nullptr;
};

Windowing* g_windowing = nullptr;

LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM w, LPARAM l) {
  switch (message) {
    case WM_CTLCOLORSTATIC: {
      const HDC context = reinterpret_cast<HDC>(w);
      const int id = g_windowing->GetDlgCtrlID(reinterpret_cast<HWND>(l));
      g_windowing->SetTextColor(context, id == kHeadingId   ? kWhite
                                         : id == kCaptionId ? kGrey
                                                            : RGB(0, 0, 0));
      g_windowing->SetBkColor(context, id == kHeadingId ? kGreen : kWhite);
      return reinterpret_cast<LRESULT>(id == kHeadingId ? g_windowing->green
                                                        : g_windowing->GetStockObject(WHITE_BRUSH));
    }
    case WM_CHAR:
      if (w == VK_ESCAPE) g_windowing->DestroyWindow(window);
      return 0;
    case WM_TIMER: g_windowing->DestroyWindow(window); return 0;
    case WM_DESTROY: g_windowing->PostQuitMessage(0); return 0;
    default: return g_windowing->DefWindowProcW(window, message, w, l);
  }
}

int DpiOfScreen() {
  const HDC screen = g_windowing->GetDC(nullptr);
  const int dpi = g_windowing->GetDeviceCaps(screen, LOGPIXELSY);
  g_windowing->ReleaseDC(nullptr, screen);
  return dpi;
}

/// A column of labels in a window, at the screen's resolution.
class Column {
 public:
  static constexpr int kWidth = 460;

  Column(HWND window, int dpi) : window_(window), dpi_(dpi) {
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof metrics;
    g_windowing->SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    LOGFONTW& font = metrics.lfMessageFont;
    font.lfHeight = -Pixels(13);
    plain_ = g_windowing->CreateFontIndirectW(&font);
    font.lfHeight = -Pixels(20);
    font.lfWeight = FW_BOLD;
    large_ = g_windowing->CreateFontIndirectW(&font);
  }

  void Heading(const wchar_t* text) {
    top_ = Pixels(48);
    Add(kHeadingId, text, large_, 0, 0, Pixels(kWidth), top_, SS_CENTER | SS_CENTERIMAGE);
  }

  void Entry(const wchar_t* caption, const wchar_t* text) {
    const int left = Pixels(16);
    const int width = Pixels(kWidth) - 2 * left;
    top_ += Pixels(12);
    Add(kCaptionId, caption, plain_, left, top_, width, Pixels(18), SS_LEFT);
    top_ += Pixels(18);
    // As tall as the text needs, up to a limit.
    RECT area = {0, 0, width, 0};
    const HDC context = g_windowing->GetDC(window_);
    const HGDIOBJ before = g_windowing->SelectObject(context, plain_);
    g_windowing->DrawTextW(context, *text ? text : L" ", -1, &area,
                           DT_CALCRECT | DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX);
    g_windowing->SelectObject(context, before);
    g_windowing->ReleaseDC(window_, context);
    const int height = area.bottom < Pixels(200) ? area.bottom : Pixels(200);
    Add(kValueId, text, plain_, left, top_, width, height, SS_LEFT | SS_EDITCONTROL);
    top_ += height;
  }

  int width() const { return Pixels(kWidth); }
  int height() const { return top_ + Pixels(16); }

 private:
  int Pixels(int value) const { return MulDiv(value, dpi_, 96); }

  void Add(int id, const wchar_t* text, HFONT font, int left, int top, int width, int height,
           DWORD style) {
    const HWND child = g_windowing->CreateWindowExW(
        0, L"STATIC", text, WS_CHILD | WS_VISIBLE | SS_NOPREFIX | style, left, top, width, height,
        window_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
    g_windowing->SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  }

  HWND window_;
  int dpi_;
  int top_ = 0;
  HFONT plain_;
  HFONT large_;
};

void Show(const Start& start, HINSTANCE instance, int linger) {
  Windowing windowing;
  g_windowing = &windowing;
  g_windowing->green = g_windowing->CreateSolidBrush(kGreen);
  WNDCLASSW description = {};
  description.lpfnWndProc = OnMessage;
  description.hInstance = instance;
  description.hCursor = g_windowing->LoadCursorW(nullptr, IDC_ARROW);
  description.hIcon = g_windowing->LoadIconW(nullptr, IDI_APPLICATION);
  description.hbrBackground = static_cast<HBRUSH>(g_windowing->GetStockObject(WHITE_BRUSH));
  description.lpszClassName = L"MarlStandIn";
  if (!g_windowing->RegisterClassW(&description)) return;
  constexpr DWORD kStyle = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;
  const HWND window = g_windowing->CreateWindowExW(0, description.lpszClassName, start.program,
                                                   kStyle, CW_USEDEFAULT, CW_USEDEFAULT, 0, 0,
                                                   nullptr, nullptr, instance, nullptr);
  if (!window) return;
  Column column(window, DpiOfScreen());
  column.Heading(start.program);
  column.Entry(L"Arguments", *start.arguments ? start.arguments : L"(none)");
  column.Entry(L"Working directory", start.directory);
  RECT outer = {0, 0, column.width(), column.height()};
  g_windowing->AdjustWindowRect(&outer, kStyle, FALSE);
  g_windowing->SetWindowPos(window, nullptr, 0, 0, outer.right - outer.left,
                            outer.bottom - outer.top, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  if (linger > 0) g_windowing->SetTimer(window, 1, static_cast<UINT>(linger), nullptr);
  g_windowing->ShowWindow(window, start.show < 0 ? SW_SHOWNORMAL : start.show);
  MSG message;
  while (g_windowing->GetMessageW(&message, nullptr, 0, 0) > 0) {
    g_windowing->TranslateMessage(&message);
    g_windowing->DispatchMessageW(&message);
  }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int) {
  ReadStart(g_start);
  static wchar_t value[kLongest];
  if (GetEnvironmentVariableW(L"MARL_SUITE_LOG", value, kLongest) > 0) Record(g_start, value);
  const bool told = GetEnvironmentVariableW(L"MARL_SUITE_LINGER", value, kLongest) > 0;
  const int linger = told ? Number(value) : -1;
  const bool silent = g_start.show == SW_HIDE || lstrcmpW(g_start.arguments, L"/s") == 0;
  if (linger != 0 && !silent) Show(g_start, instance, linger);
  return 0;
}
