// The fonts of the eleven forms with other code pages than 1252.

#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "tests/unit/EveryForm.h"

namespace marl {
namespace {

constexpr int kShiftJis = 128;  // charset of code page 932

class FormFonts : public testing::Test {
 protected:
  FormFonts() { world.locales.UseCodePage("932"); }

  /// Loads the form and checks the fonts of its controls, and each text that its windows get.
  void Check(Form& form) {
    int texts = 0;
    world.desktop.whenChanged = [&](Control& control, Property property) {
      if (property != Property::kCaption || !HasFont(control.kind())) return;
      EXPECT_EQ(control.Font().Charset, kShiftJis)
          << form.name() << "." << control.name() << " had its text before its font";
      ++texts;
    };
    form.Load();
    world.desktop.whenChanged = nullptr;
    ASSERT_TRUE(form.loaded()) << form.name();
    EXPECT_TRUE(form.Font().Name.empty()) << form.name();
    std::set<std::string> plain;
    for (const Control* control : form.controls()) {
      if (HasFont(control->kind()) && control->Font().Charset != kShiftJis) {
        plain.insert(control->name());
      }
    }
    EXPECT_EQ(plain, std::set<std::string>{}) << form.name();
    // The splash has no text but its version; all others have buttons.
    EXPECT_TRUE(texts > 0 || form.name() == "frmSplash") << form.name();
    form.Unload();
    checked.insert(form.name());
  }

  World world;
  std::set<std::string> checked;
};

TEST_F(FormFonts, OfTheCodePageAreSetOnEveryFormBeforeItsTexts) {
  EveryForm forms(world);
  for (Form* const form : forms.All()) {
    Check(*form);
  }
  EXPECT_EQ(checked.size(), 11u);
  EXPECT_TRUE(world.desktop.messages.empty());
}

}  // namespace
}  // namespace marl
