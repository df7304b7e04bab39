#pragma once

#include <array>

#include "platform/ColorDialog.h"
#include "platform/win32/Handle.h"

namespace marl::win32 {

/// The platform's colour dialog. Custom colours are kept as long as the object lives.
class ColorDialogWin32 : public ColorDialog {
 public:
  ColorDialogWin32() { custom_.fill(0xFFFFFF); }
  bool ShowColor(const Form* owner, int flags, Color& color) override;

 private:
  std::array<COLORREF, 16> custom_;
};

}  // namespace marl::win32
