#pragma once

#include <windows.h>

namespace marl::win32 {

/// A library of Windows that is bound at run time, always from the system folder
/// (GetSystemDirectory). It stays loaded until the process ends.
class SystemLibrary {
 public:
  /// `name`: such as L"uxtheme.dll", without a path.
  explicit SystemLibrary(const wchar_t* name);

  explicit operator bool() const { return module_ != nullptr; }

  /// A function of the library (GetProcAddress); null if this version of Windows lacks it.
  template <typename Function>
  Function* Find(const char* function) const {
    if (!module_) return nullptr;
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, function)));
  }

 private:
  HMODULE module_;
};

}  // namespace marl::win32
