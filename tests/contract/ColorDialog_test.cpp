#include "platform/ColorDialog.h"

#include <gtest/gtest.h>

#include <memory>

#include "platform/forms/Form.h"
#include "platform/memory/MemoryColorDialog.h"
#include "platform/memory/MemoryDesktop.h"
#include "tests/contract/Backends.h"
#ifdef _WIN32
#include "platform/win32/ColorDialogWin32.h"
#include "platform/win32/DesktopWin32.h"
#endif

namespace marl {
namespace {

constexpr int kWholeDialog = kColorInit | kColorFullOpen;

class ColorDialogContract : public testing::TestWithParam<Backend> {
 protected:
  ColorDialogContract() {
#ifdef _WIN32
    if (GetParam() == Backend::kWin32) {
      desktop = std::make_unique<win32::DesktopWin32>();
      dialog = std::make_unique<win32::ColorDialogWin32>();
    }
#endif
    if (!desktop) {
      desktop = std::make_unique<MemoryDesktop>();
      dialog = std::make_unique<MemoryColorDialog>();
    }
    form = std::make_unique<Form>(*desktop, "frmAny");
    form->Load();
  }
  ~ColorDialogContract() override { form->Unload(); }

  /// Shows the dialog; the user presses OK without a change, or Cancel.
  bool Show(bool accept, Color& color, const Form* owner) {
#ifdef _WIN32
    if (GetParam() == Backend::kWin32) {
      answer_ = accept ? IDOK : IDCANCEL;
      const UINT_PTR timer = SetTimer(nullptr, 0, 50, Answer);
      const bool chosen = dialog->ShowColor(owner, kWholeDialog, color);
      KillTimer(nullptr, timer);
      return chosen;
    }
#endif
    auto& memory = static_cast<MemoryColorDialog&>(*dialog);
    memory.whenShown = [&](Color& choice) {
      // Without a change the dialog has the value of the initial colour.
      if (choice < 0) choice = desktop->SystemColorValue(choice & 0x7FFFFFFF);
      return accept;
    };
    return dialog->ShowColor(owner, kWholeDialog, color);
  }

  std::unique_ptr<Desktop> desktop;
  std::unique_ptr<ColorDialog> dialog;
  std::unique_ptr<Form> form;

 private:
#ifdef _WIN32
  static BOOL CALLBACK Press(HWND window, LPARAM) {
    wchar_t name[16] = {};
    GetClassNameW(window, name, 16);
    if (wcscmp(name, L"#32770") == 0 && IsWindowVisible(window)) {
      PostMessageW(window, WM_COMMAND, static_cast<WPARAM>(answer_), 0);
    }
    return TRUE;
  }
  static void CALLBACK Answer(HWND, UINT, UINT_PTR, DWORD) {
    EnumThreadWindows(GetCurrentThreadId(), Press, 0);
  }
  inline static int answer_ = 0;
#endif
};

TEST_P(ColorDialogContract, OkAtOnceGivesTheColourItStartedFrom) {
  for (const Color start : {Rgb(0, 0, 0), Rgb(12, 200, 99), Rgb(255, 255, 255)}) {
    Color color = start;
    EXPECT_TRUE(Show(true, color, form.get()));
    EXPECT_EQ(color, start);
  }
}

TEST_P(ColorDialogContract, ASystemColourBecomesItsValue) {
  Color color = kButtonFace;
  EXPECT_TRUE(Show(true, color, form.get()));
  EXPECT_EQ(color, desktop->SystemColorValue(15));
}

TEST_P(ColorDialogContract, CancelLeavesTheColourAsItWas) {
  for (const Color start : {Rgb(12, 200, 99), kButtonFace}) {
    Color color = start;
    EXPECT_FALSE(Show(false, color, form.get()));
    EXPECT_EQ(color, start);
  }
}

TEST_P(ColorDialogContract, ItNeedsNoOwner) {
  Form unloaded(*desktop, "frmOther");
  for (const Form* owner :
       {static_cast<const Form*>(nullptr), static_cast<const Form*>(&unloaded)}) {
    Color color = Rgb(1, 2, 3);
    EXPECT_TRUE(Show(true, color, owner));
    EXPECT_EQ(color, Rgb(1, 2, 3));
  }
}

MARL_OVER_ALL_BACKENDS(ColorDialogContract);

}  // namespace
}  // namespace marl
