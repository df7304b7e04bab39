#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "tests/desktop/Desktop.h"
#include "tests/desktop/Suite.h"

// The program under test: its process, its windows and message boxes, its panel.

namespace marl::desktop {

/// A message box: a dialog with a text and standard buttons.
class MessageBoxWindow {
 public:
  explicit MessageBoxWindow(HWND window = nullptr) : window_(window) {}
  explicit operator bool() const { return window_ != nullptr; }
  HWND window() const { return window_; }
  std::wstring Title() const { return TextOf(window_); }
  std::wstring Text() const;
  /// The ids of its buttons: IDOK, IDYES, IDNO, ...
  std::vector<int> Buttons() const;
  /// Clicks the button and waits until the box is closed. False if either fails.
  bool Press(int button) const;

 private:
  HWND window_;
};

/// A Marl process. If it still runs at the end, it is terminated.
class RunningMarl {
 public:
  /// Starts `program` (the suite's Marl.exe if empty) in the environment of `suite`; `commandLine`
  /// follows the program's name and one blank. TEMP and TMP are `temp`, by default the suite's
  /// temporary folder; there are none if it is empty.
  explicit RunningMarl(const SuiteFolder& suite, const std::wstring& commandLine = {},
                       const std::wstring& program = {},
                       const std::optional<std::wstring>& temp = {});
  ~RunningMarl();
  RunningMarl(const RunningMarl&) = delete;
  RunningMarl& operator=(const RunningMarl&) = delete;

  DWORD id() const { return id_; }
  bool Running() const;
  /// Waits for the end. Returns its exit code, or nothing if it still runs at the deadline.
  std::optional<DWORD> WaitForExit() const;

  /// The main form's window, shown or not; null when there is none.
  HWND Window() const;
  /// The splash's window while it is shown; null otherwise.
  HWND Splash() const;
  /// Clicks the splash away if it is shown; it can be closed once start-up is complete.
  void DismissSplash() const;
  /// Waits until the main form is visible, and clicks the splash away meanwhile; null if the
  /// process ended or the deadline passed.
  HWND WaitForWindow() const;
  /// Its visible window of this class and title; null if there is none.
  HWND Window(const wchar_t* windowClass, const wchar_t* title) const;
  /// Waits for such a window; null if the process ended or the deadline passed.
  HWND WaitForWindow(const wchar_t* windowClass, const wchar_t* title) const;
  /// The message box that is open, if any.
  MessageBoxWindow Box() const;
  /// Waits for a message box; an empty one if the process ended or the deadline passed.
  MessageBoxWindow WaitForBox() const;

  /// Opens a menu of the main form by its access key and presses the entry with that key. True if
  /// the menu opened and closed.
  bool PressMenu(wchar_t top, wchar_t entry) const;
  /// Waits until it is idle for the first time.
  bool WaitForIdle() const;

  /// Private bytes of the process.
  std::size_t PrivateBytes() const;
  std::size_t Handles() const;
  /// Its graphics objects: pens, brushes, fonts, bitmaps, ...
  DWORD GraphicsObjects() const;
  /// Its windows, menus, icons, ...; under Wine those of all programs of the desktop.
  DWORD UserObjects() const;

 private:
  HANDLE process_ = nullptr;
  DWORD id_ = 0;
};

/// Stops all threads of a process while this lives, as if it hung.
class FrozenProcess {
 public:
  explicit FrozenProcess(DWORD process);
  ~FrozenProcess();
  FrozenProcess(const FrozenProcess&) = delete;
  FrozenProcess& operator=(const FrozenProcess&) = delete;
  bool made() const { return !threads_.empty(); }

 private:
  std::vector<HANDLE> threads_;
};

/// The panel of the main form: positions of its buttons' parts on the screen.
POINT IconOf(HWND main, int button);
POINT LabelOf(HWND main, int button);
RECT CellOf(HWND main, int button);
}  // namespace marl::desktop
