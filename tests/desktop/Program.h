#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "tests/desktop/Desktop.h"
#include "tests/desktop/Suite.h"

// The program under test: its process, its windows and message boxes, its panel.

namespace marl::desktop {

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
}  // namespace marl::desktop
