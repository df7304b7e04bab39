#pragma once

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "platform/forms/Controls.h"
#include "platform/forms/Desktop.h"
#include "platform/forms/Form.h"
#include "platform/win32/AccessibleWin32.h"
#include "platform/win32/CanvasWin32.h"
#include "platform/win32/Handle.h"
#include "platform/win32/ListWin32.h"

namespace marl::win32 {

class DesktopWin32;
class PageBackground;

/// What an accessibility client wants done with a part.
enum class PartRequest : WORD { kPress, kFocus };

/// A form's window and its standard controls. Only translates: the form decides what a message
/// means.
class FormWin32 : public FormPeer {
 public:
  /// Creates the window, hidden, with its controls, and reports its bounds to the form.
  FormWin32(DesktopWin32& desktop, Form& form);
  ~FormWin32() override;

  void CaptionChanged() override;
  void Place(const Box& bounds) override;
  void SetState() override;
  void Show(bool visible) override;
  void ControlChanged(Control& control, Property property) override;
  void Invalidate(const Box& area) override;
  void InvalidateAll() override;
  void Refresh() override;
  void Focus(Control& control) override;
  void ShowFocusCues() override;
  void Announce(Announcement what, const Control* control, int row) override;
  void BringToFront() override;
  bool InForeground() const override;
  bool TakesInput() const override { return IsWindowEnabled(window_) != FALSE; }
  WindowHandle Handle() const override { return HandleToLong(window_); }
  Point ClientOrigin() const override;
  void Rescale(const PixelRect& place) override;
  void Close() override;

  WindowHandle HandleOf(const Control& control) const override {
    return HandleToLong(WindowOf(control));
  }
  HWND window() const { return window_; }
  const Form& form() const { return form_; }
  /// Has the request of a client done later, when the client has got its answer. `row` as in
  /// `Form::UserPressPart`.
  void PostPart(PartRequest request, const Control& control, LONG row) const;
  /// Gives the controls new fonts.
  void FontsChanged();
  /// Passes the message to the form if it is an access key. True if it is handled; the form may
  /// then be destroyed.
  bool TakeAccessKey(const MSG& message);
  /// Passes a key to a form with `KeyPreview`, then to its tabs (Ctrl+Tab, Ctrl+Page Down). True if
  /// it is handled; the form may then be destroyed.
  bool PreviewKey(const MSG& message);
  /// True if keys go through the dialog manager, because there is a control that can have the
  /// focus.
  bool hasFields() const { return hasFields_; }

 private:
  using Result = std::optional<LRESULT>;
  static LRESULT CALLBACK Entry(HWND window, UINT message, WPARAM w, LPARAM l) noexcept;
  static LRESULT CALLBACK ContainerEntry(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR id,
                                         DWORD_PTR peer) noexcept;
  static LRESULT CALLBACK ControlEntry(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR id,
                                       DWORD_PTR peer) noexcept;
  /// Lets accessibility clients ask for the control of this window.
  void MakeAccessible(HWND child);
  /// Answers a client that asks the window for its object; `control` is null for the form.
  Result AnswerClient(HWND window, const Control* control, WPARAM w, LPARAM l);
  /// Runs the handler of the message, if there is one. The form may then be destroyed.
  LRESULT OnMessage(UINT message, WPARAM w, LPARAM l);
  /// Message handlers. A handler that returns nothing leaves the message to the platform.
  struct Handler {
    UINT message;
    Result (FormWin32::*handle)(WPARAM w, LPARAM l);
  };
  static const Handler kHandlers[];
  Result OnPaint(WPARAM w, LPARAM l);
  Result OnEraseBackground(WPARAM w, LPARAM l);
  Result OnPrintClient(WPARAM w, LPARAM l);
  Result OnColorControl(WPARAM w, LPARAM l);
  Result OnDrawItem(WPARAM w, LPARAM l);
  Result OnSysColorChange(WPARAM w, LPARAM l);
  Result OnThemeChanged(WPARAM w, LPARAM l);
  Result OnFontChange(WPARAM w, LPARAM l);
  Result OnUpdateUiState(WPARAM w, LPARAM l);
  Result OnPlaced(WPARAM w, LPARAM l);
  Result OnActivate(WPARAM w, LPARAM l);
  Result OnGetMinMaxInfo(WPARAM w, LPARAM l);
  Result OnGetDpiScaledSize(WPARAM w, LPARAM l);
  Result OnDpiChanged(WPARAM w, LPARAM l);
  Result OnDisplayChange(WPARAM w, LPARAM l);
  Result OnSettingChange(WPARAM w, LPARAM l);
  Result OnSetCursor(WPARAM w, LPARAM l);
  Result OnMouseMove(WPARAM w, LPARAM l);
  Result OnLeftDown(WPARAM w, LPARAM l);
  Result OnLeftUp(WPARAM w, LPARAM l);
  Result OnRightDown(WPARAM w, LPARAM l);
  Result OnRightUp(WPARAM w, LPARAM l);
  Result OnCaptureChanged(WPARAM w, LPARAM l);
  Result OnPower(WPARAM w, LPARAM l);
  Result OnKeyDown(WPARAM w, LPARAM l);
  Result OnChar(WPARAM w, LPARAM l);
  Result OnCommand(WPARAM w, LPARAM l);
  Result OnNotify(WPARAM w, LPARAM l);
  Result OnHScroll(WPARAM w, LPARAM l);
  Result OnGetDefaultId(WPARAM w, LPARAM l);
  Result OnRowAccepted(WPARAM w, LPARAM l);
  Result OnGetObject(WPARAM w, LPARAM l);
  Result OnPartRequest(WPARAM w, LPARAM l);
  Result OnTimer(WPARAM w, LPARAM l);
  Result OnClose(WPARAM w, LPARAM l);
  Result OnQueryEndSession(WPARAM w, LPARAM l);
  Result OnEndSession(WPARAM w, LPARAM l);
  Result OnDestroy(WPARAM w, LPARAM l);
  LRESULT ButtonDown(int button, LPARAM position);
  LRESULT ButtonUp(int button, WPARAM held, LPARAM position);
  void Command(int id, int notification, HWND from);
  static void ButtonNotifies(Control& button, int notification);
  static void TextBoxNotifies(TextBox& box, int notification, HWND window);
  void ListBoxNotifies(Control& list, int notification);
  void ComboBoxNotifies(ComboBox& combo, int notification, HWND window);
  void Notify(const NMHDR& header);
  void Scroll(HScrollBar& bar, int code);

  void PaintWindow();
  static LRESULT PaintNothing(HWND window);
  template <typename Paint>
  void PaintBuffered(HWND window, Paint paint);
  void PaintFrame(HWND frame);
  void PaintPictureBox(const PictureBox& box, HDC context, CanvasWin32& canvas);
  void EraseContainer(HWND container, HDC context);
  LRESULT ColorControl(HDC context, HWND child);
  /// The background brush of a container, or null for the plain one; its pattern starts at
  /// `origin`, in the container's pixels.
  HBRUSH BackgroundIn(const Control* container, POINT& origin) const;
  void CreatePages();
  /// Colours, fonts or theme have changed: passes the message on to the controls, which do not get
  /// it from the platform, and adapts all that depends on it.
  void LookChanged(UINT message, WPARAM w, LPARAM l);
  /// Wakes a waiting message loop, so that it checks whether to go on: messages that another
  /// program sends, as the shell does for the tray icon, are handled without waking it.
  static void WakeLoop();
  void Report();
  int dpi() const { return form_.resolution().y; }
  CanvasWin32 CanvasOn(HDC context) const;
  /// The outer size of the window at a resolution, in pixels, if its menu bar has one line.
  SIZE OuterSize(const Resolution& resolution) const;
  /// Corrects the window's size by what its inner size lacks.
  void FitInner();
  void FocusFirst();
  void RestoreFocus();
  void LeaveHidden(const Control& hidden);
  void CreateWithContainer(Control& control);
  void CreateControl(Control& control, int id);
  void PlaceControl(const Control& control, HWND window);
  static void SetClosedHeight(HWND combo, int height);
  void PlaceStatusBar();
  static bool HasMenuBar(const Form& form);
  void CreateMenus();
  /// Rebuilds the menu of `parent`, or the menu bar, with the visible entries.
  void FillMenu(const Menu* parent);
  void SyncMenu(const Menu& entry, Property property);
  void SyncMenuCaption(const Menu& entry);
  void SyncTimer(Timer& timer);
  void SyncVisible(const Control& control, HWND window);
  void SyncFont(const Control& control, HWND window);
  void SyncValue(const Control& control, HWND window);
  void SyncItems(const Control& control, HWND window);
  static void SyncEditSelection(const ComboBox& combo, HWND window);
  void SyncScrollBar(const HScrollBar& bar, HWND window);
  void SyncSelection(Control& control, HWND window);
  bool IsOverLink() const;
  bool IsDirty(const RECT& area) const;
  float TwipsAtX(LPARAM position) const;
  float TwipsAtY(LPARAM position) const;
  HWND WindowOf(const Control& control) const;
  ListWin32* ListOf(const Control& control) const;
  Control* ControlOf(HWND window) const;
  /// The control that is this window or contains it; null if it is none of this form's.
  Control* ControlAround(HWND window) const;
  Menu* MenuOf(int id) const;

  DesktopWin32& desktop_;
  Form& form_;
  HWND window_ = nullptr;
  HWND lastFocus_ = nullptr;  ///< had the focus when another window became active
  std::map<const Control*, HWND> windows_;
  std::map<const Control*, std::unique_ptr<ListWin32>> lists_;
  /// Backgrounds of the pages of tab strips: one for all of the same size.
  std::map<const Control*, std::shared_ptr<PageBackground>> pages_;
  /// The native menu of each entry that has one; under null, the menu bar.
  std::map<const Menu*, UniqueMenu> menus_;
  bool hasFields_ = false;
  /// The window is being created or adapts to another resolution: sizes on the way do not count.
  bool rescaling_ = true;
  bool fitLater_ = false;    ///< its size has changed while it was minimised
  bool destroying_ = false;  ///< the platform is destroying the window
  bool releasing_ = false;   ///< the capture ends because its button was released
  /// Areas to be painted, in pixels: each call to the platform costs more than collecting them
  /// here.
  std::vector<RECT> dirty_;
  std::shared_ptr<AccessibleLink> link_;  ///< once a client has asked
  int updating_ = 0;                      ///< above 0 while the program changes a control
};

}  // namespace marl::win32
