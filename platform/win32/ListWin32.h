#pragma once

#include <vector>

#include "platform/forms/Controls.h"
#include "platform/win32/Handle.h"

namespace marl::win32 {

class DesktopWin32;

/// The native list of a list box or of a drop-down list, which must outlive it.
class ListWin32 {
 public:
  /// Style of the native list box that shows this one.
  static DWORD StyleOf(const ListBox& list);

  ListWin32(DesktopWin32& desktop, ItemList& list, HWND window);
  ~ListWin32();
  ListWin32(const ListWin32&) = delete;
  ListWin32& operator=(const ListWin32&) = delete;

  /// Updates the rows: only those between the first and the last that differ.
  void SyncItems();
  void SyncSelection();
  void SyncTicks() { InvalidateRect(window_, nullptr, FALSE); }
  /// Sets the row height of a list with check boxes, by font and box.
  void SyncRowHeight();
  /// The user has selected one or several rows.
  void SelectionChanged();
  /// A drop-down list is about to open: makes it as wide as its widest row.
  void DroppingDown();
  /// True if Enter closes an open drop-down list with the same row as when it opened: the platform
  /// then reports no selection.
  bool AcceptsAsItIs() const;
  /// Paints a row of a list with check boxes (WM_DRAWITEM).
  void DrawRow(const DRAWITEMSTRUCT& item);

 private:
  static LRESULT CALLBACK Entry(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR id,
                                DWORD_PTR list) noexcept;
  bool drop() const { return list_.kind() == ControlKind::kComboBox; }
  LRESULT Send(UINT message, WPARAM w, LPARAM l) const {
    return SendMessageW(window_, message, w, l);
  }
  int dpi() const;
  int Scaled(int pixels) const;
  Size BoxSize() const;
  void DrawBox(HDC context, RECT area, bool ticked) const;
  /// The row whose check box is at the point, or -1.
  int RowOfBoxAt(LPARAM position) const;
  /// The current row of the native list after a press at the point; -1 if that was below the rows.
  int PressedRow(LPARAM position) const;
  /// Lets the native list handle a mouse message. Its selection notifications are ignored
  /// meanwhile: platforms differ in when and how often they send them.
  LRESULT Quietly(UINT message, WPARAM w, LPARAM l);

  DesktopWin32& desktop_;
  ItemList& list_;
  HWND window_;
  std::vector<Text> shown_;  ///< the rows in the native list
  int quiet_ = 0;            ///< above 0 while the native list handles the mouse
  bool pressed_ = false;     ///< the mouse went down on a list box
  bool selected_ = false;    ///< a row has been chosen since the drop-down list opened
};

}  // namespace marl::win32
