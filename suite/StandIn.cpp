// A stand-in for any tool of the suite: shows and logs what it was started with.
//
// One program under many names. It shows its own file name, the arguments and the working directory
// in a small window, and appends the same to a log as one line of JSON:
//   MARL_SUITE_LOG     path of the log; without it nothing is written
//   MARL_SUITE_LINGER  milliseconds until the window closes by itself; 0 shows no window at all;
//                      without it the window stays until the user closes it
// A stand-in that is started hidden, or silently by "/s", shows no window and ends at once.
//
// It is copied some twenty times, so it stays small: no heap, no C runtime library.

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
    char digits[12];
    wsprintfA(digits, "%d", value);
    Raw(digits);
  }

  const char* data() const { return text_; }
  DWORD size() const { return static_cast<DWORD>(size_); }

 private:
  void Put(char c) {
    if (size_ < kLineSize) text_[size_++] = c;
  }
  void Escape(unsigned unit) {
    char escape[8];
    wsprintfA(escape, "\\u%04x", unit);
    Raw(escape);
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
HBRUSH g_green = nullptr;

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

LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM w, LPARAM l) {
  switch (message) {
    case WM_CTLCOLORSTATIC: {
      const HDC context = reinterpret_cast<HDC>(w);
      const int id = GetDlgCtrlID(reinterpret_cast<HWND>(l));
      SetTextColor(context, id == kHeadingId ? kWhite : id == kCaptionId ? kGrey : RGB(0, 0, 0));
      SetBkColor(context, id == kHeadingId ? kGreen : kWhite);
      return reinterpret_cast<LRESULT>(id == kHeadingId ? g_green : GetStockObject(WHITE_BRUSH));
    }
    case WM_CHAR:
      if (w == VK_ESCAPE) DestroyWindow(window);
      return 0;
    case WM_TIMER: DestroyWindow(window); return 0;
    case WM_DESTROY: PostQuitMessage(0); return 0;
    default: return DefWindowProcW(window, message, w, l);
  }
}

int DpiOfScreen() {
  const HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return dpi;
}

/// A column of labels in a window, at the screen's resolution.
class Column {
 public:
  static constexpr int kWidth = 460;

  Column(HWND window, int dpi) : window_(window), dpi_(dpi) {
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    LOGFONTW& font = metrics.lfMessageFont;
    font.lfHeight = -Pixels(13);
    plain_ = CreateFontIndirectW(&font);
    font.lfHeight = -Pixels(20);
    font.lfWeight = FW_BOLD;
    large_ = CreateFontIndirectW(&font);
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
    const HDC context = GetDC(window_);
    const HGDIOBJ before = SelectObject(context, plain_);
    DrawTextW(context, *text ? text : L" ", -1, &area,
              DT_CALCRECT | DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX);
    SelectObject(context, before);
    ReleaseDC(window_, context);
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
    const HWND child = CreateWindowExW(
        0, L"STATIC", text, WS_CHILD | WS_VISIBLE | SS_NOPREFIX | style, left, top, width, height,
        window_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
    SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  }

  HWND window_;
  int dpi_;
  int top_ = 0;
  HFONT plain_;
  HFONT large_;
};

void Show(const Start& start, HINSTANCE instance, int linger) {
  g_green = CreateSolidBrush(kGreen);
  WNDCLASSW description = {};
  description.lpfnWndProc = OnMessage;
  description.hInstance = instance;
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  description.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
  description.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
  description.lpszClassName = L"MarlStandIn";
  if (!RegisterClassW(&description)) return;
  constexpr DWORD kStyle = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;
  const HWND window =
      CreateWindowExW(0, description.lpszClassName, start.program, kStyle, CW_USEDEFAULT,
                      CW_USEDEFAULT, 0, 0, nullptr, nullptr, instance, nullptr);
  if (!window) return;
  Column column(window, DpiOfScreen());
  column.Heading(start.program);
  column.Entry(L"Arguments", *start.arguments ? start.arguments : L"(none)");
  column.Entry(L"Working directory", start.directory);
  RECT outer = {0, 0, column.width(), column.height()};
  AdjustWindowRect(&outer, kStyle, FALSE);
  SetWindowPos(window, nullptr, 0, 0, outer.right - outer.left, outer.bottom - outer.top,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  if (linger > 0) SetTimer(window, 1, static_cast<UINT>(linger), nullptr);
  ShowWindow(window, start.show < 0 ? SW_SHOWNORMAL : start.show);
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
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
