#pragma once

#include <gtest/gtest.h>

#include "tests/desktop/Harness.h"

// Shared by the tests of dialogs: a dialog with its controls, and access to the registry.

namespace marl::desktop {

constexpr wchar_t kPlatformDialog[] = L"#32770";

/// A form of the program or a system dialog that it shows, found by its title once it is visible.
class Dialog {
 public:
  Dialog(const RunningMarl& marl, const std::wstring& title,
         const wchar_t* windowClass = L"MarlForm");

  explicit operator bool() const { return window_ != nullptr; }
  HWND window() const { return window_; }
  /// True once it has the keyboard.
  bool InFront() const;
  /// Waits until it is closed.
  bool Gone() const;

  /// The visible control of this class and text (any text if null); null if there is none.
  HWND Find(const wchar_t* windowClass, const wchar_t* text = nullptr) const;
  /// All visible controls, in tab order.
  std::vector<HWND> FindAll(const wchar_t* windowClass) const;
  HWND Button(const wchar_t* text) const { return Find(L"Button", text); }
  /// Clicks a point of the control, by default its middle, once no other window covers it.
  bool ClickOn(HWND control, POINT at) const;
  bool ClickOn(HWND control) const;
  /// Clicks the button with the mouse.
  bool Press(const wchar_t* text) const;
  /// Clicks the button and waits until the dialog is closed.
  bool Leave(const wchar_t* text) const { return Press(text) && Gone(); }
  bool Checked(const wchar_t* text) const;
  bool Enabled(const wchar_t* text) const;
  /// Clicks a box unless it is already in the wanted state.
  bool Check(const wchar_t* text, bool checked) const;
  /// The control with the focus.
  HWND Focus() const;
  bool FocusGoesTo(HWND control) const;
  /// Goes with Tab to this control, or to the field in it.
  bool TabTo(HWND control) const;
  /// Clicks into the field, replaces its text, and waits until it has the new one.
  bool Type(HWND field, const std::wstring& text) const;
  /// A screenshot, once it is completely painted.
  void Picture(const std::string& name) const;

 private:
  HWND window_ = nullptr;
};

RECT AreaOf(HWND window);
POINT MiddleOf(HWND window);

/// Fills in the system's colour dialog, presses IDOK or IDCANCEL, and waits until it is closed.
bool AnswerColor(const RunningMarl& marl, int red, int green, int blue, int button = IDOK);

/// The rows of a list box.
std::vector<std::wstring> RowsOf(HWND list);
/// The middle of a visible row, on the screen.
POINT RowOf(HWND list, int row);
/// The selected rows.
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

/// All values of a key below HKEY_CURRENT_USER; nothing if there is no such key.
std::optional<StoredKey> ReadStored(const wchar_t* key);
/// Writes a value below HKEY_CURRENT_USER, and creates the key.
void PutStored(const wchar_t* key, const std::string& name, const StoredBytes& value);

}  // namespace marl::desktop
