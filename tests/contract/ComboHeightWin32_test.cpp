// Height of drop-down lists beside fields, in a real window.

#include <windows.h>
#include <gtest/gtest.h>

#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"
#include "platform/win32/DesktopWin32.h"

namespace marl {
namespace {

struct FieldsForm : Form {
  explicit FieldsForm(Desktop& desktop) : Form(desktop, "frmFields") {
    Design = {6000, 2000};
    field.SetBounds({120, 120, 1500, 315});
    list.SetBounds({1740, 120, 1500, 315});
    typed.SetBounds({3360, 120, 300, 315});
    typed.Editable = true;
  }
  int HeightOf(const Control& control) const {
    RECT area = {};
    GetWindowRect(static_cast<HWND>(LongToHandle(peer()->HandleOf(control))), &area);
    return area.bottom - area.top;
  }

  TextBox field{*this, "field"};
  ComboBox list{*this, "list"};
  ComboBox typed{*this, "typed"};
};

TEST(ComboHeight, ClosedIsThatOfItsDesignInEveryFont) {
  win32::DesktopWin32 desktop;
  FieldsForm form(desktop);
  form.Load();
  for (const std::int64_t size : {60000, 82500, 110000}) {
    for (Control* control : form.controls()) {
      marl::Font font = control->Font();
      font.Size = size;
      control->SetFont(font);
    }
    for (const int height : {315, 345, 420}) {
      for (Control* control : form.controls()) {
        control->SetBounds({control->Left(), 120, control->Width(), height});
      }
      const int pixels =
          desktop.resolution().PixelsY(120 + height) - desktop.resolution().PixelsY(120);
      EXPECT_EQ(form.HeightOf(form.field), pixels);
      EXPECT_EQ(form.HeightOf(form.list), pixels) << size << " in " << height;
      EXPECT_EQ(form.HeightOf(form.typed), pixels) << size << " in " << height;
    }
  }
  form.Unload();
  desktop.DoEvents();
}

}  // namespace
}  // namespace marl
