#pragma once

#include <gtest/gtest.h>

#include "tests/desktop/Harness.h"

// What the tests of dialogs share: a dialog with its controls, wherever in it they stand, and what
// the registry holds.

namespace marl::desktop {

constexpr wchar_t kPlatformDialog[] = L"#32770";

/// A form of the program, or a dialog of the platform that it shows, told by its title, once it can
/// be seen.
class Dialog {
 public:
  Dialog(const RunningMarl& marl, const std::wstring& title,
         const wchar_t* windowClass = L"MarlForm");

  explicit operator bool() const { return window_ != nullptr; }
  HWND window() const { return window_; }
  /// True once it takes the keys.
  bool InFront() const;
  /// Waits until it has gone.
  bool Gone() const;

  /// The control of this class and text that can be seen; any text if it is null. Null for none.
  HWND Find(const wchar_t* windowClass, const wchar_t* text = nullptr) const;
  /// All that can be seen, in the tab order.
  std::vector<HWND> FindAll(const wchar_t* windowClass) const;
  HWND Button(const wchar_t* text) const { return Find(L"Button", text); }
  /// Clicks a place of the control, its middle if none is told, once nothing lies above it.
  bool ClickOn(HWND control, POINT at) const;
  bool ClickOn(HWND control) const;
  /// Clicks the button with the mouse.
  bool Press(const wchar_t* text) const;
  /// Clicks the button and waits until the dialog has gone.
  bool Leave(const wchar_t* text) const { return Press(text) && Gone(); }
  bool Checked(const wchar_t* text) const;
  bool Enabled(const wchar_t* text) const;
  /// Clicks a box until it is as wanted.
  bool Check(const wchar_t* text, bool checked) const;
  /// The control that takes the keys.
  HWND Focus() const;
  bool FocusGoesTo(HWND control) const;
  /// Clicks into the field, replaces what it holds, and waits until it has the text.
  bool Type(HWND field, const std::wstring& text) const;
  /// A picture of it, once it is painted through.
  void Picture(const std::string& name) const;

 private:
  HWND window_ = nullptr;
};

RECT AreaOf(HWND window);
POINT MiddleOf(HWND window);

/// Fills in the platform's colour dialog, presses IDOK or IDCANCEL, and waits until it has gone.
bool AnswerColor(const RunningMarl& marl, int red, int green, int blue, int button = IDOK);

/// The rows of a list box.
std::vector<std::wstring> RowsOf(HWND list);
/// The middle of a row that can be seen, on the screen.
POINT RowOf(HWND list, int row);
/// The rows that are selected.
std::vector<int> SelectionOf(HWND list);

/// A value of the registry, byte for byte as programs with 8-bit entry points see it.
struct StoredBytes {
  DWORD kind = 0;
  std::string bytes;
  bool operator==(const StoredBytes&) const = default;
};
std::ostream& operator<<(std::ostream& out, const StoredBytes& stored);
inline StoredBytes Text(const std::string& text) { return {REG_SZ, text + '\0'}; }
inline StoredBytes Number(std::uint32_t value) {
  return {REG_DWORD, std::string(reinterpret_cast<const char*>(&value), sizeof value)};
}

using StoredKey = std::map<std::string, StoredBytes>;

/// All values of a key below HKEY_CURRENT_USER; nothing when there is no such key.
std::optional<StoredKey> ReadStored(const wchar_t* key);
/// Puts a value below HKEY_CURRENT_USER, and makes the key.
void PutStored(const wchar_t* key, const std::string& name, const StoredBytes& value);

}  // namespace marl::desktop
