#include "platform/ColorDialog.h"

#include <gtest/gtest.h>

#include <memory>

#include "platform/memory/MemoryColorDialog.h"
#include "tests/contract/DesktopWorld.h"
#ifdef _WIN32
#include "platform/win32/ColorDialogWin32.h"
#endif

namespace marl {
namespace {

constexpr int kWholeDialog = kColorInit | kColorFullOpen;

class ColorDialogContract : public DialogTest {
 protected:
  ColorDialogContract() {
#ifdef _WIN32
    if (real()) dialog = std::make_unique<win32::ColorDialogWin32>();
#endif
    if (!dialog) dialog = std::make_unique<MemoryColorDialog>();
  }

  /// Shows the dialog; the user presses OK without a change, or Cancel.
  bool Show(bool accept, Color& color, const Form* owner) {
#ifdef _WIN32
    if (real()) {
      const DialogAnswer answer(accept);
      return dialog->ShowColor(owner, kWholeDialog, color);
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

  std::unique_ptr<ColorDialog> dialog;
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
