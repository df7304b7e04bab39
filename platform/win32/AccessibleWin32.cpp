#include "platform/win32/AccessibleWin32.h"

// clang-format off
#include <windows.h>
#include <commctrl.h>
#include <oleacc.h>
// clang-format on

#include <atomic>
#include <cmath>
#include <new>
#include <utility>
#include <vector>

#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"
#include "platform/win32/FormWin32.h"
#include "platform/win32/Handle.h"
#include "platform/win32/SystemLibrary.h"

namespace marl::win32 {

namespace {

using LresultFromObjectType = LRESULT WINAPI(REFIID, WPARAM, IUnknown*);
using CreateStdAccessibleObjectType = HRESULT WINAPI(HWND, LONG, REFIID, void**);
using AccessibleObjectFromWindowType = HRESULT WINAPI(HWND, DWORD, REFIID, void**);

/// The functions of the accessibility library, which is loaded when the first client asks.
struct Oleacc {
  SystemLibrary library{L"oleacc.dll"};
  LresultFromObjectType* lresultFromObject =
      library.Find<LresultFromObjectType>("LresultFromObject");
  CreateStdAccessibleObjectType* createStdObject =
      library.Find<CreateStdAccessibleObjectType>("CreateStdAccessibleObject");
  AccessibleObjectFromWindowType* objectFromWindow =
      library.Find<AccessibleObjectFromWindowType>("AccessibleObjectFromWindow");

  explicit operator bool() const {
    return lresultFromObject && createStdObject && objectFromWindow;
  }
  static const Oleacc& Get() {
    static const Oleacc functions;
    return functions;
  }
};

/// Runs a call of a client. No exception gets out.
template <typename Call>
HRESULT Guarded(Call&& call) noexcept {
  try {
    return call();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_FAIL;
  }
}

LONG RoleNumber(AccessibleRole role) {
  switch (role) {
    case AccessibleRole::kWindow: return ROLE_SYSTEM_CLIENT;
    case AccessibleRole::kButton: return ROLE_SYSTEM_PUSHBUTTON;
    case AccessibleRole::kLink: return ROLE_SYSTEM_LINK;
    case AccessibleRole::kText: return ROLE_SYSTEM_STATICTEXT;
    case AccessibleRole::kAlert: return ROLE_SYSTEM_ALERT;
    case AccessibleRole::kCheckBox:
    case AccessibleRole::kCheckRow: return ROLE_SYSTEM_CHECKBUTTON;
    case AccessibleRole::kOptionButton: return ROLE_SYSTEM_RADIOBUTTON;
    case AccessibleRole::kField: return ROLE_SYSTEM_TEXT;
    case AccessibleRole::kList: return ROLE_SYSTEM_LIST;
    case AccessibleRole::kRow: return ROLE_SYSTEM_LISTITEM;
    case AccessibleRole::kComboBox: return ROLE_SYSTEM_COMBOBOX;
    case AccessibleRole::kGroup: return ROLE_SYSTEM_GROUPING;
    case AccessibleRole::kPage: return ROLE_SYSTEM_PANE;
    case AccessibleRole::kScrollBar: return ROLE_SYSTEM_SCROLLBAR;
    case AccessibleRole::kStatusBar: return ROLE_SYSTEM_STATUSBAR;
    case AccessibleRole::kTabs: return ROLE_SYSTEM_PAGETABLIST;
    case AccessibleRole::kTab: return ROLE_SYSTEM_PAGETAB;
  }
  return ROLE_SYSTEM_CLIENT;
}

LONG StateNumber(unsigned state) {
  LONG number = 0;
  const std::pair<unsigned, LONG> bits[] = {
      {kCanHaveFocus, STATE_SYSTEM_FOCUSABLE},  {kHasFocus, STATE_SYSTEM_FOCUSED},
      {kUnavailable, STATE_SYSTEM_UNAVAILABLE}, {kUnderMouse, STATE_SYSTEM_HOTTRACKED},
      {kChecked, STATE_SYSTEM_CHECKED},         {kCanBeSelected, STATE_SYSTEM_SELECTABLE},
      {kIsSelected, STATE_SYSTEM_SELECTED}};
  for (const auto& [bit, value] : bits) {
    if (state & bit) number |= value;
  }
  return number;
}

/// A text for a client; nothing and S_FALSE for an empty one.
HRESULT Give(const Text& text, BSTR* out) {
  if (text.empty()) return S_FALSE;
  *out = SysAllocStringLen(Wide(text), static_cast<UINT>(text.size()));
  return *out ? S_OK : E_OUTOFMEMORY;
}

void GiveNumber(LONG number, VARIANT* out) {
  out->vt = VT_I4;
  out->lVal = number;
}

std::vector<HWND> ChildWindows(HWND window) {
  std::vector<HWND> children;
  for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    if (IsWindowVisible(child)) children.push_back(child);
  }
  return children;
}

/// The accessible object of a form's client area or of a control: the platform's standard object,
/// with what only the form knows. Painted parts, rows with ticks and tabs are its children 1 to n;
/// the windows in it follow them.
///
/// Readers that use UI Automation ask the platform's proxy, which asks this object: Invoke and
/// Toggle are the default action, HelpText is the help, IsEnabled the state "unavailable".
class ClientObject final : public IAccessible {
 public:
  ClientObject(std::shared_ptr<AccessibleLink> link, HWND window, const Control* control,
               UniqueObject<IAccessible> standard)
      : link_(std::move(link)),
        window_(window),
        control_(control),
        standard_(std::move(standard)) {}

  // IUnknown
  STDMETHODIMP QueryInterface(REFIID iid, void** out) noexcept override {
    if (!out) return E_POINTER;
    *out = nullptr;
    if (iid != IID_IUnknown && iid != IID_IDispatch && iid != IID_IAccessible) return E_NOINTERFACE;
    *out = static_cast<IAccessible*>(this);
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() noexcept override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  // IDispatch: clients use the functions of the interface.
  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override {
    if (!count) return E_POINTER;
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override {
    return E_NOTIMPL;
  }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                      UINT*) noexcept override {
    return E_NOTIMPL;
  }

  // IAccessible
  STDMETHODIMP get_accParent(IDispatch** out) noexcept override {
    return standard_.get()->get_accParent(out);
  }
  STDMETHODIMP get_accChildCount(LONG* out) noexcept override {
    if (!out) return E_POINTER;
    return Ask([&] {
      if (!ListsParts()) return standard_.get()->get_accChildCount(out);
      const std::size_t parts = Parts().size();
      *out = static_cast<LONG>(parts + Windows().size());
      return S_OK;
    });
  }
  STDMETHODIMP get_accChild(VARIANT child, IDispatch** out) noexcept override {
    if (!out) return E_POINTER;
    *out = nullptr;
    return Ask([&]() -> HRESULT {
      if (!ListsParts()) return standard_.get()->get_accChild(child, out);
      const std::size_t parts = Parts().size();
      if (child.vt != VT_I4 || child.lVal < 1) return E_INVALIDARG;
      const auto place = static_cast<std::size_t>(child.lVal) - 1;
      if (place < parts) return S_FALSE;  // without an object of its own
      const std::vector<HWND> windows = Windows();
      if (place - parts >= windows.size()) return E_INVALIDARG;
      return ObjectOf(windows[place - parts], out);
    });
  }
  STDMETHODIMP get_accName(VARIANT child, BSTR* out) noexcept override {
    return TextOf(
        child, out, [](const AccessiblePart& part) { return part.name; },
        [&] { return control_ ? NameOf(*control_) : TheForm().AccessibleName; },
        [&](VARIANT of) { return standard_.get()->get_accName(of, out); });
  }
  STDMETHODIMP get_accValue(VARIANT child, BSTR* out) noexcept override {
    return TextOf(
        child, out, [](const AccessiblePart&) { return Text(); },
        [&] { return control_ ? ValueOf(*control_).value_or(Text()) : Text(); },
        [&](VARIANT of) { return standard_.get()->get_accValue(of, out); });
  }
  STDMETHODIMP get_accDescription(VARIANT child, BSTR* out) noexcept override {
    return TextOf(
        child, out, [](const AccessiblePart& part) { return part.description; },
        [&] { return control_ ? DescriptionOf(*control_) : Text(); },
        [&](VARIANT of) { return standard_.get()->get_accDescription(of, out); });
  }
  STDMETHODIMP get_accDefaultAction(VARIANT child, BSTR* out) noexcept override {
    return TextOf(
        child, out,
        [&](const AccessiblePart& part) {
          return part.pressable ? ActionOf(part.role, part.state) : Text();
        },
        [&] { return control_ ? ActionOf(RoleOf(*control_), ValueStateOf(*control_)) : Text(); },
        [&](VARIANT of) { return standard_.get()->get_accDefaultAction(of, out); });
  }
  STDMETHODIMP get_accRole(VARIANT child, VARIANT* out) noexcept override {
    if (!out) return E_POINTER;
    return Of(
        child,
        [&](const AccessiblePart& part) {
          GiveNumber(RoleNumber(part.role), out);
          return S_OK;
        },
        [&] {
          // The field inside a combo box has a window of its own.
          const bool inner = control_ && window_ != WindowOf(*control_);
          GiveNumber(RoleNumber(!control_ ? AccessibleRole::kWindow
                                : inner   ? AccessibleRole::kField
                                          : RoleOf(*control_)),
                     out);
          return S_OK;
        },
        [&](VARIANT of) { return standard_.get()->get_accRole(of, out); });
  }
  STDMETHODIMP get_accState(VARIANT child, VARIANT* out) noexcept override {
    if (!out) return E_POINTER;
    return Of(
        child,
        [&](const AccessiblePart& part) {
          unsigned state = part.state;
          if (control_ && state & kIsSelected && GetFocus() == window_) state |= kHasFocus;
          GiveNumber(StateNumber(state), out);
          return S_OK;
        },
        [&] {
          const HRESULT result = standard_.get()->get_accState(Self(), out);
          if (FAILED(result) || out->vt != VT_I4 || !control_) return result;
          out->lVal |= StateNumber(ValueStateOf(*control_));
          // Where its own window is does not matter.
          if (control_->StandsFor) out->lVal &= ~(STATE_SYSTEM_INVISIBLE | STATE_SYSTEM_OFFSCREEN);
          return result;
        },
        [&](VARIANT of) { return standard_.get()->get_accState(of, out); });
  }
  STDMETHODIMP get_accHelp(VARIANT child, BSTR* out) noexcept override {
    return TextOf(
        child, out, [](const AccessiblePart& part) { return part.description; },
        [&] { return control_ ? DescriptionOf(*control_) : Text(); },
        [&](VARIANT of) { return standard_.get()->get_accHelp(of, out); });
  }
  STDMETHODIMP get_accHelpTopic(BSTR*, VARIANT, LONG*) noexcept override {
    return DISP_E_MEMBERNOTFOUND;
  }
  STDMETHODIMP get_accKeyboardShortcut(VARIANT child, BSTR* out) noexcept override {
    return TextOf(
        child, out, [](const AccessiblePart&) { return Text(); }, [] { return Text(); },
        [&](VARIANT of) { return standard_.get()->get_accKeyboardShortcut(of, out); });
  }
  STDMETHODIMP get_accFocus(VARIANT* out) noexcept override {
    if (!out) return E_POINTER;
    out->vt = VT_EMPTY;
    return Ask([&]() -> HRESULT {
      const HWND focus = GetFocus();
      if (!focus || (focus != window_ && !IsChild(window_, focus))) return S_FALSE;
      if (focus != window_) {
        if (!ListsParts()) return standard_.get()->get_accFocus(out);
        IDispatch* object = nullptr;
        const HRESULT result = ObjectOf(focus, &object);
        if (FAILED(result)) return result;
        out->vt = VT_DISPATCH;
        out->pdispVal = object;
        return S_OK;
      }
      const std::vector<AccessiblePart> parts = Parts();
      const auto part = control_ ? SelectedIn(parts) : FocusedPart(parts);
      if (!part && control_) return standard_.get()->get_accFocus(out);
      GiveNumber(part ? static_cast<LONG>(*part) + 1 : CHILDID_SELF, out);
      return S_OK;
    });
  }
  STDMETHODIMP get_accSelection(VARIANT* out) noexcept override {
    if (!out) return E_POINTER;
    out->vt = VT_EMPTY;
    return Ask([&]() -> HRESULT {
      const std::vector<AccessiblePart> parts = Parts();
      if (!ListsParts()) return standard_.get()->get_accSelection(out);
      const auto part = SelectedIn(parts);
      if (!part) return S_FALSE;
      GiveNumber(static_cast<LONG>(*part) + 1, out);
      return S_OK;
    });
  }
  STDMETHODIMP accSelect(LONG flags, VARIANT child) noexcept override {
    return Of(
        child,
        [&](const AccessiblePart& part) -> HRESULT {
          if (!(flags & (SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION))) return E_INVALIDARG;
          Post(PartRequest::kFocus, part, child);
          return S_OK;
        },
        [&] { return standard_.get()->accSelect(flags, Self()); },
        [&](VARIANT of) { return standard_.get()->accSelect(flags, of); });
  }
  STDMETHODIMP accLocation(LONG* left, LONG* top, LONG* width, LONG* height,
                           VARIANT child) noexcept override {
    if (!left || !top || !width || !height) return E_POINTER;
    return Of(
        child,
        [&](const AccessiblePart& part) {
          GivePlace(OnScreen(PlaceOf(part, child.lVal - 1), window_), left, top, width, height);
          return S_OK;
        },
        [&] {
          if (!control_ || !control_->StandsFor) {
            return standard_.get()->accLocation(left, top, width, height, Self());
          }
          GivePlace(OnScreen(PlaceOf(*control_->StandsFor), link_->form->window()), left, top,
                    width, height);
          return S_OK;
        },
        [&](VARIANT of) { return standard_.get()->accLocation(left, top, width, height, of); });
  }
  STDMETHODIMP accNavigate(LONG direction, VARIANT from, VARIANT* out) noexcept override {
    if (!out) return E_POINTER;
    out->vt = VT_EMPTY;
    return Ask([&]() -> HRESULT {
      const std::vector<AccessiblePart> parts = Parts();
      const bool self = from.vt == VT_I4 && from.lVal == CHILDID_SELF;
      if (!ListsParts()) return standard_.get()->accNavigate(direction, from, out);
      if (self && (direction == NAVDIR_FIRSTCHILD || direction == NAVDIR_LASTCHILD)) {
        const auto children = static_cast<LONG>(parts.size() + Windows().size());
        if (children == 0) return S_FALSE;
        GiveNumber(direction == NAVDIR_FIRSTCHILD ? 1 : children, out);
        return S_OK;
      }
      if (self) return standard_.get()->accNavigate(direction, from, out);
      const std::optional<Neighbour> wanted = NeighbourIn(direction);
      if (from.vt != VT_I4 || from.lVal < 1 || !wanted) return E_INVALIDARG;
      const auto found = NeighbourOf(parts, static_cast<std::size_t>(from.lVal) - 1, *wanted);
      if (!found) return S_FALSE;
      GiveNumber(static_cast<LONG>(*found) + 1, out);
      return S_OK;
    });
  }
  STDMETHODIMP accHitTest(LONG x, LONG y, VARIANT* out) noexcept override {
    if (!out) return E_POINTER;
    out->vt = VT_EMPTY;
    return Ask([&]() -> HRESULT {
      POINT at = {x, y};
      RECT inner = {};
      ScreenToClient(window_, &at);
      GetClientRect(window_, &inner);
      if (!PtInRect(&inner, at)) return S_FALSE;
      if (!ListsParts()) return standard_.get()->accHitTest(x, y, out);
      const std::vector<AccessiblePart> parts = Parts();
      HWND child = ChildWindowFromPointEx(window_, at, CWP_SKIPINVISIBLE);
      if (!child || child == window_) child = StandInAt(at);
      if (child) {
        IDispatch* object = nullptr;
        const HRESULT result = ObjectOf(child, &object);
        if (FAILED(result)) return result;
        out->vt = VT_DISPATCH;
        out->pdispVal = object;
        return S_OK;
      }
      LONG found = CHILDID_SELF;
      for (std::size_t i = 0; i < parts.size(); ++i) {
        const RECT place = PlaceOf(parts[i], static_cast<LONG>(i));
        if (PtInRect(&place, at)) found = static_cast<LONG>(i) + 1;
      }
      GiveNumber(found, out);
      return S_OK;
    });
  }
  STDMETHODIMP accDoDefaultAction(VARIANT child) noexcept override {
    // Posted: a press may open a dialog, behind which the client would hang.
    return Of(
        child,
        [&](const AccessiblePart& part) -> HRESULT {
          if (!part.pressable) return DISP_E_MEMBERNOTFOUND;
          Post(PartRequest::kPress, part, child);
          return S_OK;
        },
        [&]() -> HRESULT {
          if (!control_ || ActionOf(RoleOf(*control_), 0).empty()) {
            return standard_.get()->accDoDefaultAction(Self());
          }
          if (control_->StandsFor) {
            link_->form->PostPart(PartRequest::kPress, *control_, 0);
            return S_OK;
          }
          PostMessageW(window_, BM_CLICK, 0, 0);
          return S_OK;
        },
        [&](VARIANT of) { return standard_.get()->accDoDefaultAction(of); });
  }
  STDMETHODIMP put_accName(VARIANT, BSTR) noexcept override { return DISP_E_MEMBERNOTFOUND; }
  STDMETHODIMP put_accValue(VARIANT child, BSTR value) noexcept override {
    return standard_.get()->put_accValue(child, value);
  }

 private:
  ~ClientObject() = default;

  static VARIANT Self() {
    VARIANT self = {};
    self.vt = VT_I4;
    self.lVal = CHILDID_SELF;
    return self;
  }
  const Form& TheForm() const { return link_->form->form(); }
  HWND WindowOf(const Control& control) const {
    return static_cast<HWND>(LongToHandle(link_->form->HandleOf(control)));
  }
  bool ListsParts() const { return !control_ || ListsItsParts(*control_); }
  std::vector<AccessiblePart> Parts() const {
    if (!ListsParts()) return {};
    const bool area = !control_ || control_->kind() == ControlKind::kFrame ||
                      control_->kind() == ControlKind::kPictureBox;
    return area ? TheForm().AccessibleParts(control_) : RowsOf(*control_);
  }
  std::vector<HWND> Windows() const { return ChildWindows(window_); }
  /// Has it done later. A painted part is a control of its own; a row or a tab is one of this one.
  void Post(PartRequest request, const AccessiblePart& part, const VARIANT& child) const {
    if (part.control) return link_->form->PostPart(request, *part.control, 0);
    link_->form->PostPart(request, *control_, child.lVal);
  }
  /// The window of the control that stands for what is painted at this point.
  HWND StandInAt(POINT at) const {
    for (const Control* control : TheForm().controls()) {
      const Control* const painted = control->StandsFor;
      if (!painted || painted->container() != control_ || !painted->Visible()) continue;
      const RECT place = FromForm(PlaceOf(*painted));
      if (PtInRect(&place, at)) return WindowOf(*control);
    }
    return nullptr;
  }
  static std::optional<std::size_t> SelectedIn(const std::vector<AccessiblePart>& parts) {
    for (std::size_t i = 0; i < parts.size(); ++i) {
      if (parts[i].state & kIsSelected) return i;
    }
    return {};
  }
  static std::optional<Neighbour> NeighbourIn(LONG direction) {
    switch (direction) {
      case NAVDIR_NEXT: return Neighbour::kNext;
      case NAVDIR_PREVIOUS: return Neighbour::kPrevious;
      case NAVDIR_LEFT: return Neighbour::kLeft;
      case NAVDIR_RIGHT: return Neighbour::kRight;
      case NAVDIR_UP: return Neighbour::kAbove;
      case NAVDIR_DOWN: return Neighbour::kBelow;
      default: return {};
    }
  }
  static HRESULT ObjectOf(HWND window, IDispatch** out) {
    return Oleacc::Get().objectFromWindow(window, static_cast<DWORD>(OBJID_WINDOW), IID_IDispatch,
                                          reinterpret_cast<void**>(out));
  }
  Text ActionOf(AccessibleRole role, unsigned state) const {
    const ActionNames& names = TheForm().desktop().Actions;
    switch (role) {
      case AccessibleRole::kButton: return names.press;
      case AccessibleRole::kLink: return names.open;
      case AccessibleRole::kOptionButton: return names.tick;
      case AccessibleRole::kTab: return names.select;
      case AccessibleRole::kCheckBox:
      case AccessibleRole::kCheckRow: return state & kChecked ? names.clear : names.tick;
      default: return {};
    }
  }
  /// The place of a box of the form, in pixels of the form's window.
  RECT PlaceOf(const Box& box) const {
    const Resolution own = TheForm().resolution();
    return {own.PixelsX(box.left), own.PixelsY(box.top), own.PixelsX(box.left + box.width),
            own.PixelsY(box.top + box.height)};
  }
  RECT PlaceOf(const Control& control) const {
    const Point at = TheForm().Origin(control);
    return PlaceOf(Box{at.x, at.y, control.Width(), control.Height()});
  }
  /// The same in pixels of this window.
  RECT FromForm(RECT place) const {
    MapWindowPoints(link_->form->window(), window_, reinterpret_cast<POINT*>(&place), 2);
    return place;
  }
  static RECT OnScreen(RECT place, HWND window) {
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&place), 2);
    return place;
  }
  static void GivePlace(const RECT& place, LONG* left, LONG* top, LONG* width, LONG* height) {
    *left = place.left;
    *top = place.top;
    *width = place.right - place.left;
    *height = place.bottom - place.top;
  }
  /// The place of a part in pixels of this window; `row` counts from 0.
  RECT PlaceOf(const AccessiblePart& part, LONG row) const {
    if (part.control) return FromForm(PlaceOf(part.place));
    RECT place = {};
    const UINT ask =
        control_->kind() == ControlKind::kTabStrip ? UINT{TCM_GETITEMRECT} : UINT{LB_GETITEMRECT};
    SendMessageW(window_, ask, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
    return place;
  }

  /// Runs `call` while the form has its window.
  template <typename Call>
  HRESULT Ask(Call&& call) const noexcept {
    if (!link_->form) return CO_E_OBJNOTCONNECTED;
    return Guarded(call);
  }
  /// Runs `ofPart` for a child that is a part, `ofSelf` for the object itself, and `standard` for
  /// the children that the platform knows: tabs, rows without ticks.
  template <typename OfPart, typename OfSelf, typename Standard>
  HRESULT Of(const VARIANT& child, OfPart&& ofPart, OfSelf&& ofSelf,
             Standard&& standard) const noexcept {
    return Ask([&]() -> HRESULT {
      if (child.vt != VT_I4) return E_INVALIDARG;
      if (child.lVal == CHILDID_SELF) return ofSelf();
      if (!ListsParts()) return standard(child);
      const std::vector<AccessiblePart> parts = Parts();
      if (child.lVal < 1 || static_cast<std::size_t>(child.lVal) > parts.size()) {
        return E_INVALIDARG;
      }
      return ofPart(parts[static_cast<std::size_t>(child.lVal) - 1]);
    });
  }
  /// Gives a text of a part; or of the object itself, where `standard` answers if it has none.
  template <typename OfPart, typename OfSelf, typename Standard>
  HRESULT TextOf(const VARIANT& child, BSTR* out, OfPart&& ofPart, OfSelf&& ofSelf,
                 Standard&& standard) const noexcept {
    if (!out) return E_POINTER;
    *out = nullptr;
    return Of(
        child, [&](const AccessiblePart& part) { return Give(ofPart(part), out); },
        [&]() -> HRESULT {
          const Text own = ofSelf();
          return own.empty() ? standard(Self()) : Give(own, out);
        },
        standard);
  }

  std::shared_ptr<AccessibleLink> link_;
  HWND window_;
  const Control* control_;
  UniqueObject<IAccessible> standard_;
  std::atomic<ULONG> references_{1};
};

}  // namespace

LRESULT AnswerGetObject(const std::shared_ptr<AccessibleLink>& link, HWND window,
                        const Control* control, WPARAM w) {
  const Oleacc& functions = Oleacc::Get();
  if (!functions) return 0;
  IAccessible* standard = nullptr;
  if (FAILED(functions.createStdObject(window, OBJID_CLIENT, IID_IAccessible,
                                       reinterpret_cast<void**>(&standard))) ||
      !standard) {
    return 0;
  }
  const UniqueObject<IAccessible> object(
      new ClientObject(link, window, control, UniqueObject<IAccessible>(standard)));
  return functions.lresultFromObject(IID_IAccessible, w, object.get());
}

void NotifyClients(Announcement what, HWND window, int child) {
  switch (what) {
    case Announcement::kFocus:
      return NotifyWinEvent(EVENT_OBJECT_FOCUS, window, OBJID_CLIENT, child);
    case Announcement::kState:
      return NotifyWinEvent(EVENT_OBJECT_STATECHANGE, window, OBJID_CLIENT, child);
    case Announcement::kName:
      return NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, window, OBJID_CLIENT, child);
    case Announcement::kOrder:
      return NotifyWinEvent(EVENT_OBJECT_REORDER, window, OBJID_CLIENT, child);
    case Announcement::kSelection:
      return NotifyWinEvent(EVENT_OBJECT_SELECTION, window, OBJID_CLIENT, child);
    case Announcement::kAlert:
      return NotifyWinEvent(EVENT_SYSTEM_ALERT, window, OBJID_CLIENT, child);
  }
}

}  // namespace marl::win32
