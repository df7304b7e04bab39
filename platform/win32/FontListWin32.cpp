#include "platform/win32/FontListWin32.h"

#include <exception>

#include "platform/forms/Form.h"
#include "platform/win32/CodePage.h"
#include "platform/win32/FormWin32.h"

namespace marl::win32 {

namespace {

struct Visit {
  const std::function<bool(TextView)>& visit;
  std::exception_ptr failure;
};

// An exception must not cross the platform's stack frames, so it is stored and rethrown.
int CALLBACK OnFont(const LOGFONTA* font, const TEXTMETRICA*, DWORD, LPARAM data) noexcept {
  auto& state = *reinterpret_cast<Visit*>(data);
  try {
    return state.visit(FromSystemCodePage({font->lfFaceName, LF_FACESIZE})) ? 1 : 0;
  } catch (...) {
    state.failure = std::current_exception();
    return 0;
  }
}

}  // namespace

void FontListWin32::EnumFamilies(const Form& form,
                                 const std::function<bool(TextView faceName)>& visit) {
  const HWND window = form.peer() ? static_cast<const FormWin32*>(form.peer())->window() : nullptr;
  const ClientContext context(window);
  LOGFONTA all = {};
  Visit state{visit, nullptr};
  EnumFontFamiliesExA(context.get(), &all, OnFont, reinterpret_cast<LPARAM>(&state), 0);
  if (state.failure) std::rethrow_exception(state.failure);
}

}  // namespace marl::win32
