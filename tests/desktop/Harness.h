#pragma once

#include <windows.h>
#include <ddeml.h>

#include <chrono>
#include <functional>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// Tools for tests on the real program: a suite folder with stand-ins, the user's settings, a
/// started Marl with its windows and message boxes, a mouse, keys, the screen and a DDE client.
///
/// Nothing sleeps for a fixed time: `WaitUntil` polls until something holds or the deadline has
/// passed. Only processes that were started here are ended, by their own handle.
namespace marl::desktop {

constexpr std::chrono::milliseconds kDeadline{60000};

/// Where the programs under test lie: the command line's --marl=PATH, --german=PATH and
/// --stand-in=PATH, or the environment's MARL_PROGRAM, MARL_GERMAN_PROGRAM and MARL_STAND_IN.
struct Programs {
  std::wstring marl;
  std::wstring german;
  std::wstring standIn;
};
extern Programs g_programs;

/// Polls until `holds` is true or the deadline has passed. Returns what it was in the end.
bool WaitUntil(const std::function<bool()>& holds, std::chrono::milliseconds deadline = kDeadline);

std::wstring FromUtf8(const std::string& text);
std::string ToUtf8(const std::wstring& text);
std::wstring Environment(const wchar_t* name);

/// What a stand-in recorded of one start.
struct Started {
  std::wstring program;
  std::wstring path;
  std::wstring arguments;
  std::wstring directory;
  int show = -1;

  bool operator==(const Started&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Started& started);

/// Reads one line of a stand-in's log; nothing when it is no such line.
std::optional<Started> ParseStarted(const std::string& line);

/// A folder with Marl.exe and a stand-in under each tool's name; removed with all that it holds.
/// Its neighbours are a private temporary folder and the stand-ins' log.
class SuiteFolder {
 public:
  /// Makes the folder `name` in a fresh place, without the tools named in `without`.
  explicit SuiteFolder(const std::wstring& name = L"Suite",
                       const std::vector<std::wstring>& without = {});
  ~SuiteFolder();
  SuiteFolder(const SuiteFolder&) = delete;
  SuiteFolder& operator=(const SuiteFolder&) = delete;

  /// The folder, without a separator at its end.
  const std::wstring& path() const { return path_; }
  const std::wstring& temp() const { return temp_; }
  const std::wstring& log() const { return log_; }
  std::wstring marl() const { return path_ + L"\\Marl.exe"; }
  void Remove(const std::wstring& tool) const;

  /// All starts recorded until now, in their order.
  const std::vector<Started>& Starts() const;
  /// The starts apart from the component registrar's, once there are at least `count` of them or
  /// the deadline has passed.
  std::vector<Started> WaitForTools(std::size_t count) const;
  /// What the folder and its temporary folder hold: path, size and time of writing.
  std::map<std::wstring, std::pair<std::uint64_t, std::uint64_t>> Files() const;

 private:
  std::wstring root_;
  std::wstring path_;
  std::wstring temp_;
  std::wstring log_;
  // What has been read of the log.
  mutable std::vector<Started> starts_;
  mutable LONG read_ = 0;
};

/// All tools of the suite that Marl starts.
const std::vector<std::wstring>& Tools();

/// A drive letter that stands for a folder while this lives.
class DriveLetter {
 public:
  explicit DriveLetter(const std::wstring& folder);
  ~DriveLetter();
  DriveLetter(const DriveLetter&) = delete;
  DriveLetter& operator=(const DriveLetter&) = delete;
  bool made() const { return made_; }
  /// "R:", say.
  const std::wstring& name() const { return name_; }

 private:
  std::wstring name_;
  std::wstring folder_;
  bool made_ = false;
};

/// One key of the registry in memory, with all that lies beneath it.
struct KeyImage {
  struct Value {
    DWORD kind;
    std::vector<BYTE> data;
    bool operator==(const Value&) const = default;
  };
  std::map<std::wstring, Value> values;
  std::map<std::wstring, KeyImage> keys;
  bool operator==(const KeyImage&) const = default;
};

/// The settings of the user who runs the tests, empty while this lives and put back after it.
class Settings {
 public:
  Settings();
  ~Settings();
  Settings(const Settings&) = delete;
  Settings& operator=(const Settings&) = delete;

  /// A setting of application Marl, section Settings; nothing when there is none.
  std::optional<std::wstring> Get(const std::wstring& key) const;
  void Set(const std::wstring& key, const std::wstring& value) const;
  /// A text below HKEY_CURRENT_USER\Software\Oru\Marl, in the subkey `key`.
  void SetRegistry(const std::wstring& key, const std::wstring& value,
                   const std::wstring& text) const;
  /// A value of any kind there, byte by byte.
  void SetRegistryBytes(const std::wstring& key, const std::wstring& value, DWORD kind,
                        const std::vector<BYTE>& bytes) const;
  /// A number (REG_DWORD) there.
  void SetRegistryNumber(const std::wstring& key, const std::wstring& value, DWORD number) const;
  /// All that the keys hold now.
  std::vector<KeyImage> Image() const;

 private:
  void Clear() const;
  std::vector<std::optional<KeyImage>> before_;
};

/// A key below Software\Classes of the machine with a text, for as long as this lives.
class ClassKey {
 public:
  ClassKey(const std::wstring& path, const std::wstring& text);
  ~ClassKey();
  ClassKey(const ClassKey&) = delete;
  ClassKey& operator=(const ClassKey&) = delete;
  bool made() const { return made_; }

 private:
  std::wstring path_;
  std::optional<std::wstring> before_;
  bool created_ = false;
  bool made_ = false;
};

/// Makes a program the one that opens web pages (.html) while this lives.
class HtmlBrowser {
 public:
  explicit HtmlBrowser(const std::wstring& program);
  bool made() const { return command_.made(); }

 private:
  ClassKey extension_;
  ClassKey type_;
  ClassKey shell_;
  ClassKey open_;
  ClassKey command_;
};

/// A rectangle of the screen's pixels, row by row.
struct Pixels {
  int width = 0;
  int height = 0;
  std::vector<COLORREF> colors;

  bool operator==(const Pixels&) const = default;
  COLORREF At(int x, int y) const {
    return colors[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                  static_cast<std::size_t>(x)];
  }
};
/// Reads an area of the screen.
Pixels Capture(const RECT& area);
/// Leaves a picture of the screen, or of a window, as NAME.png in the folder that the environment
/// names in MARL_SHOTS; does nothing without it.
void Screenshot(const std::string& name, HWND window = nullptr);

/// Presses and lets go the left button of the mouse there, in pixels of the screen.
void Click(int x, int y);
void Click(POINT at);
/// Halves of a click, for what is dragged between them.
void PressMouse(POINT at);
void ReleaseMouse(POINT at);
void MoveMouse(int x, int y);
void MoveMouse(POINT to);
/// Presses or lets go buttons of the mouse where it is: MOUSEEVENTF_LEFTDOWN and its like, in turn.
void MouseButtons(std::initializer_list<DWORD> changes);
/// Types the characters.
void Keys(const std::wstring& text);
/// Presses and lets go a key while others are held down; all by their virtual codes.
void Chord(const std::vector<WORD>& held, WORD key);
/// Makes it the window that takes the keys.
bool BringForward(HWND window);

std::wstring TextOf(HWND window);
std::wstring ClassOf(HWND window);

/// A message box: a dialog with one text and the standard buttons.
class MessageBoxWindow {
 public:
  explicit MessageBoxWindow(HWND window = nullptr) : window_(window) {}
  explicit operator bool() const { return window_ != nullptr; }
  HWND window() const { return window_; }
  std::wstring Title() const { return TextOf(window_); }
  std::wstring Text() const;
  /// The numbers of its buttons: IDOK, IDYES, IDNO, ...
  std::vector<int> Buttons() const;
  /// Clicks the button and waits until the box has gone. False when either fails.
  bool Press(int button) const;

 private:
  HWND window_;
};

/// One Marl that was started here. What still runs at the end is ended.
class RunningMarl {
 public:
  /// Starts `program` (the suite's Marl.exe if empty) in the environment of `suite`; `commandLine`
  /// stands behind the program's name and one blank.
  explicit RunningMarl(const SuiteFolder& suite, const std::wstring& commandLine = {},
                       const std::wstring& program = {});
  ~RunningMarl();
  RunningMarl(const RunningMarl&) = delete;
  RunningMarl& operator=(const RunningMarl&) = delete;

  DWORD id() const { return id_; }
  bool Running() const;
  /// Waits for the end. Its exit code, or nothing when it still runs at the deadline.
  std::optional<DWORD> WaitForExit() const;

  /// The main form's window, shown or not; null when there is none.
  HWND Window() const;
  /// The splash's window while it stands; null otherwise.
  HWND Splash() const;
  /// Clicks the splash away if it stands; it lets itself be clicked away once start-up is done.
  void DismissSplash() const;
  /// Waits until the main form can be seen, and clicks the splash away meanwhile; null when the
  /// process ended or the deadline passed.
  HWND WaitForWindow() const;
  /// Its window of this class and title that can be seen; null when there is none.
  HWND Window(const wchar_t* windowClass, const wchar_t* title) const;
  /// Waits for such a window; null when the process ended or the deadline passed.
  HWND WaitForWindow(const wchar_t* windowClass, const wchar_t* title) const;
  /// The message box that is open, if any.
  MessageBoxWindow Box() const;
  /// Waits for a message box; an empty one when the process ended or the deadline passed.
  MessageBoxWindow WaitForBox() const;

  /// Opens a menu of the main form by its access key and presses the entry with that key. True when
  /// the menu opened and closed.
  bool PressMenu(wchar_t top, wchar_t entry) const;
  /// Waits until it has nothing to do for the first time.
  bool WaitForIdle() const;

  /// Bytes of memory that belong to this process alone.
  std::size_t PrivateBytes() const;
  std::size_t Handles() const;
  /// Drawing objects, windows, menus and icons; 0 where the platform does not tell.
  DWORD GuiObjects() const;

 private:
  HANDLE process_ = nullptr;
  DWORD id_ = 0;
};

/// The panel of the main form: where the parts of its buttons are on the screen.
POINT IconOf(HWND main, int button);
POINT LabelOf(HWND main, int button);
RECT CellOf(HWND main, int button);
/// The middle of the close box in a window's title bar.
std::optional<POINT> CloseBoxOf(HWND window);
/// Twips of a length in pixels on this screen.
int Twips(int pixels);
int PixelsOf(int twips);

/// A DDE client, wide or 8-bit.
class DdeClient {
 public:
  enum class Kind { kWide, kNarrow };
  explicit DdeClient(Kind kind);
  ~DdeClient();
  DdeClient(const DdeClient&) = delete;
  DdeClient& operator=(const DdeClient&) = delete;

  bool Connect(const std::wstring& service, const std::wstring& topic);
  /// Sends one execute command, with its NUL. True when it was acknowledged.
  bool Execute(const std::wstring& command);
  /// Sends these bytes as they are.
  bool ExecuteBytes(const std::vector<BYTE>& bytes);
  /// The library's code for the last failure; DMLERR_NOTPROCESSED for a refused command.
  UINT lastError() const { return error_; }

 private:
  Kind kind_;
  DWORD instance_ = 0;
  HCONV conversation_ = nullptr;
  UINT error_ = DMLERR_NO_ERROR;
};

}  // namespace marl::desktop
