#pragma once

#include <windows.h>
#include <oleacc.h>

#include <string>
#include <vector>

// A client of accessible objects: asks windows as a screen reader does, in any process.

namespace marl {

/// A function of the accessibility library.
template <typename Function>
Function* InOleacc(const char* name) {
  return reinterpret_cast<Function*>(
      reinterpret_cast<void*>(GetProcAddress(LoadLibraryW(L"oleacc.dll"), name)));
}

inline VARIANT ChildId(LONG id) {
  VARIANT child = {};
  child.vt = VT_I4;
  child.lVal = id;
  return child;
}

/// The accessible object of a window's client area, or false.
class AccessibleAnswer {
 public:
  explicit AccessibleAnswer(HWND window) {
    using FromWindow = HRESULT WINAPI(HWND, DWORD, REFIID, void**);
    static const auto fromWindow = InOleacc<FromWindow>("AccessibleObjectFromWindow");
    if (FAILED(fromWindow(window, static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible,
                          reinterpret_cast<void**>(&object_)))) {
      object_ = nullptr;
    }
  }
  /// The object at a point of the screen, and the child that is there.
  explicit AccessibleAnswer(POINT at, LONG& child) {
    using FromPoint = HRESULT WINAPI(POINT, IAccessible**, VARIANT*);
    static const auto fromPoint = InOleacc<FromPoint>("AccessibleObjectFromPoint");
    VARIANT found = {};
    if (FAILED(fromPoint(at, &object_, &found))) object_ = nullptr;
    child = found.vt == VT_I4 ? found.lVal : -1;
  }
  ~AccessibleAnswer() {
    if (object_) object_->Release();
  }
  AccessibleAnswer(const AccessibleAnswer&) = delete;
  AccessibleAnswer& operator=(const AccessibleAnswer&) = delete;

  explicit operator bool() const { return object_ != nullptr; }
  IAccessible* operator->() const { return object_; }

  std::wstring Name(LONG id) const { return Ask(&IAccessible::get_accName, id); }
  std::wstring Value(LONG id) const { return Ask(&IAccessible::get_accValue, id); }
  std::wstring Description(LONG id) const { return Ask(&IAccessible::get_accDescription, id); }
  std::wstring Help(LONG id) const { return Ask(&IAccessible::get_accHelp, id); }
  std::wstring Action(LONG id) const { return Ask(&IAccessible::get_accDefaultAction, id); }
  /// -1 for a child that does not exist.
  LONG Role(LONG id) const { return AskNumber(&IAccessible::get_accRole, id); }
  LONG State(LONG id) const { return AskNumber(&IAccessible::get_accState, id); }
  LONG Children() const {
    LONG count = -1;
    object_->get_accChildCount(&count);
    return count;
  }
  /// In pixels of the screen; empty for a child that does not exist.
  RECT Place(LONG id) const {
    LONG left = 0, top = 0, width = 0, height = 0;
    if (object_->accLocation(&left, &top, &width, &height, ChildId(id)) != S_OK) return {};
    return {left, top, left + width, top + height};
  }
  /// The child in this direction; -1 for none.
  LONG Beside(LONG direction, LONG id) const {
    VARIANT to = {};
    object_->accNavigate(direction, ChildId(id), &to);
    return to.vt == VT_I4 ? to.lVal : -1;
  }
  /// The child at a point of the screen; -1 for none, -2 for an object.
  LONG At(LONG x, LONG y) const {
    VARIANT hit = {};
    object_->accHitTest(x, y, &hit);
    const LONG child = hit.vt == VT_I4 ? hit.lVal : hit.vt == VT_DISPATCH ? -2 : -1;
    VariantClear(&hit);
    return child;
  }
  /// The child with the focus; -1 for none, -2 for an object.
  LONG Focus() const {
    VARIANT focus = {};
    object_->get_accFocus(&focus);
    const LONG child = focus.vt == VT_I4 ? focus.lVal : focus.vt == VT_DISPATCH ? -2 : -1;
    VariantClear(&focus);
    return child;
  }
  HRESULT Press(LONG id) const { return object_->accDoDefaultAction(ChildId(id)); }
  /// True if the child is no object of its own.
  bool Simple(LONG id) const {
    IDispatch* object = nullptr;
    const HRESULT result = object_->get_accChild(ChildId(id), &object);
    if (object) object->Release();
    return result == S_FALSE;
  }

 private:
  std::wstring Ask(HRESULT (STDMETHODCALLTYPE IAccessible::*get)(VARIANT, BSTR*), LONG id) const {
    BSTR text = nullptr;
    if (FAILED((object_->*get)(ChildId(id), &text)) || !text) return {};
    const std::wstring copy(text, SysStringLen(text));
    SysFreeString(text);
    return copy;
  }
  LONG AskNumber(HRESULT (STDMETHODCALLTYPE IAccessible::*get)(VARIANT, VARIANT*), LONG id) const {
    VARIANT number = {};
    return SUCCEEDED((object_->*get)(ChildId(id), &number)) && number.vt == VT_I4 ? number.lVal
                                                                                  : -1;
  }

  IAccessible* object_ = nullptr;
};

/// What a client reads of a window and the windows in it, a line for each object: role, name,
/// value, states, action and description. Focus and places are left out.
inline std::wstring AccessibleTree(HWND window, const std::wstring& indent = {}) {
  const auto roleName = [](LONG role) -> std::wstring {
    switch (role) {
      case ROLE_SYSTEM_CLIENT: return L"window";
      case ROLE_SYSTEM_PUSHBUTTON: return L"button";
      case ROLE_SYSTEM_LINK: return L"link";
      case ROLE_SYSTEM_STATICTEXT: return L"text";
      case ROLE_SYSTEM_ALERT: return L"alert";
      case ROLE_SYSTEM_CHECKBUTTON: return L"box";
      case ROLE_SYSTEM_RADIOBUTTON: return L"option";
      case ROLE_SYSTEM_TEXT: return L"field";
      case ROLE_SYSTEM_LIST: return L"list";
      case ROLE_SYSTEM_COMBOBOX: return L"combo box";
      case ROLE_SYSTEM_GROUPING: return L"group";
      case ROLE_SYSTEM_PANE: return L"page";
      case ROLE_SYSTEM_SCROLLBAR: return L"scroll bar";
      case ROLE_SYSTEM_STATUSBAR: return L"status bar";
      case ROLE_SYSTEM_PAGETABLIST: return L"tabs";
      case ROLE_SYSTEM_PAGETAB: return L"tab";
      default: return L"role " + std::to_wstring(role);
    }
  };
  const auto line = [&](const AccessibleAnswer& object, LONG id, const std::wstring& before) {
    std::wstring text = before + roleName(object.Role(id)) + L" \"" + object.Name(id) + L'"';
    // The contents of other fields are data.
    if (object.Role(id) == ROLE_SYSTEM_SCROLLBAR) text += L" = " + object.Value(id);
    const LONG state = object.State(id);
    if (state & STATE_SYSTEM_UNAVAILABLE) text += L", unavailable";
    if (state & STATE_SYSTEM_CHECKED) text += L", checked";
    if (state & STATE_SYSTEM_SELECTED) text += L", selected";
    if (const std::wstring action = object.Action(id); !action.empty()) text += L", " + action;
    if (const std::wstring more = object.Description(id); !more.empty()) text += L": " + more;
    return text + L'\n';
  };
  const AccessibleAnswer object(window);
  if (!object) return indent + L"nothing\n";
  std::wstring tree = line(object, CHILDID_SELF, indent);
  for (LONG id = 1; id <= object.Children() && object.Simple(id); ++id) {
    tree += line(object, id, indent + L"  ");
  }
  // The field and the list of a combo box are parts of it.
  if (object.Role(CHILDID_SELF) == ROLE_SYSTEM_COMBOBOX) return tree;
  for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    if (IsWindowVisible(child)) tree += AccessibleTree(child, indent + L"  ");
  }
  return tree;
}

}  // namespace marl
