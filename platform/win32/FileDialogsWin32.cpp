#include "platform/win32/FileDialogsWin32.h"

#include <windows.h>
#include <commdlg.h>

#include <algorithm>
#include <string>

#include "platform/forms/Form.h"
#include "platform/win32/FormWin32.h"

namespace marl::win32 {

namespace {

constexpr std::size_t kLongestPath = 32767;

const wchar_t* OrNone(const Text& text) { return text.empty() ? nullptr : Wide(text); }

/// Restores the program's current folder at the end: the open dialog changes it with each folder
/// that the user visits, whatever the flags.
class KeptFolder {
 public:
  KeptFolder() : folder_(GetCurrentDirectoryW(0, nullptr), L'\0') {
    folder_.resize(GetCurrentDirectoryW(static_cast<DWORD>(folder_.size()), folder_.data()));
  }
  ~KeptFolder() { SetCurrentDirectoryW(folder_.c_str()); }
  KeptFolder(const KeptFolder&) = delete;
  KeptFolder& operator=(const KeptFolder&) = delete;

 private:
  std::wstring folder_;
};

FileDialogResult Show(BOOL(WINAPI* dialog)(OPENFILENAMEW*), const Form* owner,
                      const FileDialogSettings& settings, Text& path) {
  // Each text ends with a NUL, and the list with one more.
  Text filter = settings.Filter;
  std::replace(filter.begin(), filter.end(), u'|', u'\0');
  filter.append(2, u'\0');
  Text buffer = settings.FileName.substr(0, settings.FileName.find(u'\0'));
  buffer.resize(kLongestPath + 1, u'\0');
  buffer.back() = u'\0';

  OPENFILENAMEW record = {};
  record.lStructSize = sizeof record;
  if (owner && owner->peer()) {
    record.hwndOwner = static_cast<const FormWin32*>(owner->peer())->window();
  }
  record.lpstrFilter = settings.Filter.empty() ? nullptr : Wide(filter);
  record.lpstrFile = reinterpret_cast<wchar_t*>(buffer.data());
  record.nMaxFile = static_cast<DWORD>(buffer.size());
  record.lpstrInitialDir = OrNone(settings.Folder);
  record.lpstrTitle = OrNone(settings.Title);
  record.lpstrDefExt = OrNone(settings.Extension);
  record.Flags = static_cast<DWORD>(settings.Flags) | OFN_EXPLORER;
  const KeptFolder kept;
  if (!dialog(&record)) {
    return CommDlgExtendedError() == 0 ? FileDialogResult::kCancelled : FileDialogResult::kFailed;
  }
  path = buffer.c_str();
  return FileDialogResult::kChosen;
}

}  // namespace

FileDialogResult FileDialogsWin32::ShowOpen(const Form* owner, const FileDialogSettings& settings,
                                            Text& path) {
  return Show(GetOpenFileNameW, owner, settings, path);
}

FileDialogResult FileDialogsWin32::ShowSave(const Form* owner, const FileDialogSettings& settings,
                                            Text& path) {
  return Show(GetSaveFileNameW, owner, settings, path);
}

}  // namespace marl::win32
