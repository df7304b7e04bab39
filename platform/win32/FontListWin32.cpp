#include "platform/win32/FontListWin32.h"

#include "platform/forms/Form.h"
#include "platform/win32/CarriedFailure.h"
#include "platform/win32/CodePage.h"
#include "platform/win32/FormWin32.h"

namespace marl::win32 {

namespace {

struct Visit {
  const std::function<bool(TextView)>& visit;
  CarriedFailure failure;
};

int CALLBACK OnFont(const LOGFONTA* font, const TEXTMETRICA*, DWORD, LPARAM data) noexcept {
  auto& state = *reinterpret_cast<Visit*>(data);
  return state.failure.Run(
      [&] {
        return state.visit(FromSystemCodePage({font->lfFaceName, LF_FACESIZE})) ? 1 : 0;
      },
      0);
}

}  // namespace

void FontListWin32::EnumFamilies(const Form& form,
                                 const std::function<bool(TextView faceName)>& visit) {
  const HWND window = form.peer() ? static_cast<const FormWin32*>(form.peer())->window() : nullptr;
  const ClientContext context(window);
  LOGFONTA all = {};
  Visit state{visit, {}};
  EnumFontFamiliesExA(context.get(), &all, OnFont, reinterpret_cast<LPARAM>(&state), 0);
  state.failure.Rethrow();
}

}  // namespace marl::win32
