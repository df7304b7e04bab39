#include "tests/desktop/Dialog.h"

#include <algorithm>
#include <ostream>

namespace marl::desktop {

namespace {

constexpr int kColorFields[] = {706, 707, 708};  // red, green, blue of the platform's dialog

struct Search {
  DWORD process = 0;
  const wchar_t* windowClass = nullptr;
  const std::wstring* title = nullptr;
  HWND found = nullptr;
};

BOOL CALLBACK TakeDialog(HWND window, LPARAM argument) {
  auto& search = *reinterpret_cast<Search*>(argument);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != search.process || !IsWindowVisible(window) ||
      ClassOf(window) != search.windowClass || TextOf(window) != *search.title) {
    return TRUE;
  }
  search.found = window;
  return FALSE;
}

void Collect(HWND parent, const wchar_t* windowClass, std::vector<HWND>& found) {
  for (HWND child = nullptr; (child = FindWindowExW(parent, child, nullptr, nullptr)) != nullptr;) {
    if (!IsWindowVisible(child)) continue;
    if (_wcsicmp(ClassOf(child).c_str(), windowClass) == 0) found.push_back(child);
    Collect(child, windowClass, found);
  }
}

}  // namespace

Dialog::Dialog(const RunningMarl& marl, const std::wstring& title, const wchar_t* windowClass) {
  WaitUntil([&] {
    Search search{marl.id(), windowClass, &title, nullptr};
    EnumWindows(TakeDialog, reinterpret_cast<LPARAM>(&search));
    window_ = search.found;
    return window_ != nullptr || !marl.Running();
  });
}

bool Dialog::InFront() const {
  return WaitUntil([&] { return GetForegroundWindow() == window_ && Focus() != nullptr; });
}

bool Dialog::Gone() const {
  return WaitUntil([&] { return !IsWindow(window_) || !IsWindowVisible(window_); });
}

HWND Dialog::Find(const wchar_t* windowClass, const wchar_t* text) const {
  for (const HWND control : FindAll(windowClass)) {
    if (!text || TextOf(control) == text) return control;
  }
  return nullptr;
}

std::vector<HWND> Dialog::FindAll(const wchar_t* windowClass) const {
  std::vector<HWND> found;
  Collect(window_, windowClass, found);
  return found;
}

bool Dialog::ClickOn(HWND control, POINT at) const {
  if (!control || !BringForward(window_)) return false;
  const bool open = WaitUntil([&] {
    if (WindowFromPoint(at) == control) return true;
    BringForward(window_);
    return false;
  });
  if (open) Click(at);
  return open;
}

bool Dialog::ClickOn(HWND control) const { return control && ClickOn(control, MiddleOf(control)); }

bool Dialog::Press(const wchar_t* text) const { return ClickOn(Button(text)); }

bool Dialog::Checked(const wchar_t* text) const {
  return SendMessageW(Button(text), BM_GETCHECK, 0, 0) != BST_UNCHECKED;
}

bool Dialog::Enabled(const wchar_t* text) const { return IsWindowEnabled(Button(text)) != FALSE; }

bool Dialog::Check(const wchar_t* text, bool checked) const {
  if (!Button(text)) return false;
  if (Checked(text) == checked) return true;
  return Press(text) && WaitUntil([&] { return Checked(text) == checked; });
}

HWND Dialog::Focus() const {
  GUITHREADINFO info = {};
  info.cbSize = sizeof info;
  return GetGUIThreadInfo(GetWindowThreadProcessId(window_, nullptr), &info) ? info.hwndFocus
                                                                             : nullptr;
}

bool Dialog::FocusGoesTo(HWND control) const {
  return WaitUntil([&] { return Focus() == control; });
}

bool Dialog::TabTo(HWND control) const {
  if (!control) return false;
  const auto isThere = [&] {
    const HWND focus = Focus();
    return focus == control || (focus && GetParent(focus) == control);
  };
  // A dialog that has just closed gives the focus back late: first to the window, then to a
  // control. A Tab sent before would be taken for what moved it, and one Tab too many would follow.
  const auto takesKeys = [&] { return IsWindowEnabled(window_) && IsChild(window_, Focus()); };
  if (!WaitUntil(takesKeys) || !BringForward(window_) || !WaitUntil(takesKeys)) return false;
  for (int tabs = 0; tabs < 40 && !isThere(); ++tabs) {
    const HWND before = Focus();
    Chord({}, VK_TAB);
    if (!WaitUntil([&] { return Focus() != before && takesKeys(); })) return false;
  }
  return isThere();
}

bool Dialog::Type(HWND field, const std::wstring& text) const {
  // A click into the field that already has the focus could arrive behind the selection.
  if (!field || !BringForward(window_)) return false;
  if (Focus() != field && (!ClickOn(field) || !FocusGoesTo(field))) return false;
  SendMessageW(field, EM_SETSEL, 0, -1);
  if (text.empty()) {
    Chord({}, VK_DELETE);
  } else {
    Keys(text);
  }
  return WaitUntil([&] { return TextOf(field) == text; });
}

void Dialog::Picture(const std::string& name) const {
  RedrawWindow(window_, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  Screenshot(name, window_);
}

RECT AreaOf(HWND window) {
  RECT area = {};
  GetWindowRect(window, &area);
  return area;
}

POINT MiddleOf(HWND window) {
  const RECT area = AreaOf(window);
  return {(area.left + area.right) / 2, (area.top + area.bottom) / 2};
}

bool AnswerColor(const RunningMarl& marl, int red, int green, int blue, int button) {
  const Dialog dialog(marl, L"Color", kPlatformDialog);
  if (!dialog) return false;
  const int numbers[] = {red, green, blue};
  for (int i = 0; i < 3; ++i) {
    SendMessageW(GetDlgItem(dialog.window(), kColorFields[i]), WM_SETTEXT, 0,
                 reinterpret_cast<LPARAM>(std::to_wstring(numbers[i]).c_str()));
  }
  PostMessageW(dialog.window(), WM_COMMAND, static_cast<WPARAM>(button), 0);
  return dialog.Gone();
}

std::vector<std::wstring> RowsOf(HWND list) {
  std::vector<std::wstring> rows;
  const LRESULT count = SendMessageW(list, LB_GETCOUNT, 0, 0);
  for (LRESULT row = 0; row < count; ++row) {
    const LRESULT length = SendMessageW(list, LB_GETTEXTLEN, static_cast<WPARAM>(row), 0);
    if (length < 0) break;
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(length));
    rows.push_back(text);
  }
  return rows;
}

POINT RowOf(HWND list, int row) {
  RECT area = {};
  SendMessageW(list, LB_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&area));
  MapWindowPoints(list, nullptr, reinterpret_cast<POINT*>(&area), 2);
  return {area.left + 20, (area.top + area.bottom) / 2};
}

std::vector<int> SelectionOf(HWND list) {
  std::vector<int> rows;
  const LRESULT count = SendMessageW(list, LB_GETCOUNT, 0, 0);
  for (int row = 0; row < count; ++row) {
    if (SendMessageW(list, LB_GETSEL, static_cast<WPARAM>(row), 0) > 0) rows.push_back(row);
  }
  return rows;
}

std::ostream& operator<<(std::ostream& out, const StoredBytes& stored) {
  out << stored.kind << ':';
  for (const char byte : stored.bytes) out << ' ' << int{static_cast<unsigned char>(byte)};
  return out;
}

std::optional<StoredKey> ReadStored(const wchar_t* path) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS) return {};
  StoredKey values;
  for (DWORD index = 0;; ++index) {
    char name[256];
    DWORD length = sizeof name;
    DWORD kind = 0;
    std::string bytes(70000, '\0');
    auto size = static_cast<DWORD>(bytes.size());
    if (RegEnumValueA(key, index, name, &length, nullptr, &kind,
                      reinterpret_cast<BYTE*>(bytes.data()), &size) != ERROR_SUCCESS) {
      break;
    }
    bytes.resize(size);
    values[std::string(name, length)] = {kind, bytes};
  }
  RegCloseKey(key);
  return values;
}

void PutStored(const wchar_t* path, const std::string& name, const StoredBytes& value) {
  HKEY key = nullptr;
  if (RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key,
                      nullptr) != ERROR_SUCCESS) {
    return;
  }
  RegSetValueExA(key, name.c_str(), 0, value.kind,
                 reinterpret_cast<const BYTE*>(value.bytes.data()),
                 static_cast<DWORD>(value.bytes.size()));
  RegCloseKey(key);
}

}  // namespace marl::desktop
