// The fonts of the eleven forms with other code pages than 1252.

#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "appearance/frmFont.h"
#include "appearance/frmUI.h"
#include "documents/frmSelectFile.h"
#include "network/frmChangeServer.h"
#include "network/frmLanSettings.h"
#include "settings/frmOptions.h"
#include "settings/frmSegmentation.h"
#include "shell/frmPrjWiz.h"
#include "shell/frmRunningApps.h"
#include "support/frmAbout2006.h"
#include "support/frmSplash.h"
#include "tests/unit/World.h"

namespace marl {
namespace {

constexpr int kShiftJis = 128;  // charset of code page 932

class NoSamples : public SampleForm {
 public:
  explicit NoSamples(Form& form) : label_(form, "lblSample") {}
  Label& Sample(int) override { return label_; }
  Color GradientColor(int) const override { return 0; }
  int GradientAngle() const override { return 90; }

 private:
  Label label_;
};

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
  World& w = world;
  const auto setIcon = [](WindowHandle) {};
  Form owner(w.desktop, "frmOwner");
  NoSamples samples(owner);
  clsMRU list(w.registry, w.locales);
  frmUI::Switchboard switchboard;
  for (std::size_t i = 0; i < switchboard.captions.size(); ++i) {
    switchboard.captions[i] = w.strings.Get(IDS_BUTTON_ANALYSE + static_cast<int>(i));
  }

  frmSplash splash(w.desktop, w.pictures, w.locales);
  frmAbout2006 about({w.desktop, w.pictures, w.locales, w.strings, setIcon,
                      [](TextView, TextView, TextView, TextView, int) {}});
  frmOptions options({w.desktop, w.registry, w.locales, w.strings}, {}, owner);
  frmSegmentation segmentation({w.desktop, w.registry, w.locales, w.strings});
  frmLanSettings lan({w.desktop, w.registry, w.locales, w.strings});
  frmChangeServer server({w.desktop, w.locales, w.pictures, w.strings}, list);
  frmSelectFile select({w.desktop, w.locales, w.strings, setIcon});
  frmPrjWiz wizard(w.desktop, w.locales, w.strings);
  frmRunningApps running(w.desktop, w.locales, w.strings);
  frmFont font({w.desktop, w.locales, w.strings, w.colorDialog, w.fontList}, samples);
  frmUI display({w.desktop, w.registry, w.files, w.fileDialogs, w.colorDialog, w.fontList,
                 w.pictures, w.locales, w.strings, setIcon},
                switchboard);
  for (Form* form :
       std::initializer_list<Form*>{&splash, &about, &options, &segmentation, &lan, &server,
                                    &select, &wizard, &running, &font, &display}) {
    Check(*form);
  }
  EXPECT_EQ(checked.size(), 11u);
  EXPECT_TRUE(w.desktop.messages.empty());
}

}  // namespace
}  // namespace marl
