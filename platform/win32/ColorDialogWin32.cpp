#include "platform/win32/ColorDialogWin32.h"

#include <commdlg.h>

#include "platform/forms/Form.h"
#include "platform/win32/CanvasWin32.h"
#include "platform/win32/FormWin32.h"

namespace marl::win32 {

bool ColorDialogWin32::ShowColor(const Form* owner, int flags, Color& color) {
  CHOOSECOLORW record = {};
  record.lStructSize = sizeof record;
  if (owner && owner->peer()) {
    record.hwndOwner = static_cast<const FormWin32*>(owner->peer())->window();
  }
  record.rgbResult = Resolve(color) & 0xFFFFFF;
  record.lpCustColors = custom_.data();
  record.Flags = static_cast<DWORD>(flags & (kColorInit | kColorFullOpen));
  if (!ChooseColorW(&record)) return false;
  color = static_cast<Color>(record.rgbResult & 0xFFFFFF);
  return true;
}

}  // namespace marl::win32
